#include "qorgen/platform/linux/filesystem/folder_entries.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

#include "qorgen/platform/linux/filesystem/path_mapping.h"

namespace qorgen::platform {
namespace {

struct FolderCloser {
  void operator()(DIR* stream) const {
    const int error = errno;
    closedir(stream);
    errno = error;
  }
};

}  // namespace

bool ReadFolder(OwnedDescriptor folder, const NamePattern& pattern, std::vector<FolderEntry>& entries) {
  const std::unique_ptr<DIR, FolderCloser> stream(fdopendir(folder.Get()));
  if (stream == nullptr) return false;
  static_cast<void>(folder.Release());
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
  std::sort(entries.begin(), entries.end(), [](const FolderEntry& a, const FolderEntry& b) {
    const int order = a.upper.compare(b.upper);
    return order != 0 ? order < 0 : a.host < b.host;
  });
  return true;
}

}  // namespace qorgen::platform
