// The settings of the accounting year, and a typed date clamped into a period. The settings belong to the
// process and carry no lock.

#include "qorgen/calendar/date_style.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/era_table.h"

using namespace qorgen::calendar;

int CQorDateUtil::m_bGannenUse = 1;
int CQorDateUtil::m_nBopMonth = 1;
int CQorDateUtil::m_nBopDay = 1;

int& CQorDateUtil::GannenUse() {
  return m_bGannenUse;
}

int& CQorDateUtil::BopMonth() {
  return m_nBopMonth;
}

int& CQorDateUtil::BopDay() {
  return m_nBopDay;
}

namespace {

// Puts the parts of `source` that `style` names into `target`.
void CopyParts(const QORDATE& source, unsigned style, QORDATE& target) {
  if ((style & DATEFORMAT_YEAR) != 0) target.year = source.year;
  if ((style & DATEFORMAT_MONTH) != 0) target.month = source.month;
  if ((style & DATEFORMAT_DAY) != 0) target.day = source.day;
}

QORDATE Completed(const QORDATE& date, const QORDATE& lowest, unsigned typed) {
  QORDATE result(date);
  if ((typed & DATEFORMAT_YEAR) == 0) {
    if (result.year == 0) result.year = lowest.year;
    CopyParts(lowest, ~typed & (DATEFORMAT_MONTH | DATEFORMAT_DAY), result);
  } else if ((typed & DATEFORMAT_MONTH) == 0) {
    CopyParts(lowest, DATEFORMAT_MONTH | DATEFORMAT_DAY, result);
  } else if ((typed & DATEFORMAT_DAY) == 0) {
    result.day = lowest.day;
  }
  return result;
}

// Mends what is impossible in a date within its range; the code of the last finding, 0 for none.
int Mend(QORDATE& date) {
  int code = 0;
  if (date.year <= 0) {
    date.year = kDefaultLowest.year;
    code = -2;
  }
  if (date.year > kDefaultHighest.year) {
    date.year = kDefaultHighest.year;
    code = 2;
  }
  if (date.month < 1) {
    date.month = 1;
    code = -3;
  }
  if (date.month > 12) {
    date.month = 12;
    code = 3;
  }
  if (date.day <= 0) {
    date.day = 1;
    code = -4;
  }
  const char length = CQorDateUtil::DaysOfMonth(date.year, date.month);
  if (date.day > length) {
    date.day = length;
    code = 4;
  }
  return code;
}

}  // namespace

int CQorDateUtil::NormalizeDate(const QORDATE& date, const QORDATE& dateMin, const QORDATE& dateMax,
                                unsigned int nStyle, QORDATE* pDate) {
  QORDATE result = date.IsEmpty() ? date : Completed(date, dateMin, nStyle);
  if (!result.IsEmpty() && (result < dateMin || result > dateMax)) {
    // The bound on the far side, so that the typed parts have the best chance of fitting.
    result = result < dateMin ? dateMax : dateMin;
    CopyParts(date, nStyle, result);
  }
  int code = 0;
  if (!result.IsEmpty()) {
    if (result < dateMin) {
      result = dateMin;
      code = -1;
    } else if (result > dateMax) {
      result = dateMax;
      code = 1;
    } else {
      code = Mend(result);
    }
  }
  if (pDate != nullptr) *pDate = result;
  return code;
}
