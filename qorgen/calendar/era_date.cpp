// The date object: value, range, style and arithmetic. Its era questions are in era.cpp. One thread at a
// time.

#include "qorgen/calendar/era_date.h"

#include "qorgen/calendar/internal/era_table.h"
#include "qorgen/calendar/internal/today.h"
#include "qorgen/platform/common/civil_date.h"

namespace {

using namespace qorgen::calendar;
using namespace qorgen::platform;

struct PartsInUse {
  bool year;
  bool month;
  bool day;
};

constexpr PartsInUse PartsOfKind(unsigned style) {
  switch (style & DATESTYLE_KIND) {
    case DATESTYLE_YEARMONTH:
      return {true, true, false};
    case DATESTYLE_MONTHDAY:
    case 4:
      return {false, true, true};
    case DATESTYLE_YEAR:
      return {true, false, false};
    case DATESTYLE_MONTH:
      return {false, true, false};
    case DATESTYLE_DAY:
    case 8:
      return {false, false, true};
    default:
      return {true, true, true};
  }
}

constexpr int kEarliestYear = 1899;  // what a completed date may have at least

constexpr int StepYear(int year) {
  if (year < 60) return year + 2000;
  if (year < 100) return year + 1900;
  if (year < 900) return year + 2000;
  return year < 1000 ? year + 1000 : year;
}

}  // namespace

CQorDate::CQorDate() {
  Initial();
}

CQorDate::CQorDate(double dtDate) {
  Initial();
  *this = dtDate;
}

CQorDate::CQorDate(QORDATE date) {
  Initial();
  *this = date;
}

CQorDate::~CQorDate() = default;

void CQorDate::Initial() {
  m_nStyle = DATESTYLE_EMPTY;
  m_dtMin = 0.0;
  m_dtMax = kLastDayNumber;
  m_dtValue = 0.0;
  m_date.Empty();
  m_bReserved = 0;
  m_dateLast = kBaseDate;
  SetToday();
}

CQorDate& CQorDate::operator=(const double& dtDate) {
  const double value = dtDate;  // may be a field of this object
  if (!CheckDate(value)) return *this;
  m_dtValue = value;
  if (value == 0.0) {
    m_date.Empty();
  } else {
    m_date = GetDateFromDays(WholePart(value));
    m_dateLast = m_date;
  }
  return *this;
}

CQorDate& CQorDate::operator=(const QORDATE& date) {
  SetPart(date);
  return *this;
}

int CQorDate::SetPart(const QORDATE& date) {
  if (!CheckDate(date)) return 0;
  CalcDate(date);
  return 1;
}

int CQorDate::SetYear(short nYear) {
  return SetPart(QORDATE(m_date.day, m_date.month, nYear));
}

int CQorDate::SetMonth(char nMonth) {
  return SetPart(QORDATE(m_date.day, nMonth, m_date.year));
}

int CQorDate::SetDay(char nDay) {
  return SetPart(QORDATE(nDay, m_date.month, m_date.year));
}

int CQorDate::SetLongDate(int nDate) {
  return SetPart(QORDATE(nDate));
}

void CQorDate::SetToday() {
  *this = CurrentDate().ToDATE();
}

void CQorDate::SetMin() {
  const bool step_off_empty = m_dtMin == 0.0 && (m_nStyle & DATESTYLE_EMPTY) == 0;
  *this = step_off_empty ? m_dtMin + 1.0 : m_dtMin;
}

void CQorDate::SetMax() {
  *this = m_dtMax;
}

void CQorDate::SetMinMax(const double& dtMin, const double& dtMax) {
  if (!(dtMax > dtMin)) return;
  m_dtMin = dtMin;
  m_dtMax = dtMax;
  MoveIntoRange();
}

void CQorDate::SetMinMax(const QORDATE& dateMin, const QORDATE& dateMax) {
  if (!(dateMax > dateMin)) return;
  m_dtMin = dateMin.ToDATE();
  m_dtMax = dateMax.ToDATE();
  MoveIntoRange();
}

void CQorDate::MoveIntoRange() {
  if ((m_nStyle & DATESTYLE_EMPTY) != 0 && m_dtValue == 0.0) return;
  if (m_dtValue < m_dtMin) {
    *this = m_dtMin;
  } else if (m_dtValue > m_dtMax) {
    *this = m_dtMax;
  }
}

void CQorDate::Empty() {
  if ((m_nStyle & DATESTYLE_EMPTY) == 0) return;
  m_date.Empty();
  m_dtValue = 0.0;
}

void CQorDate::SetStyle(unsigned int nStyle) {
  m_nStyle = nStyle;
}

void CQorDate::ModifyStyle(unsigned int nRemove, unsigned int nAdd) {
  constexpr unsigned kRemovable = 0xF000;
  m_nStyle = (m_nStyle & ~(nRemove & kRemovable)) | nAdd;
}

CQorDate::operator QORDATETIME() const {
  QORDATETIME result;
  result.Set(m_dtValue);
  return result;
}

int CQorDate::IsEmpty(const QORDATE* pDate) const {
  const QORDATE& date = pDate != nullptr ? *pDate : m_date;
  const PartsInUse use = PartsOfKind(m_nStyle);
  return (use.year && date.year == 0) || (use.month && date.month == 0) || (use.day && date.day == 0);
}

int CQorDate::CheckDate(const double& dtDate) const {
  if (dtDate != dtDate) return 0;
  if (WholePart(dtDate) == 0) return (m_nStyle & DATESTYLE_EMPTY) != 0;
  if (m_dtMax > m_dtMin) {
    if (m_dtMin != 0.0 && m_dtMin > dtDate) return 0;
    if (dtDate > m_dtMax) return 0;
  }
  return 1;
}

int CQorDate::CheckDate(const QORDATE& date) const {
  if (IsEmpty(&date)) return (m_nStyle & DATESTYLE_EMPTY) != 0;
  const PartsInUse use = PartsOfKind(m_nStyle);
  if (m_dtMax > m_dtMin) {
    // Above every limit, although there is no DATE to compare.
    if (use.year && date.year > kLastDateYear) return 0;
    if (use.year && use.month && !use.day) {
      // A month counts when any of its days lies in range.
      const auto length = static_cast<char>(GetDaysOfMonth(date.year, date.month));
      if (m_dtMin > QORDATE(length, date.month, date.year).ToDATE()) return 0;
      if (QORDATE(1, date.month, date.year).ToDATE() > m_dtMax) return 0;
    } else {
      const double value = date.ToDATE();
      if (m_dtMin != 0.0 && m_dtMin > value) return 0;
      if (value > m_dtMax) return 0;
    }
  }
  if (use.year && date.year < kLowestYear.year) return 0;
  if (use.month && (date.month < 1 || date.month > 12)) return 0;
  if (use.day) {
    if (date.day < 1 || date.day > 31) return 0;
    if (use.year && use.month && date.day > GetDaysOfMonth(date.year, date.month)) return 0;
  }
  return 1;
}

void CQorDate::CalcDate(const QORDATE& date) {
  if (IsEmpty(&date)) {
    m_date.Empty();
    m_dtValue = 0.0;
    return;
  }
  const PartsInUse use = PartsOfKind(m_nStyle);
  const int year = use.year ? StepYear(date.year) : m_dateLast.year;
  if (use.year && year < kEarliestYear) return;
  if (use.month && (date.month < 1 || date.month > 12)) return;
  const char month = use.month ? date.month : char{1};
  if (use.day) {
    if (date.day < 1 || date.day > 31) return;
    if (use.year && use.month && date.day > MonthLength(year, month)) return;
  }
  m_date = QORDATE(use.day ? date.day : char{1}, month, static_cast<short>(year));
  m_dateLast = m_date;
  m_dtValue = m_date.ToDATE();
}

int CQorDate::GetWeek() const {
  return WeekDay(WholePart(m_dtValue));
}

int CQorDate::GetDaysOfMonth() const {
  return GetDaysOfMonth(m_date.year, m_date.month);
}

int CQorDate::GetDaysOfMonth(short nYear, char nMonth) const {
  return nMonth < 1 || nMonth > 12 ? 0 : MonthLength(nYear, nMonth);
}

int CQorDate::IsLeap() const {
  return IsLeap(m_date.year);
}

int CQorDate::IsLeap(short nYear) const {
  return QORDATE::IsLeapYear(nYear);
}

int CQorDate::GetLeapCount(short nYear) const {
  return nYear / 4 - nYear / 100 + nYear / 400;
}

long CQorDate::GetDaysFromDate(const QORDATE& date) const {
  const auto count = [this](const QORDATE& day) {
    const int before = day.year - 1;
    int days = 365 * day.year + before / 4 - before / 100 + before / 400;
    for (int month = 1; month < day.month; ++month) {
      days += GetDaysOfMonth(day.year, static_cast<char>(month));
    }
    return days + day.day;
  };
  return count(date) - count(kBaseDate);
}

QORDATE CQorDate::GetDateFromDays(long nDays) const {
  // What the platform's conversion of a whole number answers, its failures included.
  if (!IsDayNumber(nDays)) return QORDATE(-1, -1, -1);
  const CivilDate civil = CivilFromDayNumber(static_cast<int>(nDays));
  return QORDATE(static_cast<char>(civil.day), static_cast<char>(civil.month),
                 static_cast<short>(civil.year));
}

CQorDate CQorDate::operator+(int nDays) const {
  return CQorDate(m_dtValue + nDays);
}

CQorDate CQorDate::operator-(int nDays) const {
  return CQorDate(m_dtValue - nDays);
}

long CQorDate::operator-(const CQorDate& date) const {
  return WholePart(m_dtValue - date.m_dtValue);
}

CQorDate& CQorDate::operator+=(int nDays) {
  if (!IsEmpty()) *this = m_dtValue + nDays;
  return *this;
}

CQorDate& CQorDate::operator-=(int nDays) {
  if (!IsEmpty()) *this = m_dtValue - nDays;
  return *this;
}

void CQorDate::operator++() {
  *this += 1;
}

void CQorDate::operator++(int) {
  *this += 1;
}

void CQorDate::operator--() {
  *this -= 1;
}

void CQorDate::operator--(int) {
  *this -= 1;
}

// Moves a date back by months, counted in 16 signed bits: a large count wraps into the other direction.
bool CQorDate::ShiftBack(unsigned short nMonths, QORDATE& date) const {
  int month =
      static_cast<short>(static_cast<unsigned short>(static_cast<unsigned short>(date.month) - nMonths));
  int year = date.year;
  while (month < 1) {
    month += 12;
    if (year < 2) return false;
    --year;
  }
  if (month > 12) {
    const int years = (month - 13) / 12 + 1;
    year += years;
    month -= 12 * years;
  }
  date.year = static_cast<short>(year);
  date.month = static_cast<char>(month);
  const int length = GetDaysOfMonth(date.year, date.month);
  if (date.day > length) date.day = static_cast<char>(length);
  return true;
}

CQorDate& CQorDate::operator<<=(int nMonths) {
  QORDATE date = m_date;
  if (ShiftBack(static_cast<unsigned short>(nMonths), date)) SetPart(date);
  return *this;
}

// Negated without sign: the smallest int has no positive twin.
CQorDate& CQorDate::operator>>=(int nMonths) {
  return *this <<= static_cast<int>(0u - static_cast<unsigned>(nMonths));
}

CQorDate CQorDate::operator<<(int nMonths) const {
  CQorDate result(*this);
  result <<= nMonths;
  return result;
}

CQorDate CQorDate::operator>>(int nMonths) const {
  CQorDate result(*this);
  result >>= nMonths;  // sees the low 16 bits alone
  return result;
}
