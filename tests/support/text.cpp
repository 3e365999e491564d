#include "text.h"

#include <cstdint>
#include <cstdio>

#include "qorgen/afx/memory.h"

namespace qorgen::tests {
namespace {

void AppendUtf8(std::string& out, std::uint32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

}  // namespace

std::string Utf8(const wchar_t* text) {
  if (text == nullptr) return "(null)";
  std::string out;
  for (; *text != 0; ++text) {
    const std::uint32_t unit = static_cast<std::uint16_t>(*text);
    const std::uint32_t next = static_cast<std::uint16_t>(text[1]);
    if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
      AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++text;
    } else if (unit >= 0xD800 && unit < 0xE000) {
      char shown[8];
      std::snprintf(shown, sizeof shown, "<%04X>", unit);
      out += shown;
    } else {
      AppendUtf8(out, unit);
    }
  }
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
