// File times and their parts.

#include <ctime>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/facts.h"

using namespace qorgen::platform;

namespace {

constexpr std::uint64_t kTicksPerMillisecond = 10000;
constexpr std::uint64_t kTicksPerDay = 86400000 * kTicksPerMillisecond;
constexpr std::uint64_t kLastTick = INT64_MAX;

constexpr bool IsLeap(unsigned year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr unsigned DaysOfMonth(unsigned year, unsigned month) {
  constexpr unsigned char kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month - 1] + (month == 2 && IsLeap(year) ? 1u : 0u);
}

// Days from 1 January 1601 to 1 January of `year` (1601 or later).
constexpr std::uint64_t DaysToYear(unsigned year) {
  const unsigned past = year - 1601;
  return std::uint64_t{past} * 365 + past / 4 - past / 100 + past / 400;
}
static_assert(DaysToYear(1970) == 134774 && DaysToYear(2001) == 146097);

// The zone's present distance from universal time, daylight saving included, in ticks; to be added for local
// time.
std::int64_t PresentBias() {
  const std::time_t now = std::time(nullptr);
  struct tm local;
  return localtime_r(&now, &local) == nullptr ? 0 : std::int64_t{local.tm_gmtoff} * 10000000;
}

BOOL Shift(const FILETIME* from, std::int64_t bias, FILETIME* to) {
  if (from == nullptr || to == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  const std::uint64_t shifted = Ticks(*from) + static_cast<std::uint64_t>(bias);
  if (Ticks(*from) > kLastTick || shifted > kLastTick) return Fail(ERROR_INVALID_PARAMETER);
  *to = FromTicks(shifted);
  return TRUE;
}

}  // namespace

BOOL FileTimeToSystemTime(const FILETIME* time, SYSTEMTIME* parts) {
  if (time == nullptr || parts == nullptr || Ticks(*time) > kLastTick) return Fail(ERROR_INVALID_PARAMETER);
  const std::uint64_t days = Ticks(*time) / kTicksPerDay;
  const auto milliseconds = static_cast<unsigned>(Ticks(*time) % kTicksPerDay / kTicksPerMillisecond);
  // At most one year too late, since no year is longer than 366 days and 400 of them have 146097.
  auto year = static_cast<unsigned>(1601 + days * 400 / 146097);
  while (DaysToYear(year) > days) --year;
  while (DaysToYear(year + 1) <= days) ++year;
  auto day = static_cast<unsigned>(days - DaysToYear(year));
  unsigned month = 1;
  for (; day >= DaysOfMonth(year, month); ++month) day -= DaysOfMonth(year, month);
  parts->wYear = static_cast<WORD>(year);
  parts->wMonth = static_cast<WORD>(month);
  parts->wDay = static_cast<WORD>(day + 1);
  parts->wDayOfWeek = static_cast<WORD>((days + 1) % 7);  // 1 January 1601 was a Monday
  parts->wHour = static_cast<WORD>(milliseconds / 3600000);
  parts->wMinute = static_cast<WORD>(milliseconds / 60000 % 60);
  parts->wSecond = static_cast<WORD>(milliseconds / 1000 % 60);
  parts->wMilliseconds = static_cast<WORD>(milliseconds % 1000);
  return TRUE;
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* parts, FILETIME* time) {
  if (parts == nullptr || time == nullptr || parts->wYear < 1601 || parts->wYear > 30827 ||
      parts->wMonth < 1 || parts->wMonth > 12 || parts->wDay < 1 ||
      parts->wDay > DaysOfMonth(parts->wYear, parts->wMonth) || parts->wHour > 23 || parts->wMinute > 59 ||
      parts->wSecond > 59 || parts->wMilliseconds > 999) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  std::uint64_t days = DaysToYear(parts->wYear) + parts->wDay - 1u;
  for (unsigned month = 1; month < parts->wMonth; ++month) days += DaysOfMonth(parts->wYear, month);
  const std::uint64_t milliseconds =
      ((parts->wHour * 60u + parts->wMinute) * 60u + parts->wSecond) * 1000u + parts->wMilliseconds;
  *time = FromTicks(days * kTicksPerDay + milliseconds * kTicksPerMillisecond);
  return TRUE;
}

BOOL FileTimeToLocalFileTime(const FILETIME* time, FILETIME* local) {
  return Shift(time, PresentBias(), local);
}

BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* time) {
  return Shift(local, -PresentBias(), time);
}
