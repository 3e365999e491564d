#pragma once

// Doubly linked lists: CList, CPtrList, CTypedPtrList. A list belongs to one thread at a time.
//
// A POSITION names an element and stays valid until that element is removed; null is the position behind
// either end. An operation on a null position, and one that takes an element out of an empty list, throws the
// invalid-argument exception. A position of another list or of a removed element must not be used.

#include <cstdint>
#include <utility>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/object.h"
#include "qorgen/afx/position.h"

template <typename TYPE, typename ARG_TYPE = const TYPE&>
class CList : public CObject {
 public:
  // The published argument, a number of elements per block of memory; elements are allocated one by one here.
  explicit CList([[maybe_unused]] std::intptr_t nBlockSize = 10) noexcept {}
  ~CList() override { RemoveAll(); }

  std::intptr_t GetCount() const noexcept { return m_nCount; }
  std::intptr_t GetSize() const noexcept { return m_nCount; }
  bool IsEmpty() const noexcept { return m_nCount == 0; }

  TYPE& GetHead() { return NodeAt(AsPosition(m_pHead))->value; }
  const TYPE& GetHead() const { return NodeAt(AsPosition(m_pHead))->value; }
  TYPE& GetTail() { return NodeAt(AsPosition(m_pTail))->value; }
  const TYPE& GetTail() const { return NodeAt(AsPosition(m_pTail))->value; }

  TYPE RemoveHead() { return Take(NodeAt(AsPosition(m_pHead))); }
  TYPE RemoveTail() { return Take(NodeAt(AsPosition(m_pTail))); }
  POSITION AddHead(ARG_TYPE newElement) { return Link(newElement, m_pHead); }
  POSITION AddTail(ARG_TYPE newElement) { return Link(newElement, nullptr); }
  // Adds the elements of a list, which may be this one, in their order.
  void AddHead(const CList* pNewList) {
    if (pNewList == nullptr) return;
    Node* const before = m_pHead;
    const Node* source = pNewList->m_pHead;
    for (std::intptr_t left = pNewList->m_nCount; left > 0; --left, source = source->next) {
      Link(source->value, before);
    }
  }
  void AddTail(const CList* pNewList) {
    if (pNewList == nullptr) return;
    const Node* source = pNewList->m_pHead;
    for (std::intptr_t left = pNewList->m_nCount; left > 0; --left, source = source->next)
      AddTail(source->value);
  }
  void RemoveAll() noexcept {
    while (m_pHead != nullptr) delete std::exchange(m_pHead, m_pHead->next);
    m_pTail = nullptr;
    m_nCount = 0;
  }

  POSITION GetHeadPosition() const noexcept { return AsPosition(m_pHead); }
  POSITION GetTailPosition() const noexcept { return AsPosition(m_pTail); }
  // The element at the position, which moves on to the next (or previous) one, null at the end.
  TYPE& GetNext(POSITION& rPosition) {
    Node* node = NodeAt(rPosition);
    rPosition = AsPosition(node->next);
    return node->value;
  }
  const TYPE& GetNext(POSITION& rPosition) const { return const_cast<CList*>(this)->GetNext(rPosition); }
  TYPE& GetPrev(POSITION& rPosition) {
    Node* node = NodeAt(rPosition);
    rPosition = AsPosition(node->previous);
    return node->value;
  }
  const TYPE& GetPrev(POSITION& rPosition) const { return const_cast<CList*>(this)->GetPrev(rPosition); }

  TYPE& GetAt(POSITION position) { return NodeAt(position)->value; }
  const TYPE& GetAt(POSITION position) const { return NodeAt(position)->value; }
  void SetAt(POSITION position, ARG_TYPE newElement) { NodeAt(position)->value = newElement; }
  void RemoveAt(POSITION position) { delete Unlink(NodeAt(position)); }

  // A null position stands for the head (before) or the tail (after).
  POSITION InsertBefore(POSITION position, ARG_TYPE newElement) {
    return Link(newElement, position == nullptr ? m_pHead : NodeAt(position));
  }
  POSITION InsertAfter(POSITION position, ARG_TYPE newElement) {
    return Link(newElement, position == nullptr ? nullptr : NodeAt(position)->next);
  }

  // The first element from `startAfter` on (that one left out; null for the whole list) which equals the
  // value; null if there is none.
  template <typename Value>
  POSITION Find(const Value& searchValue, POSITION startAfter = nullptr) const {
    Node* node = startAfter == nullptr ? m_pHead : NodeAt(startAfter)->next;
    while (node != nullptr && !(node->value == searchValue)) node = node->next;
    return AsPosition(node);
  }
  // The element with that number from the head, counted from 0; null when there is none. Takes time in
  // proportion.
  POSITION FindIndex(std::intptr_t nIndex) const noexcept {
    if (nIndex < 0 || nIndex >= m_nCount) return nullptr;
    Node* node = m_pHead;
    while (nIndex-- > 0) node = node->next;
    return AsPosition(node);
  }

 private:
  struct Node {
    TYPE value;
    Node* previous;
    Node* next;
  };

  static POSITION AsPosition(Node* node) noexcept { return reinterpret_cast<POSITION>(node); }
  static Node* NodeAt(POSITION position) {
    if (position == nullptr) AfxThrowInvalidArgException();
    return reinterpret_cast<Node*>(position);
  }

  // Links a new element before `next`, at the tail for null.
  POSITION Link(ARG_TYPE value, Node* next) {
    Node* previous = next != nullptr ? next->previous : m_pTail;
    Node* node = qorgen::afx::NewNode<Node>(value, previous, next);
    (previous != nullptr ? previous->next : m_pHead) = node;
    (next != nullptr ? next->previous : m_pTail) = node;
    ++m_nCount;
    return AsPosition(node);
  }

  Node* Unlink(Node* node) noexcept {
    (node->previous != nullptr ? node->previous->next : m_pHead) = node->next;
    (node->next != nullptr ? node->next->previous : m_pTail) = node->previous;
    --m_nCount;
    return node;
  }

  TYPE Take(Node* node) {
    TYPE value(std::move(node->value));
    delete Unlink(node);
    return value;
  }

  Node* m_pHead = nullptr;
  Node* m_pTail = nullptr;
  std::intptr_t m_nCount = 0;
};

// The pointers are borrowed; the list never ends what they point to.
class QORGEN_API CPtrList : public CList<void*, void*> {
  DECLARE_DYNAMIC(CPtrList)

 public:
  explicit CPtrList(std::intptr_t nBlockSize = 10) noexcept;
  ~CPtrList() override;
};

// A pointer list whose elements are of one pointer type; BASE_CLASS is CPtrList or derived from it.
template <class BASE_CLASS, typename TYPE>
class CTypedPtrList : public BASE_CLASS {
 public:
  explicit CTypedPtrList(std::intptr_t nBlockSize = 10) noexcept : BASE_CLASS(nBlockSize) {}

  TYPE GetHead() const { return Typed(BASE_CLASS::GetHead()); }
  TYPE GetTail() const { return Typed(BASE_CLASS::GetTail()); }
  TYPE RemoveHead() { return Typed(BASE_CLASS::RemoveHead()); }
  TYPE RemoveTail() { return Typed(BASE_CLASS::RemoveTail()); }
  POSITION AddHead(TYPE newElement) { return BASE_CLASS::AddHead(static_cast<void*>(newElement)); }
  POSITION AddTail(TYPE newElement) { return BASE_CLASS::AddTail(static_cast<void*>(newElement)); }
  void AddHead(const CTypedPtrList* pNewList) { BASE_CLASS::AddHead(pNewList); }
  void AddTail(const CTypedPtrList* pNewList) { BASE_CLASS::AddTail(pNewList); }
  TYPE GetNext(POSITION& rPosition) const { return Typed(BASE_CLASS::GetNext(rPosition)); }
  TYPE GetPrev(POSITION& rPosition) const { return Typed(BASE_CLASS::GetPrev(rPosition)); }
  TYPE GetAt(POSITION position) const { return Typed(BASE_CLASS::GetAt(position)); }
  void SetAt(POSITION position, TYPE newElement) {
    BASE_CLASS::SetAt(position, static_cast<void*>(newElement));
  }
  POSITION InsertBefore(POSITION position, TYPE newElement) {
    return BASE_CLASS::InsertBefore(position, static_cast<void*>(newElement));
  }
  POSITION InsertAfter(POSITION position, TYPE newElement) {
    return BASE_CLASS::InsertAfter(position, static_cast<void*>(newElement));
  }
  POSITION Find(TYPE searchValue, POSITION startAfter = nullptr) const {
    return BASE_CLASS::Find(static_cast<void*>(searchValue), startAfter);
  }

 private:
  static TYPE Typed(void* pointer) noexcept { return static_cast<TYPE>(pointer); }
};
