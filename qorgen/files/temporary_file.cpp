#include "qorgen/files/internal/temporary_file.h"

#include "qorgen/files/file_util.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

namespace qorgen::files {

CString MakeTemporaryFile(const wchar_t* name) {
  const CString folder = CQorFileUtil::GetTempPathW();
  // Without it the name would mean a file in the working folder.
  if (folder.IsEmpty()) return CString();
  const CString path = CQorFileUtil::ConnectPath(folder, name);
  if (!CQorFileUtil::DeleteFileW(path) && GetLastError() != ERROR_FILE_NOT_FOUND) return CString();
  const HANDLE file =
      CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY, nullptr);
  if (file == INVALID_HANDLE_VALUE) return CString();
  CloseHandle(file);
  return path;
}

}  // namespace qorgen::files
