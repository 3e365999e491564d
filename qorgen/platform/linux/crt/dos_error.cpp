#include "qorgen/platform/linux/crt/dos_error.h"

#include <cerrno>

#include "qorgen/platform/error.h"

namespace qorgen::platform {
namespace {

struct Row {
  DWORD error;
  int number;
};

constexpr Row kRows[] = {
    {1, EINVAL},       // wrong function
    {2, ENOENT},       // file not found
    {3, ENOENT},       // path not found
    {4, EMFILE},       // too many open files
    {5, EACCES},       // access denied
    {6, EBADF},        // wrong handle
    {8, ENOMEM},       // no memory
    {14, ENOMEM},      // out of memory
    {15, ENOENT},      // wrong drive
    {16, EACCES},      // the current folder
    {17, EXDEV},       // another device
    {18, ENOENT},      // no more files
    {19, EACCES},      // write-protected
    {32, EACCES},      // sharing violation
    {33, EACCES},      // lock violation
    {39, ENOSPC},      // handle: disk full
    {53, ENOENT},      // network path
    {65, EACCES},      // network access
    {67, ENOENT},      // network name
    {80, EEXIST},      // file exists
    {82, EACCES},      // can't make
    {109, EPIPE},      // broken pipe
    {112, ENOSPC},     // disk full
    {145, ENOTEMPTY},  // folder not empty
    {161, ENOENT},     // bad path name
    {183, EEXIST},     // exists already
    {206, ENOENT},     // name too long
};

}  // namespace

int ErrnoFromWin32(DWORD error) {
  for (const Row& row : kRows) {
    if (row.error == error) return row.number;
  }
  return EINVAL;
}

int FailFromLastError() {
  errno = ErrnoFromWin32(GetLastError());
  return -1;
}

}  // namespace qorgen::platform
