#include "qorgen/core/error_text.h"

#include "qorgen/afx/string_resource.h"
#include "qorgen/core/internal/error_number.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/module.h"
#include "qorgen/platform/shell.h"

using qorgen::core::ErrorOrLast;

namespace {

constexpr DWORD kMessageRoom = 260;
constexpr DWORD kUserDefaultLanguage = 0x400;
// The one extra message table that is ever searched.
constexpr const wchar_t* kWebTransport = L"winhttp.dll";

constexpr int kPathRoom = 261;
constexpr DWORD kPathCapacity = 260;

}  // namespace

CString CGenUtil::GetLastErrorMessage(unsigned long dwError, const wchar_t* pszModule, int nLevel) {
  const DWORD error = ErrorOrLast(dwError);
  DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  HMODULE module = nullptr;
  if (pszModule != nullptr && *pszModule != 0) {
    module = LoadLibraryW(pszModule);
    if (module != nullptr) flags |= FORMAT_MESSAGE_FROM_HMODULE;
  }
  wchar_t text[kMessageRoom] = {};
  const DWORD length =
      FormatMessageW(flags, module, error, kUserDefaultLanguage, text, kMessageRoom, nullptr);
  if (module != nullptr) FreeLibrary(module);
  if (length != 0) return CString(text, static_cast<int>(length));

  CString result;
  if (nLevel <= 0) {
    ++nLevel;
    result = GetLastErrorMessage(error, kWebTransport, nLevel);
  }
  if (!result.IsEmpty()) return result;
  // The text of the reason is looked up the same way. No depth limit: that number has a text.
  const DWORD reason = GetLastError();
  ++nLevel;
  const CString inner = GetLastErrorMessage(reason, nullptr, nLevel);
  result.Format(L"*** FormatMessage(%d) failed(%d)! ***\r\n%s", static_cast<int>(error),
                static_cast<int>(reason), inner);
  return result;
}

CString CGenUtil::FormatLastErrorMessage(const wchar_t* pszHeader, unsigned long dwError,
                                         const wchar_t* pszFooter) {
  // First of all: the string work below may disturb the last error.
  const DWORD error = ErrorOrLast(dwError);
  CString result(pszHeader);
  if (!result.IsEmpty()) result += L"\r\n";
  const CString text = GetLastErrorMessage(error, nullptr, 0);
  if (static_cast<std::int32_t>(error) < 0) {
    result.AppendFormat(L"［エラー番号］%x\r\n［エラー内容］%s", static_cast<unsigned int>(error), text);
  } else {
    result.AppendFormat(L"［エラー番号］%d\r\n［エラー内容］%s", static_cast<int>(error), text);
  }
  if (pszFooter != nullptr && *pszFooter != 0) {
    if (!result.IsEmpty()) result += L"\r\n";
    result += pszFooter;
  }
  return result;
}

CString CGenUtil::FormatLastErrorMessageRes(unsigned int nHeaderId, unsigned long dwError,
                                            unsigned int nFooterId) {
  const DWORD error = ErrorOrLast(dwError);
  const wchar_t* header = nHeaderId != 0 ? QorFindStringResource(nHeaderId) : nullptr;
  const wchar_t* footer = nFooterId != 0 ? QorFindStringResource(nFooterId) : nullptr;
  return FormatLastErrorMessage(header, error, footer);
}

int CGenUtil::AssocQueryExecutable(const wchar_t* pszExtension, CString* pstrExecutable) {
  CString extension(pszExtension);
  if (extension.IsEmpty()) return 0;
  if (extension[0] != L'.') extension.Insert(0, L'.');
  CString unwanted;
  CString& executable = pstrExecutable != nullptr ? *pstrExecutable : unwanted;
  DWORD count = kPathCapacity;
  wchar_t* buffer = executable.GetBuffer(kPathRoom);
  const HRESULT result =
      AssocQueryStringW(ASSOCF_NOTRUNCATE, ASSOCSTR_EXECUTABLE, extension, L"open", buffer, &count);
  executable.ReleaseBuffer();
  return result == S_OK && count > 0 ? 1 : 0;
}
