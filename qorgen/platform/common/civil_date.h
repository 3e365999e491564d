#pragma once

// Arithmetic of the proleptic Gregorian calendar over plain integers, all of it constexpr: the one that the
// calendar, the variant times, the file times and the formatted times share.
//
// A day number counts days from 30 December 1899, as the whole part of the platform's DATE does. Stateless.

#include <limits>

namespace qorgen::platform {

struct CivilDate {
  int year;
  int month;
  int day;
};

constexpr bool IsLeap(int year) {
  return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
}

// Days of a month; 31 for every number that is no month.
constexpr int MonthLength(int year, int month) {
  if (month == 2) return IsLeap(year) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// The day number of a date of the year 0 or later; the day may lie outside its month and counts on. The year is
// taken to begin in March, so that the leap day is its last: month lengths then follow (153 * m + 2) / 5, and a cycle of 400 years has 146097 days.
constexpr int DayNumber(int year, int month, int day) {
  const int shifted = month > 2 ? year : year - 1;
  const int cycle = (shifted >= 0 ? shifted : shifted - 399) / 400;
  const int year_of_cycle = shifted - cycle * 400;
  const int day_of_year = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const int day_of_cycle = year_of_cycle * 365 + year_of_cycle / 4 - year_of_cycle / 100 + day_of_year;
  constexpr int kDaysBeforeBase = 693899;  // from 1 March of the year 0 to 30 December 1899
  return cycle * 146097 + day_of_cycle - kDaysBeforeBase;
}

// What the platform's DATE can express: 1 January 100 to 31 December 9999.
inline constexpr int kFirstDateYear = 100;
inline constexpr int kLastDateYear = 9999;
inline constexpr int kFirstDayNumber = DayNumber(kFirstDateYear, 1, 1);
inline constexpr int kLastDayNumber = DayNumber(kLastDateYear, 12, 31);

constexpr bool IsDayNumber(long long number) {
  return number >= kFirstDayNumber && number <= kLastDayNumber;
}

// Whether the three parts are a real date with a DATE.
constexpr bool HasDayNumber(int year, int month, int day) {
  return year >= kFirstDateYear && year <= kLastDateYear && month >= 1 && month <= 12 && day >= 1 &&
         day <= MonthLength(year, month);
}

// The date of a day number of 1 March of the year 0 or later.
constexpr CivilDate CivilFromDayNumber(int number) {
  const int days = number + 693899;
  const int cycle = days / 146097;
  const int day_of_cycle = days - cycle * 146097;
  const int year_of_cycle =
      (day_of_cycle - day_of_cycle / 1460 + day_of_cycle / 36524 - day_of_cycle / 146096) / 365;
  const int day_of_year = day_of_cycle - (365 * year_of_cycle + year_of_cycle / 4 - year_of_cycle / 100);
  const int shifted_month = (5 * day_of_year + 2) / 153;
  const int month = shifted_month < 10 ? shifted_month + 3 : shifted_month - 9;
  return {cycle * 400 + year_of_cycle + (month <= 2 ? 1 : 0), month,
          day_of_year - (153 * shifted_month + 2) / 5 + 1};
}

// Day of the week of a day number, 0 for Sunday to 6 for Saturday, before the base as well as after it.
constexpr int WeekDay(int number) {
  const int remainder = static_cast<int>((static_cast<long long>(number) + 6) % 7);
  return remainder < 0 ? remainder + 7 : remainder;
}

// The whole part of a DATE. What no int can hold becomes the nearest one; a value that is not a number
// becomes 0.
constexpr int WholePart(double value) {
  if (value != value) return 0;
  if (value >= 2147483647.0) return std::numeric_limits<int>::max();
  if (value <= -2147483648.0) return std::numeric_limits<int>::min();
  return static_cast<int>(value);
}

static_assert(DayNumber(1899, 12, 30) == 0 && DayNumber(1970, 1, 1) == 25569);
static_assert(kFirstDayNumber == -657434 && kLastDayNumber == 2958465);
static_assert(CivilFromDayNumber(0).year == 1899 && CivilFromDayNumber(0).month == 12 &&
              CivilFromDayNumber(0).day == 30);
static_assert(WeekDay(0) == 6 && WeekDay(1) == 0 && WeekDay(-6) == 0 && WeekDay(-7) == 6);

}  // namespace qorgen::platform
