#pragma once

// The number in a text, read once and then turned into any numeric type. Pure functions, any thread.

#include <cstdint>

#include "qorgen/platform/error.h"

namespace qorgen::platform {

// A decimal number is 0.DDD x 10^point with its leading zeros stripped; no digits at all mean 0.
struct NumberText {
  // As many digits as decide between two neighbouring doubles, however long the text is.
  static constexpr int kDigits = 770;

  bool negative;
  bool based;     // hexadecimal or octal: `bits` is the value, and nothing else counts
  bool more;      // a digit other than 0 stands behind those that are kept
  int used_bits;  // of `bits`; 65 for too many
  std::uint64_t bits;
  std::int64_t point;
  int count;
  char digits[kDigits];  // '0' to '9'
};

// Reads the whole of a terminated text by the rules of automation.h; false if it is no number.
bool ReadNumber(const wchar_t* text, NumberText* number);

// To the nearest integer, a half to the even one. `width` (8, 16 or 32) bounds what a hexadecimal text may
// hold. DISP_E_OVERFLOW outside `low` to `high`; the target is written on success alone.
HRESULT RoundNumber(const NumberText& number, int width, std::int64_t low, std::int64_t high,
                    std::int64_t* value);

}  // namespace qorgen::platform
