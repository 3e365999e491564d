#include "qorgen/calendar/range_select.h"

#include "qorgen/calendar/date_record.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/era_date.h"

namespace {

// The first day of the month at a place of the strip, or the empty date where CQorDate takes no such strip.
QORDATE FirstDayAt(const QorRangeSelectInfo& strip, short index) {
  if (strip.month < 1 || strip.month > 12) return QORDATE();
  CQorDate date;
  date.Empty();
  date = QORDATE(1, static_cast<char>(strip.month), strip.year);
  date >>= index;
  return date;
}

}  // namespace

void QorRangeSelectInfo::Init() {
  *this = QorRangeSelectInfo();
}

int QorRangeSelectInfo::IsNotSelect() const {
  return year == 0 && month == 0 && first == 0 && last == 0;
}

short QorRangeSelectInfo::GetSelectCount() const {
  return IsNotSelect() ? short{0} : static_cast<short>(last - first + 1);
}

short QorRangeSelectInfo::GetYear(short index) const {
  if (index <= 0) return year;
  const QORDATE date = FirstDayAt(*this, index);
  return date.IsEmpty() ? year : date.year;
}

short QorRangeSelectInfo::GetMonth(short index) const {
  if (index <= 0) return month;
  const QORDATE date = FirstDayAt(*this, index);
  return date.IsEmpty() ? month : date.month;
}

void QorRangeSelectInfo::SelectDay(int date, short count, int around) {
  const QORDATE day(date);
  if (around == 0) {
    year = day.year;
    month = day.month;
    first = 0;
    last = static_cast<short>(count - 1);
    return;
  }
  constexpr int kPlaceInWindow = 5;  // of the date's month, the sixth
  const bool begins_last_year = day.month <= kPlaceInWindow;
  year = static_cast<short>(begins_last_year ? day.year - 1 : day.year);
  month = static_cast<short>(day.month - kPlaceInWindow + (begins_last_year ? 12 : 0));

  int start = day.month - count / 2 + (count % 2 == 0 ? 1 : 0);
  if (start < 1) start += 12;
  int place = start - month;
  if (place < 0) place += 12;
  first = static_cast<short>(place);
  last = static_cast<short>(place + count - 1);
}

void QorRangeSelectInfo::SelectToday(short count, int around) {
  SelectDay(CQorDateUtil::GetToday().ToLongDate(), count, around);
}

CRangeSelector::~CRangeSelector() = default;

QorRangeSelectorType CRangeSelector::GetType() {
  return m_type;
}

void CRangeSelector::SetType(QorRangeSelectorType type) {
  m_type = type;
}
