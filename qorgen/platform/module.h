#pragma once

// Modules: where the process's own lie, and the loading of those that carry error texts or functions. May be
// called from any thread.

#include <cstdint>

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

using FARPROC = std::intptr_t (*)();

// The full path of a module into `path`; with null, of the process's executable. The result is the length. A
// path that does not fit is cut to `size` - 1 characters and terminated, the last error is
// ERROR_INSUFFICIENT_BUFFER and the result `size`. 0 when there is no such module; the last error is then
// ERROR_MOD_NOT_FOUND. Linux: a module's handle is any address inside the module, as it is its base address
// on Windows; the path comes in the form "C:\usr\bin\program".
DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size);

// The modules that exist: "winhttp.dll" with the error texts of the web transport, and "mlang.dll" with the
// function ConvertINetUnicodeToMultiByte; the case of the name doesn't matter and ".dll" may be left out.
// Null with ERROR_MOD_NOT_FOUND for any other name, and with ERROR_INVALID_PARAMETER for a null one.
HMODULE LoadLibraryW(const wchar_t* name);

// TRUE for a module that LoadLibraryW gave, else FALSE with ERROR_MOD_NOT_FOUND. Nothing is counted.
BOOL FreeLibrary(HMODULE module);

// Null with ERROR_PROC_NOT_FOUND for a function that the module doesn't have, and with ERROR_MOD_NOT_FOUND
// for no module.
//
//   HRESULT ConvertINetUnicodeToMultiByte(DWORD* mode, DWORD code_page, const wchar_t* source, int*
//   source_count,
//                                         char* target, int* target_size)
//
// converts to code page 65001 or 932. A null `source_count` or a count of -1 means a terminated source,
// without its terminator; a null target or a size of 0 only asks for the bytes that are needed. A lone
// surrogate becomes U+FFFD.
//
//   S_OK           the counts are set to the units read and the bytes written
//   S_FALSE        another code page
//   E_FAIL         the target is too short; both counts are 0, and the target holds nothing of use
//   E_INVALIDARG   a null source or size
FARPROC GetProcAddress(HMODULE module, const char* name);

#endif
