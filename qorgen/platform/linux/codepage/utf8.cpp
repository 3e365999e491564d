// UTF-8. Invalid input becomes U+FFFD by the longest prefix that could begin a character, as the Unicode
// standard recommends and the platform does.

#include "qorgen/platform/common/utf8.h"

#include "qorgen/platform/linux/codepage/codec.h"

namespace qorgen::platform {
namespace {

constexpr wchar_t kReplacement = 0xFFFD;

constexpr bool IsContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

// The bytes of a character that begins with `lead`; 0 if none does.
constexpr unsigned Length(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  return lead < 0xE0 ? 2 : (lead < 0xF0 ? 3 : 4);
}

// The second byte has narrower bounds after four leads: no overlong forms, no surrogates, nothing above
// U+10FFFF.
constexpr bool MayFollow(unsigned char lead, unsigned char second) {
  if (lead == 0xE0) return second >= 0xA0 && second <= 0xBF;
  if (lead == 0xED) return second >= 0x80 && second <= 0x9F;
  if (lead == 0xF0) return second >= 0x90 && second <= 0xBF;
  if (lead == 0xF4) return second >= 0x80 && second <= 0x8F;
  return IsContinuation(second);
}

// The bytes at `at` that belong together (1 to 4), and whether they are a whole character.
struct Sequence {
  unsigned size;
  bool whole;
};

Sequence Measure(const unsigned char* at, std::size_t left) {
  const unsigned length = Length(*at);
  if (length <= 1) return {1, length == 1};
  unsigned size = 1;
  while (size < length && size < left && (size == 1 ? MayFollow(at[0], at[1]) : IsContinuation(at[size])))
    ++size;
  return {size, size == length};
}

char32_t Value(const unsigned char* at, unsigned size) {
  if (size == 2) return (at[0] & 0x1Fu) << 6 | (at[1] & 0x3Fu);
  if (size == 3) return (at[0] & 0xFu) << 12 | (at[1] & 0x3Fu) << 6 | (at[2] & 0x3Fu);
  return (at[0] & 0x7u) << 18 | (at[1] & 0x3Fu) << 12 | (at[2] & 0x3Fu) << 6 | (at[3] & 0x3Fu);
}

// Three-byte characters that need no closer look: kana, ideographs and their like, the bulk of Japanese text.
// Gives how many there were.
template <bool kStore>
std::size_t DecodeThreeByteRun(const unsigned char* at, std::size_t bytes, wchar_t* text,
                               std::size_t capacity) {
  const std::size_t limit = kStore && capacity < bytes / 3 ? capacity : bytes / 3;
  std::size_t count = 0;
  for (; count < limit; ++count, at += 3) {
    const unsigned lead = at[0];
    const unsigned second = at[1] ^ 0x80u;
    const unsigned third = at[2] ^ 0x80u;
    // 0xE0 and 0xED have narrower bounds for the second byte.
    if (lead <= 0xE0 || lead > 0xEF || lead == 0xED || ((second | third) & 0xC0) != 0) break;
    if constexpr (kStore) text[count] = static_cast<wchar_t>((lead & 0xF) << 12 | second << 6 | third);
  }
  return count;
}

template <bool kStore>
Progress Decode(const unsigned char* source, std::size_t bytes, wchar_t* text, std::size_t capacity,
                bool& invalid) {
  Progress total;
  while (total.read < bytes) {
    const unsigned char* at = source + total.read;
    const std::size_t left = bytes - total.read;
    if (*at < 0x80) {
      if constexpr (kStore) {
        if (total.written == capacity) break;
        text[total.written] = *at;
      }
      ++total.read;
      ++total.written;
      continue;
    }
    const std::size_t run = DecodeThreeByteRun<kStore>(at, left, kStore ? text + total.written : nullptr,
                                                       capacity - total.written);
    if (run != 0) {
      total.read += 3 * run;
      total.written += run;
      continue;
    }
    const Sequence sequence = Measure(at, left);
    const std::size_t units = sequence.whole && sequence.size == 4 ? 2 : 1;
    if constexpr (kStore) {
      if (capacity - total.written < units) break;
      wchar_t* out = text + total.written;
      if (!sequence.whole) {
        *out = kReplacement;
      } else if (sequence.size == 4) {
        const char32_t offset = Value(at, 4) - 0x10000;
        out[0] = static_cast<wchar_t>(0xD800 + (offset >> 10));
        out[1] = static_cast<wchar_t>(0xDC00 + (offset & 0x3FF));
      } else {
        *out = static_cast<wchar_t>(Value(at, sequence.size));
      }
    }
    invalid |= !sequence.whole;
    total.read += sequence.size;
    total.written += units;
  }
  return total;
}

template <bool kStore>
Progress Encode(const wchar_t* text, std::size_t units, char* destination, std::size_t capacity,
                bool& invalid) {
  Progress total;
  while (total.read < units) {
    char32_t value = text[total.read];
    std::size_t used = 1;
    if (IsHighSurrogate(text[total.read]) && total.read + 1 < units && IsLowSurrogate(text[total.read + 1])) {
      value = JoinSurrogates(value, text[total.read + 1]);
      used = 2;
    } else if (IsSurrogate(value)) {
      value = kReplacement;
      invalid = true;
    }
    const std::size_t size = SizeOfUtf8(value);
    if constexpr (kStore) {
      if (capacity - total.written < size) break;
      PutUtf8(destination + total.written, value);
    }
    total.read += used;
    total.written += size;
  }
  return total;
}

}  // namespace

Progress DecodeUtf8(const unsigned char* source, std::size_t bytes, wchar_t* text, std::size_t capacity,
                    bool& invalid) {
  return text == nullptr ? Decode<false>(source, bytes, text, capacity, invalid)
                         : Decode<true>(source, bytes, text, capacity, invalid);
}

Progress EncodeUtf8(const wchar_t* text, std::size_t units, char* destination, std::size_t capacity,
                    bool& invalid) {
  return destination == nullptr ? Encode<false>(text, units, destination, capacity, invalid)
                                : Encode<true>(text, units, destination, capacity, invalid);
}

}  // namespace qorgen::platform
