// The operations of the date records that aren't a line of their header. Stateless.

#include "qorgen/calendar/date_record.h"

#include <cmath>

#include "qorgen/calendar/internal/today.h"
#include "qorgen/platform/common/civil_date.h"
#include "qorgen/platform/types.h"

namespace {

using namespace qorgen::calendar;
using namespace qorgen::platform;

constexpr QORDATE kUnreadable(-1, -1, -1);

QORDATE FromDayNumber(int number) {
  const CivilDate civil = CivilFromDayNumber(number);
  return QORDATE(static_cast<char>(civil.day), static_cast<char>(civil.month),
                 static_cast<short>(civil.year));
}

// A DATE without a time needs no accessor, and its fields come out the same.
bool IsWholeDay(double value) {
  const int number = WholePart(value);
  return IsDayNumber(number) && value == number;
}

COleDateTime NullDate() {
  COleDateTime result(0.0);
  result.SetStatus(COleDateTime::null);
  return result;
}

COleDateTime InvalidDate() {
  COleDateTime result(0.0);
  result.SetStatus(COleDateTime::invalid);
  return result;
}

QORDATE DatePart(const QORDATETIME& value) {
  return QORDATE(value.day, value.month, value.year);
}

// Days between two values of one date, with half a second put on top so that the cut which follows rounds.
double RoundedSpan(const QORDATETIME& from, const QORDATETIME& to) {
  constexpr double kHalfSecond = 5.787037037037037e-06;
  const double span = (to.ToOleDateTime() - from.ToOleDateTime()).m_span;
  return span >= 0.0 ? span + kHalfSecond : span - kHalfSecond;
}

}  // namespace

void QORDATE::Set(const double& dtDate) {
  if (IsWholeDay(dtDate)) {
    *this = FromDayNumber(WholePart(dtDate));
  } else if (!std::isfinite(dtDate)) {
    *this = kUnreadable;
  } else {
    Set(COleDateTime(dtDate));
  }
}

void QORDATE::Set(const COleDateTime& date) {
  if (date.GetStatus() == COleDateTime::null) {
    Empty();
    return;
  }
  day = static_cast<char>(date.GetDay());
  month = static_cast<char>(date.GetMonth());
  year = static_cast<short>(date.GetYear());
}

double QORDATE::ToDATE() const {
  return HasDayNumber(year, month, day) ? DayNumber(year, month, day) : 0.0;
}

COleDateTime QORDATE::ToOleDateTime() const {
  if (IsEmpty()) return NullDate();
  // The platform rolls an impossible day into the next month and reads two-digit years its own way, and its
  // round trip then refuses both: exactly the dates that have a day number pass.
  return HasDayNumber(year, month, day) ? COleDateTime(ToDATE()) : InvalidDate();
}

void QORDATE::Today() {
  *this = CurrentDate();
}

void QORDATE::IncDay() {
  const int next = day + 1;
  if (next <= GetDays(year, month)) {
    day = static_cast<char>(next);
    return;
  }
  day = 1;
  if (month < 12) {
    ++month;
  } else {
    month = 1;
    year = static_cast<short>(year + 1);
  }
}

void QORDATE::DecDay() {
  if (day > 1) {
    --day;
    return;
  }
  if (month > 1) {
    --month;
  } else {
    month = 12;
    year = static_cast<short>(year - 1);
  }
  day = GetDays(year, month);
}

void QORDATE::IncMonth() {
  if (month < 12) {
    ++month;
    return;
  }
  month = 1;
  year = static_cast<short>(year + 1);
  if (day > GetDays(year, month)) day = GetDays(year, month);
}

void QORDATE::DecMonth() {
  if (month > 1) {
    --month;
    return;
  }
  month = 12;
  year = static_cast<short>(year - 1);
  if (day > GetDays(year, month)) day = GetDays(year, month);
}

int QORDATE::GetWeek() const {
  return IsEmpty() ? -1 : WeekDay(WholePart(ToDATE()));
}

void QORDATETIME::Set(const double& dtDate) {
  if (std::isfinite(dtDate)) {
    Set(COleDateTime(dtDate));
    return;
  }
  *this = QORDATETIME(-1, -1, -1);
  day = month = -1;
  year = -1;
}

void QORDATETIME::Set(const COleDateTime& date) {
  if (date.GetStatus() == COleDateTime::null) {
    Empty();
    return;
  }
  day = static_cast<char>(date.GetDay());
  month = static_cast<char>(date.GetMonth());
  year = static_cast<short>(date.GetYear());
  hour = static_cast<char>(date.GetHour());
  minute = static_cast<char>(date.GetMinute());
  second = static_cast<short>(date.GetSecond());
}

COleDateTime QORDATETIME::ToOleDateTime() const {
  if (IsEmpty()) return NullDate();
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(year);
  time.wMonth = static_cast<WORD>(month);
  time.wDay = static_cast<WORD>(day);
  time.wHour = static_cast<WORD>(hour);
  time.wMinute = static_cast<WORD>(minute);
  time.wSecond = static_cast<WORD>(second);
  const COleDateTime result(time);  // makes the platform's round trip
  return result.GetStatus() == COleDateTime::valid ? result : InvalidDate();
}

int QORDATETIME::Compare(const QORDATETIME& other) const {
  const int by_date = DatePart(*this).Compare(DatePart(other));
  if (by_date != 0) return by_date;
  const auto seconds = static_cast<long long>(RoundedSpan(other, *this) * 86400.0);
  return (seconds > 0) - (seconds < 0);
}

double QORDATETIME::MinutesSpan(const QORDATETIME& other) const {
  return static_cast<double>(static_cast<long long>(RoundedSpan(other, *this) * 1440.0));
}

// The difference is built in 32 unsigned bits on every host: it is a 32-bit quantity, and passes them for
// years below 0.
long CompareDate(QORDATE dateA, QORDATE dateB) {
  return static_cast<int>(static_cast<unsigned>(dateA.ToLongDate()) -
                          static_cast<unsigned>(dateB.ToLongDate()));
}

long DateToLong(QORDATE date) {
  return date.ToLongDate();
}
