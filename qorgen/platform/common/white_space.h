#pragma once

// White space, for every reader of text. Pure.

namespace qorgen::platform {

// The platform's wide class: the controls U+0009 to U+000D, U+0085, and the spaces and separators of Unicode, U+00A0
// and U+3000 among them. (Unicode's White_Space within the basic plane; releases of the runtime differ over U+0085.)
constexpr bool IsWhiteSpace(wchar_t unit) {
  if (unit < 0x80) return unit == L' ' || (unit >= L'\t' && unit <= L'\r');
  if (unit > 0x3000) return false;
  return unit == 0x85 || unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) ||
         unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

// The part of it below U+0080, which is all that the readers of numbers and dates skip.
constexpr bool IsNarrowSpace(wchar_t unit) {
  return unit < 0x80 && IsWhiteSpace(unit);
}

inline bool IsBlank(const wchar_t* text, int length) {
  int i = 0;
  while (i < length && IsWhiteSpace(text[i])) ++i;
  return i == length;
}

}  // namespace qorgen::platform
