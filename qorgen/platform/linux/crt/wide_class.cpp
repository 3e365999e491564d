// Classes and case of UTF-16 units, from GLib's constant Unicode tables; no locale takes part. Callable from
// any thread. Surrogates have no class and no case.

#include "qorgen/platform/crt.h"

// GLib has macros of its own for these two.
#undef FALSE
#undef TRUE
#include <glib.h>

namespace {

bool IsUnit(wint_t unit) {
  return unit <= 0xFFFF;
}

// Only pairs that lead there and back count: U+0130, U+0131, U+017F, U+212A and their like keep their form.
wint_t Upper(wint_t unit) {
  const gunichar upper = g_unichar_toupper(unit);
  return upper <= 0xFFFF && g_unichar_tolower(upper) == unit ? upper : unit;
}

wint_t Lower(wint_t unit) {
  const gunichar lower = g_unichar_tolower(unit);
  return lower <= 0xFFFF && g_unichar_toupper(lower) == unit ? lower : unit;
}

// Kana, ideographs, hangul: the bulk of Japanese text, without case.
bool IsCaseless(wint_t unit) {
  return unit >= 0x2E80 && unit < 0xA640;
}

}  // namespace

wint_t qorgen_towupper(wint_t unit) {
  if (unit < 0x80) return unit - L'a' < 26u ? unit - 32u : unit;
  return IsUnit(unit) && !IsCaseless(unit) ? Upper(unit) : unit;
}

wint_t qorgen_towlower(wint_t unit) {
  if (unit < 0x80) return unit - L'A' < 26u ? unit + 32u : unit;
  return IsUnit(unit) && !IsCaseless(unit) ? Lower(unit) : unit;
}

int qorgen_iswspace(wint_t unit) {
  if (unit < 0x80) return unit == L' ' || unit - 9u < 5u;
  return unit == 0x85 || unit == 0xA0 || unit == 0x1680 || unit - 0x2000u < 11u || unit == 0x2028 ||
         unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

int qorgen_iswdigit(wint_t unit) {
  if (unit < 0x80) return unit - L'0' < 10u;
  return IsUnit(unit) && g_unichar_isdigit(unit);
}

int qorgen_iswalpha(wint_t unit) {
  return IsUnit(unit) && g_unichar_isalpha(unit);
}
int qorgen_iswalnum(wint_t unit) {
  return iswalpha(unit) || iswdigit(unit);
}
int qorgen_iswupper(wint_t unit) {
  return IsUnit(unit) && g_unichar_isupper(unit);
}
int qorgen_iswlower(wint_t unit) {
  return IsUnit(unit) && g_unichar_islower(unit);
}

// Punctuation and symbols both, as the C standard's class has it.
int qorgen_iswpunct(wint_t unit) {
  return IsUnit(unit) && g_unichar_ispunct(unit);
}

int qorgen_iswcntrl(wint_t unit) {
  return IsUnit(unit) && g_unichar_type(unit) == G_UNICODE_CONTROL;
}

// U+0009 is a blank, but no printable character.
int qorgen_iswprint(wint_t unit) {
  return IsUnit(unit) && unit != L'\t' && g_unichar_isprint(unit);
}

int qorgen_iswxdigit(wint_t unit) {
  return unit - L'0' < 10u || (unit | 32u) - L'a' < 6u;
}
