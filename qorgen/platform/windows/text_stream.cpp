// Held streams: the bytes of a text stream in a buffer of our own. As long as a stream is `reading`, the runtime's
// buffer is empty and the system's file pointer stands behind ours; the runtime is brought to our place before it does
// anything itself. Nothing of the runtime's FILE is looked at but through its functions.

#include "qorgen/platform/text_stream.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <clocale>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>
#include <utility>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/filesystem.h"

namespace qorgen::platform {
namespace {

constexpr std::size_t kBufferSize = 64 * 1024;

class Held final : public ByteWindow {
 public:
  [[nodiscard]] bool Failed() const override { return failed; }
  [[nodiscard]] long long Place() const override { return start + (at - bytes.get()); }

  void End() override {
    LARGE_INTEGER size;
    if (GetFileSizeEx(handle, &size) && SetPointer(size.QuadPart)) Forget(size.QuadPart);
    at = end;
  }

  bool SetPointer(long long place) const {
    LARGE_INTEGER move;
    move.QuadPart = place;
    return SetFilePointerEx(handle, move, nullptr, FILE_BEGIN) != 0;
  }

  // Nothing is read ahead, and the system's pointer is at `place`.
  void Forget(long long place) {
    start = place;
    at = end = bytes.get();
    text.waiting_count = 0;
  }

  FILE* stream = nullptr;
  int descriptor = -1;
  HANDLE handle = nullptr;
  int holders = 0;
  HeldText kind = HeldText::kAnsi;
  StreamText text;
  bool reading = false;
  bool failed = false;
  std::unique_ptr<unsigned char[]> bytes;  // bytes[0] is the byte of the file at `start`
  long long start = 0;

 private:
  bool Read(std::size_t count) override {
    const std::size_t left = Available();
    start = Place();
    std::memmove(bytes.get(), at, left);
    at = bytes.get();
    end = at + left;
    may_hold_control = may_hold_control && left != 0;
    while (Available() < count) {
      DWORD read = 0;
      unsigned char* const to = bytes.get() + Available();
      if (!ReadFile(handle, to, static_cast<DWORD>(kBufferSize - Available()), &read, nullptr)) {
        const DWORD error = GetLastError();
        failed = true;
        errno = error == ERROR_ACCESS_DENIED ? EBADF : error == ERROR_LOCK_VIOLATION ? EACCES : EIO;
        return false;
      }
      if (read == 0) return false;
      may_hold_control = may_hold_control || HoldsControl(to, read);
      end += read;
    }
    return true;
  }
};

// A stream that stays the runtime's: a unit or a byte at a time as it translates them.
class RuntimeWindow final : public ByteWindow {
 public:
  RuntimeWindow(FILE* stream, bool wide) : stream_(stream), wide_(wide) { at = end = bytes_.data(); }

  [[nodiscard]] bool Failed() const override { return ferror(stream_) != 0; }
  [[nodiscard]] long long Place() const override { return -1; }
  void End() override {}

 private:
  // No more than the one unit is ever asked for.
  bool Read(std::size_t count) override {
    const int unit = wide_ ? fgetwc(stream_) : getc(stream_);
    if (unit == (wide_ ? int{WEOF} : EOF)) return false;
    bytes_ = {static_cast<unsigned char>(unit & 0xFF), static_cast<unsigned char>(unit >> 8)};
    at = bytes_.data();
    end = at + count;
    return true;
  }

  FILE* stream_;
  bool wide_;
  std::array<unsigned char, 2> bytes_{};
};

std::mutex g_mutex;
// Grows with every stream that is held or let go; what a thread remembers of an older generation is asked anew.
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

// What the locale and the file's own mark say of the text.
void SettleText(Held& held) {
  held.text = {};
  if (held.kind == HeldText::kUnicode) {
    unsigned char mark[2] = {};
    DWORD read = 0;
    const bool wide = held.SetPointer(0) && ReadFile(held.handle, mark, 2, &read, nullptr) && read == 2 &&
                      mark[0] == 0xFF && mark[1] == 0xFE;
    held.text.code_page = wide ? kUtf16Text : CP_UTF8;
    held.text.skips_mark = true;
    return;
  }
  held.text.code_page = ___lc_codepage_func();
}

// Takes the reading over from the runtime, if that hasn't happened yet.
bool BeginReading(Held& held) {
  held.failed = false;
  if (held.reading) return true;
  held.failed = true;
  // Hands over what was written, drops what was read.
  if (fseeko64(held.stream, 0, SEEK_CUR) != 0) return false;
  const long long place = _telli64(held.descriptor);
  if (held.bytes == nullptr) held.bytes.reset(new (std::nothrow) unsigned char[kBufferSize + kLinePadding]());
  if (held.bytes == nullptr) {
    errno = ENOMEM;
    return false;
  }
  SettleText(held);
  if (place < 0 || !held.SetPointer(place)) {
    errno = EIO;
    return false;
  }
  held.Forget(place);
  held.padded = true;
  held.failed = false;
  held.reading = true;
  return true;
}

bool Settle(Held& held) {
  if (!std::exchange(held.reading, false)) return true;
  const long long place = held.Place();
  held.Forget(place);
  return fseeko64(held.stream, place, SEEK_SET) == 0;
}

// Calls `read` with the window and the text of a stream; the result for one that can't be read is `failed`. One that
// stays the runtime's is read in bytes if `ansi`.
template <typename Result, typename Read>
Result WithWindow(FILE* stream, bool ansi, Result failed, Read read) {
  Held* const held = Find(stream);
  if (held == nullptr) {
    StreamText text;
    text.code_page = ansi ? GetACP() : kUtf16Text;
    text.translate = false;
    RuntimeWindow window(stream, !ansi);
    return read(static_cast<ByteWindow&>(window), text);
  }
  if (!BeginReading(*held)) return failed;
  return read(static_cast<ByteWindow&>(*held), held->text);
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
    held->kind = text;
  }
  ++held->holders;
  ++g_generation;
}

void ReleaseStream(FILE* stream) {
  Held* const held = Find(stream);
  if (held == nullptr || --held->holders != 0) return;
  // Unless the stream was closed meanwhile.
  if (held->reading && HandleOf(held->descriptor) == held->handle) Settle(*held);
  const std::lock_guard lock(g_mutex);
  Streams().erase(stream);
  ++g_generation;
}

void SettleStream(FILE* stream) {
  if (Held* const held = Find(stream)) Settle(*held);
}

LineResult StreamLine::Read(FILE* stream, bool ansi, std::size_t limit) {
  return WithWindow(stream, ansi, LineResult::kFailed, [&](ByteWindow& window, StreamText& text) {
    const bool unicode = text.code_page == kUtf16Text || text.code_page == CP_UTF8;
    code_page_ = ansi && !unicode ? GetACP() : text.code_page;
    return ReadLine(window, text, block_, limit, line_);
  });
}

std::size_t StreamLine::Decode(wchar_t* units) const {
  return DecodeLine(code_page_, line_, units);
}

std::ptrdiff_t GetText(wchar_t* units, std::size_t room, FILE* stream) {
  return WithWindow(stream, false, std::ptrdiff_t{-1}, [&](ByteWindow& window, StreamText& text) {
    const std::size_t length = ReadUnits(window, text, units, room);
    return length == 0 && window.Failed() ? std::ptrdiff_t{-1} : static_cast<std::ptrdiff_t>(length);
  });
}

std::ptrdiff_t GetBytes(void* buffer, std::size_t count, FILE* stream) {
  Held* const held = Find(stream);
  if (held != nullptr && held->kind == HeldText::kAnsi) {
    if (!BeginReading(*held)) return -1;
    const std::size_t length = ReadBytes(*held, held->text, static_cast<char*>(buffer), count);
    return length == 0 && held->failed ? -1 : static_cast<std::ptrdiff_t>(length);
  }
  if (held != nullptr) Settle(*held);
  const std::size_t read = fread(buffer, 1, count, stream);
  return read == 0 && ferror(stream) != 0 ? -1 : static_cast<std::ptrdiff_t>(read);
}

bool PutBytes(const void* bytes, std::size_t count, FILE* stream) {
  SettleStream(stream);
  return count == 0 || fwrite(bytes, 1, count, stream) == count;
}

long long TellStream(FILE* stream) {
  const Held* const held = Find(stream);
  return held != nullptr && held->reading ? held->Place() : ftello64(stream);
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
  held->text.waiting_count = 0;
  if (place >= held->start && place <= held->start + (held->end - held->bytes.get())) {
    held->at = held->bytes.get() + (place - held->start);
    return 0;
  }
  if (!held->SetPointer(place)) {
    errno = EIO;
    return -1;
  }
  held->Forget(place);
  return 0;
}

int FlushStream(FILE* stream) {
  Held* const held = Find(stream);
  if (held != nullptr && !Settle(*held)) return EOF;
  // A move to where it stands keeps the place of a stream that is being read; pipes and consoles can't be moved.
  return fseeko64(stream, 0, SEEK_CUR) == 0 ? 0 : fflush(stream);
}

AnsiPut PutAnsiText(FILE* stream, const wchar_t* text, std::size_t units) {
  Held* const held = Find(stream);
  if (held == nullptr || held->kind != HeldText::kAnsi) return AnsiPut::kNotHere;
  if (!Settle(*held)) return AnsiPut::kFailed;
  // No code page takes more bytes for a unit than UTF-8 and GB18030 do.
  constexpr std::size_t kPiece = 1024;
  std::array<char, 4 * kPiece> bytes;
  for (std::size_t done = 0; done < units;) {
    std::size_t piece = std::min(kPiece, units - done);
    // Both halves of a surrogate pair go together.
    if (piece > 1 && done + piece < units && (text[done + piece - 1] & 0xFC00) == 0xD800) --piece;
    const int length = WideCharToMultiByte(CP_THREAD_ACP, 0, text + done, static_cast<int>(piece),
                                           bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    if (length <= 0 || fwrite(bytes.data(), 1, static_cast<std::size_t>(length), stream) !=
                           static_cast<std::size_t>(length)) {
      return AnsiPut::kFailed;
    }
    done += piece;
  }
  return AnsiPut::kDone;
}

}  // namespace qorgen::platform
