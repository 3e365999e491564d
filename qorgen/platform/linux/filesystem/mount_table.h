#pragma once

// What is mounted where. Any thread may call.

#include <string>
#include <vector>

#include "qorgen/platform/types.h"

namespace qorgen::platform {

struct Mount {
  std::string source;  // "/dev/sdb1", "server:/export"
  std::string folder;  // where it is seen
  std::string type;    // "ext4", "nfs4"
};

// The mounts that a table in the format of /proc/self/mounts names, in its order, each folder with the mount
// that is visible there; empty when it can't be read.
[[nodiscard]] std::vector<Mount> ReadMountTable(const char* file);

// DRIVE_FIXED, DRIVE_REMOVABLE, DRIVE_REMOTE, DRIVE_CDROM or DRIVE_RAMDISK.
[[nodiscard]] UINT KindOf(const Mount& mount);

// Whether it is a volume that a user knows of: a disk or a network volume, mounted outside the folders that
// belong to the system itself.
[[nodiscard]] bool IsUserVolume(const Mount& mount);

}  // namespace qorgen::platform
