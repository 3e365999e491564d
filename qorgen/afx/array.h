#pragma once

// Growing arrays: CArray, CStringArray, CPtrArray. An array belongs to one thread at a time.
//
// Positions and sizes are std::intptr_t (the published INT_PTR). A position outside the array, or a negative
// size or count, throws the invalid-argument exception; exhausted memory throws the memory exception, and the
// array keeps what it held. New elements are value-initialised. An element passed as argument may be one of
// the array's own.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/memory.h"
#include "qorgen/afx/object.h"
#include "qorgen/afx/string.h"

namespace qorgen::afx {

// Uninitialised room for `count` elements of `size` bytes, given back with QorFree. Throws the memory
// exception when there is none.
[[nodiscard]] QORGEN_API void* AllocateElements(std::size_t count, std::size_t size);

}  // namespace qorgen::afx

template <typename TYPE, typename ARG_TYPE = const TYPE&>
class CArray : public CObject {
  static_assert(alignof(TYPE) <= alignof(std::max_align_t));

 public:
  CArray() noexcept = default;
  ~CArray() override { RemoveAll(); }

  std::intptr_t GetSize() const noexcept { return m_nSize; }
  std::intptr_t GetCount() const noexcept { return m_nSize; }
  bool IsEmpty() const noexcept { return m_nSize == 0; }
  std::intptr_t GetUpperBound() const noexcept { return m_nSize - 1; }

  // Makes the array `nNewSize` elements long. `nGrowBy` is the least number of elements by which the room
  // grows when it has to; -1 leaves that choice as it was, 0 stands for growth by half.
  void SetSize(std::intptr_t nNewSize, std::intptr_t nGrowBy = -1) {
    if (nNewSize < 0 || nGrowBy < -1) AfxThrowInvalidArgException();
    if (nGrowBy != -1) m_nGrowBy = nGrowBy;
    if (nNewSize <= m_nSize) {
      std::destroy(m_pData + nNewSize, m_pData + m_nSize);
      m_nSize = nNewSize;
      if (nNewSize == 0) FreeExtra();
      return;
    }
    Reserve(nNewSize);
    std::uninitialized_value_construct(m_pData + m_nSize, m_pData + nNewSize);
    m_nSize = nNewSize;
  }
  // Gives back the room beyond the elements.
  void FreeExtra() {
    if (m_nSize != m_nMaxSize) Relocate(m_nSize);
  }
  void RemoveAll() { SetSize(0); }

  const TYPE& GetAt(std::intptr_t nIndex) const { return m_pData[Checked(nIndex)]; }
  TYPE& GetAt(std::intptr_t nIndex) { return m_pData[Checked(nIndex)]; }
  void SetAt(std::intptr_t nIndex, ARG_TYPE newElement) { m_pData[Checked(nIndex)] = newElement; }
  const TYPE& ElementAt(std::intptr_t nIndex) const { return m_pData[Checked(nIndex)]; }
  TYPE& ElementAt(std::intptr_t nIndex) { return m_pData[Checked(nIndex)]; }
  const TYPE& operator[](std::intptr_t nIndex) const { return m_pData[Checked(nIndex)]; }
  TYPE& operator[](std::intptr_t nIndex) { return m_pData[Checked(nIndex)]; }

  // The elements in a row, valid until the array grows or shrinks; null while it holds none and never did.
  const TYPE* GetData() const noexcept { return m_pData; }
  TYPE* GetData() noexcept { return m_pData; }

  // The same as SetAt, and an array that is too short becomes long enough.
  void SetAtGrow(std::intptr_t nIndex, ARG_TYPE newElement) {
    if (nIndex < 0) AfxThrowInvalidArgException();
    if (nIndex < m_nSize) {
      m_pData[nIndex] = newElement;
      return;
    }
    TYPE element(newElement);
    SetSize(nIndex + 1);
    m_pData[nIndex] = std::move(element);
  }
  // Gives the position of the new element.
  std::intptr_t Add(ARG_TYPE newElement) {
    if (m_nSize < m_nMaxSize) {
      std::construct_at(m_pData + m_nSize, newElement);
    } else {
      TYPE element(newElement);
      Reserve(m_nSize + 1);
      std::construct_at(m_pData + m_nSize, std::move(element));
    }
    return m_nSize++;
  }
  // Adds all elements of `src`, which may be this array; gives the position of the first.
  std::intptr_t Append(const CArray& src) {
    const std::intptr_t first = m_nSize;
    const std::intptr_t count = src.m_nSize;
    Reserve(first + count);
    std::uninitialized_copy(src.m_pData, src.m_pData + count, m_pData + first);
    m_nSize = first + count;
    return first;
  }
  void Copy(const CArray& src) {
    if (&src == this) return;
    SetSize(src.m_nSize);
    std::copy(src.m_pData, src.m_pData + src.m_nSize, m_pData);
  }
  // Puts `nCount` copies before the element at `nIndex`; a position behind the end lengthens the array first.
  void InsertAt(std::intptr_t nIndex, ARG_TYPE newElement, std::intptr_t nCount = 1) {
    if (nIndex < 0 || nCount < 0) AfxThrowInvalidArgException();
    if (nCount == 0) return;
    const TYPE element(newElement);
    Open(nIndex, nCount);
    std::fill(m_pData + nIndex, m_pData + nIndex + nCount, element);
  }
  // Inserts all elements of an array, which may be this one; null inserts nothing.
  void InsertAt(std::intptr_t nStartIndex, const CArray* pNewArray) {
    if (nStartIndex < 0) AfxThrowInvalidArgException();
    if (pNewArray == nullptr || pNewArray->IsEmpty()) return;
    if (pNewArray == this) {
      CArray copy;
      copy.Copy(*this);
      InsertAt(nStartIndex, &copy);
      return;
    }
    Open(nStartIndex, pNewArray->m_nSize);
    std::copy(pNewArray->m_pData, pNewArray->m_pData + pNewArray->m_nSize, m_pData + nStartIndex);
  }
  void RemoveAt(std::intptr_t nIndex, std::intptr_t nCount = 1) {
    if (nIndex < 0 || nCount < 0 || nCount > m_nSize || nIndex > m_nSize - nCount)
      AfxThrowInvalidArgException();
    std::move(m_pData + nIndex + nCount, m_pData + m_nSize, m_pData + nIndex);
    std::destroy(m_pData + m_nSize - nCount, m_pData + m_nSize);
    m_nSize -= nCount;
  }

  TYPE* begin() noexcept { return m_pData; }
  TYPE* end() noexcept { return m_pData + m_nSize; }
  const TYPE* begin() const noexcept { return m_pData; }
  const TYPE* end() const noexcept { return m_pData + m_nSize; }

 private:
  std::intptr_t Checked(std::intptr_t nIndex) const {
    if (nIndex < 0 || nIndex >= m_nSize) AfxThrowInvalidArgException();
    return nIndex;
  }

  void Reserve(std::intptr_t size) {
    if (size <= m_nMaxSize) return;
    constexpr std::intptr_t kMost = std::numeric_limits<std::intptr_t>::max() / 4;
    if (size > kMost) AfxThrowMemoryException();
    const std::intptr_t growth = m_nGrowBy > 0 ? std::min(m_nGrowBy, kMost) : m_nMaxSize / 2;
    Relocate(std::max({size, m_nMaxSize + growth, std::intptr_t{4}}));
  }

  void Relocate(std::intptr_t room) {
    if (room == 0) {
      QorFree(m_pData);
      m_pData = nullptr;
      m_nMaxSize = 0;
      return;
    }
    TYPE* data =
        static_cast<TYPE*>(qorgen::afx::AllocateElements(static_cast<std::size_t>(room), sizeof(TYPE)));
    std::uninitialized_move(m_pData, m_pData + m_nSize, data);
    std::destroy(m_pData, m_pData + m_nSize);
    QorFree(m_pData);
    m_pData = data;
    m_nMaxSize = room;
  }

  // Makes room for `count` elements at `index`; they hold moved-from or new elements.
  void Open(std::intptr_t index, std::intptr_t count) {
    const std::intptr_t former = m_nSize;
    if (index > std::numeric_limits<std::intptr_t>::max() / 4 ||
        count > std::numeric_limits<std::intptr_t>::max() / 4) {
      AfxThrowMemoryException();
    }
    SetSize(std::max(former, index) + count);
    if (index < former) std::move_backward(m_pData + index, m_pData + former, m_pData + m_nSize);
  }

  TYPE* m_pData = nullptr;
  std::intptr_t m_nSize = 0;
  std::intptr_t m_nMaxSize = 0;
  std::intptr_t m_nGrowBy = 0;
};

class QORGEN_API CStringArray : public CArray<CString, const CString&> {
  DECLARE_DYNAMIC(CStringArray)

 public:
  CStringArray() noexcept;
  ~CStringArray() override;

  // A text goes straight into the element, whose block is reused when it is large enough.
  using CArray::SetAt;
  void SetAt(std::intptr_t nIndex, const wchar_t* newElement) { ElementAt(nIndex) = newElement; }
};

class QORGEN_API CPtrArray : public CArray<void*, void*> {
  DECLARE_DYNAMIC(CPtrArray)

 public:
  CPtrArray() noexcept;
  ~CPtrArray() override;
};
