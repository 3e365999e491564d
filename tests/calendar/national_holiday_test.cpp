// The national holidays of a year.

#include "qorgen/calendar/national_holiday.h"

#include <map>

#include "qorgen/calendar/date_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

// The list as text: month/day and name, in the list's order.
std::string List(const CQorNationalHoliday& holidays, int first_month = 1, int last_month = 12) {
  std::string result;
  for (int i = 0; i < holidays.GetCount(); ++i) {
    QORDATE date;
    const wchar_t* name = holidays.GetDateString(i, &date);
    if (date.month < first_month || date.month > last_month) continue;
    result += std::to_string(date.month) + "/" + std::to_string(date.day) + " " + Utf8(name) + "\n";
  }
  return result;
}

std::string ListOf(int year, int first_month = 1, int last_month = 12) {
  CQorNationalHoliday holidays;
  holidays.SetYear(year);
  return List(holidays, first_month, last_month);
}

TEST(NationalHoliday, WholeYear) {
  EXPECT_EQ(ListOf(2019),
            "1/1 元日\n1/14 成人の日\n2/11 建国記念の日\n3/21 春分の日\n4/29 昭和の日\n4/30 国民の休日\n"
            "5/1 即位の日\n5/2 国民の休日\n5/3 憲法記念日\n5/4 みどりの日\n5/5 こどもの日\n5/6 振替休日\n"
            "7/15 海の日\n8/11 山の日\n8/12 振替休日\n9/16 敬老の日\n9/23 秋分の日\n10/14 体育の日\n"
            "10/22 即位礼正殿の儀\n11/3 文化の日\n11/4 振替休日\n11/23 勤労感謝の日\n");
}

TEST(NationalHoliday, MonthsThatShowARule) {
  // May 2009: 5/3 on a Sunday
  // 1998: the day between is taken
  // 1950: before the law of 1973
  using Row = std::tuple<int, int, int, const char*>;
  for (const auto& [year, first_month, last_month, list] :
       Rows(Row(2020, 7, 10, "7/23 海の日\n7/24 スポーツの日\n8/10 山の日\n9/21 敬老の日\n9/22 秋分の日\n"),
            Row(2021, 7, 10,
                "7/22 海の日\n7/23 スポーツの日\n8/8 山の日\n8/9 振替休日\n9/20 敬老の日\n9/23 秋分の日\n"),
            Row(2021, 2, 2, "2/11 建国記念の日\n2/23 天皇誕生日\n"),
            Row(2009, 9, 9, "9/21 敬老の日\n9/22 国民の休日\n9/23 秋分の日\n"),
            Row(2009, 5, 5, "5/3 憲法記念日\n5/4 みどりの日\n5/5 こどもの日\n5/6 振替休日\n"),
            Row(1984, 5, 5, "5/3 憲法記念日\n5/5 こどもの日\n"),
            Row(1985, 5, 5, "5/3 憲法記念日\n5/4 国民の休日\n5/5 こどもの日\n5/6 振替休日\n"),
            Row(1998, 5, 5, "5/3 憲法記念日\n5/4 振替休日\n5/5 こどもの日\n"),
            Row(1972, 4, 5, "4/29 みどりの日\n5/3 憲法記念日\n5/5 こどもの日\n"),
            Row(1950, 1, 1, "1/1 元日\n1/2 振替休日\n1/15 成人の日\n1/16 振替休日\n"),
            Row(1999, 1, 1, "1/1 元日\n1/15 成人の日\n"), Row(2000, 1, 1, "1/1 元日\n1/10 成人の日\n"),
            Row(2018, 12, 12, "12/23 天皇誕生日\n12/24 振替休日\n")))
    EXPECT_EQ(ListOf(year, first_month, last_month), list) << year;
}

// Facts that hold for every list, whatever the rules: order, names, week days, and one substitute per Sunday.
TEST(NationalHoliday, EveryYearHolds) {
  CQorNationalHoliday holidays;
  for (int year = 1948; year <= 2087; ++year) {
    holidays.SetYear(year);
    ASSERT_GE(holidays.GetCount(), 11) << year;
    std::map<std::string, int> names;
    int sundays = 0;
    QORDATE last;
    int in_month = 0;
    for (int i = 0; i < holidays.GetCount(); ++i) {
      QORDATE date;
      const std::string name = Utf8(holidays.GetDateString(i, &date));
      ++names[name];
      ASSERT_EQ(CQorDateUtil::IsValid(date), 1);
      ASSERT_TRUE(last < date) << year << " " << name;
      in_month = date.month == last.month ? in_month + 1 : 0;
      last = date;
      if (name == "振替休日") {
        EXPECT_NE(date.GetWeek(), 0) << year;
      } else if (date.GetWeek() == 0 && name != "国民の休日") {
        ++sundays;  // the citizens' holidays come after the substitutes and have none
      }
      if (name == "成人の日" && year >= 2000) {
        EXPECT_TRUE(date.GetWeek() == 1 && date.day >= 8 && date.day <= 14) << year;
      }
      if (name == "敬老の日" && year >= 2003) {
        EXPECT_TRUE(date.GetWeek() == 1 && date.day >= 15 && date.day <= 21) << year;
      }
      EXPECT_EQ(holidays.GetIndex(date), i);
      EXPECT_EQ(CQorDateUtil::IsHoliday(date), 1);
      QORDATE same;
      EXPECT_EQ(Utf8(holidays.GetDateStringInMonth(date.month, in_month, &same)), name);
      EXPECT_EQ(same.ToLongDate(), date.ToLongDate());
    }
    EXPECT_EQ(names["振替休日"], sundays) << year;
    for (const char* name :
         {"元日", "建国記念の日", "春分の日", "憲法記念日", "こどもの日", "秋分の日", "勤労感謝の日"}) {
      EXPECT_EQ(names[name], 1) << year << " " << name;
    }
  }
}

TEST(NationalHoliday, QuestionsOutsideTheList) {
  CQorNationalHoliday holidays;
  holidays.SetYear(0);  // the year that a new object holds
  EXPECT_EQ(holidays.GetCount(), 0);
  holidays.SetYear(2024);
  const int count = holidays.GetCount();
  QORDATE date(9, 9, 999);
  for (int bad : {-1, count, INT_MIN, INT_MAX}) {
    EXPECT_EQ(holidays.GetDateString(bad, &date), nullptr) << bad;
    EXPECT_EQ(holidays.GetDateStringInMonth(1, bad, &date), nullptr) << bad;
  }
  for (int month : {-1, 0, 6, 13, INT_MAX}) {
    EXPECT_EQ(holidays.GetDateStringInMonth(month, 0, &date), nullptr) << month;
    EXPECT_EQ(holidays.GetCountInMonth(month), 0) << month;
  }
  EXPECT_EQ(date.year, 999);
  EXPECT_EQ(holidays.GetCountInMonth(1), 2);
  EXPECT_TEXT(L"成人の日", holidays.GetDateStringInMonth(1, 1, nullptr));
  EXPECT_EQ(holidays.GetIndex(QORDATE(1, 1, 2023)), -1);
  // Years that no record or no DATE can hold.
  for (int year : {0, 1, 99, -5, 32768, 100000, INT_MIN, INT_MAX}) {
    holidays.SetYear(year);
    EXPECT_GE(holidays.GetCount(), 11) << year;
  }
}

// What the protected half offers to a class derived from it.
class OwnHolidays : public CQorNationalHoliday {
 public:
  void Add(int month, int day, const wchar_t* name) {
    auto* item = new QNH_ITEM{0, 0, month, day, CQorDateUtil::ParseString(name, nullptr)};
    InsertHolidayCache(item);
  }
  using CQorNationalHoliday::FindIndex;
  using CQorNationalHoliday::FindMd;
  using CQorNationalHoliday::InsertHolidayCache;
};

TEST(NationalHoliday, OrderOfInsertion) {
  OwnHolidays holidays;
  holidays.Add(5, 3, L"1");
  holidays.Add(4, 30, L"2");
  holidays.Add(5, 3, L"3");
  holidays.Add(5, 1, L"4");
  holidays.Add(12, 1, L"5");
  holidays.InsertHolidayCache(nullptr);
  std::string order;
  for (int i = 0; i < holidays.GetCount(); ++i) order += Utf8(holidays.GetDateString(i, nullptr));
  EXPECT_EQ(order, "24135");
  int index = -5;
  EXPECT_TEXT(L"1", holidays.FindMd(5, 3, &index)->pszName);
  EXPECT_EQ(index, 2);
  EXPECT_EQ(holidays.FindMd(5, 4, &index), nullptr);
  EXPECT_EQ(index, -1);
  EXPECT_EQ(holidays.FindIndex(5), nullptr);
}

}  // namespace
