#pragma once

// Errors: the thread's last error, and the texts of the numbers (error_codes.h) for a person.
//
// The last error belongs to the calling thread; every function here may be called from any thread at any
// time.
//
// On Windows all of it is the system's own. On Linux the texts come from a table of the library, in Japanese
// where GetUserDefaultUILanguage() is Japanese and in English elsewhere, each ending in "\r\n".

#include <cstdarg>
#include <cstdint>

#include "qorgen/platform/error_codes.h"
#include "qorgen/platform/types.h"

#if !defined(_WIN32)

using HLOCAL = void*;

// A positive error number as the failure code 0x8007nnnn; 0 and codes that already are failures stay as they
// are.
constexpr HRESULT HRESULT_FROM_WIN32(DWORD error) {
  const bool keep = static_cast<std::int32_t>(error) <= 0;
  return static_cast<HRESULT>(keep ? error : ((error & 0xFFFFu) | 0x80070000u));
}

// The calling thread's last error; 0 in a new thread. A call that succeeds may leave an older number
// standing.
QORGEN_API DWORD GetLastError();
QORGEN_API void SetLastError(DWORD error);

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x0200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x0800;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

// Writes the text of the error number `id`, with its line break and a terminator, and gives its length; 0 on
// failure, with the last error set and the buffer untouched. The text fits as long as it is shorter than
// `size`.
//
//   FROM_HMODULE      the table of the loaded module `source` is searched first
//   FROM_SYSTEM       the system's, behind the module's; a code 0x8007nnnn has the text of the error number
//                     nnnn
//   ALLOCATE_BUFFER   `buffer` is the address of a pointer that receives a block of at least `size` units, to
//                     be given back with LocalFree
//   IGNORE_INSERTS    inserts ("%1") stay in the text; without it a text that has one fails
//   `language`        0x0411, 0x0409, or 0, 0x0400 and their like for the user's language
//
// No width, no other source and no arguments are served.
//
//   ERROR_MR_MID_NOT_FOUND          no such number
//   ERROR_INSUFFICIENT_BUFFER       too short
//   ERROR_RESOURCE_TYPE_NOT_FOUND   only a module was to be searched, and it has no table
//   ERROR_RESOURCE_LANG_NOT_FOUND   neither language
//   ERROR_INVALID_PARAMETER         other flags, an insert, a null buffer
//   ERROR_NOT_ENOUGH_MEMORY
QORGEN_API DWORD FormatMessageW(DWORD flags, const void* source, DWORD id, DWORD language, wchar_t* buffer,
                                DWORD size, va_list* arguments);

// Gives back a block of FormatMessageW; null is fine. Always null.
QORGEN_API HLOCAL LocalFree(HLOCAL block);

#endif
