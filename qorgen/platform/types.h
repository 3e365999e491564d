#pragma once

// The scalar types, handles and small records of the system interface, under their published names and
// widths.
//
// On Windows they are the system's own. On Linux they are declared here: LONG, DWORD, HRESULT and their like
// are exact 32-bit types, while the language's own `long` stays 64 bits wide.

#include <cstddef>
#include <cstdint>

#include "qorgen/platform/export.h"

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// The system's headers make macros of names that classes of the library use for methods; a client and the
// library must agree on the names, whatever UNICODE says.
#undef FindNextFile
#undef FormatMessage
#undef GetCurrentTime
#undef GetFileTitle
#else
using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using UINT = unsigned int;
using LONGLONG = long long;
using ULONGLONG = unsigned long long;
using DWORDLONG = unsigned long long;
using SIZE_T = std::size_t;
using HRESULT = std::int32_t;
using LCID = std::uint32_t;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using HANDLE = void*;

struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;
struct HWND__;
using HWND = HWND__*;

union ULARGE_INTEGER {
  struct {
    DWORD LowPart;
    DWORD HighPart;
  };
  struct {
    DWORD LowPart;
    DWORD HighPart;
  } u;
  ULONGLONG QuadPart;
};

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

struct SYSTEMTIME {
  WORD wYear;
  WORD wMonth;
  WORD wDayOfWeek;
  WORD wDay;
  WORD wHour;
  WORD wMinute;
  WORD wSecond;
  WORD wMilliseconds;
};

struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

inline constexpr DWORD MAX_PATH = 260;
#define FALSE 0
#define TRUE 1

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);
constexpr bool SUCCEEDED(HRESULT result) {
  return result >= 0;
}
constexpr bool FAILED(HRESULT result) {
  return result < 0;
}

static_assert(sizeof(ULARGE_INTEGER) == 8 && sizeof(FILETIME) == 8 && sizeof(SYSTEMTIME) == 16);
#endif

static_assert(sizeof(wchar_t) == 2, "wchar_t is one UTF-16 unit; compile with -fshort-wchar on Linux");
static_assert(sizeof(DWORD) == 4 && sizeof(LONG) == 4 && sizeof(HRESULT) == 4 && sizeof(WORD) == 2);
