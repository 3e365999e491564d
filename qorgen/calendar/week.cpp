// The rows of weeks in a month. Stateless.

#include "qorgen/calendar/date_util.h"

namespace {

// What the places of a month's days follow from.
struct MonthLayout {
  int first_week_day;
  int last_week_day;
  int rows;
};

MonthLayout LayoutOf(int year, int month) {
  QORDATE date(1, static_cast<char>(month), static_cast<short>(year));
  const int first = date.GetWeek();
  date.LastDay();
  return {first, date.GetWeek(), (date.day - 1 + first) / 7 + 1};
}

}  // namespace

int CQorDateUtil::GetWeek(const QORDATE& date, int* pnWeek, int bAdjust) {
  const int week_day = date.GetWeek();
  if (pnWeek != nullptr) {
    const int first = QORDATE(1, date.month, date.year).GetWeek();
    const int row = (date.day - 1 + first) / 7;
    *pnWeek = bAdjust != 0 && row > 0 && week_day < first ? row - 1 : row;
  }
  return week_day;
}

int CQorDateUtil::GetWeekRange(int nYear, int nMonth, int* pnFirst, int* pnLast) {
  const MonthLayout layout = LayoutOf(nYear, nMonth);
  if (pnFirst != nullptr) *pnFirst = layout.first_week_day;
  if (pnLast != nullptr) *pnLast = layout.last_week_day;
  return layout.rows;
}

int CQorDateUtil::GetDayFromWeek(int nYear, int nMonth, int nWeek, int nDayOfWeek, int bAdjust) {
  if (nWeek < 0 || nDayOfWeek < 0 || nDayOfWeek > 6) return -1;
  const MonthLayout layout = LayoutOf(nYear, nMonth);
  if (nWeek >= layout.rows) return -1;
  if (nWeek == 0 && nDayOfWeek < layout.first_week_day) return -1;
  if (nWeek == layout.rows - 1 && nDayOfWeek > layout.last_week_day) return -1;
  const bool next_row = bAdjust != 0 && nWeek > 0 && nDayOfWeek < layout.first_week_day;
  return (next_row ? nWeek + 1 : nWeek) * 7 - layout.first_week_day + 1 + nDayOfWeek;
}
