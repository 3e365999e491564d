// CFileException: causes, their sources and their texts.

#include <array>
#include <cerrno>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/internal/message_text.h"
#include "qorgen/afx/string_resource.h"

IMPLEMENT_DYNAMIC(CFileException, CException)

static_assert(CFileException::endOfFile + 1 == qorgen::afx::kFileCauses);

namespace {

// System error numbers `first` to `last` have the cause. Ascending; what is missing is genericException. The
// numbers are those of the system's ERROR_* constants.
struct OsErrorRange {
  LONG first;
  LONG last;
  int cause;
};

constexpr std::array kOsErrors = {
    OsErrorRange{0, 0, CFileException::none},
    OsErrorRange{2, 2, CFileException::fileNotFound},        // FILE_NOT_FOUND
    OsErrorRange{3, 3, CFileException::badPath},             // PATH_NOT_FOUND
    OsErrorRange{4, 4, CFileException::tooManyOpenFiles},    // TOO_MANY_OPEN_FILES
    OsErrorRange{5, 5, CFileException::accessDenied},        // ACCESS_DENIED
    OsErrorRange{6, 6, CFileException::invalidFile},         // INVALID_HANDLE
    OsErrorRange{11, 11, CFileException::invalidFile},       // BAD_FORMAT
    OsErrorRange{12, 12, CFileException::accessDenied},      // INVALID_ACCESS
    OsErrorRange{15, 15, CFileException::badPath},           // INVALID_DRIVE
    OsErrorRange{16, 16, CFileException::removeCurrentDir},  // CURRENT_DIRECTORY
    OsErrorRange{18, 18, CFileException::fileNotFound},      // NO_MORE_FILES
    OsErrorRange{19, 19, CFileException::accessDenied},      // WRITE_PROTECT
    OsErrorRange{20, 24, CFileException::hardIO},            // BAD_UNIT ... BAD_LENGTH
    OsErrorRange{25, 25, CFileException::badSeek},           // SEEK
    OsErrorRange{26, 31, CFileException::hardIO},            // NOT_DOS_DISK ... GEN_FAILURE
    OsErrorRange{32, 32, CFileException::sharingViolation},  // SHARING_VIOLATION
    OsErrorRange{33, 33, CFileException::lockViolation},     // LOCK_VIOLATION
    OsErrorRange{34, 34, CFileException::hardIO},            // WRONG_DISK
    OsErrorRange{36, 36, CFileException::tooManyOpenFiles},  // SHARING_BUFFER_EXCEEDED
    OsErrorRange{38, 38, CFileException::endOfFile},         // HANDLE_EOF
    OsErrorRange{39, 39, CFileException::diskFull},          // HANDLE_DISK_FULL
    OsErrorRange{53, 53, CFileException::badPath},           // BAD_NETPATH
    OsErrorRange{65, 65, CFileException::accessDenied},      // NETWORK_ACCESS_DENIED
    OsErrorRange{67, 67, CFileException::badPath},           // BAD_NET_NAME
    OsErrorRange{80, 80, CFileException::accessDenied},      // FILE_EXISTS
    OsErrorRange{82, 82, CFileException::directoryFull},     // CANNOT_MAKE
    OsErrorRange{112, 112, CFileException::diskFull},        // DISK_FULL
    OsErrorRange{123, 123, CFileException::badPath},         // INVALID_NAME
    OsErrorRange{131, 132, CFileException::badSeek},         // NEGATIVE_SEEK, SEEK_ON_DEVICE
    OsErrorRange{148, 148, CFileException::accessDenied},    // PATH_BUSY
    OsErrorRange{161, 161, CFileException::badPath},         // BAD_PATHNAME
    OsErrorRange{167, 167, CFileException::lockViolation},   // LOCK_FAILED
    OsErrorRange{183, 183, CFileException::accessDenied},    // ALREADY_EXISTS
    OsErrorRange{206, 206, CFileException::badPath},         // FILENAME_EXCED_RANGE
    OsErrorRange{212, 212, CFileException::lockViolation},   // LOCKED
    OsErrorRange{267, 267, CFileException::badPath},         // DIRECTORY
};

constexpr bool IsAscending() {
  for (std::size_t i = 0; i < kOsErrors.size(); ++i) {
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
