// Flags, numbers and dates as text and back, and the system's error texts.

#include "qorgen/afx/date_time.h"
#include "qorgen/platform/automation.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/strings.h"
#include "qorgen/text/string_util.h"

namespace {

CString DateText(const COleDateTime& date, const wchar_t* format) {
  return static_cast<DATE>(date) == 0.0 ? CString() : date.Format(format);
}

}  // namespace

CString CQorStringUtil::FromBool(int value) {
  return value != 0 ? L"true" : L"false";
}

CString CQorStringUtil::FromInt(int value) {
  CString text;
  text.Format(L"%d", value);
  return text;
}

CString CQorStringUtil::FromUint(unsigned int value) {
  CString text;
  text.Format(L"%u", value);
  return text;
}

CString CQorStringUtil::FromDate(const COleDateTime& date) {
  return DateText(date, L"%Y/%m/%d");
}

CString CQorStringUtil::FromDateTime(const COleDateTime& date) {
  return DateText(date, L"%Y/%m/%d %H:%M:%S");
}

int CQorStringUtil::ToInt(const wchar_t* text) {
  if (text == nullptr || *text == 0) return 0;
  if (_wcsicmp(text, L"true") == 0) return 1;
  if (_wcsicmp(text, L"false") == 0) return 0;
  return StrToIntW(text);
}

unsigned int CQorStringUtil::ToUint(const wchar_t* text) {
  return static_cast<unsigned int>(ToInt(text));
}

unsigned long CQorStringUtil::ToDword(const wchar_t* text) {
  return ToUint(text);
}

COleDateTime CQorStringUtil::ToDateTime(const wchar_t* text) {
  COleDateTime date;
  if (text == nullptr || *text == 0) return date;
  DATE value = 0;
  // Not every system header declares the text as constant, though nobody writes to it.
  const HRESULT result = VarDateFromStr(const_cast<wchar_t*>(text), LOCALE_USER_DEFAULT, 0, &value);
  if (SUCCEEDED(result)) {
    date.m_dt = value;
    return date;
  }
  date.m_dt = result == DISP_E_TYPEMISMATCH ? 0.0 : -1.0;
  date.SetStatus(COleDateTime::invalid);
  return date;
}

CString CQorStringUtil::GetLastErrorText(unsigned long error) {
  const auto number = static_cast<DWORD>(error);
  const DWORD code = number != 0 ? number : GetLastError();
  wchar_t* allocated = nullptr;
  // With "allocate buffer" the parameter that takes a buffer takes the place for its address.
  FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM,
                 nullptr, code, LOCALE_USER_DEFAULT, reinterpret_cast<wchar_t*>(&allocated), 0, nullptr);
  CString text(allocated);
  LocalFree(allocated);
  return text;
}
