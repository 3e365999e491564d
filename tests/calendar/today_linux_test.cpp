// Today by a clock that the test sets.

#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/today.h"
#include "qorgen/platform/linux/time/test_clock.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

using qorgen::platform::TestClock;

TEST(Today, FollowsTheClockAtOnce) {
  const std::tuple<QORDATE, int, int, int> rows[] = {
      {QORDATE(31, 12, 2023), 23, 59, 59}, {QORDATE(1, 1, 2024), 0, 0, 0}, {QORDATE(29, 2, 2024), 12, 0, 0}};
  for (const auto& [expected, hour, minute, second] : rows) {
    const TestClock clock(expected.year, expected.month, expected.day, hour, minute, second);
    QORDATE today;
    today.Today();
    EXPECT_EQ(today.ToLongDate(), expected.ToLongDate());
    EXPECT_EQ(CQorDateUtil::GetToday().ToLongDate(), expected.ToLongDate());
    CQorDate date;
    EXPECT_EQ(date.ToQORDATE().ToLongDate(), expected.ToLongDate());
    date = QORDATE(1, 1, 2000);
    date.SetToday();
    EXPECT_EQ(date.ToQORDATE().ToLongDate(), expected.ToLongDate());
  }
}

TEST(Today, ClockThatCannotBeBrokenDown) {
  const TestClock clock(static_cast<__time64_t>(-5));
  QORDATE today;
  today.Today();
  EXPECT_EQ(today.ToLongDate(), -1);
  const CQorDate date;  // no date to hold, so the empty value
  EXPECT_EQ(date.IsEmpty(), 1);
}

}  // namespace
