// CFileException: causes, their sources and their texts.

#include <cerrno>
#include <iterator>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/internal/message_text.h"
#include "qorgen/afx/string_resource.h"
#include "qorgen/platform/error.h"

IMPLEMENT_DYNAMIC(CFileException, CException)

static_assert(CFileException::endOfFile + 1 == qorgen::afx::kFileCauses);

namespace {

// System error numbers `first` to `last` have the cause. Ascending; what is missing is genericException.
struct OsErrorRange {
  constexpr OsErrorRange(DWORD from, DWORD to, int why)
      : first(static_cast<LONG>(from)), last(static_cast<LONG>(to)), cause(why) {}
  constexpr OsErrorRange(DWORD only, int why) : OsErrorRange(only, only, why) {}

  LONG first;
  LONG last;
  int cause;
};

constexpr OsErrorRange kOsErrors[] = {
    {ERROR_SUCCESS, CFileException::none},
    {ERROR_FILE_NOT_FOUND, CFileException::fileNotFound},
    {ERROR_PATH_NOT_FOUND, CFileException::badPath},
    {ERROR_TOO_MANY_OPEN_FILES, CFileException::tooManyOpenFiles},
    {ERROR_ACCESS_DENIED, CFileException::accessDenied},
    {ERROR_INVALID_HANDLE, CFileException::invalidFile},
    {ERROR_BAD_FORMAT, CFileException::invalidFile},
    {ERROR_INVALID_ACCESS, CFileException::accessDenied},
    {ERROR_INVALID_DRIVE, CFileException::badPath},
    {ERROR_CURRENT_DIRECTORY, CFileException::removeCurrentDir},
    {ERROR_NO_MORE_FILES, CFileException::fileNotFound},
    {ERROR_WRITE_PROTECT, CFileException::accessDenied},
    {ERROR_BAD_UNIT, ERROR_BAD_LENGTH, CFileException::hardIO},
    {ERROR_SEEK, CFileException::badSeek},
    {ERROR_NOT_DOS_DISK, ERROR_GEN_FAILURE, CFileException::hardIO},
    {ERROR_SHARING_VIOLATION, CFileException::sharingViolation},
    {ERROR_LOCK_VIOLATION, CFileException::lockViolation},
    {ERROR_WRONG_DISK, CFileException::hardIO},
    {ERROR_SHARING_BUFFER_EXCEEDED, CFileException::tooManyOpenFiles},
    {ERROR_HANDLE_EOF, CFileException::endOfFile},
    {ERROR_HANDLE_DISK_FULL, CFileException::diskFull},
    {ERROR_BAD_NETPATH, CFileException::badPath},
    {ERROR_NETWORK_ACCESS_DENIED, CFileException::accessDenied},
    {ERROR_BAD_NET_NAME, CFileException::badPath},
    {ERROR_FILE_EXISTS, CFileException::accessDenied},
    {ERROR_CANNOT_MAKE, CFileException::directoryFull},
    {ERROR_DISK_FULL, CFileException::diskFull},
    {ERROR_INVALID_NAME, CFileException::badPath},
    {ERROR_NEGATIVE_SEEK, ERROR_SEEK_ON_DEVICE, CFileException::badSeek},
    {ERROR_PATH_BUSY, CFileException::accessDenied},
    {ERROR_BAD_PATHNAME, CFileException::badPath},
    {ERROR_LOCK_FAILED, CFileException::lockViolation},
    {ERROR_ALREADY_EXISTS, CFileException::accessDenied},
    {ERROR_FILENAME_EXCED_RANGE, CFileException::badPath},
    {ERROR_LOCKED, CFileException::lockViolation},
    {ERROR_DIRECTORY, CFileException::badPath},
};

constexpr bool IsAscending() {
  for (std::size_t i = 0; i < std::size(kOsErrors); ++i) {
    if (kOsErrors[i].first > kOsErrors[i].last) return false;
    if (i != 0 && kOsErrors[i - 1].last >= kOsErrors[i].first) return false;
  }
  return true;
}
static_assert(IsAscending());

}  // namespace

CFileException::CFileException(int cause, LONG lOsError, const wchar_t* pszFileName)
    : m_cause(cause), m_lOsError(lOsError), m_strFileName(pszFileName) {}

int CFileException::OsErrorToException(LONG lOsError) {
  for (const OsErrorRange& range : kOsErrors) {
    if (lOsError >= range.first && lOsError <= range.last) return range.cause;
  }
  return genericException;
}

int CFileException::ErrnoToException(int nErrno) {
  switch (nErrno) {
    case 0:
      return none;
    case EPERM:
    case EACCES:
    case EEXIST:
    case EISDIR:
    case EROFS:
      return accessDenied;
    case EBADF:
      return invalidFile;
    case EDEADLK:
      return sharingViolation;
    case EMFILE:
    case ENFILE:
      return tooManyOpenFiles;
    case ENOENT:
      return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
      return badPath;
    case ENOSPC:
    case EFBIG:
      return diskFull;
    case ESPIPE:
      return badSeek;
    case EINVAL:
    case EIO:
      return hardIO;
    default:
      return genericException;
  }
}

void CFileException::ThrowOsError(LONG lOsError, const wchar_t* pszFileName) {
  if (lOsError != 0) AfxThrowFileException(OsErrorToException(lOsError), lOsError, pszFileName);
}

void CFileException::ThrowErrno(int nErrno, const wchar_t* pszFileName) {
  if (nErrno != 0) AfxThrowFileException(ErrnoToException(nErrno), nErrno, pszFileName);
}

int CFileException::GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                                    unsigned int* pnHelpContext) const {
  CException::GetErrorMessage(pszError, nMaxError, pnHelpContext);
  if (pszError == nullptr || nMaxError == 0) return 0;
  const bool known = m_cause >= none && m_cause <= endOfFile;
  CString text(QorFindStringResource(qorgen::afx::kTextFileCause +
                                     static_cast<unsigned int>(known ? m_cause : genericException)));
  text.Replace(L"%1", m_strFileName.IsEmpty() ? QorFindStringResource(qorgen::afx::kTextUnnamedFile)
                                              : m_strFileName.GetString());
  return qorgen::afx::CopyMessage(text, text.GetLength(), pszError, nMaxError);
}

void AfxThrowFileException(int cause, LONG lOsError, const wchar_t* pszFileName) {
  throw new CFileException(cause, lOsError, pszFileName);
}
