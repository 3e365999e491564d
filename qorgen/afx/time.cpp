#include "qorgen/afx/time.h"

#include "qorgen/afx/exception.h"

namespace {

constexpr long long kTicksPerSecond = 10000000;
constexpr long long kSecondsFrom1601To1970 = 11644473600;
constexpr long long kLastSecond = INT64_MAX / kTicksPerSecond - kSecondsFrom1601To1970 - 1;

// -1 for parts out of range; the C library itself would carry them over into the next larger part.
__time64_t SecondsOf(int year, int month, int day, int hour, int minute, int second, int dst) {
  if (year < 1970 || year > 3000 || month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 23 ||
      minute < 0 || minute > 59 || second < 0 || second > 59) {
    return -1;
  }
  std::tm parts = {};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  parts.tm_sec = second;
  parts.tm_isdst = dst;
  return std::mktime(&parts);
}

}  // namespace

CTime CTime::GetCurrentTime() {
  return CTime(_time64(nullptr));
}

CTime::CTime(int year, int month, int day, int hour, int minute, int second, int dst)
    : m_time(SecondsOf(year, month, day, hour, minute, second, dst)) {
  if (m_time == -1) AfxThrowInvalidArgException();
}

CTime::CTime(const SYSTEMTIME& local, int dst)
    : m_time(
          SecondsOf(local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond, dst)) {
  if (m_time == -1) m_time = 0;
}

CTime::CTime(const FILETIME& time) {
  const auto ticks = static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  if (ticks != 0) m_time = static_cast<__time64_t>(ticks / kTicksPerSecond) - kSecondsFrom1601To1970;
}

std::tm* CTime::GetLocalTm(std::tm* local) const {
  std::tm parts;
  if (local == nullptr || _localtime64_s(&parts, &m_time) != 0) return nullptr;
  *local = parts;
  return local;
}

int CTime::GetAsSystemTime(SYSTEMTIME& local) const {
  local = {};
  std::tm parts;
  if (GetLocalTm(&parts) == nullptr) return 0;
  local.wYear = static_cast<WORD>(parts.tm_year + 1900);
  local.wMonth = static_cast<WORD>(parts.tm_mon + 1);
  local.wDayOfWeek = static_cast<WORD>(parts.tm_wday);
  local.wDay = static_cast<WORD>(parts.tm_mday);
  local.wHour = static_cast<WORD>(parts.tm_hour);
  local.wMinute = static_cast<WORD>(parts.tm_min);
  local.wSecond = static_cast<WORD>(parts.tm_sec);
  return 1;
}

FILETIME CTime::GetAsFileTime() const {
  if (m_time < -kSecondsFrom1601To1970 || m_time > kLastSecond) return {};
  const auto ticks = static_cast<unsigned long long>((m_time + kSecondsFrom1601To1970) * kTicksPerSecond);
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

int CTime::GetYear() const {
  std::tm parts;
  return GetLocalTm(&parts) != nullptr ? parts.tm_year + 1900 : 0;
}

int CTime::GetMonth() const {
  std::tm parts;
  return GetLocalTm(&parts) != nullptr ? parts.tm_mon + 1 : 0;
}

int CTime::GetDay() const {
  std::tm parts;
  return GetLocalTm(&parts) != nullptr ? parts.tm_mday : 0;
}

int CTime::GetHour() const {
  std::tm parts;
  return GetLocalTm(&parts) != nullptr ? parts.tm_hour : 0;
}

int CTime::GetMinute() const {
  std::tm parts;
  return GetLocalTm(&parts) != nullptr ? parts.tm_min : 0;
}

int CTime::GetSecond() const {
  std::tm parts;
  return GetLocalTm(&parts) != nullptr ? parts.tm_sec : 0;
}

int CTime::GetDayOfWeek() const {
  std::tm parts;
  return GetLocalTm(&parts) != nullptr ? parts.tm_wday + 1 : 0;
}
