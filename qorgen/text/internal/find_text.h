#pragma once

// Substring search by unit value. Pure functions.

#include "qorgen/text/internal/convert.h"

namespace qorgen::text {

// Whether `pattern`, which is not empty, stands somewhere in `text`. Time grows with the sum of both lengths,
// whatever they hold; nothing is allocated.
bool Contains(View text, View pattern);

}  // namespace qorgen::text
