#pragma once

// Hash maps: CMap and CMapStringToString. A map belongs to one thread at a time.
//
// Elements are walked through in the order in which their keys were first set, and a POSITION stays valid
// until its element is removed. Looking up and changing cost the same at any size: the table grows with the
// elements.

#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/object.h"
#include "qorgen/afx/position.h"
#include "qorgen/afx/string.h"

// Hash and equality of the keys of a CMap; a program may specialise both for its own types. Texts are hashed
// and compared by their units, a null text counts as empty.
template <typename ARG_KEY>
unsigned int HashKey(ARG_KEY key) {
  std::uint64_t bits = 0;
  if constexpr (std::is_pointer_v<std::remove_cvref_t<ARG_KEY>>) {
    bits = reinterpret_cast<std::uintptr_t>(key);
  } else {
    bits = static_cast<std::uint64_t>(key);
  }
  bits *= 0x9E3779B97F4A7C15u;  // 2 to the 64th by the golden ratio: spreads neighbouring keys over the upper
                                // half
  return static_cast<unsigned int>(bits >> 32);
}
template <>
QORGEN_API unsigned int HashKey<const wchar_t*>(const wchar_t* key);
template <>
QORGEN_API unsigned int HashKey<const CString&>(const CString& key);

template <typename KEY, typename ARG_KEY>
bool IsSameKey(const KEY& own, ARG_KEY asked) {
  return own == asked;
}

template <typename KEY, typename ARG_KEY, typename VALUE, typename ARG_VALUE>
class CMap : public CObject {
 public:
  // An element as PGetFirstAssoc and its kin show it.
  struct CPair {
    const KEY key;
    VALUE value;
  };

  // The published argument, a number of elements per block of memory; elements are allocated one by one here.
  explicit CMap([[maybe_unused]] std::intptr_t nBlockSize = 10) noexcept {}
  ~CMap() override { RemoveAll(); }

  std::intptr_t GetCount() const noexcept { return m_nCount; }
  std::intptr_t GetSize() const noexcept { return m_nCount; }
  bool IsEmpty() const noexcept { return m_nCount == 0; }

  // 1 and the value, or 0 and `rValue` as it was.
  int Lookup(ARG_KEY key, VALUE& rValue) const {
    const Node* node = FindNode(key, HashKey<ARG_KEY>(key));
    if (node == nullptr) return 0;
    rValue = node->pair.value;
    return 1;
  }
  // The element of the key, null when there is none.
  const CPair* PLookup(ARG_KEY key) const {
    const Node* node = FindNode(key, HashKey<ARG_KEY>(key));
    return node != nullptr ? &node->pair : nullptr;
  }
  CPair* PLookup(ARG_KEY key) { return const_cast<CPair*>(std::as_const(*this).PLookup(key)); }
  // The value of the key, which is added with a value-initialised value when it is missing.
  VALUE& operator[](ARG_KEY key) {
    const unsigned int hash = HashKey<ARG_KEY>(key);
    Node* node = FindNode(key, hash);
    return (node != nullptr ? node : Add(key, hash))->pair.value;
  }
  void SetAt(ARG_KEY key, ARG_VALUE newValue) { (*this)[key] = newValue; }
  // 1 when the key was there, else 0.
  int RemoveKey(ARG_KEY key) {
    Node* node = FindNode(key, HashKey<ARG_KEY>(key));
    if (node == nullptr) return 0;
    Unlink(node);
    delete node;
    return 1;
  }
  void RemoveAll() noexcept {
    while (m_pFirst != nullptr) delete std::exchange(m_pFirst, m_pFirst->next);
    m_pLast = nullptr;
    m_nCount = 0;
    std::vector<Node*>().swap(m_buckets);
  }

  // Null for an empty map.
  POSITION GetStartPosition() const noexcept { return AsPosition(m_pFirst); }
  // The element at the position, which moves on, null at the end. A null position throws the invalid-argument
  // exception.
  void GetNextAssoc(POSITION& rNextPosition, KEY& rKey, VALUE& rValue) const {
    const Node* node = NodeAt(rNextPosition);
    rKey = node->pair.key;
    rValue = node->pair.value;
    rNextPosition = AsPosition(node->next);
  }
  const CPair* PGetFirstAssoc() const noexcept { return m_pFirst != nullptr ? &m_pFirst->pair : nullptr; }
  // The element after one of this map; null at the end.
  const CPair* PGetNextAssoc(const CPair* pAssoc) const {
    const Node* node = NodeAt(reinterpret_cast<POSITION>(const_cast<CPair*>(pAssoc)))->next;
    return node != nullptr ? &node->pair : nullptr;
  }

  // The number of table places; the map chooses it itself and takes the argument as the least number.
  unsigned int GetHashTableSize() const noexcept {
    return m_buckets.empty() ? m_nLeastBuckets : static_cast<unsigned int>(m_buckets.size());
  }
  void InitHashTable(unsigned int hashSize, int bAllocNow = 1) {
    if (hashSize == 0) AfxThrowInvalidArgException();
    m_nLeastBuckets = hashSize;
    if (bAllocNow != 0 || m_nCount != 0) Rehash(hashSize);
  }

 private:
  struct Node {
    CPair pair;  // first, so that a pair's address is its node's
    unsigned int hash;
    Node* next_in_bucket;
    Node* previous;
    Node* next;
  };

  static POSITION AsPosition(Node* node) noexcept { return reinterpret_cast<POSITION>(node); }
  static Node* NodeAt(POSITION position) {
    if (position == nullptr) AfxThrowInvalidArgException();
    return reinterpret_cast<Node*>(position);
  }

  Node*& BucketOf(unsigned int hash) noexcept { return m_buckets[hash % m_buckets.size()]; }

  Node* FindNode(ARG_KEY key, unsigned int hash) const {
    if (m_buckets.empty()) return nullptr;
    Node* node = m_buckets[hash % m_buckets.size()];
    while (node != nullptr && !(node->hash == hash && IsSameKey<KEY, ARG_KEY>(node->pair.key, key))) {
      node = node->next_in_bucket;
    }
    return node;
  }

  void Rehash(std::size_t size) {
    std::vector<Node*> buckets;
    try {
      buckets.resize(size);
    } catch (const std::exception&) {
      AfxThrowMemoryException();
    }
    m_buckets.swap(buckets);
    for (Node* node = m_pFirst; node != nullptr; node = node->next) {
      node->next_in_bucket = std::exchange(BucketOf(node->hash), node);
    }
  }

  Node* Add(ARG_KEY key, unsigned int hash) {
    if (m_buckets.empty()) {
      Rehash(m_nLeastBuckets);
    } else if (static_cast<std::size_t>(m_nCount) >= m_buckets.size()) {
      Rehash(m_buckets.size() * 2 + 1);
    }
    Node* node = qorgen::afx::NewNode<Node>(CPair{KEY(key), VALUE()}, hash, nullptr, m_pLast, nullptr);
    node->next_in_bucket = std::exchange(BucketOf(hash), node);
    (m_pLast != nullptr ? m_pLast->next : m_pFirst) = node;
    m_pLast = node;
    ++m_nCount;
    return node;
  }

  void Unlink(Node* node) noexcept {
    Node** link = &BucketOf(node->hash);
    while (*link != node) link = &(*link)->next_in_bucket;
    *link = node->next_in_bucket;
    (node->previous != nullptr ? node->previous->next : m_pFirst) = node->next;
    (node->next != nullptr ? node->next->previous : m_pLast) = node->previous;
    --m_nCount;
  }

  std::vector<Node*> m_buckets;
  Node* m_pFirst = nullptr;
  Node* m_pLast = nullptr;
  std::intptr_t m_nCount = 0;
  unsigned int m_nLeastBuckets = 17;
};

class QORGEN_API CMapStringToString : public CMap<CString, const wchar_t*, CString, const wchar_t*> {
  DECLARE_DYNAMIC(CMapStringToString)

 public:
  explicit CMapStringToString(std::intptr_t nBlockSize = 10) noexcept;
  ~CMapStringToString() override;

  // 1 and the map's own text of the key (valid while the element is there), or 0 and `rKey` as it was.
  int LookupKey(const wchar_t* key, const wchar_t*& rKey) const;
};
