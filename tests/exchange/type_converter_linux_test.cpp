// What the type converter asks of the clock, which the tests of Linux can set.

#include <cstdint>

#include "qorgen/exchange/type_converter.h"
#include "qorgen/platform/linux/time/test_clock.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

using qorgen::platform::TestClock;

// A Gregorian year before 1899 passes the check of a date object, which then stays at the day it began with.
TEST(TypeConverterClock, DateThatIsNotTakenIsTodayOfItsOwnLine) {
  QorTypeCheckInfoTable column{TYPECHECK_DATE, L"日付", 10, 0, 1, 0, 0};
  CQorTypeConverter converter;
  converter.Initialize(&column, 1);
  for (const int day : {5, 6, 7}) {
    const TestClock clock(2024, 3, day, 12);
    for (const wchar_t* text : {L"01/02/1868", L"05/03/2024"}) {
      std::int32_t stored = 0;
      CQorCSVManager line(text, CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
      ASSERT_EQ(converter.Convert(line, &stored, 1), 1);
      EXPECT_EQ(stored, (2024 << 16 | 3 << 8) + (text[6] == L'1' ? day : 5)) << day;
    }
  }
}

}  // namespace
