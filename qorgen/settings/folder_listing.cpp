#include "qorgen/settings/internal/folder_listing.h"

#include <cstddef>
#include <utility>

#include "qorgen/afx/file_find.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/shell.h"
#include "qorgen/platform/stored_file.h"

namespace qorgen::settings {
namespace {

// How many of them a text begins with.
std::size_t DotsAndBlanks(const wchar_t* text) {
  std::size_t count = 0;
  while (text[count] == L'.' || text[count] == L' ') ++count;
  return count;
}

std::vector<CString> List(const wchar_t* folder, bool folders) {
  std::vector<CString> names;
  CFileFind finder;
  int more = finder.FindFile(CQorFileUtil::ConnectPath(folder, L"*.*"));
  while (more) {
    more = finder.FindNextFile();
    if (finder.IsDots() || (finder.IsDirectory() != 0) != folders) continue;
    CString name = finder.GetFileName();
    if (folders || !platform::IsReplacementName(name)) names.push_back(std::move(name));
  }
  return names;
}

}  // namespace

std::vector<CString> ListFiles(const wchar_t* folder) {
  return List(folder, false);
}

std::vector<CString> ListSubFolders(const wchar_t* folder) {
  std::vector<CString> names = List(folder, true);
  if (!SetFileAttributesW(folder, FILE_ATTRIBUTE_NORMAL)) names.clear();
  return names;
}

bool EnsureFolder(const wchar_t* folder) {
  if (PathIsDirectoryW(folder)) return true;
  // A file of that name satisfies CreateDirectories.
  return CQorFileUtil::CreateDirectories(folder) && PathIsDirectoryW(folder);
}

bool LeavesFolder(const wchar_t* name) {
  while (name != nullptr && *name != 0) {
    const std::size_t length = wcscspn(name, L"\\/");
    if (length != 0 && DotsAndBlanks(name) >= length) return true;
    name += length;
    if (*name != 0) ++name;
  }
  return false;
}

bool IsKeyName(const wchar_t* name) {
  constexpr std::size_t kLongest = 255;
  return name == nullptr || (wcsnlen(name, kLongest + 1) <= kLongest && !LeavesFolder(name));
}

bool IsDotsOnly(const wchar_t* name) {
  if (name == nullptr) return false;
  const wchar_t* last = name;
  for (; *name != 0; ++name) {
    if (CQorFileUtil::IsDirSep(*name)) last = name + 1;
  }
  return wcschr(last, L'.') != nullptr && last[DotsAndBlanks(last)] == 0;
}

}  // namespace qorgen::settings
