#include "qorgen/afx/date_time.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kHalfSecond = 0.5 / 86400;
constexpr double kFirstDate = -657434;  // 1 January 100
constexpr double kLastDate = 2958465;   // 31 December 9999
constexpr double kLongestSpan = kLastDate - kFirstDate + 1;

// A DATE as a number that runs evenly through day 0, and back: in a negative DATE the fraction counts
// forward.
double EvenFromDate(double date) {
  if (date >= 0) return date;
  const double day = std::ceil(date);
  return day - (date - day);
}

double DateFromEven(double even) {
  if (even >= 0) return even;
  const double day = std::floor(even);
  return day + (day - even);
}

double WholeUnits(double days, double units_in_a_day) {
  const double moved = days + (days < 0 ? -kHalfSecond : kHalfSecond);
  return std::trunc(moved * units_in_a_day) + 0.0;  // no negative zero
}

// The part of a length that the larger unit leaves; 0 for a length that no span holds.
LONG PartOf(double total, int larger) {
  if (!(std::fabs(total) < 1e15)) return 0;
  return static_cast<LONG>(static_cast<LONGLONG>(total) % larger);
}

int Part(const COleDateTime& date, WORD SYSTEMTIME::*part) {
  SYSTEMTIME time{};
  return date.GetAsSystemTime(time) ? int{time.*part} : int{COleDateTime::error};
}

WORD ToWord(int value) {
  return value < 0 || value > 0xFFFF ? WORD{0xFFFF} : static_cast<WORD>(value);
}

}  // namespace

COleDateTimeSpan::COleDateTimeSpan(double days) noexcept : m_span(days) {
  CheckRange();
}

COleDateTimeSpan::COleDateTimeSpan(LONG days, int hours, int minutes, int seconds) noexcept {
  SetDateTimeSpan(days, hours, minutes, seconds);
}

void COleDateTimeSpan::CheckRange() noexcept {
  m_status = m_span >= -kLongestSpan && m_span <= kLongestSpan ? valid : invalid;
}

void COleDateTimeSpan::SetDateTimeSpan(LONG days, int hours, int minutes, int seconds) noexcept {
  m_span = days + hours / 24.0 + minutes / 1440.0 + seconds / 86400.0;
  CheckRange();
}

double COleDateTimeSpan::GetTotalDays() const noexcept {
  return WholeUnits(m_span, 1);
}
double COleDateTimeSpan::GetTotalHours() const noexcept {
  return WholeUnits(m_span, 24);
}
double COleDateTimeSpan::GetTotalMinutes() const noexcept {
  return WholeUnits(m_span, 1440);
}
double COleDateTimeSpan::GetTotalSeconds() const noexcept {
  return WholeUnits(m_span, 86400);
}

LONG COleDateTimeSpan::GetDays() const noexcept {
  return PartOf(GetTotalDays(), std::numeric_limits<LONG>::max());
}
LONG COleDateTimeSpan::GetHours() const noexcept {
  return PartOf(GetTotalHours(), 24);
}
LONG COleDateTimeSpan::GetMinutes() const noexcept {
  return PartOf(GetTotalMinutes(), 60);
}
LONG COleDateTimeSpan::GetSeconds() const noexcept {
  return PartOf(GetTotalSeconds(), 60);
}

CString COleDateTimeSpan::Format(const wchar_t* format) const {
  if (m_status == null) return CString();
  if (m_status != valid) return CString(L"Invalid DateTimeSpan");
  CString text;
  for (const wchar_t* at = format; at != nullptr && *at != 0; ++at) {
    if (*at != L'%' || at[1] == 0) {
      text.AppendChar(*at);
      continue;
    }
    switch (*++at) {
      case L'D':
        text.AppendFormat(L"%d", static_cast<int>(GetDays()));
        break;
      case L'H':
        text.AppendFormat(L"%02d", static_cast<int>(GetHours()));
        break;
      case L'M':
        text.AppendFormat(L"%02d", static_cast<int>(GetMinutes()));
        break;
      case L'S':
        text.AppendFormat(L"%02d", static_cast<int>(GetSeconds()));
        break;
      default:
        text.AppendChar(*at);
    }
  }
  return text;
}

namespace {

// The status of a result: null beats invalid beats valid.
template <typename Status, typename Left, typename Right>
Status Joined(const Left& left, const Right& right) {
  if (static_cast<int>(left.m_status) == Status::null || static_cast<int>(right.m_status) == Status::null) {
    return Status::null;
  }
  const bool both =
      static_cast<int>(left.m_status) == Status::valid && static_cast<int>(right.m_status) == Status::valid;
  return both ? Status::valid : Status::invalid;
}

}  // namespace

COleDateTimeSpan COleDateTimeSpan::operator+(const COleDateTimeSpan& other) const noexcept {
  COleDateTimeSpan result;
  result.m_status = Joined<DateTimeSpanStatus>(*this, other);
  if (result.m_status != valid) return result;
  return COleDateTimeSpan(m_span + other.m_span);
}

COleDateTimeSpan COleDateTimeSpan::operator-(const COleDateTimeSpan& other) const noexcept {
  return *this + -other;
}

COleDateTimeSpan COleDateTimeSpan::operator-() const noexcept {
  COleDateTimeSpan result = *this;
  result.m_span = 0.0 - m_span;
  return result;
}

bool COleDateTimeSpan::operator==(const COleDateTimeSpan& other) const noexcept {
  return m_status == other.m_status && m_span == other.m_span;
}

bool COleDateTimeSpan::operator<(const COleDateTimeSpan& other) const noexcept {
  return m_status == valid && other.m_status == valid && m_span < other.m_span;
}

COleDateTime COleDateTime::GetCurrentTime() {
  return COleDateTime(_time64(nullptr));
}

void COleDateTime::CheckRange() noexcept {
  m_status = m_dt > kFirstDate - 1 && m_dt < kLastDate + 1 ? valid : invalid;
}

COleDateTime& COleDateTime::operator=(DATE date) noexcept {
  m_dt = date;
  CheckRange();
  return *this;
}

COleDateTime& COleDateTime::operator=(__time64_t time) noexcept {
  std::tm parts{};
  if (_localtime64_s(&parts, &time) != 0) {
    m_dt = 0;
    m_status = invalid;
  } else {
    // A leap second of the host has no place in a DATE.
    SetDateTime(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                parts.tm_sec < 60 ? parts.tm_sec : 59);
  }
  return *this;
}

COleDateTime& COleDateTime::operator=(const SYSTEMTIME& time) noexcept {
  SYSTEMTIME given = time;
  SYSTEMTIME back{};
  double date = 0;
  // The conversion repairs days that don't exist and moves years of two digits; the way back shows it.
  const bool same = SystemTimeToVariantTime(&given, &date) != 0 &&
                    VariantTimeToSystemTime(date, &back) != 0 && given.wYear == back.wYear &&
                    given.wMonth == back.wMonth && given.wDay == back.wDay && given.wHour == back.wHour &&
                    given.wMinute == back.wMinute && given.wSecond == back.wSecond;
  m_dt = same ? date : 0;
  m_status = same ? valid : invalid;
  return *this;
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept {
  SYSTEMTIME time{};
  time.wYear = ToWord(year);
  time.wMonth = ToWord(month);
  time.wDay = ToWord(day);
  time.wHour = ToWord(hour);
  time.wMinute = ToWord(minute);
  time.wSecond = ToWord(second);
  *this = time;
  return m_status;
}

bool COleDateTime::GetAsSystemTime(SYSTEMTIME& time) const noexcept {
  return m_status == valid && VariantTimeToSystemTime(m_dt, &time) != 0;
}

int COleDateTime::GetYear() const noexcept {
  return Part(*this, &SYSTEMTIME::wYear);
}
int COleDateTime::GetMonth() const noexcept {
  return Part(*this, &SYSTEMTIME::wMonth);
}
int COleDateTime::GetDay() const noexcept {
  return Part(*this, &SYSTEMTIME::wDay);
}
int COleDateTime::GetHour() const noexcept {
  return Part(*this, &SYSTEMTIME::wHour);
}
int COleDateTime::GetMinute() const noexcept {
  return Part(*this, &SYSTEMTIME::wMinute);
}
int COleDateTime::GetSecond() const noexcept {
  return Part(*this, &SYSTEMTIME::wSecond);
}

int COleDateTime::GetDayOfWeek() const noexcept {
  const int day = Part(*this, &SYSTEMTIME::wDayOfWeek);
  return day == error ? day : day + 1;
}

int COleDateTime::GetDayOfYear() const noexcept {
  SYSTEMTIME time{};
  if (!GetAsSystemTime(time)) return error;
  const SYSTEMTIME day = time;
  time = SYSTEMTIME{};
  time.wYear = day.wYear;
  time.wMonth = time.wDay = 1;
  SYSTEMTIME midnight = time;
  midnight.wMonth = day.wMonth;
  midnight.wDay = day.wDay;
  double first = 0;
  double number = 0;
  SystemTimeToVariantTime(&time, &first);
  SystemTimeToVariantTime(&midnight, &number);
  return static_cast<int>(number - first) + 1;
}

COleDateTime COleDateTime::operator+(const COleDateTimeSpan& span) const noexcept {
  COleDateTime result;
  result.m_status = Joined<DateTimeStatus>(*this, span);
  if (result.m_status == valid) result = DateFromEven(EvenFromDate(m_dt) + span.m_span);
  return result;
}

COleDateTime COleDateTime::operator-(const COleDateTimeSpan& span) const noexcept {
  return *this + -span;
}

COleDateTimeSpan COleDateTime::operator-(const COleDateTime& other) const noexcept {
  COleDateTimeSpan result;
  result.m_status = Joined<COleDateTimeSpan::DateTimeSpanStatus>(*this, other);
  if (result.m_status == COleDateTimeSpan::valid)
    result = COleDateTimeSpan(EvenFromDate(m_dt) - EvenFromDate(other.m_dt));
  return result;
}

bool COleDateTime::operator<(const COleDateTime& other) const noexcept {
  return m_status == valid && other.m_status == valid && EvenFromDate(m_dt) < EvenFromDate(other.m_dt);
}
