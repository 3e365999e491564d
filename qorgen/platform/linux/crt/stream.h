#pragma once

// The streams that this runtime made: their modes, the descriptors behind them, and the state that text
// translation keeps beside the C library's FILE. A stream is used by one thread at a time; different threads
// may open, look up and close different streams.

#include <cstdio>
#include <memory>

#include "qorgen/platform/common/text_reader.h"
#include "qorgen/platform/types.h"

namespace qorgen::platform {

enum class Encoding { kBinary, kAnsi, kUtf8, kUtf16 };

inline constexpr unsigned kAnsiText = 932;

struct StreamMode {
  char kind = 0;  // 'r', 'w' or 'a'
  bool update = false;
  bool exclusive = false;
  bool temporary = false;
  Encoding encoding = Encoding::kAnsi;
  bool byMark = false;  // ccs=UNICODE: an existing file without a mark is in the ANSI code page

  [[nodiscard]] bool Reads() const { return kind == 'r' || update; }
  [[nodiscard]] bool Writes() const { return kind != 'r' || update; }
  [[nodiscard]] bool IsUnicode() const { return encoding == Encoding::kUtf8 || encoding == Encoding::kUtf16; }
};

// False for anything but the published modes.
[[nodiscard]] bool ParseMode(const wchar_t* text, StreamMode& mode);

struct StreamState {
  FILE* stream = nullptr;
  HANDLE handle = nullptr;
  int descriptor = -1;
  StreamText text;
  bool append = false;
  bool seekable = true;
  // Whether the bytes in the C library's buffer may hold a NUL or a Ctrl-Z; set as each piece is read from the file.
  bool may_hold_control = false;
  // The first half of a surrogate pair that was written, waiting for the second at this position; 0 if none.
  wchar_t high_surrogate = 0;
  long high_position = 0;
  // kBufferFront bytes, the C library's buffer, kLinePadding bytes.
  std::unique_ptr<char[]> buffer;
};

// Room in front of a stream's buffer for the first bytes of a character that the next piece of the file ends.
inline constexpr std::size_t kBufferFront = 16;

// The state of a stream; null for a stream that others opened. Cheap for the stream used last.
[[nodiscard]] StreamState* FindStream(FILE* stream);

// The table of descriptors; numbers start behind the standard three. A null or -1 result means none.
int AddDescriptor(HANDLE handle);
[[nodiscard]] HANDLE HandleOfDescriptor(int descriptor);
HANDLE RemoveDescriptor(int descriptor);

}  // namespace qorgen::platform
