// Entries of folders: making, removing and marking them.

#include <cerrno>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/facts.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/shared_place.h"
#include "qorgen/platform/linux/filesystem/sharing.h"

using namespace qorgen::platform;

namespace {

bool IsLink(const std::string& host) {
  struct stat own;
  return lstat(host.c_str(), &own) == 0 && S_ISLNK(own.st_mode);
}

// The entry, or where a link leads nowhere the link itself.
bool Look(const std::string& host, struct stat& facts) {
  return stat(host.c_str(), &facts) == 0 || lstat(host.c_str(), &facts) == 0;
}

}  // namespace

BOOL CreateDirectoryW(LPCWSTR path, SECURITY_ATTRIBUTES*) {
  std::string host;
  if (!ToHost(path, host)) return FALSE;
  struct stat facts;
  if (stat(host.c_str(), &facts) == 0) {
    return Fail(WithoutSeparators(host) == "/" ? ERROR_ACCESS_DENIED : ERROR_ALREADY_EXISTS);
  }
  if (!IsCreatable(host)) return Fail(PathError(host, ENOENT));
  return MakeFolder(host) || FailWithErrno(host);
}

BOOL RemoveDirectoryW(LPCWSTR path) {
  std::string host;
  if (!ToHost(path, host)) return FALSE;
  host = WithoutSeparators(host);
  struct stat facts;
  if (!Look(host, facts)) return FailWithErrno(host);
  if (!S_ISDIR(facts.st_mode)) return Fail(ERROR_DIRECTORY);
  if (IsLink(host)) return unlink(host.c_str()) == 0 || FailWithErrno(host);
  if (IsReadOnly(facts)) return Fail(ERROR_ACCESS_DENIED);
  if (rmdir(host.c_str()) == 0) return TRUE;
  // Two errno values say that a folder isn't empty; "." and the root are in use.
  if (errno == EEXIST || errno == ENOTEMPTY) return Fail(ERROR_DIR_NOT_EMPTY);
  if (errno == EBUSY || errno == EINVAL) return Fail(ERROR_SHARING_VIOLATION);
  return FailWithErrno(host);
}

BOOL DeleteFileW(LPCWSTR path) {
  std::string host;
  if (!ToHost(path, host)) return FALSE;
  struct stat facts;
  if (!Look(host, facts)) return FailWithErrno(host);
  // Devices are no files on the platform; here they, and the names that the host gives them, must not go with a failed
  // write to them.
  const bool link = IsLink(host);
  const bool device = S_ISCHR(facts.st_mode) || S_ISBLK(facts.st_mode);
  if (S_ISDIR(facts.st_mode) || (device && !link) || (link && HostFolder(host) == "/dev")) {
    return Fail(ERROR_ACCESS_DENIED);
  }
  if (!link) {
    if (IsReadOnly(facts)) return Fail(ERROR_ACCESS_DENIED);
    if (!MayUse(facts, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE)) {
      return Fail(ERROR_SHARING_VIOLATION);
    }
  }
  return unlink(host.c_str()) == 0 || FailWithErrno(host);
}

DWORD GetFileAttributesW(LPCWSTR path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return GetFileAttributesExW(path, GetFileExInfoStandard, &data) ? data.dwFileAttributes
                                                                  : INVALID_FILE_ATTRIBUTES;
}

BOOL GetFileAttributesExW(LPCWSTR path, GET_FILEEX_INFO_LEVELS level, void* data) {
  std::string host;
  if (!ToHost(path, host)) return FALSE;
  if (level != GetFileExInfoStandard || data == nullptr) return Fail(ERROR_INVALID_PARAMETER);
  FileFacts facts;
  if (!ReadFacts(host, false, facts)) return FailWithErrno(host);
  *static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data) = {facts.attributes,
                                                    facts.creation,
                                                    facts.access,
                                                    facts.write,
                                                    static_cast<DWORD>(facts.size >> 32),
                                                    static_cast<DWORD>(facts.size)};
  return TRUE;
}

BOOL SetFileAttributesW(LPCWSTR path, DWORD attributes) {
  std::string host;
  if (!ToHost(path, host)) return FALSE;
  struct stat facts;
  if (lstat(host.c_str(), &facts) != 0) return FailWithErrno(host);
  if (S_ISLNK(facts.st_mode)) return TRUE;  // has no permissions, and so no marks, of its own
  const mode_t before = facts.st_mode & 07777;
  const mode_t after = (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? before & ~0222u : before | S_IWUSR;
  // Not asking for what is there already lets the owner's group, which can't change permissions, pass.
  return ((attributes & FILE_ATTRIBUTE_READONLY) != 0) == IsReadOnly(facts) ||
         chmod(host.c_str(), after) == 0 || FailWithErrno(host);
}
