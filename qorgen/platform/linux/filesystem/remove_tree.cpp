#include "qorgen/platform/remove_tree.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/folder_entries.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/shared_place.h"
#include "qorgen/platform/linux/filesystem/sharing.h"
#include "qorgen/platform/linux/owned_descriptor.h"

namespace qorgen::platform {
namespace {

// A folder on the way down: the name that it was entered by, and what is still to be removed from it, last first.
struct Level {
  std::string name;
  dev_t device;
  ino_t number;
  std::vector<FolderEntry> entries;
};

// The walk stands in one folder, reached by its descriptor. The way back up is "..", and taken only when it leads to the
// folder that the walk came from.
class Walk {
 public:
  explicit Walk(const OwnedDescriptor& top) : top_(top) {}

  // Removes the folder `name` of the top. False with errno.
  [[nodiscard]] bool Remove(const std::string& name) {
    if (!Enter(top_.Get(), name)) return false;
    while (!levels_.empty()) {
      std::vector<FolderEntry>& entries = levels_.back().entries;
      if (entries.empty()) {
        if (!Leave()) return false;
        continue;
      }
      const std::string entry = std::move(entries.back().host);
      entries.pop_back();
      if (entry == "." || entry == "..") continue;
      if (!RemoveOrEnter(entry)) return false;
    }
    return true;
  }

 private:
  bool Enter(int parent, const std::string& name) {
    OwnedDescriptor folder(openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat facts;
    if (!folder.IsOpen() || fstat(folder.Get(), &facts) != 0) return false;
    // The mark of read-only would keep the entries from being removed.
    if (IsReadOnly(facts)) (void)!fchmod(folder.Get(), (facts.st_mode & 07777) | S_IWUSR);
    Level level{name, facts.st_dev, facts.st_ino, {}};
    OwnedDescriptor listed(fcntl(folder.Get(), F_DUPFD_CLOEXEC, 0));
    if (!listed.IsOpen() || !ReadFolder(std::move(listed), NamePattern(u"*"), level.entries)) return false;
    std::reverse(level.entries.begin(), level.entries.end());
    levels_.push_back(std::move(level));
    here_ = std::move(folder);
    return true;
  }

  bool RemoveOrEnter(const std::string& entry) {
    struct stat facts;
    if (fstatat(here_.Get(), entry.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) return true;
    if (S_ISDIR(facts.st_mode)) {
      if (Enter(here_.Get(), entry)) return true;
      if (errno != ENOTDIR && errno != ELOOP) return false;
      // No folder any more.
    } else if (S_ISREG(facts.st_mode) &&
               !MayUse(facts, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE)) {
      return true;
    }
    // What stays shows when its folder is to go.
    (void)!unlinkat(here_.Get(), entry.c_str(), 0);
    return true;
  }

  bool Leave() {
    const std::string name = std::move(levels_.back().name);
    levels_.pop_back();
    if (levels_.empty()) return unlinkat(top_.Get(), name.c_str(), AT_REMOVEDIR) == 0;
    OwnedDescriptor parent(openat(here_.Get(), "..", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat facts;
    if (!parent.IsOpen() || fstat(parent.Get(), &facts) != 0) return false;
    if (facts.st_dev != levels_.back().device || facts.st_ino != levels_.back().number) {
      errno = EBUSY;  // moved elsewhere meanwhile
      return false;
    }
    here_ = std::move(parent);
    return unlinkat(here_.Get(), name.c_str(), AT_REMOVEDIR) == 0;
  }

  const OwnedDescriptor& top_;
  OwnedDescriptor here_;
  std::vector<Level> levels_;
};

}  // namespace

BOOL RemoveTree(LPCWSTR path) {
  std::string host;
  if (!ToHost(path, host)) return FALSE;
  host = WithoutSeparators(host);
  if (host == "/") return Fail(ERROR_ACCESS_DENIED);
  const OwnedDescriptor parent = OpenFolder(HostFolder(host));
  const std::string leaf = HostLeaf(host);
  struct stat facts;
  if (!parent.IsOpen() || fstatat(parent.Get(), leaf.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
    return FailWithErrno(host);
  }
  if (S_ISLNK(facts.st_mode)) return unlinkat(parent.Get(), leaf.c_str(), 0) == 0 || FailWithErrno(host);
  if (!S_ISDIR(facts.st_mode)) return Fail(ERROR_DIRECTORY);
  if (Walk(parent).Remove(leaf)) return TRUE;
  if (errno == EEXIST || errno == ENOTEMPTY) return Fail(ERROR_DIR_NOT_EMPTY);
  if (errno == EBUSY || errno == EINVAL) return Fail(ERROR_SHARING_VIOLATION);
  return FailWithErrno(host);
}

}  // namespace qorgen::platform
