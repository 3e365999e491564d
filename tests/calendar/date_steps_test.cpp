// Date arithmetic, weeks, and typed dates clamped into a period.

#include "qorgen/calendar/date_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

int Fields(const QORDATE& date) {
  return date.year * 10000 + date.month * 100 + date.day;
}

TEST(DateSteps, Months) {
  using Row = std::tuple<int, int, int, int, int, int>;
  for (const auto& [row_year, month, next_year, next, previous_year, previous] :
       Rows(Row(2023, 12, 2024, 1, 2023, 11), Row(2023, 1, 2023, 2, 2022, 12), Row(2023, 6, 2023, 7, 2023, 5),
            Row(2023, 13, 2023, 14, 2023, 12), Row(2023, 0, 2023, 1, 2022, 12),
            Row(2023, -7, 2023, -6, 2022, 12), Row(INT_MAX, 12, INT_MIN, 1, INT_MAX, 11),
            Row(INT_MIN, INT_MIN, INT_MIN, INT_MIN + 1, INT_MAX, 12),
            Row(5, INT_MAX, 5, INT_MIN, 5, INT_MAX - 1))) {
    int year = row_year;
    EXPECT_EQ(CQorDateUtil::IncMonth(year, month), next);
    EXPECT_EQ(year, next_year);
    year = row_year;
    EXPECT_EQ(CQorDateUtil::DecMonth(year, month), previous);
    EXPECT_EQ(year, previous_year);
  }
}

TEST(DateSteps, DaysAndLengths) {
  EXPECT_EQ(Fields(CQorDateUtil::IncDay(QORDATE(31, 12, 2023))), 20240101);
  EXPECT_EQ(Fields(CQorDateUtil::DecDay(QORDATE(1, 3, 2024))), 20240229);
  EXPECT_EQ(CQorDateUtil::DaysOfMonth(2023, 0), 31);
  EXPECT_EQ(CQorDateUtil::GetDays(1900, 2), 28);
  EXPECT_EQ(CQorDateUtil::GetDays(INT_MAX, INT_MIN), 31);
  EXPECT_EQ(CQorDateUtil::MonthesOfYear(-1), 12);
  EXPECT_EQ(CQorDateUtil::IsLeapYear(static_cast<short>(2000)), 1);
  EXPECT_EQ(CQorDateUtil::IsLeapYear(2100), 0);
  EXPECT_EQ(CQorDateUtil::IsLeapYear(INT_MIN), 1);
}

TEST(DateSteps, ValidDates) {
  const std::pair<QORDATE, int> rows[] = {{QORDATE(29, 2, 2024), 1},   {QORDATE(1, 1, 1), 1},
                                          {QORDATE(31, 12, 32767), 1}, {QORDATE(), 0},
                                          {QORDATE(29, 2, 2023), 0},   {QORDATE(1, 1, 0), 0},
                                          {QORDATE(1, 0, 2023), 0},    {QORDATE(1, 13, 2023), 0},
                                          {QORDATE(0, 1, 2023), 0}};
  for (const auto& [date, valid] : rows) EXPECT_EQ(CQorDateUtil::IsValid(date), valid) << date.ToLongDate();
}

TEST(DateSteps, SundaysAndHolidays) {
  const std::tuple<QORDATE, int, int, int> rows[] = {
      {QORDATE(2, 6, 2024), 1, 0, 1}, {QORDATE(1, 6, 2024), 0, 1, 0}, {QORDATE(3, 6, 2024), 0, 0, 0},
      {QORDATE(6, 5, 2024), 0, 0, 1}, {QORDATE(3, 5, 2025), 0, 1, 1}, {QORDATE(2, 5, 2019), 0, 0, 1},
      {QORDATE(), 1, 0, 0},           {QORDATE(1, 1, 0), 0, 1, 0},    {QORDATE(0, 1, 2024), 0, 1, 0},
      {QORDATE(-1, -1, -1), 0, 1, 0}, {QORDATE(1, 1, 99), 0, 1, 1},   {QORDATE(8, 9, 1868), 0, 0, 0},
  };
  for (const auto& [date, sunday, saturday, holiday] : rows) {
    EXPECT_EQ(CQorDateUtil::IsSunday(date), sunday) << Fields(date);
    EXPECT_EQ(CQorDateUtil::IsSaturday(date), saturday) << Fields(date);
    EXPECT_EQ(CQorDateUtil::IsHoliday(date), holiday) << Fields(date);
  }
}

TEST(Weeks, RowsOfEveryMonth) {
  for (int year = 1868; year <= 2087; ++year) {
    for (int month = 1; month <= 12; ++month) {
      int first = -1;
      int last = -1;
      const int rows = CQorDateUtil::GetWeekRange(year, month, &first, &last);
      const int days = CQorDateUtil::GetDays(year, month);
      int row = 0;
      int column = first;
      int seen[7] = {};
      for (int day = 1; day <= days; ++day) {
        const QORDATE date(static_cast<char>(day), static_cast<char>(month), static_cast<short>(year));
        int found = -1;
        int turn = -1;
        ASSERT_EQ(CQorDateUtil::GetWeek(date, &found, 0), column) << Fields(date);
        ASSERT_EQ(found, row) << Fields(date);
        ASSERT_EQ(CQorDateUtil::GetWeek(date, &turn, 1), column);
        ASSERT_EQ(turn, seen[column]++) << Fields(date);
        ASSERT_EQ(CQorDateUtil::GetDayFromWeek(year, month, row, column, 0), day) << Fields(date);
        if (day == days) {
          ASSERT_EQ(rows, row + 1);
          ASSERT_EQ(last, column);
        }
        if (++column == 7) {
          column = 0;
          ++row;
        }
      }
    }
  }
}

TEST(Weeks, DaysThatAreNotThere) {
  int first = -1;
  int last = -1;
  EXPECT_EQ(CQorDateUtil::GetWeekRange(2024, 6, nullptr, nullptr), 6);
  const std::tuple<int, int, int, int> rows[] = {
      {0, 5, 0, -1},       {0, 6, 0, 1},  {5, 0, 0, 30},  {5, 1, 0, -1},       {6, 0, 0, -1},
      {INT_MAX, 0, 1, -1}, {1, 1, 1, 10}, {1, 1, 0, 3},   {1, 6, 1, 8},        {-1, 6, 0, -1},
      {INT_MIN, 0, 1, -1}, {1, 7, 0, -1}, {1, -1, 0, -1}, {0, INT_MAX, 0, -1}, {0, INT_MIN, 1, -1},
  };
  for (const auto& [week, week_day, adjust, day] : rows) {
    EXPECT_EQ(CQorDateUtil::GetDayFromWeek(2024, 6, week, week_day, adjust), day)
        << week << " " << week_day << " " << adjust;
  }
  // Months and years that are none: no layout worth the name, but an answer.
  for (int bad : {INT_MIN, -1, 0, 13, 40000, INT_MAX}) {
    const int count = CQorDateUtil::GetWeekRange(bad, bad, &first, &last);
    EXPECT_TRUE(count >= 4 && count <= 6) << bad << ": " << count;
    EXPECT_TRUE(first >= 0 && first <= 6) << bad << ": " << first;
    EXPECT_TRUE(last >= 0 && last <= 6) << bad << ": " << last;
  }
  int row = -1;
  EXPECT_EQ(CQorDateUtil::GetWeek(QORDATE(), &row, 1), -1);
  EXPECT_EQ(row, 0);
}

TEST(NormalizeDate, Findings) {
  const QORDATE lowest(1, 4, 2023);
  const QORDATE highest(31, 3, 2024);
  const QORDATE far_low(1, 1, -100);
  const QORDATE far_high(1, 1, 9999);
  // QORDATE(0, 2, 0): the day comes from the far bound, 31.
  using Row = std::tuple<QORDATE, QORDATE, QORDATE, unsigned, int, int>;
  for (const auto& [date, row_lowest, row_highest, typed, fields, code] :
       Rows(Row(QORDATE(), lowest, highest, 0x700, 0, 0),
            Row(QORDATE(15, 1, 0), lowest, highest, 0x300, 20240115, 0),
            Row(QORDATE(15, 5, 0), lowest, highest, 0x300, 20230515, 0),
            Row(QORDATE(0, 6, 0), lowest, highest, 0x200, 20230601, 0),
            Row(QORDATE(0, 2, 0), lowest, highest, 0x200, 20240229, 4),
            Row(QORDATE(31, 2, 2024), lowest, highest, 0x700, 20240229, 4),
            Row(QORDATE(0, 0, 2023), lowest, highest, 0x400, 20230401, 0),
            Row(QORDATE(9, 0, 2023), lowest, highest, 0x500, 20230401, 0),
            Row(QORDATE(0, 7, 2023), lowest, highest, 0x600, 20230701, 0),
            Row(QORDATE(0, 0, 2024), lowest, highest, 0x400, 20240331, 1),
            Row(QORDATE(1, 1, 2020), lowest, highest, 0x700, 20230401, -1),
            Row(QORDATE(1, 1, 2030), lowest, highest, 0x700, 20240331, 1),
            Row(QORDATE(5, 5, 2022), lowest, highest, 0, 20240331, 0),
            Row(QORDATE(5, 13, 2023), lowest, highest, 0x700, 20231205, 3),
            Row(QORDATE(40, 13, 2023), lowest, highest, 0x700, 20231231, 4),
            Row(QORDATE(0, 5, 2023), lowest, highest, 0x700, 20230501, -4),
            Row(QORDATE(5, 0, 2024), lowest, highest, 0x700, 20240105, -3),
            Row(QORDATE(5, 6, -3), far_low, far_high, 0x700, 18680605, -2),
            Row(QORDATE(5, 6, 2088), far_low, far_high, 0x700, 20870605, 2),
            Row(QORDATE(0, 0, 3000), far_low, far_high, 0x700, 20870101, -4))) {
    QORDATE result(9, 9, 999);
    EXPECT_EQ(CQorDateUtil::NormalizeDate(date, row_lowest, row_highest, typed, &result), code)
        << Fields(date) << " " << std::hex << typed;
    EXPECT_EQ(Fields(result), fields) << Fields(date) << " " << std::hex << typed;
    EXPECT_EQ(CQorDateUtil::NormalizeDate(date, row_lowest, row_highest, typed, nullptr), code);
  }
}

}  // namespace
