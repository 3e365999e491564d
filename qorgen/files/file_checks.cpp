// Questions about files, drives and folders.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "qorgen/afx/file_find.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/split_path.h"
#include "qorgen/platform/common/code_page_932.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/time.h"

using qorgen::platform::IsLead932;
using qorgen::platform::IsPrint932;
using qorgen::platform::IsTrail932;

namespace {

struct CloseFile {
  using pointer = HANDLE;
  void operator()(HANDLE file) const {
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  }
};
using File = std::unique_ptr<void, CloseFile>;

class ErrorMode {
 public:
  explicit ErrorMode(UINT mode) : m_former(SetErrorMode(mode)) {}
  ErrorMode(const ErrorMode&) = delete;
  ErrorMode& operator=(const ErrorMode&) = delete;
  ~ErrorMode() { SetErrorMode(m_former); }

 private:
  UINT m_former;
};

// What stands in the sample buffer behind the bytes that were read: a letter, which passes as itself and as a
// trail byte, so that only what was read decides.
constexpr wchar_t kFiller = L'A';

// `count` is a number of bytes but runs over the 16-bit units of the sample, which has at least one more.
bool IsText(const wchar_t* sample, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto low = static_cast<unsigned char>(sample[i]);
    // The line ends and the tab are whole units, unlike the byte classes.
    const bool is_control = sample[i] == L'\r' || sample[i] == L'\n' || sample[i] == L'\t';
    if (IsPrint932(low) || is_control) continue;
    if (!IsLead932(low) || !IsTrail932(static_cast<unsigned char>(sample[i + 1]))) return false;
    ++i;
  }
  return true;
}

// Whether a search finds anything, and the system's error if not.
bool Finds(const wchar_t* path, DWORD& error) {
  CFileFind finder;
  if (finder.FindFile(path)) return true;
  error = GetLastError();
  return false;
}

}  // namespace

int CQorFileUtil::IsExistFile(const wchar_t* path) {
  DWORD error = ERROR_SUCCESS;
  // For null the search would take every file of the working folder.
  return path != nullptr && Finds(path, error) ? 1 : 0;
}

int CQorFileUtil::IsEqualFile(const wchar_t* a, const wchar_t* b) {
  return _wcsicmp(a != nullptr ? a : L"", b != nullptr ? b : L"") == 0 ? 1 : 0;
}

int CQorFileUtil::IsNetDrive(const wchar_t* path) {
  return path != nullptr && IsDirSep(path[0]) && IsDirSep(path[1]) ? 1 : 0;
}

int CQorFileUtil::IsDriveAlive(const wchar_t* path) {
  if (IsNetDrive(path)) return 1;
  const ErrorMode no_dialog(SEM_FAILCRITICALERRORS);
  const CQorSplitPath parts(path);
  // Without a drive the system would answer for the current one.
  if (parts.GetDrive() == nullptr || parts.GetDrive()[0] == 0) return 0;
  const UINT type = GetDriveTypeW(parts.GetDrive());
  if (type == DRIVE_UNKNOWN || type == DRIVE_NO_ROOT_DIR) return 0;
  if (type == DRIVE_REMOVABLE && _waccess(parts.GetDrive(), 0) == -1) return 0;
  return 1;
}

int CQorFileUtil::IsTextFile(const wchar_t* path, long sampleSize) {
  if (path == nullptr || sampleSize < 0) return 0;
  const File file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file.get() == INVALID_HANDLE_VALUE) return 0;
  LARGE_INTEGER start = {};
  if (!SetFilePointerEx(file.get(), start, nullptr, FILE_BEGIN)) return 0;

  // No more is allocated than the file can fill, whatever size the caller names.
  LARGE_INTEGER size = {};
  if (!GetFileSizeEx(file.get(), &size)) return 0;
  const auto wanted = static_cast<std::uint32_t>(std::min<LONGLONG>({sampleSize, size.QuadPart, 0x7FFFFFFE}));
  const std::unique_ptr<wchar_t[]> sample(new (std::nothrow) wchar_t[std::size_t{wanted} + 1]);
  if (sample == nullptr) return 0;
  std::fill_n(sample.get(), std::size_t{wanted} + 1, kFiller);
  DWORD read = 0;
  if (!ReadFile(file.get(), sample.get(), wanted, &read, nullptr)) return 0;
  if (read == 0) return 1;
  return IsText(sample.get(), read > 1 ? read - 1 : read) ? 1 : 0;
}

int CQorFileUtil::WriteCheck(const wchar_t* folder) {
  if (folder == nullptr) return 0;
  wchar_t name[MAX_PATH] = {};
  DWORD error = ERROR_SUCCESS;
  do {
    auto number = static_cast<UINT>(_time64(nullptr));
    // The system takes the low half only, and would create a file for 0.
    if ((number & 0xFFFF) == 0) ++number;
    if (::GetTempFileNameW(folder, L"ask", number, name) == 0) return 0;
  } while (Finds(name, error));
  if (error != ERROR_FILE_NOT_FOUND) return 0;
  OutputDebugStringW(name);
  const File file(CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_WRITE_THROUGH,
                              nullptr));
  return file.get() != INVALID_HANDLE_VALUE ? 1 : 0;
}

CFileStatus CQorFileUtil::GetFileStatus(const wchar_t* path) {
  CFileStatus status;
  status.m_ctime = CTime();
  status.m_mtime = CTime();
  status.m_atime = CTime();
  if (path != nullptr) CFile::GetStatus(path, status);
  return status;
}
