// Comparison, search and parts of a CString.

#include <algorithm>

#include "qorgen/afx/internal/text_units.h"
#include "qorgen/afx/string.h"

using qorgen::afx::IsOneOf;

namespace {

std::strong_ordering CompareUnits(const wchar_t* left, int left_length, const wchar_t* right,
                                  int right_length) noexcept {
  const auto [l, r] = std::mismatch(left, left + left_length, right, right + right_length);
  const bool left_ended = l == left + left_length;
  const bool right_ended = r == right + right_length;
  if (left_ended || right_ended) return right_ended <=> left_ended;
  return static_cast<char16_t>(*l) <=> static_cast<char16_t>(*r);
}

}  // namespace

int CString::Compare(const wchar_t* text) const noexcept {
  const wchar_t* mine = m_pszData;
  const wchar_t* const end = mine + GetLength();
  if (text == nullptr) return mine != end;
  for (; mine != end; ++mine, ++text) {
    if (*text == 0) return 1;  // A terminator inside the own text still counts as text.
    if (*mine != *text) return *mine < *text ? -1 : 1;
  }
  return *text == 0 ? 0 : -1;
}

bool operator==(const CString& left, const CString& right) noexcept {
  if (left.GetString() == right.GetString()) return true;
  return left.GetLength() == right.GetLength() &&
         std::equal(left.GetString(), left.GetString() + left.GetLength(), right.GetString());
}

std::strong_ordering operator<=>(const CString& left, const CString& right) noexcept {
  return CompareUnits(left.GetString(), left.GetLength(), right.GetString(), right.GetLength());
}

CString CString::Mid(int first, int count) const {
  const int length = GetLength();
  first = std::clamp(first, 0, length);
  count = std::clamp(count, 0, length - first);
  if (count == length) return *this;
  return CString(m_pszData + first, count);
}

CString CString::Left(int count) const {
  return Mid(0, count);
}

CString CString::Right(int count) const {
  count = std::clamp(count, 0, GetLength());
  return Mid(GetLength() - count, count);
}

CString CString::SpanIncluding(const wchar_t* characters) const {
  int count = 0;
  while (count < GetLength() && IsOneOf(m_pszData[count], characters)) ++count;
  return Mid(0, count);
}

CString CString::SpanExcluding(const wchar_t* characters) const {
  int count = 0;
  while (count < GetLength() && !IsOneOf(m_pszData[count], characters)) ++count;
  return Mid(0, count);
}

CString CString::Tokenize(const wchar_t* separators, int& start) const {
  if (start < 0) ThrowInvalidArgument();
  const int length = GetLength();
  int first = start;
  while (first < length && IsOneOf(m_pszData[first], separators)) ++first;
  if (first >= length) {
    start = -1;
    return CString();
  }
  int end = first;
  while (end < length && !IsOneOf(m_pszData[end], separators)) ++end;
  start = end + 1;
  return Mid(first, end - first);
}

int CString::Find(wchar_t character, int start) const noexcept {
  if (start < 0 || start >= GetLength()) return -1;
  const wchar_t* end = m_pszData + GetLength();
  const wchar_t* found = std::find<const wchar_t*>(m_pszData + start, end, character);
  return found == end ? -1 : static_cast<int>(found - m_pszData);
}

int CString::Find(const wchar_t* text, int start) const noexcept {
  if (text == nullptr || start < 0 || start > GetLength()) return -1;
  const int wanted = StringLength(text);
  const wchar_t* end = m_pszData + GetLength();
  const wchar_t* found = std::search<const wchar_t*>(m_pszData + start, end, text, text + wanted);
  return found == end && wanted != 0 ? -1 : static_cast<int>(found - m_pszData);
}

int CString::FindOneOf(const wchar_t* characters) const noexcept {
  for (int index = 0; index < GetLength(); ++index) {
    if (IsOneOf(m_pszData[index], characters)) return index;
  }
  return -1;
}

int CString::ReverseFind(wchar_t character) const noexcept {
  int index = GetLength() - 1;
  while (index >= 0 && m_pszData[index] != character) --index;
  return index;
}
