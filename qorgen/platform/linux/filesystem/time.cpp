// File times and their parts.

#include <ctime>

#include "qorgen/platform/common/civil_date.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/facts.h"

using namespace qorgen::platform;

namespace {

constexpr std::uint64_t kTicksPerMillisecond = 10000;
constexpr std::uint64_t kTicksPerDay = 86400000 * kTicksPerMillisecond;
constexpr std::uint64_t kLastTick = INT64_MAX;

constexpr int kFirstDay = DayNumber(1601, 1, 1);  // the day of tick 0

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
  const int day = kFirstDay + static_cast<int>(Ticks(*time) / kTicksPerDay);
  const auto milliseconds = static_cast<unsigned>(Ticks(*time) % kTicksPerDay / kTicksPerMillisecond);
  const CivilDate date = CivilFromDayNumber(day);
  parts->wYear = static_cast<WORD>(date.year);
  parts->wMonth = static_cast<WORD>(date.month);
  parts->wDay = static_cast<WORD>(date.day);
  parts->wDayOfWeek = static_cast<WORD>(WeekDay(day));
  parts->wHour = static_cast<WORD>(milliseconds / 3600000);
  parts->wMinute = static_cast<WORD>(milliseconds / 60000 % 60);
  parts->wSecond = static_cast<WORD>(milliseconds / 1000 % 60);
  parts->wMilliseconds = static_cast<WORD>(milliseconds % 1000);
  return TRUE;
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* parts, FILETIME* time) {
  if (parts == nullptr || time == nullptr || parts->wYear < 1601 || parts->wYear > 30827 ||
      parts->wMonth < 1 || parts->wMonth > 12 || parts->wDay < 1 ||
      parts->wDay > MonthLength(parts->wYear, parts->wMonth) || parts->wHour > 23 || parts->wMinute > 59 ||
      parts->wSecond > 59 || parts->wMilliseconds > 999) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  const auto days =
      static_cast<std::uint64_t>(DayNumber(parts->wYear, parts->wMonth, parts->wDay) - kFirstDay);
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
