#pragma once

// The law of national holidays (国民の祝日に関する法律) as rules over years. Constant data.
//
// The equinoxes are announced year by year in the official gazette and stand here as rows; the open-ended
// last rows of 春分の日 (2031) and 秋分の日 (2029) are estimates. The rows of 2019 to 2021 carry the laws on
// the enthronement and on the Olympic Games.

#include <iterator>

namespace qorgen::calendar {

struct HolidayRule {
  int first_year;  // 0: no lower limit
  int last_year;   // 0: no upper limit
  int month;       // 0: the rule of the citizens' holiday between two others
  int day;         // below 100 the day of the month; else n * 100 + w, the n-th week day w, 0 for Sunday
  const wchar_t* name;

  constexpr bool AppliesTo(int year) const {
    return (first_year == 0 || first_year <= year) && (last_year == 0 || last_year >= year);
  }
  constexpr bool IsWeekDayRule() const { return day >= 100; }
};

// Within the rows of a fixed day, the months and days ascend for every year: the list of a year is built by
// appending.
inline constexpr HolidayRule kHolidayRules[] = {
    // clang-format off
    {0, 0, 1, 1, L"元日"},
    {0, 1999, 1, 15, L"成人の日"},
    {2000, 0, 1, 201, L"成人の日"},
    {0, 0, 2, 11, L"建国記念の日"},
    {2020, 0, 2, 23, L"天皇誕生日"},
    {0, 2001, 3, 20, L"春分の日"},
    {2002, 2003, 3, 21, L"春分の日"},
    {2004, 2005, 3, 20, L"春分の日"},
    {2006, 2007, 3, 21, L"春分の日"},
    {2008, 2009, 3, 20, L"春分の日"},
    {2010, 2011, 3, 21, L"春分の日"},
    {2012, 2013, 3, 20, L"春分の日"},
    {2014, 2015, 3, 21, L"春分の日"},
    {2016, 2017, 3, 20, L"春分の日"},
    {2018, 2019, 3, 21, L"春分の日"},
    {2020, 2021, 3, 20, L"春分の日"},
    {2022, 2023, 3, 21, L"春分の日"},
    {2024, 2026, 3, 20, L"春分の日"},
    {2027, 2027, 3, 21, L"春分の日"},
    {2028, 2030, 3, 20, L"春分の日"},
    {2031, 0, 3, 21, L"春分の日"},
    {0, 2006, 4, 29, L"みどりの日"},
    {2007, 0, 4, 29, L"昭和の日"},
    {2019, 2019, 4, 30, L"国民の休日"},
    {2019, 2019, 5, 1, L"即位の日"},
    {0, 0, 5, 3, L"憲法記念日"},
    {2007, 0, 5, 4, L"みどりの日"},
    {0, 0, 5, 5, L"こどもの日"},
    {0, 2002, 7, 20, L"海の日"},
    {2021, 2021, 7, 22, L"海の日"},
    {2020, 2020, 7, 23, L"海の日"},
    {2021, 2021, 7, 23, L"スポーツの日"},
    {2020, 2020, 7, 24, L"スポーツの日"},
    {2003, 2019, 7, 301, L"海の日"},
    {2022, 0, 7, 301, L"海の日"},
    {2021, 2021, 8, 8, L"山の日"},
    {2020, 2020, 8, 10, L"山の日"},
    {2016, 2019, 8, 11, L"山の日"},
    {2022, 0, 8, 11, L"山の日"},
    {0, 2002, 9, 15, L"敬老の日"},
    {0, 2011, 9, 23, L"秋分の日"},
    {2012, 2012, 9, 22, L"秋分の日"},
    {2013, 2015, 9, 23, L"秋分の日"},
    {2016, 2016, 9, 22, L"秋分の日"},
    {2017, 2019, 9, 23, L"秋分の日"},
    {2020, 2020, 9, 22, L"秋分の日"},
    {2021, 2023, 9, 23, L"秋分の日"},
    {2024, 2024, 9, 22, L"秋分の日"},
    {2025, 2027, 9, 23, L"秋分の日"},
    {2028, 2028, 9, 22, L"秋分の日"},
    {2029, 0, 9, 23, L"秋分の日"},
    {2003, 0, 9, 301, L"敬老の日"},
    {0, 1999, 10, 10, L"体育の日"},
    {2019, 2019, 10, 22, L"即位礼正殿の儀"},
    {2000, 2019, 10, 201, L"体育の日"},
    {2022, 0, 10, 201, L"スポーツの日"},
    {0, 0, 11, 3, L"文化の日"},
    {0, 0, 11, 23, L"勤労感謝の日"},
    {0, 2018, 12, 23, L"天皇誕生日"},
    {1985, 0, 0, 0, L"国民の休日"},
    // clang-format on
};

inline constexpr const wchar_t* kSubstituteHoliday = L"振替休日";

namespace holiday_table_checks {

constexpr bool RowsAreSound() {
  for (const HolidayRule& rule : kHolidayRules) {
    if (rule.last_year != 0 && rule.last_year < rule.first_year) return false;
    if (rule.month < 0 || rule.month > 12 || (rule.month == 0) != (rule.day == 0)) return false;
    if (rule.IsWeekDayRule() ? rule.day / 100 > 4 || rule.day % 100 > 6 : rule.day > 31) return false;
  }
  return true;
}

constexpr bool FixedDaysAscend(int year) {
  int last = 0;
  for (const HolidayRule& rule : kHolidayRules) {
    if (!rule.AppliesTo(year) || rule.month == 0 || rule.IsWeekDayRule()) continue;
    const int place = rule.month * 100 + rule.day;
    if (place <= last) return false;
    last = place;
  }
  return true;
}

// Every year in which the set of applying rows can change.
constexpr bool FixedDaysAscend() {
  for (int year = 1980; year <= 2040; ++year) {
    if (!FixedDaysAscend(year)) return false;
  }
  return FixedDaysAscend(0);
}

static_assert(std::size(kHolidayRules) == 60);
static_assert(RowsAreSound() && FixedDaysAscend());

}  // namespace holiday_table_checks

}  // namespace qorgen::calendar
