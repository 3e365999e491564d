// The date records: integer and floating form, steps, comparison, conversion.

#include "qorgen/calendar/date_record.h"

#include <cmath>
#include <limits>

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

// Fields as one number that reads like the date; made apart from the integer form under test.
int Fields(const QORDATE& date) {
  return date.year * 10000 + date.month * 100 + date.day;
}

TEST(DateRecord, IntegerFormAndBack) {
  EXPECT_EQ(QORDATE(8, 9, 1868).ToLongDate(), 0x074C0908);
  EXPECT_EQ(DateToLong(QORDATE(31, 12, 2087)), 0x08270C1F);
  // Month and day are sign-extended over what stands left of them.
  EXPECT_EQ(QORDATE(-1, 1, 2019).ToLongDate(), -1);
  EXPECT_EQ(QORDATE(1, -1, 2019).ToLongDate(), static_cast<int>(0xFFFFFF01u));
  for (int form : {INT_MIN, INT_MAX, -1, 0x00018080}) {
    const QORDATE date(form);
    EXPECT_EQ(date.day, static_cast<char>(form)) << form;
    EXPECT_EQ(date.month, static_cast<char>(form >> 8)) << form;
    EXPECT_EQ(date.year, static_cast<short>(form >> 16)) << form;
  }
}

TEST(DateRecord, EmptyIsNotInvalid) {
  const QORDATE empty;
  EXPECT_EQ(empty.IsEmpty(), 1);
  EXPECT_EQ(empty.GetWeek(), -1);
  EXPECT_EQ(empty.ToDATE(), 0.0);
  EXPECT_EQ(empty.ToOleDateTime().GetStatus(), COleDateTime::null);
  COleDateTime value;
  value.SetStatus(COleDateTime::invalid);
  QORDATE date(value);
  EXPECT_EQ(Fields(date), -10101);
  EXPECT_EQ(date.IsEmpty(), 0);
  value.SetStatus(COleDateTime::null);
  date = value;
  EXPECT_EQ(date.IsEmpty(), 1);
  EXPECT_EQ(QORDATE(31, 2, 2024).ToOleDateTime().GetStatus(), COleDateTime::invalid);
  EXPECT_EQ(QORDATE(31, 2, 2024).ToDATE(), 0.0);
}

TEST(DateRecord, FromDate) {
  using Row = std::tuple<double, int>;
  for (const auto& [date, fields] :
       Rows(Row(0.0, 18991230), Row(-1.25, 18991229), Row(43529.5, 20190305), Row(43529.999999, 20190306),
            Row(-657434.0, 1000101), Row(2958465.0, 99991231), Row(2958466.0, -10101), Row(-657435.0, -10101),
            Row(1e300, -10101), Row(std::nan(""), -10101)))
    EXPECT_EQ(Fields(QORDATE(date)), fields) << date;
}

// A day counter that knows only month lengths, against every conversion and step.
TEST(DateRecord, EveryDayOfTheCalendar) {
  QORDATE date(1, 1, 1868);
  int number = -11686;
  for (int year = 1868; year <= 2087; ++year) {
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    EXPECT_EQ(QORDATE::IsLeapYear(static_cast<short>(year)), leap ? 1 : 0) << year;
    const int lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
      ASSERT_EQ(QORDATE::GetDays(static_cast<short>(year), static_cast<char>(month)), lengths[month - 1]);
      for (int day = 1; day <= lengths[month - 1]; ++day, ++number) {
        ASSERT_EQ(Fields(date), year * 10000 + month * 100 + day);
        ASSERT_EQ(date.ToDATE(), number);
        ASSERT_EQ(Fields(QORDATE(static_cast<double>(number))), Fields(date));
        ASSERT_EQ(date.GetWeek(), (number + 70000 - 1) % 7) << Fields(date);
        const QORDATE before(date);
        date.IncDay();
        ASSERT_EQ(date.Compare(before), 1);
        QORDATE back(date);
        back.DecDay();
        ASSERT_EQ(Fields(back), Fields(before));
      }
    }
  }
  EXPECT_EQ(Fields(date), 20880101);
}

TEST(DateRecord, MonthLengthsAreUnchecked) {
  for (int month : {-128, -1, 0, 13, 127})
    EXPECT_EQ(QORDATE::GetDays(2001, static_cast<char>(month)), 31) << month;
  EXPECT_EQ(QORDATE::IsLeapYear(-4), 1);
  EXPECT_EQ(QORDATE::IsLeapYear(0), 1);
}

TEST(DateRecord, Steps) {
  using Row = std::tuple<void (QORDATE::*)(), QORDATE, int>;
  for (const auto& [step, from, to] :
       Rows(Row(&QORDATE::IncDay, QORDATE(127, 127, 2023), 20240101),
            Row(&QORDATE::IncDay, QORDATE(31, 12, 32767), -32768 * 10000 + 101),
            Row(&QORDATE::DecDay, QORDATE(-128, -128, 2024), 20231231),
            Row(&QORDATE::DecDay, QORDATE(1, 1, -32768), 327671231),
            Row(&QORDATE::IncMonth, QORDATE(31, 1, 2024), 20240231),
            Row(&QORDATE::IncMonth, QORDATE(99, 12, 2024), 20250131),
            Row(&QORDATE::IncMonth, QORDATE(5, 127, 2024), 20250105),
            Row(&QORDATE::DecMonth, QORDATE(31, 3, 2024), 20240231),
            Row(&QORDATE::DecMonth, QORDATE(40, 1, 2024), 20231231),
            Row(&QORDATE::DecMonth, QORDATE(15, -128, 2024), 20231215),
            Row(&QORDATE::FirstDay, QORDATE(15, 6, 2024), 20240601),
            Row(&QORDATE::LastDay, QORDATE(15, 2, 2024), 20240229),
            Row(&QORDATE::FirstMonthDay, QORDATE(15, 6, 2024), 20240101),
            Row(&QORDATE::LastMonthDay, QORDATE(15, 6, 2024), 20241231),
            Row(&QORDATE::Empty, QORDATE(15, 6, 2024), 0))) {
    QORDATE date(from);
    (date.*step)();
    EXPECT_EQ(Fields(date), to) << "from " << Fields(from);
  }
}

TEST(DateRecord, Comparison) {
  EXPECT_EQ(CompareDate(QORDATE(1, 2, 2000), QORDATE(1, 1, 2000)), 256);
  EXPECT_EQ(CompareDate(QORDATE(1, 1, 2000), QORDATE(1, 2, 2000)), -256);
  const QORDATE ordered[] = {QORDATE(1, 1, -32768), QORDATE(-1, -1, -1), QORDATE(),
                             QORDATE(31, 12, 1899), QORDATE(1, 1, 1900), QORDATE(127, 127, 32767)};
  for (int a = 0; a < 6; ++a)
    for (int b = 0; b < 6; ++b) {
      EXPECT_EQ(ordered[a].Compare(ordered[b]), (a > b) - (a < b)) << a << " " << b;
      EXPECT_EQ(ordered[a] == ordered[b], a == b ? 1 : 0);
      EXPECT_EQ(ordered[a] != ordered[b], a != b ? 1 : 0);
      EXPECT_EQ(ordered[a] < ordered[b], a < b ? 1 : 0);
      EXPECT_EQ(ordered[a] <= ordered[b], a <= b ? 1 : 0);
      EXPECT_EQ(ordered[a] > ordered[b], a > b ? 1 : 0);
      EXPECT_EQ(ordered[a] >= ordered[b], a >= b ? 1 : 0);
    }
}

QORDATETIME Moment(int date, int hour, int minute, int second) {
  QORDATETIME result;
  result.Set(date);
  result.Set(static_cast<char>(hour), static_cast<char>(minute), static_cast<short>(second));
  return result;
}

TEST(DateTimeRecord, FieldsAndConversion) {
  EXPECT_EQ(QORDATETIME(10, 20, 30).IsEmpty(), 0);
  EXPECT_EQ(QORDATETIME(10, 20, 30).ToOleDateTime().GetStatus(), COleDateTime::invalid);
  EXPECT_EQ(QORDATETIME().ToOleDateTime().GetStatus(), COleDateTime::null);
  QORDATETIME read;
  read = 43529.43090277778;  // 5 March 2019, 10:20:30
  EXPECT_EQ(read, Moment(0x07E30305, 10, 20, 30));
  EXPECT_NEAR(read.ToOleDateTime().m_dt, 43529.43090277778, 1e-9);
  read.Set(0x07E30305);
  EXPECT_EQ(read, Moment(0x07E30305, 0, 0, 0));
  for (double bad : {1e300, -1e300, std::nan("")}) {
    read.Set(bad);
    EXPECT_EQ(read, Moment(QORDATE(-1, -1, -1).ToLongDate(), -1, -1, -1)) << bad;
  }
  COleDateTime null;
  null.SetStatus(COleDateTime::null);
  read = null;
  EXPECT_EQ(read.IsEmpty(), 1);
  for (const QORDATETIME& bad : {Moment(0x07E30305, 24, 0, 0), Moment(0x07E30305, -1, 0, 0),
                                 Moment(0x07E30305, 0, 60, 0), Moment(0x07E30305, 0, 0, 32767)}) {
    EXPECT_EQ(bad.ToOleDateTime().GetStatus(), COleDateTime::invalid);
  }
}

TEST(DateTimeRecord, CompareAndMinutes) {
  constexpr int kDay = 0x07E30305;
  // Moment(0x074C0908, 18, 0, 0): Before the base, where the fraction of a DATE counts the other way round.
  // QORDATETIME(10, 0, 0): Times without a date have no DATE to tell them apart.
  using Row = std::tuple<QORDATETIME, QORDATETIME, int, double>;
  for (const auto& [row_a, row_b, compare, minutes] :
       Rows(Row(Moment(kDay, 10, 0, 0), Moment(kDay, 10, 0, 0), 0, 0),
            Row(Moment(kDay, 10, 0, 1), Moment(kDay, 10, 0, 0), 1, 0),
            Row(Moment(kDay, 9, 59, 0), Moment(kDay, 11, 0, 30), -1, -61),
            Row(Moment(kDay + 1, 0, 0, 0), Moment(kDay, 23, 59, 59), 1, 0),
            Row(Moment(0x074C0908, 18, 0, 0), Moment(0x074C0908, 6, 0, 0), 1, 720),
            Row(QORDATETIME(10, 0, 0), QORDATETIME(11, 0, 0), 0, 0))) {
    EXPECT_EQ(row_a.Compare(row_b), compare);
    EXPECT_EQ(row_b.Compare(row_a), -compare);
    EXPECT_EQ(row_a.MinutesSpan(row_b), minutes);
    EXPECT_EQ(row_a == row_b, compare == 0);
    EXPECT_EQ(row_a > row_b, compare > 0);
    EXPECT_EQ(row_a <= row_b, compare <= 0);
  }
}

}  // namespace
