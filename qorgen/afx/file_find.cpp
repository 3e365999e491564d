#include "qorgen/afx/file_find.h"

#include <utility>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

IMPLEMENT_DYNAMIC(CFileFind, CObject)

namespace {

WIN32_FIND_DATAW* Record(void* info) {
  return static_cast<WIN32_FIND_DATAW*>(info);
}

// The full path of the folder that a search text names.
CString RootOf(const wchar_t* text) {
  CString full;
  DWORD capacity = MAX_PATH;
  for (;;) {
    wchar_t* buffer = full.GetBuffer(static_cast<int>(capacity));
    const DWORD length = GetFullPathNameW(text, capacity, buffer, nullptr);
    if (length < capacity) {
      full.ReleaseBuffer(static_cast<int>(length));
      break;
    }
    full.ReleaseBuffer(0);
    capacity = length;
  }
  int end = full.ReverseFind(L'\\');
  if (end < 0) return full;
  // C:\ keeps its separator.
  if (end == 2 && full[1] == L':') ++end;
  return full.Left(end);
}

}  // namespace

CFileFind::CFileFind()
    : m_pFoundInfo(nullptr),
      m_pNextInfo(nullptr),
      m_hContext(INVALID_HANDLE_VALUE),
      m_bGotLast(0),
      m_bFound(0) {}

CFileFind::~CFileFind() {
  Close();
  delete Record(m_pFoundInfo);
  delete Record(m_pNextInfo);
}

void CFileFind::Close() {
  CloseContext();
  m_bGotLast = 0;
  m_bFound = 0;
  m_strRoot.Empty();
}

void CFileFind::CloseContext() {
  if (m_hContext != INVALID_HANDLE_VALUE) FindClose(m_hContext);
  m_hContext = INVALID_HANDLE_VALUE;
}

int CFileFind::FindFile(const wchar_t* pstrName, DWORD) {
  Close();
  if (m_pFoundInfo == nullptr) m_pFoundInfo = new WIN32_FIND_DATAW;
  if (m_pNextInfo == nullptr) m_pNextInfo = new WIN32_FIND_DATAW;
  if (pstrName == nullptr) pstrName = L"*.*";
  m_hContext = FindFirstFileW(pstrName, Record(m_pNextInfo));
  if (m_hContext == INVALID_HANDLE_VALUE) return 0;
  m_strRoot = RootOf(pstrName);
  return 1;
}

int CFileFind::FindNextFile() {
  if (m_hContext == INVALID_HANDLE_VALUE || m_bGotLast) return 0;
  std::swap(m_pFoundInfo, m_pNextInfo);
  m_bFound = 1;
  // Qualified: with the system's headers the method has this name itself.
  if (::FindNextFileW(m_hContext, Record(m_pNextInfo))) return 1;
  m_bGotLast = 1;
  return 0;
}

CString CFileFind::GetRoot() const {
  return m_strRoot;
}

CString CFileFind::GetFileName() const {
  return m_bFound ? CString(Record(m_pFoundInfo)->cFileName) : CString();
}

CString CFileFind::GetFileTitle() const {
  const CString name = GetFileName();
  const int dot = name.ReverseFind(L'.');
  return dot > 0 && !IsDots() ? name.Left(dot) : name;
}

CString CFileFind::GetFilePath() const {
  if (!m_bFound) return CString();
  CString path = m_strRoot;
  if (path.IsEmpty() || path[path.GetLength() - 1] != L'\\') path.AppendChar(L'\\');
  path.Append(Record(m_pFoundInfo)->cFileName);
  return path;
}

CString CFileFind::GetFileURL() const {
  return m_bFound ? L"file://" + GetFilePath() : CString();
}

unsigned long long CFileFind::GetLength() const {
  if (!m_bFound) return 0;
  const WIN32_FIND_DATAW* record = Record(m_pFoundInfo);
  return static_cast<unsigned long long>(record->nFileSizeHigh) << 32 | record->nFileSizeLow;
}

int CFileFind::GetLastWriteTime(FILETIME* pTimeStamp) const {
  if (!m_bFound || pTimeStamp == nullptr) return 0;
  *pTimeStamp = Record(m_pFoundInfo)->ftLastWriteTime;
  return 1;
}

int CFileFind::GetLastAccessTime(FILETIME* pTimeStamp) const {
  if (!m_bFound || pTimeStamp == nullptr) return 0;
  *pTimeStamp = Record(m_pFoundInfo)->ftLastAccessTime;
  return 1;
}

int CFileFind::GetCreationTime(FILETIME* pTimeStamp) const {
  if (!m_bFound || pTimeStamp == nullptr) return 0;
  *pTimeStamp = Record(m_pFoundInfo)->ftCreationTime;
  return 1;
}

int CFileFind::GetLastWriteTime(CTime& refTime) const {
  FILETIME time;
  if (!GetLastWriteTime(&time)) return 0;
  refTime = CTime(time);
  return 1;
}

int CFileFind::GetLastAccessTime(CTime& refTime) const {
  FILETIME time;
  if (!GetLastAccessTime(&time)) return 0;
  refTime = CTime(time);
  return 1;
}

int CFileFind::GetCreationTime(CTime& refTime) const {
  FILETIME time;
  if (!GetCreationTime(&time)) return 0;
  refTime = CTime(time);
  return 1;
}

int CFileFind::MatchesMask(DWORD dwMask) const {
  return m_bFound && (Record(m_pFoundInfo)->dwFileAttributes & dwMask) != 0;
}

int CFileFind::IsDots() const {
  if (!IsDirectory()) return 0;
  const wchar_t* name = Record(m_pFoundInfo)->cFileName;
  return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

int CFileFind::IsReadOnly() const {
  return MatchesMask(FILE_ATTRIBUTE_READONLY);
}
int CFileFind::IsDirectory() const {
  return MatchesMask(FILE_ATTRIBUTE_DIRECTORY);
}
int CFileFind::IsCompressed() const {
  return MatchesMask(FILE_ATTRIBUTE_COMPRESSED);
}
int CFileFind::IsSystem() const {
  return MatchesMask(FILE_ATTRIBUTE_SYSTEM);
}
int CFileFind::IsHidden() const {
  return MatchesMask(FILE_ATTRIBUTE_HIDDEN);
}
int CFileFind::IsTemporary() const {
  return MatchesMask(FILE_ATTRIBUTE_TEMPORARY);
}
int CFileFind::IsNormal() const {
  return MatchesMask(FILE_ATTRIBUTE_NORMAL);
}
int CFileFind::IsArchived() const {
  return MatchesMask(FILE_ATTRIBUTE_ARCHIVE);
}
