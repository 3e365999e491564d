#pragma once

// The other case of a letter, for CString and for the wide runtime of both hosts, without a locale. Pure
// functions.
//
// What counts are the simple one-to-one mappings of the Unicode character database within the basic plane that
// lead there and back: ß, the dotted and dotless i (U+0130, U+0131), the long s (U+017F), the micro sign (U+00B5),
// the final sigma (U+03C2), the titlecase digraphs (U+01C5 ...) and the Kelvin sign (U+212A) keep their form, and so
// do surrogates. Two letters are then equal without case exactly when they are the same or partners.

#include <cstddef>

namespace qorgen::platform {

// For units from 0x80 on.
wchar_t UpperOfLetter(wchar_t unit) noexcept;
wchar_t LowerOfLetter(wchar_t unit) noexcept;

inline wchar_t ToUpperUnit(wchar_t unit) noexcept {
  if (unit < 0x80) return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - 0x20) : unit;
  return UpperOfLetter(unit);
}
inline wchar_t ToLowerUnit(wchar_t unit) noexcept {
  if (unit < 0x80) return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 0x20) : unit;
  return LowerOfLetter(unit);
}

}  // namespace qorgen::platform
