#pragma once

// The texts of the error numbers, in English and Japanese, without their line breaks. Constant data.

#include "qorgen/platform/types.h"

namespace qorgen::platform {

struct ErrorText {
  // `code` is a last error or an HRESULT.
  constexpr ErrorText(std::int64_t code, const wchar_t* english_text, const wchar_t* japanese_text)
      : number(static_cast<DWORD>(code)), english(english_text), japanese(japanese_text) {}

  DWORD number;
  const wchar_t* english;
  const wchar_t* japanese;
};

// Rows in increasing order of their numbers.
struct ErrorTextTable {
  const ErrorText* first;
  const ErrorText* last;  // behind the last row
};

ErrorTextTable SystemErrorTexts();
ErrorTextTable WebTransportErrorTexts();

}  // namespace qorgen::platform
