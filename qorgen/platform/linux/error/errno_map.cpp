#include "qorgen/platform/linux/error/errno_map.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace qorgen::platform {
namespace {

struct Row {
  int host;
  DWORD error;
};

// In the order of the host's numbers (x86-64), so that look-up can halve.
constexpr Row kRows[] = {
    {EPERM, ERROR_ACCESS_DENIED},
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {EINTR, ERROR_OPERATION_ABORTED},
    {EIO, ERROR_IO_DEVICE},
    {ENXIO, ERROR_NOT_READY},
    {ENOEXEC, ERROR_BAD_EXE_FORMAT},
    {EBADF, ERROR_INVALID_HANDLE},
    {EAGAIN, ERROR_SHARING_VIOLATION},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EACCES, ERROR_ACCESS_DENIED},
    {EFAULT, ERROR_NOACCESS},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {EEXIST, ERROR_ALREADY_EXISTS},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {ENODEV, ERROR_BAD_DEVICE},
    // A component of the path is a file: the platform's "path not found".
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    // A folder where a file was meant: opening one as a file is refused as a lack of access.
    {EISDIR, ERROR_ACCESS_DENIED},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENOTTY, ERROR_INVALID_FUNCTION},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EFBIG, ERROR_FILE_TOO_LARGE},
    {ENOSPC, ERROR_DISK_FULL},
    {ESPIPE, ERROR_SEEK},
    {EROFS, ERROR_WRITE_PROTECT},
    {EMLINK, ERROR_TOO_MANY_LINKS},
    {EPIPE, ERROR_NO_DATA},
    {ERANGE, ERROR_ARITHMETIC_OVERFLOW},
    {EDEADLK, ERROR_POSSIBLE_DEADLOCK},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {ENOLCK, ERROR_LOCK_FAILED},
    {ENOSYS, ERROR_CALL_NOT_IMPLEMENTED},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
    {ENODATA, ERROR_HANDLE_EOF},
    {EOVERFLOW, ERROR_ARITHMETIC_OVERFLOW},
    // A byte sequence that is no text: only names bring it here.
    {EILSEQ, ERROR_INVALID_NAME},
    {EOPNOTSUPP, ERROR_NOT_SUPPORTED},
    {ENETUNREACH, ERROR_NETWORK_UNREACHABLE},
    {ECONNABORTED, ERROR_CONNECTION_ABORTED},
    {ECONNRESET, ERROR_NETNAME_DELETED},
    {ENOBUFS, ERROR_NO_SYSTEM_RESOURCES},
    {ETIMEDOUT, ERROR_SEM_TIMEOUT},
    {ECONNREFUSED, ERROR_CONNECTION_REFUSED},
    {EHOSTUNREACH, ERROR_HOST_UNREACHABLE},
    {ESTALE, ERROR_FILE_INVALID},
    {EDQUOT, ERROR_DISK_FULL},
    {ECANCELED, ERROR_CANCELLED},
};

constexpr bool Increasing() {
  for (std::size_t i = 1; i < std::size(kRows); ++i) {
    if (kRows[i - 1].host >= kRows[i].host) return false;
  }
  return true;
}
static_assert(Increasing());

}  // namespace

DWORD Win32ErrorFromErrno(int error) noexcept {
  if (error == 0) return ERROR_SUCCESS;
  const Row* found = std::lower_bound(std::begin(kRows), std::end(kRows), error,
                                      [](const Row& row, int value) { return row.host < value; });
  return found != std::end(kRows) && found->host == error ? found->error : ERROR_GEN_FAILURE;
}

DWORD SetLastErrorFromErrno() noexcept {
  const DWORD error = Win32ErrorFromErrno(errno);
  SetLastError(error);
  return error;
}

}  // namespace qorgen::platform
