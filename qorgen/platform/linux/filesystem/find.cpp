// Searches in folders.

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
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
#include "qorgen/platform/linux/filesystem/name_pattern.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/handle.h"

using namespace qorgen::platform;

namespace {

struct Entry {
  std::u16string upper;  // the order of the search
  std::string host;
};

class Search final : public HandleObject {
 public:
  Search(std::string folder, std::vector<Entry> entries)
      : folder_(std::move(folder)), entries_(std::move(entries)) {}
  [[nodiscard]] bool ClosesAsHandle() const override { return false; }

  // The next entry that is still there; false at the end.
  [[nodiscard]] bool Next(WIN32_FIND_DATAW& data);

 private:
  std::mutex mutex_;
  std::string folder_;
  std::vector<Entry> entries_;
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

struct FolderCloser {
  void operator()(DIR* stream) const {
    const int error = errno;
    closedir(stream);
    errno = error;
  }
};

// The names of `folder` that fit; false with errno.
bool ReadFolder(const std::string& folder, const NamePattern& pattern, std::vector<Entry>& entries) {
  const std::unique_ptr<DIR, FolderCloser> stream(opendir(folder.c_str()));
  if (stream == nullptr) return false;
  struct stat own;
  struct stat parent;
  // The root has no entries for itself and its parent.
  const bool root = fstat(dirfd(stream.get()), &own) == 0 &&
                    fstatat(dirfd(stream.get()), "..", &parent, 0) == 0 && own.st_dev == parent.st_dev &&
                    own.st_ino == parent.st_ino;
  errno = 0;
  while (const dirent* found = readdir(stream.get())) {
    const bool dots = std::strcmp(found->d_name, ".") == 0 || std::strcmp(found->d_name, "..") == 0;
    const std::u16string name = LibraryName(found->d_name);
    // An empty key puts the dots in front of every name.
    if (!(dots && root) && pattern.Matches(name))
      entries.push_back({dots ? u"" : UpperName(name), found->d_name});
    errno = 0;
  }
  if (errno != 0) return false;
  // Names that differ in case only are in the order of their bytes.
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    const int order = a.upper.compare(b.upper);
    return order != 0 ? order < 0 : a.host < b.host;
  });
  return true;
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
  std::vector<Entry> entries;
  const std::u16string name = LibraryName(leaf);
  if (HasWildcard(name)) {
    if (!ReadFolder(folder, NamePattern(name), entries)) return Refuse(FolderError(folder, errno));
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
