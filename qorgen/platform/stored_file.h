#pragma once

// Files that hold what a user stored, on either host: read as plain files only, and replaced in one step, so that
// whoever reads finds the old content or the new, whole, also after the writer was killed. One thread at a time.
//
// The new content is written to a file beside the one that it replaces, of a name of its own (IsReplacementName). The
// file is made exclusively and private to its user, and takes the place and the permissions of the old one at the end.
// While its writer lives, nobody takes it away; one that a killed writer left behind goes with a later replacement in
// the same folder. What is replaced is on the disk when the host's file system puts it there: a power cut may lose the
// last replacement.

#include <cstddef>
#include <memory>

#include "qorgen/platform/types.h"

namespace qorgen::platform {

// Opens an existing plain file for reading; in nobody's way: it may be written, replaced and removed meanwhile.
// INVALID_HANDLE_VALUE with the last error when that isn't possible, and when the path names a link or a device: what
// others may have put in a file's place is neither followed nor waited for. To be closed with CloseHandle.
HANDLE OpenStoredFile(LPCWSTR path);

class FileReplacement {
 public:
  FileReplacement();
  // Without Commit the new file goes, and the old one stays.
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  // Each gives FALSE with the last error when it fails; then nothing but the end may follow.
  // Begins a new file for `path`, whose folder has to be there. ERROR_ACCESS_DENIED when a folder or a file marked
  // read-only has the name.
  BOOL Begin(LPCWSTR path);
  BOOL Write(const void* bytes, std::size_t count);
  // Puts the new file in its place: in that of a file or link of that name, or, unless `replaces`, only where there is
  // none (else ERROR_ALREADY_EXISTS). A reader that uses OpenStoredFile is no obstacle. On Windows before 10 1709, and
  // on file systems other than its own, the step waits, up to two seconds, for a moment without readers. An opening
  // that doesn't share deletion gives ERROR_SHARING_VIOLATION or ERROR_ACCESS_DENIED, on Linux within the process only.
  BOOL Commit(bool replaces = true);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Whether a file name, without folder, is one of those that replacements use: "~", one to eight hexadecimal digits,
// ".qr~". Such a file is nothing that a user stored.
bool IsReplacementName(LPCWSTR name);

}  // namespace qorgen::platform
