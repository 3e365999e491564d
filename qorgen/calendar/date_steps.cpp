// Date arithmetic: months, days, and the questions that one date answers. Stateless but for the holidays,
// which are kept for one year at a time and carry no lock.

#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/national_holiday.h"
#include "qorgen/platform/common/civil_date.h"

namespace {

// Steps of what may be any int: counted without sign, they wrap at the ends.
int Next(int value) {
  return static_cast<int>(static_cast<unsigned>(value) + 1u);
}
int Previous(int value) {
  return static_cast<int>(static_cast<unsigned>(value) - 1u);
}

int WeekOrSunday(const QORDATE& date) {
  return date.IsEmpty() ? 0 : date.GetWeek();
}

}  // namespace

int CQorDateUtil::IncMonth(int& nYear, int nMonth) {
  const int next = Next(nMonth);
  if (next != 13) return next;
  nYear = Next(nYear);
  return 1;
}

int CQorDateUtil::DecMonth(int& nYear, int nMonth) {
  if (nMonth > 1) return nMonth - 1;
  nYear = Previous(nYear);
  return 12;
}

QORDATE CQorDateUtil::IncDay(const QORDATE& date) {
  QORDATE result(date);
  result.IncDay();
  return result;
}

QORDATE CQorDateUtil::DecDay(const QORDATE& date) {
  QORDATE result(date);
  result.DecDay();
  return result;
}

char CQorDateUtil::DaysOfMonth(short nYear, char nMonth) {
  return QORDATE::GetDays(nYear, nMonth);
}

int CQorDateUtil::GetDays(int nYear, int nMonth) {
  return QORDATE::GetDays(static_cast<short>(nYear), static_cast<char>(nMonth));
}

char CQorDateUtil::MonthesOfYear(short /*nYear*/) {
  return 12;
}

int CQorDateUtil::IsLeapYear(short nYear) {
  return QORDATE::IsLeapYear(nYear);
}

int CQorDateUtil::IsLeapYear(int nYear) {
  return qorgen::platform::IsLeap(nYear);
}

int CQorDateUtil::IsValid(const QORDATE& date) {
  if (date.year < 1 || date.month < 1 || date.month > 12 || date.day < 1) return 0;
  return date.day <= DaysOfMonth(date.year, date.month);
}

QORDATE CQorDateUtil::GetToday() {
  QORDATE today;
  today.Today();
  return today;
}

int CQorDateUtil::IsSunday(const QORDATE& date) {
  return WeekOrSunday(date) == 0;
}

int CQorDateUtil::IsSaturday(const QORDATE& date) {
  return WeekOrSunday(date) == 6;
}

int CQorDateUtil::IsHoliday(const QORDATE& date) {
  if (date.year <= 0 || date.month <= 0 || date.day <= 0) return 0;
  static CQorNationalHoliday holidays;
  holidays.SetYear(date.year);
  return holidays.GetIndex(date) >= 0 || IsSunday(date);
}
