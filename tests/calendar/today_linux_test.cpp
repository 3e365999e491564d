// Today by a clock that the test sets.

#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/today.h"
#include "qorgen/platform/linux/time/test_clock.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

using qorgen::platform::TestClock;

TEST(Today, FollowsTheClockAtOnce) {
  const QORDATE expected[] = {QORDATE(31, 12, 2023), QORDATE(1, 1, 2024), QORDATE(29, 2, 2024),
                              QORDATE(1, 1, 1980)};
  const int seconds[] = {59, 0, 0, 30};
  const int hours[] = {23, 0, 12, 5};
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 4; ++i) {
      const TestClock clock(expected[i].year, expected[i].month, expected[i].day, hours[i], i == 0 ? 59 : 0,
                            seconds[i]);
      QORDATE today;
      today.Today();
      EXPECT_EQ(today.ToLongDate(), expected[i].ToLongDate()) << i;
      EXPECT_EQ(CQorDateUtil::GetToday().ToLongDate(), expected[i].ToLongDate()) << i;
      CQorDate date;
      EXPECT_EQ(date.ToQORDATE().ToLongDate(), expected[i].ToLongDate()) << i;
      date = QORDATE(1, 1, 2000);
      date.SetToday();
      EXPECT_EQ(date.ToQORDATE().ToLongDate(), expected[i].ToLongDate()) << i;
    }
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
