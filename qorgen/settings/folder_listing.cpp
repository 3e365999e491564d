#include "qorgen/settings/internal/folder_listing.h"

#include <cstddef>

#include "qorgen/afx/file_find.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/shell.h"

namespace qorgen::settings {
namespace {

std::vector<CString> List(const wchar_t* folder, bool folders) {
  std::vector<CString> names;
  CFileFind finder;
  int more = finder.FindFile(CQorFileUtil::ConnectPath(folder, L"*.*"));
  while (more) {
    more = finder.FindNextFile();
    if (!finder.IsDots() && (finder.IsDirectory() != 0) == folders) names.push_back(finder.GetFileName());
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

bool IsTooLongName(const wchar_t* name) {
  constexpr std::size_t kLongest = 255;
  return name != nullptr && wcsnlen(name, kLongest + 1) > kLongest;
}

}  // namespace qorgen::settings
