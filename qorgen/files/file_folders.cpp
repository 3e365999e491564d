// Making and removing folders and files.

#include "qorgen/afx/file_find.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/split_path.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/remove_tree.h"
#include "qorgen/platform/shell.h"

namespace {

constexpr int kLongestPath = 260;

enum class Kind { kNone, kFolder, kOther };

Kind LookUp(const wchar_t* path) {
  CFileFind finder;
  if (!finder.FindFile(path)) return Kind::kNone;
  finder.FindNextFile();
  const bool is_folder = finder.MatchesMask(FILE_ATTRIBUTE_DIRECTORY) != 0;
  finder.Close();
  return is_folder ? Kind::kFolder : Kind::kOther;
}

void CutTailBackslash(CString& path) {
  const int length = path.GetLength();
  if (length > 0 && path[length - 1] == L'\\') path.Delete(length - 1);
}

// Whether the folder that couldn't be made is one that another process or thread has made since the look.
bool WasMadeMeanwhile() {
  return GetLastError() == ERROR_ALREADY_EXISTS;
}

bool EnsureFolder(const wchar_t* path) {
  return PathFileExistsW(path) || ::CreateDirectoryW(path, nullptr) || WasMadeMeanwhile();
}

}  // namespace

int CQorFileUtil::CreateDirectoryW(const wchar_t* path) {
  return path != nullptr && ::CreateDirectoryW(path, nullptr) ? 1 : 0;
}

int CQorFileUtil::CreateDeepDirectory(const wchar_t* path) {
  CString folder(path);
  CutTailBackslash(folder);
  const CQorSplitPath parts(folder);
  if (parts.GetConnectPath() == nullptr) return 0;
  if (wcslen(parts.GetDirectory()) >= 2) {
    CString parent(parts.GetConnectPath());
    CutTailBackslash(parent);
    switch (LookUp(parent)) {
      case Kind::kFolder:
        break;
      case Kind::kOther:
        return 0;
      case Kind::kNone:
        // Each step has to get shorter: a parent that ends in a forward slash would be its own parent.
        if (parent.GetLength() >= folder.GetLength()) return 0;
        if (!CreateDeepDirectory(parent) && !WasMadeMeanwhile()) return 0;
        break;
    }
  }
  return CreateDirectoryW(path);
}

int CQorFileUtil::CreateDirectories(const wchar_t* path) {
  if (path == nullptr || wcsnlen(path, kLongestPath + 1) > kLongestPath) return 0;
  const wchar_t* rest = PathSkipRootW(path);
  if (rest == nullptr) rest = path;
  CString level(path, static_cast<int>(rest - path));
  for (; *rest != 0; ++rest) {
    if (*rest != L'\\') level += *rest;
    const bool ends_level = *rest == L'\\' || rest[1] == 0;
    if (ends_level && !level.IsEmpty() && !EnsureFolder(level)) return 0;
    if (*rest == L'\\') level += *rest;
  }
  return 1;
}

int CQorFileUtil::CreateDirIfNotExists(const wchar_t* path, int pathHasFileName) {
  if (path == nullptr) return 0;
  CString folder(path);
  if (pathHasFileName != 0) {
    PathRemoveFileSpecW(folder.GetBuffer());
    folder.ReleaseBuffer();
  }
  if (PathFileExistsW(folder)) return 1;
  const DWORD error = GetLastError();
  if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) return 0;
  return CreateDeepDirectory(folder) || WasMadeMeanwhile() ? 1 : 0;
}

int CQorFileUtil::DeleteDirectory(const wchar_t* path) {
  return path != nullptr && path[0] != 0 && qorgen::platform::RemoveTree(path) ? 1 : 0;
}

int CQorFileUtil::DeleteFileW(const wchar_t* path) {
  if (path == nullptr || !SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL)) return 0;
  return ::DeleteFileW(path) ? 1 : 0;
}
