// Formatted times, on both hosts: the runtimes differ in the letters they know, and one sends literal text through
// the locale's code page. Fields are checked before they are used, so no broken-down time can lead outside a table;
// letters that stand for several others expand to a format and run through the same switch.

#include <ctime>

#include "qorgen/platform/common/civil_date.h"
#include "qorgen/platform/common/time_locale.h"
#include "qorgen/platform/crt.h"

using namespace qorgen::platform;

namespace {

struct Names {
  const wchar_t* dayShort[7];
  const wchar_t* dayLong[7];
  const wchar_t* monthShort[12];
  const wchar_t* monthLong[12];
  const wchar_t* half[2];
  // The formats behind %c %x %X, and behind %#c and %#x.
  const wchar_t* dateTime;
  const wchar_t* date;
  const wchar_t* time;
  const wchar_t* longDateTime;
  const wchar_t* longDate;
};

constexpr Names kEnglish = {
    {L"Sun", L"Mon", L"Tue", L"Wed", L"Thu", L"Fri", L"Sat"},
    {L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday"},
    {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun", L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"},
    {L"January", L"February", L"March", L"April", L"May", L"June", L"July", L"August", L"September",
     L"October", L"November", L"December"},
    {L"AM", L"PM"},
    L"%a %b %e %H:%M:%S %Y",
    L"%m/%d/%y",
    L"%H:%M:%S",
    L"%A, %B %d, %Y %H:%M:%S",
    L"%A, %B %d, %Y"};

constexpr Names kJapanese = {
    {L"日", L"月", L"火", L"水", L"木", L"金", L"土"},
    {L"日曜日", L"月曜日", L"火曜日", L"水曜日", L"木曜日", L"金曜日", L"土曜日"},
    {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9", L"10", L"11", L"12"},
    {L"1月", L"2月", L"3月", L"4月", L"5月", L"6月", L"7月", L"8月", L"9月", L"10月", L"11月", L"12月"},
    {L"午前", L"午後"},
    L"%Y/%m/%d %#H:%M:%S",
    L"%Y/%m/%d",
    L"%#H:%M:%S",
    L"%Y年%#m月%#d日 %#H:%M:%S",
    L"%Y年%#m月%#d日"};

class Writer {
 public:
  Writer(wchar_t* buffer, size_t capacity, const Names& names, const tm& time)
      : buffer_(buffer), capacity_(capacity), names_(names), time_(time) {}

  [[nodiscard]] size_t length() const { return length_; }
  [[nodiscard]] bool full() const { return full_; }

  // False for an unknown letter or a field out of range.
  bool Run(const wchar_t* format) {
    for (; *format != 0; ++format) {
      if (*format != L'%') {
        Put(*format);
        continue;
      }
      ++format;
      const bool alternate = *format == L'#';
      if (alternate) ++format;
      // The alternative representations that POSIX knows are the plain ones here.
      if ((*format == L'E' || *format == L'O') && format[1] != 0) ++format;
      if (!Write(*format, alternate)) return false;
    }
    return true;
  }

 private:
  void Put(wchar_t unit) {
    if (length_ + 1 < capacity_) {
      buffer_[length_++] = unit;
    } else {
      full_ = true;
    }
  }

  bool PutText(const wchar_t* text) {
    for (; *text != 0; ++text) Put(*text);
    return true;
  }

  // `number` in `digits` places; with `alternate` without zeros in front.
  bool PutNumber(int number, int digits, bool alternate, wchar_t fill = L'0') {
    wchar_t text[16];
    if (number < 0) {
      Put(L'-');
      number = -number;
    }
    _itow(number, text, 10);
    if (!alternate) {
      for (int missing = digits - static_cast<int>(wcslen(text)); missing > 0; --missing) Put(fill);
    }
    return PutText(text);
  }

  static bool IsIn(int value, int low, int high) { return value >= low && value <= high; }
  [[nodiscard]] bool HasDay() const { return IsIn(time_.tm_wday, 0, 6); }
  [[nodiscard]] bool HasMonth() const { return IsIn(time_.tm_mon, 0, 11); }
  [[nodiscard]] bool HasDayOfMonth() const { return IsIn(time_.tm_mday, 1, 31); }
  [[nodiscard]] bool HasDayOfYear() const { return IsIn(time_.tm_yday, 0, 365); }
  [[nodiscard]] bool HasHour() const { return IsIn(time_.tm_hour, 0, 23); }
  // Years 0 to 9999.
  [[nodiscard]] bool HasYear() const { return IsIn(time_.tm_year, -1900, 8099); }
  [[nodiscard]] int Year() const { return time_.tm_year + 1900; }

  // The weeks that began before or on this day of the year, weeks beginning on `firstDay`.
  [[nodiscard]] int Week(int firstDay) const {
    return (time_.tm_yday + 7 - (time_.tm_wday + 7 - firstDay) % 7) / 7;
  }

  // The week of ISO 8601 and the year that it belongs to.
  int IsoWeek(int& year) const {
    const int weekday = (time_.tm_wday + 6) % 7;
    year = Year();
    int week = (time_.tm_yday - weekday + 10) / 7;
    if (week < 1) {
      --year;
      const int day = time_.tm_yday + (IsLeap(year) ? 366 : 365);
      week = (day - weekday + 10) / 7;
    } else if (week == 53 && time_.tm_yday - weekday + 3 >= (IsLeap(year) ? 366 : 365)) {
      ++year;
      week = 1;
    }
    return week;
  }

  bool WriteZone(bool name) {
    if (time_.tm_isdst < 0) return true;
    const TimeZone zone = LocalZone(time_.tm_isdst > 0);
    if (name) return PutText(zone.name);
    Put(zone.minutes < 0 ? L'-' : L'+');
    const int size = zone.minutes < 0 ? -zone.minutes : zone.minutes;
    return PutNumber(size / 60, 2, false) && PutNumber(size % 60, 2, false);
  }

  bool Write(wchar_t letter, bool alternate) {
    int year = 0;
    switch (letter) {
      case L'a':
        return HasDay() && PutText(names_.dayShort[time_.tm_wday]);
      case L'A':
        return HasDay() && PutText(names_.dayLong[time_.tm_wday]);
      case L'b':
      case L'h':
        return HasMonth() && PutText(names_.monthShort[time_.tm_mon]);
      case L'B':
        return HasMonth() && PutText(names_.monthLong[time_.tm_mon]);
      case L'c':
        return Run(alternate ? names_.longDateTime : names_.dateTime);
      case L'C':
        return HasYear() && PutNumber(Year() / 100, 2, alternate);
      case L'd':
        return HasDayOfMonth() && PutNumber(time_.tm_mday, 2, alternate);
      case L'D':
        return Run(alternate ? L"%#m/%#d/%#y" : L"%m/%d/%y");
      case L'e':
        return HasDayOfMonth() && PutNumber(time_.tm_mday, 2, alternate, L' ');
      case L'F':
        return Run(alternate ? L"%#Y-%#m-%#d" : L"%Y-%m-%d");
      case L'g':
      case L'G':
        if (!HasYear() || !HasDay() || !HasDayOfYear()) return false;
        IsoWeek(year);
        return letter == L'g' ? PutNumber((year + 100) % 100, 2, alternate) : PutNumber(year, 4, alternate);
      case L'H':
        return HasHour() && PutNumber(time_.tm_hour, 2, alternate);
      case L'I':
        return HasHour() && PutNumber((time_.tm_hour + 11) % 12 + 1, 2, alternate);
      case L'j':
        return HasDayOfYear() && PutNumber(time_.tm_yday + 1, 3, alternate);
      case L'm':
        return HasMonth() && PutNumber(time_.tm_mon + 1, 2, alternate);
      case L'M':
        return IsIn(time_.tm_min, 0, 59) && PutNumber(time_.tm_min, 2, alternate);
      case L'n':
        return PutText(L"\n");
      case L'p':
        return HasHour() && PutText(names_.half[time_.tm_hour / 12]);
      case L'r':
        return Run(L"%I:%M:%S %p");
      case L'R':
        return Run(alternate ? L"%#H:%#M" : L"%H:%M");
      case L'S':
        return IsIn(time_.tm_sec, 0, 60) && PutNumber(time_.tm_sec, 2, alternate);
      case L't':
        return PutText(L"\t");
      case L'T':
        return Run(alternate ? L"%#H:%#M:%#S" : L"%H:%M:%S");
      case L'u':
        return HasDay() && PutNumber(time_.tm_wday == 0 ? 7 : time_.tm_wday, 1, false);
      case L'U':
        return HasDay() && HasDayOfYear() && PutNumber(Week(0), 2, alternate);
      case L'V':
        return HasYear() && HasDay() && HasDayOfYear() && PutNumber(IsoWeek(year), 2, alternate);
      case L'w':
        return HasDay() && PutNumber(time_.tm_wday, 1, false);
      case L'W':
        return HasDay() && HasDayOfYear() && PutNumber(Week(1), 2, alternate);
      case L'x':
        return Run(alternate ? names_.longDate : names_.date);
      case L'X':
        return Run(names_.time);
      case L'y':
        return HasYear() && PutNumber(Year() % 100, 2, alternate);
      case L'Y':
        return HasYear() && PutNumber(Year(), 4, alternate);
      case L'z':
        return WriteZone(false);
      case L'Z':
        return WriteZone(true);
      case L'%':
        return PutText(L"%");
      default:
        return false;
    }
  }

  wchar_t* buffer_;
  size_t capacity_;
  const Names& names_;
  const tm& time_;
  size_t length_ = 0;
  bool full_ = false;
};

}  // namespace

size_t qorgen_wcsftime(wchar_t* buffer, size_t capacity, const wchar_t* format, const struct tm* time) {
  if (buffer == nullptr || capacity == 0) {
    errno = EINVAL;
    return 0;
  }
  buffer[0] = 0;
  if (format == nullptr || time == nullptr) {
    errno = EINVAL;
    return 0;
  }
  Writer writer(buffer, capacity, IsTimeJapanese() ? kJapanese : kEnglish, *time);
  if (!writer.Run(format)) {
    errno = EINVAL;
    buffer[0] = 0;
    return 0;
  }
  if (writer.full()) {
    errno = ERANGE;
    buffer[0] = 0;
    return 0;
  }
  buffer[writer.length()] = 0;
  return writer.length();
}
