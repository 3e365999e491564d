#pragma once

// For tests alone: fixes what the clock of the system interface answers, for all threads, as long as the
// object lives. Objects may be nested; the inner one counts and gives the outer one back.

#include "qorgen/platform/time.h"

namespace qorgen::platform {

class TestClock {
 public:
  // Seconds since 1970 UTC, and milliseconds (0 to 999) behind them.
  explicit TestClock(__time64_t seconds, int milliseconds = 0);
  // A moment of the local time; a time that doesn't exist there moves as mktime moves it.
  TestClock(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
  ~TestClock();
  TestClock(const TestClock&) = delete;
  TestClock& operator=(const TestClock&) = delete;

 private:
  std::int64_t before_;
};

}  // namespace qorgen::platform
