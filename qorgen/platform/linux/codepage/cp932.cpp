// Code page 932. The decoder takes sixteen one-byte characters at a time (ASCII and half-width katakana alike
// differ from their units by a constant) and one table look-up for each pair.

#include <algorithm>
#include <bit>
#include <emmintrin.h>

#include "qorgen/platform/linux/codepage/codec.h"

namespace qorgen::platform {
namespace {

constexpr std::size_t kBlock = 16;
static_assert(kDecodePadding >= kBlock);

// Stores sixteen units for sixteen bytes. Gives a bit for each byte that is neither ASCII nor half-width
// katakana: from the first of them on the units mean nothing.
unsigned StoreSingles(__m128i block, wchar_t* text) {
  // As signed bytes: ASCII is 0 or more, katakana -95 to -33.
  const __m128i high = _mm_cmplt_epi8(block, _mm_setzero_si128());
  const __m128i kana =
      _mm_and_si128(_mm_cmpgt_epi8(block, _mm_set1_epi8(-96)), _mm_cmplt_epi8(block, _mm_set1_epi8(-32)));
  // U+FF61 for 0xA1: the byte less 0x40, and 0xFF above it.
  const __m128i low = _mm_sub_epi8(block, _mm_and_si128(high, _mm_set1_epi8(0x40)));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(text), _mm_unpacklo_epi8(low, high));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(text + 8), _mm_unpackhi_epi8(low, high));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(kana, block)));
}

// One pair of bytes; the unit for a lead byte alone where no character can follow. A jump, so that where
// the next character begins doesn't wait for the table.
inline const unsigned char* PutPair(const Tables932& tables, const unsigned char* at, wchar_t*& out) {
  const wchar_t unit = DecodePair932(tables, at[0], at[1]);
  if (unit == 0) [[unlikely]] {
    *out++ = kUnassigned932;
    return at + 1;
  }
  *out++ = unit;
  return at + 2;
}

}  // namespace

Progress DecodePadded932(const unsigned char* source, std::size_t bytes, wchar_t* text) {
  const Tables932& tables = GetTables932();
  const unsigned char* at = source;
  const unsigned char* const end = source + bytes;
  wchar_t* out = text;
  bool lone_lead = false;
  while (at < end) {
    const unsigned stops = StoreSingles(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), out);
    // A jump, too, where the count need not be waited for.
    if (stops == 0) {
      at += kBlock;
      out += kBlock;
      continue;
    }
    const int count = std::countr_zero(stops);
    at += count;
    out += count;
    if (at >= end) break;
    if (!IsLead932(*at)) {
      *out++ = tables.single[*at++];
    } else if (end - at == 1) {
      *out++ = kUnassigned932;
      ++at;
      lone_lead = true;
    } else {
      do {
        at = PutPair(tables, at, out);
      } while (end - at >= 2 && IsLead932(*at));
    }
  }
  // The last block may have gone on into the padding.
  return {bytes, static_cast<std::size_t>(out - text) - static_cast<std::size_t>(at - end), lone_lead};
}

Progress Decode932(const unsigned char* source, std::size_t bytes, wchar_t* text, std::size_t capacity) {
  Progress total;
  while (total.read < bytes && total.written < capacity) {
    const unsigned char* const at = source + total.read;
    wchar_t* const out = text + total.written;
    const std::size_t left = bytes - total.read;
    const std::size_t sure = std::min(left, capacity - total.written);
    Progress run;
    if (sure > 2 * kDecodePadding) {
      // What follows is the padding.
      run = DecodePadded932(at, sure - kDecodePadding, out);
    } else {
      unsigned char some[3 * kDecodePadding] = {};
      wchar_t units[3 * kDecodePadding];
      std::copy_n(at, sure, some);
      run = DecodePadded932(some, sure, units);
      std::copy_n(units, run.written, out);
    }
    if (run.lone_lead && run.read < left) {
      // Its trail byte is there; a pair may be all that fits.
      --run.read;
      --run.written;
      run.lone_lead = false;
      if (run.read == 0) {
        wchar_t* place = out;
        run = {static_cast<std::size_t>(PutPair(GetTables932(), at, place) - at), 1};
      }
    }
    total = {total.read + run.read, total.written + run.written, run.lone_lead};
  }
  return total;
}

std::size_t Count932(const unsigned char* source, std::size_t bytes) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < bytes; ++units) {
    at += IsLead932(source[at]) && at + 1 < bytes && source[at + 1] != 0 ? 2 : 1;
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
