#pragma once

// Exceptions of the foundation classes: heap objects that are thrown by pointer and ended with Delete.
//
//   try { file.Open(...); } catch (CFileException* e) { e->ReportError(); e->Delete(); }
//
// An exception object belongs to the thread that throws and catches it.

#include "qorgen/afx/object.h"
#include "qorgen/afx/string.h"

// String resource of the text that stands in for a missing error message.
inline constexpr unsigned int AFX_IDP_NO_ERROR_AVAILABLE = 0xF020;

class QORGEN_API CException : public CObject {
  DECLARE_DYNAMIC(CException)

 public:
  CException();
  // With 0 the object isn't on the heap and Delete leaves it alone.
  explicit CException(int bAutoDelete);

  // Ends a caught exception.
  void Delete();

  // Copies the exception's text, cut to `nMaxError` units with the terminator, and gives 1. An exception
  // without a text gives 0 and an empty text. `pnHelpContext`, if not null, receives 0. Nothing happens for a
  // null or empty buffer, the result is then 0.
  virtual int GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                              unsigned int* pnHelpContext = nullptr);
  virtual int GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                              unsigned int* pnHelpContext = nullptr) const;

  // Shows the text to the user with AfxMessageBox, else the string resource `nMessageID`, and gives the
  // answer. An id of 0 stands for the text of a missing error message.
  virtual int ReportError(unsigned int nType = 0, unsigned int nMessageID = 0);

 protected:
  int m_bAutoDelete;
};

// An exception whose whole content is the text of a string resource.
class QORGEN_API CSimpleException : public CException {
  DECLARE_DYNAMIC(CSimpleException)

 public:
  using CException::GetErrorMessage;
  int GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                      unsigned int* pnHelpContext = nullptr) const override;

 protected:
  CSimpleException(int bAutoDelete, unsigned int nResourceID);

  unsigned int m_nResourceID;
};

class QORGEN_API CMemoryException : public CSimpleException {
  DECLARE_DYNAMIC(CMemoryException)

 public:
  explicit CMemoryException(int bAutoDelete = 1);
};

class QORGEN_API CNotSupportedException : public CSimpleException {
  DECLARE_DYNAMIC(CNotSupportedException)

 public:
  explicit CNotSupportedException(int bAutoDelete = 1);
};

class QORGEN_API CInvalidArgException : public CSimpleException {
  DECLARE_DYNAMIC(CInvalidArgException)

 public:
  explicit CInvalidArgException(int bAutoDelete = 1);
};

// A failed operation on a file.
class QORGEN_API CFileException : public CException {
  DECLARE_DYNAMIC(CFileException)

 public:
  enum {
    none,
    genericException,
    fileNotFound,
    badPath,
    tooManyOpenFiles,
    accessDenied,
    invalidFile,
    removeCurrentDir,
    directoryFull,
    badSeek,
    hardIO,
    sharingViolation,
    lockViolation,
    diskFull,
    endOfFile
  };

  // `pszFileName` names the file in the message; null is fine.
  explicit CFileException(int cause = none, LONG lOsError = -1, const wchar_t* pszFileName = nullptr);

  // One sentence for the cause, with the file's name, in the user's language.
  using CException::GetErrorMessage;
  int GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                      unsigned int* pnHelpContext = nullptr) const override;

  // The cause that a system error number (ERROR_*) or an errno value stands for; genericException for any
  // other.
  static int OsErrorToException(LONG lOsError);
  static int ErrnoToException(int nErrno);
  // Throws the exception of that error; the error 0 throws nothing.
  static void ThrowOsError(LONG lOsError, const wchar_t* pszFileName = nullptr);
  static void ThrowErrno(int nErrno, const wchar_t* pszFileName = nullptr);

  int m_cause;
  // The system error number; for a cause from errno that value; -1 when unknown.
  LONG m_lOsError;
  CString m_strFileName;
};

// A failure code of the system's object services.
class QORGEN_API COleException : public CException {
  DECLARE_DYNAMIC(COleException)

 public:
  explicit COleException(HRESULT sc = 0);

  // The system's text of the code without its line end; for a code without a text one sentence with its
  // number.
  using CException::GetErrorMessage;
  int GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                      unsigned int* pnHelpContext = nullptr) const override;

  // The code that stands for any exception: an own one's code, E_OUTOFMEMORY for exhausted memory, else
  // E_UNEXPECTED.
  static HRESULT Process(const CException* pException);

  HRESULT m_sc;
};

// Throws a static object: reporting exhausted memory needs none. Delete leaves it alone.
[[noreturn]] QORGEN_API void AfxThrowMemoryException();
[[noreturn]] QORGEN_API void AfxThrowNotSupportedException();
[[noreturn]] QORGEN_API void AfxThrowInvalidArgException();
[[noreturn]] QORGEN_API void AfxThrowFileException(int cause, LONG lOsError = -1,
                                                   const wchar_t* pszFileName = nullptr);
[[noreturn]] QORGEN_API void AfxThrowOleException(HRESULT sc);
