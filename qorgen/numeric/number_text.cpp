// Numbers to plain text.

#include "qorgen/numeric/internal/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "qorgen/afx/memory.h"
#include "qorgen/numeric/internal/rounding.h"
#include "qorgen/numeric/num_util.h"

namespace qorgen::numeric {
namespace {

constexpr int kSignificantDigits = 15;

// `value` times `scale`, whole: the double nearest to the product and what it misses, both exact. Veltkamp's
// split into halves of 26 bits stands in for a fused multiply-add, which not every runtime rounds correctly.
struct ExactProduct {
  double nearest;
  double missing;
};

ExactProduct Multiply(double value, double scale) {
  constexpr double kSplitter = 134217729.0;  // 2 to the power 27, plus 1
  const double value_scaled = kSplitter * value;
  const double value_high = value_scaled - (value_scaled - value);
  const double value_low = value - value_high;
  const double scale_scaled = kSplitter * scale;
  const double scale_high = scale_scaled - (scale_scaled - scale);
  const double scale_low = scale - scale_high;
  const double nearest = value * scale;
  const double missing =
      ((value_high * scale_high - nearest) + value_high * scale_low + value_low * scale_high) +
      value_low * scale_low;
  return {nearest, missing};
}

// Correctly rounded, ties to even, for magnitudes whose scaled form keeps to fifteen digits.
NumberText PrintScaled(double magnitude, bool negative, int precision) {
  const auto [nearest, missing] = Multiply(magnitude, PowerOfTen(precision));
  const double whole = std::floor(nearest);
  auto units = static_cast<std::uint64_t>(whole);
  const double beyond_half = ((nearest - whole) - 0.5) + missing;
  if (beyond_half > 0 || (beyond_half == 0 && units % 2 == 1)) ++units;

  char digits[24];
  char* const digits_end = std::to_chars(digits, std::end(digits), units).ptr;
  const int count = static_cast<int>(digits_end - digits);
  NumberText text;
  char* out = text.characters;
  if (negative) *out++ = '-';
  const int integer_digits = count - precision;
  if (integer_digits > 0) {
    out = std::copy(digits, digits + integer_digits, out);
  } else {
    *out++ = '0';
  }
  if (precision > 0) {
    *out++ = '.';
    if (integer_digits < 0) out = std::fill_n(out, -integer_digits, '0');
    out = std::copy(digits + std::max(integer_digits, 0), digits_end, out);
  }
  text.length = static_cast<int>(out - text.characters);
  return text;
}

NumberText PrintWord(const char* word) {
  NumberText text;
  text.length = static_cast<int>(std::strlen(word));
  std::memcpy(text.characters, word, static_cast<std::size_t>(text.length));
  return text;
}

int PrintedPrecision(double magnitude, int decimals) {
  const int wanted =
      decimals > -kSignificantDigits ? std::min(std::abs(decimals), kSignificantDigits) : kSignificantDigits;
  return std::max(std::min(wanted, kSignificantDigits - DivisionsToOne(magnitude)), 0);
}

}  // namespace

NumberText IntegerText(long long value) {
  NumberText text;
  text.length = static_cast<int>(std::to_chars(text.characters, std::end(text.characters), value).ptr -
                                 text.characters);
  return text;
}

NumberText DecimalText(double value, int decimals, int mode) {
  if (std::isnan(value)) return PrintWord("nan");
  if (std::isinf(value)) return PrintWord(value < 0 ? "-inf" : "inf");
  if (mode != 0) CQorNumUtil::Round(value, -std::clamp(decimals, -400, 400), mode);
  const double magnitude = std::fabs(value);
  const int precision = PrintedPrecision(magnitude, decimals);
  if (magnitude <= 1e15) return PrintScaled(magnitude, value < 0, precision);
  if (std::isinf(value)) return PrintWord(value < 0 ? "-inf" : "inf");  // rounded beyond the largest double
  NumberText text;
  const auto printed =
      std::to_chars(text.characters, std::end(text.characters), value, std::chars_format::fixed, precision);
  text.length = static_cast<int>(printed.ptr - text.characters);
  return text;
}

int TrimmedLength(std::span<const char> text, bool trim) {
  auto length = text.size();
  if (length == 0 || std::memchr(text.data(), '.', length) == nullptr) return static_cast<int>(length);
  if (trim) {
    while (length > 0 && text[length - 1] == '0') --length;
  }
  if (length > 0 && text[length - 1] == '.') --length;
  return static_cast<int>(length);
}

wchar_t* Widened(const char* text, int length, int* reported) {
  wchar_t* wide = AllocateText(static_cast<std::size_t>(length) + 1);
  *std::copy_n(text, length, wide) = L'\0';
  if (reported != nullptr) *reported = length;
  return wide;
}

}  // namespace qorgen::numeric

using qorgen::numeric::DecimalText;
using qorgen::numeric::IntegerText;
using qorgen::numeric::NumberText;
using qorgen::numeric::TrimmedLength;
using qorgen::numeric::Widened;

namespace {

wchar_t* WideInteger(long long value, int* length) {
  const NumberText text = IntegerText(value);
  return Widened(text.characters, text.length, length);
}

}  // namespace

wchar_t* CQorNumUtil::ToString(unsigned char value, int* length) {
  return WideInteger(value, length);
}
wchar_t* CQorNumUtil::ToString(short value, int* length) {
  return WideInteger(value, length);
}
wchar_t* CQorNumUtil::ToString(unsigned short value, int* length) {
  return WideInteger(value, length);
}
wchar_t* CQorNumUtil::ToString(int value, int* length) {
  return WideInteger(value, length);
}
wchar_t* CQorNumUtil::ToString(unsigned int value, int* length) {
  return WideInteger(value, length);
}

wchar_t* CQorNumUtil::ToString(long value, int* length) {
  return WideInteger(static_cast<std::int32_t>(value), length);
}

wchar_t* CQorNumUtil::ToString(unsigned long value, int* length) {
  return WideInteger(static_cast<std::uint32_t>(value), length);
}

wchar_t* CQorNumUtil::ToString(double value, int decimals, int* length, int mode, int trim) {
  return ToString(value, decimals, 0, length, mode, trim, nullptr);
}

wchar_t* CQorNumUtil::ToString(double value, int* length) {
  return ToString(value, 0, length, 0, 1);
}

wchar_t* CQorNumUtil::ToString(double value, int decimals, int maxChars, int* length, int mode, int trim,
                               int* over) {
  const NumberText text = DecimalText(value, decimals, mode);
  int kept = TrimmedLength(text.View(), trim != 0);
  int too_long = 0;
  if (maxChars > 0 && kept > maxChars) {
    kept = TrimmedLength(text.View().first(static_cast<std::size_t>(maxChars)), trim != 0);
    too_long = kept >= maxChars ? 1 : 0;
  }
  if (over != nullptr) *over = too_long;
  return Widened(text.characters, kept, length);
}
