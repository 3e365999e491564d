// Searches in folders.

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/errno_map.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/facts.h"
#include "qorgen/platform/linux/filesystem/folder_entries.h"
#include "qorgen/platform/linux/filesystem/name_pattern.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/handle.h"
#include "qorgen/platform/linux/owned_descriptor.h"

using namespace qorgen::platform;

namespace {

class Search final : public HandleObject {
 public:
  Search(std::string folder, std::vector<FolderEntry> entries)
      : folder_(std::move(folder)), entries_(std::move(entries)) {}
  [[nodiscard]] bool ClosesAsHandle() const override { return false; }

  // The next entry that is still there; false at the end.
  [[nodiscard]] bool Next(WIN32_FIND_DATAW& data);

 private:
  std::mutex mutex_;
  std::string folder_;
  std::vector<FolderEntry> entries_;
  std::size_t next_ = 0;
};

bool Describe(const std::string& folder, const std::string& name, WIN32_FIND_DATAW& data) {
  FileFacts facts;
  if (!ReadFacts(folder + '/' + name, true, facts)) return false;
  const std::u16string text = LibraryName(name);
  if (text.size() >= MAX_PATH) return false;
  data = {};
  data.dwFileAttributes = facts.attributes;
  data.ftCreationTime = facts.creation;
  data.ftLastAccessTime = facts.access;
  data.ftLastWriteTime = facts.write;
  data.nFileSizeHigh = static_cast<DWORD>(facts.size >> 32);
  data.nFileSizeLow = static_cast<DWORD>(facts.size);
  if ((facts.attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
    data.dwReserved0 = 0xA000000C;  // a symbolic link
  StoreText(text, data.cFileName, MAX_PATH);
  return true;
}

bool Search::Next(WIN32_FIND_DATAW& data) {
  const std::lock_guard lock(mutex_);
  while (next_ < entries_.size()) {
    if (Describe(folder_, entries_[next_++].host, data)) return true;
  }
  return false;
}

DWORD FolderError(const std::string& folder, int error) {
  struct stat facts;
  if (error == ENOTDIR && stat(folder.c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode))
    return ERROR_DIRECTORY;
  if (error != ENOENT) return PathError(folder, error);
  return PathError(folder, error) == ERROR_INVALID_NAME ? ERROR_INVALID_NAME : ERROR_PATH_NOT_FOUND;
}

HANDLE Refuse(DWORD error) {
  SetLastError(error);
  return INVALID_HANDLE_VALUE;
}

}  // namespace

HANDLE FindFirstFileW(LPCWSTR pattern, WIN32_FIND_DATAW* data) {
  std::string host;
  if (!ToHost(pattern, host)) return INVALID_HANDLE_VALUE;
  if (data == nullptr) return Refuse(ERROR_INVALID_PARAMETER);
  if (host.back() == '/') return Refuse(ERROR_FILE_NOT_FOUND);
  std::string leaf = HostLeaf(host);
  if (leaf == "." || leaf == "..") {
    // The working folder or one above it: the entry goes by its real name.
    char* real = realpath(host.c_str(), nullptr);
    if (real == nullptr) return Refuse(PathError(host, errno));
    host = real;
    free(real);
    if (host == "/") return Refuse(ERROR_FILE_NOT_FOUND);
    leaf = HostLeaf(host);
  }

  const std::string folder = HostFolder(host);
  std::vector<FolderEntry> entries;
  const std::u16string name = LibraryName(leaf);
  if (HasWildcard(name)) {
    OwnedDescriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.IsOpen() || !ReadFolder(std::move(opened), NamePattern(name), entries))
      return Refuse(FolderError(folder, errno));
  } else {
    struct stat facts;
    if (lstat(host.c_str(), &facts) != 0) {
      const int error = errno;
      if (stat(folder.c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode)) return Refuse(ERROR_DIRECTORY);
      return Refuse(PathError(host, error));
    }
    entries.push_back({{}, leaf});
  }
  const auto search = std::make_shared<Search>(folder, std::move(entries));
  if (!search->Next(*data)) return Refuse(ERROR_FILE_NOT_FOUND);
  return AddHandle(search);
}

BOOL FindNextFileW(HANDLE handle, WIN32_FIND_DATAW* data) {
  const auto search = ObjectOf<Search>(handle);
  if (!search) return FALSE;
  if (data == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  return search->Next(*data) || Fail(ERROR_NO_MORE_FILES);
}

BOOL FindClose(HANDLE handle) {
  if (!ObjectOf<Search>(handle)) return FALSE;
  RemoveHandle(handle);
  return TRUE;
}
