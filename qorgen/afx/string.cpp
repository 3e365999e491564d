// Blocks of CString: making, sharing and giving back, assignment, direct access.

#include "qorgen/afx/string.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "qorgen/afx/exception.h"
#include "qorgen/platform/crt.h"

namespace qorgen::afx {

constinit const EmptyText g_empty_text = {{1, 0, 0}, {0, 0}};

namespace {

// Longest text, so that a capacity rounded up still fits an int.
constexpr std::int64_t kMaxLength = INT_MAX - 16;

void CopyUnits(wchar_t* to, const wchar_t* from, std::int64_t count) noexcept {
  if (count > 0) std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(wchar_t));
}

}  // namespace
}  // namespace qorgen::afx

using qorgen::afx::CopyUnits;
using qorgen::afx::kMaxLength;
using qorgen::afx::TextHeader;

void CString::ThrowInvalidArgument() {
  AfxThrowInvalidArgException();
}
void CString::ThrowMemory() {
  AfxThrowMemoryException();
}

// A block with one owner, length 0 and at least the capacity asked for.
wchar_t* CString::NewText(std::int64_t capacity) {
  if (capacity > kMaxLength) ThrowMemory();
  const std::int64_t rounded = ((capacity + 8) & ~std::int64_t{7}) - 1;
  void* block = std::malloc(sizeof(TextHeader) + static_cast<std::size_t>(rounded + 1) * sizeof(wchar_t));
  if (block == nullptr) ThrowMemory();
  new (block) TextHeader{{1}, 0, static_cast<std::int32_t>(rounded)};
  wchar_t* text = reinterpret_cast<wchar_t*>(static_cast<char*>(block) + sizeof(TextHeader));
  text[0] = 0;
  return text;
}

void CString::FreeText(wchar_t* text) noexcept {
  std::free(HeaderOf(text));
}

void CString::SetLength(int length) noexcept {
  HeaderOf(m_pszData)->length = length;
  m_pszData[length] = 0;
}

void CString::Reserve(std::int64_t capacity, bool growing) {
  const TextHeader* header = HeaderOf(m_pszData);
  const std::int64_t present = header->capacity;
  if (IsOnlyOwner(header) && present != 0 && capacity <= present) return;
  if (growing && capacity > present)
    capacity = std::max(capacity, std::min(present + present / 2, kMaxLength));
  const int length = header->length;
  wchar_t* text = NewText(std::max<std::int64_t>(capacity, length));
  CopyUnits(text, m_pszData, length);
  Release(m_pszData);
  m_pszData = text;
  SetLength(length);
}

CString::CString(wchar_t character, int repeat) : m_pszData(NoText()) {
  if (repeat <= 0) return;
  m_pszData = NewText(repeat);
  std::fill_n(m_pszData, repeat, character);
  SetLength(repeat);
}

void CString::AssignSlow(const wchar_t* text, int length) {
  if (length < 0) ThrowInvalidArgument();
  const TextHeader* header = HeaderOf(m_pszData);
  if (text == nullptr || length == 0) {
    if (header->capacity == 0) return;
    if (IsOnlyOwner(header)) {
      SetLength(0);  // Keeps the block: a field that is now and then empty allocates once.
    } else {
      Empty();
    }
    return;
  }
  if (length <= header->capacity && IsOnlyOwner(header)) {
    CopyUnits(m_pszData, text, length);
    SetLength(length);
    return;
  }
  wchar_t* copy = NewText(length);  // The source may lie in the present block, so that goes last.
  CopyUnits(copy, text, length);
  Release(m_pszData);
  m_pszData = copy;
  SetLength(length);
}

void CString::SetAt(int index, wchar_t character) {
  const int length = GetLength();
  if (index < 0 || index >= length) ThrowInvalidArgument();
  Reserve(length, false);
  m_pszData[index] = character;
}

void CString::Append(const wchar_t* text, int length) {
  if (length < 0) ThrowInvalidArgument();
  if (text == nullptr || length == 0) return;
  const int mine = GetLength();
  const std::int64_t sum = std::int64_t{mine} + length;
  const TextHeader* header = HeaderOf(m_pszData);
  if (IsOnlyOwner(header) && sum <= header->capacity) {
    CopyUnits(m_pszData + mine, text, length);
  } else {
    // The source may lie in the present block: an owner of it keeps that alive until the copy is done.
    const CString keep(*this);
    Reserve(sum, true);
    CopyUnits(m_pszData + mine, text, length);
  }
  SetLength(static_cast<int>(sum));
}

wchar_t* CString::GetBuffer(int minimum) {
  if (minimum < 0) ThrowInvalidArgument();
  Reserve(std::max(minimum, GetLength()), false);
  return m_pszData;
}

wchar_t* CString::GetBufferSetLength(int length) {
  GetBuffer(length);
  SetLength(length);
  return m_pszData;
}

void CString::ReleaseBuffer(int length) {
  const int capacity = GetAllocLength();
  if (length == -1) {
    length = static_cast<int>(std::find(m_pszData, m_pszData + capacity, L'\0') - m_pszData);
  }
  if (length < 0 || length > capacity) ThrowInvalidArgument();
  if (length == GetLength() && m_pszData[length] == 0) return;
  // A copy that was made since GetBuffer shares the block; it keeps its own length.
  if (!IsOnlyOwner(HeaderOf(m_pszData))) {
    const CString keep(*this);
    Reserve(capacity, false);
    CopyUnits(m_pszData, keep.m_pszData, length);
  }
  SetLength(length);
}

void CString::ReleaseBufferSetLength(int length) {
  if (length < 0) ThrowInvalidArgument();
  ReleaseBuffer(length);
}

void CString::Preallocate(int length) {
  if (length < 0) ThrowInvalidArgument();
  if (length > GetAllocLength()) Reserve(length, false);
}

void CString::FreeExtra() {
  const int length = GetLength();
  if (length == 0) {
    Empty();
  } else if (GetAllocLength() - length >= 8) {
    CString exact(m_pszData, length);
    Swap(exact);
  }
}

void CString::Truncate(int length) {
  if (length < 0) ThrowInvalidArgument();
  if (length < GetLength()) AssignSlow(m_pszData, length);
}

int CString::StringLength(const wchar_t* text) {
  if (text == nullptr) return 0;
  const std::size_t length = wcslen(text);
  if (length > INT_MAX) ThrowMemory();
  return static_cast<int>(length);
}

void CString::CopyChars(wchar_t* destination, const wchar_t* source, int count) noexcept {
  CopyUnits(destination, source, count);
}

namespace {

CString Joined(const wchar_t* left, int length, const CString& right) {
  CString sum;
  sum.Preallocate(length > INT_MAX - right.GetLength() ? INT_MAX : length + right.GetLength());
  sum.SetString(left, length);
  sum.Append(right);
  return sum;
}

}  // namespace

CString operator+(const wchar_t* left, const CString& right) {
  return Joined(left, CString::StringLength(left), right);
}
CString operator+(wchar_t left, const CString& right) {
  return Joined(&left, 1, right);
}
