#pragma once

// The white space of the exchange folder: the platform's wide class, with the frequent characters answered in
// place. For sources only.

#include "qorgen/platform/crt.h"

namespace qorgen::exchange {

// A quick no for nearly all characters that are none.
constexpr bool MayBeSpace(wchar_t c) {
  return c <= L' ' || (c >= 0x80 && c <= 0x3000);
}

inline bool IsSpace(wchar_t c) {
  if (c < 0x80) return c == L' ' || (c >= L'\t' && c <= L'\r');
  // Behind the ideographic space there is none, whatever else a runtime may count as one.
  return c <= 0x3000 && iswspace(c) != 0;
}

inline bool IsBlank(const wchar_t* text, int length) {
  int i = 0;
  while (i < length && MayBeSpace(text[i]) && IsSpace(text[i])) ++i;
  return i == length;
}

}  // namespace qorgen::exchange
