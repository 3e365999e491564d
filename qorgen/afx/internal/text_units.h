#pragma once

// Questions about single UTF-16 units that the sources of CString share. Pure functions.

namespace qorgen::afx {

// Whether the terminated set holds the unit; a null set holds none.
inline bool IsOneOf(wchar_t unit, const wchar_t* characters) noexcept {
  if (characters == nullptr) return false;
  for (; *characters != 0; ++characters) {
    if (*characters == unit) return true;
  }
  return false;
}

}  // namespace qorgen::afx
