// White space, lines and canonical numbers.

#include "qorgen/afx/array.h"
#include "qorgen/afx/memory.h"
#include "qorgen/numeric/num_util.h"
#include "qorgen/platform/common/white_space.h"
#include "qorgen/platform/crt.h"
#include "qorgen/text/internal/convert.h"
#include "qorgen/text/string_util.h"

using namespace qorgen::text;
using qorgen::platform::IsWhiteSpace;

namespace {

constexpr wchar_t kSeparator[] = L" \n";

}  // namespace

int CQorStringUtil::IsSpace(const wchar_t* text) {
  if (text == nullptr) return 1;
  while (IsWhiteSpace(*text)) ++text;
  return *text == 0 ? 1 : 0;
}

int CQorStringUtil::SplitSpace(const wchar_t* text, CStringArray& parts) {
  // The text may belong to an element of the array.
  const CString held(text);
  parts.RemoveAll();
  if (IsSpace(held) != 0) return 0;
  const wchar_t* piece = held;
  while (true) {
    const wchar_t* end = piece;
    while (*end != 0 && !IsWhiteSpace(*end)) ++end;
    parts.Add(CString(piece, static_cast<int>(end - piece)));
    while (IsWhiteSpace(*end)) ++end;
    if (*end == 0) return 1;  // nothing is left behind trailing white space
    piece = end;
  }
}

void CQorStringUtil::ReturnToSpace(const wchar_t* text, CString& dest) {
  if (text == nullptr) {
    dest.Empty();
    return;
  }
  IntoString(dest, text, 1, [](wchar_t* out, View source) {
    wchar_t* end = out;
    for (std::size_t i = 0; i < source.size(); ++i) {
      const bool pair = source[i] == L'\r' && i + 1 < source.size() && source[i + 1] == L'\n';
      *end++ = pair ? L' ' : source[i];
      if (pair) ++i;
    }
    return static_cast<std::size_t>(end - out);
  });
}

void CQorStringUtil::AddStringNewLine(CString& text, const wchar_t* line, int always) {
  const bool nothing = line == nullptr || *line == 0;
  CString added;  // joined apart, since the line may be the text itself
  if (nothing || text.IsEmpty() ? always != 0 : true) added = kSeparator;
  if (!nothing) added.Append(line);
  text.Append(added);
}

int CQorStringUtil::IsNumber(const wchar_t* text) {
  CString trimmed(text);
  trimmed.Trim();
  if (trimmed.IsEmpty()) return 0;
  errno = 0;
  const long value = _wtol(trimmed);
  if (value == 0 && errno == ERANGE) return 0;
  wchar_t* const canonical = CQorNumUtil::ToString(value, nullptr);
  const bool same = trimmed.Compare(canonical) == 0;
  QorFree(canonical);
  return same ? 1 : 0;
}
