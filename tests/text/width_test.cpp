#include <gtest/gtest.h>
#include <vector>

#include "qorgen/afx/memory.h"
#include "qorgen/text/string_util.h"

#include "tests/support/text.h"
#include "tests/text/stepwise.h"

namespace {

using namespace qorgen::tests;

TEST(CharType, of_every_unit_and_beyond) {
  struct Range {
    unsigned int type, first, last;
  };
  // In the order of the tests: the first range that holds a unit decides.
  const Range ranges[] = {
      {0x001, 0x41, 0x5A},     {0x001, 0x61, 0x7A},     {0x002, 0x30, 0x39},     {0x004, 0x21, 0x2F},
      {0x004, 0x3A, 0x40},     {0x004, 0x5B, 0x60},     {0x004, 0x7B, 0x7E},     {0x010, 0xFF21, 0xFF3A},
      {0x010, 0xFF41, 0xFF5A}, {0x020, 0xFF10, 0xFF19}, {0x040, 0xFF01, 0xFF0F}, {0x040, 0xFF1A, 0xFF20},
      {0x040, 0xFF3B, 0xFF40}, {0x040, 0xFF5B, 0xFF5E}, {0x080, 0x30A1, 0x30FE}, {0x100, 0x3041, 0x309E},
      {0x200, 0x2000, 0x9FA5}, {0x008, 0xFF61, 0xFF9F},
  };
  for (unsigned int c = 0; c <= 0x20000; ++c) {
    unsigned int expected = 0;
    for (const Range& range : ranges) {
      if (expected == 0 && c >= range.first && c <= range.last) expected = range.type;
    }
    ASSERT_EQ(expected, CQorStringUtil::GetCharType(c)) << std::hex << c;
  }
  EXPECT_EQ(CHARTYPE_KATAKANA, CQorStringUtil::GetCharType(0x30FC));
  EXPECT_EQ(CHARTYPE_HALFKANA, CQorStringUtil::GetCharType(0xFF9E));
  EXPECT_EQ(0u, CQorStringUtil::GetCharType(0xFFFFFFFF));
}

TEST(Width, of_every_unit) {
  for (unsigned int c = 0; c <= 0xFFFF; ++c) {
    const auto unit = static_cast<char16_t>(c);
    ASSERT_EQ(stepwise::WideChar(unit), CQorStringUtil::ToWideChar(c)) << std::hex << c;
    ASSERT_EQ(stepwise::HalfChar(unit), CQorStringUtil::ToHalfChar(c)) << std::hex << c;
    if (c == 0) continue;
    const Text16 text(1, unit);
    const WideCopy source(text);
    wchar_t got[3];
    EXPECT_EQ(0, CQorStringUtil::ToHalfString(got, source));
    ASSERT_EQ(stepwise::Half(text), FromWide(got)) << std::hex << c;
    EXPECT_EQ(0, CQorStringUtil::ToWideString(got, source));
    ASSERT_EQ(stepwise::Wide(text), FromWide(got)) << std::hex << c;
  }
  EXPECT_EQ(0x1F600u, CQorStringUtil::ToWideChar(0x1F600));
  EXPECT_EQ(0x1FF21u, CQorStringUtil::ToHalfChar(0x1FF21));
}

TEST(Width, fuses_every_unit_with_each_mark) {
  for (unsigned int c = 1; c <= 0xFFFF; ++c) {
    for (char16_t mark : {u'\uFF9E', u'\uFF9F'}) {
      const Text16 text{static_cast<char16_t>(c), mark, mark};
      wchar_t got[4];
      CQorStringUtil::ToWideString(got, WideCopy(text));
      ASSERT_EQ(stepwise::Wide(text), FromWide(got)) << std::hex << c;
    }
  }
}

TEST(Width, examples) {
  struct {
    const wchar_t *source, *half, *wide;
  } const rows[] = {
      {L"", L"", L""},
      {L"ガ", L"ｶﾞ", L"ガ"},
      {L"ぱヴゔ", L"ﾊﾟｳﾞｳ", L"ぱヴゔ"},
      {L"ゎヮヵゕ", L"ゎヮｶゕ", L"ゎヮヵゕ"},
      {L"ﾞｶ", L"ﾞｶ", L"゛カ"},
      {L"ｱﾞ", L"ｱﾞ", L"ア゛"},
      {L"ｳﾞうﾞ", L"ｳﾞｳﾞ", L"ヴう゛"},
      {L"ｶﾞﾞ", L"ｶﾞﾞ", L"ガ゛"},
      {L"ﾊﾞﾟ", L"ﾊﾞﾟ", L"バ゜"},
      {L"カ゛", L"ｶﾞ", L"カ゛"},  // a spacing mark never fuses
      {L"A1 \"'\\~", L"A1 \"'\\~", L"Ａ１　”’￥～"},
      {L"Ａ１　”’￥～－", L"A1　”’￥~-", L"Ａ１　”’￥～－"},
      {L"。「」、・ー", L"。「」、･ｰ", L"。「」、・ー"},
      {L"｡｢｣､･ｰ", L"｡｢｣､･ｰ", L"。「」、・ー"},
      {L"\xD83D\xDE00漢", L"\xD83D\xDE00漢", L"\xD83D\xDE00漢"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Utf8(row.half), TakeUtf8(CQorStringUtil::ToHalfString(row.source)));
    EXPECT_EQ(Utf8(row.wide), TakeUtf8(CQorStringUtil::ToWideString(row.source)));
  }
}

TEST(Width, strings_match_the_steps) {
  std::mt19937 random(31);
  CString string;
  for (int i = 0; i < 4000; ++i) {
    const Text16 text = RandomText(random, i % 50 == 0 ? 700 : 24);
    const WideCopy source(text);
    std::vector<wchar_t> buffer(2 * text.size() + 1, L'#');
    CQorStringUtil::ToHalfString(buffer.data(), source);
    ASSERT_EQ(stepwise::Half(text), FromWide(buffer.data()));
    CQorStringUtil::ToHalfString(string, source);
    ASSERT_EQ(stepwise::Half(text), FromWide(string));
    ASSERT_EQ(stepwise::Half(text).size(), static_cast<std::size_t>(string.GetLength()));
    CQorStringUtil::ToWideString(string, source);
    ASSERT_EQ(stepwise::Wide(text), FromWide(string));
    wchar_t* fresh = CQorStringUtil::ToWideString(source);
    ASSERT_EQ(stepwise::Wide(text), FromWide(fresh));
    QorFree(fresh);
  }
}

TEST(Width, null_and_overlapping_texts) {
  CString text(L"がｶﾞ");
  EXPECT_EQ(0, CQorStringUtil::ToHalfString(text, nullptr));
  EXPECT_EQ(0, CQorStringUtil::ToWideString(text, nullptr));
  EXPECT_TEXT(L"がｶﾞ", text);
  EXPECT_EQ(nullptr, CQorStringUtil::ToHalfString(nullptr));
  EXPECT_EQ(nullptr, CQorStringUtil::ToWideString(nullptr));
  wchar_t buffer[16] = L"x";
  EXPECT_EQ(0, CQorStringUtil::ToHalfString(buffer, nullptr));
  EXPECT_TEXT(L"", buffer);

  const CString shared(text);
  CQorStringUtil::ToWideString(text, text);
  EXPECT_TEXT(L"がガ", text);
  CQorStringUtil::ToHalfString(text, text);
  EXPECT_TEXT(L"ｶﾞｶﾞ", text);
  CQorStringUtil::ToWideString(text, static_cast<const wchar_t*>(text) + 2);
  EXPECT_TEXT(L"ガ", text);
  EXPECT_TEXT(L"がｶﾞ", shared);

  wchar_t in_place[16] = L"ガギグ";
  CQorStringUtil::ToHalfString(in_place, in_place);
  EXPECT_TEXT(L"ｶﾞｷﾞｸﾞ", in_place);
  CQorStringUtil::ToWideString(in_place, in_place);
  EXPECT_TEXT(L"ガギグ", in_place);
  CQorStringUtil::ToHalfString(in_place + 1, in_place);
  EXPECT_TEXT(L"ガｶﾞｷﾞｸﾞ", in_place);
  CQorStringUtil::ToWideString(in_place + 2, in_place);
  EXPECT_TEXT(L"ガｶガガギグ", in_place);
}

// Half-width kana come back from full width, apart from the punctuation that stays there.
TEST(Width, half_kana_make_the_round_trip) {
  for (wchar_t c = 0xFF65; c <= 0xFF9F; ++c) {
    for (wchar_t mark : {L'\0', L'\xFF9E', L'\xFF9F'}) {
      const wchar_t text[] = {c, mark, 0};
      wchar_t wide[3], half[5];
      CQorStringUtil::ToWideString(wide, text);
      CQorStringUtil::ToHalfString(half, wide);
      EXPECT_TEXT(text, half);
    }
  }
}

}  // namespace
