// Times of day written as text, alone or behind a date. Stateless but for the first-year setting of dates.

#include "qorgen/afx/memory.h"
#include "qorgen/calendar/date_style.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/date_parts.h"

using namespace qorgen::calendar;

namespace {

// Prefix, three numbers and their units are far shorter.
constexpr std::size_t kTimeLength = 64;

wchar_t* PutHour(wchar_t* out, int hour, unsigned style) {
  const bool japanese = (style & TIMEFORMAT_KANJI) != 0;
  if ((style & TIMEFORMAT_HOUR12) != 0) {
    // 24 begins the next morning. Hours that no clock shows fall into the half day that they would reach.
    const bool morning = hour < 12 || hour / 12 % 2 == 0;
    if (japanese) {
      out = PutText(out, morning ? L"午前" : L"午後");
    } else {
      out = PutText(out, morning ? L"AM" : L"PM");
    }
    const bool twelve = hour == 0 || hour == 12 || hour == 24;
    out = PutNumber(out, twelve ? 12 : hour % 12, 2, L' ');
  } else if ((style & TIMEFORMAT_HOUR24) != 0) {
    out = PutNumber(out, hour, 2, L' ');
  } else {
    return out;
  }
  return PutText(out, japanese ? L"時" : L":");
}

std::size_t PutTime(wchar_t (&buffer)[kTimeLength], const QORDATETIME& time, unsigned style) {
  const bool japanese = (style & TIMEFORMAT_KANJI) != 0;
  wchar_t* out = PutHour(buffer, time.hour, style);
  // A blank left of a minute or second becomes "0" wherever it stands, a sign included.
  if ((style & TIMEFORMAT_MINUTE) != 0) {
    wchar_t* begin = out;
    out = PutNumber(out, time.minute, 2, L' ');
    if (*begin == L' ') *begin = L'0';
    out = PutText(out, japanese ? L"分" : L":");
  }
  if ((style & TIMEFORMAT_SECOND) != 0) {
    wchar_t* begin = out;
    out = PutNumber(out, time.second, 2, L' ');
    if (*begin == L' ') *begin = L'0';
    if (japanese) out = PutText(out, L"秒");
  }
  if (out != buffer && out[-1] == L':') --out;
  return static_cast<std::size_t>(out - buffer);
}

}  // namespace

void CQorDateUtil::FormatString(CString& strText, const QORDATETIME& date, unsigned short nTimeStyle) {
  wchar_t buffer[kTimeLength];
  const std::size_t length = PutTime(buffer, date, nTimeStyle);
  strText.SetString(buffer, static_cast<int>(length));
}

void CQorDateUtil::FormatString(CString& strText, const QORDATETIME& date, unsigned int nStyle,
                                unsigned short nTimeStyle) {
  wchar_t buffer[kTimeLength];
  const std::size_t length = PutTime(buffer, date, nTimeStyle);
  FormatString(strText, QORDATE(date.day, date.month, date.year).ToLongDate(), nStyle, nullptr);
  strText.AppendChar(L' ');
  strText.Append(buffer, static_cast<int>(length));
}
