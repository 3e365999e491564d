#pragma once

// Error numbers: the thread's last error, the numbers that the library meets or sets, their texts for a
// person (FormatMessageW), and the loading of modules that carry further texts or functions.
//
// The last error belongs to the calling thread; every function here may be called from any thread at any
// time.
//
// On Windows all of it is the system's own. On Linux the texts come from a table of the library: the numbers
// of files, disks, paths, registry, modules, memory, COM, automation, structured storage and the XML service,
// in Japanese where GetUserDefaultUILanguage() is Japanese and in English elsewhere, each ending in "\r\n".

#include <cstdarg>
#include <cstdint>

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

using HLOCAL = void*;
using FARPROC = std::intptr_t (*)();

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD NO_ERROR = 0;
inline constexpr DWORD ERROR_INVALID_FUNCTION = 1;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_BAD_FORMAT = 11;
inline constexpr DWORD ERROR_INVALID_ACCESS = 12;
inline constexpr DWORD ERROR_INVALID_DATA = 13;
inline constexpr DWORD ERROR_OUTOFMEMORY = 14;
inline constexpr DWORD ERROR_INVALID_DRIVE = 15;
inline constexpr DWORD ERROR_CURRENT_DIRECTORY = 16;
inline constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
inline constexpr DWORD ERROR_NO_MORE_FILES = 18;
inline constexpr DWORD ERROR_WRITE_PROTECT = 19;
inline constexpr DWORD ERROR_BAD_UNIT = 20;
inline constexpr DWORD ERROR_NOT_READY = 21;
inline constexpr DWORD ERROR_CRC = 23;
inline constexpr DWORD ERROR_BAD_LENGTH = 24;
inline constexpr DWORD ERROR_SEEK = 25;
inline constexpr DWORD ERROR_WRITE_FAULT = 29;
inline constexpr DWORD ERROR_READ_FAULT = 30;
inline constexpr DWORD ERROR_GEN_FAILURE = 31;
inline constexpr DWORD ERROR_SHARING_VIOLATION = 32;
inline constexpr DWORD ERROR_LOCK_VIOLATION = 33;
inline constexpr DWORD ERROR_SHARING_BUFFER_EXCEEDED = 36;
inline constexpr DWORD ERROR_HANDLE_EOF = 38;
inline constexpr DWORD ERROR_HANDLE_DISK_FULL = 39;
inline constexpr DWORD ERROR_NOT_SUPPORTED = 50;
inline constexpr DWORD ERROR_BAD_NETPATH = 53;
inline constexpr DWORD ERROR_NETWORK_BUSY = 54;
inline constexpr DWORD ERROR_UNEXP_NET_ERR = 59;
inline constexpr DWORD ERROR_NETNAME_DELETED = 64;
inline constexpr DWORD ERROR_NETWORK_ACCESS_DENIED = 65;
inline constexpr DWORD ERROR_FILE_EXISTS = 80;
inline constexpr DWORD ERROR_CANNOT_MAKE = 82;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_BROKEN_PIPE = 109;
inline constexpr DWORD ERROR_OPEN_FAILED = 110;
inline constexpr DWORD ERROR_BUFFER_OVERFLOW = 111;
inline constexpr DWORD ERROR_DISK_FULL = 112;
inline constexpr DWORD ERROR_CALL_NOT_IMPLEMENTED = 120;
inline constexpr DWORD ERROR_SEM_TIMEOUT = 121;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_INVALID_NAME = 123;
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
inline constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
inline constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
inline constexpr DWORD ERROR_DIR_NOT_EMPTY = 145;
inline constexpr DWORD ERROR_BAD_PATHNAME = 161;
inline constexpr DWORD ERROR_LOCK_FAILED = 167;
inline constexpr DWORD ERROR_BUSY = 170;
inline constexpr DWORD ERROR_ALREADY_EXISTS = 183;
inline constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
inline constexpr DWORD ERROR_ENVVAR_NOT_FOUND = 203;
inline constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
inline constexpr DWORD ERROR_NO_DATA = 232;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_DIRECTORY = 267;
inline constexpr DWORD ERROR_NOT_OWNER = 288;
inline constexpr DWORD ERROR_TOO_MANY_POSTS = 298;
inline constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr DWORD ERROR_INVALID_ADDRESS = 487;
inline constexpr DWORD ERROR_ARITHMETIC_OVERFLOW = 534;
inline constexpr DWORD ERROR_OPERATION_ABORTED = 995;
inline constexpr DWORD ERROR_IO_PENDING = 997;
inline constexpr DWORD ERROR_NOACCESS = 998;
inline constexpr DWORD ERROR_STACK_OVERFLOW = 1001;
inline constexpr DWORD ERROR_INVALID_FLAGS = 1004;
inline constexpr DWORD ERROR_UNRECOGNIZED_VOLUME = 1005;
inline constexpr DWORD ERROR_FILE_INVALID = 1006;
inline constexpr DWORD ERROR_NO_TOKEN = 1008;
inline constexpr DWORD ERROR_BADDB = 1009;
inline constexpr DWORD ERROR_BADKEY = 1010;
inline constexpr DWORD ERROR_CANTOPEN = 1011;
inline constexpr DWORD ERROR_CANTREAD = 1012;
inline constexpr DWORD ERROR_CANTWRITE = 1013;
inline constexpr DWORD ERROR_REGISTRY_CORRUPT = 1015;
inline constexpr DWORD ERROR_REGISTRY_IO_FAILED = 1016;
inline constexpr DWORD ERROR_KEY_DELETED = 1018;
inline constexpr DWORD ERROR_KEY_HAS_CHILDREN = 1020;
inline constexpr DWORD ERROR_IO_DEVICE = 1117;
inline constexpr DWORD ERROR_POSSIBLE_DEADLOCK = 1131;
inline constexpr DWORD ERROR_TOO_MANY_LINKS = 1142;
inline constexpr DWORD ERROR_NO_ASSOCIATION = 1155;
inline constexpr DWORD ERROR_NOT_FOUND = 1168;
inline constexpr DWORD ERROR_NO_VOLUME_ID = 1173;
inline constexpr DWORD ERROR_BAD_DEVICE = 1200;
inline constexpr DWORD ERROR_NO_NETWORK = 1222;
inline constexpr DWORD ERROR_CANCELLED = 1223;
inline constexpr DWORD ERROR_CONNECTION_REFUSED = 1225;
inline constexpr DWORD ERROR_NETWORK_UNREACHABLE = 1231;
inline constexpr DWORD ERROR_HOST_UNREACHABLE = 1232;
inline constexpr DWORD ERROR_CONNECTION_ABORTED = 1236;
inline constexpr DWORD ERROR_RETRY = 1237;
inline constexpr DWORD ERROR_PRIVILEGE_NOT_HELD = 1314;
inline constexpr DWORD ERROR_DISK_CORRUPT = 1393;
inline constexpr DWORD ERROR_NO_SYSTEM_RESOURCES = 1450;
inline constexpr DWORD ERROR_COMMITMENT_LIMIT = 1455;
inline constexpr DWORD ERROR_TIMEOUT = 1460;
inline constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
inline constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
inline constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr DWORD ERROR_RESOURCE_LANG_NOT_FOUND = 1815;
inline constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921;
inline constexpr DWORD ERROR_INVALID_STATE = 5023;

inline constexpr HRESULT E_PENDING = static_cast<HRESULT>(0x8000000Au);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
inline constexpr HRESULT E_ABORT = static_cast<HRESULT>(0x80004004u);
inline constexpr HRESULT E_ACCESSDENIED = static_cast<HRESULT>(0x80070005u);
inline constexpr HRESULT E_HANDLE = static_cast<HRESULT>(0x80070006u);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005u);
inline constexpr HRESULT DISP_E_BADVARTYPE = static_cast<HRESULT>(0x80020008u);
inline constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000Au);

// A positive error number as the failure code 0x8007nnnn; 0 and codes that already are failures stay as they
// are.
constexpr HRESULT HRESULT_FROM_WIN32(DWORD error) {
  const bool keep = static_cast<std::int32_t>(error) <= 0;
  return static_cast<HRESULT>(keep ? error : ((error & 0xFFFFu) | 0x80070000u));
}

// The calling thread's last error; 0 in a new thread. A call that succeeds may leave an older number
// standing.
DWORD GetLastError();
void SetLastError(DWORD error);

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x0200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x0800;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

// Writes the text of the error number `id`, with its line break and a terminator, and gives its length; 0 on
// failure, with the last error set and the buffer untouched. The result fits as long as it is shorter than
// `size`.
//
// With FROM_HMODULE the table of the loaded module `source` is searched first, with FROM_SYSTEM the system's
// behind it; a code 0x8007nnnn has the text of the error number nnnn. With ALLOCATE_BUFFER, `buffer` is the
// address of a pointer that receives a block of at least `size` units, to be given back with LocalFree.
// `language` is 0x0411, 0x0409 or 0, 0x0400 and their like for the user's language. Inserts ("%1") stay in
// the text with IGNORE_INSERTS; without that flag a text that has one fails. No width, no other source and no
// arguments are served.
//
// ERROR_MR_MID_NOT_FOUND: no such number. ERROR_INSUFFICIENT_BUFFER: too short.
// ERROR_RESOURCE_TYPE_NOT_FOUND: only a module was to be searched, and it has no table.
// ERROR_RESOURCE_LANG_NOT_FOUND: neither language. ERROR_INVALID_PARAMETER: other flags, an insert, a null
// buffer. ERROR_NOT_ENOUGH_MEMORY.
DWORD FormatMessageW(DWORD flags, const void* source, DWORD id, DWORD language, wchar_t* buffer, DWORD size,
                     va_list* arguments);

// Gives back a block of FormatMessageW; null is fine. Always null.
HLOCAL LocalFree(HLOCAL block);

// The modules that exist: "winhttp.dll" with the error texts of the web transport, and "mlang.dll" with the
// function ConvertINetUnicodeToMultiByte; the case of the name doesn't matter and ".dll" may be left out.
// Null with ERROR_MOD_NOT_FOUND for any other name, and with ERROR_INVALID_PARAMETER for a null one.
HMODULE LoadLibraryW(const wchar_t* name);

// TRUE for a module that LoadLibraryW gave, else FALSE with ERROR_MOD_NOT_FOUND. Nothing is counted.
BOOL FreeLibrary(HMODULE module);

// Null with ERROR_PROC_NOT_FOUND for a function that the module doesn't have, and with ERROR_MOD_NOT_FOUND
// for no module.
//
// HRESULT ConvertINetUnicodeToMultiByte(DWORD* mode, DWORD code_page, const wchar_t* source, int*
// source_count,
//                                       char* target, int* target_size)
//   converts to code page 65001 or 932. A null `source_count` or a count of -1 means a terminated source,
//   without its terminator. S_OK, the counts set to the units read and the bytes written; a null target or a
//   size of 0 only asks for the bytes that are needed. A lone surrogate becomes U+FFFD. S_FALSE for another
//   code page, E_FAIL where the target is too short (both counts are 0 then, and the target holds nothing of
//   use), E_INVALIDARG for a null source or size.
FARPROC GetProcAddress(HMODULE module, const char* name);

#endif
