#pragma once

// A date with a guarded range and a style, made for input fields: it refuses a value outside its range
// instead of failing, and knows which parts of a date are in use. It also tells the Japanese era (元号) of
// its date.
//
// An object belongs to one thread at a time. Nothing throws.

#include "qorgen/calendar/date_record.h"

// The style word. Its low four bits are the date kind, the parts in use; 4 and 8 are the same as 3 and 7, and all
// other kinds than these have year, month and day.
inline constexpr unsigned int DATESTYLE_DATE = 0;
inline constexpr unsigned int DATESTYLE_YEARMONTH = 2;
inline constexpr unsigned int DATESTYLE_MONTHDAY = 3;
inline constexpr unsigned int DATESTYLE_YEAR = 5;
inline constexpr unsigned int DATESTYLE_MONTH = 6;
inline constexpr unsigned int DATESTYLE_DAY = 7;
inline constexpr unsigned int DATESTYLE_KIND = 0xF;
inline constexpr unsigned int DATESTYLE_EMPTY = 0x10;  // the empty value is allowed

// Refusing a value means that every field stays as it is. Operations with a result then give 0; the operators
// say nothing. A value that is not a number is refused as well.
//
// A `DATE` limit compares with the DATE of a date, which is 0.0 for a date that isn't whole or real; a year
// above 9999, where it is in use, lies above every limit.
class QORGEN_API CQorDate {
 public:
  // Today, style DATESTYLE_EMPTY, no lower limit, upper limit 31 December 9999.
  CQorDate();
  // The same, then the checked assignment of the value; a refused one leaves today.
  CQorDate(double dtDate);
  CQorDate(QORDATE date);
  // Every field, range and style included.
  CQorDate(const CQorDate&) = default;
  CQorDate& operator=(const CQorDate&) = default;
  virtual ~CQorDate();

  // Checked assignment of a DATE. The range is checked for a value with a whole part other than 0; a whole
  // part of 0 needs the empty value allowed, and exactly 0.0 empties the object. A time of day is kept in the
  // DATE.
  CQorDate& operator=(const double& dtDate);

  // Checked assignment of a date: CheckDate, then completion. Empty where a part in use is 0. A year in use
  // is stepped: 100 to 899 to 2100 to 2899, 900 to 999 to 1900 to 1999; one that is then below 1899 leaves
  // the object as it was, although CheckDate passed it. A year not in use is that of the last date held,
  // month and day not in use are 1.
  CQorDate& operator=(const QORDATE& date);

  // Replaces one part (or the whole date by its integer form) by the checked assignment of a date. Gives 1,
  // or 0 where CheckDate refuses the result.
  int SetYear(short nYear);
  int SetMonth(char nMonth);
  int SetDay(char nDay);
  int SetLongDate(int nDate);

  void SetToday();
  // The lower limit; the day after it where that is 0.0 and the empty value is not allowed.
  void SetMin();
  void SetMax();

  // Does nothing unless the upper limit is above the lower (by the integer forms for dates). A value outside
  // is then moved to the limit that it passes, except the empty one where it is allowed. A lower limit of 0.0
  // refuses nothing later, but moves a value before 30 December 1899 up to it here.
  void SetMinMax(const double& dtMin, const double& dtMax);
  void SetMinMax(const QORDATE& dateMin, const QORDATE& dateMax);

  // Empties the value where the empty value is allowed.
  void Empty();

  void SetStyle(unsigned int nStyle);
  unsigned int GetStyle() const { return m_nStyle; }
  // Clears those bits of `nRemove` that lie in 0xF000 (deliberately no others), then sets all of `nAdd`.
  void ModifyStyle(unsigned int nRemove, unsigned int nAdd);

  operator QORDATE() const { return m_date; }
  QORDATE ToQORDATE() const { return m_date; }
  // Made from the DATE, time included; an empty value gives 30 December 1899.
  operator QORDATETIME() const;
  operator double() const { return m_dtValue; }

  // 1 when a part in use is 0, in `*pDate` or, with null, in this date.
  int IsEmpty(const QORDATE* pDate = nullptr) const;

  // Whether a value would be accepted.
  int CheckDate(const QORDATE& date) const;
  int CheckDate(const double& dtDate) const;

  // 0 for Sunday to 6 for Saturday; 6 for an empty value.
  int GetWeek() const;
  // Days of the month, 0 for a number that is no month.
  int GetDaysOfMonth() const;
  int GetDaysOfMonth(short nYear, char nMonth) const;
  int IsLeap() const;
  int IsLeap(short nYear) const;
  // The leap years from 1 to `nYear`: nYear / 4 - nYear / 100 + nYear / 400.
  int GetLeapCount(short nYear) const;

  // The whole DATE number of a date, counted in the proleptic Gregorian calendar without a check, and back. A
  // number outside the years 100 to 9999 gives -1 in each field.
  long GetDaysFromDate(const QORDATE& date) const;
  QORDATE GetDateFromDays(long nDays) const;

  // A new object of default style and range (deliberately not this one's), assigned this value and `nDays`
  // more or less.
  CQorDate operator+(int nDays) const;
  CQorDate operator-(int nDays) const;
  // Days from `date` to this value, cut to a whole number of 32 bits.
  long operator-(const CQorDate& date) const;

  // Days on or back by the checked assignment; nothing for an empty value.
  CQorDate& operator+=(int nDays);
  CQorDate& operator-=(int nDays);
  void operator++();
  void operator++(int);
  void operator--();
  void operator--(int);

  // `<<` moves into the past and `>>` into the future by months, within 16 bits; a day above the length of
  // the new month becomes that length. A refused result changes nothing. The binary forms work on a full
  // copy, range and style included.
  CQorDate& operator<<=(int nMonths);
  CQorDate& operator>>=(int nMonths);
  CQorDate operator<<(int nMonths) const;
  CQorDate operator>>(int nMonths) const;

  // By the DATE values, as doubles.
  int operator==(const CQorDate& date) const { return m_dtValue == date.m_dtValue; }
  int operator!=(const CQorDate& date) const { return m_dtValue != date.m_dtValue; }
  int operator<(const CQorDate& date) const { return m_dtValue < date.m_dtValue; }
  int operator<=(const CQorDate& date) const { return m_dtValue <= date.m_dtValue; }
  int operator>(const CQorDate& date) const { return m_dtValue > date.m_dtValue; }
  int operator>=(const CQorDate& date) const { return m_dtValue >= date.m_dtValue; }

  // The era: 0 Meiji (from 1 January 1868), 1 Taisho, 2 Showa, 3 Heisei, 4 Reiwa; -1 before. Looks at the
  // last date held where the empty value is allowed, else at this date. 7 January 1989 is 2, 8 January 1989
  // is 3.
  int GetGengo() const;
  // The year of the era, always of this date; stores the era's index. Before all eras the result is 0 and the
  // index 5 (not -1: the two operations differ on purpose). `pnGengo` may be null.
  int GetWareki(int* pnGengo = nullptr) const;
  // The Gregorian year of an era year, 0 for an index outside 0 to 4. (1, 4) is 2019 and so is (31, 3).
  static short GetSeirekiFromWareki(short nYear, int nGengo);
  // "明治" and "M" and so on, constants that are never freed; null for an index outside 0 to 4.
  static const wchar_t* GetGengoJPNString(int nGengo);
  static const wchar_t* GetGengoRomaString(int nGengo);

 protected:
  // Default style and range, and today's date.
  void Initial();
  // Stores and completes a date that has passed CheckDate.
  void CalcDate(const QORDATE& date);

  QORDATE m_date;    // the empty date when the value is empty
  double m_dtValue;  // the same value as a DATE, 0.0 when empty
  double m_dtMin;    // 0.0 means no lower limit
  double m_dtMax;
  unsigned int m_nStyle;
  unsigned char m_bReserved;
  QORDATE m_dateLast;  // the last non-empty date held; gives the year where the kind has none

 private:
  void MoveIntoRange();
  int SetPart(const QORDATE& date);
  bool ShiftBack(unsigned short nMonths, QORDATE& date) const;
};
