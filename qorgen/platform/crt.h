#pragma once

// The wide half of the C runtime and its text streams, under their published names.
//
// On Windows these are the runtime's own. On Linux the C library's wide functions assume 32-bit units, so the names
// below are routed to this library's implementations by macros; include this header in sources, never in public
// headers. (The macros follow the standard headers on purpose: <cwchar> undefines the names it declares.)

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <mbctype.h>
#include <mbstring.h>
#include <wchar.h>
#else
#endif
