#include "qorgen/platform/linux/error/file_error.h"

#include <cerrno>

#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/error/errno_map.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"

namespace qorgen::platform {

DWORD PathError(const std::string& host, int error) {
  struct stat facts;
  switch (error) {
    case ENOENT:
      if (stat(HostFolder(host).c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode)) return ERROR_PATH_NOT_FOUND;
      return IsCreatable(host) ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_NAME;
    case ENOTDIR: {
      // A file on the way, or a file whose name carries a separator at its end.
      std::string bare = host;
      while (bare.size() > 1 && bare.back() == '/') bare.pop_back();
      return bare != host && stat(bare.c_str(), &facts) == 0 ? ERROR_INVALID_NAME : ERROR_PATH_NOT_FOUND;
    }
    case ENAMETOOLONG:
      return ERROR_FILENAME_EXCED_RANGE;
    case ELOOP:
      return ERROR_CANT_RESOLVE_FILENAME;
    default:
      return Win32ErrorFromErrno(error);
  }
}

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

BOOL FailWithErrno(const std::string& host) {
  return Fail(PathError(host, errno));
}

bool ToHost(const wchar_t* path, std::string& host) {
  DWORD error = 0;
  host = HostPath(path, &error);
  return error == 0 || Fail(error);
}

}  // namespace qorgen::platform
