// Widths, folding, keys and vertical numerals, each in its forms, held against the rules one step at a time.

#include <algorithm>

#include "qorgen/afx/memory.h"
#include "qorgen/text/string_util.h"

#include "tests/support/testing.h"
#include "tests/text/stepwise.h"

using namespace qorgen::tests;

namespace {

using Text = CQorStringUtil;

TEST(CharType, OfEveryUnitAndBeyond) {
  struct Range {
    unsigned int type, first, last;
  };
  // In the order of the tests: the first range that holds a unit decides.
  const Range ranges[] = {
      {0x001, 0x41, 0x5A},     {0x001, 0x61, 0x7A},     {0x002, 0x30, 0x39},     {0x004, 0x21, 0x7E},
      {0x010, 0xFF21, 0xFF3A}, {0x010, 0xFF41, 0xFF5A}, {0x020, 0xFF10, 0xFF19}, {0x040, 0xFF01, 0xFF5E},
      {0x080, 0x30A1, 0x30FE}, {0x100, 0x3041, 0x309E}, {0x200, 0x2000, 0x9FA5}, {0x008, 0xFF61, 0xFF9F},
  };
  for (unsigned int c = 0; c <= 0x20000; ++c) {
    const auto* range =
        std::find_if(ranges, std::end(ranges), [c](const Range& r) { return c >= r.first && c <= r.last; });
    ASSERT_EQ(range == std::end(ranges) ? 0 : range->type, Text::GetCharType(c)) << std::hex << c;
  }
  EXPECT_EQ(0u, Text::GetCharType(0xFFFFFFFF));
}

TEST(Width, OfSingleCharacters) {
  for (unsigned int c = 0; c <= 0xFFFF; ++c) {
    ASSERT_EQ(stepwise::WideChar(static_cast<char16_t>(c)), Text::ToWideChar(c)) << std::hex << c;
    ASSERT_EQ(stepwise::HalfChar(static_cast<char16_t>(c)), Text::ToHalfChar(c)) << std::hex << c;
  }
  EXPECT_EQ(0x1F600u, Text::ToWideChar(0x1F600));
  EXPECT_EQ(0x1FF21u, Text::ToHalfChar(0x1FF21));
}

enum class Gives { kZero, kSourceLength, kKeyLength };  // what the int forms give

// One conversion in its forms (the vertical numerals have none for strings) beside its rules.
struct Conversion {
  const char* name;
  int (*buffer)(wchar_t*, const wchar_t*);
  int (*string)(CString&, const wchar_t*);
  wchar_t* (*fresh)(const wchar_t*);
  Text16 (*steps)(const Text16&);
  Gives gives;
};

constexpr int kRoom = 2000;

const Conversion kConversions[] = {
    {"half", Text::ToHalfString, Text::ToHalfString, Text::ToHalfString, stepwise::Half, Gives::kZero},
    {"wide", Text::ToWideString, Text::ToWideString, Text::ToWideString, stepwise::Wide, Gives::kZero},
    {"kana", Text::GanaToKana, Text::GanaToKana, Text::GanaToKana, stepwise::Kana, Gives::kSourceLength},
    {"plain", Text::DakuonToSeion, Text::DakuonToSeion, Text::DakuonToSeion,
     [](const Text16& s) { return stepwise::Plain(s); }, Gives::kSourceLength},
    {"upper", [](wchar_t* d, const wchar_t* s) { return Text::ToUpperCase(d, s, 0); },
     [](CString& d, const wchar_t* s) { return Text::ToUpperCase(d, s, 0); },
     [](const wchar_t* s) { return Text::ToUpperCase(s, 0); }, stepwise::Upper, Gives::kSourceLength},
    {"letters", [](wchar_t* d, const wchar_t* s) { return Text::ToUpperCase(d, s, 1); },
     [](CString& d, const wchar_t* s) { return Text::ToUpperCase(d, s, 1); },
     [](const wchar_t* s) { return Text::ToUpperCase(s, 1); }, stepwise::Letters, Gives::kSourceLength},
    {"base", [](wchar_t* d, const wchar_t* s) { return Text::GetBaseStrForSearch(d, s, kRoom); },
     Text::GetBaseStrForSearch, Text::GetBaseStrForSearch, stepwise::SearchKey, Gives::kKeyLength},
    {"search", [](wchar_t* d, const wchar_t* s) { return Text::GetSearchStrForSearch(d, s, kRoom); },
     Text::GetSearchStrForSearch, Text::GetSearchStrForSearch, stepwise::SearchKey, Gives::kKeyLength},
    {"sort", [](wchar_t* d, const wchar_t* s) { return Text::GetStringForSort(d, s, kRoom); },
     Text::GetStringForSort, Text::GetStringForSort, stepwise::SortKey, Gives::kKeyLength},
    {"chinese", Text::ToColumnarWritingChineseNumerals, nullptr, Text::ToColumnarWritingChineseNumerals,
     stepwise::ChineseNumerals, Gives::kKeyLength},
    {"numerals", Text::ToColumnarWritingWideNumerals, nullptr, Text::ToColumnarWritingWideNumerals,
     stepwise::WideNumerals, Gives::kKeyLength},
};

void ExpectAllForms(const Conversion& conversion, const Text16& text) {
  SCOPED_TRACE(conversion.name);
  const WideCopy source(text);
  const Text16 expected = conversion.steps(text);
  const std::size_t lengths[] = {0, text.size(), expected.size()};
  const int given = static_cast<int>(lengths[static_cast<int>(conversion.gives)]);
  static wchar_t buffer[kRoom];
  ASSERT_EQ(given, conversion.buffer(buffer, source));
  ASSERT_EQ(expected, FromWide(buffer)) << Utf8(source);
  ASSERT_EQ(Utf8(buffer), TakeUtf8(conversion.fresh(source)));
  if (conversion.string == nullptr) return;
  CString string(L"before");
  ASSERT_EQ(given, conversion.string(string, source));
  ASSERT_EQ(expected, FromWide(string));
  ASSERT_EQ(expected.size(), static_cast<std::size_t>(string.GetLength()));
}

TEST(Conversions, OfEveryUnitAloneAndMarked) {
  static wchar_t got[kRoom];
  for (const Conversion& conversion : kConversions) {
    for (unsigned int c = 1; c <= 0xFFFF; ++c) {
      const bool may_fuse = (c >= 0x3000 && c <= 0x30FF) || c >= 0xFF00;
      for (const char16_t* marks : {u"", u"\uFF9E\uFF9F", u"\uFF9F\uFF9E"}) {
        if (*marks != 0 && !may_fuse) continue;
        const Text16 text = static_cast<char16_t>(c) + Text16(marks);
        conversion.buffer(got, WideCopy(text));
        ASSERT_EQ(conversion.steps(text), FromWide(got)) << conversion.name << std::hex << ' ' << c;
      }
    }
  }
}

TEST(Conversions, OfTextsMatchTheStepsInEveryForm) {
  std::mt19937 random(32);
  for (int i = 0; i < 2000; ++i) {
    const Text16 text = RandomText(random, i % 40 == 0 ? 900 : 24);
    for (const Conversion& conversion : kConversions)
      ASSERT_NO_FATAL_FAILURE(ExpectAllForms(conversion, text));
    ASSERT_EQ(static_cast<int>(stepwise::SortKey(text).size()),
              Text::GetStringForSort(static_cast<wchar_t*>(nullptr), WideCopy(text), 0));
  }
}

TEST(Conversions, Examples) {
  using Row = std::tuple<wchar_t* (*)(const wchar_t*), const wchar_t*, const char*>;
  for (const auto& [convert, source, expected] :
       Rows(Row(Text::ToHalfString, L"ガぱヴゔ ゎヮヵゕ Ａ１　”’￥～－。「」、・ー\xD83D\xDE00漢",
                "ｶﾞﾊﾟｳﾞｳ ゎヮｶゕ A1　”’￥~-。「」、･ｰ\U0001F600漢"),
            Row(Text::ToWideString, L"ﾞｶ ｱﾞ ｳﾞうﾞ ｶﾞﾞ ﾊﾞﾟ A1\"'\\~",
                "゛カ　ア゛　ヴう゛　ガ゛　バ゜　Ａ１”’￥～"),
            Row(Text::DakuonToSeion, L"ﾊﾞｶﾞ ガパヴゔ゛ がづっハ", "ﾊｶ カハウゔ゛ かつっハ"),
            Row(Text::GetBaseStrForSearch, L"ｶﾞｯﾂ ab んﾞんﾟ かぶ -\u2212ｰ",
                "ガッツ　ＡＢ　ン・ンー　カブ　－－ー"),
            Row(Text::GetStringForSort, L"ｶﾞｯﾂ ｱ-ﾄ アート あーと", "ガツツ　アート　アート　アート"),
            Row(Text::ToColumnarWritingChineseNumerals, L"12-3 ０９‐－− ｶﾞa", "一二ー三　〇九ーー−　ガａ"),
            Row(Text::ToColumnarWritingWideNumerals, L"12-3 ０９‐－− ｶﾞa", "１２―３　０９――−　ガａ"))) {
    EXPECT_EQ(expected, TakeUtf8(convert(source)));
  }
}

TEST(Conversions, OfNullAndOverlappingTexts) {
  const Text16 text = u"かﾞっｶﾟａ-ガ";
  const WideCopy source(text);
  for (const Conversion& conversion : kConversions) {
    SCOPED_TRACE(conversion.name);
    const Text16 expected = conversion.steps(text);
    EXPECT_EQ(nullptr, conversion.fresh(nullptr));
    // The result lies on its source, before it and behind its start.
    for (int offset : {0, 1, -1}) {
      static wchar_t buffer[kRoom + 2];
      std::copy_n(static_cast<const wchar_t*>(source), text.size() + 1, buffer + 1);
      conversion.buffer(buffer + 1 + offset, buffer + 1);
      EXPECT_EQ(expected, FromWide(buffer + 1 + offset)) << offset;
    }
    wchar_t buffer[] = L"kept";
    EXPECT_EQ(0, conversion.buffer(buffer, nullptr));
    const bool is_key = conversion.gives == Gives::kKeyLength && conversion.string != nullptr;
    EXPECT_TEXT(is_key ? L"kept" : L"", buffer);
    if (conversion.string == nullptr) continue;
    CString string(source);
    EXPECT_EQ(0, conversion.string(string, nullptr));
    EXPECT_EQ(text, FromWide(string));
    CString part(string);
    conversion.string(part, static_cast<const wchar_t*>(part) + 2);
    EXPECT_EQ(conversion.steps(text.substr(2)), FromWide(part)) << "and the string that shared its text:";
    conversion.string(string, string);
    EXPECT_EQ(expected, FromWide(string));
  }
}

TEST(Keys, AreCutAtTheCapacity) {
  const std::tuple<int, int, const wchar_t*> rows[] = {
      {0, 0, L"########"}, {-5, 0, L"########"}, {1, 1, L""},       {2, 2, L"ガ"},
      {3, 3, L"ガッ"},     {4, 3, L"ガッツ"},    {5, 3, L"ガッツ"}, {8, 3, L"ガッツ"},
  };
  for (const auto& [capacity, result, stored] : rows) {
    wchar_t buffer[9] = L"########";
    EXPECT_EQ(result, Text::GetSearchStrForSearch(buffer, L"ｶﾞｯﾂ", capacity));
    EXPECT_TEXT(stored, buffer) << capacity;
    EXPECT_TRUE(capacity <= 0 || buffer[capacity - 1] == 0);
    EXPECT_EQ(capacity < 8 ? L'#' : 0, buffer[std::max(capacity, 0)]) << "written beyond the capacity";
  }
  wchar_t exact[] = L"####";
  EXPECT_EQ(3, Text::GetBaseStrForSearch(exact, L"abc", 3));
  EXPECT_TEXT(L"ＡＢ", exact);
  EXPECT_EQ(L'#', exact[3]) << "a key as long as the buffer";
  // A mark behind the last place that is stored still fuses.
  wchar_t two[2];
  EXPECT_EQ(1, Text::GetStringForSort(two, L"ｶﾞ", 2));
  EXPECT_TEXT(L"ガ", two);
}

}  // namespace
