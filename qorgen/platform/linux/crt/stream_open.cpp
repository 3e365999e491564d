// Opening and closing of streams. The C library's FILE stands on four callbacks that pass bytes to and from a
// handle of the file service, so that sharing, locks and error numbers are those of every other file call,
// and so that a plain fclose finds and ends the state.

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/crt/dos_error.h"
#include "qorgen/platform/linux/crt/stream.h"

namespace qorgen::platform {
namespace {

constexpr size_t kBufferSize = 64 * 1024;

std::mutex g_mutex;
// Grows with every stream that comes or goes; a remembered answer of an older generation is asked anew, since
// the C library may have given the same FILE to somebody else.
std::atomic<unsigned long> g_generation{1};

std::unordered_map<FILE*, StreamState*>& Streams() {
  // Never destroyed: streams that are still open at exit are flushed after the destructors have run.
  static auto* streams = new std::unordered_map<FILE*, StreamState*>;
  return *streams;
}

struct LastFound {
  FILE* stream = nullptr;
  StreamState* state = nullptr;
  unsigned long generation = 0;
};
thread_local LastFound t_last;

bool Seek(HANDLE handle, long long distance, DWORD method, long long& position) {
  LARGE_INTEGER move;
  LARGE_INTEGER result;
  move.QuadPart = distance;
  if (!SetFilePointerEx(handle, move, &result, method)) return false;
  position = result.QuadPart;
  return true;
}

bool WriteAll(HANDLE handle, const char* bytes, size_t count) {
  while (count != 0) {
    DWORD written = 0;
    const auto piece = static_cast<DWORD>(std::min<size_t>(count, 1u << 30));
    if (!WriteFile(handle, bytes, piece, &written, nullptr) || written == 0) return false;
    bytes += written;
    count -= written;
  }
  return true;
}

ssize_t OnRead(void* cookie, char* bytes, size_t count) {
  auto* state = static_cast<StreamState*>(cookie);
  DWORD read = 0;
  if (!ReadFile(state->handle, bytes, static_cast<DWORD>(std::min<size_t>(count, 1u << 30)), &read,
                nullptr)) {
    // The writing end of a pipe is gone: the end of the data.
    if (GetLastError() == ERROR_BROKEN_PIPE) return 0;
    return FailFromLastError();
  }
  state->may_hold_control = HoldsControl(bytes, read);
  return static_cast<ssize_t>(read);
}

// 0 tells the C library of a failure.
ssize_t OnWrite(void* cookie, const char* bytes, size_t count) {
  const auto* state = static_cast<StreamState*>(cookie);
  long long position = 0;
  if ((state->append && state->seekable && !Seek(state->handle, 0, FILE_END, position)) ||
      !WriteAll(state->handle, bytes, count)) {
    FailFromLastError();
    return 0;
  }
  return static_cast<ssize_t>(count);
}

int OnSeek(void* cookie, off64_t* offset, int whence) {
  const auto* state = static_cast<StreamState*>(cookie);
  const DWORD method = whence == SEEK_SET ? FILE_BEGIN : (whence == SEEK_CUR ? FILE_CURRENT : FILE_END);
  long long position = 0;
  if (!state->seekable || !Seek(state->handle, *offset, method, position)) {
    if (!state->seekable) {
      errno = ESPIPE;
      return -1;
    }
    return FailFromLastError();
  }
  *offset = position;
  return 0;
}

void Forget(const StreamState& state) {
  const std::lock_guard lock(g_mutex);
  Streams().erase(state.stream);
  ++g_generation;
}

int OnClose(void* cookie) {
  auto* state = static_cast<StreamState*>(cookie);
  // A high surrogate whose partner never came.
  const bool lost = state->high_surrogate != 0;
  bool good = !lost || WriteAll(state->handle, "\xEF\xBF\xBD", 3);
  Forget(*state);
  const HANDLE handle = RemoveDescriptor(state->descriptor);
  good = (handle != nullptr && CloseHandle(handle)) && good;
  delete state;
  return good ? 0 : FailFromLastError();
}

StreamText TextOf(Encoding encoding) {
  StreamText text;
  text.translate = encoding != Encoding::kBinary;
  text.skips_mark = encoding == Encoding::kUtf8 || encoding == Encoding::kUtf16;
  text.code_page = encoding == Encoding::kAnsi   ? kAnsiText
                   : encoding == Encoding::kUtf8 ? CP_UTF8
                                                 : kUtf16Text;
  return text;
}

constexpr char kMark8[] = {'\xEF', '\xBB', '\xBF'};
constexpr char kMark16[] = {'\xFF', '\xFE'};
constexpr char kMark16Big[] = {'\xFE', '\xFF'};

// Settles the encoding by what stands at the start of the file, writes the mark of a new one, and leaves the
// position behind the mark. `emptied` says that the file has just been opened as an empty one: what stands in
// it by now is another's, who writes it at the same time. False with errno.
bool SettleEncoding(StreamState& state, const StreamMode& mode, bool emptied) {
  LARGE_INTEGER size;
  long long position = 0;
  state.seekable = GetFileSizeEx(state.handle, &size) && Seek(state.handle, 0, FILE_CURRENT, position);
  if (!state.seekable) return true;
  if (state.text.translate && !mode.IsUnicode() && mode.update && mode.kind != 'w' && size.QuadPart > 0) {
    // A Ctrl-Z that ends the file would keep everything that is written behind it from being read.
    char last = 0;
    DWORD read = 0;
    if (Seek(state.handle, -1, FILE_END, position) && ReadFile(state.handle, &last, 1, &read, nullptr) &&
        last == 0x1A && Seek(state.handle, -1, FILE_END, position)) {
      SetEndOfFile(state.handle);
    }
    Seek(state.handle, 0, FILE_BEGIN, position);
  }
  long long start = 0;
  if (mode.IsUnicode()) {
    if (emptied || size.QuadPart == 0) {
      const bool is8 = mode.encoding == Encoding::kUtf8;
      if (mode.Writes() && !WriteAll(state.handle, is8 ? kMark8 : kMark16, is8 ? 3 : 2)) {
        FailFromLastError();
        return false;
      }
      if (mode.Writes()) start = is8 ? 3 : 2;
    } else {
      char head[3] = {};
      DWORD read = 0;
      // A handle that can't read leaves the encoding to the mode.
      const bool known =
          Seek(state.handle, 0, FILE_BEGIN, position) && ReadFile(state.handle, head, 3, &read, nullptr);
      if (read == 3 && std::equal(kMark8, kMark8 + 3, head)) {
        state.text = TextOf(Encoding::kUtf8);
        start = 3;
      } else if (read >= 2 && std::equal(kMark16, kMark16 + 2, head)) {
        state.text = TextOf(Encoding::kUtf16);
        start = 2;
      } else if (read >= 2 && std::equal(kMark16Big, kMark16Big + 2, head)) {
        errno = EINVAL;
        return false;
      } else if (known && mode.byMark) {
        state.text = TextOf(Encoding::kAnsi);
      }
    }
  }
  const bool moved =
      Seek(state.handle, mode.kind == 'a' ? 0 : start, mode.kind == 'a' ? FILE_END : FILE_BEGIN, position);
  if (!moved) FailFromLastError();
  return moved;
}

// A stream over a descriptor, which it takes over on success only.
FILE* MakeStream(int descriptor, HANDLE handle, const StreamMode& mode, bool emptied) {
  auto state = std::make_unique<StreamState>();
  state->handle = handle;
  state->descriptor = descriptor;
  state->text = TextOf(mode.encoding);
  state->append = mode.kind == 'a';
  if (!SettleEncoding(*state, mode, emptied)) return nullptr;
  state->buffer = std::make_unique<char[]>(kBufferFront + kBufferSize + kLinePadding);
  const char letters[] = {mode.kind, mode.update ? '+' : '\0', '\0'};
  FILE* stream = fopencookie(state.get(), letters, {OnRead, OnWrite, OnSeek, OnClose});
  if (stream == nullptr) return nullptr;
  setvbuf(stream, state->buffer.get() + kBufferFront, _IOFBF, kBufferSize);
  // From here on fclose ends the state.
  StreamState* kept = state.release();
  kept->stream = stream;
  try {
    const std::lock_guard lock(g_mutex);
    Streams().emplace(stream, kept);
    ++g_generation;
  } catch (...) {
    fclose(stream);
    throw;
  }
  return stream;
}

HANDLE OpenFile(const wchar_t* path, const StreamMode& mode) {
  DWORD access = (mode.Reads() ? GENERIC_READ : 0) | (mode.Writes() ? GENERIC_WRITE : 0);
  DWORD disposition = OPEN_EXISTING;
  if (mode.kind == 'w') disposition = mode.exclusive ? CREATE_NEW : CREATE_ALWAYS;
  if (mode.kind == 'a') disposition = OPEN_ALWAYS;
  const DWORD flags = FILE_ATTRIBUTE_NORMAL | (mode.temporary ? FILE_FLAG_DELETE_ON_CLOSE : 0);
  const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
  if (mode.kind == 'a' && mode.IsUnicode()) {
    // To look for the mark.
    const HANDLE handle =
        CreateFileW(path, access | GENERIC_READ, share, nullptr, disposition, flags, nullptr);
    if (handle != INVALID_HANDLE_VALUE || GetLastError() != ERROR_ACCESS_DENIED) return handle;
  }
  return CreateFileW(path, access, share, nullptr, disposition, flags, nullptr);
}

}  // namespace

StreamState* FindStream(FILE* stream) {
  const unsigned long generation = g_generation.load(std::memory_order_acquire);
  if (t_last.stream == stream && t_last.generation == generation) return t_last.state;
  const std::lock_guard lock(g_mutex);
  const auto found = Streams().find(stream);
  t_last = {stream, found == Streams().end() ? nullptr : found->second, generation};
  return t_last.state;
}

}  // namespace qorgen::platform

FILE* _wfopen(const wchar_t* path, const wchar_t* mode) {
  using namespace qorgen::platform;
  StreamMode parsed;
  if (path == nullptr || !ParseMode(mode, parsed)) {
    errno = EINVAL;
    return nullptr;
  }
  const HANDLE handle = OpenFile(path, parsed);
  if (handle == INVALID_HANDLE_VALUE) {
    FailFromLastError();
    return nullptr;
  }
  int descriptor = -1;
  FILE* stream = nullptr;
  try {
    descriptor = AddDescriptor(handle);
    stream = MakeStream(descriptor, handle, parsed, parsed.kind == 'w');
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
  }
  if (stream == nullptr) {
    const int error = errno;
    // A stream that failed late has closed its descriptor itself.
    if (descriptor < 0) {
      CloseHandle(handle);
    } else if (HandleOfDescriptor(descriptor) == handle) {
      _close(descriptor);
    }
    errno = error;
  }
  return stream;
}

FILE* _wfdopen(int descriptor, const wchar_t* mode) {
  using namespace qorgen::platform;
  StreamMode parsed;
  const HANDLE handle = HandleOfDescriptor(descriptor);
  if (handle == nullptr || !ParseMode(mode, parsed)) {
    errno = handle == nullptr ? EBADF : EINVAL;
    return nullptr;
  }
  try {
    return MakeStream(descriptor, handle, parsed, false);
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return nullptr;
  }
}
