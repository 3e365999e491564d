#pragma once

// The classes of bytes of code page 932. Pure.

namespace qorgen::platform {

// 0x81 to 0x9F and 0xE0 to 0xFC: one subtraction for both, as the two differ in the bit 0x20 alone.
constexpr bool IsLead932(unsigned char byte) {
  return static_cast<unsigned char>((byte ^ 0x20) - 0xA1) < 0x3C;
}
constexpr bool IsTrail932(unsigned char byte) {
  return byte >= 0x40 && byte <= 0xFC && byte != 0x7F;
}
// A character of one byte, half-width katakana included.
constexpr bool IsPrint932(unsigned char byte) {
  return (byte >= 0x20 && byte <= 0x7E) || (byte >= 0xA1 && byte <= 0xDF);
}

}  // namespace qorgen::platform
