// The date object: what it accepts and refuses, its kinds, steps, limits and eras.

#include "qorgen/calendar/era_date.h"

#include <cmath>

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

int Fields(const QORDATE& date) {
  return date.year * 10000 + date.month * 100 + date.day;
}
int Fields(const CQorDate& date) {
  return Fields(date.ToQORDATE());
}

CQorDate OfKind(unsigned style, const QORDATE& first = QORDATE(5, 3, 2019)) {
  CQorDate date(first);
  date.SetStyle(style);
  return date;
}

TEST(EraDate, AssignmentOfDates) {
  // 31 December 1898 passes its check and changes nothing.
  // 0 January 2024: a part in use is missing, so the object becomes empty.
  // 30 February 1500 of kind 0x14: without its year a month keeps 31 days.
  using Row = std::tuple<unsigned, QORDATE, int, int>;
  for (const auto& [style, value, accepted, fields] :
       Rows(Row(0x10, QORDATE(29, 2, 2023), 0, 20190305), Row(0x10, QORDATE(31, 12, 9999), 1, 99991231),
            Row(0x10, QORDATE(1, 1, 10000), 0, 20190305), Row(0x12, QORDATE(0, 1, 10000), 0, 20190305),
            Row(0x10, QORDATE(1, 1, 1899), 1, 18990101), Row(0x10, QORDATE(31, 12, 1898), 1, 20190305),
            Row(0x10, QORDATE(1, 1, 99), 0, 20190305), Row(0x10, QORDATE(1, 1, 123), 1, 21230101),
            Row(0x10, QORDATE(1, 1, 899), 1, 28990101), Row(0x10, QORDATE(1, 1, 900), 1, 19000101),
            Row(0x10, QORDATE(1, 1, 950), 1, 19500101), Row(0x10, QORDATE(1, 1, 1000), 1, 20190305),
            Row(0x10, QORDATE(29, 2, 104), 1, 21040229), Row(0x10, QORDATE(29, 2, 400), 1, 24000229),
            Row(0x10, QORDATE(29, 2, 904), 1, 19040229), Row(0x10, QORDATE(1, 13, 2024), 0, 20190305),
            Row(0x10, QORDATE(127, 127, 32767), 0, 20190305), Row(0x10, QORDATE(), 1, 0),
            Row(0x10, QORDATE(0, 1, 2024), 1, 0), Row(0x00, QORDATE(), 0, 20190305),
            Row(0x12, QORDATE(0, 2, 2024), 1, 20240201), Row(0x12, QORDATE(77, 2, 2024), 1, 20240201),
            Row(0x12, QORDATE(1, 13, 2024), 0, 20190305), Row(0x13, QORDATE(24, 12, 0), 1, 20191224),
            Row(0x14, QORDATE(30, 2, 1500), 1, 20190230), Row(0x13, QORDATE(32, 2, 0), 0, 20190305),
            Row(0x15, QORDATE(0, 0, 2020), 1, 20200101), Row(0x16, QORDATE(0, 7, 0), 1, 20190701),
            Row(0x17, QORDATE(31, 0, 0), 1, 20190131), Row(0x18, QORDATE(9, 9, 9), 1, 20190109),
            Row(0x1F, QORDATE(2, 1, 2024), 1, 20240102))) {
    CQorDate date = OfKind(style);
    EXPECT_EQ(date.CheckDate(value), accepted) << std::hex << style << " " << value.ToLongDate();
    date = value;
    EXPECT_EQ(Fields(date), fields) << std::hex << style << " " << value.ToLongDate();
    EXPECT_EQ(static_cast<double>(date), date.ToQORDATE().ToDATE());
  }
}

TEST(EraDate, AssignmentOfNumbers) {
  const std::tuple<unsigned, double, int, int> rows[] = {
      {0x10, 45000.0, 1, 20230315},  {0x10, 45000.75, 1, 20230315},
      {0x10, -11438.0, 1, 18680905}, {0x10, 0.0, 1, 0},
      {0x10, 0.5, 1, 18991230},      {0x00, 0.0, 0, 20190305},
      {0x00, 0.5, 0, 20190305},      {0x10, 2958466.0, 0, 20190305},
      {0x10, 1e300, 0, 20190305},    {0x10, -1e300, 1, -10101},
      {0x10, -657435.0, 1, -10101},  {0x10, std::nan(""), 0, 20190305},
  };
  for (const auto& [style, value, accepted, fields] : rows) {
    CQorDate date = OfKind(style);
    EXPECT_EQ(date.CheckDate(value), accepted) << value;
    date = value;
    EXPECT_EQ(Fields(date), fields) << value;
  }
  EXPECT_EQ(QORDATETIME(CQorDate(45000.75)).hour, 18);
  EXPECT_EQ(Fields(CQorDate(1e300)), Fields(CQorDate()));
}

TEST(EraDate, Setters) {
  using Set = int (*)(CQorDate&, int);
  const Set year = [](CQorDate& date, int value) { return date.SetYear(static_cast<short>(value)); };
  const Set month = [](CQorDate& date, int value) { return date.SetMonth(static_cast<char>(value)); };
  const Set day = [](CQorDate& date, int value) { return date.SetDay(static_cast<char>(value)); };
  const Set whole = [](CQorDate& date, int value) { return date.SetLongDate(value); };
  const Set kind = [](CQorDate& date, int value) { return date.SetStyle(static_cast<unsigned>(value)), 1; };
  // INT_MIN: day and month 0, so the object becomes empty; of kind 0 it refuses that.
  CQorDate date(QORDATE(31, 3, 2019));
  using Row = std::tuple<Set, int, int, int>;
  for (const auto& [set, value, accepted, fields] :
       Rows(Row(year, 99, 0, 20190331), Row(month, 2, 0, 20190331), Row(month, 13, 0, 20190331),
            Row(day, 32, 0, 20190331), Row(year, 950, 1, 19500331), Row(year, 123, 1, 21230331),
            Row(day, 1, 1, 21230301), Row(month, 12, 1, 21231201), Row(whole, 0x07E8021D, 1, 20240229),
            Row(whole, INT_MIN, 1, 0), Row(whole, -1, 0, 0), Row(kind, 0, 1, 0), Row(whole, 0, 0, 0))) {
    EXPECT_EQ(set(date, value), accepted) << value;
    EXPECT_EQ(Fields(date), fields) << value;
  }
}

TEST(EraDate, RangeMovesAndRefuses) {
  CQorDate date(QORDATE(5, 3, 2019));
  date.SetMinMax(QORDATE(1, 4, 2023), QORDATE(31, 3, 2024));
  EXPECT_EQ(Fields(date), 20230401);
  date = QORDATE(31, 3, 2023);
  EXPECT_EQ(Fields(date), 20230401);
  date = QORDATE(31, 3, 2024);
  EXPECT_EQ(Fields(date), 20240331);
  ++date;
  EXPECT_EQ(Fields(date), 20240331);
  EXPECT_EQ(Fields(date + 1), 20240401);  // the sum has the default range
  date.SetMinMax(QORDATE(31, 3, 2024), QORDATE(1, 4, 2023));
  EXPECT_EQ(date.CheckDate(QORDATE(1, 5, 2023)), 1);
  date.SetMinMax(std::nan(""), 1.0);
  EXPECT_EQ(date.CheckDate(QORDATE(1, 5, 2023)), 1);
  date.SetMinMax(40000.0, 41000.0);
  EXPECT_EQ(static_cast<double>(date), 41000.0);
  date.SetMin();
  EXPECT_EQ(static_cast<double>(date), 40000.0);
  date.SetMax();
  EXPECT_EQ(static_cast<double>(date), 41000.0);
  date.Empty();
  date.SetMinMax(42000.0, 43000.0);
  EXPECT_EQ(date.IsEmpty(), 1);
  EXPECT_EQ(static_cast<double>(date), 0.0);

  CQorDate filled;
  filled.SetStyle(0);
  filled.Empty();
  EXPECT_EQ(filled.IsEmpty(), 0);
  filled.SetMin();
  EXPECT_EQ(static_cast<double>(filled), 1.0);

  // A month counts when any of its days lies in range.
  CQorDate month = OfKind(0x12);
  month.SetMinMax(QORDATE(31, 3, 2019), QORDATE(1, 6, 2019));
  EXPECT_EQ(month.CheckDate(QORDATE(0, 2, 2019)), 0);
  EXPECT_EQ(month.CheckDate(QORDATE(0, 3, 2019)), 1);
  EXPECT_EQ(month.CheckDate(QORDATE(0, 6, 2019)), 1);
  EXPECT_EQ(month.CheckDate(QORDATE(0, 7, 2019)), 0);
}

TEST(EraDate, StyleBits) {
  CQorDate date;
  date.ModifyStyle(0, 0xF003);
  EXPECT_EQ(date.GetStyle(), 0xF013u);
  date.ModifyStyle(0xFFFFFFFF, 0);
  EXPECT_EQ(date.GetStyle(), 0x13u);
}

TEST(EraDate, DayArithmetic) {
  CQorDate date(QORDATE(28, 2, 2024));
  // Each step starts where the last one ended.
  using Row = std::tuple<void (*)(CQorDate&), int>;
  for (const auto& [step, fields] :
       Rows(Row([](CQorDate& d) { d++; }, 20240229), Row([](CQorDate& d) { --d; }, 20240228),
            Row([](CQorDate& d) { d--; }, 20240227), Row([](CQorDate& d) { d += 366; }, 20250227),
            Row([](CQorDate& d) { d -= 366; }, 20240227), Row([](CQorDate& d) { d += INT_MAX; }, 20240227),
            Row([](CQorDate& d) { ++d; }, 20240228), Row([](CQorDate& d) { d.Empty(); }, 0),
            Row([](CQorDate& d) { ++d; }, 0), Row([](CQorDate& d) { d -= INT_MIN; }, 0),
            Row([](CQorDate& d) { d -= -9; }, 0))) {
    step(date);
    EXPECT_EQ(Fields(date), fields);
  }
  date = QORDATE(27, 2, 2024);
  EXPECT_EQ(date - CQorDate(QORDATE(27, 2, 2023)), 365);
  EXPECT_EQ(Fields(date - 27), 20240131);
  EXPECT_EQ(CQorDate(-1e300) - date, INT_MIN);
  EXPECT_TRUE(CQorDate(1.0) < CQorDate(2.0));
  EXPECT_TRUE(CQorDate(2.0) >= CQorDate(2.0));
  EXPECT_TRUE(CQorDate(2.0) != CQorDate(1.0));
}

TEST(EraDate, MonthArithmetic) {
  // 32767 months back would be before 1899.
  const std::tuple<QORDATE, int, int> rows[] = {
      {QORDATE(31, 3, 2024), 1, 20240229},      {QORDATE(31, 1, 2024), 1, 20231231},
      {QORDATE(15, 6, 2024), -18, 20251215},    {QORDATE(15, 6, 2024), 0, 20240615},
      {QORDATE(31, 12, 2024), -2, 20250228},    {QORDATE(15, 6, 2024), 65536, 20240615},
      {QORDATE(15, 6, 2024), 32767, 20240615},  {QORDATE(15, 6, 2024), -32761, 47540715},
      {QORDATE(15, 6, 2024), -32762, 20240615}, {QORDATE(15, 6, 2024), INT_MIN, 20240615},
  };
  for (const auto& [from, months_back, to] : rows) {
    CQorDate date(from);
    EXPECT_EQ(Fields(date << months_back), to) << months_back;
    date <<= months_back;
    EXPECT_EQ(Fields(date), to) << months_back;
    CQorDate forward(from);
    if (months_back != INT_MIN) {
      EXPECT_EQ(Fields(forward >> -months_back), to) << months_back;
      forward >>= -months_back;
      EXPECT_EQ(Fields(forward), to) << months_back;
    }
  }
  CQorDate narrow(QORDATE(15, 3, 2024));
  narrow.SetMinMax(QORDATE(1, 3, 2024), QORDATE(31, 3, 2024));
  EXPECT_EQ(Fields(narrow >> 1), 20240315);
  CQorDate empty(QORDATE{});
  empty <<= 1;
  empty >>= 1;
  EXPECT_EQ(empty.IsEmpty(), 1);
}

TEST(EraDate, DayNumbers) {
  const CQorDate date;
  for (int number = -11690; number <= 70000; number += 13) {
    const QORDATE day = date.GetDateFromDays(number);
    ASSERT_EQ(date.GetDaysFromDate(day), number);
    ASSERT_EQ(day.ToDATE(), number);
  }
  EXPECT_EQ(Fields(date.GetDateFromDays(-657434)), 1000101);
  EXPECT_EQ(Fields(date.GetDateFromDays(2958466)), -10101);
  EXPECT_EQ(Fields(date.GetDateFromDays(LONG_MIN)), -10101);
  EXPECT_LT(date.GetDaysFromDate(QORDATE(-128, -128, -32768)), 0);
  EXPECT_GT(date.GetDaysFromDate(QORDATE(127, 127, 32767)), 0);
  EXPECT_EQ(date.GetLeapCount(2024), 506 - 20 + 5);
  EXPECT_EQ(date.GetDaysOfMonth(2023, 0), 0);
  EXPECT_EQ(date.GetDaysOfMonth(2023, 13), 0);
  EXPECT_EQ(date.GetDaysOfMonth(2024, 2), 29);
  const CQorDate leap(QORDATE(1, 2, 2024));
  EXPECT_EQ(leap.GetDaysOfMonth(), 29);
  EXPECT_EQ(leap.IsLeap(), 1);
  EXPECT_EQ(leap.IsLeap(1900), 0);
  EXPECT_EQ(leap.GetWeek(), 4);
  EXPECT_EQ(CQorDate(-1.0).GetWeek(), 5);
}

TEST(Era, FirstAndLastDays) {
  const std::tuple<QORDATE, int, int> rows[] = {
      {QORDATE(31, 12, 1867), -1, 0}, {QORDATE(1, 1, 1868), 0, 1},    {QORDATE(29, 7, 1912), 0, 45},
      {QORDATE(30, 7, 1912), 1, 1},   {QORDATE(24, 12, 1926), 1, 15}, {QORDATE(25, 12, 1926), 2, 1},
      {QORDATE(7, 1, 1989), 2, 64},   {QORDATE(8, 1, 1989), 3, 1},    {QORDATE(30, 4, 2019), 3, 31},
      {QORDATE(1, 5, 2019), 4, 1},    {QORDATE(31, 12, 2087), 4, 69},
  };
  for (const auto& [row_date, row_era, year] : rows) {
    CQorDate date(row_date.ToDATE());
    int era = 99;
    EXPECT_EQ(date.GetGengo(), row_era) << Fields(row_date);
    EXPECT_EQ(date.GetWareki(&era), year) << Fields(row_date);
    EXPECT_EQ(era, row_era < 0 ? 5 : row_era) << Fields(row_date);
    EXPECT_EQ(CQorDate::GetSeirekiFromWareki(static_cast<short>(year), row_era),
              row_era < 0 ? 0 : row_date.year);
    // An empty value answers with the era of its last date, and with no year.
    date.Empty();
    EXPECT_EQ(date.GetGengo(), row_era);
    EXPECT_EQ(date.GetWareki(&era), 0);
    EXPECT_EQ(era, 5);
  }
  EXPECT_TEXT(L"明治", CQorDate::GetGengoJPNString(0));
  EXPECT_TEXT(L"S", CQorDate::GetGengoRomaString(2));
  for (int bad : {-1, 5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(CQorDate::GetGengoJPNString(bad), nullptr);
    EXPECT_EQ(CQorDate::GetGengoRomaString(bad), nullptr);
    EXPECT_EQ(CQorDate::GetSeirekiFromWareki(1, bad), 0);
  }
}

}  // namespace
