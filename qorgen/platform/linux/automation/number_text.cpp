#include "qorgen/platform/linux/automation/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "qorgen/platform/automation.h"
#include "qorgen/platform/common/white_space.h"
#include "qorgen/platform/linux/automation/width.h"

namespace qorgen::platform {
namespace {

bool IsCurrency(wchar_t unit) {
  return unit == L'\\' || unit == 0xA5;
}

// Behind "&": H and hexadecimal digits, or O and octal ones, then white space alone.
bool ReadBased(const wchar_t* at, NumberText* number) {
  const wchar_t letter = NarrowUnit(*at) | 0x20;
  if (letter != L'h' && letter != L'o') return false;
  const int shift = letter == L'h' ? 4 : 3;
  number->based = true;
  const wchar_t* const first = ++at;
  for (;; ++at) {
    const wchar_t unit = NarrowUnit(*at);
    int digit = 16;
    if (IsDigit(unit)) digit = unit - L'0';
    if (shift == 4 && (unit | 0x20) >= L'a' && (unit | 0x20) <= L'f') digit = (unit | 0x20) - L'a' + 10;
    if (digit >= 1 << shift) break;
    if (number->used_bits == 0) {
      for (int rest = digit; rest != 0; rest >>= 1) ++number->used_bits;
    } else {
      number->used_bits = std::min(number->used_bits + shift, 65);
    }
    number->bits = (number->bits << shift) | static_cast<unsigned>(digit);
  }
  if (at == first) return false;
  while (IsNarrowSpace(NarrowUnit(*at))) ++at;
  return *at == 0;
}

// Digits with one point among them and commas behind the first; gives where they end, null without a digit.
const wchar_t* ReadDigits(const wchar_t* at, NumberText* number) {
  bool any = false;
  bool fraction = false;
  for (;; ++at) {
    const wchar_t unit = NarrowUnit(*at);
    if (IsDigit(unit)) {
      any = true;
      if (number->count == 0 && unit == L'0') {
        if (fraction) --number->point;
        continue;
      }
      if (!fraction) ++number->point;
      if (number->count < NumberText::kDigits) {
        number->digits[number->count++] = static_cast<char>(unit);
      } else if (unit != L'0') {
        number->more = true;
      }
    } else if (unit == L'.' && !fraction) {
      fraction = true;
    } else if (unit != L',' || !any) {
      return any ? at : nullptr;
    }
  }
}

const wchar_t* ReadExponent(const wchar_t* at, NumberText* number) {
  const wchar_t letter = NarrowUnit(*at) | 0x20;
  if (letter != L'e' && letter != L'd') return at;
  const wchar_t* next = at + 1;
  const wchar_t sign = NarrowUnit(*next);
  if (sign == L'+' || sign == L'-') ++next;
  if (!IsDigit(NarrowUnit(*next))) return at;
  std::int64_t exponent = 0;
  for (; IsDigit(NarrowUnit(*next)); ++next) {
    // A text is never long enough to bring a larger exponent back into range.
    exponent = std::min<std::int64_t>(exponent * 10 + (NarrowUnit(*next) - L'0'), std::int64_t{1} << 50);
  }
  number->point += sign == L'-' ? -exponent : exponent;
  return next;
}

}  // namespace

bool ReadNumber(const wchar_t* text, NumberText* number) {
  number->negative = number->based = number->more = false;
  number->used_bits = number->count = 0;
  number->bits = 0;
  number->point = 0;
  if (text == nullptr) return false;

  bool sign = false;
  bool open = false;
  bool currency = false;
  const wchar_t* at = text;
  for (;; ++at) {
    const wchar_t unit = NarrowUnit(*at);
    if (IsNarrowSpace(unit)) continue;
    if ((unit == L'+' || unit == L'-') && !sign && !open) {
      sign = true;
      number->negative = unit == L'-';
    } else if (unit == L'(' && !sign && !open) {
      open = number->negative = true;
    } else if (IsCurrency(unit) && !currency) {
      currency = true;
    } else {
      break;
    }
  }
  if (NarrowUnit(*at) == L'&') return !sign && !open && !currency && ReadBased(at + 1, number);

  at = ReadDigits(at, number);
  if (at == nullptr) return false;
  at = ReadExponent(at, number);

  bool closed = false;
  currency = false;
  for (;; ++at) {
    const wchar_t unit = NarrowUnit(*at);
    if (IsNarrowSpace(unit)) continue;
    if ((unit == L'+' || unit == L'-') && !sign && !open) {
      sign = true;
      number->negative = unit == L'-';
    } else if (unit == L')' && open && !closed) {
      closed = true;
    } else if (IsCurrency(unit) && !currency) {
      currency = true;
    } else {
      break;
    }
  }
  return *at == 0 && open == closed;
}

HRESULT RoundNumber(const NumberText& number, int width, std::int64_t low, std::int64_t high,
                    std::int64_t* value) {
  if (number.based) {
    if (number.used_bits > width) return DISP_E_OVERFLOW;
    std::int64_t bits = static_cast<std::int64_t>(number.bits);
    // The bit pattern of a signed type.
    if (bits > high) bits -= std::int64_t{1} << width;
    *value = bits;
    return S_OK;
  }
  std::int64_t rounded = 0;
  if (number.count != 0 && number.point >= 0) {
    if (number.point > 18) return DISP_E_OVERFLOW;
    const int point = static_cast<int>(number.point);
    for (int i = 0; i < point; ++i) rounded = rounded * 10 + (i < number.count ? number.digits[i] - '0' : 0);
    if (point < number.count && number.digits[point] >= '5') {
      const char* const behind = number.digits + point + 1;
      const bool above =
          number.digits[point] > '5' || number.more ||
          std::any_of(behind, number.digits + number.count, [](char digit) { return digit != '0'; });
      if (above || rounded % 2 != 0) ++rounded;
    }
  }
  if (number.negative) rounded = -rounded;
  if (rounded < low || rounded > high) return DISP_E_OVERFLOW;
  *value = rounded;
  return S_OK;
}

// To the nearest double. DISP_E_OVERFLOW beyond the largest.
static HRESULT NumberToDouble(const NumberText& number, double* value) {
  double magnitude = 0;
  if (number.based) {
    if (number.used_bits > 64) return DISP_E_OVERFLOW;
    magnitude = static_cast<double>(number.bits);
  } else if (number.count != 0) {
    // The largest double has 309 digits, the smallest stands 324 places behind the point.
    if (number.point > 310) return DISP_E_OVERFLOW;
    if (number.point > -340) {
      char text[NumberText::kDigits + 16];
      char* end = std::copy_n(number.digits, number.count, text);
      // What was left out only has to be known as more than nothing.
      if (number.more) *end++ = '1';
      *end++ = 'e';
      const int exponent = static_cast<int>(number.point) - number.count - (number.more ? 1 : 0);
      end = std::to_chars(end, text + sizeof text, exponent).ptr;
      const std::from_chars_result result = std::from_chars(text, end, magnitude);
      if (result.ec != std::errc()) {
        if (number.point > 0) return DISP_E_OVERFLOW;
        magnitude = 0;
      }
      if (std::isinf(magnitude)) return DISP_E_OVERFLOW;
    }
  }
  *value = number.negative && magnitude != 0 ? -magnitude : magnitude;
  return S_OK;
}

}  // namespace qorgen::platform

using namespace qorgen::platform;

HRESULT VarI4FromStr(const OLECHAR* text, LCID, ULONG, LONG* value) {
  if (value == nullptr) return E_INVALIDARG;
  NumberText number;
  if (!ReadNumber(text, &number)) return DISP_E_TYPEMISMATCH;
  std::int64_t rounded = 0;
  const HRESULT result = RoundNumber(number, 32, INT32_MIN, INT32_MAX, &rounded);
  if (SUCCEEDED(result)) *value = static_cast<LONG>(rounded);
  return result;
}

HRESULT VarR8FromStr(const OLECHAR* text, LCID, ULONG, double* value) {
  if (value == nullptr) return E_INVALIDARG;
  NumberText number;
  return ReadNumber(text, &number) ? NumberToDouble(number, value) : DISP_E_TYPEMISMATCH;
}
