// Where the program, the user's folders and temporary files lie.

#include "qorgen/files/file_util.h"
#include "qorgen/files/split_path.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/module.h"
#include "qorgen/platform/shell.h"

namespace {

constexpr int kPathRoom = 261;  // with the terminator
constexpr int kPathLimit = 260;

CString KnownFolder(int id) {
  wchar_t path[kPathRoom];
  CQorFileUtil::GetShellFolderPath(path, id, 0);
  return CQorFileUtil::RemoveTailDirSep(path);
}

}  // namespace

CString CQorFileUtil::GetExeDir() {
  const CQorSplitPath parts(GetModuleFileNameW(nullptr));
  CString folder(parts.GetConnectPath());
  const int length = folder.GetLength();
  if (length > 3 && folder[length - 1] == L'\\') folder.Delete(length - 1);
  return folder;
}

CString CQorFileUtil::GetExeName() {
  const CQorSplitPath parts(GetModuleFileNameW(nullptr));
  return parts.GetFileName();
}

CString CQorFileUtil::GetModuleFileNameW(HINSTANCE module) {
  wchar_t path[kPathRoom] = {};
  ::GetModuleFileNameW(module, path, kPathRoom);
  path[kPathLimit] = 0;
  return path;
}

int CQorFileUtil::GetShellFolderPath(wchar_t* buffer, int folderId, int create) {
  if (buffer == nullptr) return 0;
  buffer[0] = 0;
  if (SHGetSpecialFolderPathW(nullptr, buffer, folderId, FALSE) && buffer[0] != 0) return 1;
  if (create == 0) return 0;
  return SHGetSpecialFolderPathW(nullptr, buffer, folderId, TRUE) && buffer[0] != 0 ? 1 : 0;
}

CString CQorFileUtil::GetDesktopPath() {
  return KnownFolder(CSIDL_DESKTOP);
}
CString CQorFileUtil::GetMyDocumentPath() {
  return KnownFolder(CSIDL_PERSONAL);
}
CString CQorFileUtil::GetMyPicturesPath() {
  return KnownFolder(CSIDL_MYPICTURES);
}
CString CQorFileUtil::GetAppDataLocalPath() {
  return KnownFolder(CSIDL_LOCAL_APPDATA);
}
CString CQorFileUtil::GetCommonAppDataPath() {
  return KnownFolder(CSIDL_COMMON_APPDATA);
}
CString CQorFileUtil::GetCommonDocumentPath() {
  return KnownFolder(CSIDL_COMMON_DOCUMENTS);
}

CString CQorFileUtil::GetTempPathW() {
  wchar_t path[kPathRoom] = {};
  const DWORD length = ::GetTempPathW(kPathLimit, path);
  return length > 0 && length < kPathLimit ? CString(path) : CString();
}

CString CQorFileUtil::GetTempFileNameW(const wchar_t* prefix) {
  wchar_t path[kPathRoom] = {};
  if (::GetTempFileNameW(GetTempPathW(), prefix != nullptr ? prefix : L"qor", 0, path) == 0) return CString();
  return path;
}
