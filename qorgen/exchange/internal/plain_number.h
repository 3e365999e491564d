#pragma once

// Plain numbers in text, the short way: the forms that nearly every number of an import file has, read
// without the automation conversion. What these functions take, that conversion takes with the same result;
// what they don't take is left to it. Pure functions.

#include <cstdint>

namespace qorgen::exchange {

// Reads "123" or "-123", one to nine digits and nothing else, so that 32 bits hold it. Returns false for any
// other text.
[[nodiscard]] inline bool ReadPlainInteger(const wchar_t* text, int length, std::int32_t& value) {
  const bool negative = length > 0 && text[0] == L'-';
  const int digits = length - (negative ? 1 : 0);
  if (digits < 1 || digits > 9) return false;
  std::int32_t number = 0;
  for (const wchar_t* p = text + (negative ? 1 : 0); p != text + length; ++p) {
    const unsigned int digit = static_cast<unsigned int>(*p) - L'0';
    if (digit > 9) return false;
    number = number * 10 + static_cast<std::int32_t>(digit);
  }
  value = negative ? -number : number;
  return true;
}

// A decimal text of plain form. `integer_length` counts the characters in front of the point, a minus sign
// included.
struct PlainDecimal {
  double value;
  int integer_length;
  int fraction_length;
};

// Reads "123", "-123" or "123.45" with a digit on each side of the point and at most fifteen digits in all:
// both the digits and the power of ten are then exact in a double, and one division rounds the quotient
// correctly.
[[nodiscard]] inline bool ReadPlainDecimal(const wchar_t* text, int length, PlainDecimal& number) {
  constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool negative = length > 0 && text[0] == L'-';
  const int first = negative ? 1 : 0;
  if (length - first < 1 || length - first > 16) return false;
  std::int64_t digits = 0;
  int count = 0;
  int point = -1;
  for (int i = first; i < length; ++i) {
    const unsigned int digit = static_cast<unsigned int>(text[i]) - L'0';
    if (digit <= 9) {
      digits = digits * 10 + digit;
      ++count;
    } else if (text[i] == L'.' && point < 0 && i > first && i + 1 < length) {
      point = i;
    } else {
      return false;
    }
  }
  if (count > 15) return false;
  number.integer_length = point < 0 ? length : point;
  number.fraction_length = point < 0 ? 0 : length - point - 1;
  const double value = static_cast<double>(digits) / kPowers[number.fraction_length];
  number.value = negative ? -value : value;
  return true;
}

}  // namespace qorgen::exchange
