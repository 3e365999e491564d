// CString and text in the ANSI code page.

#include <climits>
#include <cstring>

#include "qorgen/afx/string.h"
#include "qorgen/platform/codepage.h"

CString::CString(const char* text) : CString() {
  if (text == nullptr) return;
  const std::size_t length = std::strlen(text);
  if (length > INT_MAX) ThrowMemory();
  *this = CString(text, static_cast<int>(length));
}

CString::CString(const char* text, int length) : CString() {
  if (length < 0) ThrowInvalidArgument();
  if (text == nullptr || length == 0) return;
  // No code page of the library gives more units than bytes.
  wchar_t* units = GetBuffer(length);
  SetLength(MultiByteToWideChar(CP_ACP, 0, text, length, units, length));
}

CString::CString(char character, int repeat) : CString() {
  const CString one(&character, 1);
  if (!one.IsEmpty()) *this = CString(one.GetAt(0), repeat);
}

CString& CString::operator=(const char* text) {
  return *this = CString(text);
}
CString& CString::operator=(char character) {
  return *this = CString(character);
}
CString& CString::operator+=(const char* text) {
  return *this += CString(text);
}
CString& CString::operator+=(char character) {
  return *this += CString(character);
}

CString operator+(const char* left, const CString& right) {
  return CString(left) + right;
}
CString operator+(char left, const CString& right) {
  return CString(left) + right;
}
