#pragma once

// Where the process's modules lie. May be called from any thread.

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

// The full path of a module into `path`; with null, of the process's executable. The result is the length. A
// path that does not fit is cut to `size` - 1 characters and terminated, the last error is
// ERROR_INSUFFICIENT_BUFFER and the result `size`. 0 when there is no such module; the last error is then
// ERROR_MOD_NOT_FOUND. Linux: a module's handle is any address inside the module, as it is its base address
// on Windows; the path comes in the form "C:\usr\bin\program".
DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size);

#endif
