#include "qorgen/calendar/range_select.h"

#include "qorgen/calendar/date_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

int Form(int year, int month, int day) {
  return year << 16 | month << 8 | day;
}

QorRangeSelectInfo Selected(int date, short count, int around) {
  QorRangeSelectInfo info;
  info.SelectDay(date, count, around);
  return info;
}

}  // namespace

TEST(RangeSelect, StripAndSelection) {
  const std::tuple<int, short, int, short, short, short, short> rows[] = {
      {Form(2024, 8, 31), 1, 0, 2024, 8, 0, 0},  {Form(2024, 8, 1), 12, 0, 2024, 8, 0, 11},
      {Form(2024, 3, 5), 3, 1, 2023, 10, 4, 6},  {Form(2024, 6, 30), 1, 1, 2024, 1, 5, 5},
      {Form(2024, 5, 1), 1, 1, 2023, 12, 5, 5},  {Form(2024, 12, 1), 4, -1, 2024, 7, 4, 7},
      {Form(2024, 1, 1), 12, 1, 2023, 8, 0, 11}, {Form(2024, 1, 1), 0, 1, 2023, 8, 6, 5},
  };
  for (const auto& [date, count, around, year, month, first, last] : rows) {
    const QorRangeSelectInfo info = Selected(date, count, around);
    EXPECT_EQ(year, info.year);
    EXPECT_EQ(month, info.month);
    EXPECT_EQ(first, info.first);
    EXPECT_EQ(last, info.last);
    EXPECT_EQ(count, info.GetSelectCount());
  }
  // The window has the month of the date sixth, whatever the month.
  for (int month = 1; month <= 12; ++month) {
    const QorRangeSelectInfo info = Selected(Form(2024, month, 1), 1, 1);
    EXPECT_EQ(month, info.GetMonth(5));
    EXPECT_EQ(2024, info.GetYear(5));
    EXPECT_EQ(5, info.first);
  }
}

TEST(RangeSelect, PlacesOfTheStrip) {
  const QorRangeSelectInfo strip = Selected(Form(2023, 10, 31), 1, 0);
  const std::tuple<short, short, short> rows[] = {{SHRT_MIN, 2023, 10}, {0, 2023, 10}, {2, 2023, 12},
                                                  {3, 2024, 1},         {5, 2024, 3},  {11, 2024, 9},
                                                  {26, 2025, 12}};
  for (const auto& [index, year, month] : rows) {
    EXPECT_EQ(year, strip.GetYear(index)) << index;
    EXPECT_EQ(month, strip.GetMonth(index)) << index;
  }
  // What is no month of a calendar answers with itself everywhere.
  for (const int date : {0, Form(2024, 13, 1), Form(2024, 0, 1), Form(1890, 4, 1), Form(-5, 4, 1), -1}) {
    const QorRangeSelectInfo odd = Selected(date, 1, 0);
    EXPECT_EQ(odd.year, odd.GetYear(7)) << date;
    EXPECT_EQ(odd.month, odd.GetMonth(7)) << date;
  }
}

TEST(RangeSelect, NothingSelected) {
  QorRangeSelectInfo info;
  EXPECT_EQ(1, info.IsNotSelect());
  EXPECT_EQ(0, info.GetSelectCount());
  // The first place of year 0, month 0 is nothing, too.
  EXPECT_EQ(1, Selected(0, 1, 0).IsNotSelect());
  info.SelectToday(2, 0);
  EXPECT_EQ(CQorDateUtil::GetToday().month, info.month);
  EXPECT_EQ(2, info.GetSelectCount());
  info.Init();
  EXPECT_EQ(1, info.IsNotSelect());
  EXPECT_EQ(SHRT_MAX, Selected(Form(2024, 1, 1), SHRT_MAX, 1).GetSelectCount());
}

TEST(RangeSelect, SelectorsHaveAType) {
  class Months : public CRangeSelector {
   public:
    using CRangeSelector::SetType;
    QorRangeSelectorType GetType() override {
      return static_cast<QorRangeSelectorType>(CRangeSelector::GetType() + 1);
    }
  };
  Months selector;
  EXPECT_EQ(2, selector.GetType());
  selector.SetType(static_cast<QorRangeSelectorType>(7));
  EXPECT_EQ(8, static_cast<CRangeSelector&>(selector).GetType());
}
