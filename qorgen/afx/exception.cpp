#include "qorgen/afx/exception.h"

#include <new>

#include "qorgen/afx/internal/message_text.h"
#include "qorgen/afx/message_box.h"
#include "qorgen/afx/string_resource.h"

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CSimpleException, CException)
IMPLEMENT_DYNAMIC(CMemoryException, CSimpleException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CSimpleException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CSimpleException)

static_assert(AFX_IDP_NO_ERROR_AVAILABLE == qorgen::afx::kTextNoErrorAvailable);

namespace {

// Long enough for any of the library's own texts with a path of the greatest length in it.
constexpr unsigned int kReportLength = 512;

}  // namespace

CException::CException() : m_bAutoDelete(1) {}

CException::CException(int bAutoDelete) : m_bAutoDelete(bAutoDelete) {}

void CException::Delete() {
  if (m_bAutoDelete > 0) delete this;
}

int CException::GetErrorMessage(wchar_t* pszError, unsigned int nMaxError, unsigned int* pnHelpContext) {
  return static_cast<const CException*>(this)->GetErrorMessage(pszError, nMaxError, pnHelpContext);
}

int CException::GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                                unsigned int* pnHelpContext) const {
  if (pnHelpContext != nullptr) *pnHelpContext = 0;
  if (pszError != nullptr && nMaxError != 0) pszError[0] = 0;
  return 0;
}

int CException::ReportError(unsigned int nType, unsigned int nMessageID) {
  wchar_t text[kReportLength] = {};
  unsigned int help_context = 0;
  if (GetErrorMessage(text, kReportLength, &help_context) != 0) {
    return AfxMessageBox(text, nType, help_context);
  }
  return AfxMessageBox(nMessageID != 0 ? nMessageID : AFX_IDP_NO_ERROR_AVAILABLE, nType, help_context);
}

CSimpleException::CSimpleException(int bAutoDelete, unsigned int nResourceID)
    : CException(bAutoDelete), m_nResourceID(nResourceID) {}

int CSimpleException::GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                                      unsigned int* pnHelpContext) const {
  CException::GetErrorMessage(pszError, nMaxError, pnHelpContext);
  const wchar_t* text = QorFindStringResource(m_nResourceID);
  if (text == nullptr) return 0;
  return qorgen::afx::CopyMessage(text, CString::StringLength(text), pszError, nMaxError);
}

CMemoryException::CMemoryException(int bAutoDelete)
    : CSimpleException(bAutoDelete, qorgen::afx::kTextOutOfMemory) {}

CNotSupportedException::CNotSupportedException(int bAutoDelete)
    : CSimpleException(bAutoDelete, qorgen::afx::kTextNotSupported) {}

CInvalidArgException::CInvalidArgException(int bAutoDelete)
    : CSimpleException(bAutoDelete, qorgen::afx::kTextInvalidArgument) {}

void AfxThrowMemoryException() {
  // Never destroyed, and made without asking for memory.
  alignas(CMemoryException) static unsigned char room[sizeof(CMemoryException)];
  static CMemoryException* const exhausted = new (room) CMemoryException(0);
  throw exhausted;
}

void AfxThrowNotSupportedException() {
  throw new CNotSupportedException;
}

void AfxThrowInvalidArgException() {
  throw new CInvalidArgException;
}
