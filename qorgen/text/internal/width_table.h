#pragma once

// Half-width and full-width forms of single characters. Constant data and pure functions over it.

#include <array>
#include <cstddef>

namespace qorgen::text {

// A character or the unit of a text; no sign, so ranges are one comparison.
using Unit = char16_t;

constexpr bool IsBetween(Unit c, Unit first, Unit last) {
  return c >= first && c <= last;
}

inline constexpr Unit kHalfAsciiFirst = 0x0020;
inline constexpr Unit kHalfAsciiLast = 0x007E;
inline constexpr Unit kWideAsciiOffset = 0xFEE0;  // U+FF01 ！ less U+0021 !
inline constexpr Unit kHalfKanaFirst = 0xFF61;
inline constexpr Unit kHalfKanaLast = 0xFF9F;
inline constexpr Unit kHalfVoicedMark = 0xFF9E;      // ﾞ
inline constexpr Unit kHalfSemiVoicedMark = 0xFF9F;  // ﾟ
inline constexpr Unit kKanaFirst = 0x3040;
inline constexpr Unit kKanaLast = 0x30FF;

// U+0020..U+007E to full width: plus the offset, but for four characters whose wide form is the Japanese
// typographic choice.
inline constexpr auto kNarrowToWide = [] {
  std::array<Unit, 95> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<Unit>(0x20 + i + kWideAsciiOffset);
  table[u' ' - 0x20] = 0x3000;
  table[u'"' - 0x20] = u'”';
  table[u'\'' - 0x20] = u'’';
  table[u'\\' - 0x20] = u'￥';
  return table;
}();
static_assert(kNarrowToWide[u'A' - 0x20] == u'Ａ' && kNarrowToWide[u'~' - 0x20] == u'～');
static_assert(kNarrowToWide.size() == kHalfAsciiLast - kHalfAsciiFirst + 1);

// U+FF61..U+FF9F to full width. The last two are the spacing marks U+309B and U+309C, not the combining ones.
inline constexpr char16_t kHalfKanaToWide[] =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノ"
    u"ハヒフヘホマミムメモヤユヨラリルレロワン゛゜";
static_assert(sizeof kHalfKanaToWide / sizeof(char16_t) - 1 == kHalfKanaLast - kHalfKanaFirst + 1);
static_assert(kHalfKanaToWide[kHalfVoicedMark - kHalfKanaFirst] == 0x309B);
static_assert(kHalfKanaToWide[kHalfSemiVoicedMark - kHalfKanaFirst] == 0x309C);

// U+3040..U+309F and U+30A0..U+30FF to half width, without voicing marks: both scripts have the same rows,
// and what has no half-width form stands for itself. Where the scripts differ, each row says so: ヵ and ヶ
// have a form, ゕ and ゖ have none.
inline constexpr char16_t kHiraganaToHalf[] =
    u"\u3040ｧｱｨｲｩｳｪｴｫｵｶｶｷｷｸ"                                           // 3040
    u"ｸｹｹｺｺｻｻｼｼｽｽｾｾｿｿﾀ"                                                // 3050
    u"ﾀﾁﾁｯﾂﾂﾃﾃﾄﾄﾅﾆﾇﾈﾉﾊ"                                                // 3060
    u"ﾊﾊﾋﾋﾋﾌﾌﾌﾍﾍﾍﾎﾎﾎﾏﾐ"                                                // 3070
    u"ﾑﾒﾓｬﾔｭﾕｮﾖﾗﾘﾙﾚﾛゎﾜ"                                               // 3080
    u"ゐゑｦﾝｳ\u3095\u3096\u3097\u3098\u3099\u309A\uFF9E\uFF9Fゝゞゟ";  // 3090
inline constexpr char16_t kKatakanaToHalf[] =
    u"\u30A0ｧｱｨｲｩｳｪｴｫｵｶｶｷｷｸ"                           // 30A0
    u"ｸｹｹｺｺｻｻｼｼｽｽｾｾｿｿﾀ"                                // 30B0
    u"ﾀﾁﾁｯﾂﾂﾃﾃﾄﾄﾅﾆﾇﾈﾉﾊ"                                // 30C0
    u"ﾊﾊﾋﾋﾋﾌﾌﾌﾍﾍﾍﾎﾎﾎﾏﾐ"                                // 30D0
    u"ﾑﾒﾓｬﾔｭﾕｮﾖﾗﾘﾙﾚﾛヮﾜ"                               // 30E0
    u"ヰヱｦﾝｳｶｹ\u30F7\u30F8\u30F9\u30FA･ｰヽヾ\u30FF";  // 30F0
static_assert(sizeof kHiraganaToHalf == sizeof kKatakanaToHalf);
static_assert(sizeof kHiraganaToHalf / sizeof(char16_t) - 1 == 0x60);

// The full-width form of one character; a voicing mark alone becomes the spacing mark.
constexpr Unit ToWide(Unit c) {
  if (IsBetween(c, kHalfAsciiFirst, kHalfAsciiLast)) return kNarrowToWide[c - kHalfAsciiFirst];
  if (IsBetween(c, kHalfKanaFirst, kHalfKanaLast)) return kHalfKanaToWide[c - kHalfKanaFirst];
  return c;
}

// The half-width form of one character, without its voicing mark. Narrower than the way there: the full-width
// space, ”, ’ and ￥ stay, as do 。「」、.
constexpr Unit ToHalf(Unit c) {
  if (IsBetween(c, kKanaFirst, 0x309F)) return kHiraganaToHalf[c - kKanaFirst];
  if (IsBetween(c, 0x30A0, kKanaLast)) return kKatakanaToHalf[c - 0x30A0];
  if (IsBetween(c, 0xFF01, 0xFF5E)) return static_cast<Unit>(c - kWideAsciiOffset);
  return c;
}

// Each half-width kana comes back from its full-width form, apart from the punctuation that stays wide.
constexpr bool HalfKanaComeBack() {
  for (Unit c = kHalfKanaFirst; c <= kHalfKanaLast; ++c) {
    const bool stays_wide = c <= 0xFF64;
    if ((ToHalf(ToWide(c)) == c) == stays_wide) return false;
  }
  return true;
}
static_assert(HalfKanaComeBack());

}  // namespace qorgen::text
