// Case of a CString: one table of letter ranges, no locale.

#include <array>

#include "qorgen/afx/internal/text_units.h"
#include "qorgen/afx/string.h"

namespace qorgen::afx {
namespace {

// Small letters `first`, `first` + `step` ... `last`; a capital stands at small letter + `to_capital`.
struct CaseRange {
  char16_t first;
  char16_t last;
  int step;
  int to_capital;
};

// After the simple mappings of the Unicode character database, version 15.0, for the alphabets that Japanese
// code pages and European names need. Ascending by small letter.
constexpr std::array kCaseRanges = {
    CaseRange{0x0061, 0x007A, 1, -32},  // ASCII
    CaseRange{0x00E0, 0x00F6, 1, -32},  // Latin-1
    CaseRange{0x00F8, 0x00FE, 1, -32},
    CaseRange{0x00FF, 0x00FF, 1, 0x0178 - 0x00FF},
    CaseRange{0x0101, 0x012F, 2,
              -1},  // Latin Extended-A; the dotless and dotted i have no one-to-one partner
    CaseRange{0x0133, 0x0137, 2, -1},
    CaseRange{0x013A, 0x0148, 2, -1},
    CaseRange{0x014B, 0x0177, 2, -1},
    CaseRange{0x017A, 0x017E, 2, -1},
    CaseRange{0x03AC, 0x03AC, 1, -38},  // Greek; the final sigma has only a way up and is treated apart
    CaseRange{0x03AD, 0x03AF, 1, -37},
    CaseRange{0x03B1, 0x03C1, 1, -32},
    CaseRange{0x03C3, 0x03CB, 1, -32},
    CaseRange{0x03CC, 0x03CC, 1, -64},
    CaseRange{0x03CD, 0x03CE, 1, -63},
    CaseRange{0x0430, 0x044F, 1, -32},  // Cyrillic
    CaseRange{0x0450, 0x045F, 1, -80},
    CaseRange{0x0461, 0x0481, 2, -1},
    CaseRange{0x048B, 0x04BF, 2, -1},
    CaseRange{0x04C2, 0x04CE, 2, -1},
    CaseRange{0x04CF, 0x04CF, 1, 0x04C0 - 0x04CF},
    CaseRange{0x04D1, 0x052F, 2, -1},
    CaseRange{0x0561, 0x0586, 1, -48},  // Armenian
    CaseRange{0x1E01, 0x1E95, 2, -1},   // Latin Extended Additional
    CaseRange{0x1EA1, 0x1EFF, 2, -1},
    CaseRange{0x2170, 0x217F, 1, -16},  // roman numerals ⅰ
    CaseRange{0x24D0, 0x24E9, 1, -26},  // circled ⓐ
    CaseRange{0xFF41, 0xFF5A, 1, -32},  // full width ａ
};

constexpr bool IsAscending() {
  for (std::size_t i = 0; i < kCaseRanges.size(); ++i) {
    const CaseRange& range = kCaseRanges[i];
    if (range.first > range.last || (range.last - range.first) % range.step != 0) return false;
    if (i != 0 && kCaseRanges[i - 1].last >= range.first) return false;
  }
  return true;
}
static_assert(IsAscending());

constexpr char16_t kFinalSigma = 0x03C2;
constexpr char16_t kCapitalSigma = 0x03A3;

// Nearly all units of Japanese text lie here, where no letter has a case.
constexpr bool IsCaseless(char16_t unit) {
  return unit > 0x24E9 && unit < 0xFF21;
}

}  // namespace

wchar_t ToUpperUnit(wchar_t wide) noexcept {
  const char16_t unit = static_cast<char16_t>(wide);
  if (unit < 0x80) return unit >= 'a' && unit <= 'z' ? static_cast<wchar_t>(unit - 32) : wide;
  if (IsCaseless(unit)) return wide;
  if (unit == kFinalSigma) return static_cast<wchar_t>(kCapitalSigma);
  for (const CaseRange& range : kCaseRanges) {
    if (unit < range.first) break;
    if (unit <= range.last) {
      return (unit - range.first) % range.step == 0 ? static_cast<wchar_t>(unit + range.to_capital) : wide;
    }
  }
  return wide;
}

wchar_t ToLowerUnit(wchar_t wide) noexcept {
  const char16_t unit = static_cast<char16_t>(wide);
  if (unit < 0x80) return unit >= 'A' && unit <= 'Z' ? static_cast<wchar_t>(unit + 32) : wide;
  if (IsCaseless(unit)) return wide;
  for (const CaseRange& range : kCaseRanges) {
    const int small = unit - range.to_capital;
    if (small >= range.first && small <= range.last && (small - range.first) % range.step == 0) {
      return static_cast<wchar_t>(small);
    }
  }
  return wide;
}

}  // namespace qorgen::afx

using qorgen::afx::ToLowerUnit;
using qorgen::afx::ToUpperUnit;

CString& CString::MakeUpper() {
  if (IsEmpty()) return *this;
  Reserve(GetLength(), false);
  for (int index = 0; index < GetLength(); ++index) m_pszData[index] = ToUpperUnit(m_pszData[index]);
  return *this;
}

CString& CString::MakeLower() {
  if (IsEmpty()) return *this;
  Reserve(GetLength(), false);
  for (int index = 0; index < GetLength(); ++index) m_pszData[index] = ToLowerUnit(m_pszData[index]);
  return *this;
}

int CString::CompareNoCase(const wchar_t* text) const noexcept {
  if (text == nullptr) return IsEmpty() ? 0 : 1;
  for (int index = 0; index < GetLength(); ++index, ++text) {
    if (*text == 0) return 1;
    const wchar_t mine = ToLowerUnit(m_pszData[index]);
    const wchar_t other = ToLowerUnit(*text);
    if (mine != other) return mine < other ? -1 : 1;
  }
  return *text == 0 ? 0 : -1;
}
