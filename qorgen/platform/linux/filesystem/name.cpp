// Names: the working folder, full paths, temporary files.

#include <cerrno>
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/errno_map.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"

using namespace qorgen::platform;

namespace {

// The full form of a path that this host can't have: only its separators are put right.
std::u16string ForeignPath(LPCWSTR path) {
  std::u16string text = TextOf(path);
  for (char16_t& unit : text) {
    if (unit == u'/') unit = u'\\';
  }
  return text;
}

}  // namespace

DWORD GetFullPathNameW(LPCWSTR path, DWORD capacity, LPWSTR buffer, LPWSTR* filePart) {
  if (filePart != nullptr) *filePart = nullptr;
  DWORD error = 0;
  const std::string host = HostPath(path, &error);
  if (path == nullptr || path[0] == 0) {
    SetLastError(ERROR_INVALID_NAME);
    return 0;
  }
  std::u16string full;
  if (error != 0) {
    full = ForeignPath(path);
  } else {
    const std::string absolute = AbsoluteHostPath(host);
    if (absolute.empty()) {
      SetLastErrorFromErrno();
      return 0;
    }
    full = LibraryPath(absolute);
  }
  const DWORD length = StoreText(full, buffer, capacity);
  if (length == full.size() && filePart != nullptr) {
    const std::size_t last = full.rfind(u'\\');
    if (last != std::u16string::npos && last + 1 < full.size()) *filePart = buffer + last + 1;
  }
  return length;
}

UINT GetTempFileNameW(LPCWSTR folder, LPCWSTR prefix, UINT unique, LPWSTR name) {
  if (folder == nullptr || name == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  name[0] = 0;
  std::u16string path = TextOf(folder);
  if (path.size() > MAX_PATH - 14) {
    SetLastError(ERROR_BUFFER_OVERFLOW);
    return 0;
  }
  if (!path.empty() && !IsSeparator(static_cast<wchar_t>(path.back()))) path += u'\\';
  path.append(TextOf(prefix), 0, 3);

  const auto form = [&](UINT number) {
    char digits[12];
    const int count = std::snprintf(digits, sizeof digits, "%X.TMP", number);
    std::u16string full = path;
    full.append(digits, digits + count);
    StoreText(full, name, MAX_PATH);
  };
  if ((unique & 0xFFFF) != 0) {
    form(unique & 0xFFFF);
    return unique & 0xFFFF;
  }

  struct stat facts;
  DWORD error = 0;
  const std::string host = HostPath(folder, &error);
  if (error != 0 || stat(host.c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode)) {
    SetLastError(ERROR_DIRECTORY);
    return 0;
  }
  // Starting points differ between processes and moments; every number is tried once.
  struct timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  const auto start = static_cast<UINT>(now.tv_nsec / 1000) + static_cast<UINT>(getpid()) * 257u;
  for (UINT step = 0; step <= 0xFFFF; ++step) {
    const UINT number = (start + step) & 0xFFFF;
    if (number == 0) continue;
    form(number);
    const HANDLE file =
        CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      CloseHandle(file);
      return number;
    }
    if (GetLastError() != ERROR_FILE_EXISTS) break;
  }
  name[0] = 0;
  return 0;
}
