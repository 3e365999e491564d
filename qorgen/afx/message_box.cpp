#include "qorgen/afx/message_box.h"

#include <atomic>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/string_resource.h"

namespace {

constinit std::atomic<QorMessageBoxHandler> handler_of_host{nullptr};

}  // namespace

QorMessageBoxHandler QorSetMessageBoxHandler(QorMessageBoxHandler handler) noexcept {
  return handler_of_host.exchange(handler, std::memory_order_acq_rel);
}

int AfxMessageBox(const wchar_t* pszText, unsigned int nType, unsigned int nIDHelp) {
  const wchar_t* text = pszText != nullptr ? pszText : L"";
  const QorMessageBoxHandler handler = handler_of_host.load(std::memory_order_acquire);
  return handler != nullptr ? handler(text, nType, nIDHelp) : MessageBoxW(nullptr, text, nullptr, nType);
}

int AfxMessageBox(unsigned int nIDPrompt, unsigned int nType, unsigned int nIDHelp) {
  const wchar_t* text = QorFindStringResource(nIDPrompt);
  if (text == nullptr) text = QorFindStringResource(AFX_IDP_NO_ERROR_AVAILABLE);
  return AfxMessageBox(text, nType, nIDHelp);
}
