#pragma once

// Texts into buffers of the caller. May be called from any thread.

#include <algorithm>
#include <cstddef>

#include "qorgen/platform/crt.h"

namespace qorgen::settings {

// What wcsncpy does, but the text may lie in the buffer; nothing for a null buffer and a size of 0 or less.
inline void CopyPadded(wchar_t* buffer, int size, const wchar_t* text) {
  if (buffer == nullptr || size <= 0) return;
  const auto room = static_cast<std::size_t>(size);
  const std::size_t length = wcsnlen(text, room);
  wmemmove(buffer, text, length);
  std::fill(buffer + length, buffer + room, L'\0');
}

}  // namespace qorgen::settings
