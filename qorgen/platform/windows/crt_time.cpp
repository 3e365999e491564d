// Times as text: the letters that "msvcrt.dll" has, those that it lacks, and literal text of any language,
// which its own function would send through the locale's code page. Callable from any thread.

#include "qorgen/platform/crt.h"

#undef wcsftime

namespace {

// Year and number of the week that has the day's Thursday.
struct IsoWeek {
  int year;
  int week;
};

bool IsLeap(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

IsoWeek WeekOf(const tm& time) {
  int year = time.tm_year + 1900;
  const int weekday = (time.tm_wday + 6) % 7;  // Monday is 0
  int day = time.tm_yday - weekday + 3;        // of its Thursday
  if (day < 0) {
    --year;
    day += IsLeap(year) ? 366 : 365;
  } else if (day >= (IsLeap(year) ? 366 : 365)) {
    day -= IsLeap(year) ? 366 : 365;
    ++year;
  }
  return {year, day / 7 + 1};
}

struct Alias {
  wchar_t letter;
  const wchar_t* format;
};
constexpr Alias kAliases[] = {
    {L'D', L"%m/%d/%y"},    {L'F', L"%Y-%m-%d"}, {L'R', L"%H:%M"}, {L'T', L"%H:%M:%S"},
    {L'r', L"%I:%M:%S %p"}, {L'h', L"%b"},       {L'n', L"\n"},    {L't', L"\t"},
};

class Writer {
 public:
  Writer(wchar_t* buffer, size_t capacity) : buffer_(buffer), capacity_(capacity) {}

  // False when the text doesn't fit or a letter or field isn't known.
  bool Write(const wchar_t* format, const tm& time) {
    for (; *format != 0; ++format) {
      if (*format != L'%') {
        if (!Put(format, 1)) return false;
        continue;
      }
      const bool flagged = *++format == L'#';
      if (flagged) ++format;
      if (!Convert(*format, flagged, time)) return false;
    }
    return true;
  }

  size_t Finish() {
    buffer_[length_] = 0;
    return length_;
  }

 private:
  // Leaves room for the terminator.
  bool Put(const wchar_t* text, size_t count) {
    if (count >= capacity_ - length_) return false;
    std::memcpy(buffer_ + length_, text, count * sizeof(wchar_t));
    length_ += count;
    return true;
  }

  bool PutNumber(int value, int digits) {
    wchar_t text[16];
    const int count = _snwprintf(text, 16, L"%0*d", digits, value);
    return count > 0 && Put(text, static_cast<size_t>(count));
  }

  bool Convert(wchar_t letter, bool flagged, const tm& time) {
    for (const Alias& alias : kAliases) {
      if (alias.letter == letter) return Write(alias.format, time);
    }
    const int two = flagged ? 1 : 2;
    switch (letter) {
      case L'C':
        return PutNumber((time.tm_year + 1900) / 100, two);
      case L'e': {
        wchar_t text[4];
        const int count = _snwprintf(text, 4, L"%*d", two, time.tm_mday);
        return count > 0 && Put(text, static_cast<size_t>(count));
      }
      case L'G':
        return PutNumber(WeekOf(time).year, 4);
      case L'g':
        return PutNumber(WeekOf(time).year % 100, two);
      case L'V':
        return PutNumber(WeekOf(time).week, two);
      case L'u':
        return PutNumber(time.tm_wday == 0 ? 7 : time.tm_wday, 1);
      default:
        return PutSystem(letter, flagged, time);
    }
  }

  bool PutSystem(wchar_t letter, bool flagged, const tm& time) {
    const wchar_t plain[] = {L'%', letter, 0};
    const wchar_t long_form[] = {L'%', L'#', letter, 0};
    wchar_t text[128];
    const size_t count = wcsftime(text, 128, flagged ? long_form : plain, &time);
    // Morning and afternoon, or the zone, may have no name.
    if (count == 0) return letter == L'p' || letter == L'Z' || letter == L'z';
    return Put(text, count);
  }

  wchar_t* buffer_;
  size_t capacity_;
  size_t length_ = 0;
};

}  // namespace

size_t qorgen_wcsftime(wchar_t* buffer, size_t capacity, const wchar_t* format, const struct tm* time) {
  if (buffer == nullptr || capacity == 0 || format == nullptr || time == nullptr) return 0;
  Writer writer(buffer, capacity);
  const bool done = writer.Write(format, *time);
  const size_t length = writer.Finish();
  if (done) return length;
  buffer[0] = 0;
  return 0;
}
