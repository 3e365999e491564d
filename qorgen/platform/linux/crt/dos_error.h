#pragma once

// From the platform's error numbers to errno, as its C runtime has it. Thread-safe.

#include "qorgen/platform/types.h"

namespace qorgen::platform {

// EINVAL for a number that the runtime doesn't tell apart.
int ErrnoFromWin32(DWORD error);

// Sets errno from the thread's last error; -1, so that a call can end in `return FailFromLastError()`.
int FailFromLastError();

}  // namespace qorgen::platform
