#pragma once

// Search for delimiters and quotes over 16-bit units: the inner loop of the line splitter. Pure functions.
//
// FindUnit and FindAnyUnit look at eight units at a time and may read up to seven units behind `end`, which
// the caller provides (FieldList::kPadding). FindAnyUnitPlain is the same question asked one unit at a time;
// tests hold the others against it.

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qorgen::exchange {

// Up to six characters that end a field; an empty set ends nothing.
struct UnitSet {
  wchar_t units[6] = {};
  int count = 0;

  void Add(wchar_t unit) { units[count++] = unit; }
  bool Contains(wchar_t unit) const {
    for (int i = 0; i < count; ++i) {
      if (units[i] == unit) return true;
    }
    return false;
  }
};

// The first unit of [text, end) that is in the set, or `end`.
inline const wchar_t* FindAnyUnitPlain(const wchar_t* text, const wchar_t* end, const UnitSet& set) {
  while (text != end && !set.Contains(*text)) ++text;
  return text;
}

#if defined(__SSE2__)

// The first `unit` of [text, end), or `end`.
inline const wchar_t* FindUnit(const wchar_t* text, const wchar_t* end, wchar_t unit) {
  const __m128i wanted = _mm_set1_epi16(static_cast<short>(unit));
  for (; text < end; text += 8) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const unsigned int hits = static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, wanted)));
    if (hits != 0) {
      text += __builtin_ctz(hits) / 2;  // two bits of the mask per unit
      return text < end ? text : end;
    }
  }
  return end;
}

inline const wchar_t* FindAnyUnit(const wchar_t* text, const wchar_t* end, const UnitSet& set) {
  if (set.count == 1) return FindUnit(text, end, set.units[0]);
  for (; text < end; text += 8) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    __m128i found = _mm_setzero_si128();
    for (int i = 0; i < set.count; ++i) {
      const __m128i wanted = _mm_set1_epi16(static_cast<short>(set.units[i]));
      found = _mm_or_si128(found, _mm_cmpeq_epi16(block, wanted));
    }
    const unsigned int hits = static_cast<unsigned int>(_mm_movemask_epi8(found));
    if (hits != 0) {
      text += __builtin_ctz(hits) / 2;
      return text < end ? text : end;
    }
  }
  return end;
}

#else

inline const wchar_t* FindUnit(const wchar_t* text, const wchar_t* end, wchar_t unit) {
  while (text != end && *text != unit) ++text;
  return text;
}

inline const wchar_t* FindAnyUnit(const wchar_t* text, const wchar_t* end, const UnitSet& set) {
  return FindAnyUnitPlain(text, end, set);
}

#endif

}  // namespace qorgen::exchange
