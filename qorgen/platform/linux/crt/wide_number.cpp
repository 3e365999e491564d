// Numbers from and to wide text, free of any locale. Pure; no shared state.

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cstdint>
#include <limits>
#include <string>

#include "qorgen/platform/common/white_space.h"
#include "qorgen/platform/crt.h"

using qorgen::platform::IsWhiteSpace;

namespace {

// The zeros of the scripts whose ten digits the platform accepts; U+FF10 is the full-width one.
constexpr wchar_t kZeros[] = {0x0660, 0x06F0, 0x0966, 0x09E6, 0x0A66, 0x0AE6, 0x0B66, 0x0C66, 0x0CE6,
                              0x0D66, 0x0E50, 0x0ED0, 0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10};

bool IsDecimalDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

// Ten and more for what is no digit.
unsigned DigitValue(wchar_t unit) {
  if (unit < kZeros[0]) return static_cast<unsigned>(unit - L'0');
  for (const wchar_t zero : kZeros) {
    if (unit >= zero && unit - zero < 10) return static_cast<unsigned>(unit - zero);
  }
  return 10;
}

// The length of the decimal number at `at` (no sign), or 0.
size_t DecimalLength(const wchar_t* at) {
  const wchar_t* start = at;
  size_t digits = 0;
  for (; IsDecimalDigit(*at); ++at) ++digits;
  if (*at == L'.') {
    ++at;
    for (; IsDecimalDigit(*at); ++at) ++digits;
  }
  if (digits == 0) return 0;
  if ((*at | 32u) == L'e') {
    const wchar_t* exponent = at + 1;
    if (*exponent == L'+' || *exponent == L'-') ++exponent;
    if (IsDecimalDigit(*exponent)) {
      at = exponent;
      while (IsDecimalDigit(*at)) ++at;
    }
  }
  return static_cast<size_t>(at - start);
}

}  // namespace

long _wtol(const wchar_t* text) {
  while (IsWhiteSpace(*text)) ++text;
  const bool negative = *text == L'-';
  if (*text == L'-' || *text == L'+') ++text;
  const std::int64_t limit = std::numeric_limits<std::int32_t>::max() + std::int64_t{negative};
  std::int64_t value = 0;
  for (unsigned digit = DigitValue(*text); digit < 10; digit = DigitValue(*++text)) {
    value = value * 10 + digit;
    if (value <= limit) continue;
    value = limit;
    errno = ERANGE;
    break;
  }
  return negative ? -value : value;
}

double _wtof(const wchar_t* text) {
  while (IsWhiteSpace(*text)) ++text;
  bool negative = false;
  if (*text == L'-' || *text == L'+') negative = *text++ == L'-';
  const bool hexadecimal = text[0] == L'0' && (text[1] | 32u) == L'x';
  size_t length = hexadecimal ? 0 : DecimalLength(text);
  if (length != 0 && length <= 64) {
    char digits[64];
    std::transform(text, text + length, digits, [](wchar_t unit) { return static_cast<char>(unit); });
    double value = 0;
    if (std::from_chars(digits, digits + length, value).ec == std::errc()) return negative ? -value : value;
  }
  // The runtime knows the rest: hexadecimal, infinity and NaN forms, values out of range.
  if (length == 0) {
    // The longest run that such a form can hold: letters, digits, point, sign, and the brackets of nan(...).
    while (text[length] != 0 && text[length] < 0x80 && !IsWhiteSpace(text[length])) ++length;
  }
  if (length == 0 || *text == L'-' || *text == L'+') return 0;
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string narrow(text, text + length);
  char* end = nullptr;
  const double value = strtod_l(narrow.c_str(), &end, cLocale);
  return negative && end != narrow.c_str() ? -value : value;
}

// In `radix` 2 to 36.
wchar_t* _itow(int value, wchar_t* buffer, int radix) {
  if (radix < 2 || radix > 36) {
    errno = EINVAL;
    buffer[0] = 0;
    return buffer;
  }
  char digits[33];
  // A minus sign belongs to radix 10 alone; elsewhere the bits count.
  const auto result = radix == 10
                          ? std::to_chars(digits, std::end(digits), value)
                          : std::to_chars(digits, std::end(digits), static_cast<unsigned>(value), radix);
  *std::copy(static_cast<char*>(digits), result.ptr, buffer) = 0;
  return buffer;
}
