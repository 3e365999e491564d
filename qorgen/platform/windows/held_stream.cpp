// Held streams: the bytes of a text stream in a buffer of our own, translated as they are handed out. As long
// as a stream is `reading`, the runtime's buffer is empty and the system's file pointer stands behind ours;
// the runtime is brought to our place before it does anything itself. Of the runtime's FILE the published
// flags and the count of buffered bytes are used.

#include "qorgen/platform/held_stream.h"

#include <algorithm>
#include <atomic>
#include <clocale>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>
#include <utility>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/filesystem.h"

namespace qorgen::platform {
namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
constexpr unsigned char kEnd = 0x1A;  // Ctrl-Z ends what is read

struct Held {
  FILE* stream = nullptr;
  int descriptor = -1;
  HANDLE handle = nullptr;
  int holders = 0;
  HeldText text = HeldText::kAnsi;
  bool reading = false;
  bool wide = false;       // UTF-16
  unsigned code_page = 0;  // 0: each byte is a unit
  bool lead[256] = {};     // of a character of two bytes
  // bytes[at, end) are unread; bytes[0] is the byte of the file at `start`.
  std::unique_ptr<unsigned char[]> bytes;
  long long start = 0;
  std::size_t at = 0;
  std::size_t end = 0;
  // Units of a character that found no room, in order.
  wchar_t waiting[4] = {};
  int waiting_count = 0;

  [[nodiscard]] long long Place() const { return start + static_cast<long long>(at); }
  [[nodiscard]] std::size_t Available() const { return end - at; }
  [[nodiscard]] const unsigned char* Unread() const { return bytes.get() + at; }
};

std::mutex g_mutex;
// Grows with every stream that is held or let go; what a thread remembers of an older generation is asked
// anew.
std::atomic<unsigned long> g_generation{1};

std::unordered_map<FILE*, std::unique_ptr<Held>>& Streams() {
  // Never destroyed: files of static objects are closed after the destructors of this module have run.
  static auto* streams = new std::unordered_map<FILE*, std::unique_ptr<Held>>;
  return *streams;
}

struct LastFound {
  FILE* stream;
  Held* held;
  unsigned long generation;
};
thread_local LastFound t_last = {nullptr, nullptr, 0};

Held* Find(FILE* stream) {
  const unsigned long generation = g_generation.load(std::memory_order_acquire);
  if (t_last.generation == generation && t_last.stream == stream) return t_last.held;
  const std::lock_guard lock(g_mutex);
  const auto found = Streams().find(stream);
  t_last = {stream, found == Streams().end() ? nullptr : found->second.get(), generation};
  return t_last.held;
}

HANDLE HandleOf(int descriptor) {
  return descriptor < 0 ? INVALID_HANDLE_VALUE : reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

// Whether the FILE is still the stream that was held, and not closed or used for another file since.
bool IsAlive(const Held& held) {
  return (held.stream->_flag & (_IOREAD | _IOWRT | _IORW)) != 0 && _fileno(held.stream) == held.descriptor &&
         HandleOf(held.descriptor) == held.handle;
}

bool SetPointer(const Held& held, long long place) {
  LARGE_INTEGER move;
  move.QuadPart = place;
  return SetFilePointerEx(held.handle, move, nullptr, FILE_BEGIN) != 0;
}

void FailRead(FILE* stream, int error) {
  stream->_flag |= _IOERR;
  errno = error;
}

// At least `count` bytes unread, or all that are left of the file.
bool Ensure(Held& held, std::size_t count) {
  if (held.Available() >= count) return true;
  if (held.at != 0) std::memmove(held.bytes.get(), held.Unread(), held.Available());
  held.start = held.Place();
  held.end = held.Available();
  held.at = 0;
  while (held.end < count) {
    DWORD read = 0;
    if (!ReadFile(held.handle, held.bytes.get() + held.end, static_cast<DWORD>(kBufferSize - held.end), &read,
                  nullptr)) {
      const DWORD error = GetLastError();
      FailRead(held.stream, error == ERROR_ACCESS_DENIED || error == ERROR_LOCK_VIOLATION ? EACCES : EIO);
      return false;
    }
    if (read == 0) {
      held.stream->_flag |= _IOEOF;
      return false;
    }
    held.end += read;
  }
  return true;
}

bool Fill(Held& held) {
  return Ensure(held, 1);
}

void Forget(Held& held, long long place) {
  held.start = place;
  held.at = held.end = 0;
  held.waiting_count = 0;
}

// Where the runtime stands. It is exact as long as the runtime hasn't read text itself.
long long RuntimePlace(FILE* stream) {
  if ((stream->_flag & _IOWRT) != 0 && fflush(stream) != 0) return -1;
  if ((stream->_flag & _IOREAD) != 0 && stream->_cnt > 0) return ftello64(stream);
  return _telli64(_fileno(stream));
}

// What the locale and the file's own mark say of the encoding.
void SettleEncoding(Held& held) {
  held.wide = false;
  held.code_page = CP_UTF8;
  std::fill_n(held.lead, 256, false);
  if (held.text == HeldText::kUnicode) {
    unsigned char mark[2] = {};
    DWORD read = 0;
    held.wide = SetPointer(held, 0) && ReadFile(held.handle, mark, 2, &read, nullptr) && read == 2 &&
                mark[0] == 0xFF && mark[1] == 0xFE;
    return;
  }
  held.code_page = ___lc_codepage_func();
  if (held.code_page == 0) return;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    held.lead[byte] = IsDBCSLeadByteEx(held.code_page, static_cast<BYTE>(byte)) != 0;
  }
}

// Takes the reading over from the runtime, if that hasn't happened yet.
bool BeginReading(Held& held) {
  if (held.reading) return true;
  const long long place = RuntimePlace(held.stream);
  if (place < 0) return false;
  // Drops what the runtime has read.
  if (held.stream->_cnt > 0 && fseeko64(held.stream, place, SEEK_SET) != 0) return false;
  if (held.bytes == nullptr) held.bytes.reset(new (std::nothrow) unsigned char[kBufferSize]);
  if (held.bytes == nullptr) {
    FailRead(held.stream, ENOMEM);
    return false;
  }
  SettleEncoding(held);
  if (!SetPointer(held, place)) {
    FailRead(held.stream, EIO);
    return false;
  }
  Forget(held, place);
  held.reading = true;
  return true;
}

bool Settle(Held& held) {
  if (!std::exchange(held.reading, false)) return true;
  const long long place = held.Place();
  Forget(held, place);
  return fseeko64(held.stream, place, SEEK_SET) == 0;
}

// At the start of a Unicode file its mark is no text.
void SkipMark(Held& held) {
  if (held.text != HeldText::kUnicode || held.Place() != 0) return;
  const std::size_t size = held.wide ? 2 : 3;
  if (!Ensure(held, size)) return;
  if (std::memcmp(held.Unread(), held.wide ? "\xFF\xFE" : "\xEF\xBB\xBF", size) == 0) held.at += size;
}

// ---- text ----

// How many bytes at the end of a run are the beginning of a character that goes on behind it.
std::size_t CutTail(const Held& held, const unsigned char* at, std::size_t bytes) {
  if (held.code_page == CP_UTF8) {
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, bytes); ++back) {
      const unsigned char byte = at[bytes - back];
      if ((byte & 0xC0) == 0x80) continue;
      const std::size_t length = byte >= 0xF0 && byte <= 0xF4   ? 4
                                 : byte >= 0xE0 && byte <= 0xEF ? 3
                                 : byte >= 0xC2 && byte <= 0xDF ? 2
                                                                : 1;
      return length > back ? back : 0;
    }
    return 0;
  }
  // Only a walk from the start knows a lead byte from a trail byte.
  std::size_t i = 0;
  while (i < bytes) i += held.lead[at[i]] ? 2 : 1;
  return i > bytes ? 1 : 0;
}

// Never more units than bytes.
std::size_t Decode(const Held& held, const unsigned char* at, std::size_t bytes, wchar_t* out) {
  if (bytes == 0) return 0;
  if (held.code_page == 0) {
    std::copy_n(at, bytes, out);
    return bytes;
  }
  const int size = static_cast<int>(bytes);
  return static_cast<std::size_t>(
      MultiByteToWideChar(held.code_page, 0, reinterpret_cast<const char*>(at), size, out, size));
}

struct Line {
  wchar_t* text;
  std::size_t room;
  std::size_t length = 0;

  [[nodiscard]] std::size_t Left() const { return room - length; }
};

// A character that the end of the buffer cuts, or for whose bytes there might be no room.
void TakeCharacter(Held& held, Line& line) {
  Ensure(held, 4);
  const unsigned char* const at = held.Unread();
  const std::size_t available = std::min<std::size_t>(held.Available(), 4);
  std::size_t count = 1;
  while (count < available && CutTail(held, at, count) == count &&
         (held.code_page == CP_UTF8 ? (at[count] & 0xC0) == 0x80 : at[count] != '\n' && at[count] != '\r')) {
    ++count;
  }
  wchar_t units[4];
  const std::size_t decoded = Decode(held, at, count, units);
  held.at += count;
  const std::size_t taken = std::min(decoded, line.Left());
  std::copy_n(units, taken, line.text + line.length);
  line.length += taken;
  held.waiting_count = static_cast<int>(decoded - taken);
  std::copy_n(units + taken, decoded - taken, held.waiting);
}

// The next run of bytes out of the buffer, which isn't empty: true at a line end or the end of the text.
bool TakeRun(Held& held, Line& line) {
  const unsigned char* const at = held.Unread();
  std::size_t bytes = std::min(held.Available(), line.Left());
  const void* const feed = std::memchr(at, '\n', bytes);
  if (feed != nullptr) bytes = static_cast<std::size_t>(static_cast<const unsigned char*>(feed) - at);
  const void* const stop = std::memchr(at, kEnd, bytes);
  if (stop != nullptr) bytes = static_cast<std::size_t>(static_cast<const unsigned char*>(stop) - at);
  const bool whole = feed != nullptr || stop != nullptr;
  const std::size_t used = whole ? bytes : bytes - CutTail(held, at, bytes);
  if (used == 0 && !whole) {
    TakeCharacter(held, line);
    return false;
  }
  const bool line_end = feed != nullptr && stop == nullptr;
  const std::size_t dropped = line_end && bytes != 0 && at[bytes - 1] == '\r' ? 1 : 0;
  line.length += Decode(held, at, used - dropped, line.text + line.length);
  held.at += used;
  if (stop != nullptr) {
    held.stream->_flag |= _IOEOF;
    return true;
  }
  if (line_end) {
    ++held.at;
    line.text[line.length++] = L'\n';
    return true;
  }
  // A CR that the run or the room ends with: the LF that may follow makes it a line end.
  if (line.length == 0 || line.text[line.length - 1] != L'\r' || !Fill(held) || *held.Unread() != '\n')
    return false;
  ++held.at;
  line.text[line.length - 1] = L'\n';
  return true;
}

// The next unit of UTF-16; an odd byte at the end of the file is dropped.
bool TakeUnit(Held& held, Line& line) {
  const auto unit_at = [&held](std::size_t index) {
    const unsigned char* const at = held.Unread() + 2 * index;
    return static_cast<wchar_t>(at[0] | at[1] << 8);
  };
  if (!Ensure(held, 2)) {
    held.at = held.end;
    return true;
  }
  wchar_t unit = unit_at(0);
  if (unit == kEnd) {
    held.stream->_flag |= _IOEOF;
    return true;
  }
  held.at += 2;
  if (unit == L'\r' && Ensure(held, 2) && unit_at(0) == L'\n') {
    held.at += 2;
    unit = L'\n';
  }
  line.text[line.length++] = unit;
  return unit == L'\n';
}

// Up to `room` bytes with line ends translated, and no further than a line end if that is wanted.
std::size_t TakeBytes(Held& held, char* buffer, std::size_t room, bool one_line) {
  std::size_t length = 0;
  while (length < room && Fill(held)) {
    const unsigned char* const at = held.Unread();
    std::size_t bytes = std::min(held.Available(), room - length);
    const void* const feed = std::memchr(at, '\n', bytes);
    if (feed != nullptr) bytes = static_cast<std::size_t>(static_cast<const unsigned char*>(feed) - at) + 1;
    const void* const stop = std::memchr(at, kEnd, bytes);
    if (stop != nullptr) bytes = static_cast<std::size_t>(static_cast<const unsigned char*>(stop) - at);
    std::copy_n(at, bytes, buffer + length);
    held.at += bytes;
    length += bytes;
    if (stop != nullptr) {
      held.stream->_flag |= _IOEOF;
      break;
    }
    bool line_end = feed != nullptr;
    if (line_end) {
      if (bytes >= 2 && at[bytes - 2] == '\r') buffer[--length - 1] = '\n';
    } else if (buffer[length - 1] == '\r' && Fill(held) && *held.Unread() == '\n') {
      ++held.at;
      buffer[length - 1] = '\n';
      line_end = true;
    }
    if (line_end && one_line) break;
  }
  return length;
}

// The stream to read here, after it has been taken over; null when the runtime is to read it, or with
// `failed` when nobody can.
Held* Reading(FILE* stream, bool& failed) {
  failed = (stream->_flag & (_IOREAD | _IORW)) == 0;
  if (failed) {
    FailRead(stream, EBADF);
    return nullptr;
  }
  Held* const held = Find(stream);
  if (held == nullptr) return nullptr;
  failed = !BeginReading(*held);
  if (failed) {
    FailRead(stream, errno != 0 ? errno : EIO);
    return nullptr;
  }
  return held;
}

}  // namespace

void HoldStream(FILE* stream, HeldText text) {
  if (stream == nullptr) return;
  const int descriptor = _fileno(stream);
  const HANDLE handle = HandleOf(descriptor);
  if (handle == INVALID_HANDLE_VALUE || GetFileType(handle) != FILE_TYPE_DISK) return;
  const std::lock_guard lock(g_mutex);
  std::unique_ptr<Held>& held = Streams()[stream];
  if (held == nullptr || held->descriptor != descriptor || held->handle != handle) {
    held = std::make_unique<Held>();
    held->stream = stream;
    held->descriptor = descriptor;
    held->handle = handle;
    held->text = text;
  }
  ++held->holders;
  ++g_generation;
}

void ReleaseStream(FILE* stream) {
  Held* const held = Find(stream);
  if (held == nullptr || --held->holders != 0) return;
  if (held->reading && IsAlive(*held)) Settle(*held);
  const std::lock_guard lock(g_mutex);
  Streams().erase(stream);
  ++g_generation;
}

void SettleStream(FILE* stream) {
  if (Held* const held = Find(stream)) Settle(*held);
}

char* GetLine(char* buffer, int capacity, FILE* stream) {
  bool failed = false;
  Held* const held = Reading(stream, failed);
  if (held == nullptr) return failed ? nullptr : fgets(buffer, capacity, stream);
  if (held->text != HeldText::kAnsi) {
    errno = EINVAL;
    return nullptr;
  }
  const std::size_t length = TakeBytes(*held, buffer, static_cast<std::size_t>(capacity) - 1, true);
  if (length == 0 && capacity > 1) return nullptr;
  buffer[length] = 0;
  return buffer;
}

wchar_t* GetLine(wchar_t* buffer, int capacity, FILE* stream) {
  bool failed = false;
  Held* const held = Reading(stream, failed);
  if (held == nullptr) return failed ? nullptr : fgetws(buffer, capacity, stream);
  Line line = {buffer, static_cast<std::size_t>(capacity) - 1};
  const int from_before = std::min(held->waiting_count, capacity - 1);
  line.length = static_cast<std::size_t>(from_before);
  std::copy_n(held->waiting, from_before, buffer);
  held->waiting_count -= from_before;
  std::copy_n(held->waiting + from_before, held->waiting_count, held->waiting);
  SkipMark(*held);
  bool done = false;
  while (!done && line.Left() != 0) {
    if (held->wide) {
      done = TakeUnit(*held, line);
    } else {
      done = !Fill(*held) || TakeRun(*held, line);
    }
  }
  if (line.length == 0 && capacity > 1) return nullptr;
  buffer[line.length] = 0;
  return buffer;
}

std::size_t GetBytes(void* buffer, std::size_t count, FILE* stream) {
  bool failed = false;
  Held* const held = Reading(stream, failed);
  if (failed) return 0;
  if (held != nullptr && held->text == HeldText::kAnsi) {
    return TakeBytes(*held, static_cast<char*>(buffer), count, false);
  }
  if (held != nullptr) Settle(*held);
  return fread(buffer, 1, count, stream);
}

long long TellStream(FILE* stream) {
  const Held* const held = Find(stream);
  if (held == nullptr) return ftello64(stream);
  return held->reading ? held->Place() : RuntimePlace(stream);
}

int SeekStream(FILE* stream, long long offset, int origin) {
  Held* const held = Find(stream);
  if (held == nullptr || !held->reading) return fseeko64(stream, offset, origin);
  LARGE_INTEGER size;
  size.QuadPart = 0;
  if (origin == SEEK_END && !GetFileSizeEx(held->handle, &size)) {
    errno = EIO;
    return -1;
  }
  const long long from = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? held->Place() : size.QuadPart;
  long long place = 0;
  if (__builtin_add_overflow(from, offset, &place) || place < 0) {
    errno = EINVAL;
    return -1;
  }
  stream->_flag &= ~_IOEOF;
  held->waiting_count = 0;
  if (place >= held->start && place <= held->start + static_cast<long long>(held->end)) {
    held->at = static_cast<std::size_t>(place - held->start);
    return 0;
  }
  if (!SetPointer(*held, place)) {
    errno = EIO;
    return -1;
  }
  Forget(*held, place);
  return 0;
}

int FlushStream(FILE* stream) {
  Held* const held = Find(stream);
  if (held != nullptr && !Settle(*held)) return EOF;
  return (stream->_flag & _IOWRT) != 0 ? fflush(stream) : 0;
}

}  // namespace qorgen::platform
