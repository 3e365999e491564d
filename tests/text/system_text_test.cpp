#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "qorgen/afx/date_time.h"
#include "qorgen/platform/error.h"
#include "qorgen/text/string_util.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

using namespace qorgen::tests;

TEST(WebText, encodes) {
  struct {
    const wchar_t* text;
    const char* encoded;
  } const rows[] = {
      {L"", ""},
      {nullptr, ""},
      {L"a Z0", "a+Z0"},
      {L"$-_.!*'(),", "$-_.!*'(),"},
      {L"+%&/~\"", "%2B%25%26%2F%7E%22"},
      {L"あ", "%E3%81%82"},
      {L"é\x01", "%C3%A9%01"},
      {L"\xD83D\xDE00", "%F0%9F%98%80"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.encoded, Utf8(CQorStringUtil::EncodeUTF16ToUTF8(row.text)));
  std::string expected;
  CString text;
  for (int i = 0; i < 250; ++i) {
    text.AppendChar(L'漢');
    expected += "%E6%BC%A2";
  }
  EXPECT_EQ(expected, Utf8(CQorStringUtil::EncodeUTF16ToUTF8(text)));
}

TEST(WebText, decodes) {
  struct {
    const char* text;
    const wchar_t* decoded;
  } const rows[] = {
      {"", L""},
      {nullptr, L""},
      {"a+b", L"a+b"},  // not the exact way back
      {"%E3%81%82%e3%81%84", L"あい"},
      {"%F0%9F%98%80", L"\xD83D\xDE00"},
      {"100%", L"100%"},
      {"%4", L"%4"},
      {"%zz%4g%41", L"%zz%4gA"},
      {"a%00b", L"a"},
  };
  for (const auto& row : rows) {
    wchar_t dest[32] = L"#";
    EXPECT_EQ(1, CQorStringUtil::EncodeUTF8ToUTF16(row.text, dest));
    EXPECT_TEXT(row.decoded, dest);
  }
}

TEST(WebText, refuses_what_its_buffer_cannot_hold) {
  std::vector<wchar_t> dest(1012, L'#');
  EXPECT_EQ(1, CQorStringUtil::EncodeUTF8ToUTF16(std::string(1011, 'a').c_str(), dest.data()));
  EXPECT_EQ(1011, CString::StringLength(dest.data()));
  dest[0] = L'#';
  EXPECT_EQ(0, CQorStringUtil::EncodeUTF8ToUTF16(std::string(1012, 'a').c_str(), dest.data()));
  EXPECT_EQ(0, CQorStringUtil::EncodeUTF8ToUTF16(std::string(100000, '%').c_str(), dest.data()));
  EXPECT_EQ(L'#', dest[0]);
  std::string escaped;
  for (int i = 0; i < 1011; ++i) escaped += "%41";
  EXPECT_EQ(1, CQorStringUtil::EncodeUTF8ToUTF16(escaped.c_str(), dest.data()));
}

TEST(Versions, to_text_and_back) {
  EXPECT_TEXT(L"1.2.3.4", CQorStringUtil::NumberToVersionString(0x01020304));
  EXPECT_TEXT(L"255.255.255.255", CQorStringUtil::NumberToVersionString(ULONG_MAX));
  EXPECT_TEXT(L"1.2.3.4", CQorStringUtil::NumberToVersionString(0x00010002, 0x00030004));
  EXPECT_TEXT(L"65535.65535.65535.65535", CQorStringUtil::NumberToVersionString(ULONG_MAX, ULONG_MAX));
  struct {
    const wchar_t* text;
    unsigned long packed, high, low;
  } const rows[] = {
      {L"1.2.3.4", 0x04030201, 0x00010002, 0x00030004},
      {L"1.2", 0x00000201, 0x00010002, 0},
      {L"v10, 20-30 build 40 and 50", 0x281E140A, 0x000A0014, 0x001E0028},
      {L"abc", 0, 0, 0},
      {L"7", 7, 0x00070000, 0},
      {L"1..2", 0x0201, 0x00010002, 0},
      {L"0.0.0.255", 0xFF000000, 0, 0xFF},
      {L"257.65537.0.0", 0x0101, 0x01010001, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.packed, CQorStringUtil::VersionStringToNumber(row.text, nullptr)) << Utf8(row.text);
    unsigned long low = 99;
    EXPECT_EQ(row.high, CQorStringUtil::VersionStringToNumber(row.text, &low)) << Utf8(row.text);
    EXPECT_EQ(row.low, low) << Utf8(row.text);
  }
  unsigned long low = 99;
  EXPECT_EQ(0u, CQorStringUtil::VersionStringToNumber(L"", &low));
  EXPECT_EQ(0u, CQorStringUtil::VersionStringToNumber(nullptr, &low));
  EXPECT_EQ(99u, low);
}

TEST(Scalars, to_text) {
  EXPECT_TEXT(L"true", CQorStringUtil::FromBool(-1));
  EXPECT_TEXT(L"false", CQorStringUtil::FromBool(0));
  EXPECT_TEXT(L"-2147483648", CQorStringUtil::FromInt(INT_MIN));
  EXPECT_TEXT(L"4294967295", CQorStringUtil::FromUint(UINT_MAX));
}

TEST(Scalars, from_text) {
  struct {
    const wchar_t* text;
    int expected;
    bool on_wine = true;  // it doesn't pass over white space in front
  } const rows[] = {
      {L"TRUE", 1}, {L"true", 1},   {L"False", 0}, {L"12", 12}, {L"-12", -12}, {L" 12", 12, false},
      {L"0x10", 0}, {L"12abc", 12}, {L"abc", 0},   {L"", 0},    {nullptr, 0},  {L"truely", 0},
  };
  for (const auto& row : rows) {
    const auto is = [&row](auto value) {
      return qorgen::tests::AsPublished(value == static_cast<decltype(value)>(row.expected), row.on_wine);
    };
    EXPECT_TRUE(is(CQorStringUtil::ToInt(row.text))) << Utf8(row.text);
    EXPECT_TRUE(is(CQorStringUtil::ToUint(row.text))) << Utf8(row.text);
    EXPECT_TRUE(is(static_cast<unsigned int>(CQorStringUtil::ToDword(row.text)))) << Utf8(row.text);
  }
}

TEST(Dates, to_text) {
  const COleDateTime date(2024, 5, 31, 13, 45, 6);
  EXPECT_TEXT(L"2024/05/31", CQorStringUtil::FromDate(date));
  EXPECT_TEXT(L"2024/05/31 13:45:06", CQorStringUtil::FromDateTime(date));
  EXPECT_TEXT(L"", CQorStringUtil::FromDate(COleDateTime()));
  COleDateTime null(date);
  null.SetStatus(COleDateTime::null);
  EXPECT_TEXT(L"", CQorStringUtil::FromDateTime(null));
  COleDateTime invalid(date);
  invalid.SetStatus(COleDateTime::invalid);
  EXPECT_FALSE(CQorStringUtil::FromDate(invalid).IsEmpty());
  EXPECT_NE("2024/05/31", Utf8(CQorStringUtil::FromDate(invalid)));
}

TEST(Dates, from_text) {
  for (const wchar_t* nothing : {static_cast<const wchar_t*>(nullptr), L""}) {
    const COleDateTime date = CQorStringUtil::ToDateTime(nothing);
    EXPECT_EQ(COleDateTime::valid, date.GetStatus());
    EXPECT_EQ(0.0, date.m_dt);
  }
  const COleDateTime date = CQorStringUtil::ToDateTime(L"2024/05/31 13:45:06");
  EXPECT_EQ(COleDateTime::valid, date.GetStatus());
  EXPECT_TEXT(L"2024/05/31 13:45:06", CQorStringUtil::FromDateTime(date));
  const COleDateTime wrong = CQorStringUtil::ToDateTime(L"not a date");
  EXPECT_EQ(COleDateTime::invalid, wrong.GetStatus());
  EXPECT_EQ(0.0, wrong.m_dt);
}

TEST(ErrorText, of_a_number_and_of_the_last_error) {
  const CString text = CQorStringUtil::GetLastErrorText(ERROR_FILE_NOT_FOUND);
  EXPECT_GT(text.GetLength(), 2);
  EXPECT_TEXT(L"\r\n", text.Right(2));
  for (const unsigned long long none : {0x0ull, 0x100000000ull}) {  // 32 bits of it count, however wide
    SetLastError(ERROR_FILE_NOT_FOUND);
    EXPECT_TEXT(text, CQorStringUtil::GetLastErrorText(static_cast<unsigned long>(none)));
  }
  EXPECT_TEXT(L"", CQorStringUtil::GetLastErrorText(0x2FFFFFFF));
}

}  // namespace
