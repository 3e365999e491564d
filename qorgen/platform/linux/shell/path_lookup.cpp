// The path function of the shell interface that asks the file system.

#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/shell.h"

BOOL PathFileExistsW(LPCWSTR path) {
  if (path == nullptr) return FALSE;
  return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES ? TRUE : FALSE;
}
