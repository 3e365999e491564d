#pragma once

// The integer parser of the shell's string helpers. Callable from any thread.

#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <shlwapi.h>
#else

// The decimal integer at the start of `text`: white space, one sign, digits; what follows is ignored. 0 where
// no digit comes, also for "0x1F" (hexadecimal isn't read) and for null. Of a number too large the low 32
// bits.
int StrToIntW(const wchar_t* text);

#endif
