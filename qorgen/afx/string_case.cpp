// Case of a CString, without a locale.

#include "qorgen/afx/string.h"
#include "qorgen/platform/common/letter_case.h"

using qorgen::platform::ToLowerUnit;
using qorgen::platform::ToUpperUnit;

CString& CString::MakeUpper() {
  if (IsEmpty()) return *this;
  Reserve(GetLength(), false);
  for (int index = 0; index < GetLength(); ++index) m_pszData[index] = ToUpperUnit(m_pszData[index]);
  return *this;
}

CString& CString::MakeLower() {
  if (IsEmpty()) return *this;
  Reserve(GetLength(), false);
  for (int index = 0; index < GetLength(); ++index) m_pszData[index] = ToLowerUnit(m_pszData[index]);
  return *this;
}

int CString::CompareNoCase(const wchar_t* text) const noexcept {
  if (text == nullptr) return IsEmpty() ? 0 : 1;
  for (int index = 0; index < GetLength(); ++index, ++text) {
    if (*text == 0) return 1;
    const wchar_t mine = ToLowerUnit(m_pszData[index]);
    const wchar_t other = ToLowerUnit(*text);
    if (mine != other) return mine < other ? -1 : 1;
  }
  return *text == 0 ? 0 : -1;
}
