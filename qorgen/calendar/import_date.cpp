// Dates of import files, read in place: the trimming, replacing and folding of the text happens while it is
// walked, so that nothing is copied. Stateless.

#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/internal/date_parts.h"
#include "qorgen/calendar/internal/era_table.h"
#include "qorgen/platform/common/white_space.h"

using namespace qorgen::calendar;
using qorgen::platform::IsWhiteSpace;

namespace {

// What the two formats make of the characters of a text.
enum class Wording { kDate, kDateTime };

template <Wording kWording>
class ImportReader {
 public:
  explicit ImportReader(const wchar_t* text) : next_(text), end_(text + TextLength(text)) {
    while (next_ != end_ && IsWhiteSpace(*next_)) ++next_;
    while (next_ != end_ && IsWhiteSpace(end_[-1])) --end_;
    SkipDropped();
  }

  bool AtEnd() const { return next_ == end_; }

  // Takes up to `most` characters that are digits or white space, which counts as "0". Returns how many.
  int TakeDigits(int most, int& value) {
    value = 0;
    int taken = 0;
    while (taken < most && !AtEnd()) {
      if (IsDigit(*next_)) {
        value = value * 10 + (*next_ - L'0');
      } else if (IsWhiteSpace(*next_)) {
        value *= 10;
      } else {
        break;
      }
      Step();
      ++taken;
    }
    return taken;
  }

  // A part in front of the year: one or two digits, at most one separator, and more text.
  bool TakePart(int& value) {
    if (TakeDigits(2, value) == 0 || AtEnd()) return false;
    if (const wchar_t c = Current(); c == L'/' || c == L'-') Step();
    return true;
  }

  // The year. `era` receives the index of the era read or inferred, -1 for none.
  bool TakeYear(int& year, int& era) {
    for (era = kEraCount - 1; era >= 0; --era) {
      if (Take(kEraList[era].letter) || Take(kEraList[era].name)) break;
    }
    if (era >= 0) {
      if (!AtEnd() && Current() == L'.') Step();
      if (TakeDigits(2, year) == 0) return false;
      year = CQorDate::GetSeirekiFromWareki(static_cast<short>(year), era);
      return true;
    }
    const int taken = TakeDigits(4, year);
    if (taken == 0) return false;
    if (taken == 4 || year >= 100) return true;
    if (year == 0) {
      year = 2000;
      return true;
    }
    era = kReiwa;
    year = CQorDate::GetSeirekiFromWareki(static_cast<short>(year), era);
    return true;
  }

 private:
  void SkipDropped() {
    while (kWording == Wording::kDate && next_ != end_ && *next_ == L'日') ++next_;
  }

  void Step() {
    ++next_;
    SkipDropped();
  }

  wchar_t Current() const {
    const wchar_t c = *next_;
    if (c >= L'a' && c <= L'z') return static_cast<wchar_t>(c - L'a' + L'A');
    if (kWording == Wording::kDate) return c == L'年' || c == L'月' ? L'/' : c;
    return c == L'-' || c == L'|' || c == L':' ? L'/' : c;
  }

  // Takes a word if it stands here as a whole.
  bool Take(const wchar_t* word) {
    const wchar_t* const start = next_;
    for (; *word != 0; ++word) {
      if (AtEnd() || Current() != *word) {
        next_ = start;
        return false;
      }
      Step();
    }
    return true;
  }

  const wchar_t* next_;
  const wchar_t* end_;
};

}  // namespace

int CQorDateUtil::GetDateFromImpStr(const wchar_t* pszText, CQorDate& date) {
  ImportReader<Wording::kDate> reader(pszText);
  int day = 0;
  int month = 0;
  int year = 0;
  int era = -1;
  if (!reader.TakePart(day) || !reader.TakePart(month) || !reader.TakeYear(year, era)) return 0;
  const QORDATE read(static_cast<char>(day), static_cast<char>(month), static_cast<short>(year));
  if (!date.CheckDate(read)) return 0;
  if (era < 0) {
    date = read;
    return 1;
  }
  // The era is asked of the assigned value; a copy takes it, so that a wrong era leaves the caller's object
  // alone.
  CQorDate assigned(date);
  assigned = read;
  if (assigned.GetGengo() != era) return 0;
  date = assigned;
  return 1;
}

int CQorDateUtil::GetDateTimeFromImpStr(const wchar_t* pszText, QORDATETIME& date) {
  ImportReader<Wording::kDateTime> reader(pszText);
  int second = 0;
  int minute = 0;
  int hour = 0;
  int day = 0;
  int month = 0;
  int year = 0;
  int era = -1;
  const bool whole = reader.TakePart(second) && reader.TakePart(minute) && reader.TakePart(hour) &&
                     reader.TakePart(day) && reader.TakePart(month) && reader.TakeYear(year, era);
  if (!whole) return 0;
  date.Set(static_cast<char>(hour), static_cast<char>(minute), static_cast<short>(second));
  date.day = static_cast<char>(day);
  date.month = static_cast<char>(month);
  date.year = static_cast<short>(year);
  return 1;
}
