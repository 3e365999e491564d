#include "qorgen/platform/linux/filesystem/sharing.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <unistd.h>
#include <utility>
#include <vector>

#include "qorgen/platform/filesystem.h"

namespace qorgen::platform {
namespace {

using FileId = std::pair<dev_t, ino_t>;

std::mutex& Mutex() {
  static std::mutex& mutex = *new std::mutex;  // handles may be closed after static objects are gone
  return mutex;
}

constexpr DWORD ShareFor(DWORD access) {
  return ((access & GENERIC_READ) != 0 ? FILE_SHARE_READ : 0) |
         ((access & GENERIC_WRITE) != 0 ? FILE_SHARE_WRITE : 0) |
         ((access & DELETE) != 0 ? FILE_SHARE_DELETE : 0);
}

// An opening that neither reads, writes nor deletes is in nobody's way.
constexpr bool Agree(DWORD access, DWORD share, DWORD otherAccess, DWORD otherShare) {
  const DWORD wanted = ShareFor(access);
  const DWORD held = ShareFor(otherAccess);
  return wanted == 0 || held == 0 || ((wanted & ~otherShare) == 0 && (held & ~share) == 0);
}

}  // namespace

struct FileShare::File {
  struct Range {
    const FileShare* owner;
    std::uint64_t first;
    std::uint64_t bytes;
    // Ends are compared as last bytes: a range may reach up to the last representable one.
    [[nodiscard]] bool Touches(std::uint64_t offset, std::uint64_t count) const {
      if (bytes == 0 || count == 0) return false;
      return offset <= first + std::min(bytes - 1, UINT64_MAX - first) &&
             first <= offset + std::min(count - 1, UINT64_MAX - offset);
    }
  };

  explicit File(FileId name) : id(name) {}

  FileId id;
  std::vector<const FileShare*> openings;
  std::vector<Range> locks;
  std::string doomed;  // the path to remove with the last opening
  std::atomic<bool> locked{false};

  static std::map<FileId, std::shared_ptr<File>>& All() {
    static auto& files = *new std::map<FileId, std::shared_ptr<File>>;
    return files;
  }
  [[nodiscard]] bool Admits(DWORD access, DWORD share) const {
    return std::all_of(openings.begin(), openings.end(), [&](const FileShare* other) {
      return Agree(access, share, other->access_, other->share_);
    });
  }
};

FileShare::FileShare(std::shared_ptr<File> file, DWORD access, DWORD share)
    : file_(std::move(file)), access_(access), share_(share) {}

std::unique_ptr<FileShare> FileShare::Join(const struct stat& file, DWORD access, DWORD share) {
  const FileId id(file.st_dev, file.st_ino);
  std::unique_ptr<FileShare> opening;  // outlives the lock, which its destructor takes
  const std::lock_guard lock(Mutex());
  std::shared_ptr<File>& known = File::All()[id];
  if (!known) known = std::make_shared<File>(id);
  if (!known->Admits(access, share)) return nullptr;
  opening.reset(new FileShare(known, access, share));
  known->openings.push_back(opening.get());
  return opening;
}

FileShare::~FileShare() {
  const std::lock_guard lock(Mutex());
  std::erase(file_->openings, this);
  std::erase_if(file_->locks, [this](const File::Range& range) { return range.owner == this; });
  file_->locked = !file_->locks.empty();
  if (!file_->openings.empty()) return;
  File::All().erase(file_->id);
  struct stat facts;
  if (!file_->doomed.empty() && lstat(file_->doomed.c_str(), &facts) == 0 &&
      FileId(facts.st_dev, facts.st_ino) == file_->id) {
    unlink(file_->doomed.c_str());
  }
}

bool FileShare::Lock(std::uint64_t offset, std::uint64_t bytes) {
  const std::lock_guard lock(Mutex());
  for (const File::Range& range : file_->locks) {
    if (range.Touches(offset, bytes)) return false;
  }
  file_->locks.push_back({this, offset, bytes});
  file_->locked = true;
  return true;
}

bool FileShare::Unlock(std::uint64_t offset, std::uint64_t bytes) {
  const std::lock_guard lock(Mutex());
  std::vector<File::Range>& locks = file_->locks;
  const auto found = std::find_if(locks.begin(), locks.end(), [&](const File::Range& range) {
    return range.owner == this && range.first == offset && range.bytes == bytes;
  });
  if (found == locks.end()) return false;
  locks.erase(found);
  file_->locked = !locks.empty();
  return true;
}

bool FileShare::IsLockedByOther(std::uint64_t offset, std::uint64_t bytes) const {
  if (!file_->locked) return false;
  const std::lock_guard lock(Mutex());
  return std::any_of(file_->locks.begin(), file_->locks.end(), [&](const File::Range& range) {
    return range.owner != this && range.Touches(offset, bytes);
  });
}

bool FileShare::HasLocks() const {
  return file_->locked;
}

void FileShare::DeleteWhenUnused(std::string host) {
  const std::lock_guard lock(Mutex());
  file_->doomed = std::move(host);
}

bool MayUse(const struct stat& file, DWORD access, DWORD share) {
  const std::unique_ptr<FileShare> opening = FileShare::Join(file, access, share);
  return opening != nullptr;
}

}  // namespace qorgen::platform
