#pragma once

// The two codecs behind codepage.h and the text streams: code page 932 and UTF-8, to and from UTF-16. All
// functions are pure but for the tables of 932, which are built once under the language's own guard and are
// constant from then on. Lengths are exact: no terminator is looked for or written.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "qorgen/platform/common/code_page_932.h"

namespace qorgen::platform {

// How far a conversion came. It ends early only where the next character doesn't fit.
struct Progress {
  std::size_t read = 0;
  std::size_t written = 0;
  bool lone_lead = false;  // the last unit stands for a lead byte of 932 at the very end
};

// ---- code page 932 ----

// What the platform gives for a pair without a character.
inline constexpr wchar_t kUnassigned932 = 0x30FB;

struct Tables932 {
  // By pair, the lead byte in the low half: the trail bytes then walk over whole cache lines of used leads.
  std::array<wchar_t, 0x10000> pair;
  std::array<wchar_t, 0x100> single;
  // By unit, as bytes of the file: one byte in the low half, or the lead byte there and the trail byte, which
  // is never 0, in the high half; 0 where there is none. Best fits included.
  std::array<std::uint16_t, 0x10000> code;
};

const Tables932& GetTables932();

inline wchar_t DecodePair932(const Tables932& tables, unsigned char lead, unsigned char trail) {
  return tables.pair[static_cast<std::size_t>(lead | trail << 8)];
}

// Stores the one or two bytes of an entry of `code` and gives their end. The byte behind one is stored too.
inline char* PutCode932(char* out, std::uint16_t code) {
  std::memcpy(out, &code, sizeof code);
  return out + (code > 0xFF ? 2 : 1);
}

Progress Decode932(const unsigned char* source, std::size_t bytes, wchar_t* text, std::size_t capacity);

// The same for a source with kDecodePadding readable bytes behind it, whatever they are, and a text with room
// for as many units more than there are bytes; units behind the result may be overwritten. Reads everything.
inline constexpr std::size_t kDecodePadding = 16;
Progress DecodePadded932(const unsigned char* source, std::size_t bytes, wchar_t* text);

// The units that the bytes decode to.
std::size_t Count932(const unsigned char* source, std::size_t bytes);
bool IsValid932(const unsigned char* source, std::size_t bytes);

struct Encoding932 {
  bool bestFit = true;
  std::uint16_t replacement = '?';  // a byte, or two with the lead byte in the low half
  bool replaced = false;            // set when the replacement was used
};

// With a null destination only counts.
Progress Encode932(const wchar_t* text, std::size_t units, char* destination, std::size_t capacity,
                   Encoding932& encoding);

// ---- UTF-8 ----

// With a null text only counts. Invalid bytes give U+FFFD by longest prefix and set `invalid`.
Progress DecodeUtf8(const unsigned char* source, std::size_t bytes, wchar_t* text, std::size_t capacity,
                    bool& invalid);

// With a null destination only counts. A lone surrogate gives U+FFFD and sets `invalid`.
Progress EncodeUtf8(const wchar_t* text, std::size_t units, char* destination, std::size_t capacity,
                    bool& invalid);

}  // namespace qorgen::platform
