#pragma once

// The national holidays of one year as an ordered list: those of the law's table, the substitute holidays
// (振替休日) behind a Sunday, and the citizens' holidays (国民の休日) between two others.
//
// An object belongs to one thread at a time. Asking costs a walk over about twenty items, another year a new
// list.
//
// The rules reach further than history: substitute holidays are given to every year asked for, also before
// 1973, and the holidays of the law to years before it. Days of the week are known for the years 100 to 9999;
// for others no substitute is found.

#include "qorgen/afx/list.h"
#include "qorgen/calendar/date_record.h"
#include "qorgen/platform/export.h"

// One holiday of the list.
struct QNH_ITEM {
  int nFirstYear;  // years of its rule, 0 for no limit; the year itself for a substitute holiday
  int nLastYear;
  int nMonth;
  int nDay;
  wchar_t* pszName;  // owned, a block of QorFree
};

class QORGEN_API CQorNationalHoliday {
 public:
  // Year 0 and an empty list.
  CQorNationalHoliday();
  ~CQorNationalHoliday();
  CQorNationalHoliday(const CQorNationalHoliday&) = delete;
  CQorNationalHoliday& operator=(const CQorNationalHoliday&) = delete;

  // Builds the list of another year; nothing for the year already held, and so for 0 on a new object. When
  // memory runs out the exception leaves an empty list and the year 0.
  void SetYear(int nYear);

  int GetCount() const;
  int GetCountInMonth(int nMonth) const;
  // The name at a position of the list, or at one counted inside a month; null, and `pDate` left alone, where
  // there is none. `pDate` may be null; it receives the date, its year within 16 bits. The name lives as long
  // as the list.
  const wchar_t* GetDateString(int nIndex, QORDATE* pDate) const;
  const wchar_t* GetDateStringInMonth(int nMonth, int nIndex, QORDATE* pDate) const;
  // The position of a date; -1 for a date of another year and for no holiday.
  int GetIndex(const QORDATE& date) const;

 protected:
  // Builds the list of any year, 0 included, without storing the year.
  void CreateHolidayCache(int nYear);
  void DestroyHolidayCache();
  // Inserts an item in front of the first later one and takes it over, its name included.
  void InsertHolidayCache(QNH_ITEM* pItem);
  // The item at a position, or of a month and day; null for none. `pnIndex` may be null; it receives the
  // position, -1 for none.
  QNH_ITEM* FindIndex(int nIndex) const;
  QNH_ITEM* FindMd(int nMonth, int nDay, int* pnIndex) const;

  int m_nYear;
  CTypedPtrList<CPtrList, QNH_ITEM*> m_list;

 private:
  void AddWeekDayHolidays(int nYear);
  void AddSubstitutes(int nYear);
  void AddCitizensHolidays();
};
