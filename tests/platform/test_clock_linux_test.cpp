#include <gtest/gtest.h>

#include "qorgen/platform/linux/time/test_clock.h"

namespace qorgen::platform {
namespace {

TEST(TestClock, FixesEveryClockAndGivesItBack) {
  const __time64_t running = _time64(nullptr);
  {
    const TestClock outer(2024, 2, 29, 23, 59, 58);
    SYSTEMTIME local{};
    GetLocalTime(&local);
    EXPECT_EQ(2024, local.wYear);
    EXPECT_EQ(2, local.wMonth);
    EXPECT_EQ(29, local.wDay);
    EXPECT_EQ(58, local.wSecond);
    EXPECT_EQ(4, local.wDayOfWeek);
    {
      const TestClock inner(951782400, 250);  // 29 February 2000, 00:00 UTC
      EXPECT_EQ(951782400, _time64(nullptr));
      GetLocalTime(&local);
      EXPECT_EQ(2000, local.wYear);
      EXPECT_EQ(250, local.wMilliseconds);
    }
    GetLocalTime(&local);
    EXPECT_EQ(2024, local.wYear);
  }
  EXPECT_GE(_time64(nullptr), running);
}

}  // namespace
}  // namespace qorgen::platform
