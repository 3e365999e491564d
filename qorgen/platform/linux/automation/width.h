#pragma once

// On a Japanese system the parsers of numbers and dates see full-width characters as their narrow ones.

namespace qorgen::platform {

constexpr wchar_t NarrowUnit(wchar_t unit) {
  if (unit < 0x3000) return unit;
  if (unit >= 0xFF01 && unit <= 0xFF5E) return static_cast<wchar_t>(unit - 0xFEE0);
  if (unit == 0x3000) return L' ';
  return unit == 0xFFE5 ? wchar_t{0xA5} : unit;
}

constexpr bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

}  // namespace qorgen::platform
