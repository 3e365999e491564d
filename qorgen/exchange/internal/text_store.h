#pragma once

// Text into fixed places of a record, as a bounded copy of the runtime writes it: the text, and zeros up to
// the end.

#include <cstddef>
#include <cstring>

namespace qorgen::exchange {

// Writes `length` characters of `text` and zeros, `room` characters in all, to any address; length < room.
inline void StorePlain(void* target, const wchar_t* text, std::size_t length, std::size_t room) {
  auto* const bytes = static_cast<unsigned char*>(target);
  std::memcpy(bytes, text, length * sizeof(wchar_t));
  std::memset(bytes + length * sizeof(wchar_t), 0, (room - length) * sizeof(wchar_t));
}

// Characters behind a text that StorePadded may read.
inline constexpr int kStorePadding = 7;

// The same for a text with kStorePadding readable characters behind its end: short texts go over in blocks of
// eight, without a call, as long as whole blocks fit.
inline void StorePadded(void* target, const wchar_t* text, std::size_t length, std::size_t room) {
  constexpr std::size_t kBlock = 8;
  const std::size_t rounded = (length + kBlock - 1) / kBlock * kBlock;
  if (rounded > room || length > 4 * kBlock) return StorePlain(target, text, length, room);
  auto* const bytes = static_cast<unsigned char*>(target);
  for (std::size_t i = 0; i < rounded; i += kBlock) {
    std::memcpy(bytes + i * sizeof(wchar_t), text + i, kBlock * sizeof(wchar_t));
  }
  std::memset(bytes + length * sizeof(wchar_t), 0, (room - length) * sizeof(wchar_t));
}

}  // namespace qorgen::exchange
