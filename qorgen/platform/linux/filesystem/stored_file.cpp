#include "qorgen/platform/stored_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/file_object.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/shared_place.h"
#include "qorgen/platform/linux/owned_descriptor.h"

namespace qorgen::platform {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Names for new files are taken from the first on, so those left behind are met again. This many more are looked at
// behind the last one that was seen.
constexpr int kNames = 256;
constexpr int kAhead = 4;

struct SlotName {
  explicit SlotName(int slot) {
    std::snprintf(text, sizeof text, "~%X.qr~", static_cast<unsigned int>(slot));
  }
  char text[16];
};

// The lock of a new file: held by its writer, so that it tells a living one. It ends with the last descriptor.
enum class Lock { kHeld, kOther, kUnknown };
Lock TryLock(int descriptor) {
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return Lock::kHeld;
  return errno == EWOULDBLOCK ? Lock::kOther : Lock::kUnknown;
}

// Whether the entry is the file behind the descriptor, which is then described.
bool IsEntry(int folder, const char* name, int descriptor, struct stat& facts) {
  struct stat entry;
  return fstat(descriptor, &facts) == 0 && fstatat(folder, name, &entry, AT_SYMLINK_NOFOLLOW) == 0 &&
         entry.st_dev == facts.st_dev && entry.st_ino == facts.st_ino;
}

enum class Left { kNone, kAlive, kRemoved };

// Removes what a writer that lives no more left behind under the name.
Left RemoveLeft(int folder, const char* name) {
  const OwnedDescriptor file(openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.IsOpen()) return errno == ENOENT ? Left::kNone : Left::kAlive;
  struct stat facts;
  // The name may have gone to another file until the lock was there; then it is that one's writer's.
  if (TryLock(file.Get()) != Lock::kHeld || !IsEntry(folder, name, file.Get(), facts) ||
      !S_ISREG(facts.st_mode)) {
    return Left::kAlive;
  }
  return unlinkat(folder, name, 0) == 0 ? Left::kRemoved : Left::kAlive;
}

}  // namespace

HANDLE OpenStoredFile(LPCWSTR path) {
  std::string host;
  if (!ToHost(path, host)) return INVALID_HANDLE_VALUE;
  const auto refuse = [](DWORD error) {
    SetLastError(error);
    return INVALID_HANDLE_VALUE;
  };
  constexpr int kMode = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  OwnedDescriptor file;
  if (IsShared(host)) {
    const OwnedDescriptor folder = OpenFolder(HostFolder(host));
    if (folder.IsOpen()) file = OwnedDescriptor(openat(folder.Get(), HostLeaf(host).c_str(), kMode));
  } else {
    file = OwnedDescriptor(open(host.c_str(), kMode));
  }
  struct stat facts;
  if (!file.IsOpen() || fstat(file.Get(), &facts) != 0) return refuse(PathError(host, errno));
  if (!S_ISREG(facts.st_mode)) return refuse(ERROR_ACCESS_DENIED);
  auto share = FileShare::Join(facts, GENERIC_READ, kShareAll);
  if (share == nullptr) return refuse(ERROR_SHARING_VIOLATION);
  return AddHandle(std::make_shared<FileObject>(std::move(file), GENERIC_READ, std::move(share)));
}

struct FileReplacement::State {
  ~State() {
    if (file.IsOpen()) unlinkat(folder.Get(), SlotName(slot).text, 0);
  }

  // Makes the file of the first free name, for this writer alone. False with errno.
  [[nodiscard]] bool Make(mode_t permissions) {
    for (slot = 0; slot < kNames; ++slot) {
      const SlotName name(slot);
      do {
        OwnedDescriptor made(
            openat(folder.Get(), name.text, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, permissions));
        if (!made.IsOpen() && errno != EEXIST) return false;
        struct stat facts;
        // Another writer may have taken the file for one left behind before the lock was there.
        if (made.IsOpen() && TryLock(made.Get()) != Lock::kOther &&
            IsEntry(folder.Get(), name.text, made.Get(), facts)) {
          mode = facts.st_mode & 0777;
          file = std::move(made);
          return true;
        }
        if (made.IsOpen()) break;
      } while (RemoveLeft(folder.Get(), name.text) != Left::kAlive);
    }
    errno = EBUSY;
    return false;
  }

  void RemoveOthers() const {
    for (int other = slot + 1, last = slot + kAhead; other <= last && other < kNames; ++other) {
      if (RemoveLeft(folder.Get(), SlotName(other).text) != Left::kNone) last = other + kAhead;
    }
  }

  std::string host;
  std::string leaf;
  OwnedDescriptor folder;
  OwnedDescriptor file;
  int slot = 0;
  mode_t mode = 0;  // of the file in its place
};

FileReplacement::FileReplacement() = default;
FileReplacement::~FileReplacement() = default;

BOOL FileReplacement::Begin(LPCWSTR path) {
  auto state = std::make_unique<State>();
  if (!ToHost(path, state->host)) return FALSE;
  const std::string& host = state->host;
  if (host.back() == '/') return Fail(ERROR_INVALID_NAME);
  state->leaf = HostLeaf(host);
  state->folder = OpenFolder(HostFolder(host));
  const int folder = state->folder.Get();
  if (!state->folder.IsOpen()) return Fail(errno == ENOENT ? ERROR_PATH_NOT_FOUND : PathError(host, errno));
  struct stat target;
  const bool there = fstatat(folder, state->leaf.c_str(), &target, AT_SYMLINK_NOFOLLOW) == 0;
  if (!there && errno != ENOENT) return FailWithErrno(host);
  if (!there && !IsCreatable(host)) return Fail(ERROR_INVALID_NAME);
  const bool plain = there && S_ISREG(target.st_mode);
  if (there && (S_ISDIR(target.st_mode) || (plain && IsReadOnly(target)))) return Fail(ERROR_ACCESS_DENIED);

  // A new file gets what the process's mask leaves; whoever opens it before it is made private finds it empty.
  if (!state->Make(plain ? 0600 : 0666)) return FailWithErrno(host);
  state->RemoveOthers();
  const int file = state->file.Get();
  if (plain) {
    struct stat facts;
    state->mode = target.st_mode & 0777;
    // The permissions that one group had are not another's.
    if (fstat(file, &facts) == 0 && facts.st_gid != target.st_gid &&
        fchown(file, static_cast<uid_t>(-1), target.st_gid) != 0) {
      state->mode &= ~070u;
    }
  } else {
    struct stat facts;
    if (IsShared(host)) HandDown(folder, file);
    if (fstat(file, &facts) == 0) state->mode = facts.st_mode & 0777;
    if ((state->mode & 077) != 0 && fchmod(file, 0600) != 0 && errno != EPERM && errno != EOPNOTSUPP) {
      return FailWithErrno(host);
    }
  }
  state_ = std::move(state);
  return TRUE;
}

BOOL FileReplacement::Write(const void* bytes, std::size_t count) {
  const char* at = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t put = write(state_->file.Get(), at, count);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return FailWithErrno(state_->host);
    at += put;
    count -= static_cast<std::size_t>(put);
  }
  return TRUE;
}

BOOL FileReplacement::Commit(bool replaces) {
  State& state = *state_;
  const int folder = state.folder.Get();
  const SlotName name(state.slot);
  if (state.mode != 0600 && fchmod(state.file.Get(), state.mode) != 0 && errno != EPERM &&
      errno != EOPNOTSUPP) {
    return FailWithErrno(state.host);
  }
  // Closing any descriptor of it makes a network file system say what became of what was written; the lock stays.
  OwnedDescriptor last_word(fcntl(state.file.Get(), F_DUPFD_CLOEXEC, 0));
  if (!last_word.IsOpen() || !last_word.Close()) return FailWithErrno(state.host);
  struct stat target;
  if (fstatat(folder, state.leaf.c_str(), &target, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(target.st_mode) &&
      replaces && !MayUse(target, DELETE, kShareAll)) {
    return Fail(ERROR_SHARING_VIOLATION);
  }
  const char* const leaf = state.leaf.c_str();
  if (renameat2(folder, name.text, folder, leaf, replaces ? 0 : RENAME_NOREPLACE) == 0) {
    state.file = OwnedDescriptor();  // its name is no longer there to be removed
    return TRUE;
  }
  // Not every file system can rename without replacing; a second name does the same, and the first one goes.
  if (replaces || (errno != EINVAL && errno != ENOSYS)) return FailWithErrno(state.host);
  return linkat(folder, name.text, folder, leaf, 0) == 0 || FailWithErrno(state.host);
}

}  // namespace qorgen::platform
