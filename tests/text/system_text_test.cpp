// Texts in web addresses, versions, scalars, and what the system says.

#include "qorgen/afx/date_time.h"
#include "qorgen/platform/error.h"
#include "qorgen/text/string_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST(WebText, Encodes) {
  using Row = std::tuple<const wchar_t*, const char*>;
  for (const auto& [text, encoded] :
       Rows(Row(L"", ""), Row(nullptr, ""), Row(L"a Z0$-_.!*'(),", "a+Z0$-_.!*'(),"),
            Row(L"+%&/~\"", "%2B%25%26%2F%7E%22"),
            Row(L"あé\x01\xD83D\xDE00", "%E3%81%82%C3%A9%01%F0%9F%98%80"))) {
    EXPECT_EQ(encoded, Utf8(CQorStringUtil::EncodeUTF16ToUTF8(text)));
  }
  std::string expected;
  for (int i = 0; i < 250; ++i) expected += "%E6%BC%A2";
  EXPECT_EQ(expected, Utf8(CQorStringUtil::EncodeUTF16ToUTF8(CString(L'漢', 250))));
}

TEST(WebText, Decodes) {
  using Row = std::tuple<const char*, const wchar_t*>;
  for (const auto& [text, decoded] :
       Rows(Row("", L""), Row(nullptr, L""), Row("a+b", L"a+b"), Row("%E3%81%82%e3%81%84", L"あい"),
            Row("%F0%9F%98%80", L"\xD83D\xDE00"), Row("100%", L"100%"), Row("%4", L"%4"),
            Row("%zz%4g%41", L"%zz%4gA"), Row("a%00b", L"a"))) {
    wchar_t dest[32] = L"#";
    EXPECT_EQ(1, CQorStringUtil::EncodeUTF8ToUTF16(text, dest));
    EXPECT_TEXT(decoded, dest);
  }
}

TEST(WebText, RefusesWhatItsBufferCannotHold) {
  std::string escaped;
  for (int i = 0; i < 1011; ++i) escaped += "%41";
  for (const auto& [text, fits] : {std::tuple(std::string(1011, 'a'), 1),
                                   {escaped, 1},
                                   {escaped + "%41", 0},
                                   {std::string(1012, 'a'), 0},
                                   {std::string(100000, '%'), 0}}) {
    std::vector<wchar_t> dest(1012, L'#');
    EXPECT_EQ(fits, CQorStringUtil::EncodeUTF8ToUTF16(text.c_str(), dest.data()));
    EXPECT_EQ(fits ? 0 : L'#', dest[1011]);
    EXPECT_EQ(fits, dest[0] != L'#');
  }
}

TEST(Versions, ToTextAndBack) {
  EXPECT_TEXT(L"1.2.3.4", CQorStringUtil::NumberToVersionString(0x01020304));
  EXPECT_TEXT(L"255.255.255.255", CQorStringUtil::NumberToVersionString(ULONG_MAX));
  EXPECT_TEXT(L"1.2.3.4", CQorStringUtil::NumberToVersionString(0x00010002, 0x00030004));
  EXPECT_TEXT(L"65535.65535.65535.65535", CQorStringUtil::NumberToVersionString(ULONG_MAX, ULONG_MAX));
  // Null and empty leave the low half alone.
  using Row = std::tuple<const wchar_t*, unsigned long, unsigned long, unsigned long>;
  for (const auto& [text, packed, high, expected_low] :
       Rows(Row(L"1.2.3.4", 0x04030201, 0x00010002, 0x00030004), Row(L"1.2", 0x00000201, 0x00010002, 0),
            Row(L"v10, 20-30 build 40 and 50", 0x281E140A, 0x000A0014, 0x001E0028), Row(L"abc", 0, 0, 0),
            Row(L"7", 7, 0x00070000, 0), Row(L"1..2", 0x0201, 0x00010002, 0),
            Row(L"0.0.0.255", 0xFF000000, 0, 0xFF), Row(L"257.65537.0.0", 0x0101, 0x01010001, 0),
            Row(L"", 0, 0, 99), Row(nullptr, 0, 0, 99))) {
    EXPECT_EQ(packed, CQorStringUtil::VersionStringToNumber(text, nullptr)) << Utf8(text);
    unsigned long low = 99;
    EXPECT_EQ(high, CQorStringUtil::VersionStringToNumber(text, &low)) << Utf8(text);
    EXPECT_EQ(expected_low, low) << Utf8(text);
  }
}

TEST(Scalars, ToText) {
  EXPECT_TEXT(L"true", CQorStringUtil::FromBool(-1));
  EXPECT_TEXT(L"false", CQorStringUtil::FromBool(0));
  EXPECT_TEXT(L"-2147483648", CQorStringUtil::FromInt(INT_MIN));
  EXPECT_TEXT(L"4294967295", CQorStringUtil::FromUint(UINT_MAX));
}

TEST(Scalars, FromText) {
  using Row = std::tuple<const wchar_t*, int>;
  for (const auto& [text, expected] :
       Rows(Row(L"TRUE", 1), Row(L"False", 0), Row(L"-12", -12), Row(L" 12", 12), Row(L"12abc", 12),
            Row(L"", 0), Row(nullptr, 0), Row(L"truely", 0))) {
    const bool on_wine = text == nullptr || *text != L' ';  // it doesn't pass over white space in front
    const auto number = static_cast<unsigned int>(expected);
    EXPECT_TRUE(AsPublished(CQorStringUtil::ToInt(text) == expected, on_wine)) << Utf8(text);
    EXPECT_TRUE(AsPublished(CQorStringUtil::ToUint(text) == number, on_wine)) << Utf8(text);
    EXPECT_TRUE(AsPublished(CQorStringUtil::ToDword(text) == number, on_wine)) << Utf8(text);
  }
}

TEST(Dates, ToTextAndBack) {
  COleDateTime date(2024, 5, 31, 13, 45, 6);
  EXPECT_TEXT(L"2024/05/31", CQorStringUtil::FromDate(date));
  EXPECT_TEXT(L"2024/05/31 13:45:06", CQorStringUtil::FromDateTime(date));
  EXPECT_TEXT(L"", CQorStringUtil::FromDate(COleDateTime()));
  date.SetStatus(COleDateTime::null);
  EXPECT_TEXT(L"", CQorStringUtil::FromDateTime(date));
  date.SetStatus(COleDateTime::invalid);
  EXPECT_TEXT(date.Format(L""), CQorStringUtil::FromDate(date));

  using Row = std::tuple<const wchar_t*, COleDateTime::DateTimeStatus, const wchar_t*>;
  for (const auto& [text, status, read] :
       Rows(Row(nullptr, COleDateTime::valid, L""), Row(L"", COleDateTime::valid, L""),
            Row(L"2024/05/31 13:45:06", COleDateTime::valid, L"2024/05/31 13:45:06"))) {
    EXPECT_EQ(status, CQorStringUtil::ToDateTime(text).GetStatus()) << Utf8(text);
    EXPECT_TEXT(read, CQorStringUtil::FromDateTime(CQorStringUtil::ToDateTime(text)));
  }
  EXPECT_EQ(COleDateTime::invalid, CQorStringUtil::ToDateTime(L"not a date").GetStatus());
  EXPECT_EQ(0.0, CQorStringUtil::ToDateTime(L"not a date").m_dt);
}

TEST(ErrorText, OfANumberAndOfTheLastError) {
  const CString text = CQorStringUtil::GetLastErrorText(ERROR_FILE_NOT_FOUND);
  EXPECT_TEXT(L"\r\n", text.Right(2));
  for (const unsigned long long none : {0x0ull, 0x100000000ull}) {  // 32 bits of it count, however wide
    SetLastError(ERROR_FILE_NOT_FOUND);
    EXPECT_TEXT(text, CQorStringUtil::GetLastErrorText(static_cast<unsigned long>(none)));
  }
  EXPECT_TEXT(L"", CQorStringUtil::GetLastErrorText(0x2FFFFFFF));
}

}  // namespace
