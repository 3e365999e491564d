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

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

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

#endif
