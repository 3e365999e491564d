#pragma once

// The length of a terminated text of UTF-16 units, eight units at a time where the processor can. Pure.

#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qorgen::platform {

inline std::size_t TextLengthPlain(const wchar_t* text) {
  const wchar_t* end = text;
  while (*end != 0) ++end;
  return static_cast<std::size_t>(end - text);
}

#if defined(__SSE2__)
// Two bits for each of eight units, set where the unit is zero.
[[gnu::always_inline]] inline std::uint32_t ZeroUnits(__m128i units) {
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi16(units, _mm_setzero_si128())));
}

// Reads aligned blocks, so bytes around the text may be read, but never of a page that holds none of it. The
// sanitizers can't know that this is harmless, nor that what stands there may be another thread's.
[[gnu::no_sanitize_address, gnu::no_sanitize_thread]] inline std::size_t TextLength(const wchar_t* text) {
  constexpr std::uintptr_t kBlock = sizeof(__m128i);
  const auto place = reinterpret_cast<std::uintptr_t>(text);
  if (place % sizeof(wchar_t) != 0) return TextLengthPlain(text);
  const auto* block = reinterpret_cast<const __m128i*>(place / kBlock * kBlock);
  // What stands in front of the text is shifted out.
  const std::uint32_t first = ZeroUnits(_mm_load_si128(block)) >> (place % kBlock);
  if (first != 0) return static_cast<std::size_t>(std::countr_zero(first)) / sizeof(wchar_t);
  for (;;) {
    const std::uint32_t found = ZeroUnits(_mm_load_si128(++block));
    if (found == 0) continue;
    const std::uintptr_t end =
        reinterpret_cast<std::uintptr_t>(block) + static_cast<unsigned>(std::countr_zero(found));
    return (end - place) / sizeof(wchar_t);
  }
}
#else
inline std::size_t TextLength(const wchar_t* text) {
  return TextLengthPlain(text);
}
#endif

}  // namespace qorgen::platform
