// Dates as era text: title and era year over the table of era text. Stateless but for the first-year setting.

#include "qorgen/afx/memory.h"
#include "qorgen/calendar/date_style.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/date_parts.h"
#include "qorgen/calendar/internal/era_table.h"

namespace qorgen::calendar {

namespace {

const wchar_t* TitleOf(int row, unsigned style) {
  const EraText& era = kEraTexts[row];
  if ((style & DATEFORMAT_ERAPOINT) != 0)
    return (style & DATEFORMAT_NODELIMITER) != 0 ? era.letter : era.dotted;
  if ((style & DATEFORMAT_ERALETTER) != 0) return era.letter;
  return (style & DATEFORMAT_ERANAME) != 0 ? era.name : L"";
}

int EraYear(const QORDATE& date, int row) {
  return date.year - kEraTexts[row].first.year + 1;
}

}  // namespace

wchar_t* PutEraYear(wchar_t* out, const QORDATE& date, unsigned style) {
  const int row = FindEraRow(date);
  if (row == kNoRow) return nullptr;
  const int year = EraYear(date, row);
  if (year <= 0) return nullptr;
  out = PutText(out, TitleOf(row, style));
  const bool first_year_word =
      (style & DATEFORMAT_GANNEN) != 0 || ((style & DATEFORMAT_KANJI) != 0 && CQorDateUtil::GannenUse() != 0);
  if (year == 1 && first_year_word) return PutText(out, L"元");
  return PutNumber(out, year, 2, (style & DATEFORMAT_BLANKPAD) != 0 ? L' ' : L'0');
}

}  // namespace qorgen::calendar

using namespace qorgen::calendar;

short CQorDateUtil::ToWareki(const QORDATE& date) {
  const int row = FindEraRow(date);
  return row == kNoRow ? short{0} : static_cast<short>(EraYear(date, row));
}

wchar_t* CQorDateUtil::ToWarekiString(const QORDATE& date, unsigned int nStyle) {
  wchar_t text[kEraYearLength];
  const wchar_t* end = PutEraYear(text, date, nStyle);
  return end == nullptr ? nullptr : qorgen::CopyText(text, static_cast<std::size_t>(end - text));
}

const wchar_t* CQorDateUtil::GetWarekiTitle(const QORDATE& date, unsigned int nStyle) {
  const int row = FindEraRow(date);
  return row == kNoRow ? nullptr : TitleOf(row, nStyle);
}
