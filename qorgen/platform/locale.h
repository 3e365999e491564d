#pragma once

// The process locale of the wide runtime and the user's language, under the published names.
//
// On Linux the C library's own locale is neither read nor changed: the name that _wsetlocale remembers
// decides the language of wcsftime alone, since streams and conversions always use code page 932. Callable
// from any thread.

#include <clocale>

#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <locale.h>
#include <wchar.h>
#else

using LANGID = WORD;

inline constexpr WORD LANG_NEUTRAL = 0x00;
inline constexpr WORD LANG_ENGLISH = 0x09;
inline constexpr WORD LANG_JAPANESE = 0x11;
inline constexpr WORD SUBLANG_DEFAULT = 0x01;
constexpr WORD MAKELANGID(WORD primary, WORD sub) {
  return static_cast<WORD>((sub << 10) | primary);
}
constexpr WORD PRIMARYLANGID(WORD language) {
  return language & 0x3FF;
}

// Sets and gives the locale of `category` (LC_ALL and its kin): "japanese", "ja-JP" and the like give
// "Japanese_Japan.932", "english" and the like "English_United States.932", "C" gives "C", an empty name the
// user's language. A null name only asks. An unknown name or category gives null and changes nothing. The
// result is constant text. With different locales by category, asking for LC_ALL gives
// "LC_COLLATE=...;LC_CTYPE=..." and so on.
wchar_t* _wsetlocale(int category, const wchar_t* name);

// The user's language from LC_ALL, LC_MESSAGES or LANG, whichever is set first: English (0x0409) for "en...",
// else Japanese (0x0411), which is also the answer where nothing or "C" is set.
LANGID GetUserDefaultUILanguage();

#endif
