#include "qorgen/platform/linux/crt/dos_error.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "qorgen/platform/error.h"

namespace qorgen::platform {
namespace {

struct Row {
  DWORD error;
  int number;
};

constexpr Row kRows[] = {
    {ERROR_INVALID_FUNCTION, EINVAL},
    {ERROR_FILE_NOT_FOUND, ENOENT},
    {ERROR_PATH_NOT_FOUND, ENOENT},
    {ERROR_TOO_MANY_OPEN_FILES, EMFILE},
    {ERROR_ACCESS_DENIED, EACCES},
    {ERROR_INVALID_HANDLE, EBADF},
    {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
    {ERROR_OUTOFMEMORY, ENOMEM},
    {ERROR_INVALID_DRIVE, ENOENT},
    {ERROR_CURRENT_DIRECTORY, EACCES},
    {ERROR_NOT_SAME_DEVICE, EXDEV},
    {ERROR_NO_MORE_FILES, ENOENT},
    {ERROR_WRITE_PROTECT, EACCES},
    {ERROR_SHARING_VIOLATION, EACCES},
    {ERROR_LOCK_VIOLATION, EACCES},
    {ERROR_HANDLE_DISK_FULL, ENOSPC},
    {ERROR_BAD_NETPATH, ENOENT},
    {ERROR_NETWORK_ACCESS_DENIED, EACCES},
    {ERROR_BAD_NET_NAME, ENOENT},
    {ERROR_FILE_EXISTS, EEXIST},
    {ERROR_CANNOT_MAKE, EACCES},
    {ERROR_BROKEN_PIPE, EPIPE},
    {ERROR_DISK_FULL, ENOSPC},
    {ERROR_DIR_NOT_EMPTY, ENOTEMPTY},
    {ERROR_BAD_PATHNAME, ENOENT},
    {ERROR_ALREADY_EXISTS, EEXIST},
    {ERROR_FILENAME_EXCED_RANGE, ENOENT},
};

}  // namespace

int FailFromLastError() {
  const DWORD error = GetLastError();
  const Row* row =
      std::find_if(std::begin(kRows), std::end(kRows), [error](const Row& at) { return at.error == error; });
  errno = row != std::end(kRows) ? row->number : EINVAL;
  return -1;
}

}  // namespace qorgen::platform
