#pragma once

// Folders as keys: what lies in them, in the order of the system's search, and whether they can be had. May
// be called from any thread.

#include <vector>

#include "qorgen/afx/string.h"

namespace qorgen::settings {

// The names of the files; empty also when there is no such folder.
std::vector<CString> ListFiles(const wchar_t* folder);

// The names of the sub-folders, and the folder's attributes set to normal; empty when that is refused.
std::vector<CString> ListSubFolders(const wchar_t* folder);

// True if the folder is there or could be made.
bool EnsureFolder(const wchar_t* folder);

// Whether the name of a sub-key has more than 255 characters. The path operations take such a name for an
// empty one, which would mean the key itself.
bool IsTooLongName(const wchar_t* name);

}  // namespace qorgen::settings
