// Numerals for vertical writing.

#include "qorgen/text/internal/convert.h"
#include "qorgen/text/string_util.h"

namespace qorgen::text {
namespace {

constexpr bool IsDash(Unit c) {
  return c == 0x002D || c == 0x2010 || c == 0xFF0D;
}

// After widening: the long sound mark reads as a vertical dash in columns of numbers.
constexpr Unit ToChineseNumeral(Unit c) {
  if (IsBetween(c, u'０', u'９')) return u"〇一二三四五六七八九"[c - u'０'];
  return IsDash(c) ? u'ー' : c;
}

constexpr Unit ToWideNumeral(Unit c) {
  return IsDash(c) ? u'―' : c;
}

constexpr UnitMap kChineseMap([](Unit c) { return ToChineseNumeral(ToWide(c)); });
constexpr UnitMap kWideNumeralMap([](Unit c) { return ToWideNumeral(ToWide(c)); });

// No kana that marks make is a digit or a dash.
constexpr auto ToChinese = Widen<kChineseMap, kWideMap, kUnchangedMap>;
constexpr auto ToWideNumerals = Widen<kWideNumeralMap, kWideMap, kUnchangedMap>;

}  // namespace
}  // namespace qorgen::text

using namespace qorgen::text;

int CQorStringUtil::ToColumnarWritingChineseNumerals(wchar_t* dest, const wchar_t* src) {
  return static_cast<int>(IntoBuffer(dest, src, 1, ToChinese).result);
}

wchar_t* CQorStringUtil::ToColumnarWritingChineseNumerals(const wchar_t* src) {
  return IntoNewText(src, 1, ToChinese);
}

int CQorStringUtil::ToColumnarWritingWideNumerals(wchar_t* dest, const wchar_t* src) {
  return static_cast<int>(IntoBuffer(dest, src, 1, ToWideNumerals).result);
}

wchar_t* CQorStringUtil::ToColumnarWritingWideNumerals(const wchar_t* src) {
  return IntoNewText(src, 1, ToWideNumerals);
}
