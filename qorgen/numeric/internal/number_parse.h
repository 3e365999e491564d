#pragma once

// Which characters make up a number. Shared by the sources of this folder.

namespace qorgen::numeric {

constexpr bool IsKeptCharacter(wchar_t c) {
  return (c >= L'0' && c <= L'9') || c == L'-' || c == L'.';
}

// A blank counts as part of a number but is not kept when a text is cleaned.
constexpr bool IsNumberCharacter(wchar_t c) {
  return IsKeptCharacter(c) || c == L' ';
}

}  // namespace qorgen::numeric
