// The current date, with the local time zone consulted once a second at most. May be called from any thread.

#include "qorgen/calendar/internal/today.h"

#include <atomic>
#include <cstdint>

#include "qorgen/platform/time.h"

namespace qorgen::calendar {

namespace {

// The low 32 bits of the clock's second above the integer form of that second's date. One word, so that
// readers on several threads see a matching pair without a lock. All zero is no date.
std::atomic<std::uint64_t> last_reading{0};

}  // namespace

QORDATE CurrentDate() {
  const __time64_t now = _time64(nullptr);
  const std::uint64_t second = static_cast<std::uint64_t>(now) << 32;
  const std::uint64_t known = last_reading.load(std::memory_order_relaxed);
  const auto known_date = static_cast<std::uint32_t>(known);
  if (known_date != 0 && known - known_date == second) return QORDATE(static_cast<int>(known_date));

  std::tm local{};
  if (_localtime64_s(&local, &now) != 0) return QORDATE(-1, -1, -1);
  // The first year and the last that a DATE can hold bound what the clock can tell.
  const int year = local.tm_year + 1900;
  if (year < 100 || year > 9999) return QORDATE(-1, -1, -1);
  const QORDATE today(static_cast<char>(local.tm_mday), static_cast<char>(local.tm_mon + 1),
                      static_cast<short>(year));
  last_reading.store(second | static_cast<std::uint32_t>(today.ToLongDate()), std::memory_order_relaxed);
  return today;
}

}  // namespace qorgen::calendar
