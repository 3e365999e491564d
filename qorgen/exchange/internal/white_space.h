#pragma once

// The white space of the exchange folder: the platform's wide class, with the frequent characters answered in
// place. For sources only.

#include "qorgen/platform/crt.h"

namespace qorgen::exchange {

inline bool IsSpace(wchar_t c) {
  return c == L' ' || (c >= L'\t' && c <= L'\r') || (c >= 0x80 && iswspace(c) != 0);
}

inline bool IsBlank(const wchar_t* text, int length) {
  for (int i = 0; i < length; ++i) {
    if (!IsSpace(text[i])) return false;
  }
  return true;
}

}  // namespace qorgen::exchange
