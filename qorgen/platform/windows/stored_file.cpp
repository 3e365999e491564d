#include "qorgen/platform/stored_file.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

namespace qorgen::platform {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr int kNames = 256;

HANDLE Open(const wchar_t* path, DWORD access, DWORD share, DWORD disposition, DWORD flags) {
  return CreateFileW(path, access, share, nullptr, disposition, flags, nullptr);
}

// The folder, with the separator at its end.
std::wstring FolderOf(const std::wstring& path) {
  return path.substr(0, path.find_last_of(L"\\/:") + 1);
}

// Removes what writers that live no more left behind: a living one has its file open, and so it can't be removed.
void RemoveLeft(const std::wstring& folder) {
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW((folder + L"~*.qr~").c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const bool plain =
        (data.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0;
    if (plain && IsReplacementName(data.cFileName)) DeleteFileW((folder + data.cFileName).c_str());
  } while (FindNextFileW(search, &data));
  FindClose(search);
}

// The information classes of SetFileInformationByHandle; the second one is known from Windows 10 1709 on.
constexpr int kRename = 3;
constexpr int kRenameEx = 22;
constexpr DWORD kReplaceIfExists = 1;
constexpr DWORD kPosixSemantics = 2;  // a file that readers have open goes nevertheless

bool Rename(HANDLE file, const std::wstring& path, int kind, DWORD flags) {
  const std::size_t bytes = path.size() * sizeof(wchar_t);
  std::vector<unsigned char> block(sizeof(FILE_RENAME_INFO) + bytes);
  auto* request = reinterpret_cast<FILE_RENAME_INFO*>(block.data());
  std::memcpy(request, &flags, sizeof flags);
  request->RootDirectory = nullptr;
  request->FileNameLength = static_cast<DWORD>(bytes);
  std::memcpy(request->FileName, path.c_str(), bytes);
  return SetFileInformationByHandle(file, static_cast<FILE_INFO_BY_HANDLE_CLASS>(kind), request,
                                    static_cast<DWORD>(block.size())) != 0;
}

// Calls the step again while another one is in the way, for that many milliseconds at most.
template <class Step>
bool Patiently(ULONGLONG patience, Step step) {
  const ULONGLONG start = GetTickCount64();
  for (int attempt = 0;; ++attempt) {
    if (step()) return true;
    const DWORD error = GetLastError();
    if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) return false;
    if (GetTickCount64() - start >= patience) {
      SetLastError(error);
      return false;
    }
    Sleep(attempt < 20 ? 0 : 1);
  }
}

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

}  // namespace

HANDLE OpenStoredFile(LPCWSTR path) {
  const DWORD attributes = GetFileAttributesW(path);
  if (attributes == INVALID_FILE_ATTRIBUTES) return INVALID_HANDLE_VALUE;
  HANDLE file = INVALID_HANDLE_VALUE;
  // While it is replaced, the file can't be opened for a moment where the file system has to do that in steps.
  const bool opened = (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && Patiently(100, [&] {
                        file =
                            Open(path, GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
                        return file != INVALID_HANDLE_VALUE;
                      });
  if (!opened) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
  }
  BY_HANDLE_FILE_INFORMATION facts;
  if (GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &facts) &&
      (facts.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return file;
  }
  CloseHandle(file);
  SetLastError(ERROR_ACCESS_DENIED);
  return INVALID_HANDLE_VALUE;
}

struct FileReplacement::State {
  ~State() {
    if (file == INVALID_HANDLE_VALUE) return;
    FILE_DISPOSITION_INFO gone = {TRUE};
    SetFileInformationByHandle(file, FileDispositionInfo, &gone, sizeof gone);
    CloseHandle(file);
  }

  std::wstring path;
  HANDLE file = INVALID_HANDLE_VALUE;
};

FileReplacement::FileReplacement() = default;
FileReplacement::~FileReplacement() = default;

BOOL FileReplacement::Begin(LPCWSTR path) {
  auto state = std::make_unique<State>();
  wchar_t full[MAX_PATH];
  const DWORD length = path != nullptr && path[0] != 0 ? GetFullPathNameW(path, MAX_PATH, full, nullptr) : 0;
  if (length == 0 || length >= MAX_PATH)
    return Fail(length == 0 ? ERROR_PATH_NOT_FOUND : ERROR_FILENAME_EXCED_RANGE);
  state->path = full;
  const DWORD attributes = GetFileAttributesW(full);
  if (attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) {
    return Fail(ERROR_ACCESS_DENIED);
  }
  const std::wstring folder = FolderOf(state->path);
  RemoveLeft(folder);
  for (int name = 0; name < kNames; ++name) {
    wchar_t text[16];
    wsprintfW(text, L"~%X.qr~", name);
    // Once it is in its place, and still open for a moment, it can be read.
    state->file = Open((folder + text).c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_READ, CREATE_NEW,
                       FILE_ATTRIBUTE_NORMAL);
    if (state->file != INVALID_HANDLE_VALUE) {
      state_ = std::move(state);
      return TRUE;
    }
    const DWORD error = GetLastError();
    // The last two: another writer's is just about to go.
    if (error != ERROR_FILE_EXISTS && error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
      return FALSE;
  }
  return FALSE;
}

BOOL FileReplacement::Write(const void* bytes, std::size_t count) {
  const char* at = static_cast<const char*>(bytes);
  while (count > 0) {
    DWORD put = 0;
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(count, 1u << 30));
    if (!WriteFile(state_->file, at, piece, &put, nullptr)) return FALSE;
    if (put == 0) return Fail(ERROR_DISK_FULL);
    at += put;
    count -= put;
  }
  return TRUE;
}

BOOL FileReplacement::Commit(bool replaces) {
  State& state = *state_;
  const DWORD flags = replaces ? kReplaceIfExists : 0;
  if (!Rename(state.file, state.path, kRenameEx, flags | kPosixSemantics) &&
      !Patiently(2000, [&] { return Rename(state.file, state.path, kRename, flags); })) {
    return FALSE;
  }
  CloseHandle(std::exchange(state.file, INVALID_HANDLE_VALUE));
  return TRUE;
}

}  // namespace qorgen::platform
