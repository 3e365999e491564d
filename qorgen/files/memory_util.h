#pragma once

// CQorMemoryUtil: the machine's memory figures, in bytes. May be called from any thread.

#include "qorgen/platform/export.h"
#include "qorgen/platform/memory.h"

class QORGEN_API CQorMemoryUtil {
 public:
  // Fills the record; null is ignored.
  static void GetMemoryStatus(MEMORYSTATUS* status);

  // Fills the record, whose dwLength the caller has set; null is ignored. Where the system cannot fill it,
  // all its 64 bytes are cleared; where it cannot tell its version, nothing is written. On a system before
  // version 5 the figures are those of GetMemoryStatus, cut to 32 bits, and dwLength stays.
  static void GetMemoryStatusEx(MEMORYSTATUSEX* status);
};
