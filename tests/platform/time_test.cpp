#include "qorgen/platform/time.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

#include "tests/support/wine.h"

namespace {

SYSTEMTIME Moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                  int millisecond = 0) {
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(year);
  time.wMonth = static_cast<WORD>(month);
  time.wDay = static_cast<WORD>(day);
  time.wHour = static_cast<WORD>(hour);
  time.wMinute = static_cast<WORD>(minute);
  time.wSecond = static_cast<WORD>(second);
  time.wMilliseconds = static_cast<WORD>(millisecond);
  return time;
}

TEST(VariantTime, EveryDayThereAndBack) {
  static constexpr int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  double expected = -657434;
  int day_of_week = 5;  // 1 January 100 was a Friday
  for (int year = 100; year <= 9999; ++year) {
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    for (int month = 1; month <= 12; ++month) {
      const int length = kLengths[month - 1] + (leap && month == 2 ? 1 : 0);
      for (int day = 1; day <= length; ++day, ++expected, day_of_week = (day_of_week + 1) % 7) {
        SYSTEMTIME time = Moment(year, month, day);
        double number = 0.5;
        SYSTEMTIME back{};
        // Plain tests: three million assertions of the framework would take seconds.
        if (SystemTimeToVariantTime(&time, &number) != 1 || number != expected ||
            VariantTimeToSystemTime(number, &back) != 1 || back.wYear != year || back.wMonth != month ||
            back.wDay != day || back.wDayOfWeek != day_of_week || back.wHour != 0 || back.wSecond != 0) {
          FAIL() << year << "/" << month << "/" << day << " gave " << number << " for " << expected;
        }
      }
    }
  }
  EXPECT_EQ(2958466, expected);
}

TEST(VariantTime, EverySecondOfADayOnBothSidesOfZero) {
  for (const int day : {45356, 0, -1, -400000}) {
    SYSTEMTIME base{};
    ASSERT_EQ(1, VariantTimeToSystemTime(day, &base));
    for (int second = 0; second < 86400; ++second) {
      SYSTEMTIME time = base;
      time.wHour = static_cast<WORD>(second / 3600);
      time.wMinute = static_cast<WORD>(second / 60 % 60);
      time.wSecond = static_cast<WORD>(second % 60);
      double number = 0;
      SYSTEMTIME back{};
      if (SystemTimeToVariantTime(&time, &number) != 1 || static_cast<int>(number) != day ||
          VariantTimeToSystemTime(number, &back) != 1 || back.wDay != base.wDay || back.wHour != time.wHour ||
          back.wMinute != time.wMinute || back.wSecond != time.wSecond) {
        FAIL() << day << " second " << second << " gave " << number;
      }
    }
  }
}

// The time of day counts away from day 0 on both sides, and is rounded to the nearest second.
TEST(VariantTime, ReadsMomentsToTheNearestSecond) {
  constexpr double kSecond = 1.0 / 86400;
  const struct {
    double number;
    SYSTEMTIME time;
  } rows[] = {
      {0.0, Moment(1899, 12, 30)},
      {2.5, Moment(1900, 1, 1, 12)},
      {-1.25, Moment(1899, 12, 29, 6)},
      {36585.0, Moment(2000, 2, 29)},
      {2958465.75, Moment(9999, 12, 31, 18)},
      {-657434.75, Moment(100, 1, 1, 18)},
      {45356 + 0.4 * kSecond, Moment(2024, 3, 5)},
      {45356 + 0.6 * kSecond, Moment(2024, 3, 5, 0, 0, 1)},
      {45356 + 59.7 * kSecond, Moment(2024, 3, 5, 0, 1, 0)},
      {45356 + 3599.8 * kSecond, Moment(2024, 3, 5, 1, 0, 0)},
      {45356 + 86399.7 * kSecond, Moment(2024, 3, 6)},
  };
  for (const auto& row : rows) {
    SYSTEMTIME expected = row.time;
    double number = 1e9;
    ASSERT_EQ(1, SystemTimeToVariantTime(&expected, &number)) << row.number;
    EXPECT_NEAR(row.number, number, 0.5 * kSecond);
    SYSTEMTIME time{};
    ASSERT_EQ(1, VariantTimeToSystemTime(row.number, &time)) << row.number;
    time.wDayOfWeek = 0;  // every day's is held against a count above
    EXPECT_EQ(0, std::memcmp(&expected, &time, sizeof time)) << row.number;
  }
}

TEST(VariantTime, RepairsDaysAndDropsMilliseconds) {
  const struct {
    SYSTEMTIME given;
    SYSTEMTIME same_as;
    bool on_wine = true;  // it carries a 31st of November into January, and has 30 to 49 in this century
  } rows[] = {
      {Moment(2001, 2, 29), Moment(2001, 3, 1)},
      {Moment(2001, 2, 31), Moment(2001, 3, 3)},
      {Moment(2001, 2, 0), Moment(2001, 1, 31)},
      {Moment(2001, 1, 0), Moment(2000, 12, 31)},
      {Moment(2024, 11, 31), Moment(2024, 12, 1), false},
      {Moment(29, 3, 5), Moment(2029, 3, 5)},
      {Moment(0, 3, 5), Moment(2000, 3, 5)},
      {Moment(30, 3, 5), Moment(1930, 3, 5), false},
      {Moment(99, 3, 5), Moment(1999, 3, 5)},
      {Moment(2024, 3, 5, 1, 2, 3, 999), Moment(2024, 3, 5, 1, 2, 3)},
  };
  for (const auto& row : rows) {
    SYSTEMTIME given = row.given;
    SYSTEMTIME same_as = row.same_as;
    double first = 0;
    double second = 1;
    EXPECT_EQ(1, SystemTimeToVariantTime(&given, &first));
    EXPECT_EQ(1, SystemTimeToVariantTime(&same_as, &second));
    EXPECT_TRUE(qorgen::tests::AsPublished(second == first, row.on_wine))
        << given.wYear << "/" << given.wMonth << "/" << given.wDay;
  }
}

TEST(VariantTime, RefusesWhatIsOutOfRange) {
  const struct {
    SYSTEMTIME time;
    bool on_wine = true;  // it checks neither the time of day nor the month's lower bound
  } rows[] = {
      {Moment(2024, 0, 1), false},
      {Moment(2024, 13, 1)},
      {Moment(2024, 1, 32)},
      {Moment(10000, 1, 1)},
      {Moment(2024, 1, 1, 24), false},
      {Moment(2024, 1, 1, 0, 60), false},
      {Moment(2024, 1, 1, 0, 0, 60), false},
      {Moment(100, 1, 0), false},
      {Moment(2024, 1, -1)},
  };
  for (const auto& row : rows) {
    SYSTEMTIME time = row.time;
    double number = 7;
    EXPECT_TRUE(qorgen::tests::AsPublished(SystemTimeToVariantTime(&time, &number) == 0, row.on_wine))
        << time.wYear << "/" << time.wMonth << "/" << time.wDay;
  }
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double number : {-657435.0, -1e300, 2958466.0, 1e300, infinite, -infinite}) {
    SYSTEMTIME time{};
    EXPECT_EQ(0, VariantTimeToSystemTime(number, &time)) << number;
  }
  SYSTEMTIME none{};
  EXPECT_TRUE(qorgen::tests::HoldsExceptOnWine(VariantTimeToSystemTime(std::nan(""), &none) == 0));
}

TEST(Clock, TheClocksAgree) {
  __time64_t stored = 0;
  const __time64_t now = _time64(&stored);
  EXPECT_EQ(now, stored);
  SYSTEMTIME local{};
  GetLocalTime(&local);
  std::tm parts{};
  ASSERT_EQ(0, _localtime64_s(&parts, &now));
  // Within the second or so between the calls, also across midnight: compare as variant times.
  SYSTEMTIME same = Moment(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                           parts.tm_sec);
  double first = 0;
  double second = 0;
  ASSERT_EQ(1, SystemTimeToVariantTime(&same, &first));
  ASSERT_EQ(1, SystemTimeToVariantTime(&local, &second));
  EXPECT_NEAR(first, second, 10.0 / 86400);
}

TEST(Clock, LocalTimeRefusesTimesBefore1970AndAfter3000) {
  for (const __time64_t time : {static_cast<__time64_t>(-1), static_cast<__time64_t>(40000000000)}) {
    std::tm parts{};
    EXPECT_EQ(EINVAL, _localtime64_s(&parts, &time));
    EXPECT_EQ(-1, parts.tm_year);
    EXPECT_EQ(-1, parts.tm_mday);
  }
}

}  // namespace
