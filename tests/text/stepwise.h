#pragma once

// The conversions written out one step and one buffer at a time, from the rules and not from the library's
// tables: what its one-pass pipelines are held against.

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace qorgen::tests {

using Text16 = std::u16string;

inline Text16 FromWide(const wchar_t* text) {
  Text16 result;
  for (; *text != 0; ++text) result += static_cast<char16_t>(*text);
  return result;
}

// A terminated wide copy, alive as long as this.
class WideCopy {
 public:
  explicit WideCopy(const Text16& text) : units_(text.begin(), text.end()) { units_.push_back(0); }
  operator const wchar_t*() const { return units_.data(); }

 private:
  std::vector<wchar_t> units_;
};

namespace stepwise {

constexpr char16_t kNotFolded = 0;

inline bool In(char16_t c, int first, int last) {
  return c >= first && c <= last;
}

inline char16_t Plus(char16_t c, int offset) {
  return static_cast<char16_t>(c + offset);
}

// The unit of `to` at the place where `from` holds `c`, else `otherwise`.
inline char16_t Paired(char16_t c, const Text16& from, const Text16& to, char16_t otherwise) {
  const std::size_t at = from.find(c);
  return at == Text16::npos ? otherwise : to[at];
}

// The rows カ to ヂ, ツ to ド, ハ to ポ and their hiragana: 0 plain, 1 voiced, 2 semi-voiced, -1 outside.
inline int Voice(char16_t c) {
  for (int script : {0, 0x60}) {
    if (In(c, 0x304B + script, 0x3062 + script)) return c % 2 == 1 ? 0 : 1;
    if (In(c, 0x3064 + script, 0x3069 + script)) return c % 2 == 0 ? 0 : 1;
    if (In(c, 0x306F + script, 0x307D + script)) return (c - 0x306F - script) % 3;
  }
  return -1;
}

inline const Text16 kHalfKana =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモ"
    u"ヤユヨラリルレロワン゛゜";

inline char16_t WideChar(char16_t c) {
  if (In(c, 0xFF61, 0xFF9F)) return kHalfKana[c - 0xFF61];
  return Paired(c, u" \"'\\", u"\u3000\u201D\u2019\uFFE5", In(c, 0x20, 0x7E) ? Plus(c, 0xFEE0) : c);
}

inline char16_t HalfChar(char16_t c) {
  if (In(c, 0xFF01, 0xFF5E)) return Plus(c, -0xFEE0);
  if (!In(c, 0x3040, 0x30FF)) return c;
  const char16_t plain = Paired(c, u"ゔヴヵヶ", u"ウウカケ", Plus(c, -std::max(Voice(c), 0)));
  const std::size_t at = kHalfKana.find(In(plain, 0x3041, 0x3093) ? Plus(plain, 0x60) : plain);
  return at == Text16::npos ? c : Plus(0xFF61, static_cast<int>(at));
}

inline Text16 Half(const Text16& text) {
  Text16 result;
  for (char16_t c : text) {
    result += HalfChar(c);
    if (c == 0x30F4 || Voice(c) == 1) result += u'\uFF9E';
    if (Voice(c) == 2) result += u'\uFF9F';
  }
  return result;
}

// The kana that a half-width mark makes of the one before it; kNotFolded where it doesn't fuse.
inline char16_t Fused(char16_t last, char16_t mark) {
  if (mark == 0xFF9E && last == 0x30A6) return 0x30F4;
  if (mark == 0xFF9E && Voice(last) == 0) return Plus(last, 1);
  const bool ha_row = In(last, 0x306F, 0x307D) || In(last, 0x30CF, 0x30DD);
  return mark == 0xFF9F && ha_row && Voice(last) == 0 ? Plus(last, 2) : kNotFolded;
}

inline Text16 Wide(const Text16& text) {
  Text16 result;
  for (char16_t c : text) {
    const char16_t fused = result.empty() ? kNotFolded : Fused(result.back(), c);
    if (fused != kNotFolded) {
      result.back() = fused;
    } else {
      result += WideChar(c);
    }
  }
  return result;
}

inline Text16 Each(Text16 text, const std::function<char16_t(char16_t)>& rule) {
  std::transform(text.begin(), text.end(), text.begin(), rule);
  return text;
}

inline Text16 Kana(const Text16& text) {
  return Each(text, [](char16_t c) { return In(c, 0x3040, 0x309F) ? Plus(c, 0x60) : c; });
}

inline Text16 Plain(Text16 text) {
  std::erase_if(text, [](char16_t c) { return c == 0xFF9E || c == 0xFF9F; });
  return Each(text, [](char16_t c) { return c == 0x30F4 ? u'\u30A6' : Plus(c, -std::max(Voice(c), 0)); });
}

inline Text16 Letters(const Text16& text) {
  return Each(text, [](char16_t c) { return In(c, 'a', 'z') || In(c, 0xFF41, 0xFF5A) ? Plus(c, -0x20) : c; });
}

inline Text16 Upper(const Text16& text) {
  return Each(Letters(text), [](char16_t c) {
    return Paired(c, u"ァィゥェォャュョッぁぃぅぇぉゃゅょっｧｨｩｪｫｬｭｮｯ",
                  u"アイウエオヤユヨツあいうえおやゆよつｱｲｳｴｵﾔﾕﾖﾂ", c);
  });
}

inline Text16 SearchKey(const Text16& text) {
  return Each(Letters(Kana(Wide(text))),
              [](char16_t c) { return Paired(c, u"-\u2212 ", u"\uFF0D\uFF0D\u3000", c); });
}

inline Text16 SortKey(const Text16& text) {
  return Each(Upper(Kana(Wide(text))), [](char16_t c) {
    return Paired(c, u"-\u2010\u2015\u2212\uFF0D\uFF70 ", u"ーーーーーー\u3000", c);
  });
}

inline Text16 ChineseNumerals(const Text16& text) {
  return Each(Wide(text), [](char16_t c) {
    return Paired(c, u"０１２３４５６７８９-\u2010\uFF0D", u"〇一二三四五六七八九ーーー", c);
  });
}

inline Text16 WideNumerals(const Text16& text) {
  return Each(Wide(text), [](char16_t c) { return Paired(c, u"-\u2010\uFF0D", u"\u2015\u2015\u2015", c); });
}

}  // namespace stepwise

// Texts of the characters that conversions act on, marks above all, with anything else between.
inline Text16 RandomText(std::mt19937& random, std::size_t longest) {
  struct Range {
    unsigned first, count;
  };
  static constexpr Range kRanges[] = {{0x20, 0x60}, {0x3040, 0xC0}, {0xFF61, 0x3F}, {0xFF61, 0x3F},
                                      {0xFF9E, 2},  {0xFF9E, 2},    {0x3099, 4},    {1, 0xFFFF},
                                      {0x2010, 6},  {0x2212, 1},    {0xFF0D, 13},   {0xFF41, 1}};
  Text16 text;
  for (std::size_t left = random() % (longest + 1); left > 0; --left) {
    const Range& range = kRanges[random() % std::size(kRanges)];
    text += static_cast<char16_t>(range.first + random() % range.count);
  }
  return text;
}

}  // namespace qorgen::tests
