#include <gtest/gtest.h>

#include "qorgen/platform/automation.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

using qorgen::tests::Utf8;

double Day(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(year);
  time.wMonth = static_cast<WORD>(month);
  time.wDay = static_cast<WORD>(day);
  time.wHour = static_cast<WORD>(hour);
  time.wMinute = static_cast<WORD>(minute);
  time.wSecond = static_cast<WORD>(second);
  double number = 1e9;
  SystemTimeToVariantTime(&time, &number);
  return number;
}

TEST(DateFromText, FormsOfAJapaneseSystem) {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  const double time_of_day = Day(1899, 12, 30, 12, 34, 56);
  const struct {
    const wchar_t* text;
    double number;
    bool on_wine =
        true;  // it knows no eras, no words for the parts, no full-width digits, no English months here
  } rows[] = {
      {L"2024/3/5", Day(2024, 3, 5)},
      {L" 2024-3-5 ", Day(2024, 3, 5)},
      {L"2024.3.5", Day(2024, 3, 5), false},
      {L"2024 3 5", Day(2024, 3, 5)},
      {L"２０２４／３／５", Day(2024, 3, 5), false},
      {L"29/3/5", Day(2029, 3, 5)},
      {L"30/3/5", Day(1930, 3, 5), false},
      {L"100/1/1", Day(100, 1, 1)},
      {L"9999/12/31", Day(9999, 12, 31)},
      {L"3/5/2024", Day(2024, 3, 5)},
      {L"12/31/99", Day(1999, 12, 31)},
      {L"25/12/2024", Day(2024, 12, 25)},
      {L"2024/25/12", Day(2024, 12, 25)},
      {L"3/5", Day(now.wYear, 3, 5)},
      {L"25/12", Day(now.wYear, 12, 25)},
      {L"2024/3", Day(2024, 3, 1)},
      {L"3/2024", Day(2024, 3, 1)},
      {L"2024年3月5日", Day(2024, 3, 5), false},
      {L"２０２４年　３月　５日", Day(2024, 3, 5), false},
      {L"2024年3月", Day(2024, 3, 1), false},
      {L"3月5日", Day(now.wYear, 3, 5)},
      {L"令和6年3月5日", Day(2024, 3, 5), false},
      {L"昭和64年1月7日", Day(1989, 1, 7), false},
      {L"昭和100年1月1日", Day(2025, 1, 1), false},
      {L"大正15年12月24日", Day(1926, 12, 24), false},
      {L"明治45年7月29日", Day(1912, 7, 29), false},
      {L"㍻31年4月30日", Day(2019, 4, 30), false},
      {L"㋿元年5月1日", Day(2019, 5, 1), false},
      {L"R6.3.5", Day(2024, 3, 5), false},
      {L"r6/3/5", Day(2024, 3, 5), false},
      {L"Ｓ50-1-2", Day(1975, 1, 2), false},
      {L"March 5, 2024", Day(2024, 3, 5), false},
      {L"mar 5 2024", Day(2024, 3, 5), false},
      {L"5-Mar-2024", Day(2024, 3, 5), false},
      {L"Sept. 5, 2024", Day(2024, 9, 5), false},
      {L"Mar 5", Day(now.wYear, 3, 5), false},
      {L"2024 May 5", Day(2024, 5, 5), false},
      {L"May 32", Day(1932, 5, 1), false},
      {L"12:34:56", time_of_day},
      {L"12:34", Day(1899, 12, 30, 12, 34)},
      {L"23:59:59", Day(1899, 12, 30, 23, 59, 59)},
      {L"3:05 PM", Day(1899, 12, 30, 15, 5)},
      {L"12:05am", Day(1899, 12, 30, 0, 5)},
      {L"12 pm", Day(1899, 12, 30, 12)},
      {L"午後3時5分", Day(1899, 12, 30, 15, 5), false},
      {L"午前9:30", Day(1899, 12, 30, 9, 30), false},
      {L"15時30分20秒", Day(1899, 12, 30, 15, 30, 20), false},
      {L"2024/3/5 12:34:56", Day(2024, 3, 5, 12, 34, 56)},
      {L"12:34:56 2024/3/5", Day(2024, 3, 5, 12, 34, 56)},
      {L"3/5 12:34", Day(now.wYear, 3, 5, 12, 34)},
      {L"令和6年3月5日午後3時", Day(2024, 3, 5, 15), false},
      {L"1800/1/1 6:00", Day(1800, 1, 1, 6)},
  };
  for (const auto& row : rows) {
    DATE date = 1e8;
    const HRESULT result = VarDateFromStr(row.text, LOCALE_USER_DEFAULT, 0, &date);
    EXPECT_TRUE(qorgen::tests::AsPublished(result == S_OK && date == row.number, row.on_wine))
        << Utf8(row.text) << ": " << date;
  }
}

TEST(DateFromText, WhatIsNoDate) {
  const struct {
    const wchar_t* text;
    bool on_wine = true;  // it makes a date of these
  } rows[] = {
      {L""},
      {L"abc"},
      {L"20240305"},
      {L"2023/2/29"},
      {L"23/2/29", false},
      {L"2024/0/1"},
      {L"2024/1/0"},
      {L"2024//1", false},
      {L"2024/3/5/6"},
      {L"2024/3-5", false},
      {L"2024/3/"},
      {L"99/1/1 x"},
      {L"10000/1/1"},
      {L"0024/3/5", false},
      {L"3.5", false},
      {L"13月5日", false},
      {L"2024年"},
      {L"3月"},
      {L"令和0年1月1日"},
      {L"令和6年"},
      {L"元年1月1日"},
      {L"R6"},
      {L"X6.3.5"},
      {L"24:00"},
      {L"12:60"},
      {L"12:34:60"},
      {L":12"},
      {L"午前13時"},
      {L"12:34:56.789"},
      {L"1:2 3:4"},
      {L"2024/3/5 2024/3/5"},
      {L"Ma 5"},
      {L"March"},
      {L"1 2 3 4 5 6 7 8 9 1 2 3 4 5 6 7 8 9 1 2 3 4 5 6 7 8"},
  };
  for (const auto& row : rows) {
    DATE date = 7;
    const HRESULT result = VarDateFromStr(row.text, LOCALE_USER_DEFAULT, 0, &date);
    EXPECT_TRUE(qorgen::tests::AsPublished(result == DISP_E_TYPEMISMATCH, row.on_wine)) << Utf8(row.text);
  }
  DATE date = 7;
  EXPECT_EQ(DISP_E_TYPEMISMATCH,
            VarDateFromStr(static_cast<const OLECHAR*>(nullptr), LOCALE_USER_DEFAULT, 0, &date));
}

TEST(DateFromText, FlagsCutToOneHalf) {
  DATE date = 7;
  EXPECT_EQ(S_OK, VarDateFromStr(L"1800/1/1 6:00", LOCALE_USER_DEFAULT, VAR_TIMEVALUEONLY, &date));
  EXPECT_EQ(0.25, date);
  EXPECT_EQ(S_OK, VarDateFromStr(L"1800/1/1 6:00", LOCALE_USER_DEFAULT, VAR_DATEVALUEONLY, &date));
  EXPECT_EQ(Day(1800, 1, 1), date);
}

}  // namespace
