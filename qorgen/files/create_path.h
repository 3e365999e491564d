#pragma once

// CQorCreatePath: a path built from its parts. An object belongs to one thread at a time.

#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"

class QORGEN_API CQorCreatePath {
 public:
  // Any part may be null or empty. What is missing between the parts is added: the drive's colon, a backslash
  // behind the directory, the extension's dot. A drive that begins with two backslashes names a machine and
  // is set before the directory with a backslash between. Parts of more than 1,040 characters in all (259 on
  // Linux) give an empty path.
  //
  //   ("C", "\a", "b", "txt")                C:\a\b.txt
  //   (null, "C:\a\", "*.*", null)           C:\a\*.*
  //   ("\\srv", "share\a", "b", ".txt")      \\srv\share\a\b.txt
  CQorCreatePath(const wchar_t* drive, const wchar_t* directory, const wchar_t* fileName,
                 const wchar_t* extension);

  // Valid as long as the object.
  operator const wchar_t*() const { return m_path; }

 private:
  CString m_path;
};
