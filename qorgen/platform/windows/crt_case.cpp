// Case and classes of the C runtime without its locale: "msvcrt.dll" folds ASCII alone until a locale is set.
// Callable from any thread.

#include "qorgen/platform/crt.h"

namespace {

// The system's own table of pairs; the invariant locale keeps languages out of it.
wchar_t Mapped(wchar_t unit, DWORD direction) {
  wchar_t mapped = unit;
  LCMapStringW(LOCALE_INVARIANT, direction, &unit, 1, &mapped, 1);
  return mapped;
}

}  // namespace

// Only pairs that lead there and back count, as on the other host.
wint_t qorgen_towupper(wint_t unit) {
  if (unit < 0x80) return unit >= L'a' && unit <= L'z' ? static_cast<wint_t>(unit - 0x20) : unit;
  const wchar_t upper = Mapped(static_cast<wchar_t>(unit), LCMAP_UPPERCASE);
  return Mapped(upper, LCMAP_LOWERCASE) == unit ? static_cast<wint_t>(upper) : unit;
}

wint_t qorgen_towlower(wint_t unit) {
  if (unit < 0x80) return unit >= L'A' && unit <= L'Z' ? static_cast<wint_t>(unit + 0x20) : unit;
  const wchar_t lower = Mapped(static_cast<wchar_t>(unit), LCMAP_LOWERCASE);
  return Mapped(lower, LCMAP_UPPERCASE) == unit ? static_cast<wint_t>(lower) : unit;
}

// Releases of the runtime differ over U+0085.
int qorgen_iswspace(wint_t unit) {
  if (unit < 0x80) return unit == L' ' || unit - 9u < 5u;
  return unit == 0x85 || unit == 0xA0 || unit == 0x1680 || unit - 0x2000u < 11u || unit == 0x2028 ||
         unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

int qorgen_wcsnicmp(const wchar_t* left, const wchar_t* right, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const wint_t a = left[i] == right[i] ? left[i] : qorgen_towlower(left[i]);
    const wint_t b = left[i] == right[i] ? right[i] : qorgen_towlower(right[i]);
    if (a != b) return a < b ? -1 : 1;
    if (left[i] == 0) return 0;
  }
  return 0;
}

int qorgen_wcsicmp(const wchar_t* left, const wchar_t* right) {
  return qorgen_wcsnicmp(left, right, static_cast<size_t>(-1));
}

wchar_t* qorgen_wcsupr(wchar_t* text) {
  for (wchar_t* unit = text; *unit != 0; ++unit) *unit = static_cast<wchar_t>(qorgen_towupper(*unit));
  return text;
}

wchar_t* qorgen_wcslwr(wchar_t* text) {
  for (wchar_t* unit = text; *unit != 0; ++unit) *unit = static_cast<wchar_t>(qorgen_towlower(*unit));
  return text;
}

// Of code page 932, the one the library's texts are in. The runtime's own looks at the low byte alone.
int qorgen_ismbblead(unsigned int value) {
  return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

int qorgen_ismbbtrail(unsigned int value) {
  return (value >= 0x40 && value <= 0x7E) || (value >= 0x80 && value <= 0xFC);
}

int qorgen_ismbbprint(unsigned int value) {
  return (value >= 0x20 && value <= 0x7E) || (value >= 0xA1 && value <= 0xDF);
}
