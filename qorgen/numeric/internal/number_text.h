#pragma once

// Numbers in digits, printed into a small buffer of single-byte characters before they become wide text.
// Shared by the sources of this folder; pure functions.

#include <cstddef>
#include <span>

namespace qorgen::numeric {

// The text of one number. The largest finite double has 309 integer digits, and decimals only come with
// integer parts of up to fifteen.
struct NumberText {
  char characters[320];
  int length = 0;

  std::span<const char> View() const { return {characters, static_cast<std::size_t>(length)}; }
};

NumberText IntegerText(long long value);

// What "%.*f" prints for the value under the precision and rounding rules of CQorNumUtil::ToString, before
// trimming.
NumberText DecimalText(double value, int decimals, int mode);

// The length that is left when the fraction loses its trailing zeros (where `trim` is set) and a point that
// then stands last. Without a point nothing is dropped.
int TrimmedLength(std::span<const char> text, bool trim);

// A new wide array with the first `length` characters, its length reported where one is asked for.
wchar_t* Widened(const char* text, int length, int* reported);

}  // namespace qorgen::numeric
