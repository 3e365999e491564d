#include "qorgen/platform/remove_tree.h"

#include <string>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

namespace qorgen::platform {
namespace {

// A folder that is held can be neither renamed nor removed, so its path keeps leading to it.
class HeldFolder {
 public:
  explicit HeldFolder(const wchar_t* path)
      : handle_(CreateFileW(path, FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                            nullptr)) {}
  ~HeldFolder() { Release(); }
  HeldFolder(const HeldFolder&) = delete;
  HeldFolder& operator=(const HeldFolder&) = delete;

  void Release() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
  }
  [[nodiscard]] bool IsHeld() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] bool IsLink() const {
    BY_HANDLE_FILE_INFORMATION facts;
    return !GetFileInformationByHandle(handle_, &facts) ||
           (facts.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  }

 private:
  HANDLE handle_;
};

class Search {
 public:
  explicit Search(const std::wstring& folder) : handle_(FindFirstFileW((folder + L"\\*").c_str(), &data)) {}
  ~Search() {
    if (handle_ != INVALID_HANDLE_VALUE) FindClose(handle_);
  }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] bool Next() { return FindNextFileW(handle_, &data) != 0; }

  WIN32_FIND_DATAW data;

 private:
  HANDLE handle_;
};

bool IsDots(const wchar_t* name) {
  return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

bool Fail(DWORD error) {
  SetLastError(error);
  return false;
}

// Acts on a link itself.
bool RemoveFolder(const std::wstring& path) {
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  return RemoveDirectoryW(path.c_str()) != 0;
}

bool Remove(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return RemoveFolder(path);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    return DeleteFileW(path.c_str()) != 0;
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) return Fail(ERROR_DIRECTORY);
  HeldFolder folder(path.c_str());
  if (!folder.IsHeld()) return false;
  // A link that has taken the folder's place since the look.
  if (!folder.IsLink()) {
    Search search(path);
    if (!search.IsOpen()) return false;
    do {
      if (IsDots(search.data.cFileName)) continue;
      const std::wstring entry = path + L'\\' + search.data.cFileName;
      if ((search.data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        if (!Remove(entry)) return false;
        continue;
      }
      // What stays shows when its folder is to go.
      SetFileAttributesW(entry.c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileW(entry.c_str());
    } while (search.Next());
  }
  folder.Release();
  return RemoveFolder(path);
}

}  // namespace

BOOL RemoveTree(LPCWSTR path) {
  if (path == nullptr || path[0] == 0) return Fail(ERROR_PATH_NOT_FOUND);
  std::wstring folder(path);
  // Behind a separator the path would mean what a link leads to. A root keeps its own.
  while (folder.size() > 3 && (folder.back() == L'\\' || folder.back() == L'/')) folder.pop_back();
  return Remove(folder);
}

}  // namespace qorgen::platform
