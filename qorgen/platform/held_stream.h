#pragma once

// Text streams read at exact places: the same lines as fgets and fgetws give, and positions that are byte
// offsets in the file whatever its encoding and line ends.
//
// On Linux that is what the streams of crt.h do, and these are other names for them. On Windows the runtime
// translates whole buffers and can only guess afterwards where in the file a line stood: a lone LF or a
// Unicode stream makes it lose its place. There a stream that is held is read from its descriptor and
// translated here, by the rules that crt.h states; what is written goes through the runtime. A stream that
// isn't held, isn't a file on a disk or is binary stays the runtime's.
//
// For sources only. Streams may be held by any thread; one stream is used by one thread at a time.

#include <cstddef>
#include <cstdio>

#include "qorgen/platform/crt.h"

namespace qorgen::platform {

enum class HeldText {
  kAnsi,     // the code page of the runtime's locale; on Windows bytes are units until one is set
  kUnicode,  // UTF-8, or UTF-16LE where the file begins with its mark
};

#if defined(_WIN32)

// Holds a stream opened in that text mode, from where it stands. Each call is paired with ReleaseStream. Null
// is ignored.
void HoldStream(FILE* stream, HeldText text);
// The last release leaves the runtime standing at the place read to. Harmless for a stream that isn't held,
// and for one that was closed meanwhile. To be called before the stream is closed by its holder.
void ReleaseStream(FILE* stream);
// Leaves the runtime standing at the place read to. To be called before its own functions use the stream.
void SettleStream(FILE* stream);

// As fgets and fgetws. Reading a stream that is open for writing only fails with EBADF and sets the stream's
// error, which the runtime doesn't do everywhere.
char* GetLine(char* buffer, int capacity, FILE* stream);
wchar_t* GetLine(wchar_t* buffer, int capacity, FILE* stream);
// As fread of single bytes.
std::size_t GetBytes(void* buffer, std::size_t count, FILE* stream);
// As ftello64 and fseeko64. What was written is handed to the system first.
long long TellStream(FILE* stream);
int SeekStream(FILE* stream, long long offset, int origin);
// As fflush for what was written. A stream that is being read keeps its place, which fflush would drop
// together with the runtime's buffer.
int FlushStream(FILE* stream);

#else

inline void HoldStream(FILE*, HeldText) {}
inline void ReleaseStream(FILE*) {}
inline void SettleStream(FILE*) {}
inline char* GetLine(char* buffer, int capacity, FILE* stream) {
  return fgets(buffer, capacity, stream);
}
inline wchar_t* GetLine(wchar_t* buffer, int capacity, FILE* stream) {
  return fgetws(buffer, capacity, stream);
}
inline std::size_t GetBytes(void* buffer, std::size_t count, FILE* stream) {
  return fread(buffer, 1, count, stream);
}
inline long long TellStream(FILE* stream) {
  return ftello64(stream);
}
inline int SeekStream(FILE* stream, long long offset, int origin) {
  return fseeko64(stream, offset, origin);
}
inline int FlushStream(FILE* stream) {
  return fflush(stream);
}

#endif

}  // namespace qorgen::platform
