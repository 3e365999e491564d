// Moving and copying files.

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/errno_map.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/sharing.h"
#include "qorgen/platform/linux/owned_descriptor.h"

using namespace qorgen::platform;

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool IsSame(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Everything from one descriptor to the other; false with errno.
bool CopyContent(int source, int destination) {
  constexpr std::size_t kBlock = std::size_t{256} * 1024;
  const std::unique_ptr<char[]> block(new char[kBlock]);
  for (;;) {
    const ssize_t got = read(source, block.get(), kBlock);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    for (ssize_t done = 0; done < got;) {
      const ssize_t put = write(destination, block.get() + done, static_cast<std::size_t>(got - done));
      if (put < 0 && errno == EINTR) continue;
      if (put < 0) return false;
      done += put;
    }
  }
}

BOOL Copy(const std::string& from, const std::string& to, bool failIfExists) {
  struct stat source;
  struct stat target;
  if (stat(from.c_str(), &source) != 0) return FailWithErrno(from);
  if (S_ISDIR(source.st_mode)) return Fail(ERROR_ACCESS_DENIED);
  const bool there = stat(to.c_str(), &target) == 0;
  if (there) {
    if (failIfExists) return Fail(ERROR_FILE_EXISTS);
    if (IsSame(source, target)) return Fail(ERROR_SHARING_VIOLATION);
    if (S_ISDIR(target.st_mode) || IsReadOnly(target)) return Fail(ERROR_ACCESS_DENIED);
  } else if (errno != ENOENT) {
    return FailWithErrno(to);
  } else if (!IsCreatable(to) || to.back() == '/') {
    const DWORD error = PathError(to, ENOENT);
    return Fail(error == ERROR_PATH_NOT_FOUND ? error : ERROR_INVALID_NAME);
  }

  const OwnedDescriptor in(open(from.c_str(), O_RDONLY | O_CLOEXEC));
  if (!in.IsOpen()) return FailWithErrno(from);
  const auto reading = FileShare::Join(source, GENERIC_READ, kShareAll);
  if (!reading) return Fail(ERROR_SHARING_VIOLATION);
  const mode_t permissions = source.st_mode & 0777;
  OwnedDescriptor out(open(to.c_str(), O_WRONLY | O_CLOEXEC | (there ? 0 : O_CREAT | O_EXCL), permissions));
  if (!out.IsOpen()) return FailWithErrno(to);
  // The source's also where the process's mask says otherwise, and before the first byte. A file that was there keeps
  // its own.
  if (!there) (void)!fchmod(out.Get(), permissions);
  if (fstat(out.Get(), &target) != 0) return FailWithErrno(to);
  const auto writing = FileShare::Join(target, GENERIC_WRITE, 0);
  if (!writing) return Fail(ERROR_SHARING_VIOLATION);
  const bool ordinary = S_ISREG(target.st_mode);  // not a device, which has no length and must stay
  struct stat facts;
  const bool copied = (!ordinary || ftruncate(out.Get(), 0) == 0) && CopyContent(in.Get(), out.Get()) &&
                      fstat(in.Get(), &facts) == 0;
  if (copied && ordinary) {
    // The time of the last change comes along; a file system that has no room for it is no failure.
    const struct timespec times[2] = {{0, UTIME_OMIT}, facts.st_mtim};
    (void)!futimens(out.Get(), times);
  }
  if (copied && out.Close()) return TRUE;
  // A part of a file must not pass for the whole.
  const DWORD error = Win32ErrorFromErrno(errno);
  if (ordinary) unlink(to.c_str());
  return Fail(error);
}

// rename, or a link and an unlink where the file system can't rename without replacing.
bool Rename(const std::string& from, const std::string& to, bool replaces) {
  if (replaces) return rename(from.c_str(), to.c_str()) == 0;
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  struct stat facts;
  if (lstat(to.c_str(), &facts) == 0) {
    errno = EEXIST;
    return false;
  }
  return rename(from.c_str(), to.c_str()) == 0;
}

// Over the border of a file system a file is copied and removed; folders stay.
BOOL MoveAcross(const std::string& from, const std::string& to, const struct stat& source, DWORD flags) {
  if ((flags & MOVEFILE_COPY_ALLOWED) == 0 || !S_ISREG(source.st_mode)) return Fail(ERROR_NOT_SAME_DEVICE);
  if (!Copy(from, to, (flags & MOVEFILE_REPLACE_EXISTING) == 0)) {
    if (GetLastError() == ERROR_FILE_EXISTS) SetLastError(ERROR_ALREADY_EXISTS);
    return FALSE;
  }
  return unlink(from.c_str()) == 0 || FailWithErrno(from);
}

}  // namespace

BOOL CopyFileW(LPCWSTR source, LPCWSTR destination, BOOL failIfExists) {
  std::string from;
  std::string to;
  return ToHost(source, from) && ToHost(destination, to) && Copy(from, to, failIfExists != FALSE);
}

BOOL MoveFileW(LPCWSTR source, LPCWSTR destination) {
  return MoveFileExW(source, destination, MOVEFILE_COPY_ALLOWED);
}

BOOL MoveFileExW(LPCWSTR source, LPCWSTR destination, DWORD flags) {
  std::string from;
  std::string to;
  if (!ToHost(source, from) || !ToHost(destination, to)) return FALSE;
  constexpr DWORD kKnown = MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH;
  if ((flags & ~kKnown) != 0) return Fail(ERROR_NOT_SUPPORTED);
  from = WithoutSeparators(from);
  to = WithoutSeparators(to);

  struct stat facts;
  if (lstat(from.c_str(), &facts) != 0) return FailWithErrno(from);
  if (S_ISREG(facts.st_mode) && !MayUse(facts, DELETE, kShareAll)) return Fail(ERROR_SHARING_VIOLATION);
  struct stat target;
  const bool there = lstat(to.c_str(), &target) == 0;
  if (there && from == to) return TRUE;
  if (there && (flags & MOVEFILE_REPLACE_EXISTING) == 0) return Fail(ERROR_ALREADY_EXISTS);
  if (there) {
    if (S_ISDIR(target.st_mode) || S_ISDIR(facts.st_mode) ||
        (S_ISREG(target.st_mode) && IsReadOnly(target))) {
      return Fail(ERROR_ACCESS_DENIED);
    }
    if (!IsSame(facts, target) && !MayUse(target, DELETE, kShareAll)) return Fail(ERROR_ACCESS_DENIED);
    // Two names of one file: renaming would do nothing at all.
    if (IsSame(facts, target)) return unlink(from.c_str()) == 0 || FailWithErrno(from);
  } else if (!IsCreatable(to)) {
    const DWORD error = PathError(to, ENOENT);
    return Fail(error);
  }

  if (!Rename(from, to, (flags & MOVEFILE_REPLACE_EXISTING) != 0)) {
    if (errno == EXDEV) return MoveAcross(from, to, facts, flags);
    if (errno == EEXIST) return Fail(ERROR_ALREADY_EXISTS);
    if (errno == EINVAL) return Fail(ERROR_SHARING_VIOLATION);  // a folder into itself
    // The source was there a moment ago, so a missing part belongs to the new name.
    return Fail(errno == ENOENT ? ERROR_PATH_NOT_FOUND : PathError(to, errno));
  }
  if ((flags & MOVEFILE_WRITE_THROUGH) != 0) {
    const OwnedDescriptor folder(open(HostFolder(to).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen()) fsync(folder.Get());
  }
  return TRUE;
}
