#pragma once

// From the platform's error numbers to errno, as its C runtime has it. Thread-safe.

namespace qorgen::platform {

// Sets errno from the thread's last error, EINVAL for a number that the runtime doesn't tell apart; -1, so
// that a call can end in `return FailFromLastError()`.
int FailFromLastError();

}  // namespace qorgen::platform
