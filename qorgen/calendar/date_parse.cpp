// Date text read back: cut into parts, completed to eight digits, made into a record. Stateless.

#include <climits>
#include <memory>

#include "qorgen/afx/memory.h"
#include "qorgen/calendar/date_style.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/date_parts.h"
#include "qorgen/calendar/internal/era_table.h"
#include "qorgen/numeric/num_util.h"

using namespace qorgen::calendar;

namespace {

struct GiveBack {
  void operator()(wchar_t* text) const { QorFree(text); }
};
using OwnedText = std::unique_ptr<wchar_t, GiveBack>;

int ToLength(std::size_t length) {
  return length > INT_MAX ? INT_MAX : static_cast<int>(length);
}

OwnedText NewPart(wchar_t** wanted, const wchar_t* part) {
  if (wanted == nullptr || part[0] == 0) return nullptr;
  return OwnedText(qorgen::CopyText(part, TextLength(part)));
}

void HandOut(wchar_t** wanted, OwnedText part) {
  if (part) *wanted = part.release();
}

// Whether all digits of a text stand together and are no more than those of a year.
bool HasYearAlone(const wchar_t* text) {
  while (*text != 0 && !IsDigit(*text)) ++text;
  int digits = 0;
  for (; IsDigit(*text) && digits <= 4; ++text) ++digits;
  while (*text != 0 && !IsDigit(*text)) ++text;
  return digits >= 1 && digits <= 4 && *text == 0;
}

// The Gregorian year of a typed one, 0 where it can be neither an era year nor a Gregorian one.
short SeirekiOf(int typed, int era_row, const QORDATE& date, unsigned style) {
  if (typed >= 1000 && typed <= 9999) return static_cast<short>(typed);
  if (typed < 1 || typed > 99) return 0;
  int row = era_row;
  if (row == kNoRow && date.IsEmpty()) row = kHeiseiRow;
  if (row == kNoRow) {
    QORDATE whole(date);
    if ((style & DATEFORMAT_MONTH) == 0) whole.month = 1;
    if ((style & DATEFORMAT_DAY) == 0) whole.day = 1;
    row = FindEraRow(whole);
    if (row == kNoRow) return 0;
    if (typed < 10) typed += CQorDateUtil::ToWareki(whole) / 10 * 10;
  }
  // Only the upper guard reaches past the last year of a record.
  const int year = kEraTexts[row].first.year - 1 + typed;
  return year > SHRT_MAX ? short{SHRT_MAX} : static_cast<short>(year);
}

// Cut for the year: the parts in use come off the right end first, unless the text holds a year and no more.
DateParts CutTypedYear(const wchar_t* text, std::size_t length, unsigned style) {
  const unsigned wanted = HasYearAlone(text) ? DATEFORMAT_YEAR : style | DATEFORMAT_YEAR;
  return CutDateText(text, length, wanted, QORDATE());
}

QORDATE FromDigits(const wchar_t* digits, std::size_t length) {
  const DateParts parts = CutDateText(digits, length, DATEFORMAT_DATE, QORDATE());
  return QORDATE(static_cast<char>(NumberOf(parts.day)), static_cast<char>(NumberOf(parts.month)),
                 static_cast<short>(NumberOf(parts.year)));
}

QORDATE FromText(const wchar_t* text, std::size_t length) {
  if (!HasForeignCharacters(text, length)) return FromDigits(text, length);
  const LastDigits reduced(text, length);
  return FromDigits(reduced.text, reduced.length);
}

// Year, month and day joined, the parts that the text lacks taken from a date. Returns the end, null when the
// text holds no part. At most kDigitStringLength characters, no terminator.
wchar_t* PutCompleted(wchar_t* out, const wchar_t* text, unsigned style, const QORDATE& date) {
  const DateParts parts = CutDateText(text, TextLength(text), style, date);
  if (parts.found == 0) return nullptr;
  if (parts.year[0] == 0) {
    out = PutNumber(out, date.year, 4, L'0');
  } else if (parts.era_row != kNoRow || (style & DATEFORMAT_ERAYEAR) != 0) {
    out = PutNumber(out, SeirekiOf(parts.typed_year, parts.era_row, date, style), 4, L'0');
  } else {
    out = PutText(out, parts.year);
  }
  out = parts.month[0] == 0 ? PutNumber(out, date.month, 2, L'0') : PutText(out, parts.month);
  return parts.day[0] == 0 ? PutNumber(out, date.day, 2, L'0') : PutText(out, parts.day);
}

struct DigitCount {
  unsigned style;
  int digits;
};
constexpr unsigned kCountedStyle = DATEFORMAT_DATE | DATEFORMAT_HIDDENYEAR | DATEFORMAT_ERAYEAR;
static_assert(kCountedStyle == 0xF01);
constexpr DigitCount kDigitCounts[] = {
    {0x700, 8}, {0x600, 6}, {0x400, 4}, {0x300, 4}, {0x200, 2}, {0x100, 2},
    {0x701, 6}, {0x601, 4}, {0x401, 2}, {0x301, 4}, {0x201, 2}, {0x101, 2},
};

}  // namespace

wchar_t* CQorDateUtil::ParseString(const wchar_t* pszText, int* pnLength) {
  if (pszText == nullptr || *pszText == 0) return nullptr;
  std::size_t digits = 0;
  for (const wchar_t* c = pszText; *c != 0; ++c) digits += IsDigit(*c) ? 1 : 0;
  wchar_t* const result = qorgen::AllocateText(digits + 1);
  wchar_t* out = result;
  for (const wchar_t* c = pszText; *c != 0; ++c) {
    if (IsDigit(*c)) *out++ = *c;
  }
  *out = 0;
  if (pnLength != nullptr) *pnLength = ToLength(digits);
  return result;
}

wchar_t* CQorDateUtil::ParseString(const wchar_t* pszText, unsigned int nStyle, const QORDATE& date,
                                   int* pnLength) {
  wchar_t text[kDigitStringLength];
  const wchar_t* end = PutCompleted(text, pszText, nStyle, date);
  if (end == nullptr) return nullptr;
  const auto length = static_cast<std::size_t>(end - text);
  wchar_t* result = qorgen::CopyText(text, length);
  if (pnLength != nullptr) *pnLength = static_cast<int>(length);
  return result;
}

int CQorDateUtil::ParseStringLength(const wchar_t* pszText) {
  std::size_t count = 0;
  for (const wchar_t* c = pszText; c != nullptr && *c != 0; ++c) count += IsDigitOrBlank(*c) ? 1 : 0;
  return ToLength(count);
}

int CQorDateUtil::ExtractPlainString(const wchar_t* pszText, wchar_t** ppEra, wchar_t** ppYear,
                                     wchar_t** ppMonth, wchar_t** ppDay, unsigned int nStyle, QORDATE date) {
  const DateParts parts = CutDateText(pszText, TextLength(pszText), nStyle, date);
  // All are made before the first is handed out, so that none is lost when memory runs out.
  OwnedText era = NewPart(ppEra, parts.era_row == kNoRow ? L"" : kEraTexts[parts.era_row].letter);
  OwnedText year = NewPart(ppYear, parts.year);
  OwnedText month = NewPart(ppMonth, parts.month);
  OwnedText day = NewPart(ppDay, parts.day);
  HandOut(ppEra, std::move(era));
  HandOut(ppYear, std::move(year));
  HandOut(ppMonth, std::move(month));
  HandOut(ppDay, std::move(day));
  return parts.found;
}

QORDATE CQorDateUtil::ToDate(const wchar_t* pszText) {
  return FromText(pszText, TextLength(pszText));
}

QORDATE CQorDateUtil::ToDate(const wchar_t* pszText, unsigned int nStyle, const QORDATE& date) {
  wchar_t text[kDigitStringLength];
  const wchar_t* end = PutCompleted(text, pszText, nStyle, date);
  return end == nullptr ? QORDATE() : FromText(text, static_cast<std::size_t>(end - text));
}

char CQorDateUtil::ToYear(const wchar_t* pszText) {
  return static_cast<char>(CQorNumUtil::ToShort(pszText));
}

char CQorDateUtil::ToMonth(const wchar_t* pszText) {
  return static_cast<char>(CQorNumUtil::ToShort(pszText));
}

char CQorDateUtil::ToDay(const wchar_t* pszText) {
  return static_cast<char>(CQorNumUtil::ToShort(pszText));
}

short CQorDateUtil::ToSeireki(const wchar_t* pszText, const QORDATE& date, unsigned int nStyle) {
  if (pszText == nullptr) return 0;
  const DateParts parts = CutTypedYear(pszText, TextLength(pszText), nStyle);
  return parts.year[0] == 0 ? short{0} : SeirekiOf(parts.typed_year, parts.era_row, date, nStyle);
}

int CQorDateUtil::OutOfLength(const wchar_t* pszText, unsigned int nStyle) {
  if (pszText == nullptr || *pszText == 0) return 0;
  int expected = 0;
  for (const DigitCount& row : kDigitCounts) {
    if (row.style == (nStyle & kCountedStyle)) expected = row.digits;
  }
  std::size_t count = 0;
  for (const wchar_t* c = pszText + 1; *c != 0; ++c) count += IsDigit(*c) ? 1 : 0;
  const int digits = ToLength(count);
  return (digits > expected) - (digits < expected);
}
