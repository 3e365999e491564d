// The temporary folder: one of the user's own. The host's is everybody's, and whoever makes a name there first reads
// and chooses what another writes under it.

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/owned_descriptor.h"

using namespace qorgen::platform;

namespace {

// Whether others can't exchange what lies in the folder: it is the user's or the system's, and if everybody may write
// there, each only touches what is his own.
bool KeepsEntries(const std::string& folder) {
  struct stat facts;
  return stat(folder.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
         (facts.st_uid == 0 || facts.st_uid == geteuid()) &&
         ((facts.st_mode & S_IWOTH) == 0 || (facts.st_mode & S_ISVTX) != 0);
}

// Whether the folder is there, or could be made, and is a folder of the user's that nobody else may enter.
bool IsOwn(const std::string& folder) {
  if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) return false;
  const OwnedDescriptor found(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat facts;
  if (!found.IsOpen() || fstat(found.Get(), &facts) != 0) return false;
  if (facts.st_uid != geteuid()) {
    errno = EACCES;
    return false;
  }
  return (facts.st_mode & 07777) == S_IRWXU || fchmod(found.Get(), S_IRWXU) == 0;
}

// The first of the places where there is such a folder; empty with errno. Somebody may have taken the name in a place
// that is everybody's: then the next one is asked, and there nobody else can.
std::string OwnFolder() {
  const std::string name = "/qorgen-" + std::to_string(geteuid());
  const struct {
    const char* variable;
    const char* below;
  } places[] = {{"TMPDIR", ""},
                {nullptr, "/tmp"},
                {"XDG_RUNTIME_DIR", ""},
                {"XDG_CACHE_HOME", ""},
                {"HOME", "/.cache"}};
  for (const auto& place : places) {
    const char* const named = place.variable != nullptr ? std::getenv(place.variable) : "";
    if (named == nullptr || (place.variable != nullptr && named[0] == 0)) continue;
    std::string folder = AbsoluteHostPath(std::string(named) + place.below);
    while (!folder.empty() && folder.back() == '/') folder.pop_back();
    if (place.variable != nullptr && place.below[0] != 0) (void)!mkdir(folder.c_str(), S_IRWXU);
    if (KeepsEntries(folder.empty() ? "/" : folder) && IsOwn(folder + name)) return folder + name;
  }
  return {};
}

}  // namespace

DWORD GetTempPathW(DWORD capacity, LPWSTR buffer) {
  const std::string folder = OwnFolder();
  if (folder.empty()) {
    SetLastError(ERROR_ACCESS_DENIED);
    return 0;
  }
  return StoreText(LibraryPath(folder + '/'), buffer, capacity);
}
