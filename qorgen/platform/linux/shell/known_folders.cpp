// The known folders, from the desktop's own settings and the common place of qorgen/platform/shell.h.

#include "qorgen/platform/shell.h"

// GLib brings its own TRUE and FALSE unless they are there already.
#include <algorithm>
#include <cerrno>
#include <glib.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/shared_place.h"

using namespace qorgen::platform;

namespace {

struct Folder {
  std::string path;
  bool common = false;  // of all users, so always there
  bool shared = false;  // in the machine-wide place
};

bool IsFolder(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

// Whether the user may make things in the machine-wide place, and nobody has put anything else there under the name of
// the folder.
bool MayShare(const std::string& path) {
  struct stat facts;
  return access(SharedPlace().c_str(), W_OK | X_OK) == 0 &&
         (lstat(path.c_str(), &facts) != 0 ? errno == ENOENT : S_ISDIR(facts.st_mode));
}

Folder UserFolder(GUserDirectory which, const char* usual_name) {
  const char* path = g_get_user_special_dir(which);
  return {path != nullptr ? path : std::string(g_get_home_dir()) + '/' + usual_name};
}

Folder CommonFolder(const char* name) {
  const std::string path = SharedPlace() + '/' + name;
  if (MayShare(path)) return {path, true, true};
  return {std::string(g_get_user_data_dir()) + "/qorgen/" + name, true};
}

Folder FindFolder(int id) {
  switch (id) {
    case CSIDL_DESKTOP:
      return UserFolder(G_USER_DIRECTORY_DESKTOP, "Desktop");
    case CSIDL_PERSONAL:
      return UserFolder(G_USER_DIRECTORY_DOCUMENTS, "Documents");
    case CSIDL_MYPICTURES:
      return UserFolder(G_USER_DIRECTORY_PICTURES, "Pictures");
    case CSIDL_LOCAL_APPDATA:
      return {g_get_user_data_dir()};
    case CSIDL_COMMON_APPDATA:
      return CommonFolder("CommonData");
    case CSIDL_COMMON_DOCUMENTS:
      return CommonFolder("CommonDocuments");
    default:
      return {};
  }
}

bool Make(const Folder& folder) {
  if (folder.shared) return MakeFolder(folder.path) || errno == EEXIST;
  return g_mkdir_with_parents(folder.path.c_str(), 0700) == 0;
}

}  // namespace

BOOL SHGetSpecialFolderPathW(HWND /*owner*/, LPWSTR path, int folderId, BOOL create) {
  if (path == nullptr) return FALSE;
  path[0] = 0;
  Folder folder = FindFolder(folderId);
  while (folder.path.size() > 1 && folder.path.back() == '/') folder.path.pop_back();
  if (folder.path.empty()) return FALSE;
  // The installation of Windows makes the common folders; here nothing has made them before the first
  // question.
  const bool make = create || folder.common;
  if (!IsFolder(folder.path) && !(make && Make(folder))) return FALSE;
  const std::u16string text = qorgen::platform::LibraryPath(folder.path);
  if (text.size() >= MAX_PATH) return FALSE;
  std::copy_n(text.c_str(), text.size() + 1, path);
  return TRUE;
}
