#pragma once

// Who in this process has which file open, and which byte ranges are locked. The host's kernel knows neither
// share modes nor mandatory locks, so they hold between the handles of this process. Any thread may call.

#include <cstdint>
#include <memory>
#include <string>
#include <sys/stat.h>

#include "qorgen/platform/types.h"

namespace qorgen::platform {

// One opening of one file; gives its share and its locks back when destroyed.
class FileShare {
 public:
  // Joins the others who have the file open. Null when their share modes and ours don't agree. `access` is
  // made of GENERIC_READ, GENERIC_WRITE and DELETE.
  [[nodiscard]] static std::unique_ptr<FileShare> Join(const struct stat& file, DWORD access, DWORD share);
  ~FileShare();
  FileShare(const FileShare&) = delete;
  FileShare& operator=(const FileShare&) = delete;

  // False when the range touches one that is locked already, by whomever.
  [[nodiscard]] bool Lock(std::uint64_t offset, std::uint64_t bytes);
  // False unless this opening locked exactly this range.
  [[nodiscard]] bool Unlock(std::uint64_t offset, std::uint64_t bytes);
  // Whether another opening has locked a part of the range. Cheap while nothing is locked.
  [[nodiscard]] bool IsLockedByOther(std::uint64_t offset, std::uint64_t bytes) const;
  // Whether anything of the file is locked.
  [[nodiscard]] bool HasLocks() const;
  // Removes the file at the absolute host path `host` as soon as nobody has it open any more, if it is still
  // the same file.
  void DeleteWhenUnused(std::string host);

 private:
  struct File;
  FileShare(std::shared_ptr<File> file, DWORD access, DWORD share);

  std::shared_ptr<File> file_;
  DWORD access_;
  DWORD share_;
};

// Whether a file that is not to be opened may be used in this way: removed or renamed with DELETE.
[[nodiscard]] bool MayUse(const struct stat& file, DWORD access, DWORD share);

}  // namespace qorgen::platform
