#pragma once

// Files of a fixed name in the temporary folder. Any thread may call.

#include "qorgen/afx/string.h"

namespace qorgen::files {

// Makes an empty file of that name in the temporary folder, new and private to its user, in place of one that an
// earlier call left there; its path. Empty text with the last error when that isn't possible.
[[nodiscard]] CString MakeTemporaryFile(const wchar_t* name);

}  // namespace qorgen::files
