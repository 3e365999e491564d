#pragma once

// The plain date and date-time records that the whole library passes by value.
//
// Neither record checks anything: it may hold an impossible date, and one with all fields 0 is the empty
// date. A record made from an invalid COleDateTime has -1 in each field and is not empty. No shared state;
// every operation may be called from any thread. Nothing throws.

#include <cstddef>
#include <type_traits>

#include "qorgen/afx/date_time.h"
#include "qorgen/platform/common/civil_date.h"
#include "qorgen/platform/export.h"

// A date in four bytes, stored and copied as one 32-bit unit.
//
// The integer form is year << 16 | month << 8 | day (month and day sign-extended), so 8 September 1868 is
// 0x074C0908 and the empty date 0. It is the library's sort key, not a day count: the difference of two forms
// means something only by its sign. The floating form is the platform's DATE, days since 30 December 1899.
struct QORGEN_API QORDATE {
  alignas(4) char day;  // 1 to 31
  char month;           // 1 to 12
  short year;           // Gregorian

  constexpr QORDATE() : day(0), month(0), year(0) {}
  constexpr QORDATE(char nDay, char nMonth, short nYear) : day(nDay), month(nMonth), year(nYear) {}
  constexpr QORDATE(const int& nDate) : QORDATE() { Set(nDate); }
  QORDATE(const double& dtDate) : QORDATE() { Set(dtDate); }
  QORDATE(const COleDateTime& date) : QORDATE() { Set(date); }
  QORDATE(const QORDATE&) = default;

  QORDATE& operator=(const QORDATE&) = default;
  constexpr QORDATE& operator=(const int& nDate) {
    Set(nDate);
    return *this;
  }
  QORDATE& operator=(const double& dtDate) {
    Set(dtDate);
    return *this;
  }
  QORDATE& operator=(const COleDateTime& date) {
    Set(date);
    return *this;
  }

  // From the integer form: day from the low 8 bits, month from the next 8, year from the high 16.
  constexpr void Set(int nDate) {
    day = static_cast<char>(nDate & 0xFF);
    month = static_cast<char>((nDate >> 8) & 0xFF);
    year = static_cast<short>(nDate >> 16);
  }

  // From a DATE, as from a valid COleDateTime that holds it: 0.0 is 30 December 1899, not the empty date. A
  // value that is no DATE (outside the years 100 to 9999, or not a number) gives -1 in each field.
  void Set(const double& dtDate);

  // A null value empties the record; an invalid one gives -1 in each field.
  void Set(const COleDateTime& date);

  constexpr int ToLongDate() const {
    const unsigned form = (static_cast<unsigned>(year) << 8 | static_cast<unsigned>(month)) << 8;
    return static_cast<int>(form | static_cast<unsigned>(day));
  }
  constexpr operator int() const { return ToLongDate(); }

  // The DATE of the record; 0.0 for the empty date and for one that is no real date of the years 100 to 9999.
  double ToDATE() const;
  operator double() const { return ToDATE(); }

  // Null for the empty date; invalid, with the value 0.0, for one that is no real date of the years 100 to
  // 9999.
  COleDateTime ToOleDateTime() const;
  operator COleDateTime() const { return ToOleDateTime(); }

  // 1 when this date sorts after `date`, 0 when they are equal, -1 when it sorts before. The sign is that of
  // the true difference of the integer forms, also where that passes 32 bits (years below 0 only).
  constexpr int Compare(const QORDATE& date) const {
    const int mine = ToLongDate();
    const int other = date.ToLongDate();
    return (mine > other) - (mine < other);
  }
  constexpr int operator==(const QORDATE& date) const { return Compare(date) == 0; }
  constexpr int operator!=(const QORDATE& date) const { return Compare(date) != 0; }
  constexpr int operator<(const QORDATE& date) const { return Compare(date) < 0; }
  constexpr int operator<=(const QORDATE& date) const { return Compare(date) <= 0; }
  constexpr int operator>(const QORDATE& date) const { return Compare(date) > 0; }
  constexpr int operator>=(const QORDATE& date) const { return Compare(date) >= 0; }

  constexpr void Empty() { *this = QORDATE(); }
  constexpr int IsEmpty() const { return day == 0 && month == 0 && year == 0; }

  // Today by the local clock; -1 in each field when the clock cannot be read.
  void Today();

  constexpr void FirstDay() { day = 1; }
  constexpr void LastDay() { day = GetDays(year, month); }
  constexpr void FirstMonthDay() {
    day = 1;
    month = 1;
  }
  constexpr void LastMonthDay() {
    day = 31;
    month = 12;
  }

  // One day on or back, over the ends of months and years. The year wraps within its 16 bits.
  void IncDay();
  void DecDay();

  // One month on or back, purposely thin: inside a year the day is left alone, so 31 January becomes 31
  // February. Only a step into another year limits the day to the new month. CQorDateUtil::IncMonth or the
  // shift operators of CQorDate give a month step with a real end of month.
  void IncMonth();
  void DecMonth();

  // 0 for Sunday to 6 for Saturday, before 1899 too; -1 for the empty date; 6 for an impossible date (its
  // DATE is 0.0).
  int GetWeek() const;

  // Days of the month. There is deliberately no check: every number that is no month has 31.
  static constexpr char GetDays(short nYear, char nMonth) {
    return static_cast<char>(qorgen::platform::MonthLength(nYear, nMonth));
  }
  static constexpr int IsLeapYear(short nYear) { return qorgen::platform::IsLeap(nYear); }
};

// A date and a time of day in eight bytes.
struct QORGEN_API QORDATETIME {
  alignas(4) char day;
  char month;
  short year;
  char hour;     // 0 to 23
  char minute;   // 0 to 59
  short second;  // 0 to 59

  constexpr QORDATETIME() : day(0), month(0), year(0), hour(0), minute(0), second(0) {}
  // Takes a time, not a date: the date part is empty.
  constexpr QORDATETIME(char nHour, char nMinute, short nSecond)
      : day(0), month(0), year(0), hour(nHour), minute(nMinute), second(nSecond) {}
  QORDATETIME(const QORDATETIME&) = default;

  QORDATETIME& operator=(const QORDATETIME&) = default;
  QORDATETIME& operator=(const double& dtDate) {
    Set(dtDate);
    return *this;
  }
  QORDATETIME& operator=(const COleDateTime& date) {
    Set(date);
    return *this;
  }

  // As the two forms of QORDATE, over all six fields.
  void Set(const double& dtDate);
  void Set(const COleDateTime& date);
  // The time only; the date part is left alone.
  constexpr void Set(char nHour, char nMinute, short nSecond) {
    hour = nHour;
    minute = nMinute;
    second = nSecond;
  }
  // The date part from its integer form; the time becomes 0:00:00.
  constexpr void Set(int nDate) {
    const QORDATE date(nDate);
    *this = QORDATETIME();
    day = date.day;
    month = date.month;
    year = date.year;
  }

  // Null when all six fields are 0; invalid, with the value 0.0, when they are no real date and time (a time
  // without a date is none).
  COleDateTime ToOleDateTime() const;
  operator COleDateTime() const { return ToOleDateTime(); }

  // 1, 0 or -1: by the date parts, then by whole seconds. Both times count from the same impossible date as
  // equal.
  int Compare(const QORDATETIME& other) const;
  int operator==(const QORDATETIME& other) const { return Compare(other) == 0; }
  int operator!=(const QORDATETIME& other) const { return Compare(other) != 0; }
  int operator<(const QORDATETIME& other) const { return Compare(other) < 0; }
  int operator<=(const QORDATETIME& other) const { return Compare(other) <= 0; }
  int operator>(const QORDATETIME& other) const { return Compare(other) > 0; }
  int operator>=(const QORDATETIME& other) const { return Compare(other) >= 0; }

  // Minutes from `other` to this value, cut toward zero to a whole number; 0.0 when either has no DATE.
  double MinutesSpan(const QORDATETIME& other) const;

  constexpr void Empty() { *this = QORDATETIME(); }
  constexpr int IsEmpty() const {
    return day == 0 && month == 0 && year == 0 && hour == 0 && minute == 0 && second == 0;
  }
};

static_assert(std::is_trivially_copyable_v<QORDATE> && std::is_standard_layout_v<QORDATE>);
static_assert(sizeof(QORDATE) == 4 && alignof(QORDATE) == 4);
static_assert(offsetof(QORDATE, day) == 0 && offsetof(QORDATE, month) == 1 && offsetof(QORDATE, year) == 2);
static_assert(std::is_trivially_copyable_v<QORDATETIME> && std::is_standard_layout_v<QORDATETIME>);
static_assert(sizeof(QORDATETIME) == 8 && offsetof(QORDATETIME, year) == 2 &&
              offsetof(QORDATETIME, hour) == 4);
static_assert(offsetof(QORDATETIME, minute) == 5 && offsetof(QORDATETIME, second) == 6);
static_assert(std::is_signed_v<char>, "day and month are signed 8-bit fields");

// The integer form of `dateA` minus that of `dateB`: the raw difference, not -1, 0 or 1. It wraps within 32
// bits, which only years below 0 can show; QORDATE::Compare doesn't wrap.
QORGEN_API long CompareDate(QORDATE dateA, QORDATE dateB);

// The integer form.
QORGEN_API long DateToLong(QORDATE date);
