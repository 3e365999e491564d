#pragma once

// The reader of text streams, for both hosts: bytes into lines and units, line ends translated, marks skipped,
// characters put together that the end of a buffer cuts. One stream is read by one thread at a time.

#include <cstddef>
#include <memory>

#include "qorgen/platform/common/byte_window.h"

namespace qorgen::platform {

inline constexpr unsigned kUtf16Text = 1200;

// How the bytes of a stream are text, and what waits for the next call.
struct StreamText {
  unsigned code_page = 0;   // CP_UTF8, kUtf16Text, another one; 0 where each byte is a unit
  bool translate = true;    // CR LF counts as LF, Ctrl-Z ends the text
  bool skips_mark = false;  // a byte-order mark at the start of the file is no text
  // Units of a character that found no room, in order, for as long as the stream stands where they were left.
  wchar_t waiting[4] = {};
  int waiting_count = 0;
  long long waiting_place = 0;
};

// A line without its line end, with kLinePadding readable bytes behind it.
struct LineBytes {
  const unsigned char* bytes = nullptr;
  std::size_t length = 0;
  bool ended = false;            // by a line feed
  bool may_hold_control = true;  // NUL may be among the bytes
  // Units in front of the bytes, of a character whose first half was read before.
  wchar_t before[4] = {};
  int before_count = 0;
};

enum class LineResult {
  kEnd,     // no byte is left
  kFailed,  // the stream reports an error; a line cut by it is lost
  kLine,
  kNoMemory,  // the line is longer than memory or the limit; it was passed over, up to its line feed
};

// A block for the lines that don't lie in one piece in a window.
struct LineBlock {
  std::unique_ptr<unsigned char[]> bytes;
  std::size_t capacity = 0;
  std::size_t length = 0;
};

// The next line, where it lies in the window or gathered in `block`: good until either is used again.
LineResult ReadLine(ByteWindow& window, StreamText& text, LineBlock& block, std::size_t limit,
                    LineBytes& line);

// Up to `room` units, and no further than a line end, which comes as LF. Gives their number; 0 at the end.
std::size_t ReadUnits(ByteWindow& window, StreamText& text, wchar_t* units, std::size_t room);

// Up to `room` bytes with their line ends translated.
std::size_t ReadBytes(ByteWindow& window, const StreamText& text, char* bytes, std::size_t room);

// The units of a line, with those that stand before its bytes; a character that the line's end cuts shows as one
// that can't be decoded. Never more units than there are bytes and units before them.
std::size_t DecodeLine(unsigned code_page, const LineBytes& line, wchar_t* units);

}  // namespace qorgen::platform
