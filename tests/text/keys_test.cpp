#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "qorgen/afx/memory.h"
#include "qorgen/text/string_util.h"

#include "tests/support/text.h"
#include "tests/text/stepwise.h"

namespace {

using namespace qorgen::tests;

// One folding step or key in its three forms, beside its reference.
struct Operation {
  const char* name;
  int (*buffer)(wchar_t*, const wchar_t*);
  int (*string)(CString&, const wchar_t*);
  wchar_t* (*fresh)(const wchar_t*);
  Text16 (*steps)(const Text16&);
  bool key;
};

const Operation kOperations[] = {
    {"kana", CQorStringUtil::GanaToKana, CQorStringUtil::GanaToKana, CQorStringUtil::GanaToKana,
     stepwise::Kana, false},
    {"plain", CQorStringUtil::DakuonToSeion, CQorStringUtil::DakuonToSeion, CQorStringUtil::DakuonToSeion,
     stepwise::Plain, false},
    {"upper", [](wchar_t* d, const wchar_t* s) { return CQorStringUtil::ToUpperCase(d, s, 0); },
     [](CString& d, const wchar_t* s) { return CQorStringUtil::ToUpperCase(d, s, 0); },
     [](const wchar_t* s) { return CQorStringUtil::ToUpperCase(s, 0); },
     [](const Text16& s) { return stepwise::Upper(s, false); }, false},
    {"letters", [](wchar_t* d, const wchar_t* s) { return CQorStringUtil::ToUpperCase(d, s, 1); },
     [](CString& d, const wchar_t* s) { return CQorStringUtil::ToUpperCase(d, s, 1); },
     [](const wchar_t* s) { return CQorStringUtil::ToUpperCase(s, 1); },
     [](const Text16& s) { return stepwise::Upper(s, true); }, false},
    {"base", [](wchar_t* d, const wchar_t* s) { return CQorStringUtil::GetBaseStrForSearch(d, s, 2000); },
     CQorStringUtil::GetBaseStrForSearch, CQorStringUtil::GetBaseStrForSearch, stepwise::SearchKey, true},
    {"search", [](wchar_t* d, const wchar_t* s) { return CQorStringUtil::GetSearchStrForSearch(d, s, 2000); },
     CQorStringUtil::GetSearchStrForSearch, CQorStringUtil::GetSearchStrForSearch, stepwise::SearchKey, true},
    {"sort", [](wchar_t* d, const wchar_t* s) { return CQorStringUtil::GetStringForSort(d, s, 2000); },
     CQorStringUtil::GetStringForSort, CQorStringUtil::GetStringForSort, stepwise::SortKey, true},
};

void ExpectAllForms(const Operation& operation, const Text16& text) {
  const WideCopy source(text);
  const Text16 expected = operation.steps(text);
  const int length = static_cast<int>(operation.key ? expected.size() : text.size());
  static wchar_t buffer[2000];
  ASSERT_EQ(length, operation.buffer(buffer, source)) << operation.name;
  ASSERT_EQ(expected, FromWide(buffer)) << operation.name << ' ' << Utf8(source);
  CString string(L"before");
  ASSERT_EQ(length, operation.string(string, source)) << operation.name;
  ASSERT_EQ(expected, FromWide(string)) << operation.name;
  ASSERT_EQ(expected.size(), static_cast<std::size_t>(string.GetLength()));
  wchar_t* fresh = operation.fresh(source);
  ASSERT_EQ(expected, FromWide(fresh)) << operation.name;
  QorFree(fresh);
}

TEST(Folding, of_every_unit_alone_and_marked) {
  for (const Operation& operation : kOperations) {
    for (unsigned int c = 1; c <= 0xFFFF; ++c) {
      const auto unit = static_cast<char16_t>(c);
      wchar_t source[] = {static_cast<wchar_t>(c), 0xFF9E, 0xFF9F, 0};
      for (std::size_t length = 1; length <= 3; ++length) {
        if (length > 1 && (c < 0x3000 || c > 0x30FF) && c < 0xFF00) continue;
        source[1] = length > 1 ? 0xFF9E : 0;
        CString string;
        operation.string(string, source);
        const Text16 text = Text16(1, unit) + (length > 1 ? u"\uFF9E\uFF9F" : u"");
        ASSERT_EQ(operation.steps(text), FromWide(string)) << operation.name << std::hex << ' ' << c;
      }
    }
  }
}

TEST(Folding, texts_match_the_steps) {
  std::mt19937 random(32);
  for (int i = 0; i < 2000; ++i) {
    const Text16 text = RandomText(random, i % 40 == 0 ? 900 : 24);
    for (const Operation& operation : kOperations) ASSERT_NO_FATAL_FAILURE(ExpectAllForms(operation, text));
  }
}

TEST(Folding, examples) {
  const auto plain = [](const wchar_t* text) { return TakeUtf8(CQorStringUtil::DakuonToSeion(text)); };
  EXPECT_EQ("ﾊｶ", plain(L"ﾊﾞｶﾞ"));
  EXPECT_EQ("カハウゔ゛", plain(L"ガパヴゔ゛"));
  EXPECT_EQ("かつっハ", plain(L"がづっハ"));
  EXPECT_EQ("ＡAッゎ", TakeUtf8(CQorStringUtil::ToUpperCase(L"ａaッゎ", 1)));
  EXPECT_EQ("ＡAツゎヮヵﾂｱ", TakeUtf8(CQorStringUtil::ToUpperCase(L"ａaッゎヮヵｯｧ", 0)));
  EXPECT_EQ("ヴヵヶヮヽ・ー漢", TakeUtf8(CQorStringUtil::GanaToKana(L"ゔゕゖゎゝ゛゜漢")));
  const auto search = [](const wchar_t* text) { return TakeUtf8(CQorStringUtil::GetBaseStrForSearch(text)); };
  const auto sort = [](const wchar_t* text) { return TakeUtf8(CQorStringUtil::GetStringForSort(text)); };
  EXPECT_EQ("ガッツ", search(L"ｶﾞｯﾂ"));
  EXPECT_EQ("ガツツ", sort(L"ｶﾞｯﾂ"));
  EXPECT_EQ("ＡＢ　Ｃ", search(L"ab c"));
  EXPECT_EQ("ン・ンー", search(L"んﾞんﾟ"));
  EXPECT_EQ("カブシキ", search(L"かぶしき"));
  EXPECT_EQ("－－ー", search(L"-\u2212ｰ"));
  EXPECT_EQ(sort(L"アート"), sort(L"ｱ-ﾄ"));
  EXPECT_EQ(sort(L"アート"), sort(L"あーと"));
}

TEST(Folding, null_and_overlapping_texts) {
  for (const Operation& operation : kOperations) {
    CString string(L"ｶﾞ");
    EXPECT_EQ(0, operation.string(string, nullptr)) << operation.name;
    EXPECT_TEXT(L"ｶﾞ", string);
    EXPECT_EQ(nullptr, operation.fresh(nullptr)) << operation.name;
    static wchar_t buffer[2000] = {};
    const Text16 text = u"かﾞっｶﾟａ-";
    const WideCopy source(text);
    for (std::size_t i = 0; i <= text.size(); ++i) buffer[i] = source[i];
    operation.buffer(buffer, buffer);
    EXPECT_EQ(operation.steps(text), FromWide(buffer)) << operation.name;
    string = source;
    operation.string(string, string);
    EXPECT_EQ(operation.steps(text), FromWide(string)) << operation.name;
    const CString shared(string);
    operation.string(string, L"zzz");
    EXPECT_EQ(operation.steps(text), FromWide(shared)) << operation.name;
  }
}

TEST(Keys, are_cut_at_the_capacity) {
  struct {
    int capacity, result;
    const wchar_t* stored;
  } const rows[] = {
      {0, 0, L"#######"}, {-5, 0, L"#######"}, {1, 1, L""},       {2, 2, L"ガ"},
      {3, 3, L"ガッ"},    {4, 3, L"ガッツ"},   {5, 3, L"ガッツ"}, {8, 3, L"ガッツ"},
  };
  for (const auto& row : rows) {
    wchar_t buffer[] = L"#######";
    EXPECT_EQ(row.result, CQorStringUtil::GetSearchStrForSearch(buffer, L"ｶﾞｯﾂ", row.capacity));
    EXPECT_TEXT(row.stored, buffer) << row.capacity;
    if (row.capacity > 0) {
      EXPECT_EQ(0, buffer[row.capacity - 1]);
    }
    if (row.capacity < 7) {
      EXPECT_EQ(L'#', buffer[std::max(row.capacity, 0)]) << "written beyond the capacity";
    }
  }
  EXPECT_EQ(3, CQorStringUtil::GetStringForSort(static_cast<wchar_t*>(nullptr), L"ｶﾞｯﾂ", -1));
  wchar_t kept[] = L"kept";
  EXPECT_EQ(0, CQorStringUtil::GetStringForSort(kept, nullptr, 5));
  EXPECT_TEXT(L"kept", kept);
  // A mark behind the last place that is stored still fuses.
  wchar_t two[2];
  EXPECT_EQ(1, CQorStringUtil::GetStringForSort(two, L"ｶﾞ", 2));
  EXPECT_TEXT(L"ガ", two);
}

TEST(Keys, length_alone_matches_the_key) {
  std::mt19937 random(33);
  for (int i = 0; i < 2000; ++i) {
    const Text16 text = RandomText(random, 20);
    EXPECT_EQ(static_cast<int>(stepwise::SortKey(text).size()),
              CQorStringUtil::GetStringForSort(static_cast<wchar_t*>(nullptr), WideCopy(text), 0));
  }
}

}  // namespace
