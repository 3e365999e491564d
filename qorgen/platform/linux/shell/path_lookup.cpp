// The path functions of the shell interface that ask the file system.

#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/shell.h"

BOOL PathFileExistsW(LPCWSTR path) {
  if (path == nullptr) return FALSE;
  return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES ? TRUE : FALSE;
}

BOOL PathIsDirectoryW(LPCWSTR path) {
  if (path == nullptr) return FALSE;
  const DWORD attributes = GetFileAttributesW(path);
  if (attributes == INVALID_FILE_ATTRIBUTES) return FALSE;
  return static_cast<BOOL>(attributes & FILE_ATTRIBUTE_DIRECTORY);
}
