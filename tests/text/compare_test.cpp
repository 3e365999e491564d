#include <gtest/gtest.h>
#include <string>

#include "qorgen/text/find_text.h"
#include "qorgen/text/string_util.h"

#include "tests/support/text.h"
#include "tests/text/stepwise.h"

namespace {

using namespace qorgen::tests;

// What a mode means, on whole strings; STARTSWITH and ENDSWITH by the place of the first occurrence.
int Expected(const Text16& text, const Text16& pattern, int mode) {
  if (pattern.empty() && mode >= 1 && mode <= 4) return 0;
  switch (mode) {
    case 1:
      return text.find(pattern) != Text16::npos;
    case 2:
      return text.find(pattern) == 0;
    case 3:
      return Text16(text.rbegin(), text.rend()).find(Text16(pattern.rbegin(), pattern.rend())) == 0;
    case 4:
      return text.find(pattern) == Text16::npos;
    case 5:
      return text != pattern;
    default:
      return text == pattern;
  }
}

TEST(StrCompare, modes) {
  std::mt19937 random(34);
  const auto short_text = [&](std::size_t longest) {
    Text16 text;
    for (std::size_t left = random() % (longest + 1); left > 0; --left) text += u"abカ"[random() % 3];
    return text;
  };
  for (int i = 0; i < 20000; ++i) {
    const Text16 text = short_text(8), pattern = short_text(3);
    for (int mode : {0, 1, 2, 3, 4, 5, 6, 255}) {
      ASSERT_EQ(Expected(text, pattern, mode), CQorStringUtil::StrCompare(WideCopy(text), WideCopy(pattern),
                                                                          static_cast<unsigned char>(mode)))
          << Utf8(WideCopy(text)) << ' ' << Utf8(WideCopy(pattern)) << ' ' << mode;
    }
  }
}

TEST(StrCompare, null_and_empty) {
  for (unsigned char mode = 0; mode < 7; ++mode) {
    EXPECT_EQ(0, CQorStringUtil::StrCompare(nullptr, L"a", mode));
    EXPECT_EQ(0, CQorStringUtil::StrCompare(L"a", nullptr, mode));
    EXPECT_EQ(0, CQorStringUtil::StrCompare(nullptr, nullptr, mode, 0));
  }
  EXPECT_EQ(1, CQorStringUtil::StrCompare(L"", L"", STRCOMPARE_EQUAL));
  EXPECT_EQ(0, CQorStringUtil::StrCompare(L"a", L"", STRCOMPARE_CONTAINS));
  EXPECT_EQ(0, CQorStringUtil::StrCompare(L"a", L"", STRCOMPARE_NOTCONTAINS));
  // With folding, null takes part as an empty text.
  EXPECT_EQ(1, CQorStringUtil::StrCompare(nullptr, L"a", STRCOMPARE_NOTEQUAL, 1));
  EXPECT_EQ(1, CQorStringUtil::StrCompare(nullptr, L"", STRCOMPARE_EQUAL, 1));
}

TEST(StrCompare, folds_width_case_and_small_kana) {
  EXPECT_EQ(1, CQorStringUtil::StrCompare(L"ｶﾞｯﾂ abc", L"ガツツ　ＡＢＣ", STRCOMPARE_EQUAL, 1));
  EXPECT_EQ(1, CQorStringUtil::StrCompare(L"ｯﾞ", L"ヅ", STRCOMPARE_EQUAL, 1)) << "large before it is widened";
  EXPECT_EQ(0, CQorStringUtil::StrCompare(L"か", L"カ", STRCOMPARE_EQUAL, 1)) << "hiragana stays";
  EXPECT_EQ(0, CQorStringUtil::StrCompare(L"a", L"A", STRCOMPARE_EQUAL, 0));
  std::mt19937 random(35);
  for (int i = 0; i < 3000; ++i) {
    const Text16 a = RandomText(random, 6), b = RandomText(random, 2);
    const auto fold = [](const Text16& text) { return stepwise::Wide(stepwise::Upper(text, false)); };
    EXPECT_EQ(1, CQorStringUtil::StrCompare(WideCopy(a), WideCopy(fold(a)), STRCOMPARE_EQUAL, 1) |
                     (fold(fold(a)) != fold(a) ? 1 : 0));
    for (unsigned char mode = 0; mode <= 5; ++mode) {
      ASSERT_EQ(Expected(fold(a), fold(b), mode),
                CQorStringUtil::StrCompare(WideCopy(a), WideCopy(b), mode, 1));
    }
  }
}

TEST(StrCompareForSearch, last_character_may_wait_for_its_mark) {
  struct {
    const wchar_t *text, *pattern;
    unsigned char mode;
    int expected;
  } const rows[] = {
      {L"ガス", L"か", STRCOMPARE_STARTSWITH, 1},
      {L"パン", L"は", STRCOMPARE_STARTSWITH, 1},
      {L"バン", L"ﾊ", STRCOMPARE_STARTSWITH, 1},
      {L"ヴァン", L"う", STRCOMPARE_STARTSWITH, 1},
      {L"ガラス", L"からす", STRCOMPARE_EQUAL, 0},  // only the last one
      {L"カス", L"ガ", STRCOMPARE_STARTSWITH, 0},   // and never the text
      {L"カブシキ", L"かぶ", STRCOMPARE_STARTSWITH, 1},
      {L"カ", L"か", STRCOMPARE_NOTEQUAL, 1},  // a variant turns the negative modes
      {L"カ", L"か", STRCOMPARE_NOTCONTAINS, 1},
      {L"ア", L"あ", STRCOMPARE_NOTEQUAL, 0},
      {L"ア", L"", STRCOMPARE_CONTAINS, 0},
      {L"", L"", STRCOMPARE_EQUAL, 1},
      {nullptr, L"あ", STRCOMPARE_NOTEQUAL, 0},
      {L"ア", nullptr, STRCOMPARE_NOTEQUAL, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.expected, CQorStringUtil::StrCompareForSearch(row.text, row.pattern, row.mode))
        << Utf8(row.text) << ' ' << Utf8(row.pattern) << ' ' << int{row.mode};
  }
}

TEST(CompareStringW, orders_by_unsigned_units) {
  EXPECT_EQ(0, CQorStringUtil::CompareStringW(L"", L""));
  EXPECT_EQ(-1, CQorStringUtil::CompareStringW(L"", L"a"));
  EXPECT_EQ(1, CQorStringUtil::CompareStringW(L"ab", L"a"));
  EXPECT_EQ(-1, CQorStringUtil::CompareStringW(L"aB", L"ab"));
  EXPECT_EQ(1, CQorStringUtil::CompareStringW(L"\xFF71", L"\x4E00"));
  EXPECT_EQ(1, CQorStringUtil::CompareStringW(L"\xFF71", L"\xD83D\xDE00"));
}

// Periodic and almost periodic texts, where naive methods and wrong shifts show.
TEST(Contains, agrees_with_the_plain_search) {
  std::mt19937 random(36);
  for (int i = 0; i < 20000; ++i) {
    Text16 pattern, text;
    const std::size_t period = 1 + random() % 6;
    const std::size_t length = 15 + random() % 12;
    for (std::size_t k = 0; k < length; ++k) {
      pattern += k < period ? static_cast<char16_t>(u'a' + random() % 2) : pattern[k - period];
    }
    if (random() % 3 == 0) pattern[random() % length] = u'b';
    for (std::size_t k = 0; k < 60; ++k) text += pattern[(k + i) % (random() % 16 == 0 ? length : period)];
    if (random() % 2 == 0) text.replace(random() % 40, random() % 4, pattern);
    const WideCopy wide_text(text), wide_pattern(pattern);
    ASSERT_EQ(text.find(pattern) != Text16::npos,
              qorgen::text::Contains(qorgen::text::ViewOf(wide_text), qorgen::text::ViewOf(wide_pattern)))
        << Utf8(wide_text) << ' ' << Utf8(wide_pattern);
  }
}

TEST(Contains, long_repetitive_texts) {
  const Text16 text(200000, u'a');
  Text16 pattern(50000, u'a');
  EXPECT_EQ(1, CQorStringUtil::StrCompare(WideCopy(text), WideCopy(pattern), STRCOMPARE_CONTAINS));
  pattern.back() = u'b';
  EXPECT_EQ(0, CQorStringUtil::StrCompare(WideCopy(text), WideCopy(pattern), STRCOMPARE_CONTAINS));
  pattern = Text16(1, u'b') + Text16(50000, u'a');
  EXPECT_EQ(0, CQorStringUtil::StrCompare(WideCopy(text), WideCopy(pattern), STRCOMPARE_CONTAINS, 1));
}

}  // namespace
