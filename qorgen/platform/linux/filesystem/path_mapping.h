#pragma once

// The one place where paths of the library's vocabulary and paths of this host meet.
//
// `C:` (either case) is the root of the file system: `C:\a\b`, `\a\b` and `/a/b` are the same path; without a
// leading separator, with or without `C:`, a path is relative to the working folder. Backslash and slash both
// separate. Names are UTF-8 on disk and are taken as they stand: no case folding, no reserved device names,
// no trimming of trailing dots or blanks. Pure text work but for AbsoluteHostPath; any thread may call it.

#include <cstddef>
#include <string>
#include <string_view>

#include "qorgen/platform/types.h"

namespace qorgen::platform {

// The host path of `path`, in UTF-8; empty when this host cannot have such a path, and then `error` (if not
// null) holds the reason, otherwise 0:
//   ERROR_PATH_NOT_FOUND   null or empty text, or a drive other than C
//   ERROR_BAD_NETPATH      \\machine\share: network paths are not reachable by name
//   ERROR_FILE_NOT_FOUND   a device of the \\.\ or \\?\ kind that is no drive
// "." and ".." are resolved in the text, as the platform does, so `missing\..\a` is `a`; a ".." that leads
// out of a relative path is left for the host. `\\?\C:\a` is accepted. A separator at the end stays.
//   C:\a\b -> /a/b    c:x -> x    C: -> .    C:\a\..\..\b\ -> /b/    ..\a -> ../a
[[nodiscard]] std::string HostPath(const wchar_t* path, DWORD* error = nullptr);

// The path of the library's vocabulary for an absolute or relative host path: /a/b -> C:\a\b, a/b -> a\b, /
// -> C:\.
[[nodiscard]] std::u16string LibraryPath(std::string_view host);

// One name (no separators) between the two encodings. Every name goes there and back unchanged: a lone
// surrogate is stored as its three-byte form, a byte that is no UTF-8 reads as U+DC00 plus the byte, and a
// backslash inside a name, which the library would take for a separator, reads as U+F05C.
[[nodiscard]] std::string HostName(std::u16string_view name);
[[nodiscard]] std::u16string LibraryName(std::string_view host);

// Whether the last component of a host path may be given to a new file or folder. The platform's forbidden
// characters (< > : " | ? * and controls) are refused for new names only; an existing file that has them can
// be opened, renamed and removed.
[[nodiscard]] bool IsCreatable(std::string_view host);

// The host path up to its last component, "." for a bare name and "/" for the root; and that last component.
// Trailing separators don't count.
[[nodiscard]] std::string HostFolder(std::string_view host);
[[nodiscard]] std::string HostLeaf(std::string_view host);

// The host path from the root on; empty with errno when it is relative and the working folder has been removed or can't
// be reached.
[[nodiscard]] std::string AbsoluteHostPath(const std::string& host);

// The same path without separators at its end; the root stays.
[[nodiscard]] std::string WithoutSeparators(std::string host);

// The usual contract of calls that fill a caller's buffer of `capacity` characters: when the text fits with
// its terminator it is copied and its length returned; else nothing is written and the needed capacity is
// returned.
DWORD StoreText(std::u16string_view text, wchar_t* buffer, DWORD capacity);

// A copy of a terminated wide text; null counts as empty.
[[nodiscard]] std::u16string TextOf(const wchar_t* text);

constexpr bool IsSeparator(wchar_t c) {
  return c == L'\\' || c == L'/';
}

}  // namespace qorgen::platform
