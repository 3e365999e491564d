#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "qorgen/numeric/num_util.h"

#include "tests/support/text.h"

namespace {

using qorgen::tests::TakeUtf8;
using qorgen::tests::Utf8;

TEST(NumberParse, cleans_only_what_holds_foreign_characters) {
  struct {
    const wchar_t* text;
    const char* cleaned;
    int count;
  } const rows[] = {
      {nullptr, "(null)", 0},   {L"", "(null)", 0},    {L"123", "(null)", 3},  {L" 1 2 ", "(null)", 5},
      {L"-1.5", "(null)", 4},   {L"1,234", "1234", 4}, {L"1, 234", "1234", 5}, {L"\u00A512-", "12-", 3},
      {L"\uFF11\uFF12", "", 0}, {L"1e5", "15", 2},
  };
  for (const auto& row : rows) {
    int length = -1;
    const std::string cleaned = TakeUtf8(CQorNumUtil::ParseString(row.text, &length));
    EXPECT_EQ(row.cleaned, cleaned) << Utf8(row.text);
    EXPECT_EQ(cleaned == "(null)" ? -1 : static_cast<int>(cleaned.size()), length);
    EXPECT_EQ(row.count, CQorNumUtil::ParseStringLength(row.text)) << Utf8(row.text);
  }
}

TEST(NumberParse, integers) {
  struct {
    const wchar_t* text;
    int as_signed;
    unsigned int as_unsigned;
  } const rows[] = {
      {nullptr, 0, 0},
      {L"", 0, 0},
      {L"12 3", 12, 12},
      {L"  12", 12, 12},
      {L"12,3", 123, 123},
      {L" 1,2 3", 123, 123},
      {L"\uFF11\uFF12", 0, 0},
      {L"-5", -5, 4294967291u},
      {L"- 5", 0, 0},
      {L"--5", 0, 0},
      {L"+5", 5, 5},
      {L"3.9", 3, 3},
      {L"2147483648", INT_MAX, 2147483648u},
      {L"-2147483649", INT_MIN, 2147483647u},
      {L"4294967296", INT_MAX, UINT_MAX},
      {L"-4294967296", INT_MIN, UINT_MAX},
      {L"99999999999999999999999999", INT_MAX, UINT_MAX},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.as_signed, CQorNumUtil::ToInt(row.text)) << Utf8(row.text);
    EXPECT_EQ(row.as_signed, CQorNumUtil::ToLong(row.text)) << Utf8(row.text);
    EXPECT_EQ(row.as_unsigned, CQorNumUtil::ToUInt(row.text)) << Utf8(row.text);
    EXPECT_EQ(row.as_unsigned, CQorNumUtil::ToULong(row.text)) << Utf8(row.text);
  }
  EXPECT_EQ(32767, CQorNumUtil::ToShort(L"40000"));
  EXPECT_EQ(-32768, CQorNumUtil::ToShort(L"-40000"));
  EXPECT_EQ(65535, CQorNumUtil::ToUShort(L"70000"));
  EXPECT_EQ(65535, CQorNumUtil::ToUShort(L"-1"));
  EXPECT_EQ(255, CQorNumUtil::ToUChar(L"300"));
  EXPECT_EQ(200, CQorNumUtil::ToUChar(L"200"));
}

TEST(NumberParse, doubles) {
  const double infinity = std::numeric_limits<double>::infinity();
  struct {
    const wchar_t* text;
    double expected;
  } const rows[] = {
      {nullptr, 0}, {L"", 0},        {L"1,234.5", 1234.5}, {L"  -1.25", -1.25},
      {L".5", 0.5}, {L"5.", 5},      {L"-.5", -0.5},       {L"-", 0},
      {L".", 0},    {L"1.2.3", 1.2}, {L"1 000", 1},        {L"\u5186", 0},
      {L"1-2", 1},  {L"0.1", 0.1},   {L"--1", 0},          {L"1e5", 15},
  };
  for (const auto& row : rows) EXPECT_EQ(row.expected, CQorNumUtil::ToDouble(row.text)) << Utf8(row.text);
  std::vector<wchar_t> huge(500, L'9');
  huge.front() = L'-';
  huge.back() = 0;
  EXPECT_EQ(-infinity, CQorNumUtil::ToDouble(huge.data()));
  std::vector<wchar_t> tiny(500, L'0');
  tiny[1] = L'.';
  tiny[498] = L'7';
  tiny[499] = 0;
  EXPECT_EQ(0, CQorNumUtil::ToDouble(tiny.data()));
}

}  // namespace
