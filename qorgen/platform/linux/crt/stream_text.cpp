// Text in and out of streams. Reading looks straight into the C library's buffer, through the two pointers
// that its own getc macro uses, and takes whole runs out of it; what a run can't settle (a character cut by
// the end of the buffer) is read byte by byte. The file position told by ftell is therefore always that of
// the next unread byte.

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "qorgen/platform/ansi_text.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/linux/codepage/codec.h"
#include "qorgen/platform/linux/crt/stream.h"

using namespace qorgen::platform;

// This file's own names for the C library's functions behind the macros.
#undef fgets
#undef fputs

namespace {

constexpr char kEnd = 0x1A;

const unsigned char* Unread(const FILE* stream) {
  return reinterpret_cast<const unsigned char*>(stream->_IO_read_ptr);
}
size_t Available(const FILE* stream) {
  return static_cast<size_t>(stream->_IO_read_end - stream->_IO_read_ptr);
}
void Skip(FILE* stream, size_t bytes) {
  stream->_IO_read_ptr += bytes;
}

// At least one byte in the buffer; false at the end of the file or on an error, which the stream then shows.
bool Fill(FILE* stream) {
  if (Available(stream) != 0) return true;
  if (getc_unlocked(stream) == EOF) return false;
  --stream->_IO_read_ptr;
  return true;
}

void SetEnd(FILE* stream) {
  stream->_flags |= _IO_EOF_SEEN;
}

// Where the run of `bytes` bytes at `at` must stop: at a Ctrl-Z, if the stream has any.
size_t CutAtEnd(const StreamState& state, const unsigned char* at, size_t bytes, bool& end) {
  if (!state.mayHoldEnd || bytes == 0) return bytes;
  const void* found = std::memchr(at, kEnd, bytes);
  if (found == nullptr) return bytes;
  end = true;
  return static_cast<size_t>(static_cast<const unsigned char*>(found) - at);
}

// After a CR that ends a run: takes the LF that may follow.
bool TakeLineFeed(FILE* stream) {
  if (!Fill(stream) || *Unread(stream) != '\n') return false;
  Skip(stream, 1);
  return true;
}

// One reading call: where its units go, and why it stopped.
struct Reader {
  StreamState& state;
  FILE* stream;
  wchar_t* text;
  size_t room;
  size_t length = 0;
  bool done = false;  // a line end or the end of the text

  [[nodiscard]] size_t Left() const { return room - length; }
  void Put(wchar_t unit) { text[length++] = unit; }
  void PutPair(wchar_t high, wchar_t low);
  void PutLineFeed() {
    Put(L'\n');
    done = true;
  }
  void End() {
    SetEnd(stream);
    done = true;
  }
};

// The second unit waits for the next call where there is room for one only.
void Reader::PutPair(wchar_t high, wchar_t low) {
  Put(high);
  if (Left() != 0) {
    Put(low);
    return;
  }
  state.unread[0] = low;
  state.unreadCount = 1;
  state.unreadPosition = ftell(stream);
}

// ---- bytes: code page 932 and UTF-8 ----

// A character of UTF-8 that isn't whole in the buffer, or a pair without room. Its first byte is there.
void ReadUtf8Character(Reader& reader) {
  std::array<unsigned char, 4> bytes{};
  size_t count = 0;
  do {
    bytes[count++] = *Unread(reader.stream);
    Skip(reader.stream, 1);
  } while (count < bytes.size() && IncompleteTailUtf8(bytes.data(), count) == count && Fill(reader.stream) &&
           (*Unread(reader.stream) & 0xC0) == 0x80);
  std::array<wchar_t, 4> units{};
  bool invalid = false;
  // A byte that turns out not to belong to the prefix goes back; it has just come from the buffer.
  const Progress progress = DecodeUtf8(bytes.data(), count, units.data(), units.size(), invalid);
  if (invalid && progress.written > 1) {
    reader.stream->_IO_read_ptr -= 1;
    reader.Put(units[0]);
    return;
  }
  if (progress.written == 2) {
    reader.PutPair(units[0], units[1]);
  } else {
    reader.Put(units[0]);
  }
}

// A lead byte at the end of the buffer, with its trail byte if that comes. A line end stays a line end.
void ReadPair932(Reader& reader) {
  const unsigned char lead = *Unread(reader.stream);
  Skip(reader.stream, 1);
  if (!Fill(reader.stream) || *Unread(reader.stream) == '\n' || *Unread(reader.stream) == '\r') {
    reader.Put(kUnassigned932);
    return;
  }
  const wchar_t unit = DecodePair932(GetTables932(), lead, *Unread(reader.stream));
  Skip(reader.stream, 1);
  reader.Put(unit == 0 ? kUnassigned932 : unit);
}

void DecodeRun(Reader& reader, const unsigned char* at, size_t bytes, bool whole) {
  wchar_t* out = reader.text + reader.length;
  if (reader.state.encoding == Encoding::kUtf8) {
    if (!whole) bytes -= IncompleteTailUtf8(at, bytes);
    if (bytes == 0) return ReadUtf8Character(reader);
    bool invalid = false;
    const Progress progress = DecodeUtf8(at, bytes, out, reader.Left(), invalid);
    reader.length += progress.written;
    return Skip(reader.stream, bytes);
  }
  // Cut before a lead byte at the end: only a walk from the start knows whether it is one.
  size_t used = bytes;
  const Progress progress = Decode932(at, bytes, out, bytes);
  reader.length += progress.written;
  if (progress.lone_lead && !whole) {
    --reader.length;
    --used;
  }
  Skip(reader.stream, used);
  if (used == 0) ReadPair932(reader);
}

// One run out of the buffer.
void ReadBytes(Reader& reader) {
  if (!Fill(reader.stream)) {
    reader.done = true;
    return;
  }
  const unsigned char* at = Unread(reader.stream);
  size_t bytes = std::min(Available(reader.stream), reader.Left());
  const void* feed = std::memchr(at, '\n', bytes);
  if (feed != nullptr) bytes = static_cast<size_t>(static_cast<const unsigned char*>(feed) - at);
  bool end = false;
  if (reader.state.translate) bytes = CutAtEnd(reader.state, at, bytes, end);
  const bool line = feed != nullptr && !end;
  const size_t before = reader.length;
  if (bytes != 0) DecodeRun(reader, at, bytes, line || end);
  if (end) {
    if (Available(reader.stream) != 0 && *Unread(reader.stream) == kEnd) reader.End();
    return;
  }
  const bool isCr =
      reader.state.translate && reader.length > before && reader.text[reader.length - 1] == L'\r';
  if (line) {
    Skip(reader.stream, 1);
    if (isCr) --reader.length;
    reader.PutLineFeed();
  } else if (isCr && TakeLineFeed(reader.stream)) {
    --reader.length;
    reader.PutLineFeed();
  }
}

// ---- UTF-16 and binary ----

wchar_t UnitAt(const unsigned char* at) {
  return static_cast<wchar_t>(at[0] | at[1] << 8);
}

// The next unit without taking it, as far as the buffer's end allows: false at the end of the file, where a
// single byte that is left over is dropped. `split` tells that its first byte had to be taken already.
bool ReadUnit(FILE* stream, wchar_t& unit) {
  if (!Fill(stream)) return false;
  if (Available(stream) >= 2) {
    unit = UnitAt(Unread(stream));
    Skip(stream, 2);
    return true;
  }
  const unsigned char low = *Unread(stream);
  Skip(stream, 1);
  if (!Fill(stream)) return false;
  unit = static_cast<wchar_t>(low | *Unread(stream) << 8);
  Skip(stream, 1);
  return true;
}

// After a CR: takes the LF that may follow, across the end of the buffer if need be.
bool TakeWideLineFeed(FILE* stream) {
  if (!Fill(stream)) return false;
  if (Available(stream) >= 2) {
    if (UnitAt(Unread(stream)) != L'\n') return false;
    Skip(stream, 2);
    return true;
  }
  if (*Unread(stream) != '\n') return false;
  Skip(stream, 1);
  if (Fill(stream) && *Unread(stream) == 0) {
    Skip(stream, 1);
    return true;
  }
  ungetc('\n', stream);
  return false;
}

void ReadUnits(Reader& reader) {
  if (!Fill(reader.stream)) {
    reader.done = true;
    return;
  }
  const bool translate = reader.state.translate;
  const unsigned char* at = Unread(reader.stream);
  const size_t units = std::min(Available(reader.stream) / 2, reader.Left());
  size_t taken = 0;
  wchar_t stop = 0;
  for (; taken < units; ++taken) {
    const wchar_t unit = UnitAt(at + 2 * taken);
    if (unit == L'\n' || (translate && (unit == L'\r' || unit == kEnd))) {
      stop = unit;
      break;
    }
    reader.text[reader.length + taken] = unit;
  }
  reader.length += taken;
  Skip(reader.stream, 2 * taken);
  if (units == 0 || stop != 0) {
    if (stop == kEnd) return reader.End();
    wchar_t unit = 0;
    if (!ReadUnit(reader.stream, unit)) {
      reader.done = true;
      return;
    }
    if (translate && unit == kEnd) {
      // Cut by the buffer's end: both bytes go back so that the end is met again.
      ungetc(0, reader.stream);
      ungetc(kEnd, reader.stream);
      return reader.End();
    }
    if (unit == L'\n' || (translate && unit == L'\r' && TakeWideLineFeed(reader.stream)))
      return reader.PutLineFeed();
    reader.Put(unit);
  }
}

// ---- both ----

// At the start of the file a byte-order mark is no text.
void SkipMark(StreamState& state, FILE* stream) {
  const bool is8 = state.encoding == Encoding::kUtf8;
  if ((!is8 && state.encoding != Encoding::kUtf16) || !Fill(stream)) return;
  const unsigned char* at = Unread(stream);
  if (*at != (is8 ? 0xEF : 0xFF)) return;
  const size_t size = is8 ? 3 : 2;
  if (Available(stream) < size || std::memcmp(at, is8 ? "\xEF\xBB\xBF" : "\xFF\xFE", size) != 0) return;
  if (state.seekable && ftell(stream) == 0) Skip(stream, size);
}

void ReadPushedBack(Reader& reader) {
  StreamState& state = reader.state;
  if (state.unreadCount == 0) return;
  if (state.unreadPosition != ftell(reader.stream)) {
    state.unreadCount = 0;
    return;
  }
  while (state.unreadCount != 0 && reader.Left() != 0 && !reader.done) {
    const wchar_t unit = state.unread[--state.unreadCount];
    if (unit == L'\n') {
      reader.PutLineFeed();
    } else {
      reader.Put(unit);
    }
  }
}

// Up to a line end, the end of the text or of the room.
void Read(Reader& reader) {
  ReadPushedBack(reader);
  if (!reader.done && reader.Left() != 0 && reader.state.translate) SkipMark(reader.state, reader.stream);
  const bool wide = reader.state.encoding == Encoding::kUtf16 || reader.state.encoding == Encoding::kBinary;
  while (!reader.done && reader.Left() != 0) {
    if (wide) {
      ReadUnits(reader);
    } else {
      ReadBytes(reader);
    }
  }
}

// The state of a stream, or one that stands for a stream of others.
StreamState& StateOf(FILE* stream, StreamState& foreign) {
  StreamState* state = FindStream(stream);
  if (state != nullptr) return *state;
  foreign.encoding = Encoding::kUtf8;
  foreign.translate = false;
  return foreign;
}

// ---- writing ----

bool PutBytes(FILE* stream, const char* bytes, size_t count) {
  return count == 0 || fwrite_unlocked(bytes, 1, count, stream) == count;
}

constexpr size_t kPiece = 1024;

bool PutAnsi(FILE* stream, const wchar_t* text, size_t units) {
  std::array<char, 2 * kPiece> bytes;
  Encoding932 encoding;
  Progress progress = Encode932(text, units, bytes.data(), bytes.size(), encoding);
  if (encoding.replaced) {
    // What stands before the first character without a code is still written.
    size_t good = 0;
    for (encoding.replaced = false; good < units; ++good) {
      Encode932(text + good, 1, nullptr, 0, encoding);
      if (encoding.replaced) break;
    }
    progress = Encode932(text, good, bytes.data(), bytes.size(), encoding);
    PutBytes(stream, bytes.data(), progress.written);
    errno = EILSEQ;
    return false;
  }
  return PutBytes(stream, bytes.data(), progress.written);
}

// The same with the default character for those without a code, and line ends as a text stream has them on
// disk. A line goes out in one call.
bool PutAnsiLines(FILE* stream, const wchar_t* text, size_t units) {
  std::array<char, 2 * kPiece + 1> bytes;
  Encoding932 encoding;
  for (size_t done = 0; done < units; done += kPiece) {
    const size_t piece = std::min(kPiece, units - done);
    char* from = bytes.data();
    char* end = from + Encode932(text + done, piece, from, 2 * kPiece, encoding).written;
    // No character of two bytes has a line feed for its second.
    while (void* const found = std::memchr(from, '\n', static_cast<size_t>(end - from))) {
      char* const feed = static_cast<char*>(found);
      if (feed + 1 == end) {
        feed[0] = '\r';
        feed[1] = '\n';
        ++end;
        break;
      }
      if (!PutBytes(stream, from, static_cast<size_t>(feed - from)) || !PutBytes(stream, "\r\n", 2)) {
        return false;
      }
      from = feed + 1;
    }
    if (!PutBytes(stream, from, static_cast<size_t>(end - from))) return false;
  }
  return true;
}

bool PutUtf8(StreamState& state, FILE* stream, const wchar_t* text, size_t units) {
  std::array<char, 3 * (kPiece + 1)> bytes;
  std::array<wchar_t, kPiece + 1> joined;
  if (state.highSurrogate != 0) {
    joined[0] = std::exchange(state.highSurrogate, wchar_t{0});
    if (state.highPosition == ftell(stream)) {
      std::copy_n(text, units, joined.data() + 1);
      text = joined.data();
      ++units;
    }
  }
  const bool cut = (text[units - 1] & 0xFC00) == 0xD800;
  bool invalid = false;
  const Progress progress = EncodeUtf8(text, units - (cut ? 1 : 0), bytes.data(), bytes.size(), invalid);
  if (!PutBytes(stream, bytes.data(), progress.written)) return false;
  if (cut) {
    state.highSurrogate = text[units - 1];
    state.highPosition = ftell(stream);
  }
  return true;
}

bool PutRun(StreamState& state, FILE* stream, const wchar_t* text, size_t units) {
  if (state.encoding == Encoding::kBinary || state.encoding == Encoding::kUtf16) {
    return PutBytes(stream, reinterpret_cast<const char*>(text), units * sizeof(wchar_t));
  }
  for (size_t done = 0; done < units; done += kPiece) {
    const size_t piece = std::min(kPiece, units - done);
    const bool good = state.encoding == Encoding::kUtf8 ? PutUtf8(state, stream, text + done, piece)
                                                        : PutAnsi(stream, text + done, piece);
    if (!good) return false;
  }
  return true;
}

bool Put(StreamState& state, FILE* stream, const wchar_t* text, size_t units) {
  if (!state.translate) return PutRun(state, stream, text, units);
  const wchar_t* const end = text + units;
  while (text != end) {
    const wchar_t* feed = wmemchr(text, L'\n', static_cast<size_t>(end - text));
    const wchar_t* stop = feed == nullptr ? end : feed;
    if (!PutRun(state, stream, text, static_cast<size_t>(stop - text))) return false;
    if (feed == nullptr) break;
    if (!PutRun(state, stream, L"\r\n", 2)) return false;
    text = feed + 1;
  }
  return true;
}

bool PutWide(FILE* stream, const wchar_t* text, size_t units) {
  StreamState foreign;
  StreamState& state = StateOf(stream, foreign);
  bool good = Put(state, stream, text, units);
  // Nobody would write the waiting half of a pair later.
  if (good && foreign.highSurrogate != 0) good = PutBytes(stream, "\xEF\xBF\xBD", 3);
  return good;
}

bool Refuse() {
  errno = EINVAL;
  return false;
}

}  // namespace

namespace qorgen::platform {

AnsiPut PutAnsiText(FILE* stream, const wchar_t* text, size_t units) {
  const StreamState* const state = stream != nullptr ? FindStream(stream) : nullptr;
  if (state == nullptr || !state->translate || state->encoding != Encoding::kAnsi) return AnsiPut::kNotHere;
  return PutAnsiLines(stream, text, units) ? AnsiPut::kDone : AnsiPut::kFailed;
}

}  // namespace qorgen::platform

char* qorgen_fgets(char* buffer, int capacity, FILE* stream) {
  if (buffer == nullptr || capacity <= 0 || stream == nullptr) return Refuse(), nullptr;
  const StreamState* state = FindStream(stream);
  if (state == nullptr || !state->translate) return fgets(buffer, capacity, stream);
  if (state->encoding != Encoding::kAnsi) return Refuse(), nullptr;
  char* out = buffer;
  size_t room = static_cast<size_t>(capacity) - 1;
  for (bool done = room == 0; !done && room != 0 && Fill(stream);) {
    const unsigned char* at = Unread(stream);
    size_t bytes = std::min(Available(stream), room);
    const void* feed = std::memchr(at, '\n', bytes);
    if (feed != nullptr) bytes = static_cast<size_t>(static_cast<const unsigned char*>(feed) - at) + 1;
    bool end = false;
    bytes = CutAtEnd(*state, at, bytes, end);
    std::memcpy(out, at, bytes);
    Skip(stream, bytes);
    out += bytes;
    room -= bytes;
    if (end) {
      SetEnd(stream);
      break;
    }
    if (feed != nullptr) {
      done = true;
      if (bytes >= 2 && out[-2] == '\r') *--out = 0, out[-1] = '\n';
    } else if (out[-1] == '\r' && TakeLineFeed(stream)) {
      done = true;
      out[-1] = '\n';
    }
  }
  if (out == buffer && capacity > 1) return nullptr;
  *out = 0;
  return buffer;
}

int qorgen_fputs(const char* text, FILE* stream) {
  if (text == nullptr || stream == nullptr) return Refuse(), EOF;
  const StreamState* state = FindStream(stream);
  if (state == nullptr || !state->translate) return fputs(text, stream);
  if (state->encoding != Encoding::kAnsi) return Refuse(), EOF;
  for (;;) {
    const char* feed = strchrnul(text, '\n');
    if (!PutBytes(stream, text, static_cast<size_t>(feed - text))) return EOF;
    if (*feed == 0) return 0;
    if (!PutBytes(stream, "\r\n", 2)) return EOF;
    text = feed + 1;
  }
}

wchar_t* qorgen_fgetws(wchar_t* buffer, int capacity, FILE* stream) {
  if (buffer == nullptr || capacity <= 0 || stream == nullptr) return Refuse(), nullptr;
  StreamState foreign;
  Reader reader{StateOf(stream, foreign), stream, buffer, static_cast<size_t>(capacity) - 1};
  Read(reader);
  if (reader.length == 0 && capacity > 1) return nullptr;
  buffer[reader.length] = 0;
  return buffer;
}

wint_t qorgen_fgetwc(FILE* stream) {
  if (stream == nullptr) return Refuse(), WEOF;
  StreamState foreign;
  wchar_t unit = 0;
  Reader reader{StateOf(stream, foreign), stream, &unit, 1};
  Read(reader);
  return reader.length == 0 ? WEOF : unit;
}

wint_t qorgen_ungetwc(wint_t unit, FILE* stream) {
  if (stream == nullptr) return Refuse(), WEOF;
  StreamState* state = FindStream(stream);
  if (state == nullptr || unit > 0xFFFF) return WEOF;
  const long position = ftell(stream);
  if (state->unreadPosition != position) state->unreadCount = 0;
  if (state->unreadCount == static_cast<int>(std::size(state->unread))) return WEOF;
  state->unread[state->unreadCount++] = static_cast<wchar_t>(unit);
  state->unreadPosition = position;
  stream->_flags &= ~_IO_EOF_SEEN;
  return unit;
}

int qorgen_fputws(const wchar_t* text, FILE* stream) {
  if (text == nullptr || stream == nullptr) return Refuse(), EOF;
  return PutWide(stream, text, wcslen(text)) ? 0 : EOF;
}

wint_t qorgen_fputwc(wchar_t unit, FILE* stream) {
  if (stream == nullptr) return Refuse(), WEOF;
  return PutWide(stream, &unit, 1) ? unit : WEOF;
}

int qorgen_vfwprintf(FILE* stream, const wchar_t* format, va_list arguments) {
  if (stream == nullptr) return Refuse(), -1;
  va_list again;
  va_copy(again, arguments);
  const int length = _vscwprintf(format, again);
  va_end(again);
  if (length < 0) return -1;
  std::vector<wchar_t> text(static_cast<size_t>(length) + 1);
  _vsnwprintf(text.data(), text.size(), format, arguments);
  return PutWide(stream, text.data(), static_cast<size_t>(length)) ? length : -1;
}

int qorgen_fwprintf(FILE* stream, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = vfwprintf(stream, format, arguments);
  va_end(arguments);
  return length;
}
