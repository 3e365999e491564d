#pragma once

// Files, folders, searches and volumes of the system interface, under their published names, values and
// signatures.
//
// On Windows they are the system's own. On Linux every call sets the thread's last error when it fails, takes
// paths of either vocabulary (platform/linux/filesystem/path_mapping.h), and differs from Windows in what is
// said below. Any thread may call; two calls on one handle at the same time share its position.

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))

union LARGE_INTEGER {
  struct {
    DWORD LowPart;
    LONG HighPart;
  };
  struct {
    DWORD LowPart;
    LONG HighPart;
  } u;
  LONGLONG QuadPart;
};

struct SECURITY_ATTRIBUTES;  // never looked at: only null is passed
struct OVERLAPPED;           // likewise

inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD DELETE = 0x00010000;
inline constexpr DWORD FILE_WRITE_ATTRIBUTES = 0x0100;

inline constexpr DWORD FILE_SHARE_READ = 1;
inline constexpr DWORD FILE_SHARE_WRITE = 2;
inline constexpr DWORD FILE_SHARE_DELETE = 4;

inline constexpr DWORD CREATE_NEW = 1;
inline constexpr DWORD CREATE_ALWAYS = 2;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD OPEN_ALWAYS = 4;
inline constexpr DWORD TRUNCATE_EXISTING = 5;

// Read-only is a missing write permission of the owner, hidden a name that begins with a dot; a symbolic link
// in a search is a reparse point. System, archive, temporary and the like are never set and setting them is
// ignored.
inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x00000001;
inline constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x00000002;
inline constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 0x00000004;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x00000010;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x00000020;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x00000080;
inline constexpr DWORD FILE_ATTRIBUTE_TEMPORARY = 0x00000100;
inline constexpr DWORD FILE_ATTRIBUTE_REPARSE_POINT = 0x00000400;
inline constexpr DWORD FILE_ATTRIBUTE_COMPRESSED = 0x00000800;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

inline constexpr DWORD FILE_FLAG_WRITE_THROUGH = 0x80000000;
inline constexpr DWORD FILE_FLAG_DELETE_ON_CLOSE = 0x04000000;
inline constexpr DWORD FILE_FLAG_BACKUP_SEMANTICS = 0x02000000;

inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD FILE_CURRENT = 1;
inline constexpr DWORD FILE_END = 2;

inline constexpr DWORD MOVEFILE_REPLACE_EXISTING = 1;
inline constexpr DWORD MOVEFILE_COPY_ALLOWED = 2;
inline constexpr DWORD MOVEFILE_WRITE_THROUGH = 8;

inline constexpr DWORD DUPLICATE_SAME_ACCESS = 2;

inline constexpr UINT DRIVE_UNKNOWN = 0;
inline constexpr UINT DRIVE_NO_ROOT_DIR = 1;
inline constexpr UINT DRIVE_REMOVABLE = 2;
inline constexpr UINT DRIVE_FIXED = 3;
inline constexpr UINT DRIVE_REMOTE = 4;
inline constexpr UINT DRIVE_CDROM = 5;
inline constexpr UINT DRIVE_RAMDISK = 6;

inline constexpr UINT SEM_FAILCRITICALERRORS = 0x0001;

enum GET_FILEEX_INFO_LEVELS { GetFileExInfoStandard };

struct WIN32_FILE_ATTRIBUTE_DATA {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
};

struct WIN32_FIND_DATAW {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  wchar_t cFileName[MAX_PATH];
  wchar_t cAlternateFileName[14];  // always empty: there are no short names
};

static_assert(sizeof(LARGE_INTEGER) == 8 && sizeof(WIN32_FILE_ATTRIBUTE_DATA) == 36 &&
              sizeof(WIN32_FIND_DATAW) == 592);

// ---- Open files -------------------------------------------------------------------------------------------

// Share modes hold between the handles and streams of this process, byte-range locks between those and, as
// advisory locks, other processes. A new file gets 0666 less the process's mask, with
// FILE_ATTRIBUTE_TEMPORARY 0600, and in the machine-wide place what shell.h says.
// A folder opens with FILE_FLAG_BACKUP_SEMANTICS only. A file to be deleted on close goes when its last
// handle does.
HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD disposition,
                   DWORD flags, HANDLE templateFile);
BOOL CloseHandle(HANDLE handle);
BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target, DWORD access,
                     BOOL inherit, DWORD options);
HANDLE GetCurrentProcess();

BOOL ReadFile(HANDLE file, void* buffer, DWORD bytes, DWORD* read, OVERLAPPED* overlapped);
BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytes, DWORD* written, OVERLAPPED* overlapped);
BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* position, DWORD method);
BOOL GetFileSizeEx(HANDLE file, LARGE_INTEGER* size);
BOOL SetEndOfFile(HANDLE file);
BOOL FlushFileBuffers(HANDLE file);
BOOL LockFile(HANDLE file, DWORD offsetLow, DWORD offsetHigh, DWORD bytesLow, DWORD bytesHigh);
BOOL UnlockFile(HANDLE file, DWORD offsetLow, DWORD offsetHigh, DWORD bytesLow, DWORD bytesHigh);

// ---- Times ------------------------------------------------------------------------------------------------

// Where the file system keeps no creation time, the older of last change and last write stands for it.
// Setting a creation time is not possible and ignored.
BOOL GetFileTime(HANDLE file, FILETIME* creation, FILETIME* access, FILETIME* write);
BOOL SetFileTime(HANDLE file, const FILETIME* creation, const FILETIME* access, const FILETIME* write);

// ---- Entries of folders -----------------------------------------------------------------------------------

// A symbolic link is followed, except by the calls that remove, rename or mark: those act on the link itself,
// whatever it leads to (one that leads to a folder is removed as a folder is). It has no marks of its own. A
// new folder gets 0777 less the process's mask, and in the machine-wide place what shell.h says. A copy has
// the permissions of its source, from its first byte on; a file that was there keeps its own. Devices, and
// the links to them in /dev, are not removed.
BOOL CreateDirectoryW(LPCWSTR path, SECURITY_ATTRIBUTES* security);
BOOL RemoveDirectoryW(LPCWSTR path);
BOOL DeleteFileW(LPCWSTR path);
BOOL MoveFileW(LPCWSTR source, LPCWSTR destination);
BOOL MoveFileExW(LPCWSTR source, LPCWSTR destination, DWORD flags);
BOOL CopyFileW(LPCWSTR source, LPCWSTR destination, BOOL failIfExists);
DWORD GetFileAttributesW(LPCWSTR path);
BOOL GetFileAttributesExW(LPCWSTR path, GET_FILEEX_INFO_LEVELS level, void* data);
BOOL SetFileAttributesW(LPCWSTR path, DWORD attributes);

// A name without * and ? is looked up as strictly as the file system does; a pattern ignores case, knows that
// *.* means every name and *. every name without an extension, and does not see short names. Entries come as
// the folder stood at the first call, sorted by their upper-case names, "." and ".." first where the pattern
// matches them.
HANDLE FindFirstFileW(LPCWSTR pattern, WIN32_FIND_DATAW* data);
BOOL FindNextFileW(HANDLE search, WIN32_FIND_DATAW* data);
BOOL FindClose(HANDLE search);

// ---- Names ------------------------------------------------------------------------------------------------

// Text work only, apart from the working folder; the result begins with C:\ (or is a network path as given).
DWORD GetFullPathNameW(LPCWSTR path, DWORD capacity, LPWSTR buffer, LPWSTR* filePart);
// A folder of the user's own, which nobody else may enter (0700), as C:\...\ with the separator at its end:
// "qorgen-" and the user's number in the folder of the variable TMPDIR, else in /tmp. It is made, and looked
// at anew by each call; where another user has taken the name, or could exchange the folder, the next of
// /tmp, XDG_RUNTIME_DIR, XDG_CACHE_HOME and ~/.cache is taken. 0 with ERROR_ACCESS_DENIED without any.
DWORD GetTempPathW(DWORD capacity, LPWSTR buffer);
// Up to three characters of `prefix`, the number in hexadecimal (16 bits) and ".TMP", in a buffer of MAX_PATH
// characters. `unique` 0 finds a free number and creates the file (0600); any other only forms the name.
UINT GetTempFileNameW(LPCWSTR folder, LPCWSTR prefix, UINT unique, LPWSTR name);

// ---- Volumes ----------------------------------------------------------------------------------------------

// C:\ is fixed; of other paths a mount point has the kind of its mount, anything else is DRIVE_NO_ROOT_DIR.
UINT GetDriveTypeW(LPCWSTR root);
// C:\ and the mount points of the volumes that a user knows of: disks outside the system's own folders and
// network volumes. No more than fit into MAX_PATH characters are named.
DWORD GetLogicalDriveStringsW(DWORD capacity, LPWSTR buffer);
BOOL GetDiskFreeSpaceExW(LPCWSTR folder, ULARGE_INTEGER* available, ULARGE_INTEGER* total,
                         ULARGE_INTEGER* free);

// ---- Process ----------------------------------------------------------------------------------------------

// Kept and given back; no system dialog exists that it could suppress.
UINT SetErrorMode(UINT mode);
// Goes to standard error, as UTF-8, while a debugger traces the process; otherwise nowhere.
void OutputDebugStringW(LPCWSTR text);

#endif
