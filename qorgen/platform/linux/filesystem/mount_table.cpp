#include "qorgen/platform/linux/filesystem/mount_table.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <mntent.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/filesystem.h"

namespace qorgen::platform {
namespace {

constexpr std::string_view kRemote[] = {
    "9p",    "afs",  "ceph",  "cifs",        "coda",           "davfs",       "nfs",       "nfs4",
    "ncpfs", "smb3", "smbfs", "fuse.davfs2", "fuse.glusterfs", "fuse.rclone", "fuse.s3fs", "fuse.sshfs"};
constexpr std::string_view kDisc[] = {"iso9660", "udf"};
constexpr std::string_view kMemory[] = {"ramfs", "tmpfs"};

// Below these the system keeps its own mounts; what a user plugs in or mounts lies in /media, /mnt,
// /run/media, /home or a folder of its own.
constexpr std::string_view kSystemFolders[] = {"/boot", "/dev", "/etc", "/proc", "/run",
                                               "/snap", "/sys", "/tmp", "/usr",  "/var"};

template <std::size_t N>
bool Contains(const std::string_view (&list)[N], std::string_view text) {
  return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

bool IsBelow(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

// The kernel's word on the disk that a partition belongs to.
bool IsOnRemovableDisk(const std::string& source) {
  struct stat facts;
  if (stat(source.c_str(), &facts) != 0 || !S_ISBLK(facts.st_mode)) return false;
  const std::string device =
      "/sys/dev/block/" + std::to_string(major(facts.st_rdev)) + ':' + std::to_string(minor(facts.st_rdev));
  for (const char* place : {"/removable", "/../removable"}) {
    const OwnedStream file(std::fopen((device + place).c_str(), "re"));
    if (file) return std::fgetc(file.get()) == '1';
  }
  return false;
}

}  // namespace

std::vector<Mount> ReadMountTable(const char* file) {
  std::vector<Mount> mounts;
  std::FILE* table = setmntent(file, "re");
  if (table == nullptr) return mounts;
  struct mntent entry;
  char text[8192];
  while (getmntent_r(table, &entry, text, sizeof text) != nullptr) {
    Mount mount{entry.mnt_fsname, entry.mnt_dir, entry.mnt_type};
    // A later mount hides an earlier one at the same place.
    const auto same = std::find_if(mounts.begin(), mounts.end(),
                                   [&](const Mount& other) { return other.folder == mount.folder; });
    if (same != mounts.end()) {
      *same = std::move(mount);
    } else {
      mounts.push_back(std::move(mount));
    }
  }
  endmntent(table);
  return mounts;
}

UINT KindOf(const Mount& mount) {
  if (mount.folder == "/") return DRIVE_FIXED;
  if (Contains(kRemote, mount.type)) return DRIVE_REMOTE;
  if (Contains(kDisc, mount.type)) return DRIVE_CDROM;
  if (Contains(kMemory, mount.type)) return DRIVE_RAMDISK;
  return IsOnRemovableDisk(mount.source) ? DRIVE_REMOVABLE : DRIVE_FIXED;
}

bool IsUserVolume(const Mount& mount) {
  if (mount.folder == "/") return false;  // that is C:\ already
  const bool disk = mount.source.starts_with("/dev/") || Contains(kRemote, mount.type);
  if (!disk || mount.type == "squashfs") return false;
  if (IsBelow(mount.folder, "/run/media")) return true;
  return std::none_of(std::begin(kSystemFolders), std::end(kSystemFolders),
                      [&](std::string_view folder) { return IsBelow(mount.folder, folder); });
}

}  // namespace qorgen::platform
