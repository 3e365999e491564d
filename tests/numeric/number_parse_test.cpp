#include <cmath>
#include <limits>

#include "qorgen/numeric/num_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST(NumberParse, CleansOnlyWhatHoldsForeignCharacters) {
  const std::tuple<const wchar_t*, const char*, int> rows[] = {
      {nullptr, "(null)", 0},   {L"", "(null)", 0},    {L"123", "(null)", 3},  {L" 1 2 ", "(null)", 5},
      {L"-1.5", "(null)", 4},   {L"1,234", "1234", 4}, {L"1, 234", "1234", 5}, {L"\u00A512-", "12-", 3},
      {L"\uFF11\uFF12", "", 0}, {L"1e5", "15", 2},
  };
  for (const auto& [text, row_cleaned, count] : rows) {
    int length = -1;
    const std::string cleaned = TakeUtf8(CQorNumUtil::ParseString(text, &length));
    EXPECT_EQ(row_cleaned, cleaned) << Utf8(text);
    EXPECT_EQ(cleaned == "(null)" ? -1 : static_cast<int>(cleaned.size()), length);
    EXPECT_EQ(count, CQorNumUtil::ParseStringLength(text)) << Utf8(text);
  }
}

TEST(NumberParse, Integers) {
  using Row = std::tuple<const wchar_t*, int, unsigned int>;
  for (const auto& [text, as_signed, as_unsigned] :
       Rows(Row(nullptr, 0, 0), Row(L"12 3", 12, 12), Row(L"  12", 12, 12), Row(L" 1,2 3", 123, 123),
            Row(L"-5", -5, 4294967291u), Row(L"- 5", 0, 0), Row(L"--5", 0, 0), Row(L"+5", 5, 5),
            Row(L"3.9", 3, 3), Row(L"2147483648", INT_MAX, 2147483648u),
            Row(L"-2147483649", INT_MIN, 2147483647u), Row(L"4294967296", INT_MAX, UINT_MAX),
            Row(L"-4294967296", INT_MIN, UINT_MAX), Row(L"99999999999999999999999999", INT_MAX, UINT_MAX))) {
    EXPECT_EQ(as_signed, CQorNumUtil::ToInt(text)) << Utf8(text);
    EXPECT_EQ(as_signed, CQorNumUtil::ToLong(text)) << Utf8(text);
    EXPECT_EQ(as_unsigned, CQorNumUtil::ToUInt(text)) << Utf8(text);
    EXPECT_EQ(as_unsigned, CQorNumUtil::ToULong(text)) << Utf8(text);
  }
  EXPECT_EQ(32767, CQorNumUtil::ToShort(L"40000"));
  EXPECT_EQ(-32768, CQorNumUtil::ToShort(L"-40000"));
  EXPECT_EQ(65535, CQorNumUtil::ToUShort(L"70000"));
  EXPECT_EQ(65535, CQorNumUtil::ToUShort(L"-1"));
  EXPECT_EQ(255, CQorNumUtil::ToUChar(L"300"));
  EXPECT_EQ(200, CQorNumUtil::ToUChar(L"200"));
}

TEST(NumberParse, Doubles) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::tuple<const wchar_t*, double> rows[] = {
      {nullptr, 0}, {L"1,234.5", 1234.5}, {L"  -1.25", -1.25}, {L"5.", 5},  {L"-.5", -0.5}, {L"-", 0},
      {L".", 0},    {L"1.2.3", 1.2},      {L"1 000", 1},       {L"1-2", 1}, {L"--1", 0},    {L"1e5", 15},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(expected, CQorNumUtil::ToDouble(text)) << Utf8(text);
  EXPECT_EQ(-infinity, CQorNumUtil::ToDouble(L"-" + CString(L'9', 498)));
  EXPECT_EQ(0, CQorNumUtil::ToDouble(L"0." + CString(L'0', 496) + L"7"));
}

}  // namespace
