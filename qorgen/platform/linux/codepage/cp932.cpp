// Code page 932. The decoder takes sixteen one-byte characters at a time (ASCII and half-width katakana alike
// differ from their units by a constant) and one table look-up for each pair.

#include <bit>

#include "qorgen/platform/linux/codepage/codec.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qorgen::platform {
namespace {

constexpr bool IsPlainSingle(unsigned char byte) {
  return byte < 0x80 || (byte >= 0xA1 && byte <= 0xDF);
}

#if defined(__SSE2__)
constexpr std::size_t kBlock = 16;

// Bit i is set where byte i is neither ASCII nor half-width katakana.
unsigned StopMask(__m128i block) {
  // As signed bytes: ASCII is 0 or more, katakana -95 to -33.
  const __m128i ascii = _mm_cmpgt_epi8(block, _mm_set1_epi8(-1));
  const __m128i kana =
      _mm_and_si128(_mm_cmpgt_epi8(block, _mm_set1_epi8(-96)), _mm_cmplt_epi8(block, _mm_set1_epi8(-32)));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(ascii, kana))) ^ 0xFFFFu;
}

// Sixteen units for sixteen bytes; right wherever StopMask has no bit.
void StoreSingles(__m128i block, wchar_t* text) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i high = _mm_cmplt_epi8(block, zero);
  const __m128i shift = _mm_set1_epi16(static_cast<short>(0xFEC0));
  const __m128i low8 =
      _mm_add_epi16(_mm_unpacklo_epi8(block, zero), _mm_and_si128(_mm_unpacklo_epi8(high, high), shift));
  const __m128i high8 =
      _mm_add_epi16(_mm_unpackhi_epi8(block, zero), _mm_and_si128(_mm_unpackhi_epi8(high, high), shift));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(text), low8);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(text + 8), high8);
}
#endif

// Decodes while room for as many units as bytes are left is certain; a lead byte at the very end stays
// unread.
Progress DecodeRun(const Tables932& tables, const unsigned char* source, std::size_t bytes, wchar_t* text) {
  const unsigned char* at = source;
  const unsigned char* const end = source + bytes;
  wchar_t* out = text;
  for (;;) {
#if defined(__SSE2__)
    while (static_cast<std::size_t>(end - at) >= kBlock) {
      const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
      const unsigned stops = StopMask(block);
      if ((stops & 1) != 0) break;
      StoreSingles(block, out);
      const auto count = static_cast<std::size_t>(stops == 0 ? kBlock : std::countr_zero(stops));
      at += count;
      out += count;
      if (stops != 0) break;
    }
#endif
    while (end - at >= 2 && IsLead932(*at)) {
      const wchar_t unit = DecodePair932(tables, at[0], at[1]);
      *out++ = unit != 0 ? unit : kUnassigned932;
      at += unit != 0 ? 2 : 1;
    }
    if (at == end || (end - at == 1 && IsLead932(*at))) break;
#if defined(__SSE2__)
    if (static_cast<std::size_t>(end - at) >= kBlock && IsPlainSingle(*at)) continue;
#endif
    *out++ = tables.single[*at++];
  }
  return {static_cast<std::size_t>(at - source), static_cast<std::size_t>(out - text)};
}

}  // namespace

Progress Decode932(const unsigned char* source, std::size_t bytes, wchar_t* text, std::size_t capacity) {
  const Tables932& tables = GetTables932();
  Progress total;
  while (total.read < bytes && total.written < capacity) {
    const std::size_t left = bytes - total.read;
    const std::size_t room = capacity - total.written;
    const Progress run =
        DecodeRun(tables, source + total.read, left < room ? left : room, text + total.written);
    total.read += run.read;
    total.written += run.written;
    if (run.read != 0) continue;
    // A lead byte alone in what is left, or the last pair for the last unit of room.
    const wchar_t unit = left >= 2 ? DecodePair932(tables, source[total.read], source[total.read + 1]) : 0;
    text[total.written++] = unit != 0 ? unit : kUnassigned932;
    total.read += unit != 0 ? 2 : 1;
    total.lone_lead = left == 1;
  }
  return total;
}

std::size_t Count932(const unsigned char* source, std::size_t bytes) {
  std::size_t units = 0;
  const unsigned char* at = source;
  const unsigned char* const end = source + bytes;
  while (at < end) {
#if defined(__SSE2__)
    while (static_cast<std::size_t>(end - at) >= kBlock) {
      const unsigned stops = StopMask(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)));
      const auto count = static_cast<std::size_t>(stops == 0 ? kBlock : std::countr_zero(stops));
      at += count;
      units += count;
      if (stops != 0) break;
    }
#endif
    while (at < end && IsLead932(*at)) {
      at += end - at >= 2 && at[1] != 0 ? 2 : 1;
      ++units;
    }
    if (at < end && !IsLead932(*at)) {
      ++at;
      ++units;
    }
  }
  return units;
}

bool IsValid932(const unsigned char* source, std::size_t bytes) {
  const Tables932& tables = GetTables932();
  for (std::size_t i = 0; i < bytes; ++i) {
    if (!IsLead932(source[i])) continue;
    if (i + 1 == bytes) return false;
    const wchar_t unit = DecodePair932(tables, source[i], source[i + 1]);
    if (unit == 0 || (unit == kUnassigned932 && !(source[i] == 0x81 && source[i + 1] == 0x45))) return false;
    ++i;
  }
  return true;
}

Progress Encode932(const wchar_t* text, std::size_t units, char* destination, std::size_t capacity,
                   Encoding932& encoding) {
  const Tables932& tables = GetTables932();
  const bool store = destination != nullptr;
  Progress total;
  while (total.read < units) {
#if defined(__SSE2__)
    while (units - total.read >= 8 && (!store || capacity - total.written >= 8)) {
      const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + total.read));
      const __m128i high = _mm_and_si128(block, _mm_set1_epi16(static_cast<short>(0xFF80)));
      if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) break;
      if (store) {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(destination + total.written),
                         _mm_packus_epi16(block, block));
      }
      total.read += 8;
      total.written += 8;
    }
    if (total.read == units) break;
#endif
    // Characters with a code, where there is room for two bytes each: the bulk of Japanese text.
    if (store && encoding.bestFit) {
      std::size_t run = (capacity - total.written) / 2;
      if (run > units - total.read) run = units - total.read;
      std::size_t done = 0;
      char* out = destination + total.written;
      for (; done < run; ++done) {
        const std::uint16_t code = tables.code[text[total.read + done]];
        if (code == 0) break;
        out = PutCode932(out, code);
      }
      total.read += done;
      total.written = static_cast<std::size_t>(out - destination);
      if (total.read == units) break;
    }
    const wchar_t unit = text[total.read];
    std::uint16_t code = tables.code[unit];
    bool known = code != 0 || unit == 0;
    if (known && !encoding.bestFit && unit >= 0x80) {
      const wchar_t back = code > 0xFF ? tables.pair[code] : tables.single[code];
      known = back == unit;
    }
    if (!known) {
      code = encoding.replacement;
      encoding.replaced = true;
    }
    const std::size_t size = code > 0xFF ? 2 : 1;
    if (store) {
      if (capacity - total.written < size) break;
      destination[total.written] = static_cast<char>(code & 0xFF);
      if (size == 2) destination[total.written + 1] = static_cast<char>(code >> 8);
    }
    total.written += size;
    ++total.read;
  }
  return total;
}

}  // namespace qorgen::platform
