#include "text.h"

#include <cstdio>

#include "qorgen/afx/memory.h"
#include "qorgen/platform/common/text_length.h"
#include "qorgen/platform/common/utf8.h"

namespace qorgen::tests {

std::string Utf8(const wchar_t* text) {
  if (text == nullptr) return "(null)";
  std::string out;
  platform::ForEachCharacter(text, platform::TextLength(text), [&out](char32_t c) {
    if (platform::IsSurrogate(c)) {
      char shown[8];
      std::snprintf(shown, sizeof shown, "<%04X>", static_cast<unsigned>(c));
      out += shown;
    } else {
      platform::AppendUtf8(out, c);
    }
  });
  return out;
}

std::string Utf8(const CString& text) {
  return Utf8(static_cast<const wchar_t*>(text));
}

std::string TakeUtf8(wchar_t* text) {
  std::string out = Utf8(text);
  QorFree(text);
  return out;
}

}  // namespace qorgen::tests
