#pragma once

// The one rule for error numbers that come from outside.

#include "qorgen/platform/error.h"

namespace qorgen::core {

// The low 32 bits, which are all that an error number has; 0 becomes the calling thread's last error.
inline DWORD ErrorOrLast(unsigned long error) {
  const DWORD number = static_cast<DWORD>(error & 0xFFFFFFFFu);
  return number != 0 ? number : GetLastError();
}

}  // namespace qorgen::core
