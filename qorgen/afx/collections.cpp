// The parts of the collections that aren't templates.

#include <limits>

#include "qorgen/afx/array.h"
#include "qorgen/afx/list.h"
#include "qorgen/afx/map.h"

IMPLEMENT_DYNAMIC(CStringArray, CObject)
IMPLEMENT_DYNAMIC(CPtrArray, CObject)
IMPLEMENT_DYNAMIC(CPtrList, CObject)
IMPLEMENT_DYNAMIC(CMapStringToString, CObject)

CStringArray::CStringArray() noexcept = default;
CStringArray::~CStringArray() = default;
CPtrArray::CPtrArray() noexcept = default;
CPtrArray::~CPtrArray() = default;
CPtrList::CPtrList(std::intptr_t nBlockSize) noexcept : CList(nBlockSize) {}
CPtrList::~CPtrList() = default;
CMapStringToString::CMapStringToString(std::intptr_t nBlockSize) noexcept : CMap(nBlockSize) {}
CMapStringToString::~CMapStringToString() = default;

int CMapStringToString::LookupKey(const wchar_t* key, const wchar_t*& rKey) const {
  const CPair* pair = PLookup(key);
  if (pair == nullptr) return 0;
  rKey = pair->key.GetString();
  return 1;
}

namespace {

// FNV-1a over the units.
unsigned int HashUnits(const wchar_t* text, int length) noexcept {
  std::uint32_t hash = 2166136261u;
  for (int index = 0; index < length; ++index) hash = (hash ^ text[index]) * 16777619u;
  return hash;
}

}  // namespace

template <>
unsigned int HashKey<const wchar_t*>(const wchar_t* key) {
  return HashUnits(key, CString::StringLength(key));
}

template <>
unsigned int HashKey<const CString&>(const CString& key) {
  return HashUnits(key.GetString(), key.GetLength());
}

namespace qorgen::afx {

void* AllocateElements(std::size_t count, std::size_t size) {
  if (count > std::numeric_limits<std::size_t>::max() / size) AfxThrowMemoryException();
  return AllocateBlock(count * size);
}

}  // namespace qorgen::afx
