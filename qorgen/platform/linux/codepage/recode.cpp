// Code page 932 to UTF-8 and back in one pass. Runs of ASCII go over sixteen at a time; every other character
// costs one look-up, a store of a fixed size and a step of the character's own size, so that neither
// half-width katakana nor ideographs make the processor guess.

#include <array>
#include <bit>
#include <cstring>
#include <emmintrin.h>
#include <memory>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/linux/codepage/codec.h"

namespace qorgen::platform {
namespace {

static_assert(std::endian::native == std::endian::little, "the stores below write the low byte first");

constexpr std::size_t kBlock = 16;
// What a step may store behind the place it moves to.
static_assert(qorgen_recode_room(0) >= kBlock);

// Copies sixteen bytes and moves up to the first that isn't ASCII. False when there is one. What comes most
// often, sixteen and the three of "," between two fields, are jumps: the next load need not wait for a count.
inline bool PutAsciiBlock(const unsigned char*& at, char*& out) {
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
  const auto high = static_cast<unsigned>(_mm_movemask_epi8(block));
  if (high == 0) {
    at += kBlock;
    out += kBlock;
    return true;
  }
  if ((high & 0xF) == 8) {
    at += 3;
    out += 3;
    return false;
  }
  const int count = std::countr_zero(high);
  at += count;
  out += count;
  return false;
}

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
      const bool lead = IsLead932(static_cast<unsigned char>(i));
      if (lead && units.pair[i] != 0) filled->pair[i] = SequenceOf(units.pair[i]);
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

std::size_t ToUtf8(const unsigned char* at, std::size_t bytes, char* destination) {
  const SequenceTables& tables = GetSequenceTables();
  const unsigned char* const end = at + bytes;
  char* out = destination;
  while (at != end) {
    if (static_cast<std::size_t>(end - at) >= kBlock && PutAsciiBlock(at, out)) continue;
    do {
      at = PutCharacter(tables, at, end, out);
    } while (at != end && *at >= 0x80);
  }
  return static_cast<std::size_t>(out - destination);
}

// ---- to code page 932 ----

constexpr std::uint16_t kDefault932 = '?';

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

// Characters of three bytes, the bulk of Japanese text, with a single look at their marks. False when there is
// none.
inline bool PutThreeByteRun(const Tables932& tables, const unsigned char*& at, const unsigned char* end,
                            char*& out) {
  const unsigned char* const from = at;
  while (end - at >= 4) {
    std::uint32_t four;
    std::memcpy(&four, at, sizeof four);
    if ((four & 0xC0C0F0) != 0x8080E0 || (four & 0xF) == 0) break;
    const std::uint16_t code = tables.code[(four & 0xF) << 12 | (four >> 2 & 0xFC0) | (four >> 16 & 0x3F)];
    if (code == 0) break;
    out = PutCode932(out, code);
    at += 3;
  }
  return at != from;
}

std::size_t To932(const unsigned char* at, std::size_t bytes, char* destination) {
  const Tables932& tables = GetTables932();
  const unsigned char* const end = at + bytes;
  char* out = destination;
  while (at != end) {
    if (static_cast<std::size_t>(end - at) >= kBlock && PutAsciiBlock(at, out)) continue;
    if (!PutThreeByteRun(tables, at, end, out)) at = PutAnsi(tables, at, end, out);
  }
  return static_cast<std::size_t>(out - destination);
}

}  // namespace
}  // namespace qorgen::platform

std::size_t qorgen_recode(UINT from, UINT to, const char* source, std::size_t bytes, char* destination) {
  const auto* const data = reinterpret_cast<const unsigned char*>(source);
  if (from == CP_ACP && to == CP_UTF8) return qorgen::platform::ToUtf8(data, bytes, destination);
  if (from == CP_UTF8 && to == CP_ACP) return qorgen::platform::To932(data, bytes, destination);
  return 0;
}
