#pragma once

// Single characters: the pairs of UTF-16, and UTF-8 written. Pure.

#include <cstddef>
#include <string>

namespace qorgen::platform {

constexpr bool IsHighSurrogate(char32_t unit) {
  return (unit & ~char32_t{0x3FF}) == 0xD800;
}
constexpr bool IsLowSurrogate(char32_t unit) {
  return (unit & ~char32_t{0x3FF}) == 0xDC00;
}
constexpr bool IsSurrogate(char32_t unit) {
  return (unit & ~char32_t{0x7FF}) == 0xD800;
}
constexpr char32_t JoinSurrogates(char32_t high, char32_t low) {
  return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

// The bytes that a value up to U+10FFFF takes.
constexpr std::size_t SizeOfUtf8(char32_t value) {
  return value < 0x80 ? 1 : (value < 0x800 ? 2 : (value < 0x10000 ? 3 : 4));
}

// Stores the SizeOfUtf8 bytes of a value and gives their end. A surrogate is stored like any other value.
constexpr char* PutUtf8(char* out, char32_t value) {
  const std::size_t size = SizeOfUtf8(value);
  if (size == 1) {
    *out = static_cast<char>(value);
    return out + 1;
  }
  for (std::size_t i = size - 1; i != 0; --i, value >>= 6) out[i] = static_cast<char>(0x80 | (value & 0x3F));
  // The lead's marker bits are as many ones as the character has bytes.
  *out = static_cast<char>((0xF00 >> size & 0xFF) | value);
  return out + size;
}

inline void AppendUtf8(std::string& out, char32_t value) {
  char bytes[4];
  out.append(bytes, PutUtf8(bytes, value));
}

// Calls `take(character)` for each character from `text` to `text + length`, with the unit itself for a lone
// surrogate.
template <class Unit, class Take>
void ForEachCharacter(const Unit* text, std::size_t length, Take take) {
  for (std::size_t i = 0; i < length; ++i) {
    const char32_t unit = static_cast<char16_t>(text[i]);
    const char32_t next = i + 1 < length ? static_cast<char16_t>(text[i + 1]) : char32_t{0};
    if (IsHighSurrogate(unit) && IsLowSurrogate(next)) {
      take(JoinSurrogates(unit, next));
      ++i;
    } else {
      take(unit);
    }
  }
}

}  // namespace qorgen::platform
