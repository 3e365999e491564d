#include "qorgen/afx/exception.h"
#include "qorgen/afx/internal/message_text.h"
#include "qorgen/afx/string_resource.h"
#include "qorgen/platform/error.h"

IMPLEMENT_DYNAMIC(COleException, CException)

COleException::COleException(HRESULT sc) : m_sc(sc) {}

int COleException::GetErrorMessage(wchar_t* pszError, unsigned int nMaxError,
                                   unsigned int* pnHelpContext) const {
  CException::GetErrorMessage(pszError, nMaxError, pnHelpContext);
  if (pszError == nullptr || nMaxError == 0) return 0;
  constexpr DWORD kRoom = 512;
  wchar_t system_text[kRoom];
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      static_cast<DWORD>(m_sc), 0, system_text, kRoom, nullptr);
  CString text(system_text, static_cast<int>(length));
  text.TrimRight();
  if (text.IsEmpty()) {
    CString code;
    code.Format(L"%08X", static_cast<unsigned int>(m_sc));
    text = QorFindStringResource(qorgen::afx::kTextUnknownCode);
    text.Replace(L"%1", code);
  }
  return qorgen::afx::CopyMessage(text, text.GetLength(), pszError, nMaxError);
}

HRESULT COleException::Process(const CException* pException) {
  if (const auto* ole = DYNAMIC_DOWNCAST(COleException, pException)) return ole->m_sc;
  return pException != nullptr && pException->IsKindOf(RUNTIME_CLASS(CMemoryException)) ? E_OUTOFMEMORY
                                                                                        : E_UNEXPECTED;
}

void AfxThrowOleException(HRESULT sc) {
  throw new COleException(sc);
}
