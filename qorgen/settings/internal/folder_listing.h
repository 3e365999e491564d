#pragma once

// Folders as keys: what lies in them, in the order of the system's search, and whether they can be had. May
// be called from any thread.

#include <vector>

#include "qorgen/afx/string.h"

namespace qorgen::settings {

// The names of the files but those that are just being written; empty also when there is no such folder.
std::vector<CString> ListFiles(const wchar_t* folder);

// The names of the sub-folders, and the folder's attributes set to normal; empty when that is refused.
std::vector<CString> ListSubFolders(const wchar_t* folder);

// True if the folder is there or could be made.
bool EnsureFolder(const wchar_t* folder);

// Whether a part of the name of a sub-key consists of dots and blanks: such a name leads out of the key or to the key
// itself, on Windows with blanks and further dots, too.
bool LeavesFolder(const wchar_t* name);
// The same for the name of a value, of which only the last part counts; blanks alone are a name here.
bool IsDotsOnly(const wchar_t* name);

// Whether a sub-key may have the name; null and empty text may. Not one of over 255 characters either: the path
// operations take it for an empty one, which would mean the key itself.
bool IsKeyName(const wchar_t* name);

}  // namespace qorgen::settings
