// Calls on open files: reading, writing, position, size, locks and times.

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/errno_map.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/facts.h"
#include "qorgen/platform/linux/filesystem/file_object.h"

using namespace qorgen::platform;

namespace {

constexpr DWORD kErrorNotLocked = 158;  // ERROR_NOT_LOCKED
// The kernel moves no more than this at once.
constexpr std::size_t kLargestTransfer = 0x7FFFF000;

constexpr std::uint64_t Join(DWORD low, DWORD high) {
  return std::uint64_t{high} << 32 | low;
}

// Whether another handle has locked what a transfer at the current position would touch.
bool IsBarred(const FileObject& file, DWORD bytes) {
  if (!file.Share().HasLocks()) return false;
  const off_t position = lseek(file.Descriptor(), 0, SEEK_CUR);
  return position >= 0 && file.Share().IsLockedByOther(static_cast<std::uint64_t>(position), bytes);
}

// Takes or gives up the same range towards other processes. A file open for reading only can't have an
// exclusive lock there and takes a shared one.
bool LockForOthers(const FileObject& file, std::uint64_t offset, std::uint64_t bytes, bool take) {
  constexpr auto kEnd = static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
  if (bytes == 0 || offset > kEnd) return true;
  struct flock range = {};
  range.l_type = static_cast<short>(!take ? F_UNLCK : file.MayWrite() ? F_WRLCK : F_RDLCK);
  range.l_whence = SEEK_SET;
  range.l_start = static_cast<off_t>(offset);
  range.l_len = bytes > kEnd - offset ? 0 : static_cast<off_t>(bytes);
  // File systems without locks are no reason to fail: the lock holds inside this process.
  return fcntl(file.Descriptor(), F_OFD_SETLK, &range) == 0 || (errno != EAGAIN && errno != EACCES);
}

}  // namespace

BOOL ReadFile(HANDLE handle, void* buffer, DWORD bytes, DWORD* read, OVERLAPPED* overlapped) {
  if (read != nullptr) *read = 0;
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  if (overlapped != nullptr) return Fail(ERROR_INVALID_PARAMETER);
  if (!file->MayRead()) return Fail(ERROR_ACCESS_DENIED);
  if (buffer == nullptr && bytes != 0) return Fail(ERROR_NOACCESS);
  if (IsBarred(*file, bytes)) return Fail(ERROR_LOCK_VIOLATION);
  DWORD done = 0;
  while (done < bytes) {
    const std::size_t wanted = std::min<std::size_t>(bytes - done, kLargestTransfer);
    const ssize_t got = ::read(file->Descriptor(), static_cast<BYTE*>(buffer) + done, wanted);
    if (got < 0 && errno == EINTR) continue;
    // What was read before a failure is the caller's; the failure comes again with the next call.
    if (got < 0 && done == 0) return Fail(Win32ErrorFromErrno(errno));
    if (got <= 0) break;
    done += static_cast<DWORD>(got);
    // Only a full transfer of the largest size says that there may be more: pipes give what they have.
    if (static_cast<std::size_t>(got) < kLargestTransfer) break;
  }
  if (read != nullptr) *read = done;
  return TRUE;
}

BOOL WriteFile(HANDLE handle, const void* buffer, DWORD bytes, DWORD* written, OVERLAPPED* overlapped) {
  if (written != nullptr) *written = 0;
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  if (overlapped != nullptr) return Fail(ERROR_INVALID_PARAMETER);
  if (!file->MayWrite()) return Fail(ERROR_ACCESS_DENIED);
  if (buffer == nullptr && bytes != 0) return Fail(ERROR_NOACCESS);
  if (IsBarred(*file, bytes)) return Fail(ERROR_LOCK_VIOLATION);
  DWORD done = 0;
  while (done < bytes) {
    const std::size_t wanted = std::min<std::size_t>(bytes - done, kLargestTransfer);
    const ssize_t put = ::write(file->Descriptor(), static_cast<const BYTE*>(buffer) + done, wanted);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) {
      const DWORD error = Win32ErrorFromErrno(errno);
      if (written != nullptr) *written = done;
      return Fail(error);
    }
    done += static_cast<DWORD>(put);
  }
  if (written != nullptr) *written = done;
  return TRUE;
}

BOOL SetFilePointerEx(HANDLE handle, LARGE_INTEGER distance, LARGE_INTEGER* position, DWORD method) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  if (method > FILE_END) return Fail(ERROR_INVALID_PARAMETER);
  constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
  const off_t reached = lseek(file->Descriptor(), distance.QuadPart, kWhence[method]);
  if (reached < 0) {
    // The same errno stands for a place before the start and for one that no file can reach.
    const bool before = errno == EINVAL && distance.QuadPart < 0;
    return Fail(before                                  ? ERROR_NEGATIVE_SEEK
                : errno == EINVAL || errno == EOVERFLOW ? ERROR_INVALID_PARAMETER
                                                        : Win32ErrorFromErrno(errno));
  }
  if (position != nullptr) position->QuadPart = reached;
  return TRUE;
}

BOOL GetFileSizeEx(HANDLE handle, LARGE_INTEGER* size) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  if (size == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  struct stat facts;
  if (fstat(file->Descriptor(), &facts) != 0) return Fail(Win32ErrorFromErrno(errno));
  size->QuadPart = facts.st_size;
  return TRUE;
}

BOOL SetEndOfFile(HANDLE handle) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  if (!file->MayWrite()) return Fail(ERROR_ACCESS_DENIED);
  const off_t position = lseek(file->Descriptor(), 0, SEEK_CUR);
  if (position < 0 || ftruncate(file->Descriptor(), position) != 0) return Fail(Win32ErrorFromErrno(errno));
  return TRUE;
}

BOOL FlushFileBuffers(HANDLE handle) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  if (!file->MayWrite()) return Fail(ERROR_ACCESS_DENIED);
  // Pipes and devices have nothing to bring to a disk, and say EINVAL.
  if (fsync(file->Descriptor()) != 0 && errno != EINVAL) return Fail(Win32ErrorFromErrno(errno));
  return TRUE;
}

BOOL LockFile(HANDLE handle, DWORD offsetLow, DWORD offsetHigh, DWORD bytesLow, DWORD bytesHigh) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  const std::uint64_t offset = Join(offsetLow, offsetHigh);
  const std::uint64_t bytes = Join(bytesLow, bytesHigh);
  if (!file->Share().Lock(offset, bytes)) return Fail(ERROR_LOCK_VIOLATION);
  if (LockForOthers(*file, offset, bytes, true)) return TRUE;
  (void)file->Share().Unlock(offset, bytes);
  return Fail(ERROR_LOCK_VIOLATION);
}

BOOL UnlockFile(HANDLE handle, DWORD offsetLow, DWORD offsetHigh, DWORD bytesLow, DWORD bytesHigh) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  const std::uint64_t offset = Join(offsetLow, offsetHigh);
  const std::uint64_t bytes = Join(bytesLow, bytesHigh);
  if (!file->Share().Unlock(offset, bytes)) return Fail(kErrorNotLocked);
  LockForOthers(*file, offset, bytes, false);
  return TRUE;
}

BOOL GetFileTime(HANDLE handle, FILETIME* creation, FILETIME* access, FILETIME* write) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  FileFacts facts;
  if (!ReadFacts(file->Descriptor(), facts)) return Fail(Win32ErrorFromErrno(errno));
  if (creation != nullptr) *creation = facts.creation;
  if (access != nullptr) *access = facts.access;
  if (write != nullptr) *write = facts.write;
  return TRUE;
}

BOOL SetFileTime(HANDLE handle, const FILETIME*, const FILETIME* access, const FILETIME* write) {
  const auto file = ObjectOf<FileObject>(handle);
  if (!file) return FALSE;
  const struct timespec times[2] = {HostTimeOf(access), HostTimeOf(write)};
  if (futimens(file->Descriptor(), times) != 0) return Fail(Win32ErrorFromErrno(errno));
  return TRUE;
}
