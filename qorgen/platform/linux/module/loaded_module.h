#pragma once

// What stands behind a module handle of LoadLibraryW. Constant data.

#include "qorgen/platform/linux/error/error_text_table.h"
#include "qorgen/platform/module.h"

namespace qorgen::platform {

// The text table of a module; an empty one for a module without texts and for a handle that is none.
ErrorTextTable ModuleErrorTexts(const void* module);

}  // namespace qorgen::platform
