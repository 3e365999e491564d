// The list of a year's national holidays, built from the table of rules. An object belongs to one thread at a
// time.

#include "qorgen/calendar/national_holiday.h"

#include <memory>

#include "qorgen/afx/memory.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/date_parts.h"
#include "qorgen/calendar/internal/holiday_table.h"

using namespace qorgen::calendar;

namespace {

struct ItemDeleter {
  void operator()(QNH_ITEM* item) const {
    QorFree(item->pszName);
    delete item;
  }
};
using OwnedItem = std::unique_ptr<QNH_ITEM, ItemDeleter>;

OwnedItem NewItem(int first_year, int last_year, int month, int day, const wchar_t* name) {
  OwnedItem item(new QNH_ITEM{first_year, last_year, month, day, nullptr});
  item->pszName = qorgen::CopyText(name, TextLength(name));
  return item;
}

OwnedItem NewItem(const HolidayRule& rule, int month, int day) {
  return NewItem(rule.first_year, rule.last_year, month, day, rule.name);
}

QORDATE DateOf(const QNH_ITEM& item, int year) {
  return QORDATE(static_cast<char>(item.nDay), static_cast<char>(item.nMonth), static_cast<short>(year));
}

// The list is ordered by month, then day.
bool IsLater(const QNH_ITEM& item, int month, int day) {
  return item.nMonth > month || (item.nMonth == month && item.nDay > day);
}

}  // namespace

CQorNationalHoliday::CQorNationalHoliday() : m_nYear(0), m_list(10) {}

CQorNationalHoliday::~CQorNationalHoliday() {
  DestroyHolidayCache();
}

void CQorNationalHoliday::SetYear(int nYear) {
  if (nYear == m_nYear) return;
  m_nYear = 0;  // stands if the list can't be built
  CreateHolidayCache(nYear);
  m_nYear = nYear;
}

int CQorNationalHoliday::GetCount() const {
  return static_cast<int>(m_list.GetCount());
}

int CQorNationalHoliday::GetCountInMonth(int nMonth) const {
  int count = 0;
  for (POSITION position = m_list.GetHeadPosition(); position != nullptr;) {
    const QNH_ITEM* item = m_list.GetNext(position);
    if (item->nMonth > nMonth) break;
    if (item->nMonth == nMonth) ++count;
  }
  return count;
}

const wchar_t* CQorNationalHoliday::GetDateString(int nIndex, QORDATE* pDate) const {
  const QNH_ITEM* item = FindIndex(nIndex);
  if (item == nullptr) return nullptr;
  if (pDate != nullptr) *pDate = DateOf(*item, m_nYear);
  return item->pszName;
}

const wchar_t* CQorNationalHoliday::GetDateStringInMonth(int nMonth, int nIndex, QORDATE* pDate) const {
  int index = 0;
  for (POSITION position = m_list.GetHeadPosition(); position != nullptr;) {
    const QNH_ITEM* item = m_list.GetNext(position);
    if (item->nMonth > nMonth) break;
    if (item->nMonth != nMonth || index++ != nIndex) continue;
    if (pDate != nullptr) *pDate = DateOf(*item, m_nYear);
    return item->pszName;
  }
  return nullptr;
}

int CQorNationalHoliday::GetIndex(const QORDATE& date) const {
  if (date.year != m_nYear) return -1;
  int index = -1;
  FindMd(date.month, date.day, &index);
  return index;
}

void CQorNationalHoliday::CreateHolidayCache(int nYear) {
  DestroyHolidayCache();
  try {
    bool has_week_day_rules = false;
    bool has_citizens_holidays = false;
    for (const HolidayRule& rule : kHolidayRules) {
      if (!rule.AppliesTo(nYear)) continue;
      if (rule.month == 0) {
        has_citizens_holidays = true;
      } else if (rule.IsWeekDayRule()) {
        has_week_day_rules = true;
      } else {
        OwnedItem item = NewItem(rule, rule.month, rule.day);
        m_list.AddTail(item.get());
        item.release();
      }
    }
    if (has_week_day_rules) AddWeekDayHolidays(nYear);
    AddSubstitutes(nYear);
    if (has_citizens_holidays) AddCitizensHolidays();
  } catch (...) {
    DestroyHolidayCache();
    throw;
  }
}

void CQorNationalHoliday::AddWeekDayHolidays(int nYear) {
  for (const HolidayRule& rule : kHolidayRules) {
    if (rule.month == 0 || !rule.IsWeekDayRule() || !rule.AppliesTo(nYear)) continue;
    const int day = CQorDateUtil::GetDayFromWeek(nYear, rule.month, rule.day / 100 - 1, rule.day % 100, 1);
    InsertHolidayCache(NewItem(rule, rule.month, day).release());
  }
}

// The position behind an item is taken before anything is inserted: a new item that falls in front of it is
// not visited.
void CQorNationalHoliday::AddSubstitutes(int nYear) {
  for (POSITION position = m_list.GetHeadPosition(); position != nullptr;) {
    QORDATE candidate = DateOf(*m_list.GetNext(position), nYear);
    if (!CQorDateUtil::IsSunday(candidate)) continue;
    candidate.IncDay();
    for (POSITION behind = position; behind != nullptr;) {
      const QNH_ITEM* next = m_list.GetNext(behind);
      if (next->nMonth != candidate.month || next->nDay != candidate.day) break;
      candidate.IncDay();
    }
    InsertHolidayCache(NewItem(nYear, nYear, candidate.month, candidate.day, kSubstituteHoliday).release());
  }
}

void CQorNationalHoliday::AddCitizensHolidays() {
  for (const HolidayRule& rule : kHolidayRules) {
    if (rule.month != 0) continue;
    const QNH_ITEM* previous = nullptr;
    for (POSITION position = m_list.GetHeadPosition(); position != nullptr;) {
      const QNH_ITEM* item = m_list.GetNext(position);
      if (previous != nullptr && previous->nMonth == item->nMonth && item->nDay - previous->nDay == 2) {
        InsertHolidayCache(NewItem(rule, item->nMonth, item->nDay - 1).release());
      }
      previous = item;
    }
  }
}

void CQorNationalHoliday::DestroyHolidayCache() {
  while (!m_list.IsEmpty()) OwnedItem(m_list.RemoveHead());
}

void CQorNationalHoliday::InsertHolidayCache(QNH_ITEM* pItem) {
  if (pItem == nullptr) return;
  OwnedItem item(pItem);
  POSITION before = nullptr;
  for (POSITION position = m_list.GetHeadPosition(); position != nullptr && before == nullptr;) {
    const POSITION here = position;
    if (IsLater(*m_list.GetNext(position), item->nMonth, item->nDay)) before = here;
  }
  if (before != nullptr) {
    m_list.InsertBefore(before, item.get());
  } else {
    m_list.AddTail(item.get());
  }
  item.release();
}

QNH_ITEM* CQorNationalHoliday::FindIndex(int nIndex) const {
  if (nIndex < 0 || nIndex >= GetCount()) return nullptr;
  POSITION position = m_list.GetHeadPosition();
  for (int i = 0; i < nIndex; ++i) m_list.GetNext(position);
  return m_list.GetNext(position);
}

QNH_ITEM* CQorNationalHoliday::FindMd(int nMonth, int nDay, int* pnIndex) const {
  int index = 0;
  for (POSITION position = m_list.GetHeadPosition(); position != nullptr; ++index) {
    QNH_ITEM* item = m_list.GetNext(position);
    if (item->nMonth != nMonth || item->nDay != nDay) continue;
    if (pnIndex != nullptr) *pnIndex = index;
    return item;
  }
  if (pnIndex != nullptr) *pnIndex = -1;
  return nullptr;
}
