#pragma once

// How the file calls of this host report: what the host's errno means for a path, and the two ways to fail.
// Any thread.

#include <string>
#include <sys/stat.h>

#include "qorgen/platform/types.h"

namespace qorgen::platform {

// The error number for a call on the host path `host` that failed with `error` (an errno value). Tells a
// missing name (ERROR_FILE_NOT_FOUND) from a missing folder on the way to it (ERROR_PATH_NOT_FOUND) and from
// a name that nothing new may have (ERROR_INVALID_NAME), which the host doesn't.
[[nodiscard]] DWORD PathError(const std::string& host, int error);

// Sets the last error; the result is FALSE, so that a call can end in `return Fail(...)`.
BOOL Fail(DWORD error);
BOOL FailWithErrno(const std::string& host);

// The host path of `path`; false with the last error set when it has none.
[[nodiscard]] bool ToHost(const wchar_t* path, std::string& host);

// The platform's read-only mark of a file or folder.
[[nodiscard]] inline bool IsReadOnly(const struct stat& facts) {
  return (facts.st_mode & S_IWUSR) == 0;
}

}  // namespace qorgen::platform
