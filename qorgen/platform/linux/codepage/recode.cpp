// Code page 932 to UTF-8 and back in one pass. Runs of ASCII go over sixteen at a time; every other character
// costs one look-up, a store of a fixed size and a step of the character's own size, so that neither
// half-width katakana nor ideographs make the processor guess.

#include <array>
#include <bit>
#include <cstring>
#include <memory>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/linux/codepage/codec.h"

#if defined(__SSE2__)
#include <tmmintrin.h>
#endif

namespace qorgen::platform {
namespace {

static_assert(std::endian::native == std::endian::little, "the stores below write the low byte first");

constexpr std::size_t kBlock = 16;
// What a step may store behind the place it moves to.
constexpr std::size_t kOvershoot = 4 * kBlock;
static_assert(qorgen_recode_room(0) >= kOvershoot);

// ---- to UTF-8 ----

// The bytes of a character in UTF-8, the first one lowest, and their number on top; 0 where there is none.
using Sequence = std::uint32_t;

constexpr unsigned SizeOf(Sequence sequence) {
  return sequence >> 24;
}

Sequence SequenceOf(wchar_t unit) {
  char bytes[4] = {};
  bool invalid = false;
  const Progress progress = EncodeUtf8(&unit, 1, bytes, 3, invalid);
  Sequence sequence = 0;
  std::memcpy(&sequence, bytes, 3);
  return sequence | static_cast<Sequence>(progress.written) << 24;
}

struct SequenceTables {
  std::array<Sequence, 0x100> single;
  std::array<Sequence, 0x10000> pair;  // lead byte in the low half
};

const SequenceTables& GetSequenceTables() {
  static const std::unique_ptr<const SequenceTables> tables = [] {
    const Tables932& units = GetTables932();
    auto filled = std::make_unique<SequenceTables>();
    for (std::size_t i = 0; i < filled->single.size(); ++i) filled->single[i] = SequenceOf(units.single[i]);
    for (std::size_t i = 0; i < filled->pair.size(); ++i) {
      filled->pair[i] = units.pair[i] != 0 ? SequenceOf(units.pair[i]) : 0;
    }
    return filled;
  }();
  return *tables;
}

char* Put(char* out, Sequence sequence) {
  std::memcpy(out, &sequence, sizeof sequence);
  return out + SizeOf(sequence);
}

// One character; a lead byte alone, at the end or before a zero byte, is one as well.
inline const unsigned char* PutCharacter(const SequenceTables& tables, const unsigned char* at,
                                         const unsigned char* end, char*& out) {
  if (!IsLead932(*at)) {
    out = Put(out, tables.single[*at]);
    return at + 1;
  }
  const Sequence sequence = end - at >= 2 ? tables.pair[static_cast<std::size_t>(at[0] | at[1] << 8)] : 0;
  out = Put(out, sequence != 0 ? sequence : tables.pair[0x4581]);
  return at + (sequence != 0 ? 2 : 1);
}

std::size_t ToUtf8Plain(const SequenceTables& tables, const unsigned char* at, std::size_t bytes,
                        char* destination) {
  const unsigned char* const end = at + bytes;
  char* out = destination;
  while (at != end) at = PutCharacter(tables, at, end, out);
  return static_cast<std::size_t>(out - destination);
}

#if defined(__SSE2__)
// Four characters of four bytes each, of which those of ASCII have one that counts and katakana three:
// indexed by a bit per katakana, where the bytes that count go, and how many they are.
struct Squeeze {
  alignas(kBlock) unsigned char place[kBlock];
  unsigned char size;
};
constexpr std::array<Squeeze, 16> kSqueezes = [] {
  std::array<Squeeze, 16> squeezes{};
  for (unsigned kana = 0; kana < squeezes.size(); ++kana) {
    Squeeze& squeeze = squeezes[kana];
    for (unsigned character = 0; character < 4; ++character) {
      const unsigned count = (kana >> character & 1) != 0 ? 3 : 1;
      for (unsigned i = 0; i < count; ++i) {
        squeeze.place[squeeze.size++] = static_cast<unsigned char>(4 * character + i);
      }
    }
  }
  return squeezes;
}();
static_assert(kSqueezes[0].size == 4 && kSqueezes[0b1001].place[3] == 4 && kSqueezes[15].size == 12);

[[gnu::target("ssse3")]] inline char* PutFour(__m128i characters, unsigned kana, char* out) {
  const Squeeze& squeeze = kSqueezes[kana & 0xF];
  const __m128i place = _mm_load_si128(reinterpret_cast<const __m128i*>(squeeze.place));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(characters, place));
  return out + squeeze.size;
}

// Sixteen characters of ASCII and katakana at a time without a branch: each is spread over four bytes, and
// the bytes that count move together. A block that has other characters is taken up to the first of them;
// what is stored for the rest is overwritten.
[[gnu::target("ssse3")]] std::size_t ToUtf8Blocks(const SequenceTables& tables, const unsigned char* at,
                                                  std::size_t bytes, char* destination) {
  const unsigned char* const end = at + bytes;
  char* out = destination;
  while (static_cast<std::size_t>(end - at) >= kBlock) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const auto high = static_cast<unsigned>(_mm_movemask_epi8(block));
    if (high == 0) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
      at += kBlock;
      out += kBlock;
      continue;
    }
    // As signed bytes katakana are -95 to -33: EF BD A1 to EF BD BF, and EF BE 80 to EF BE 9F from -64 on.
    const __m128i is_kana =
        _mm_and_si128(_mm_cmpgt_epi8(block, _mm_set1_epi8(-96)), _mm_cmplt_epi8(block, _mm_set1_epi8(-32)));
    const auto kana = static_cast<unsigned>(_mm_movemask_epi8(is_kana));
    const auto count = static_cast<unsigned>(std::countr_zero((high & ~kana) | 1u << kBlock));
    if (count != 0) {
      const __m128i is_late = _mm_cmpgt_epi8(block, _mm_set1_epi8(-65));
      const __m128i first = _mm_or_si128(_mm_andnot_si128(is_kana, block),
                                         _mm_and_si128(is_kana, _mm_set1_epi8(static_cast<char>(0xEF))));
      const __m128i second = _mm_sub_epi8(_mm_set1_epi8(static_cast<char>(0xBD)), is_late);
      const __m128i third = _mm_sub_epi8(block, _mm_and_si128(is_late, _mm_set1_epi8(0x40)));
      const __m128i none = _mm_setzero_si128();
      const __m128i head_low = _mm_unpacklo_epi8(first, second);
      const __m128i head_high = _mm_unpackhi_epi8(first, second);
      const __m128i tail_low = _mm_unpacklo_epi8(third, none);
      const __m128i tail_high = _mm_unpackhi_epi8(third, none);
      char* place = PutFour(_mm_unpacklo_epi16(head_low, tail_low), kana, out);
      place = PutFour(_mm_unpackhi_epi16(head_low, tail_low), kana >> 4, place);
      place = PutFour(_mm_unpacklo_epi16(head_high, tail_high), kana >> 8, place);
      PutFour(_mm_unpackhi_epi16(head_high, tail_high), kana >> 12, place);
      const unsigned taken = kana & ((1u << count) - 1);
      out += kSqueezes[taken & 0xF].size + kSqueezes[taken >> 4 & 0xF].size +
             kSqueezes[taken >> 8 & 0xF].size + kSqueezes[taken >> 12].size - (kBlock - count);
      at += count;
      if (count == kBlock) continue;
    }
    do {
      at = PutCharacter(tables, at, end, out);
    } while (at != end && IsLead932(*at));
  }
  return static_cast<std::size_t>(out - destination) +
         ToUtf8Plain(tables, at, static_cast<std::size_t>(end - at), out);
}
#endif

std::size_t ToUtf8(const unsigned char* source, std::size_t bytes, char* destination) {
  const SequenceTables& tables = GetSequenceTables();
#if defined(__SSE2__)
  if (__builtin_cpu_supports("ssse3")) return ToUtf8Blocks(tables, source, bytes, destination);
#endif
  return ToUtf8Plain(tables, source, bytes, destination);
}

// ---- to code page 932 ----

constexpr std::uint16_t kDefault932 = '?';

// The character at `at`, which isn't ASCII.
inline const unsigned char* PutAnsi(const Tables932& tables, const unsigned char* at,
                                    const unsigned char* end, char*& out) {
  const auto left = static_cast<std::size_t>(end - at);
  wchar_t units[2];
  bool invalid = false;
  Progress progress = DecodeUtf8(at, left, units, 1, invalid);
  // No room for a pair of surrogates.
  if (progress.read == 0) progress = DecodeUtf8(at, 4, units, 2, invalid);
  for (std::size_t i = 0; i < progress.written; ++i) {
    const std::uint16_t code = tables.code[units[i]];
    out = PutCode932(out, code != 0 ? code : kDefault932);
  }
  return at + progress.read;
}

std::size_t To932Plain(const Tables932& tables, const unsigned char* at, std::size_t bytes,
                       char* destination) {
  const unsigned char* const end = at + bytes;
  char* out = destination;
  while (at != end) {
    if (*at < 0x80) {
      *out++ = static_cast<char>(*at++);
    } else {
      at = PutAnsi(tables, at, end, out);
    }
  }
  return static_cast<std::size_t>(out - destination);
}

#if defined(__SSE2__)
// ASCII sixteen bytes at a time, and characters of three bytes with a single look at their four bits of mark.
std::size_t To932Blocks(const Tables932& tables, const unsigned char* at, std::size_t bytes,
                        char* destination) {
  const unsigned char* const end = at + bytes;
  char* out = destination;
  while (static_cast<std::size_t>(end - at) >= 2 * kBlock) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
    const auto ascii = std::countr_zero(static_cast<unsigned>(_mm_movemask_epi8(block)) | 1u << kBlock);
    at += ascii;
    out += ascii;
    if (ascii == kBlock) continue;
    std::uint32_t four;
    std::memcpy(&four, at, sizeof four);
    bool known = false;
    for (; (four & 0xC0C0F0) == 0x8080E0 && (four & 0xF) != 0; std::memcpy(&four, at, sizeof four)) {
      const std::uint32_t unit = (four & 0xF) << 12 | (four >> 2 & 0xFC0) | (four >> 16 & 0x3F);
      const std::uint16_t code = tables.code[unit];
      known = code != 0;
      if (!known) break;
      out = PutCode932(out, code);
      at += 3;
      if (static_cast<std::size_t>(end - at) < kBlock) break;
    }
    if (!known) at = PutAnsi(tables, at, end, out);
  }
  return static_cast<std::size_t>(out - destination) +
         To932Plain(tables, at, static_cast<std::size_t>(end - at), out);
}
#endif

std::size_t To932(const unsigned char* source, std::size_t bytes, char* destination) {
  const Tables932& tables = GetTables932();
#if defined(__SSE2__)
  return To932Blocks(tables, source, bytes, destination);
#endif
  return To932Plain(tables, source, bytes, destination);
}

}  // namespace
}  // namespace qorgen::platform

std::size_t qorgen_recode(UINT from, UINT to, const char* source, std::size_t bytes, char* destination) {
  const auto* const data = reinterpret_cast<const unsigned char*>(source);
  if (from == CP_ACP && to == CP_UTF8) return qorgen::platform::ToUtf8(data, bytes, destination);
  if (from == CP_UTF8 && to == CP_ACP) return qorgen::platform::To932(data, bytes, destination);
  return 0;
}
