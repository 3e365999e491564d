// Dates written as text. Every text is put together on the stack and copied once. Stateless but for the
// first-year setting.

#include "qorgen/afx/memory.h"
#include "qorgen/calendar/date_style.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/date_parts.h"

using namespace qorgen::calendar;

namespace {

constexpr const wchar_t* kWeekShort[] = {L"(日)", L"(月)", L"(火)", L"(水)", L"(木)", L"(金)", L"(土)"};
constexpr const wchar_t* kWeekLong[] = {L"(SUN)", L"(MON)", L"(TUE)", L"(WED)", L"(THU)", L"(FRI)", L"(SAT)"};

// A text on the stack. The longest date is two parentheses, an era title and year, month, day, three
// delimiters and a day of the week.
constexpr std::size_t kBufferLength = 128;
static_assert(2 + kEraYearLength + 2 + 2 + 3 + 5 < kBufferLength && kDigitStringLength < kBufferLength);

struct Formatted {
  enum { kNothing, kUnchanged, kDone } outcome;
  std::size_t length;  // of the text in the buffer when done
};

wchar_t* NewText(const wchar_t* text, std::size_t length, int* out_length) {
  wchar_t* result = qorgen::CopyText(text, length);
  if (out_length != nullptr) *out_length = static_cast<int>(length);
  return result;
}

wchar_t* PutDelimiter(wchar_t* out, unsigned style, unsigned part) {
  const wchar_t* delimiter = CQorDateUtil::GetDelimiterString(style, part);
  return delimiter == nullptr ? out : PutText(out, delimiter);
}

wchar_t* PutYear(wchar_t* out, const DateParts& parts, unsigned style) {
  if ((style & DATEFORMAT_ERAYEAR) != 0) {
    const int month = parts.month[0] == 0 ? 1 : NumberOf(parts.month);
    const int day = parts.day[0] == 0 ? 1 : NumberOf(parts.day);
    const QORDATE date(static_cast<char>(day), static_cast<char>(month),
                       static_cast<short>(NumberOf(parts.year)));
    wchar_t* end = PutEraYear(out, date, style);
    if (end != nullptr) return end;
  }
  return PutText(out, parts.year);
}

int PartsInUse(unsigned style) {
  return ((style & (DATEFORMAT_YEAR | DATEFORMAT_HIDDENYEAR)) != 0) + ((style & DATEFORMAT_MONTH) != 0) +
         ((style & DATEFORMAT_DAY) != 0);
}

// Lays a date that has been cut out in the buffer. Returns the length.
std::size_t PutDate(const DateParts& parts, unsigned style, int week, wchar_t (&buffer)[kBufferLength]) {
  wchar_t* out = buffer;
  if ((style & DATEFORMAT_OPEN) != 0) *out++ = L'(';
  if ((style & DATEFORMAT_YEAR) != 0 && parts.year[0] != 0) {
    out = PutDelimiter(PutYear(out, parts, style), style, DATEFORMAT_YEAR);
  }
  if ((style & DATEFORMAT_MONTH) != 0 && parts.month[0] != 0) {
    out = PutDelimiter(PutText(out, parts.month), style, DATEFORMAT_MONTH);
  }
  if ((style & DATEFORMAT_DAY) != 0 && parts.day[0] != 0) {
    out = PutDelimiter(PutText(out, parts.day), style, DATEFORMAT_DAY);
  }
  if (week >= 0 && (style & DATEFORMAT_WEEKMASK) != 0)
    out = PutText(out, CQorDateUtil::GetWeekString(week, style));
  if ((style & DATEFORMAT_CLOSE) != 0) *out++ = L')';
  return static_cast<std::size_t>(out - buffer);
}

// Formats a text of digits and blanks into the buffer.
Formatted FormatDigits(const wchar_t* digits, std::size_t length, unsigned style, int week,
                       wchar_t (&buffer)[kBufferLength]) {
  if (length == 0 || style == 0) return {Formatted::kNothing, 0};
  const DateParts parts =
      CutDateText(digits, length, DATEFORMAT_DATE | (style & DATEFORMAT_BLANKPAD), QORDATE());
  if (parts.found == 0) return {Formatted::kNothing, 0};
  if (parts.found < PartsInUse(style)) return {Formatted::kUnchanged, 0};

  return {Formatted::kDone, PutDate(parts, style, week, buffer)};
}

// Formats a date into the buffer; where there is nothing to format the text is the digit string.
std::size_t FormatDate(const QORDATE& date, unsigned style, wchar_t (&buffer)[kBufferLength]) {
  const int week = (style & DATEFORMAT_WEEKMASK) != 0 ? date.GetWeek() : -1;
  if (DateParts parts; style != 0 && CutWholeDate(date, style, parts))
    return PutDate(parts, style, week, buffer);
  wchar_t digits[kDigitStringLength];
  const auto length = static_cast<std::size_t>(PutDigitString(digits, date, style) - digits);
  // Fields below 0 put a sign into the digit string, and it must go; what is left has at most eight digits or
  // loses its first ones, which the cutting from the right would not reach.
  const bool foreign = HasForeignCharacters(digits, length);
  const LastDigits reduced(digits, foreign ? length : 0);
  const wchar_t* text = foreign ? reduced.text : digits;
  const std::size_t text_length = foreign ? reduced.length : length;
  const Formatted formatted = FormatDigits(text, text_length, style, week, buffer);
  if (formatted.outcome == Formatted::kDone) return formatted.length;
  const bool unchanged = formatted.outcome == Formatted::kUnchanged;
  const wchar_t* given = unchanged ? text : digits;
  const std::size_t given_length = unchanged ? text_length : length;
  for (std::size_t i = 0; i < given_length; ++i) buffer[i] = given[i];
  return given_length;
}

wchar_t* NewPartText(int value, int width, int zero_fill) {
  wchar_t text[kDigitStringLength];
  const wchar_t* end = PutNumber(text, value, zero_fill != 0 ? width : 0, L'0');
  return qorgen::CopyText(text, static_cast<std::size_t>(end - text));
}

}  // namespace

wchar_t* CQorDateUtil::ToString(const QORDATE& date, unsigned int nStyle) {
  wchar_t text[kDigitStringLength];
  const wchar_t* end = PutDigitString(text, date, nStyle);
  return qorgen::CopyText(text, static_cast<std::size_t>(end - text));
}

wchar_t* CQorDateUtil::ToYearString(short nYear, int bZeroFill) {
  return NewPartText(nYear, 4, bZeroFill);
}

wchar_t* CQorDateUtil::ToMonthString(char nMonth, int bZeroFill) {
  return NewPartText(nMonth, 2, bZeroFill);
}

wchar_t* CQorDateUtil::ToDayString(char nDay, int bZeroFill) {
  return NewPartText(nDay, 2, bZeroFill);
}

const wchar_t* CQorDateUtil::GetWeekString(int nWeek, unsigned int nStyle) {
  if (nWeek < 0 || nWeek > 6) return L"";
  if ((nStyle & DATEFORMAT_WEEKKANJI) != 0) return kWeekShort[nWeek];
  return (nStyle & DATEFORMAT_WEEKENGLISH) != 0 ? kWeekLong[nWeek] : L"";
}

const wchar_t* CQorDateUtil::GetDelimiterString(unsigned int nStyle, unsigned int nPart) {
  if ((nStyle & DATEFORMAT_NODELIMITER) != 0) return nullptr;
  if ((nStyle & DATEFORMAT_KANJI) != 0) {
    if ((nPart & DATEFORMAT_YEAR) != 0) return L"年";
    if ((nPart & DATEFORMAT_MONTH) != 0) return L"月";
    return (nPart & DATEFORMAT_DAY) != 0 ? L"日" : nullptr;
  }
  const bool between = ((nPart & DATEFORMAT_YEAR) != 0 && (nStyle & DATEFORMAT_MONTH) != 0) ||
                       ((nPart & DATEFORMAT_MONTH) != 0 && (nStyle & DATEFORMAT_DAY) != 0);
  if (!between) return nullptr;
  return (nStyle & DATEFORMAT_POINT) != 0 ? L"." : L"/";
}

wchar_t* CQorDateUtil::FormatString(const QORDATE& date, unsigned int nStyle, int* pnLength) {
  wchar_t buffer[kBufferLength];
  return NewText(buffer, FormatDate(date, nStyle, buffer), pnLength);
}

wchar_t* CQorDateUtil::FormatString(int nDate, unsigned int nStyle, int* pnLength) {
  return FormatString(QORDATE(nDate), nStyle, pnLength);
}

wchar_t* CQorDateUtil::FormatString(const wchar_t* pszText, unsigned int nStyle, int* pnLength, int nWeek) {
  const std::size_t length = TextLength(pszText);
  if (length == 0 || nStyle == 0) return nullptr;
  wchar_t buffer[kBufferLength];
  // A text that comes back unchanged has fewer than three parts, and so no more digits than the reduced text
  // holds.
  const bool foreign = HasForeignCharacters(pszText, length);
  const LastDigits reduced(pszText, foreign ? length : 0);
  const wchar_t* text = foreign ? reduced.text : pszText;
  const std::size_t text_length = foreign ? reduced.length : length;
  const Formatted formatted = FormatDigits(text, text_length, nStyle, nWeek, buffer);
  if (formatted.outcome == Formatted::kNothing) return nullptr;
  if (formatted.outcome == Formatted::kUnchanged) return NewText(text, text_length, pnLength);
  return NewText(buffer, formatted.length, pnLength);
}

void CQorDateUtil::FormatString(CString& strText, int nDate, unsigned int nStyle, int* pnLength) {
  wchar_t buffer[kBufferLength];
  const std::size_t length = FormatDate(QORDATE(nDate), nStyle, buffer);
  strText.SetString(buffer, static_cast<int>(length));
  if (pnLength != nullptr) *pnLength = static_cast<int>(length);
}
