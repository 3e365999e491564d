// Cutting date text into parts. Stateless; allocates nothing.

#include "qorgen/calendar/internal/date_parts.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "qorgen/calendar/date_style.h"
#include "qorgen/calendar/internal/era_table.h"

namespace qorgen::calendar {

namespace {

// The first row of era text whose name or letter stands in the text, as if that were in upper case; kNoRow
// for none. The guards' names are mixed case, so only their letters can be found.
int FindEraInText(const wchar_t* text, std::size_t length) {
  unsigned rows = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const wchar_t c = text[i];
    const bool small = c >= L'a' && c <= L'z';
    if (small || (c >= L'A' && c <= L'Z')) {
      const wchar_t upper = small ? static_cast<wchar_t>(c - L'a' + L'A') : c;
      for (int row = 0; row < kEraTextCount; ++row)
        rows |= upper == kEraTexts[row].letter[0] ? 1u << row : 0u;
    } else if (c >= 0x80 && i + 1 < length) {
      for (int row = 0; row < kEraTextCount; ++row) {
        const wchar_t* name = kEraTexts[row].name;
        if (c == name[0] && text[i + 1] == name[1]) rows |= 1u << row;
      }
    }
  }
  return rows == 0 ? kNoRow : std::countr_zero(rows);
}

void PadTwoDigits(wchar_t* digits, unsigned style) {
  if ((style & DATEFORMAT_BLANKPAD) == 0) return;
  for (int i = 0; i < 2 && digits[i] == L'0'; ++i) digits[i] = L' ';
}

void PutTwoDigits(wchar_t (&part)[3], int value, unsigned style) {
  part[0] = static_cast<wchar_t>(L'0' + value / 10);
  part[1] = static_cast<wchar_t>(L'0' + value % 10);
  PadTwoDigits(part, style);
}

// Takes digits and blanks from the right end of a text.
class RightReader {
 public:
  RightReader(const wchar_t* text, std::size_t length) : text_(text), end_(length) {}

  // Skips what is no digit, then takes up to `most` digits and blanks, which end in front of `part_end`; a
  // blank counts as a "0". Returns how many were taken. Only the place of a digit taken is written.
  int Take(int most, wchar_t* part_end) {
    while (end_ > 0 && !IsDigit(text_[end_ - 1])) --end_;
    int taken = 0;
    while (taken < most && end_ > 0 && IsDigitOrBlank(text_[end_ - 1])) {
      const wchar_t c = text_[--end_];
      *--part_end = c == L' ' ? L'0' : c;
      ++taken;
    }
    return taken;
  }

 private:
  const wchar_t* text_;
  std::size_t end_;
};

bool TakeTwoDigits(RightReader& reader, unsigned style, wchar_t (&part)[3]) {
  wchar_t digits[2] = {L'0', L'0'};
  if (reader.Take(2, digits + 2) == 0) return false;
  PadTwoDigits(digits, style);
  part[0] = digits[0];
  part[1] = digits[1];
  return true;
}

}  // namespace

bool HasForeignCharacters(const wchar_t* text, std::size_t length) {
  return !std::all_of(text, text + length, [](wchar_t c) { return IsDigitOrBlank(c); });
}

wchar_t* PutNumber(wchar_t* out, int value, int width, wchar_t pad) {
  wchar_t reversed[10];
  int digits = 0;
  unsigned magnitude = value < 0 ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
  do {
    reversed[digits++] = static_cast<wchar_t>(L'0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  const int padding = width - digits - (value < 0 ? 1 : 0);
  if (value < 0 && pad == L'0') *out++ = L'-';
  for (int i = 0; i < padding; ++i) *out++ = pad;
  if (value < 0 && pad != L'0') *out++ = L'-';
  while (digits > 0) *out++ = reversed[--digits];
  return out;
}

wchar_t* PutText(wchar_t* out, const wchar_t* text) {
  while (*text != 0) *out++ = *text++;
  return out;
}

int NumberOf(const wchar_t* digits) {
  int value = 0;
  for (; *digits != 0; ++digits) value = value * 10 + (*digits == L' ' ? 0 : *digits - L'0');
  return value;
}

DateParts CutDateText(const wchar_t* text, std::size_t length, unsigned style, const QORDATE& date) {
  DateParts parts;
  RightReader reader(text, length);
  if ((style & DATEFORMAT_DAY) != 0 && TakeTwoDigits(reader, style, parts.day)) ++parts.found;
  if ((style & DATEFORMAT_MONTH) != 0 && TakeTwoDigits(reader, style, parts.month)) ++parts.found;
  parts.era_row = FindEraInText(text, length);
  if (parts.era_row != kNoRow) ++parts.found;
  if ((style & DATEFORMAT_YEAR) == 0) return parts;

  wchar_t year[5] = {L'0', L'0', L'0', L'0', 0};
  const int taken = reader.Take(4, year + 4);
  if (taken == 0) return parts;
  ++parts.found;
  parts.typed_year = NumberOf(year);
  if (parts.era_row == kNoRow && !date.IsEmpty()) {
    // A year that four digits can't show gives its last four, one before the year 0 none.
    wchar_t completing[16];
    PutNumber(completing, std::max<int>(date.year, 0) % 10000, 4, L'0');
    std::copy(completing, completing + 4 - taken, year);
  }
  std::copy(std::begin(year), std::end(year), parts.year);
  return parts;
}

bool CutWholeDate(const QORDATE& date, unsigned style, DateParts& parts) {
  const bool whole = date.year >= 1 && date.year <= 9999 && date.month >= 1 && date.month <= 99 &&
                     date.day >= 1 && date.day <= 99;
  if (!whole) return false;
  PutTwoDigits(parts.day, date.day, style);
  PutTwoDigits(parts.month, date.month, style);
  PutNumber(parts.year, date.year, 4, L'0');
  parts.typed_year = date.year;
  parts.found = 3;
  return true;
}

LastDigits::LastDigits(const wchar_t* source, std::size_t source_length) {
  while (source_length > 0 && length < kCapacity) {
    const wchar_t c = source[--source_length];
    if (IsDigit(c)) text[length++] = c;
  }
  std::reverse(text, text + length);
}

wchar_t* PutDigitString(wchar_t* out, const QORDATE& date, unsigned style) {
  if (date.IsEmpty()) return out;
  if (date.year >= 1 || (style & DATEFORMAT_YEAR) != 0) out = PutNumber(out, date.year, 4, L'0');
  if (date.month >= 1 || (style & DATEFORMAT_MONTH) != 0) out = PutNumber(out, date.month, 2, L'0');
  if (date.day >= 1 || (style & DATEFORMAT_DAY) != 0) out = PutNumber(out, date.day, 2, L'0');
  return out;
}

}  // namespace qorgen::calendar
