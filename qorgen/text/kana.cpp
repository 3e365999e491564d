// The folding of kana and letters.

#include "qorgen/text/internal/convert.h"
#include "qorgen/text/string_util.h"

namespace qorgen::text {
namespace {

constexpr UnitMap kKatakanaMap(ToKatakana);
constexpr UnitMap kPlainMap(ToPlainKana);
constexpr UnitMap kUpperLettersMap(ToUpperLetter);
constexpr UnitMap kUpperAllMap(ToUpperAll);

using Loop = std::size_t (*)(wchar_t*, View);

Loop UpperLoop(int letters_only) {
  return letters_only != 0 ? MapUnits<kUpperLettersMap> : MapUnits<kUpperAllMap>;
}

}  // namespace

std::size_t DropVoicing(wchar_t* const out, View text) {
  wchar_t* end = out;
  for (const wchar_t unit : text) {
    const auto c = static_cast<Unit>(unit);
    *end = static_cast<wchar_t>(kPlainMap(c));
    end += IsHalfMark(c) ? 0 : 1;
  }
  return static_cast<std::size_t>(end - out);
}

}  // namespace qorgen::text

using namespace qorgen::text;

int CQorStringUtil::GanaToKana(wchar_t* dest, const wchar_t* src) {
  return static_cast<int>(IntoBuffer(dest, src, 1, MapUnits<kKatakanaMap>).source);
}

int CQorStringUtil::GanaToKana(CString& dest, const wchar_t* src) {
  return static_cast<int>(IntoString(dest, src, 1, MapUnits<kKatakanaMap>).source);
}

wchar_t* CQorStringUtil::GanaToKana(const wchar_t* src) {
  return IntoNewText(src, 1, MapUnits<kKatakanaMap>);
}

int CQorStringUtil::DakuonToSeion(wchar_t* dest, const wchar_t* src) {
  return static_cast<int>(IntoBuffer(dest, src, 1, DropVoicing).source);
}

int CQorStringUtil::DakuonToSeion(CString& dest, const wchar_t* src) {
  return static_cast<int>(IntoString(dest, src, 1, DropVoicing).source);
}

wchar_t* CQorStringUtil::DakuonToSeion(const wchar_t* src) {
  return IntoNewText(src, 1, DropVoicing);
}

int CQorStringUtil::ToUpperCase(wchar_t* dest, const wchar_t* src, int lettersOnly) {
  return static_cast<int>(IntoBuffer(dest, src, 1, UpperLoop(lettersOnly)).source);
}

int CQorStringUtil::ToUpperCase(CString& dest, const wchar_t* src, int lettersOnly) {
  return static_cast<int>(IntoString(dest, src, 1, UpperLoop(lettersOnly)).source);
}

wchar_t* CQorStringUtil::ToUpperCase(const wchar_t* src, int lettersOnly) {
  return IntoNewText(src, 1, UpperLoop(lettersOnly));
}
