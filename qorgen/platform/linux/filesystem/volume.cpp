// Volumes, and the two calls on the process that go with file work.

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/mount_table.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"

using namespace qorgen::platform;

namespace {

constexpr char kMountTable[] = "/proc/self/mounts";

bool IsDriveC(LPCWSTR root) {
  return root != nullptr && (root[0] | 0x20) == 'c' && root[1] == L':' &&
         (root[2] == 0 || (IsSeparator(root[2]) && root[3] == 0));
}

ULONGLONG Bytes(ULONGLONG blocks, ULONGLONG size) {
  ULONGLONG bytes = 0;
  return __builtin_mul_overflow(blocks, size, &bytes) ? UINT64_MAX : bytes;
}

bool IsTraced() {
  const OwnedStream status(std::fopen("/proc/self/status", "re"));
  if (status == nullptr) return false;
  char line[256];
  bool traced = false;
  constexpr char kTracer[] = "TracerPid:";
  while (std::fgets(line, sizeof line, status.get()) != nullptr) {
    if (std::strncmp(line, kTracer, sizeof kTracer - 1) == 0)
      traced = std::atoi(line + sizeof kTracer - 1) != 0;
  }
  return traced;
}

}  // namespace

UINT GetDriveTypeW(LPCWSTR root) {
  if (root == nullptr || IsDriveC(root)) return DRIVE_FIXED;
  std::string host = WithoutSeparators(HostPath(root));
  if (host.empty() || host.front() != '/') return DRIVE_NO_ROOT_DIR;
  if (host == "/") return DRIVE_FIXED;
  for (const Mount& mount : ReadMountTable(kMountTable)) {
    if (mount.folder == host) return KindOf(mount);
  }
  return DRIVE_NO_ROOT_DIR;
}

DWORD GetLogicalDriveStringsW(DWORD capacity, LPWSTR buffer) {
  std::u16string list = u"C:\\";
  list += u'\0';
  for (const Mount& mount : ReadMountTable(kMountTable)) {
    if (!IsUserVolume(mount)) continue;
    const std::u16string root = LibraryPath(mount.folder) + u'\\';
    // The list ends in two terminators, of which StoreText adds the second.
    if (list.size() + root.size() + 2 <= MAX_PATH) (list += root) += u'\0';
  }
  return StoreText(list, buffer, capacity);
}

BOOL GetDiskFreeSpaceExW(LPCWSTR folder, ULARGE_INTEGER* available, ULARGE_INTEGER* total,
                         ULARGE_INTEGER* free) {
  std::string host;
  if (folder == nullptr) {
    host.push_back('/');
  } else if (!ToHost(folder, host)) {
    return FALSE;
  }
  struct stat facts;
  struct statvfs space;
  if (stat(host.c_str(), &facts) != 0) return FailWithErrno(host);
  if (!S_ISDIR(facts.st_mode)) return Fail(ERROR_DIRECTORY);
  if (statvfs(host.c_str(), &space) != 0) return FailWithErrno(host);
  if (available != nullptr) available->QuadPart = Bytes(space.f_bavail, space.f_frsize);
  if (total != nullptr) total->QuadPart = Bytes(space.f_blocks, space.f_frsize);
  if (free != nullptr) free->QuadPart = Bytes(space.f_bfree, space.f_frsize);
  return TRUE;
}

UINT SetErrorMode(UINT mode) {
  static std::atomic<UINT> current{0};
  return current.exchange(mode);
}

void OutputDebugStringW(LPCWSTR text) {
  if (text == nullptr || !IsTraced()) return;
  const std::string line = HostName(TextOf(text));
  std::fwrite(line.data(), 1, line.size(), stderr);
}
