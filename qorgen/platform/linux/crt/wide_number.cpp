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

constexpr unsigned kNoDigit = 99;

// The zeros of the scripts whose ten digits the platform accepts; U+FF10 is the full-width one.
constexpr wchar_t kZeros[] = {0x0660, 0x06F0, 0x0966, 0x09E6, 0x0A66, 0x0AE6, 0x0B66, 0x0C66, 0x0CE6,
                              0x0D66, 0x0E50, 0x0ED0, 0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10};

bool IsDecimalDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

unsigned DigitValue(wchar_t unit) {
  if (IsDecimalDigit(unit)) return static_cast<unsigned>(unit - L'0');
  if ((unit | 32u) - L'a' < 26u) return (unit | 32u) - L'a' + 10;
  if (unit < kZeros[0]) return kNoDigit;
  for (const wchar_t zero : kZeros) {
    if (unit >= zero && unit - zero < 10) return static_cast<unsigned>(unit - zero);
  }
  return kNoDigit;
}

struct Magnitude {
  std::uint64_t value = 0;
  bool negative = false;
  bool overflow = false;
  const wchar_t* end = nullptr;
};

// Reads white space, a sign, a prefix by base, and digits. `limit` bounds the value; beyond it only the end
// is sought.
Magnitude ReadInteger(const wchar_t* text, int base, std::uint64_t positiveLimit,
                      std::uint64_t negativeLimit) {
  Magnitude result;
  result.end = text;
  if (base < 0 || base == 1 || base > 36) {
    errno = EINVAL;
    return result;
  }
  const wchar_t* at = text;
  while (IsWhiteSpace(*at)) ++at;
  if (*at == L'-' || *at == L'+') result.negative = *at++ == L'-';
  if ((base == 0 || base == 16) && DigitValue(at[0]) == 0 && (at[1] | 32u) == L'x' &&
      DigitValue(at[2]) < 16) {
    at += 2;
    base = 16;
  } else if (base == 0) {
    base = DigitValue(at[0]) == 0 ? 8 : 10;
  }
  const std::uint64_t limit = result.negative ? negativeLimit : positiveLimit;
  const auto radix = static_cast<std::uint64_t>(base);
  for (;; ++at) {
    const unsigned digit = DigitValue(*at);
    if (digit >= radix) break;
    if (!result.overflow && result.value <= (limit - digit) / radix) {
      result.value = result.value * radix + digit;
    } else {
      result.overflow = true;
    }
    result.end = at + 1;
  }
  if (result.overflow) errno = ERANGE;
  return result;
}

template <typename Integer>
Integer ToSigned(const wchar_t* text, wchar_t** end, int base) {
  using Limits = std::numeric_limits<Integer>;
  constexpr auto kMaximum = static_cast<std::uint64_t>(Limits::max());
  const Magnitude number = ReadInteger(text, base, kMaximum, kMaximum + 1);
  if (end != nullptr) *end = const_cast<wchar_t*>(number.end);
  if (number.overflow) return number.negative ? Limits::min() : Limits::max();
  if (!number.negative) return static_cast<Integer>(number.value);
  return number.value == kMaximum + 1 ? Limits::min()
                                      : static_cast<Integer>(-static_cast<Integer>(number.value));
}

template <typename Integer>
Integer ToUnsigned(const wchar_t* text, wchar_t** end, int base) {
  constexpr Integer kMaximum = std::numeric_limits<Integer>::max();
  const Magnitude number = ReadInteger(text, base, kMaximum, kMaximum);
  if (end != nullptr) *end = const_cast<wchar_t*>(number.end);
  if (number.overflow) return kMaximum;
  const auto value = static_cast<Integer>(number.value);
  return number.negative ? static_cast<Integer>(0 - value) : value;
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

// Everything the quick way doesn't know: hexadecimal, infinity and NaN forms, values out of range. `text` is
// narrow.
double ReadByLibrary(const std::string& text, size_t& used) {
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  char* end = nullptr;
  const double value = strtod_l(text.c_str(), &end, cLocale);
  used = static_cast<size_t>(end - text.c_str());
  return value;
}

// Digits of `value` from the right; the sign is the caller's.
void WriteDigits(std::uint64_t value, bool negative, wchar_t* buffer, int radix) {
  if (radix < 2 || radix > 36) {
    errno = EINVAL;
    buffer[0] = 0;
    return;
  }
  char digits[65];
  const auto result = std::to_chars(digits, digits + sizeof digits, value, radix);
  if (negative) *buffer++ = L'-';
  *std::copy(static_cast<char*>(digits), result.ptr, buffer) = 0;
}

template <typename Integer>
wchar_t* WriteSigned(Integer value, wchar_t* buffer, int radix) {
  using Unsigned = std::make_unsigned_t<Integer>;
  const bool negative = radix == 10 && value < 0;
  const auto bits = static_cast<Unsigned>(value);
  WriteDigits(negative ? static_cast<Unsigned>(0 - bits) : bits, negative, buffer, radix);
  return buffer;
}

}  // namespace

long qorgen_wcstol(const wchar_t* text, wchar_t** end, int base) {
  return ToSigned<std::int32_t>(text, end, base);
}

unsigned long qorgen_wcstoul(const wchar_t* text, wchar_t** end, int base) {
  return ToUnsigned<std::uint32_t>(text, end, base);
}

long long qorgen_wcstoll(const wchar_t* text, wchar_t** end, int base) {
  return ToSigned<long long>(text, end, base);
}

unsigned long long qorgen_wcstoull(const wchar_t* text, wchar_t** end, int base) {
  return ToUnsigned<unsigned long long>(text, end, base);
}

double qorgen_wcstod(const wchar_t* text, wchar_t** end) {
  const wchar_t* at = text;
  while (IsWhiteSpace(*at)) ++at;
  const wchar_t* number = at;
  bool negative = false;
  if (*number == L'-' || *number == L'+') negative = *number++ == L'-';
  const bool hexadecimal = number[0] == L'0' && (number[1] | 32u) == L'x';
  const size_t length = hexadecimal ? 0 : DecimalLength(number);
  if (length != 0 && length <= 64) {
    char digits[64];
    std::transform(number, number + length, digits, [](wchar_t unit) { return static_cast<char>(unit); });
    double value = 0;
    const auto result = std::from_chars(digits, digits + length, value);
    if (result.ec == std::errc()) {
      if (end != nullptr) *end = const_cast<wchar_t*>(number + (result.ptr - digits));
      return negative ? -value : value;
    }
  }
  size_t last = length;
  if (length == 0) {
    // The longest run that a special form can hold: letters, digits, point, sign, and the brackets of
    // nan(...).
    while (number[last] != 0 && number[last] < 0x80 && !IsWhiteSpace(number[last])) ++last;
  }
  std::string narrow(number, number + last);
  if (!narrow.empty() && (narrow[0] == '+' || narrow[0] == '-')) narrow.clear();
  size_t used = 0;
  const double value = ReadByLibrary(narrow, used);
  if (end != nullptr) *end = const_cast<wchar_t*>(used == 0 ? text : number + used);
  return negative && used != 0 ? -value : value;
}

int _wtoi(const wchar_t* text) {
  return static_cast<int>(wcstol(text, nullptr, 10));
}
long _wtol(const wchar_t* text) {
  return wcstol(text, nullptr, 10);
}
long long _wtoi64(const wchar_t* text) {
  return wcstoll(text, nullptr, 10);
}
double _wtof(const wchar_t* text) {
  return wcstod(text, nullptr);
}

wchar_t* _itow(int value, wchar_t* buffer, int radix) {
  return WriteSigned(value, buffer, radix);
}

wchar_t* _ltow(long value, wchar_t* buffer, int radix) {
  return WriteSigned(static_cast<std::int32_t>(value), buffer, radix);
}

wchar_t* _ultow(unsigned long value, wchar_t* buffer, int radix) {
  WriteDigits(static_cast<std::uint32_t>(value), false, buffer, radix);
  return buffer;
}

wchar_t* _i64tow(long long value, wchar_t* buffer, int radix) {
  return WriteSigned(value, buffer, radix);
}

wchar_t* _ui64tow(unsigned long long value, wchar_t* buffer, int radix) {
  WriteDigits(value, false, buffer, radix);
  return buffer;
}
