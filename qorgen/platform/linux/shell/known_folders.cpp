// The known folders, from the desktop's own settings and the common place of qorgen/platform/shell.h.

#include "qorgen/platform/shell.h"

// GLib brings its own TRUE and FALSE unless they are there already.
#include <algorithm>
#include <glib.h>
#include <glib/gstdio.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/linux/filesystem/path_mapping.h"

namespace {

constexpr const char* kSharedPlace = "/var/lib/qorgen";

struct Folder {
  std::string path;
  bool common = false;  // of all users, so always there
  bool shared = false;  // in the machine-wide place
};

bool IsFolder(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

Folder UserFolder(GUserDirectory which, const char* usual_name) {
  const char* path = g_get_user_special_dir(which);
  return {path != nullptr ? path : std::string(g_get_home_dir()) + '/' + usual_name};
}

Folder CommonFolder(const char* name) {
  if (IsFolder(kSharedPlace) && access(kSharedPlace, W_OK | X_OK) == 0) {
    return {std::string(kSharedPlace) + '/' + name, true, true};
  }
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
  if (!folder.shared) return g_mkdir_with_parents(folder.path.c_str(), 0700) == 0;
  // The mode is set in a second step because mkdir's own is cut by the creation mask.
  return g_mkdir(folder.path.c_str(), 0777) == 0 && g_chmod(folder.path.c_str(), 01777) == 0;
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
