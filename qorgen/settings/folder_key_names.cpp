// The names of a key's values and sub-keys.

#include <utility>
#include <vector>

#include "qorgen/settings/folder_key.h"
#include "qorgen/settings/internal/folder_listing.h"

// The names that a key hands out, and the array of their beginnings.
struct CQorRegFileKey::NameList {
  explicit NameList(std::vector<CString> names) : texts(std::move(names)) {
    pointers.reserve(texts.size());
    for (const CString& text : texts) pointers.push_back(text);
  }

  std::vector<CString> texts;
  std::vector<const wchar_t*> pointers;
};

const wchar_t** CQorRegFileKey::GetValueNames(int* count) {
  std::vector<CString> names = qorgen::settings::ListFiles(GetKeyName());
  if (names.empty()) return nullptr;
  m_valueNames = std::make_shared<NameList>(std::move(names));
  m_valueCount = static_cast<int>(m_valueNames->pointers.size());
  if (count != nullptr) *count = m_valueCount;
  return m_valueNames->pointers.data();
}

const wchar_t** CQorRegFileKey::GetSubKeyNames(int* count) {
  std::vector<CString> names = qorgen::settings::ListSubFolders(GetKeyName());
  if (names.empty()) return nullptr;
  m_subKeyNames = std::make_shared<NameList>(std::move(names));
  m_subKeyCount = static_cast<int>(m_subKeyNames->pointers.size());
  if (count != nullptr) *count = m_subKeyCount;
  return m_subKeyNames->pointers.data();
}
