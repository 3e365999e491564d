#pragma once

// From the C library's errno to the platform's error numbers: the one place that knows both. Thread-safe.

#include "qorgen/platform/error.h"

namespace qorgen::platform {

// The error number that a file operation reports for `error`; 0 gives ERROR_SUCCESS and a value that the
// table doesn't hold ERROR_GEN_FAILURE.
DWORD Win32ErrorFromErrno(int error) noexcept;

// Makes the current errno the thread's last error and gives the number; errno itself stays as it is.
DWORD SetLastErrorFromErrno() noexcept;

}  // namespace qorgen::platform
