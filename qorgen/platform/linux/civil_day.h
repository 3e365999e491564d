#pragma once

// The proleptic Gregorian calendar as day numbers: day 0 is 30 December 1899. Pure arithmetic, any thread.

namespace qorgen::platform {

struct CivilDay {
  int year;
  int month;
  int day;
};

inline constexpr int kFirstVariantDay = -657434;  // 1 January 100
inline constexpr int kLastVariantDay = 2958465;   // 31 December 9999

constexpr bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysInMonth(int year, int month) {
  if (month == 2) return IsLeapYear(year) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// Days of a common year before `month` (1 to 12): months from March on have lengths that repeat every five.
constexpr int DaysBeforeMonth(int year, int month) {
  if (month <= 2) return (month - 1) * 31;
  return 59 + (IsLeapYear(year) ? 1 : 0) + (153 * (month - 3) + 2) / 5;
}

// Year 1 to 9999, month 1 to 12; the day may lie outside its month and counts on.
constexpr int DayFromCivil(int year, int month, int day) {
  const int before = year - 1;
  // 693594 is the count of 30 December 1899, with 1 January of the year 1 as day 1.
  return before * 365 + before / 4 - before / 100 + before / 400 + DaysBeforeMonth(year, month) + day -
         693594;
}

// For day numbers of the years 1 to 9999.
constexpr CivilDay CivilFromDay(int number) {
  int rest = number + 693593;  // since 1 January of the year 1
  int year = 1 + rest / 146097 * 400;
  rest %= 146097;
  // The last day of a cycle of 400 years, and of 4, would count as a fifth part of its own.
  const int centuries = rest / 36524 < 4 ? rest / 36524 : 3;
  rest -= centuries * 36524;
  year += centuries * 100 + rest / 1461 * 4;
  rest %= 1461;
  const int years = rest / 365 < 4 ? rest / 365 : 3;
  rest -= years * 365;
  year += years;
  int month = rest / 31 + 1;  // right, or one too low
  if (month < 12 && rest >= DaysBeforeMonth(year, month + 1)) ++month;
  return {year, month, rest - DaysBeforeMonth(year, month) + 1};
}

static_assert(DayFromCivil(1899, 12, 30) == 0 && DayFromCivil(1900, 3, 1) == 61);
static_assert(DayFromCivil(100, 1, 1) == kFirstVariantDay && DayFromCivil(9999, 12, 31) == kLastVariantDay);
static_assert(CivilFromDay(kLastVariantDay).day == 31 && CivilFromDay(36585).month == 2);

}  // namespace qorgen::platform
