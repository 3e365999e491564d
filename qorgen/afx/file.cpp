#include "qorgen/afx/file.h"

#include <climits>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

IMPLEMENT_DYNAMIC(CFile, CObject)

const HANDLE CFile::hFileNull = INVALID_HANDLE_VALUE;

namespace {

[[noreturn]] void ThrowError(DWORD error, const wchar_t* name) {
  const LONG number = static_cast<LONG>(error);
  AfxThrowFileException(
      error == 0 ? CFileException::genericException : CFileException::OsErrorToException(number), number,
      name);
}

[[noreturn]] void ThrowLastErrorFor(const wchar_t* name) {
  ThrowError(GetLastError(), name);
}

// The whole path; as given when the system can't say.
CString FullPath(const wchar_t* path) {
  CString full;
  wchar_t* buffer = full.GetBuffer(MAX_PATH);
  const DWORD length = GetFullPathNameW(path, MAX_PATH + 1, buffer, nullptr);
  if (length == 0 || length > MAX_PATH) {
    full.ReleaseBuffer(0);
    return length == 0 ? CString(path) : full = path;
  }
  full.ReleaseBuffer(static_cast<int>(length));
  return full;
}

DWORD ShareModeOf(unsigned int flags) {
  switch (flags & 0x70) {
    case CFile::shareDenyWrite:
      return FILE_SHARE_READ;
    case CFile::shareDenyRead:
      return FILE_SHARE_WRITE;
    case CFile::shareDenyNone:
      return FILE_SHARE_READ | FILE_SHARE_WRITE;
    default:
      return 0;
  }
}

// A value of 3 is none of the published ones; it is taken for both.
DWORD AccessOf(unsigned int flags) {
  switch (flags & 3) {
    case CFile::modeRead:
      return GENERIC_READ;
    case CFile::modeWrite:
      return GENERIC_WRITE;
    default:
      return GENERIC_READ | GENERIC_WRITE;
  }
}

void Store(const CString& path, wchar_t (&name)[MAX_PATH]) {
  int length = 0;
  for (; length < path.GetLength() && length < static_cast<int>(MAX_PATH) - 1; ++length)
    name[length] = path[length];
  name[length] = 0;
}

unsigned long long Join(DWORD high, DWORD low) {
  return static_cast<unsigned long long>(high) << 32 | low;
}

}  // namespace

CFile::CFile() : m_hFile(hFileNull), m_bCloseOnDelete(0) {}

CFile::CFile(HANDLE hFile) : m_hFile(hFile), m_bCloseOnDelete(0) {}

CFile::CFile(const wchar_t* lpszFileName, unsigned int nOpenFlags) : CFile() {
  CFileException error(CFileException::none);
  // Qualified: a derived class isn't there yet.
  if (!CFile::Open(lpszFileName, nOpenFlags, &error)) {
    AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
  }
}

CFile::~CFile() {
  if (m_hFile != hFileNull && m_bCloseOnDelete) CloseHandle(m_hFile);
}

void CFile::ThrowLastError() const {
  ThrowLastErrorFor(m_strFileName);
}

int CFile::Open(const wchar_t* lpszFileName, unsigned int nOpenFlags, CFileException* pError) {
  if (m_bCloseOnDelete) CFile::Abort();
  m_hFile = hFileNull;
  m_bCloseOnDelete = 0;
  m_strFileName.Empty();

  DWORD disposition = OPEN_EXISTING;
  if ((nOpenFlags & modeCreate) != 0)
    disposition = (nOpenFlags & modeNoTruncate) != 0 ? OPEN_ALWAYS : CREATE_ALWAYS;
  DWORD flags = FILE_ATTRIBUTE_NORMAL;
  if ((nOpenFlags & osWriteThrough) != 0) flags |= FILE_FLAG_WRITE_THROUGH;
  const HANDLE file = CreateFileW(lpszFileName != nullptr ? lpszFileName : L"", AccessOf(nOpenFlags),
                                  ShareModeOf(nOpenFlags), nullptr, disposition, flags, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    const LONG number = static_cast<LONG>(GetLastError());
    if (pError != nullptr) {
      pError->m_lOsError = number;
      pError->m_cause = CFileException::OsErrorToException(number);
      pError->m_strFileName = lpszFileName;
    }
    return 0;
  }
  m_hFile = file;
  m_bCloseOnDelete = 1;
  m_strFileName = FullPath(lpszFileName);
  return 1;
}

unsigned long long CFile::GetPosition() const {
  LARGE_INTEGER none;
  LARGE_INTEGER position;
  none.QuadPart = 0;
  if (!SetFilePointerEx(m_hFile, none, &position, FILE_CURRENT)) ThrowLastError();
  return static_cast<unsigned long long>(position.QuadPart);
}

int CFile::GetStatus(CFileStatus& status) const {
  FILETIME creation;
  FILETIME access;
  FILETIME write;
  LARGE_INTEGER size;
  if (m_hFile == hFileNull || !GetFileTime(m_hFile, &creation, &access, &write) ||
      !GetFileSizeEx(m_hFile, &size)) {
    return 0;
  }
  CFileStatus facts;
  facts.m_ctime = CTime(creation);
  facts.m_atime = CTime(access);
  facts.m_mtime = CTime(write);
  facts.m_size = static_cast<unsigned long long>(size.QuadPart);
  Store(m_strFileName, facts.m_szFullName);
  // An open file may have lost its name since.
  const DWORD attributes =
      m_strFileName.IsEmpty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(m_strFileName);
  if (attributes != INVALID_FILE_ATTRIBUTES) facts.m_attribute = attributes & ~DWORD{FILE_ATTRIBUTE_NORMAL};
  status = facts;
  return 1;
}

CString CFile::GetFileName() const {
  int start = m_strFileName.GetLength();
  while (start > 0 && m_strFileName[start - 1] != L'\\' && m_strFileName[start - 1] != L'/') --start;
  return m_strFileName.Mid(start);
}

CString CFile::GetFileTitle() const {
  const CString name = GetFileName();
  const int dot = name.ReverseFind(L'.');
  return dot > 0 ? name.Left(dot) : name;
}

CString CFile::GetFilePath() const {
  return m_strFileName;
}

void CFile::SetFilePath(const wchar_t* lpszNewName) {
  m_strFileName = lpszNewName;
}

void CFile::Rename(const wchar_t* lpszOldName, const wchar_t* lpszNewName) {
  if (!MoveFileW(lpszOldName, lpszNewName)) ThrowLastErrorFor(lpszOldName);
}

void CFile::Remove(const wchar_t* lpszFileName) {
  if (!DeleteFileW(lpszFileName)) ThrowLastErrorFor(lpszFileName);
}

int CFile::GetStatus(const wchar_t* lpszFileName, CFileStatus& status) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (lpszFileName == nullptr || !GetFileAttributesExW(lpszFileName, GetFileExInfoStandard, &data)) return 0;
  CFileStatus facts;
  facts.m_ctime = CTime(data.ftCreationTime);
  facts.m_atime = CTime(data.ftLastAccessTime);
  facts.m_mtime = CTime(data.ftLastWriteTime);
  facts.m_size = Join(data.nFileSizeHigh, data.nFileSizeLow);
  facts.m_attribute = data.dwFileAttributes & ~DWORD{FILE_ATTRIBUTE_NORMAL};
  Store(FullPath(lpszFileName), facts.m_szFullName);
  status = facts;
  return 1;
}

void CFile::SetStatus(const wchar_t* lpszFileName, const CFileStatus& status) {
  const DWORD before = GetFileAttributesW(lpszFileName);
  if (before == INVALID_FILE_ATTRIBUTES) ThrowLastErrorFor(lpszFileName);
  const bool times =
      status.m_mtime.GetTime() != 0 || status.m_atime.GetTime() != 0 || status.m_ctime.GetTime() != 0;
  // A read-only file refuses new times: the mark goes before, and comes, if asked for, after them.
  const bool marked = (before & FILE_ATTRIBUTE_READONLY) != 0;
  if (marked && times && !SetFileAttributesW(lpszFileName, before & ~DWORD{FILE_ATTRIBUTE_READONLY})) {
    ThrowLastErrorFor(lpszFileName);
  }
  if (times) {
    const HANDLE file = CreateFileW(lpszFileName, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    DWORD error = file == INVALID_HANDLE_VALUE ? GetLastError() : 0;
    if (error == 0) {
      const FILETIME creation = status.m_ctime.GetAsFileTime();
      const FILETIME access = status.m_atime.GetAsFileTime();
      const FILETIME write = status.m_mtime.GetAsFileTime();
      if (!SetFileTime(file, status.m_ctime.GetTime() != 0 ? &creation : nullptr,
                       status.m_atime.GetTime() != 0 ? &access : nullptr,
                       status.m_mtime.GetTime() != 0 ? &write : nullptr)) {
        error = GetLastError();
      }
      CloseHandle(file);
    }
    if (error != 0) {
      if (marked) SetFileAttributesW(lpszFileName, before);
      ThrowError(error, lpszFileName);
    }
  }
  const DWORD wanted = status.m_attribute == normal ? DWORD{FILE_ATTRIBUTE_NORMAL} : status.m_attribute;
  if (!SetFileAttributesW(lpszFileName, wanted)) ThrowLastErrorFor(lpszFileName);
}

CFile* CFile::Duplicate() const {
  CFile* twin = new CFile;
  HANDLE handle = nullptr;
  if (!DuplicateHandle(GetCurrentProcess(), m_hFile, GetCurrentProcess(), &handle, 0, FALSE,
                       DUPLICATE_SAME_ACCESS)) {
    delete twin;
    ThrowLastError();
  }
  twin->m_hFile = handle;
  twin->m_bCloseOnDelete = m_bCloseOnDelete;
  twin->m_strFileName = m_strFileName;
  return twin;
}

unsigned long long CFile::Seek(long long lOff, unsigned int nFrom) {
  LARGE_INTEGER distance;
  LARGE_INTEGER position;
  distance.QuadPart = lOff;
  if (!SetFilePointerEx(m_hFile, distance, &position, nFrom)) ThrowLastError();
  return static_cast<unsigned long long>(position.QuadPart);
}

void CFile::SetLength(unsigned long long dwNewLen) {
  if (dwNewLen > LLONG_MAX) ThrowError(ERROR_INVALID_PARAMETER, m_strFileName);
  Seek(static_cast<long long>(dwNewLen), begin);
  if (!SetEndOfFile(m_hFile)) ThrowLastError();
}

unsigned long long CFile::GetLength() const {
  LARGE_INTEGER size;
  if (!GetFileSizeEx(m_hFile, &size)) ThrowLastError();
  return static_cast<unsigned long long>(size.QuadPart);
}

unsigned int CFile::Read(void* lpBuf, unsigned int nCount) {
  if (nCount == 0) return 0;
  DWORD read = 0;
  if (!ReadFile(m_hFile, lpBuf, nCount, &read, nullptr)) ThrowLastError();
  return read;
}

void CFile::Write(const void* lpBuf, unsigned int nCount) {
  if (nCount == 0) return;
  DWORD written = 0;
  if (!WriteFile(m_hFile, lpBuf, nCount, &written, nullptr)) ThrowLastError();
  if (written != nCount) ThrowError(ERROR_DISK_FULL, m_strFileName);
}

void CFile::LockRange(unsigned long long dwPos, unsigned long long dwCount) {
  if (!LockFile(m_hFile, static_cast<DWORD>(dwPos), static_cast<DWORD>(dwPos >> 32),
                static_cast<DWORD>(dwCount), static_cast<DWORD>(dwCount >> 32))) {
    ThrowLastError();
  }
}

void CFile::UnlockRange(unsigned long long dwPos, unsigned long long dwCount) {
  if (!UnlockFile(m_hFile, static_cast<DWORD>(dwPos), static_cast<DWORD>(dwPos >> 32),
                  static_cast<DWORD>(dwCount), static_cast<DWORD>(dwCount >> 32))) {
    ThrowLastError();
  }
}

void CFile::Abort() {
  if (m_hFile != hFileNull) CloseHandle(m_hFile);
  m_hFile = hFileNull;
  m_bCloseOnDelete = 0;
  m_strFileName.Empty();
}

void CFile::Flush() {
  if (m_hFile != hFileNull && !FlushFileBuffers(m_hFile)) ThrowLastError();
}

void CFile::Close() {
  const bool closed = m_hFile == hFileNull || CloseHandle(m_hFile);
  const DWORD error = closed ? 0 : GetLastError();
  const CString name = m_strFileName;
  m_hFile = hFileNull;
  m_bCloseOnDelete = 0;
  m_strFileName.Empty();
  if (!closed) ThrowError(error, name);
}
