#pragma once

// COleDateTime and COleDateTimeSpan: a moment and a length of time over the DATE double, each with a status.
//
// Objects are plain values; different threads may use different objects. Nothing here throws on bad dates:
// the status says it. Where this page says "whole seconds", the half second rule applies: a half second is
// added to a length of 0 or more and subtracted from a negative one before the number is cut, so that 59.9999
// seconds count as a minute.

#include <cstdint>
#include <ctime>

#include "qorgen/afx/string.h"
#include "qorgen/platform/automation.h"
#include "qorgen/platform/export.h"
#include "qorgen/platform/time.h"

// A length of time in days, in both directions as long as the years 100 to 9999.
class QORGEN_API COleDateTimeSpan {
 public:
  enum DateTimeSpanStatus { valid = 0, invalid = 1, null = 2 };

  COleDateTimeSpan() noexcept = default;
  // `days` with the time as fraction; out of the range above the status is invalid.
  COleDateTimeSpan(double days) noexcept;
  COleDateTimeSpan(LONG days, int hours, int minutes, int seconds) noexcept;

  void SetStatus(DateTimeSpanStatus status) noexcept { m_status = status; }
  DateTimeSpanStatus GetStatus() const noexcept { return m_status; }

  // The whole length in one unit, cut to whole units by the half second rule.
  double GetTotalDays() const noexcept;
  double GetTotalHours() const noexcept;
  double GetTotalMinutes() const noexcept;
  double GetTotalSeconds() const noexcept;

  // The part of each unit: days, then hours -23 to 23, minutes and seconds -59 to 59, all with the sign of
  // the length.
  LONG GetDays() const noexcept;
  LONG GetHours() const noexcept;
  LONG GetMinutes() const noexcept;
  LONG GetSeconds() const noexcept;

  // Parts may lie outside their units (36 hours) and may be negative.
  void SetDateTimeSpan(LONG days, int hours, int minutes, int seconds) noexcept;

  // "%D" days, "%H", "%M" and "%S" parts of two digits, "%%" a percent sign; anything else stands for itself.
  // The empty text for a null span and "Invalid DateTimeSpan" for an invalid one.
  CString Format(const wchar_t* format) const;

  operator double() const noexcept { return m_span; }

  COleDateTimeSpan operator+(const COleDateTimeSpan& other) const noexcept;
  COleDateTimeSpan operator-(const COleDateTimeSpan& other) const noexcept;
  COleDateTimeSpan& operator+=(const COleDateTimeSpan& other) noexcept { return *this = *this + other; }
  COleDateTimeSpan& operator-=(const COleDateTimeSpan& other) noexcept { return *this = *this - other; }
  COleDateTimeSpan operator-() const noexcept;

  // Equal: the same status and length. The order asks the lengths of two valid spans; it is false with any
  // other.
  bool operator==(const COleDateTimeSpan& other) const noexcept;
  bool operator!=(const COleDateTimeSpan& other) const noexcept { return !(*this == other); }
  bool operator<(const COleDateTimeSpan& other) const noexcept;
  bool operator>(const COleDateTimeSpan& other) const noexcept { return other < *this; }
  bool operator<=(const COleDateTimeSpan& other) const noexcept { return *this < other || *this == other; }
  bool operator>=(const COleDateTimeSpan& other) const noexcept { return other < *this || *this == other; }

  double m_span = 0.0;
  DateTimeSpanStatus m_status = valid;

 private:
  void CheckRange() noexcept;
};

// A date of the years 100 to 9999 with a time to the second.
class QORGEN_API COleDateTime {
 public:
  // `error` is what the part accessors give.
  enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

  // The current local time; invalid if the clock can't be broken down.
  static COleDateTime GetCurrentTime();

  // 30 December 1899, 00:00, and valid.
  COleDateTime() noexcept = default;
  // Takes the number as it is; valid if it lies in the years 100 to 9999.
  COleDateTime(DATE date) noexcept { *this = date; }
  // The local time of a moment of 1970 to 3000, else invalid.
  COleDateTime(__time64_t time) noexcept { *this = time; }
  // Valid only if all parts come back the same: 31 June, a year below 100 or second 60 are invalid, with DATE
  // 0. Milliseconds and the day of the week are ignored.
  COleDateTime(const SYSTEMTIME& time) noexcept { *this = time; }
  COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept {
    SetDateTime(year, month, day, hour, minute, second);
  }
  // VT_DATE as it is, VT_NULL the null status, other types through VariantChangeType; else invalid.
  COleDateTime(const VARIANT& value) noexcept { *this = value; }

  COleDateTime& operator=(DATE date) noexcept;
  COleDateTime& operator=(__time64_t time) noexcept;
  COleDateTime& operator=(const SYSTEMTIME& time) noexcept;
  COleDateTime& operator=(const VARIANT& value) noexcept;

  DateTimeStatus GetStatus() const noexcept { return m_status; }
  void SetStatus(DateTimeStatus status) noexcept { m_status = status; }

  // True and the parts, rounded to the second; false, with the target left alone, when the status is not
  // valid or the number is out of range.
  bool GetAsSystemTime(SYSTEMTIME& time) const noexcept;

  // `error` (-1) where GetAsSystemTime fails. The day of the week is 1 for Sunday to 7 for Saturday, the day
  // of the year 1 to 366.
  int GetYear() const noexcept;
  int GetMonth() const noexcept;
  int GetDay() const noexcept;
  int GetHour() const noexcept;
  int GetMinute() const noexcept;
  int GetSecond() const noexcept;
  int GetDayOfWeek() const noexcept;
  int GetDayOfYear() const noexcept;

  // The new status as an int: 0 on success, 1 for parts that aren't a date and time, which leaves DATE 0.
  int SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept;
  int SetDate(int year, int month, int day) noexcept { return SetDateTime(year, month, day, 0, 0, 0); }
  // The time alone, on 30 December 1899.
  int SetTime(int hour, int minute, int second) noexcept {
    return SetDateTime(1899, 12, 30, hour, minute, second);
  }

  // Reads a text as VarDateFromStr does. True and valid on success; false and invalid otherwise, with DATE 0
  // for a text that is no date and -1 for any other failure. A null text counts as empty.
  bool ParseDateTime(const wchar_t* text, ULONG flags = 0, LCID locale = LOCALE_USER_DEFAULT) noexcept;

  // The text by wcsftime's format. Empty for a null status, "Invalid DateTime" for an invalid one and for a
  // number out of range; empty for a null or empty format and for one that wcsftime refuses.
  CString Format(const wchar_t* format) const;

  operator DATE() const noexcept { return m_dt; }

  // Null if either side is null, else invalid if either side isn't valid or the result leaves the years 100
  // to 9999.
  COleDateTime operator+(const COleDateTimeSpan& span) const noexcept;
  COleDateTime operator-(const COleDateTimeSpan& span) const noexcept;
  COleDateTime& operator+=(const COleDateTimeSpan& span) noexcept { return *this = *this + span; }
  COleDateTime& operator-=(const COleDateTimeSpan& span) noexcept { return *this = *this - span; }
  // This minus `other`, across day 0 too, where the double's fraction turns around.
  COleDateTimeSpan operator-(const COleDateTime& other) const noexcept;

  // Equal: the same status and the same DATE. The order asks two valid dates; it is false with any other.
  bool operator==(const COleDateTime& other) const noexcept {
    return m_status == other.m_status && m_dt == other.m_dt;
  }
  bool operator!=(const COleDateTime& other) const noexcept { return !(*this == other); }
  bool operator<(const COleDateTime& other) const noexcept;
  bool operator>(const COleDateTime& other) const noexcept { return other < *this; }
  bool operator<=(const COleDateTime& other) const noexcept { return *this < other || *this == other; }
  bool operator>=(const COleDateTime& other) const noexcept { return other < *this || *this == other; }

  DATE m_dt = 0.0;
  DateTimeStatus m_status = valid;

 private:
  void CheckRange() noexcept;
};

static_assert(sizeof(COleDateTime) == 16 && sizeof(COleDateTimeSpan) == 16);
