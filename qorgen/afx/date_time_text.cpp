#include "qorgen/afx/date_time.h"
#include "qorgen/platform/crt.h"

COleDateTime& COleDateTime::operator=(const VARIANT& value) noexcept {
  if (value.vt == VT_NULL) {
    m_dt = 0;
    m_status = null;
    return *this;
  }
  VARIANT date;
  VariantInit(&date);
  if (FAILED(VariantChangeType(&date, const_cast<VARIANT*>(&value), 0, VT_DATE))) {
    m_dt = 0;
    m_status = invalid;
    return *this;
  }
  return *this = date.date;
}

bool COleDateTime::ParseDateTime(const wchar_t* text, ULONG flags, LCID locale) noexcept {
  const HRESULT result =
      VarDateFromStr(const_cast<wchar_t*>(text != nullptr ? text : L""), locale, flags, &m_dt);
  if (FAILED(result)) {
    m_dt = result == DISP_E_TYPEMISMATCH ? 0 : -1;
    m_status = invalid;
    return false;
  }
  m_status = valid;
  return true;
}

CString COleDateTime::Format(const wchar_t* format) const {
  if (m_status == null) return CString();
  SYSTEMTIME time{};
  if (!GetAsSystemTime(time)) return CString(L"Invalid DateTime");
  if (format == nullptr || *format == 0) return CString();

  std::tm parts{};
  parts.tm_year = time.wYear - 1900;
  parts.tm_mon = time.wMonth - 1;
  parts.tm_mday = time.wDay;
  parts.tm_hour = time.wHour;
  parts.tm_min = time.wMinute;
  parts.tm_sec = time.wSecond;
  parts.tm_wday = time.wDayOfWeek;
  parts.tm_yday = GetDayOfYear() - 1;

  // A result of no text and a buffer too short look alike; a character more in the format tells them apart.
  CString pattern(format);
  pattern.AppendChar(L' ');
  // No conversion of two characters gives more than this per character.
  const int enough = pattern.GetLength() * 64 + 64;
  CString text;
  for (int capacity = 128;; capacity *= 4) {
    wchar_t* const buffer = text.GetBuffer(capacity);
    const std::size_t length = wcsftime(buffer, static_cast<std::size_t>(capacity), pattern, &parts);
    text.ReleaseBufferSetLength(length > 0 ? static_cast<int>(length) - 1 : 0);
    if (length > 0 || capacity > enough) return text;
  }
}
