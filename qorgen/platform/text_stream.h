#pragma once

// Text streams as the library reads and writes them: whole lines with their lengths, text up to a limit, bytes with
// their line ends translated, and positions that are byte offsets in the file whatever its encoding and line ends.
//
//   - CR LF is read as LF; a CR alone stays. Ctrl-Z (0x1A) ends the text, and the stream then stands at the end of
//     its file.
//   - A byte-order mark at the start of a Unicode file is no text, also after the stream was rewound.
//   - Invalid bytes give U+FFFD, in code page 932 U+30FB; an odd byte at the end of UTF-16 is dropped.
//   - A binary stream holds units of two bytes, and nothing is translated.
//
// On Linux the stream knows its text since _wfopen or _wfdopen; a stream that others opened counts as UTF-8 without
// translation. On Windows a stream that is held is read from its descriptor and translated here, since the runtime can
// only guess where in the file a line stood; what is written goes through the runtime. A stream that isn't held or isn't
// a file on a disk stays the runtime's, character by character.
//
// For sources only. Streams may be held by any thread; one stream is used by one thread at a time.

#include <climits>
#include <cstddef>
#include <cstdio>

#include "qorgen/platform/common/text_reader.h"

namespace qorgen::platform {

enum class HeldText {
  kAnsi,     // the code page of the runtime's locale; on Windows bytes are units until one is set
  kUnicode,  // UTF-8, or UTF-16LE where the file begins with its mark
};

// Holds a stream opened in that text mode, from where it stands. Each call is paired with ReleaseStream. Null is ignored.
void HoldStream(std::FILE* stream, HeldText text);
// The last release leaves the runtime standing at the place read to. Harmless for a stream that isn't held, and for
// one that was closed meanwhile. To be called before the stream is closed by its holder.
void ReleaseStream(std::FILE* stream);
// Leaves the runtime standing at the place read to. To be called before its own functions use the stream.
void SettleStream(std::FILE* stream);

// In bytes: a text of as many units with padding behind it can be counted in an int.
inline constexpr std::size_t kLongestLine = INT_MAX - 1 - kLinePadding;

// One line after another of any stream.
class StreamLine {
 public:
  // Reads the next line, as text of the ANSI code page if `ansi` and the stream isn't known to be Unicode: so are the
  // streams of others and those that stay the runtime's. One of more than `limit` bytes gives kNoMemory. kFailed sets errno (EBADF for a stream that is
  // open for writing only) and the stream's error, where it is the runtime's to know.
  LineResult Read(std::FILE* stream, bool ansi = false, std::size_t limit = kLongestLine);

  // Of the last line, until the stream is used again: without its line end, in the stream's encoding.
  [[nodiscard]] const LineBytes& Bytes() const { return line_; }
  // Decodes the line into a text with room for kLinePadding units more than the line has bytes. Gives the number of
  // units.
  std::size_t Decode(wchar_t* units) const;

 private:
  LineBlock block_;
  LineBytes line_;
  unsigned code_page_ = 0;
};

// Up to `room` units, and no further than a line end, which comes as LF. 0 at the end of the text, -1 with errno where
// nothing could be read.
std::ptrdiff_t GetText(wchar_t* units, std::size_t room, std::FILE* stream);
// As fread of single bytes; those of a text stream with line ends translated. -1 with errno where nothing could be read.
std::ptrdiff_t GetBytes(void* buffer, std::size_t count, std::FILE* stream);
// As fwrite of single bytes; LF is CR LF in the file of a text stream. False with errno after an error.
bool PutBytes(const void* bytes, std::size_t count, std::FILE* stream);

// As ftello64 and fseeko64. What was written is handed to the system first.
long long TellStream(std::FILE* stream);
int SeekStream(std::FILE* stream, long long offset, int origin);
// As fflush for what was written. A stream that is being read keeps its place, which fflush would drop together with
// the runtime's buffer.
int FlushStream(std::FILE* stream);

enum class AnsiPut {
  kDone,
  kFailed,   // with errno; a part may have been written
  kNotHere,  // the stream isn't known as one of the ANSI code page: the caller converts there and back
};

// Writes text to a text stream of the ANSI code page as it comes back from the thread's code page: what that lacks
// becomes its default character. LF is CR LF in the file.
AnsiPut PutAnsiText(std::FILE* stream, const wchar_t* text, std::size_t units);

}  // namespace qorgen::platform
