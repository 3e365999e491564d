#pragma once

// The length of a terminated text. Pure.

#include <cstddef>

namespace qorgen::platform {

// Units in front of the terminator; 0 for null.
constexpr std::size_t TextLength(const wchar_t* text) {
  std::size_t length = 0;
  while (text != nullptr && text[length] != 0) ++length;
  return length;
}

}  // namespace qorgen::platform
