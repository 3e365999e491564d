#pragma once

// CTime and CTimeSpan: a moment and a distance in whole seconds. A moment counts from 1 January 1970, 00:00
// UTC; its parts are those of the local time. Plain values: an object belongs to one thread at a time, copies
// are free.

#include <compare>
#include <ctime>

#include "qorgen/platform/time.h"
#include "qorgen/platform/types.h"

class CTimeSpan {
 public:
  constexpr CTimeSpan() noexcept = default;
  constexpr explicit CTimeSpan(__time64_t seconds) noexcept : m_timeSpan(seconds) {}
  constexpr CTimeSpan(long days, int hours, int minutes, int seconds) noexcept
      : m_timeSpan(seconds + 60 * (minutes + 60 * (hours + 24 * static_cast<__time64_t>(days)))) {}

  // The whole distance in one unit, cut towards zero.
  constexpr long long GetDays() const noexcept { return m_timeSpan / 86400; }
  constexpr long long GetTotalHours() const noexcept { return m_timeSpan / 3600; }
  constexpr long long GetTotalMinutes() const noexcept { return m_timeSpan / 60; }
  constexpr long long GetTotalSeconds() const noexcept { return m_timeSpan; }
  // What remains below the next larger unit; negative for a negative distance.
  constexpr int GetHours() const noexcept { return static_cast<int>(GetTotalHours() % 24); }
  constexpr int GetMinutes() const noexcept { return static_cast<int>(GetTotalMinutes() % 60); }
  constexpr int GetSeconds() const noexcept { return static_cast<int>(m_timeSpan % 60); }
  constexpr __time64_t GetTimeSpan() const noexcept { return m_timeSpan; }

  friend constexpr CTimeSpan operator+(CTimeSpan a, CTimeSpan b) noexcept {
    return CTimeSpan(a.m_timeSpan + b.m_timeSpan);
  }
  friend constexpr CTimeSpan operator-(CTimeSpan a, CTimeSpan b) noexcept {
    return CTimeSpan(a.m_timeSpan - b.m_timeSpan);
  }
  constexpr CTimeSpan& operator+=(CTimeSpan span) noexcept { return *this = *this + span; }
  constexpr CTimeSpan& operator-=(CTimeSpan span) noexcept { return *this = *this - span; }
  friend constexpr auto operator<=>(CTimeSpan a, CTimeSpan b) noexcept = default;

 private:
  __time64_t m_timeSpan = 0;
};

class QORGEN_API CTime {
 public:
  static CTime GetCurrentTime();

  // 0, which stands for "no time" in the facts of a file.
  constexpr CTime() noexcept = default;
  constexpr explicit CTime(__time64_t seconds) noexcept : m_time(seconds) {}
  // A local date and time, 1970 to 3000; a `dst` of -1 lets the zone's rules say whether daylight saving
  // holds. Parts out of range throw the invalid-argument exception.
  CTime(int year, int month, int day, int hour, int minute, int second, int dst = -1);
  // The same; a record without year, or that isn't valid, gives 0 and throws nothing.
  explicit CTime(const SYSTEMTIME& local, int dst = -1);
  // A file's time, in UTC; parts of a second are dropped. All zero gives 0.
  explicit CTime(const FILETIME& time);

  constexpr __time64_t GetTime() const noexcept { return m_time; }
  // The local parts. A time that has none (before 1970, after 3000) gives 0.
  int GetYear() const;
  int GetMonth() const;
  int GetDay() const;
  int GetHour() const;
  int GetMinute() const;
  int GetSecond() const;
  // 1 is Sunday.
  int GetDayOfWeek() const;
  // Fills `local` with all parts; null, `local` untouched, where there are none.
  std::tm* GetLocalTm(std::tm* local) const;
  // 1 on success; 0 and an empty record where there are no parts.
  int GetAsSystemTime(SYSTEMTIME& local) const;
  // The same moment as a file's time. All zero for moments before 1601 or beyond what the record can hold.
  FILETIME GetAsFileTime() const;

  friend constexpr CTimeSpan operator-(CTime a, CTime b) noexcept { return CTimeSpan(a.m_time - b.m_time); }
  friend constexpr CTime operator+(CTime a, CTimeSpan b) noexcept {
    return CTime(a.m_time + b.GetTimeSpan());
  }
  friend constexpr CTime operator-(CTime a, CTimeSpan b) noexcept {
    return CTime(a.m_time - b.GetTimeSpan());
  }
  constexpr CTime& operator+=(CTimeSpan span) noexcept { return *this = *this + span; }
  constexpr CTime& operator-=(CTimeSpan span) noexcept { return *this = *this - span; }
  friend constexpr auto operator<=>(CTime a, CTime b) noexcept = default;

 private:
  __time64_t m_time = 0;
};
