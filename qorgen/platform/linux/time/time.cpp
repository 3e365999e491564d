#include "qorgen/platform/time.h"

#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "qorgen/platform/common/civil_date.h"
#include "qorgen/platform/linux/time/test_clock.h"

namespace qorgen::platform {
namespace {

constexpr std::int64_t kRunning = std::numeric_limits<std::int64_t>::min();

// Milliseconds since 1970 UTC that a test has fixed.
std::atomic<std::int64_t> fixed_clock{kRunning};

struct Moment {
  std::int64_t seconds;  // since 1970 UTC
  long nanoseconds;
};

Moment Now() {
  const std::int64_t fixed = fixed_clock.load(std::memory_order_relaxed);
  if (fixed != kRunning) {
    const std::int64_t milliseconds = ((fixed % 1000) + 1000) % 1000;
    return {(fixed - milliseconds) / 1000, static_cast<long>(milliseconds) * 1000000};
  }
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return {now.tv_sec, now.tv_nsec};
}

void Fill(const std::tm& from, long nanoseconds, SYSTEMTIME* to) {
  to->wYear = static_cast<WORD>(from.tm_year + 1900);
  to->wMonth = static_cast<WORD>(from.tm_mon + 1);
  to->wDayOfWeek = static_cast<WORD>(from.tm_wday);
  to->wDay = static_cast<WORD>(from.tm_mday);
  to->wHour = static_cast<WORD>(from.tm_hour);
  to->wMinute = static_cast<WORD>(from.tm_min);
  to->wSecond = static_cast<WORD>(from.tm_sec);
  to->wMilliseconds = static_cast<WORD>(nanoseconds / 1000000);
}

}  // namespace

TestClock::TestClock(__time64_t seconds, int milliseconds)
    : before_(fixed_clock.exchange(seconds * 1000 + milliseconds)) {}

TestClock::TestClock(int year, int month, int day, int hour, int minute, int second) : before_(kRunning) {
  std::tm local{};
  local.tm_year = year - 1900;
  local.tm_mon = month - 1;
  local.tm_mday = day;
  local.tm_hour = hour;
  local.tm_min = minute;
  local.tm_sec = second;
  local.tm_isdst = -1;
  before_ = fixed_clock.exchange(static_cast<std::int64_t>(std::mktime(&local)) * 1000);
}

TestClock::~TestClock() {
  fixed_clock = before_;
}

}  // namespace qorgen::platform

using namespace qorgen::platform;

int SystemTimeToVariantTime(SYSTEMTIME* system_time, double* variant_time) {
  if (system_time == nullptr || variant_time == nullptr) return 0;
  const SYSTEMTIME& from = *system_time;
  if (from.wYear > 9999 || from.wMonth < 1 || from.wMonth > 12 || from.wDay > 31 || from.wHour > 23 ||
      from.wMinute > 59 || from.wSecond > 59) {
    return 0;
  }
  int year = from.wYear;
  if (year < 100) year += year < 30 ? 2000 : 1900;
  const int day = DayNumber(year, from.wMonth, from.wDay);
  if (!IsDayNumber(day)) return 0;
  const double fraction = (from.wHour * 3600 + from.wMinute * 60 + from.wSecond) / 86400.0;
  *variant_time = day < 0 ? day - fraction : day + fraction;
  return 1;
}

int VariantTimeToSystemTime(double variant_time, SYSTEMTIME* system_time) {
  // Written so that what is no number fails too.
  if (!(variant_time > kFirstDayNumber - 1.0 && variant_time < kLastDayNumber + 1.0)) return 0;
  if (system_time == nullptr) return 0;
  int day = static_cast<int>(variant_time);
  int seconds = static_cast<int>(std::floor(std::fabs(variant_time - day) * 86400.0 + 0.5));
  if (seconds >= 86400) {
    seconds = 0;
    ++day;
    if (day > kLastDayNumber) return 0;
  }
  const CivilDate civil = CivilFromDayNumber(day);
  system_time->wYear = static_cast<WORD>(civil.year);
  system_time->wMonth = static_cast<WORD>(civil.month);
  system_time->wDayOfWeek = static_cast<WORD>(WeekDay(day));
  system_time->wDay = static_cast<WORD>(civil.day);
  system_time->wHour = static_cast<WORD>(seconds / 3600);
  system_time->wMinute = static_cast<WORD>(seconds / 60 % 60);
  system_time->wSecond = static_cast<WORD>(seconds % 60);
  system_time->wMilliseconds = 0;
  return 1;
}

void GetLocalTime(SYSTEMTIME* system_time) {
  const Moment now = Now();
  const std::time_t seconds = now.seconds;
  std::tm local{};
  localtime_r(&seconds, &local);
  Fill(local, now.nanoseconds, system_time);
}

__time64_t _time64(__time64_t* time) {
  const __time64_t now = Now().seconds;
  if (time != nullptr) *time = now;
  return now;
}

int _localtime64_s(std::tm* result, const __time64_t* time) {
  constexpr __time64_t kLast = 32535215999;  // 31 December 3000, 23:59:59 UTC
  const std::time_t seconds = time != nullptr ? *time : -1;
  if (result == nullptr || seconds < 0 || seconds > kLast || localtime_r(&seconds, result) == nullptr) {
    if (result != nullptr) {
      *result = std::tm{};
      result->tm_sec = result->tm_min = result->tm_hour = -1;
      result->tm_mday = result->tm_mon = result->tm_year = -1;
      result->tm_wday = result->tm_yday = result->tm_isdst = -1;
    }
    return errno = EINVAL;
  }
  return 0;
}
