#pragma once

// The figures of the older memory record in the newer one. Pure.

#include "qorgen/platform/memory.h"

namespace qorgen::files {

// 32 bits of each figure, high halves zero; dwLength stays as it is.
void WidenMemoryStatus(const MEMORYSTATUS& figures, MEMORYSTATUSEX& status);

}  // namespace qorgen::files
