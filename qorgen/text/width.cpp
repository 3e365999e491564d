// Character classes and the conversion between half and full width.

#include <array>

#include "qorgen/text/internal/convert.h"
#include "qorgen/text/string_util.h"

namespace qorgen::text {
namespace {

constexpr UnitMap kHalfMap(ToHalf);

// The marks of the kana block, by the low byte.
constexpr auto kHalfMarks = [] {
  std::array<Unit, 256> table{};
  for (Unit low = 0; low < 256; ++low) table[low] = HalfMarkOf(static_cast<Unit>(0x3000 + low));
  return table;
}();

constexpr unsigned int LatinClass(Unit c, unsigned int alpha, unsigned int digit, unsigned int symbol) {
  if (IsBetween(c, u'A', u'Z') || IsBetween(c, u'a', u'z')) return alpha;
  return IsBetween(c, u'0', u'9') ? digit : symbol;
}

constexpr unsigned int ClassOf(Unit c) {
  if (IsBetween(c, 0x0021, 0x007E)) {
    return LatinClass(c, CHARTYPE_HALFALPHA, CHARTYPE_HALFDIGIT, CHARTYPE_HALFSYMBOL);
  }
  if (IsBetween(c, 0xFF01, 0xFF5E)) {
    return LatinClass(static_cast<Unit>(c - kWideAsciiOffset), CHARTYPE_WIDEALPHA, CHARTYPE_WIDEDIGIT,
                      CHARTYPE_WIDESYMBOL);
  }
  if (IsBetween(c, 0x30A1, 0x30FE)) return CHARTYPE_KATAKANA;
  if (IsBetween(c, 0x3041, 0x309E)) return CHARTYPE_HIRAGANA;
  if (IsBetween(c, 0x2000, 0x9FA5)) return CHARTYPE_WIDEOTHER;
  if (IsBetween(c, kHalfKanaFirst, kHalfKanaLast)) return CHARTYPE_HALFKANA;
  return 0;
}

}  // namespace

std::size_t Narrow(wchar_t* const out, View text) {
  wchar_t* end = out;
  for (const wchar_t unit : text) {
    const auto c = static_cast<Unit>(unit);
    end[0] = static_cast<wchar_t>(kHalfMap(c));
    if ((c >> 8) != 0x30) {
      ++end;
      continue;
    }
    // Written in any case: the result has room for two units, and no branch has to be guessed.
    const Unit mark = kHalfMarks[c & 0xFF];
    end[1] = static_cast<wchar_t>(mark);
    end += mark != 0 ? 2 : 1;
  }
  return static_cast<std::size_t>(end - out);
}

}  // namespace qorgen::text

using qorgen::text::Narrow;
using qorgen::text::Unit;
using qorgen::text::WidenOnly;

unsigned int CQorStringUtil::GetCharType(unsigned int c) {
  return c > 0xFFFF ? 0 : qorgen::text::ClassOf(static_cast<Unit>(c));
}

unsigned int CQorStringUtil::ToHalfChar(unsigned int c) {
  return c > 0xFFFF ? c : qorgen::text::ToHalf(static_cast<Unit>(c));
}

unsigned int CQorStringUtil::ToWideChar(unsigned int c) {
  return c > 0xFFFF ? c : qorgen::text::ToWide(static_cast<Unit>(c));
}

int CQorStringUtil::ToHalfString(wchar_t* dest, const wchar_t* src) {
  qorgen::text::IntoBuffer(dest, src, 2, Narrow);
  return 0;
}

int CQorStringUtil::ToHalfString(CString& dest, const wchar_t* src) {
  qorgen::text::IntoString(dest, src, 2, Narrow);
  return 0;
}

wchar_t* CQorStringUtil::ToHalfString(const wchar_t* src) {
  return qorgen::text::IntoNewText(src, 2, Narrow);
}

int CQorStringUtil::ToWideString(wchar_t* dest, const wchar_t* src) {
  qorgen::text::IntoBuffer(dest, src, 1, WidenOnly);
  return 0;
}

int CQorStringUtil::ToWideString(CString& dest, const wchar_t* src) {
  qorgen::text::IntoString(dest, src, 1, WidenOnly);
  return 0;
}

wchar_t* CQorStringUtil::ToWideString(const wchar_t* src) {
  return qorgen::text::IntoNewText(src, 1, WidenOnly);
}
