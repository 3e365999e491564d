#pragma once

// Removing a folder with all it holds, on either host without ever leaving it: no link is followed, neither one that
// lies in the folder, nor the path itself when that is a link, nor one that somebody puts in a folder's place while the
// work is going on. Links are removed themselves, whatever they lead to. Any thread may call.

#include "qorgen/platform/types.h"

namespace qorgen::platform {

// TRUE when all is gone. FALSE with the last error otherwise: a file that can't be removed doesn't stop the work, a
// folder does, with the rest left as it is. ERROR_DIRECTORY for a file, with nothing done. Marks of read-only are no
// obstacle. Time grows with the number of entries, memory with those of the folders on the way to the deepest one; no
// more than a handful of descriptors are open at any depth.
BOOL RemoveTree(LPCWSTR path);

}  // namespace qorgen::platform
