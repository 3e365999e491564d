#pragma once

// Path texts, known folders and file types: the part of the system's shell interface that the library calls.
//
// The path functions work on text alone, except PathFileExistsW and PathIsDirectoryW, and count only the
// backslash as a separator unless said otherwise. All may be called from any thread.

#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <shlobj.h>
#include <shlwapi.h>
#else

// TRUE if the path names a file or folder. On FALSE the last error tells why: ERROR_FILE_NOT_FOUND,
// ERROR_PATH_NOT_FOUND (also for empty text) or what else kept the look-up from answering. Null is FALSE.
BOOL PathFileExistsW(LPCWSTR path);

// FILE_ATTRIBUTE_DIRECTORY if the path names a folder, a link to one too; else FALSE, with the last error as
// above when there is nothing of that name.
BOOL PathIsDirectoryW(LPCWSTR path);

// The dot that begins the extension, or the end of the text when there is none: the last dot of the last
// component, unless a space follows it. Null gives null.
//
//   a.tar.gz   .gz
//   a.         .
//   a.b c      (none)
//   a.b\c      (none)
LPWSTR PathFindExtensionW(LPCWSTR path);

// Cuts the last component and the backslash before it, in place; TRUE if anything was cut. A root keeps its
// backslash. Linux: in a path that begins with exactly one forward slash, the host's own vocabulary, the
// forward slash separates too.
//
//   "C:\a"             "C:\"
//   "C:a"              "C:"
//   "\a"               "\"
//   "a"                ""
//   "\\srv\share\a"    "\\srv\share"
//   "/a/b.txt"         "/a"  (Linux)
BOOL PathRemoveFileSpecW(LPWSTR path);

// The first character behind the root, or null when the text has none. A drive without a backslash ("C:a")
// has no root. A network path that ends in its machine or share gives its end.
//
//   C:\a  \a  \\srv\share\a  \\?\C:\a     a
LPWSTR PathSkipRootW(LPCWSTR path);

// Shortens a path to at most `maxCharacters` characters, the terminator included, into `out`, which has room
// for that many. FALSE for a null text and for 0. The rule, with n = maxCharacters - 1:
//
//   - A path of up to n characters is copied as it is.
//   - The last component keeps the separator before it ("\" or "/", whichever stands there; a separator at
//     the very end belongs to the component). When "..." and that fit, the result is as many characters of
//     the beginning as still fit, "...", and the component.
//   - When the component itself is too long, the result is "...", the separator, and the component cut so
//     that it ends in "...". A text without separator is cut the same way.
//   - Where even the dots do not fit, as many characters of "...", the separator and "..." as fit.
//
//   C:\folder\sub\name.txt    20   C:\fold...\name.txt
//   C:\folder\long name.txt   12   ...\long...
//   My Filename               10   My Fil...
BOOL PathCompactPathExW(LPWSTR out, LPCWSTR source, UINT maxCharacters, DWORD flags);

inline constexpr int CSIDL_DESKTOP = 0;
inline constexpr int CSIDL_PERSONAL = 5;
inline constexpr int CSIDL_LOCAL_APPDATA = 28;
inline constexpr int CSIDL_COMMON_APPDATA = 35;
inline constexpr int CSIDL_MYPICTURES = 39;
inline constexpr int CSIDL_COMMON_DOCUMENTS = 46;

// The path of a known folder into `path`, which has room for 260 characters, without separator at its end.
// FALSE, with empty text, when the id is not one of the above, the path is too long, or the folder is missing
// and `create` is FALSE (with TRUE it is made, parents included); the two common folders are always there,
// and on Linux made by the first question. Linux, all in the form "C:\...":
//
//   - desktop, documents, pictures: the user folders of the desktop's own settings; where there are none,
//     "Desktop", "Documents" and "Pictures" in the home folder;
//   - local application data: the user's data folder, as a rule "~/.local/share";
//   - common application data and common documents: "CommonData" and "CommonDocuments" in "/var/lib/qorgen",
//     where an administrator has made that folder and the user may write to it; else in "qorgen" of the
//     user's data folder. The permissions of "/var/lib/qorgen" say who shares, and what is made below it gets
//     them from the folder that it is made in, whatever the process's mask:
//       2770, 2775  a group: each member reads, replaces and removes what another has made
//       1777        everybody: each user adds and reads; what he has made only he replaces and removes (0777
//                   means this, too)
//       3770        a group, each member as with 1777
//     Below it no link is followed by what opens, replaces or removes stored values, makes folders or removes
//     them with all they hold.
BOOL SHGetSpecialFolderPathW(HWND owner, LPWSTR path, int folderId, BOOL create);

using ASSOCF = DWORD;
inline constexpr ASSOCF ASSOCF_NOTRUNCATE = 0x20;
enum ASSOCSTR { ASSOCSTR_EXECUTABLE = 2 };

// The program that opens files of a type. `association` is an extension with its dot, `verb` is "open" or
// null. `count` holds the room of `out` in characters and receives the number of characters written,
// terminator included.
//
//   S_OK           written
//   S_FALSE        `out` is null; `count` receives the room needed
//   E_POINTER      not enough room; `count` receives the room needed; nothing is written with
//                  ASSOCF_NOTRUNCATE, else as much as fits
//   E_INVALIDARG   a null or empty argument or another kind of question
//   ERROR_NO_ASSOCIATION as a HRESULT: nothing is registered; `count` stays
//
// Linux: the content type that the desktop's database gives for the extension, its default application, and
// the program of that, found through the search path and given in the form "C:\usr\bin\vim". Nothing counts
// as registered on a machine without GIO.
HRESULT AssocQueryStringW(ASSOCF flags, ASSOCSTR kind, LPCWSTR association, LPCWSTR verb, LPWSTR out,
                          DWORD* count);

#endif
