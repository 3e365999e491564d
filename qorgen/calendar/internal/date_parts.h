#pragma once

// A date text cut into its parts, and parts put together as digits: what reading and writing date text share.
// Works on the caller's stack and allocates nothing. Stateless.

#include <cstddef>

#include "qorgen/calendar/date_record.h"
#include "qorgen/platform/common/text_length.h"

namespace qorgen::calendar {

using qorgen::platform::TextLength;

constexpr bool IsDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}
constexpr bool IsDigitOrBlank(wchar_t c) {
  return IsDigit(c) || c == L' ';
}

// Whether the text holds any other character than digits and blanks.
bool HasForeignCharacters(const wchar_t* text, std::size_t length);

// A decimal number of at least `width` characters as printf lays it out: blanks in front of the sign, zeros
// behind it. Returns the end of what was written, at most 11 characters.
wchar_t* PutNumber(wchar_t* out, int value, int width, wchar_t pad);

wchar_t* PutText(wchar_t* out, const wchar_t* text);

// The number in digits and blanks, every blank counting as 0.
int NumberOf(const wchar_t* digits);

struct DateParts {
  int era_row = -1;  // row of era text; below 0 when the text names no era
  // Each part is empty when it was not found.
  wchar_t year[5] = {};
  wchar_t month[3] = {};
  wchar_t day[3] = {};
  int typed_year = 0;  // the year's own digits, without those that complete it
  int found = 0;       // how many of the four there are
};

// Cuts a text from its right end into day, month and year, each of them only if its style bit is set, and
// looks for an era anywhere in it. A year of less than four digits is completed from `date`, or with zeros
// where the text has an era or `date` is empty. DATEFORMAT_BLANKPAD turns the leading zeros of day and month
// into blanks.
DateParts CutDateText(const wchar_t* text, std::size_t length, unsigned style, const QORDATE& date);

// What CutDateText would make of the digit string of a date, where that is eight digits of parts from 1 on:
// the way of nearly every date that is written, and much shorter. False, with `parts` left alone, for any
// other date.
bool CutWholeDate(const QORDATE& date, unsigned style, DateParts& parts);

// The last digits of a text, all else dropped: as many as CutDateText can use.
struct LastDigits {
  static constexpr std::size_t kCapacity = 8;
  wchar_t text[kCapacity + 1] = {};
  std::size_t length = 0;

  LastDigits(const wchar_t* source, std::size_t source_length);
};

// The digit string of a date; at most kDigitStringLength characters, no terminator. Returns its end.
inline constexpr std::size_t kDigitStringLength = 16;
wchar_t* PutDigitString(wchar_t* out, const QORDATE& date, unsigned style);

// Era title and era year by the style of date text, at most kEraYearLength characters, no terminator. Returns
// its end, null when the date has no era year.
inline constexpr std::size_t kEraYearLength = 16;
wchar_t* PutEraYear(wchar_t* out, const QORDATE& date, unsigned style);

}  // namespace qorgen::calendar
