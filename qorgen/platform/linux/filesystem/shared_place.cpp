#include "qorgen/platform/linux/filesystem/shared_place.h"

#include <fcntl.h>
#include <string_view>

#include "qorgen/platform/linux/filesystem/path_mapping.h"

namespace qorgen::platform {
namespace {

std::string& Place() {
  static std::string& place = *new std::string("/var/lib/qorgen");  // may be asked for at exit
  return place;
}

}  // namespace

const std::string& SharedPlace() {
  return Place();
}

void SetSharedPlace(std::string host) {
  Place() = std::move(host);
}

bool IsShared(const std::string& host) {
  const std::string& place = Place();
  return host.size() > place.size() && host.starts_with(place) && host[place.size()] == '/';
}

OwnedDescriptor OpenFolder(const std::string& host) {
  constexpr int kWay = O_PATH | O_DIRECTORY | O_CLOEXEC;
  if (!IsShared(host)) return OwnedDescriptor(open(host.c_str(), kWay));
  OwnedDescriptor folder(open(Place().c_str(), kWay));
  for (std::string_view rest = std::string_view(host).substr(Place().size()); folder.IsOpen();) {
    const std::size_t name = rest.find_first_not_of('/');
    if (name == std::string_view::npos) break;
    rest.remove_prefix(name);
    const std::string step(rest.substr(0, rest.find('/')));
    rest.remove_prefix(step.size());
    folder = OwnedDescriptor(openat(folder.Get(), step.c_str(), kWay | O_NOFOLLOW));
  }
  return folder;
}

mode_t SharedFolderMode(mode_t parent) {
  mode_t mode = (parent & 07777 & ~mode_t{S_ISUID}) | S_IRWXU;
  // Where everybody may add, nobody removes what is another's; where a group may, what is added stays the group's.
  if ((mode & S_IWOTH) != 0) mode |= S_ISVTX;
  if ((mode & (S_IWGRP | S_IWOTH)) == S_IWGRP) mode |= S_ISGID;
  return mode;
}

mode_t SharedFileMode(mode_t parent) {
  const bool everybody = (parent & S_IWOTH) != 0;
  const bool kept = everybody || (parent & S_ISVTX) != 0;  // from being changed by others
  return (parent & (kept ? 0644 : 0664)) | S_IRUSR | S_IWUSR;
}

void HandDown(int parent, int made) {
  struct stat above;
  struct stat facts;
  if (fstat(parent, &above) != 0 || fstat(made, &facts) != 0) return;
  mode_t mode = S_ISDIR(facts.st_mode) ? SharedFolderMode(above.st_mode) : SharedFileMode(above.st_mode);
  // What was meant for one group must not be given to another.
  if (facts.st_gid != above.st_gid && fchown(made, static_cast<uid_t>(-1), above.st_gid) != 0)
    mode &= ~02070u;
  (void)!fchmod(made, mode);
}

bool MakeFolder(const std::string& host) {
  if (!IsShared(host)) return mkdir(host.c_str(), 0777) == 0;
  const OwnedDescriptor parent = OpenFolder(HostFolder(host));
  const std::string leaf = HostLeaf(host);
  if (!parent.IsOpen() || mkdirat(parent.Get(), leaf.c_str(), 0777) != 0) return false;
  const OwnedDescriptor made(
      openat(parent.Get(), leaf.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (made.IsOpen()) HandDown(parent.Get(), made.Get());
  return true;
}

}  // namespace qorgen::platform
