#pragma once

// Date text and date arithmetic over the plain records: writing a date in any of the shapes of screens and
// reports, reading what a user or a file gives, months and weeks, holidays, and a typed date clamped into a
// period.
//
// All operations are static and nothing throws but for want of memory. They may be called from any thread,
// but for IsHoliday, and for the three settings, which carry no lock.
//
// A `wchar_t*` result is a new block that goes back through QorFree; null means that there is nothing to
// give. A `const wchar_t*` result is a constant and is never freed. Every text argument may be null. After a
// failure the out-parameters are as they were; every pointer to one may be null.
//
// The style words are made of DATEFORMAT_... and TIMEFORMAT_... For 5 March 2019:
//
//   DATEFORMAT_DATE                                                  "2019/03/05"
//   DATEFORMAT_DATE | DATEFORMAT_POINT                               "2019.03.05"
//   DATEFORMAT_DATE | DATEFORMAT_NODELIMITER                         "20190305"
//   DATEFORMAT_DATE | DATEFORMAT_KANJI                               "2019年03月05日"
//   DATEFORMAT_DATE | DATEFORMAT_ERAYEAR | DATEFORMAT_ERANAME        "平成31/03/05"
//   DATEFORMAT_DATE | DATEFORMAT_ERAYEAR | DATEFORMAT_ERAPOINT       "H.31/03/05"
//   DATEFORMAT_DATE | DATEFORMAT_WEEKKANJI                           "2019/03/05(火)"
//   DATEFORMAT_DATE | DATEFORMAT_OPEN | DATEFORMAT_CLOSE             "(2019/03/05)"

#include "qorgen/afx/string.h"
#include "qorgen/calendar/date_record.h"
#include "qorgen/calendar/date_style.h"
#include "qorgen/calendar/era_date.h"
#include "qorgen/platform/export.h"

class QORGEN_API CQorDateUtil {
 public:
  // ---- Writing a date ----

  // The digit string: year, month and day joined, each written if it is 1 or more or its style bit is set. ""
  // for the empty date.
  static wchar_t* ToString(const QORDATE& date, unsigned int nStyle);
  // One part; with `bZeroFill` four digits for a year and two for a month or day.
  static wchar_t* ToYearString(short nYear, int bZeroFill);
  static wchar_t* ToMonthString(char nMonth, int bZeroFill);
  static wchar_t* ToDayString(char nDay, int bZeroFill);

  // The era year. Every date has a row of the era table but those with a negative integer form (0): before 8
  // September 1868 the row "UnFl", whose first year is 0; in the year 32767 the row "OvFl".
  static short ToWareki(const QORDATE& date);
  // Era title and era year, two wide; null where there is no row or the era year is 0 or less.
  static wchar_t* ToWarekiString(const QORDATE& date, unsigned int nStyle);
  // The era title alone: null where there is no row, "" where the style asks for none.
  static const wchar_t* GetWarekiTitle(const QORDATE& date, unsigned int nStyle);
  // The day of the week, 0 for Sunday; "" with neither bit and for a number outside 0 to 6.
  static const wchar_t* GetWeekString(int nWeek, unsigned int nStyle);
  // The delimiter behind a part (DATEFORMAT_YEAR, _MONTH or _DAY); null where none stands.
  static const wchar_t* GetDelimiterString(unsigned int nStyle, unsigned int nPart);

  // A date by its style. The text goes through the digit string, which is read from the right: a record that
  // lacks its day or month comes out as its remaining digits would be read. Where no formatting takes place
  // (a style of 0, the empty date) the digit string itself is the result. `pnLength` receives the length of
  // the text.
  static wchar_t* FormatString(const QORDATE& date, unsigned int nStyle, int* pnLength);
  // The same for a date in integer form.
  static wchar_t* FormatString(int nDate, unsigned int nStyle, int* pnLength);
  // A digit string of any length; other characters than digits and blanks are dropped. Null for a null or
  // empty text, a style of 0 and a text without digits; a text with fewer parts than the style uses comes
  // back as it is. `nWeek` below 0 writes no day of the week.
  static wchar_t* FormatString(const wchar_t* pszText, unsigned int nStyle, int* pnLength, int nWeek);
  // Into a string, which is left alone where the pointer form would give null.
  static void FormatString(CString& strText, int nDate, unsigned int nStyle, int* pnLength);

  // The time alone, by TIMEFORMAT_...: all of them give "午後 3時04分05秒"; HOUR24, MINUTE and SECOND give
  // "15:04:05".
  static void FormatString(CString& strText, const QORDATETIME& date, unsigned short nTimeStyle);
  // Date, one blank, time.
  static void FormatString(CString& strText, const QORDATETIME& date, unsigned int nStyle,
                           unsigned short nTimeStyle);

  // ---- Reading a date ----

  // A copy with the characters "0" to "9" alone; null for a null or empty text, "" for one without digits.
  static wchar_t* ParseString(const wchar_t* pszText, int* pnLength);
  // Any date text to the digits yyyymmdd. Parts that the text lacks come from `date`; null when it holds
  // none. Under DATEFORMAT_ERAYEAR, or with an era in the text, the year is an era year (see ToSeireki). "1/2" with month
  // and day in use and a date of 2024 gives "20240102".
  static wchar_t* ParseString(const wchar_t* pszText, unsigned int nStyle, const QORDATE& date,
                              int* pnLength);
  // How many characters are digits or blanks.
  static int ParseStringLength(const wchar_t* pszText);
  // Cuts a text into its parts from the right end and gives their number; an era counts as one. A part that
  // is found is stored as a new block: the era's letter, four digits of year, two of month and day (blanks in
  // front under DATEFORMAT_BLANKPAD). The pointer of one that isn't stays as it was. A short year is completed from a
  // non-empty `date`.
  static int ExtractPlainString(const wchar_t* pszText, wchar_t** ppEra, wchar_t** ppYear, wchar_t** ppMonth,
                                wchar_t** ppDay, unsigned int nStyle, QORDATE date);

  // Plain digit text to a date, the last eight digits counting; the empty date for a null or empty text.
  static QORDATE ToDate(const wchar_t* pszText);
  // ParseString, then the above.
  static QORDATE ToDate(const wchar_t* pszText, unsigned int nStyle, const QORDATE& date);
  // The number in a text, cut to the result's 8 bits (also the year's: use ToDate for whole years).
  static char ToYear(const wchar_t* pszText);
  static char ToMonth(const wchar_t* pszText);
  static char ToDay(const wchar_t* pszText);
  // The Gregorian year of a typed year: 1000 to 9999 as it stands, 1 to 99 as an era year, 0 for any other
  // and for none. The era is the one in the text, else that of `date`, else Heisei; a single digit without an
  // era takes its tens from the era year of `date`. The parts in use are cut off the right end first, but a
  // text whose only digits are a run of up to four is the year whatever the style. "R2" gives 2020, "H31"
  // 2019, "200" 0.
  static short ToSeireki(const wchar_t* pszText, const QORDATE& date, unsigned int nStyle);

  // Imported date text, day first: "01/02/2021", "1-2-R3", "01/02/R03", "010203", "01日02月令和3年". 1 and
  // the date assigned to `date`, or 0 and `date` left alone.
  //
  // Day and month are one or two characters, digits or white space that counts as 0 (the platform's
  // wide-character class), with at most one "/" or "-" behind. A year of four digits is Gregorian, of one to
  // three an era year of Reiwa below 100, 2000 for 0, and itself from 100. With an era letter or name, or one
  // inferred, the date must lie in that era. What stands behind the year is not looked at. The assignment is
  // that of CQorDate, with its year steps: a Gregorian year of 1000 to 1898 passes its check and changes
  // nothing.
  static int GetDateFromImpStr(const wchar_t* pszText, CQorDate& date);
  // Imported date and time in reversed order: second, minute, hour, day, month, year; "30:20:10|05-03-2019"
  // is 10:20:30 on 5 March 2019. 1 and the six fields stored, or 0. The fields are not checked against the
  // calendar.
  static int GetDateTimeFromImpStr(const wchar_t* pszText, QORDATETIME& date);
  // 0 when the text has the digit count of the style, -1 when it has fewer, 1 when more. The first character
  // is deliberately never counted. 0 for a null or empty text.
  static int OutOfLength(const wchar_t* pszText, unsigned int nStyle);

  // ---- Settings of the process ----

  // Whether the first era year may be written 元; 1 at first.
  static int& GannenUse();
  // The month and day that begin the accounting period; 1 at first. Storage that applications share: the
  // library does not interpret them.
  static int& BopMonth();
  static int& BopDay();

  // ---- Months, days, holidays ----

  // The month after or before, with the year stepped over its ends. Numbers that are no month just count on.
  static int IncMonth(int& nYear, int nMonth);
  static int DecMonth(int& nYear, int nMonth);
  static QORDATE IncDay(const QORDATE& date);
  static QORDATE DecDay(const QORDATE& date);
  // Days of the month; 31 for a number that is no month. GetDays cuts its arguments to the fields of a
  // record.
  static char DaysOfMonth(short nYear, char nMonth);
  static int GetDays(int nYear, int nMonth);
  // Always 12.
  static char MonthesOfYear(short nYear);
  static int IsLeapYear(short nYear);
  static int IsLeapYear(int nYear);
  // 1 for a real date of the year 1 or later.
  static int IsValid(const QORDATE& date);
  static QORDATE GetToday();
  // An empty date counts as a Sunday.
  static int IsSunday(const QORDATE& date);
  static int IsSaturday(const QORDATE& date);
  // 1 for a national holiday and for every Sunday; 0 for a date with a field of 0 or less. One list of
  // holidays serves the process and is rebuilt when the year changes: callers on several threads must take
  // turns.
  static int IsHoliday(const QORDATE& date);

  // ---- Weeks. A month is laid out in rows from Sunday to Saturday; row 0 holds day 1. ----

  // The day of the week (-1 for an empty date); `pnWeek` receives the row. With `bAdjust` a week day in front
  // of that of the first counts from the next row on, so that the row is the n-th such week day, from 0.
  static int GetWeek(const QORDATE& date, int* pnWeek, int bAdjust);
  // The number of rows; the days of the week of the first and of the last day of the month.
  static int GetWeekRange(int nYear, int nMonth, int* pnFirst, int* pnLast);
  // The day of the month at a row and day of the week; -1 for none, and for a row below 0 or a week day
  // outside 0 to 6.
  static int GetDayFromWeek(int nYear, int nMonth, int nWeek, int nDayOfWeek, int bAdjust);

  // Turns a date of which the parts in `nStyle` (DATEFORMAT_YEAR, _MONTH, _DAY) were typed into a usable one between
  // `dateMin` and `dateMax`, stored through `pDate`. Untyped parts come from dateMin, or from dateMax where
  // that leaves the range below. The result says what was changed: -1 below and 1 above the range; -2 and 2
  // the year (to 1868 and 2087), -3 and 3 the month, -4 and 4 the day, the last one found; 0 nothing. An
  // empty date stays empty and gives 0.
  static int NormalizeDate(const QORDATE& date, const QORDATE& dateMin, const QORDATE& dateMax,
                           unsigned int nStyle, QORDATE* pDate);

 protected:
  static int m_bGannenUse;
  static int m_nBopMonth;
  static int m_nBopDay;
};
