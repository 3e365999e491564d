
#include "qorgen/afx/array.h"
#include "qorgen/text/internal/find_text.h"
#include "qorgen/text/string_util.h"

#include "tests/support/testing.h"
#include "tests/text/stepwise.h"

using namespace qorgen::tests;

namespace {

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

constexpr unsigned char kModes[] = {0, 1, 2, 3, 4, 5, 6, 255};

TEST(StrCompare, ModesWithAndWithoutFolding) {
  std::mt19937 random(34);
  const auto fold = [](const Text16& text) { return stepwise::Wide(stepwise::Upper(text)); };
  for (int i = 0; i < 20000; ++i) {
    Text16 text, pattern;
    for (unsigned left = random() % 9; left > 0; --left) text += u"abカAｶﾞ"[random() % 6];
    for (unsigned left = random() % 4; left > 0; --left) pattern += u"abカAｶﾞ"[random() % 6];
    if (i % 4 == 0) text = RandomText(random, 6), pattern = RandomText(random, 2);
    if (i % 8 == 0) pattern = fold(text);
    const WideCopy wide_text(text), wide_pattern(pattern);
    for (unsigned char mode : kModes) {
      ASSERT_EQ(Expected(text, pattern, mode), CQorStringUtil::StrCompare(wide_text, wide_pattern, mode, 0))
          << Utf8(wide_text) << ' ' << Utf8(wide_pattern) << ' ' << int{mode};
      ASSERT_EQ(Expected(fold(text), fold(pattern), mode),
                CQorStringUtil::StrCompare(wide_text, wide_pattern, mode, 1))
          << Utf8(wide_text) << ' ' << Utf8(wide_pattern) << ' ' << int{mode};
    }
  }
  EXPECT_EQ(1, CQorStringUtil::StrCompare(L"ｶﾞｯﾂ abc", L"ガツツ　ＡＢＣ", STRCOMPARE_EQUAL, 1));
  EXPECT_EQ(1, CQorStringUtil::StrCompare(L"ｯﾞ", L"ヅ", STRCOMPARE_EQUAL, 1)) << "large before it is widened";
  EXPECT_EQ(0, CQorStringUtil::StrCompare(L"か", L"カ", STRCOMPARE_EQUAL, 1)) << "hiragana stays";
}

TEST(StrCompare, OfNull) {
  for (unsigned char mode : kModes) {
    EXPECT_EQ(0, CQorStringUtil::StrCompare(nullptr, L"a", mode));
    EXPECT_EQ(0, CQorStringUtil::StrCompare(L"a", nullptr, mode));
    EXPECT_EQ(0, CQorStringUtil::StrCompare(nullptr, nullptr, mode, 0));
    // With folding, null takes part as an empty text.
    EXPECT_EQ(Expected(u"", u"A", mode), CQorStringUtil::StrCompare(nullptr, L"A", mode, 1));
    EXPECT_EQ(Expected(u"A", u"", mode), CQorStringUtil::StrCompare(L"A", nullptr, mode, 1));
  }
}

TEST(StrCompareForSearch, LastCharacterMayWaitForItsMark) {
  // ガラス: only the last one waits, and never the text. NOTEQUAL: a variant turns the negative modes.
  using Row = std::tuple<const wchar_t*, const wchar_t*, unsigned char, int>;
  for (const auto& [text, pattern, mode, expected] :
       Rows(Row(L"ガス", L"か", STRCOMPARE_STARTSWITH, 1), Row(L"パン", L"は", STRCOMPARE_STARTSWITH, 1),
            Row(L"バン", L"ﾊ", STRCOMPARE_STARTSWITH, 1), Row(L"ヴァン", L"う", STRCOMPARE_STARTSWITH, 1),
            Row(L"ガラス", L"からす", STRCOMPARE_EQUAL, 0), Row(L"カス", L"ガ", STRCOMPARE_STARTSWITH, 0),
            Row(L"カブシキ", L"かぶ", STRCOMPARE_STARTSWITH, 1), Row(L"カ", L"か", STRCOMPARE_NOTEQUAL, 1),
            Row(L"カ", L"か", STRCOMPARE_NOTCONTAINS, 1), Row(L"ア", L"あ", STRCOMPARE_NOTEQUAL, 0),
            Row(L"ア", L"", STRCOMPARE_CONTAINS, 0), Row(L"", L"", STRCOMPARE_EQUAL, 1),
            Row(nullptr, L"あ", STRCOMPARE_NOTEQUAL, 0), Row(L"ア", nullptr, STRCOMPARE_NOTEQUAL, 0))) {
    EXPECT_EQ(expected, CQorStringUtil::StrCompareForSearch(text, pattern, mode))
        << Utf8(text) << ' ' << Utf8(pattern) << ' ' << int{mode};
  }
}

TEST(CompareStringW, OrdersByUnsignedUnits) {
  const wchar_t* const ordered[] = {L"", L"a", L"aB", L"ab", L"\x4E00", L"\xD83D\xDE00", L"\xFF71"};
  for (int a = 0; a < 7; ++a) {
    for (int b = 0; b < 7; ++b) {
      EXPECT_EQ((a > b) - (a < b), CQorStringUtil::CompareStringW(ordered[a], ordered[b])) << a << ' ' << b;
    }
  }
}

TEST(IsMatch, WantsEveryPattern) {
  // Blank texts match nothing, an empty pattern fails the match, and the text is searched untrimmed.
  using Row = std::tuple<const wchar_t*, std::vector<const wchar_t*>, int, int>;
  for (const auto& [text, list, fold, expected] :
       Rows(Row(L"abc", {}, 0, 0), Row(L"abc", {L"b", L"c"}, 0, 1), Row(L"ＡＢＣ", {L"b", L"c"}, 0, 0),
            Row(L"ＡＢＣ", {L"b", L"c"}, 1, 1), Row(L"ab", {L"b", L"c"}, 1, 0),
            Row(L"ab", {L"b", L"c"}, 0, 0), Row(L"abc", {L"b", L""}, 0, 0), Row(L"abc", {L"", L"b"}, 1, 0),
            Row(L"  \x3000", {L" "}, 0, 0), Row(nullptr, {L" "}, 1, 0), Row(L" a", {L" "}, 0, 1))) {
    CStringArray patterns;
    for (const wchar_t* pattern : list) patterns.Add(pattern);
    EXPECT_EQ(expected, CQorStringUtil::IsMatch(text, patterns, fold)) << Utf8(text) << ' ' << list.size();
  }
}

// Periodic and almost periodic texts, where naive methods and wrong shifts show.
TEST(Contains, AgreesWithThePlainSearch) {
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

// Where a search that steps back would take hours.
TEST(Contains, LongRepetitiveTexts) {
  const Text16 text(200000, u'a');
  const Text16 pattern = Text16(50000, u'a') + u'b' + Text16(50000, u'a');
  for (const int fold : {0, 1})
    EXPECT_EQ(0, CQorStringUtil::StrCompare(WideCopy(text), WideCopy(pattern), STRCOMPARE_CONTAINS, fold));
}

}  // namespace
