#pragma once

// The library's root exceptions: thrown as heap objects by pointer, ended by the catcher with Delete.
//
// An exception object belongs to the thread that throws and catches it.

#include "qorgen/afx/exception.h"
#include "qorgen/afx/string.h"

// An exception without a text of its own.
class QORGEN_API CQorException : public CException {
  DECLARE_DYNAMIC(CQorException)

 public:
  CQorException();

  // Shows the exception's text, up to 1,023 units of it, with AfxMessageBox and gives the answer; an
  // exception without a text shows the string resource `nMessageID`, or for 0 the text of a missing error
  // message (0xF020).
  int ReportError(unsigned int nType = 0, unsigned int nMessageID = 0) override;
};

// A system error: it carries the number alone, the text is made when somebody asks for it.
class QORGEN_API CQorOsException : public CQorException {
  DECLARE_DYNAMIC(CQorOsException)

 public:
  // 0 stands for the thread's last error at this moment. Only the low 32 bits count.
  CQorOsException(unsigned long dwError = 0);

  // The two-line report of CGenUtil::FormatLastErrorMessage for the stored error, or for any number; 0 stands
  // for the thread's last error at the moment of the call.
  CString GetErrorMessage() const;
  static CString GetErrorMessage(unsigned long dwError);

  // Copies the report and gives 1 when it is shorter than `nMaxError` units; the rest of the buffer is filled
  // with zeros. Otherwise, and for a null buffer, nothing is written and the result is 0. `pnHelpContext` is
  // never written.
  int GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                      unsigned int* pnHelpContext = nullptr) const override;
  using CQorException::GetErrorMessage;

  // Throws a new CQorOsException*, or a null pointer of that type when there is no memory for it.
  [[noreturn]] static void Throw(unsigned long dwError);

  DWORD m_dwError;
};
