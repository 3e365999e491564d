#pragma once

// The texts of the error numbers, in Japanese and English, without their line breaks. Constant data.

#include "qorgen/platform/types.h"

namespace qorgen::platform {

struct ErrorText {
  DWORD number;
  const wchar_t* japanese;
  const wchar_t* english;
};

// Rows in increasing order of their numbers.
struct ErrorTextTable {
  const ErrorText* first;
  const ErrorText* last;  // behind the last row
};

ErrorTextTable SystemErrorTexts();
ErrorTextTable WebTransportErrorTexts();

}  // namespace qorgen::platform
