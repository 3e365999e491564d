#include "qorgen/afx/date_time.h"

#include <cmath>
#include <limits>

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST(OleDateTime, PartsOfKnownDates) {
  const std::tuple<COleDateTime, double, int, int, int, int, int, int, int, int> rows[] = {
      {COleDateTime(2024, 2, 29, 13, 5, 9), 45351.54524305556, 2024, 2, 29, 13, 5, 9, 5, 60},
      {COleDateTime(1899, 12, 29, 6, 0, 0), -1.25, 1899, 12, 29, 6, 0, 0, 6, 363},
      {COleDateTime(100, 1, 1, 0, 0, 0), -657434, 100, 1, 1, 0, 0, 0, 6, 1},
      {COleDateTime(9999, 12, 31, 0, 0, 0), 2958465, 9999, 12, 31, 0, 0, 0, 6, 365},
      {COleDateTime(), 0, 1899, 12, 30, 0, 0, 0, 7, 364},
      {COleDateTime(45351.5), 45351.5, 2024, 2, 29, 12, 0, 0, 5, 60},
  };
  for (const auto& [date, number, year, month, day, hour, minute, second, day_of_week, day_of_year] : rows) {
    EXPECT_EQ(COleDateTime::valid, date.GetStatus()) << number;
    EXPECT_DOUBLE_EQ(number, date.m_dt);
    EXPECT_EQ((std::tuple{year, month, day, hour, minute, second, day_of_week, day_of_year}),
              (std::tuple{date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
                          date.GetSecond(), date.GetDayOfWeek(), date.GetDayOfYear()}))
        << number;
  }
}

TEST(OleDateTime, RefusesDatesThatDoNotExist) {
  const std::tuple<int, int, int, int, int, int> rows[] = {
      {2023, 2, 29, 0, 0, 0}, {2024, 13, 1, 0, 0, 0}, {2024, 0, 1, 0, 0, 0},  {2024, 1, 0, 0, 0, 0},
      {99, 12, 31, 0, 0, 0},  {10000, 1, 1, 0, 0, 0}, {-1, 1, 1, 0, 0, 0},    {65536 + 2024, 1, 1, 0, 0, 0},
      {2024, 1, 1, 24, 0, 0}, {2024, 1, 1, 0, 60, 0}, {2024, 1, 1, 0, 0, 60},
  };
  for (const auto& [year, month, day, hour, minute, second] : rows) {
    COleDateTime date(45000.0);
    EXPECT_EQ(1, date.SetDateTime(year, month, day, hour, minute, second));
    EXPECT_EQ(COleDateTime::invalid, date.GetStatus()) << year << "/" << month << "/" << day;
    EXPECT_EQ(0.0, date.m_dt);
    EXPECT_EQ((std::tuple{-1, -1, -1, -1}),
              (std::tuple{date.GetYear(), date.GetDay(), date.GetDayOfWeek(), date.GetDayOfYear()}));
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
  const COleDateTime start(1899, 12, 28, 0, 0, 0);
  COleDateTime date(start);
  for (int hours = 0; hours < 24 * 4; ++hours) {
    EXPECT_EQ(28 + hours / 24, date.GetDay()) << hours;
    EXPECT_EQ(hours % 24, date.GetHour()) << hours;
    EXPECT_EQ(hours, (date - start).GetTotalHours());
    date += COleDateTimeSpan(0, 1, 0, 0);
  }
  date -= COleDateTimeSpan(4, 0, 0, 0);
  EXPECT_EQ(28, date.GetDay());
}

TEST(OleDateTime, ComparesAcrossDayZeroAndByStatus) {
  const COleDateTime morning(1899, 12, 29, 6, 0, 0);   // -1.25
  const COleDateTime evening(1899, 12, 29, 18, 0, 0);  // -1.75
  EXPECT_TRUE(morning < evening);
  EXPECT_TRUE(evening > morning);
  EXPECT_TRUE(morning <= morning);
  COleDateTime null = morning;
  null.SetStatus(COleDateTime::null);
  EXPECT_TRUE(null != morning);
  EXPECT_FALSE(null < evening);
  EXPECT_TRUE(null == null);
}

TEST(OleDateTime, ResultsKeepTheWorstStatus) {
  COleDateTime null, invalid;
  null.SetStatus(COleDateTime::null);
  invalid.SetStatus(COleDateTime::invalid);
  const COleDateTime first(100, 1, 1, 0, 0, 0), last(9999, 12, 31, 0, 0, 0);
  EXPECT_EQ(COleDateTimeSpan::null, (null - invalid).GetStatus());
  EXPECT_EQ(COleDateTimeSpan::null, (last - null).GetStatus());
  EXPECT_EQ(COleDateTimeSpan::invalid, (invalid - last).GetStatus());
  EXPECT_EQ(COleDateTime::null, (null + COleDateTimeSpan(1.0)).GetStatus());
  EXPECT_EQ(COleDateTime::invalid, (invalid + COleDateTimeSpan(1.0)).GetStatus());
  EXPECT_EQ(COleDateTime::invalid, (last + COleDateTimeSpan(1.0)).GetStatus());
  EXPECT_EQ(COleDateTimeSpan::valid, (last - first).GetStatus());
}

TEST(OleDateTime, FormatByStatus) {
  COleDateTime date(2024, 3, 5, 13, 5, 9);
  using Row = std::tuple<const wchar_t*, const wchar_t*>;
  for (const auto& [format, text] :
       Rows(Row(L"%Y/%m/%d", L"2024/03/05"), Row(L"%Y/%m/%d %H:%M:%S", L"2024/03/05 13:05:09"),
            Row(L"%H:/%MK:%S", L"13:/05K:09"), Row(L"%y年%j日 %w", L"24年065日 2"), Row(L"100%%", L"100%"),
            Row(L"", L""), Row(nullptr, L"")))
    EXPECT_TEXT(text, date.Format(format));
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
  using Row = std::tuple<double, double, double, double, double>;
  for (const auto& [row_span, days, hours, minutes, seconds] :
       Rows(Row(1, 1, 24, 1440, 86400), Row(59.6 * second, 0, 0, 1, 60), Row(-59.6 * second, 0, 0, -1, -60),
            Row(0.4 * second, 0, 0, 0, 0), Row(-0.4 * second, 0, 0, 0, 0), Row(-1.5, -1, -36, -2160, -129600),
            Row(1 - 0.4 * second, 1, 24, 1440, 86400))) {
    const COleDateTimeSpan span(row_span);
    EXPECT_EQ(days, span.GetTotalDays()) << row_span;
    EXPECT_EQ(hours, span.GetTotalHours()) << row_span;
    EXPECT_EQ(minutes, span.GetTotalMinutes()) << row_span;
    EXPECT_EQ(seconds, span.GetTotalSeconds()) << row_span;
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
