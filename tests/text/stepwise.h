#pragma once

// The conversions written out one step and one buffer at a time, from the rules and not from the library's
// tables: what its one-pass pipelines are held against.

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
  explicit WideCopy(const Text16& text) {
    for (char16_t c : text) units_.push_back(static_cast<wchar_t>(c));
    units_.push_back(0);
  }
  operator const wchar_t*() const { return units_.data(); }
  wchar_t* data() { return units_.data(); }

 private:
  std::vector<wchar_t> units_;
};

namespace stepwise {

inline bool In(char16_t c, int first, int last) {
  return c >= first && c <= last;
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

inline bool CanTakeVoiced(char16_t c) {
  return c == 0x30A6 || Voice(c) == 0;
}
inline char16_t ToVoiced(char16_t c) {
  return c == 0x30A6 ? u'\u30F4' : CanTakeVoiced(c) ? static_cast<char16_t>(c + 1) : c;
}
inline bool CanTakeSemiVoiced(char16_t c) {
  return (In(c, 0x30CF, 0x30DD) && (c - 0x30CF) % 3 == 0) || (In(c, 0x306F, 0x307D) && (c - 0x306F) % 3 == 0);
}

inline const Text16 kHalfKana =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモ"
    u"ヤユヨ"
    u"ラリルレロワン゛゜";

inline char16_t WideChar(char16_t c) {
  switch (c) {
    case 0x20:
      return 0x3000;
    case 0x22:
      return 0x201D;
    case 0x27:
      return 0x2019;
    case 0x5C:
      return 0xFFE5;
    default:
      break;
  }
  if (In(c, 0x20, 0x7E)) return static_cast<char16_t>(c + 0xFEE0);
  return In(c, 0xFF61, 0xFF9F) ? kHalfKana[c - 0xFF61] : c;
}

inline char16_t HalfChar(char16_t c) {
  if (In(c, 0xFF01, 0xFF5E)) return static_cast<char16_t>(c - 0xFEE0);
  if (!In(c, 0x3040, 0x30FF)) return c;
  if (c == 0x30FB || c == 0x30FC || c == 0x309B || c == 0x309C) {
    return static_cast<char16_t>(0xFF61 + kHalfKana.find(c));
  }
  if (c == 0x3094 || c == 0x30F4) return 0xFF73;
  if (c == 0x30F5) return 0xFF76;
  if (c == 0x30F6) return 0xFF79;
  if (c == 0x308E || c == 0x3090 || c == 0x3091 || c == 0x30EE || c == 0x30F0 || c == 0x30F1) return c;
  if (!In(c, 0x3041, 0x3093) && !In(c, 0x30A1, 0x30F3)) return c;
  const int plain = c - (Voice(c) > 0 ? Voice(c) : 0);
  const auto katakana = static_cast<char16_t>(plain < 0x30A0 ? plain + 0x60 : plain);
  return static_cast<char16_t>(0xFF61 + kHalfKana.find(katakana));
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

inline Text16 Wide(const Text16& text) {
  Text16 result;
  for (char16_t c : text) {
    if (c == 0xFF9E && !result.empty() && CanTakeVoiced(result.back())) {
      result.back() = ToVoiced(result.back());
    } else if (c == 0xFF9F && !result.empty() && CanTakeSemiVoiced(result.back())) {
      result.back() = static_cast<char16_t>(result.back() + 2);
    } else {
      result += WideChar(c);
    }
  }
  return result;
}

inline Text16 Each(Text16 text, const std::function<char16_t(char16_t)>& rule) {
  for (char16_t& c : text) c = rule(c);
  return text;
}

inline Text16 Kana(const Text16& text) {
  return Each(text, [](char16_t c) { return In(c, 0x3040, 0x309F) ? static_cast<char16_t>(c + 0x60) : c; });
}

inline Text16 Plain(const Text16& text) {
  Text16 result;
  for (char16_t c : text) {
    if (c == 0xFF9E || c == 0xFF9F) continue;
    result += c == 0x30F4 ? u'\u30A6' : static_cast<char16_t>(c - (Voice(c) > 0 ? Voice(c) : 0));
  }
  return result;
}

inline Text16 Upper(const Text16& text, bool letters_only) {
  const Text16 small = u"ァィゥェォャュョッぁぃぅぇぉゃゅょっｧｨｩｪｫｬｭｮｯ";
  const Text16 large = u"アイウエオヤユヨツあいうえおやゆよつｱｲｳｴｵﾔﾕﾖﾂ";
  return Each(text, [&](char16_t c) {
    if (In(c, 'a', 'z') || In(c, 0xFF41, 0xFF5A)) return static_cast<char16_t>(c - 0x20);
    const std::size_t at = letters_only ? Text16::npos : small.find(c);
    return at == Text16::npos ? c : large[at];
  });
}

inline Text16 SearchKey(const Text16& text) {
  return Each(Upper(Kana(Wide(text)), true), [](char16_t c) {
    return c == 0x2D || c == 0x2212 ? u'\uFF0D' : c == 0x20 ? u'\u3000' : c;
  });
}

inline Text16 SortKey(const Text16& text) {
  const Text16 dashes = u"\u002D\u2010\u2015\u2212\uFF0D\uFF70\u30FC";
  return Each(Upper(Kana(Wide(text)), false), [&](char16_t c) {
    return dashes.find(c) != Text16::npos ? u'\u30FC' : c == 0x20 ? u'\u3000' : c;
  });
}

}  // namespace stepwise

// Texts of the characters that conversions act on, marks above all, with anything else between.
inline Text16 RandomText(std::mt19937& random, std::size_t longest) {
  static const Text16 kMarks = u"\uFF9E\uFF9F\u309B\u309C\u3099";
  Text16 text;
  for (std::size_t left = random() % (longest + 1); left > 0; --left) {
    switch (random() % 7) {
      case 0:
        text += static_cast<char16_t>(0x20 + random() % 0x60);
        break;
      case 1:
        text += static_cast<char16_t>(0x3040 + random() % 0xC0);
        break;
      case 2:
      case 3:
        text += static_cast<char16_t>(0xFF61 + random() % 0x3F);
        break;
      case 4:
        text += kMarks[random() % kMarks.size()];
        break;
      case 5:
        text += u"\u2010\u2015\u2212\uFF0D\uFF41\uFFE5"[random() % 6];
        break;
      default:
        text += static_cast<char16_t>(1 + random() % 0xFFFF);
        break;
    }
  }
  return text;
}

}  // namespace qorgen::tests
