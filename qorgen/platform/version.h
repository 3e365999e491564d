#pragma once

// Version resources of programs and modules. May be called from any thread.

#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <winver.h>
#else

struct VS_FIXEDFILEINFO {
  DWORD dwSignature;  // 0xFEEF04BD
  DWORD dwStrucVersion;
  DWORD dwFileVersionMS;
  DWORD dwFileVersionLS;
  DWORD dwProductVersionMS;
  DWORD dwProductVersionLS;
  DWORD dwFileFlagsMask;
  DWORD dwFileFlags;
  DWORD dwFileOS;
  DWORD dwFileType;
  DWORD dwFileSubtype;
  DWORD dwFileDateMS;
  DWORD dwFileDateLS;
};

static_assert(sizeof(VS_FIXEDFILEINFO) == 52);

// The size in bytes of a file's version block; `handle`, if not null, becomes 0. 0 on failure, with the last
// error: that of opening the file, ERROR_RESOURCE_DATA_NOT_FOUND for a file that is no portable executable,
// and ERROR_RESOURCE_TYPE_NOT_FOUND for one without a version resource. Linux: the resource is read from the
// portable executable itself (32 and 64 bits), in the first language in it, where Windows prefers the user's.
// The host's own programs have none.
QORGEN_API DWORD GetFileVersionInfoSizeW(LPCWSTR path, DWORD* handle);

// Copies at most `size` bytes of the block to `block`, and zeros behind it. FALSE as above.
QORGEN_API BOOL GetFileVersionInfoW(LPCWSTR path, DWORD handle, DWORD size, void* block);

// Looks a value up in a block that GetFileVersionInfoW filled: "\" is the VS_FIXEDFILEINFO,
// "\VarFileInfo\Translation" the list of languages, "\StringFileInfo\041103a4\ProductName" a text. Case does
// not count. `value` then points into the block; `length` is in bytes, for a text in characters. FALSE with
// ERROR_RESOURCE_TYPE_NOT_FOUND when there is none (`value` and `length` stay), or ERROR_INVALID_DATA for a
// block that is none.
QORGEN_API BOOL VerQueryValueW(const void* block, LPCWSTR name, void** value, UINT* length);

#endif
