#include "qorgen/core/exception.h"

#include <algorithm>
#include <new>

#include "qorgen/afx/message_box.h"
#include "qorgen/core/error_text.h"
#include "qorgen/core/internal/error_number.h"

IMPLEMENT_DYNAMIC(CQorException, CException)
IMPLEMENT_DYNAMIC(CQorOsException, CQorException)

using qorgen::core::ErrorOrLast;

namespace {

// Twice the foundation classes' own room: a header, two lines and the system's message have to fit.
constexpr unsigned int kReportLength = 1024;

}  // namespace

CQorException::CQorException() = default;

int CQorException::ReportError(unsigned int nType, unsigned int nMessageID) {
  wchar_t text[kReportLength] = {};
  unsigned int help_context = 0;
  if (GetErrorMessage(text, kReportLength, &help_context) != 0) {
    return AfxMessageBox(text, nType, help_context);
  }
  return AfxMessageBox(nMessageID != 0 ? nMessageID : AFX_IDP_NO_ERROR_AVAILABLE, nType, help_context);
}

CQorOsException::CQorOsException(unsigned long dwError) : m_dwError(ErrorOrLast(dwError)) {}

CString CQorOsException::GetErrorMessage() const {
  return GetErrorMessage(m_dwError);
}

CString CQorOsException::GetErrorMessage(unsigned long dwError) {
  return CGenUtil::FormatLastErrorMessage(nullptr, ErrorOrLast(dwError), nullptr);
}

int CQorOsException::GetErrorMessage(wchar_t* pszError, unsigned int nMaxError, unsigned int*) const {
  const CString text = GetErrorMessage();
  const unsigned int length = static_cast<unsigned int>(text.GetLength());
  if (pszError == nullptr || length >= nMaxError) return 0;
  wchar_t* end = std::copy_n(text.GetString(), length, pszError);
  std::fill(end, pszError + nMaxError, L'\0');
  return 1;
}

void CQorOsException::Throw(unsigned long dwError) {
  const DWORD error = ErrorOrLast(dwError);  // before the allocation, which may disturb the last error
  throw new (std::nothrow) CQorOsException(error);
}
