// Copies of values and sub-keys. What these operations count is peculiar and kept: see the header.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "qorgen/files/file_util.h"
#include "qorgen/platform/shell.h"
#include "qorgen/settings/folder_key.h"
#include "qorgen/settings/internal/folder_listing.h"

using qorgen::settings::EnsureFolder;
using qorgen::settings::ListFiles;
using qorgen::settings::ListSubFolders;

int CQorRegFileKey::CopySubKey(const CQorRegFileKey& source, const wchar_t* name, int copySubKeys,
                               int copyValues) {
  const wchar_t* target_name = name != nullptr ? name : source.GetKeyName();
  const CString target = CQorFileUtil::ConnectPath(GetKeyName(), target_name);
  if (!qorgen::settings::IsKeyName(target_name) || !EnsureFolder(target)) return 0;
  if (copyValues != 0 && !CopyValues(source.GetKeyName(), target)) return 0;
  return copySubKeys != 0 ? CopySubKeys(source.GetKeyName(), target, copySubKeys, copyValues) : 1;
}

int CQorRegFileKey::CopySubKeys(const CQorRegFileKey& source, int copySubKeys, int copyValues) {
  return CopySubKeys(source.GetKeyName(), GetKeyName(), copySubKeys, copyValues);
}

int CQorRegFileKey::CopyValues(const CQorRegFileKey& source) {
  return CopyValues(source.GetKeyName(), GetKeyName());
}

int CQorRegFileKey::CopySubKeys(const wchar_t* srcPath, const wchar_t* dstPath, int copySubKeys,
                                int copyValues) {
  // The sub-folders of this key limit how many of the source's are taken.
  const std::size_t count = ListSubFolders(GetKeyName()).size();
  if (count == 0) return 0;
  const std::vector<CString> names = ListSubFolders(srcPath);
  const std::size_t there = std::min(count, names.size());
  for (std::size_t i = 0; i < there; ++i) {
    if (!CopySubKeys(srcPath, dstPath, names[i], nullptr, copySubKeys, copyValues, 0)) return 0;
  }
  return there == count ? 1 : 0;
}

int CQorRegFileKey::CopySubKeys(const wchar_t* srcBase, const wchar_t* dstBase, const wchar_t* name,
                                const wchar_t* newName, int copySubKeys, int copyValues, int depth) {
  const CString target = CQorFileUtil::ConnectPath(dstBase, newName != nullptr ? newName : name);
  if (!EnsureFolder(target)) return 0;
  const CString source = CQorFileUtil::ConnectPath(srcBase, name);
  if (!PathIsDirectoryW(source)) return 0;
  if (copyValues != 0 && !CopyValues(source, target)) return 0;
  if (copySubKeys == 0) return 1;
  const std::vector<CString> names = ListSubFolders(source);
  for (const CString& sub_key : names) {
    CopySubKeys(source, target, sub_key, nullptr, copySubKeys, copyValues, depth + 1);
  }
  return names.empty() ? 0 : 1;
}

int CQorRegFileKey::CopyValues(const wchar_t* srcPath, const wchar_t* dstPath) {
  // The sub-folders of the source limit how many of its values are taken.
  const std::size_t count = ListSubFolders(srcPath).size();
  if (count == 0) return 0;
  const std::vector<CString> names = ListFiles(srcPath);
  const std::size_t there = std::min(count, names.size());
  for (std::size_t i = 0; i < there; ++i) {
    const unsigned long type = GetValueType(names[i], srcPath);
    const CString from = GetValuePath(names[i], type, srcPath);
    const CString to = GetValuePath(names[i], type, dstPath);
    int copied = 1;
    if (type == REG_DWORD) {
      copied = SetLongFile(to, GetLongFile(from));
    } else if (type == REG_SZ) {
      copied = SetStringFile(to, GetStringFile(from));
    } else if (type == REG_BINARY) {
      void* data = GetBinaryFile(from);
      // Nothing was read: what the destination has is worth more than an empty file.
      copied = data != nullptr ? SetBinaryFile(to, data, m_binarySize) : 0;
    }
    if (!copied) return 0;
  }
  return there == count ? 1 : 0;
}
