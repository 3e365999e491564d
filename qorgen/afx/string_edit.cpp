// Changes of a CString in place: insertion, removal, replacement, trimming, reversal.

#include <algorithm>
#include <functional>

#include "qorgen/afx/internal/text_units.h"
#include "qorgen/afx/string.h"
#include "qorgen/platform/common/white_space.h"

using qorgen::afx::IsOneOf;
using qorgen::platform::IsWhiteSpace;

namespace {

template <typename Test>
int LeadingUnits(const CString& text, Test test) {
  int count = 0;
  while (count < text.GetLength() && test(text.GetString()[count])) ++count;
  return count;
}

template <typename Test>
int UnitsWithoutTrailing(const CString& text, Test test) {
  int count = text.GetLength();
  while (count > 0 && test(text.GetString()[count - 1])) --count;
  return count;
}

}  // namespace

// Removes `count` units at `first`; both lie inside the text.
void CString::Cut(int first, int count) {
  if (count == 0) return;
  const int length = GetLength();
  if (count == length) {
    SetString(nullptr, 0);
    return;
  }
  Reserve(length, false);
  std::copy(m_pszData + first + count, m_pszData + length, m_pszData + first);
  SetLength(length - count);
}

int CString::Insert(int index, const wchar_t* text) {
  const int added = StringLength(text);
  const int length = GetLength();
  if (added == 0) return length;
  index = std::clamp(index, 0, length);
  // The text may be part of the string: a second owner of the block makes Reserve leave it untouched.
  const bool inside = !std::less<>()(text, GetString()) && std::less<>()(text, GetString() + length);
  const CString keep = inside ? *this : CString();
  Reserve(std::int64_t{length} + added, true);
  std::copy_backward(m_pszData + index, m_pszData + length, m_pszData + length + added);
  std::copy_n(text, added, m_pszData + index);
  SetLength(length + added);
  return length + added;
}

int CString::Insert(int index, wchar_t character) {
  const int length = GetLength();
  index = std::clamp(index, 0, length);
  Reserve(std::int64_t{length} + 1, true);
  std::copy_backward(m_pszData + index, m_pszData + length, m_pszData + length + 1);
  m_pszData[index] = character;
  SetLength(length + 1);
  return length + 1;
}

int CString::Delete(int index, int count) {
  index = std::clamp(index, 0, GetLength());
  Cut(index, std::clamp(count, 0, GetLength() - index));
  return GetLength();
}

int CString::Replace(wchar_t from, wchar_t to) {
  if (from == to) return 0;
  int count = 0;
  for (int index = Find(from); index != -1; index = Find(from, index + 1)) {
    if (count++ == 0) Reserve(GetLength(), false);
    m_pszData[index] = to;
  }
  return count;
}

int CString::Replace(const wchar_t* from, const wchar_t* to) {
  const int from_length = StringLength(from);
  const int to_length = StringLength(to);
  if (from_length == 0) return 0;
  int count = 0;
  for (int index = Find(from); index != -1; index = Find(from, index + from_length)) ++count;
  if (count == 0) return 0;
  // Built apart, because `from` and `to` may be parts of the string.
  CString result;
  result.m_pszData = NewText(GetLength() + std::int64_t{count} * (std::int64_t{to_length} - from_length));
  int done = 0;
  for (int index = Find(from); index != -1; index = Find(from, done)) {
    result.Append(m_pszData + done, index - done);
    result.Append(to, to_length);
    done = index + from_length;
  }
  result.Append(m_pszData + done, GetLength() - done);
  Swap(result);
  return count;
}

int CString::Remove(wchar_t character) {
  if (Find(character) == -1) return 0;
  const int length = GetLength();
  Reserve(length, false);
  const int kept = static_cast<int>(std::remove(m_pszData, m_pszData + length, character) - m_pszData);
  SetLength(kept);
  return length - kept;
}

CString& CString::TrimLeft() {
  Cut(0, LeadingUnits(*this, IsWhiteSpace));
  return *this;
}

CString& CString::TrimLeft(wchar_t character) {
  Cut(0, LeadingUnits(*this, [=](wchar_t unit) { return unit == character; }));
  return *this;
}

CString& CString::TrimLeft(const wchar_t* characters) {
  Cut(0, LeadingUnits(*this, [=](wchar_t unit) { return IsOneOf(unit, characters); }));
  return *this;
}

CString& CString::TrimRight() {
  Truncate(UnitsWithoutTrailing(*this, IsWhiteSpace));
  return *this;
}

CString& CString::TrimRight(wchar_t character) {
  Truncate(UnitsWithoutTrailing(*this, [=](wchar_t unit) { return unit == character; }));
  return *this;
}

CString& CString::TrimRight(const wchar_t* characters) {
  Truncate(UnitsWithoutTrailing(*this, [=](wchar_t unit) { return IsOneOf(unit, characters); }));
  return *this;
}

CString& CString::Trim() {
  return TrimRight().TrimLeft();
}

CString& CString::Trim(wchar_t character) {
  return TrimRight(character).TrimLeft(character);
}

CString& CString::Trim(const wchar_t* characters) {
  // The set may be part of the string itself, which the first cut would change.
  const CString set(characters);
  return TrimRight(set.m_pszData).TrimLeft(set.m_pszData);
}

CString& CString::MakeReverse() {
  if (GetLength() < 2) return *this;
  Reserve(GetLength(), false);
  std::reverse(m_pszData, m_pszData + GetLength());
  return *this;
}
