#include "qorgen/afx/date_time.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/support/text.h"

namespace {

TEST(OleDateTime, PartsOfKnownDates) {
  const struct {
    COleDateTime date;
    double number;
    int year, month, day, hour, minute, second, day_of_week, day_of_year;
  } rows[] = {
      {COleDateTime(2024, 2, 29, 13, 5, 9), 45351.54524305556, 2024, 2, 29, 13, 5, 9, 5, 60},
      {COleDateTime(2024, 12, 31, 23, 59, 59), 45657.999988425923, 2024, 12, 31, 23, 59, 59, 3, 366},
      {COleDateTime(1899, 12, 29, 6, 0, 0), -1.25, 1899, 12, 29, 6, 0, 0, 6, 363},
      {COleDateTime(100, 1, 1, 0, 0, 0), -657434, 100, 1, 1, 0, 0, 0, 6, 1},
      {COleDateTime(9999, 12, 31, 0, 0, 0), 2958465, 9999, 12, 31, 0, 0, 0, 6, 365},
      {COleDateTime(), 0, 1899, 12, 30, 0, 0, 0, 7, 364},
      {COleDateTime(45351.5), 45351.5, 2024, 2, 29, 12, 0, 0, 5, 60},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(COleDateTime::valid, row.date.GetStatus()) << row.number;
    EXPECT_DOUBLE_EQ(row.number, row.date.m_dt);
    EXPECT_EQ(row.year, row.date.GetYear()) << row.number;
    EXPECT_EQ(row.month, row.date.GetMonth()) << row.number;
    EXPECT_EQ(row.day, row.date.GetDay()) << row.number;
    EXPECT_EQ(row.hour, row.date.GetHour()) << row.number;
    EXPECT_EQ(row.minute, row.date.GetMinute()) << row.number;
    EXPECT_EQ(row.second, row.date.GetSecond()) << row.number;
    EXPECT_EQ(row.day_of_week, row.date.GetDayOfWeek()) << row.number;
    EXPECT_EQ(row.day_of_year, row.date.GetDayOfYear()) << row.number;
  }
}

TEST(OleDateTime, RefusesDatesThatDoNotExist) {
  const struct {
    int year, month, day, hour, minute, second;
  } rows[] = {
      {2023, 2, 29, 0, 0, 0}, {2024, 6, 31, 0, 0, 0}, {2024, 13, 1, 0, 0, 0},        {2024, 0, 1, 0, 0, 0},
      {2024, 1, 0, 0, 0, 0},  {2024, 1, -1, 0, 0, 0}, {24, 1, 1, 0, 0, 0},           {99, 12, 31, 0, 0, 0},
      {10000, 1, 1, 0, 0, 0}, {-1, 1, 1, 0, 0, 0},    {65536 + 2024, 1, 1, 0, 0, 0}, {2024, 1, 1, 24, 0, 0},
      {2024, 1, 1, 0, 60, 0}, {2024, 1, 1, 0, 0, 60},
  };
  for (const auto& row : rows) {
    COleDateTime date(45000.0);
    EXPECT_EQ(1, date.SetDateTime(row.year, row.month, row.day, row.hour, row.minute, row.second));
    EXPECT_EQ(COleDateTime::invalid, date.GetStatus()) << row.year << "/" << row.month << "/" << row.day;
    EXPECT_EQ(0.0, date.m_dt);
    EXPECT_EQ(-1, date.GetYear());
    EXPECT_EQ(-1, date.GetDay());
    EXPECT_EQ(-1, date.GetDayOfWeek());
    EXPECT_EQ(-1, date.GetDayOfYear());
  }
}

TEST(OleDateTime, ANumberOutOfRangeIsInvalidAndANullHasNoParts) {
  for (const double number :
       {-657435.0, 2958466.0, 1e300, std::nan(""), -std::numeric_limits<double>::infinity()}) {
    const COleDateTime date(number);
    EXPECT_EQ(COleDateTime::invalid, date.GetStatus()) << number;
    EXPECT_EQ(-1, date.GetMonth());
  }
  COleDateTime date(2024, 3, 5, 0, 0, 0);
  date.SetStatus(COleDateTime::null);
  EXPECT_EQ(-1, date.GetYear());
  SYSTEMTIME time{};
  EXPECT_FALSE(date.GetAsSystemTime(time));
  date.SetStatus(COleDateTime::valid);
  EXPECT_TRUE(date.GetAsSystemTime(time));
  EXPECT_EQ(2024, time.wYear);
}

TEST(OleDateTime, SettersForOneHalf) {
  COleDateTime date;
  EXPECT_EQ(0, date.SetDate(2024, 3, 5));
  EXPECT_EQ(45356.0, date.m_dt);
  EXPECT_EQ(0, date.SetTime(18, 0, 0));
  EXPECT_EQ(0.75, date.m_dt);
}

TEST(OleDateTime, FromTheClock) {
  const COleDateTime now = COleDateTime::GetCurrentTime();
  EXPECT_EQ(COleDateTime::valid, now.GetStatus());
  SYSTEMTIME local{};
  GetLocalTime(&local);
  EXPECT_NEAR(COleDateTime(local).m_dt, now.m_dt, 10.0 / 86400);
  EXPECT_EQ(COleDateTime::invalid, COleDateTime(static_cast<__time64_t>(-5)).GetStatus());
}

TEST(OleDateTime, StepsEvenlyThroughDayZero) {
  COleDateTime date(1899, 12, 28, 0, 0, 0);
  for (int hours = 0; hours < 24 * 5; ++hours) {
    const COleDateTime expected(hours < 72 ? 1899 : (hours < 96 ? 1899 : 1900), hours < 96 ? 12 : 1,
                                hours < 96 ? 28 + hours / 24 : 1, hours % 24, 0, 0);
    EXPECT_EQ(expected.GetDay(), date.GetDay()) << hours;
    EXPECT_EQ(expected.GetHour(), date.GetHour()) << hours;
    EXPECT_EQ(hours, (date - COleDateTime(1899, 12, 28, 0, 0, 0)).GetTotalHours());
    date += COleDateTimeSpan(0, 1, 0, 0);
  }
  date -= COleDateTimeSpan(5, 0, 0, 0);
  EXPECT_EQ(28, date.GetDay());
}

TEST(OleDateTime, ComparesAcrossDayZeroAndByStatus) {
  const COleDateTime morning(1899, 12, 29, 6, 0, 0);   // -1.25
  const COleDateTime evening(1899, 12, 29, 18, 0, 0);  // -1.75
  EXPECT_TRUE(morning < evening);
  EXPECT_TRUE(evening > morning);
  EXPECT_TRUE(morning <= morning);
  EXPECT_FALSE(morning == evening);
  COleDateTime null = morning;
  null.SetStatus(COleDateTime::null);
  EXPECT_TRUE(null != morning);
  EXPECT_FALSE(null < evening);
  EXPECT_FALSE(null > evening);
  EXPECT_TRUE(null == null);
}

TEST(OleDateTime, ResultsKeepTheWorstStatus) {
  COleDateTime null;
  null.SetStatus(COleDateTime::null);
  COleDateTime invalid;
  invalid.SetStatus(COleDateTime::invalid);
  const COleDateTime date(2024, 3, 5, 0, 0, 0);
  EXPECT_EQ(COleDateTimeSpan::null, (null - invalid).GetStatus());
  EXPECT_EQ(COleDateTimeSpan::null, (date - null).GetStatus());
  EXPECT_EQ(COleDateTimeSpan::invalid, (invalid - date).GetStatus());
  EXPECT_EQ(COleDateTime::null, (null + COleDateTimeSpan(1.0)).GetStatus());
  EXPECT_EQ(COleDateTime::invalid, (invalid + COleDateTimeSpan(1.0)).GetStatus());
  EXPECT_EQ(COleDateTime::invalid, (COleDateTime(9999, 12, 31, 0, 0, 0) + COleDateTimeSpan(1.0)).GetStatus());
  EXPECT_EQ(COleDateTimeSpan::valid,
            (COleDateTime(9999, 12, 31, 0, 0, 0) - COleDateTime(100, 1, 1, 0, 0, 0)).GetStatus());
}

TEST(OleDateTime, FormatByStatus) {
  COleDateTime date(2024, 3, 5, 13, 5, 9);
  const struct {
    const wchar_t* format;
    const wchar_t* text;
  } rows[] = {
      {L"%Y/%m/%d", L"2024/03/05"},
      {L"%Y/%m/%d %H:%M:%S", L"2024/03/05 13:05:09"},
      {L"%H:/%MK:%S", L"13:/05K:09"},
      {L"%y年%j日 %w", L"24年065日 2"},
      {L"100%%", L"100%"},
      {L"", L""},
      {nullptr, L""},
  };
  for (const auto& row : rows) EXPECT_TEXT(row.text, date.Format(row.format));
  CString pattern;
  for (int i = 0; i < 1000; ++i) pattern.Append(L"%Y");
  EXPECT_EQ(4000, date.Format(pattern).GetLength());
  EXPECT_TEXT(L"1800/01/02", COleDateTime(1800, 1, 2, 0, 0, 0).Format(L"%Y/%m/%d"));
  EXPECT_TEXT(L"0100/01/01", COleDateTime(100, 1, 1, 0, 0, 0).Format(L"%Y/%m/%d"));
  date.SetStatus(COleDateTime::null);
  EXPECT_TEXT(L"", date.Format(L"%Y"));
  date.SetStatus(COleDateTime::invalid);
  EXPECT_TEXT(L"Invalid DateTime", date.Format(L"%Y"));
  date.m_dt = 1e9;
  date.SetStatus(COleDateTime::valid);
  EXPECT_TEXT(L"Invalid DateTime", date.Format(L"%Y"));
}

TEST(OleDateTime, ParsesText) {
  COleDateTime date;
  EXPECT_TRUE(date.ParseDateTime(L"2024/3/5 13:05:09"));
  EXPECT_TRUE(date == COleDateTime(2024, 3, 5, 13, 5, 9));
  EXPECT_FALSE(date.ParseDateTime(L"no date"));
  EXPECT_EQ(COleDateTime::invalid, date.GetStatus());
  EXPECT_EQ(0.0, date.m_dt);
  EXPECT_FALSE(date.ParseDateTime(nullptr));
}

TEST(OleDateTime, FromAVariant) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_DATE;
  value.date = 45356.5;
  EXPECT_EQ(45356.5, COleDateTime(value).m_dt);
  value.vt = VT_NULL;
  EXPECT_EQ(COleDateTime::null, COleDateTime(value).GetStatus());
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(L"2024/3/5");
  EXPECT_EQ(45356.0, COleDateTime(value).m_dt);
  VariantClear(&value);
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(L"?");
  EXPECT_EQ(COleDateTime::invalid, COleDateTime(value).GetStatus());
  VariantClear(&value);
}

TEST(OleDateTimeSpan, WholeUnitsByTheHalfSecondRule) {
  const double second = 1.0 / 86400;
  const struct {
    double span;
    double days, hours, minutes, seconds;
  } rows[] = {
      {0, 0, 0, 0, 0},
      {1, 1, 24, 1440, 86400},
      {59.6 * second, 0, 0, 1, 60},
      {-59.6 * second, 0, 0, -1, -60},
      {0.4 * second, 0, 0, 0, 0},
      {-0.4 * second, 0, 0, 0, 0},
      {-1.5, -1, -36, -2160, -129600},
      {1 - 0.4 * second, 1, 24, 1440, 86400},
  };
  for (const auto& row : rows) {
    const COleDateTimeSpan span(row.span);
    EXPECT_EQ(row.days, span.GetTotalDays()) << row.span;
    EXPECT_EQ(row.hours, span.GetTotalHours()) << row.span;
    EXPECT_EQ(row.minutes, span.GetTotalMinutes()) << row.span;
    EXPECT_EQ(row.seconds, span.GetTotalSeconds()) << row.span;
  }
}

TEST(OleDateTimeSpan, PartsFormatAndRange) {
  const COleDateTimeSpan span(2, 27, 4, 5);
  EXPECT_EQ(3, span.GetDays());
  EXPECT_EQ(3, span.GetHours());
  EXPECT_EQ(4, span.GetMinutes());
  EXPECT_EQ(5, span.GetSeconds());
  EXPECT_TEXT(L"3日 03:04:05 100%", span.Format(L"%D日 %H:%M:%S 100%%"));
  EXPECT_EQ(-3, (-span).GetHours());
  EXPECT_TRUE(-span < span);
  EXPECT_EQ(0.0, (span - span).m_span);
  const COleDateTimeSpan endless(1e9);
  EXPECT_EQ(COleDateTimeSpan::invalid, endless.GetStatus());
  EXPECT_TEXT(L"Invalid DateTimeSpan", endless.Format(L"%D"));
  COleDateTimeSpan null;
  null.SetStatus(COleDateTimeSpan::null);
  EXPECT_TEXT(L"", null.Format(L"%D"));
  EXPECT_EQ(COleDateTimeSpan::null, (span + null).GetStatus());
}

}  // namespace
