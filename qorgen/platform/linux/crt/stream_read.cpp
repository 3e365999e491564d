// Reading of streams: the reader of text streams looks straight into the C library's buffer, through the two pointers
// that its own getc macro uses, so that the position told by ftell is always that of the next unread byte.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/linux/codepage/codec.h"
#include "qorgen/platform/linux/crt/stream.h"
#include "qorgen/platform/text_stream.h"

namespace qorgen::platform {
namespace {

// A stream of ours.
class StreamWindow final : public ByteWindow {
 public:
  StreamWindow(FILE* stream, const StreamState& state) : stream_(stream), state_(state) {
    Load();
    padded = true;
  }
  ~StreamWindow() { Store(); }
  StreamWindow(const StreamWindow&) = delete;
  StreamWindow& operator=(const StreamWindow&) = delete;

  [[nodiscard]] bool Failed() const override { return failed_; }

  [[nodiscard]] long long Place() const override {
    Store();
    return state_.seekable ? ftello64(stream_) : -1;
  }

  void End() override {
    at = end;
    Store();
    if (state_.seekable) fseeko64(stream_, 0, SEEK_END);
    // Nobody waits for what a pipe may bring behind the end of the text.
    stream_->_flags |= _IO_EOF_SEEN;
    Load();
  }

 private:
  void Load() {
    at = reinterpret_cast<const unsigned char*>(stream_->_IO_read_ptr);
    end = reinterpret_cast<const unsigned char*>(stream_->_IO_read_end);
    may_hold_control = state_.may_hold_control;
  }
  void Store() const { stream_->_IO_read_ptr = reinterpret_cast<char*>(const_cast<unsigned char*>(at)); }

  // The few bytes that are left go in front of the buffer, so that they stand before the next ones. The C library
  // finds them there by its own pointer, too.
  bool Read(std::size_t count) override {
    do {
      std::array<unsigned char, kBufferFront> kept;
      const std::size_t left = Available();
      std::copy_n(at, left, kept.data());
      at = end;
      Store();
      const bool had_control = may_hold_control && left != 0;
      const bool read = getc_unlocked(stream_) != EOF;
      if (read) --stream_->_IO_read_ptr;
      failed_ = !read && ferror_unlocked(stream_) != 0;
      Load();
      may_hold_control = may_hold_control || had_control;
      if (left != 0) {
        char* const front = state_.buffer.get() + kBufferFront - left;
        std::memcpy(front, kept.data(), left);
        at = reinterpret_cast<const unsigned char*>(front);
        if (!read) {
          end = at + left;
          stream_->_IO_read_end = front + left;
        }
      }
      if (!read) return false;
    } while (Available() < count);
    return true;
  }

  FILE* stream_;
  const StreamState& state_;
  bool failed_ = false;
};

// A stream of others, or with another buffer than ours in use: a byte at a time, and what was looked at without being
// taken goes back.
class ForeignWindow final : public ByteWindow {
 public:
  explicit ForeignWindow(FILE* stream) : stream_(stream) { at = end = bytes_.data(); }
  ~ForeignWindow() {
    while (end != at) ungetc(*--end, stream_);
  }
  ForeignWindow(const ForeignWindow&) = delete;
  ForeignWindow& operator=(const ForeignWindow&) = delete;

  [[nodiscard]] bool Failed() const override { return ferror(stream_) != 0; }
  [[nodiscard]] long long Place() const override {
    const long long place = ftello64(stream_);
    return place < 0 ? -1 : place - static_cast<long long>(Available());
  }
  void End() override {
    at = end;
    fseeko64(stream_, 0, SEEK_END);
    stream_->_IO_read_ptr = stream_->_IO_read_end;
    stream_->_flags |= _IO_EOF_SEEN;
  }

 private:
  bool Read(std::size_t count) override {
    std::memmove(bytes_.data(), at, Available());
    end = bytes_.data() + Available();
    at = bytes_.data();
    while (Available() < count) {
      const int byte = getc(stream_);
      if (byte == EOF) return false;
      bytes_[Available()] = static_cast<unsigned char>(byte);
      ++end;
    }
    return true;
  }

  FILE* stream_;
  std::array<unsigned char, 4> bytes_{};
};

// Whether the bytes read ahead lie in the buffer that the stream was given: its owner may have set another one, or put
// bytes back that didn't stand there.
bool UsesOwnBuffer(const FILE* stream, const StreamState& state) {
  return stream->_IO_buf_base == state.buffer.get() + kBufferFront &&
         stream->_IO_read_end >= state.buffer.get() && stream->_IO_read_end <= stream->_IO_buf_end;
}

// Calls `read` with the window and the text of a stream; one of others has text of `code_page`.
template <typename Read>
auto WithWindow(FILE* stream, unsigned code_page, Read read) {
  StreamState* const state = FindStream(stream);
  if (state != nullptr && UsesOwnBuffer(stream, *state)) {
    StreamWindow window(stream, *state);
    return read(static_cast<ByteWindow&>(window), state->text);
  }
  StreamText foreign;
  foreign.code_page = code_page;
  foreign.translate = false;
  ForeignWindow window(stream);
  return read(static_cast<ByteWindow&>(window), state != nullptr ? state->text : foreign);
}

}  // namespace

void HoldStream(FILE*, HeldText) {}
void ReleaseStream(FILE*) {}
void SettleStream(FILE*) {}

LineResult StreamLine::Read(FILE* stream, bool ansi, std::size_t limit) {
  return WithWindow(stream, ansi ? kAnsiText : CP_UTF8, [&](ByteWindow& window, StreamText& text) {
    code_page_ = text.code_page;
    return ReadLine(window, text, block_, limit, line_);
  });
}

std::size_t StreamLine::Decode(wchar_t* units) const {
  static_assert(kLinePadding >= kDecodePadding + std::size(LineBytes().before));
  if (code_page_ != kAnsiText) return DecodeLine(code_page_, line_, units);
  const auto before = static_cast<std::size_t>(line_.before_count);
  std::copy_n(line_.before, before, units);
  return before + DecodePadded932(line_.bytes, line_.length, units + before).written;
}

std::ptrdiff_t GetText(wchar_t* units, std::size_t room, FILE* stream) {
  return WithWindow(stream, CP_UTF8, [&](ByteWindow& window, StreamText& text) -> std::ptrdiff_t {
    const std::size_t length = ReadUnits(window, text, units, room);
    return length == 0 && window.Failed() ? -1 : static_cast<std::ptrdiff_t>(length);
  });
}

std::ptrdiff_t GetBytes(void* buffer, std::size_t count, FILE* stream) {
  StreamState* const state = FindStream(stream);
  if (state == nullptr || state->text.code_page != kAnsiText) {
    const std::size_t read = fread(buffer, 1, count, stream);
    return read == 0 && ferror(stream) != 0 ? -1 : static_cast<std::ptrdiff_t>(read);
  }
  return WithWindow(stream, kAnsiText, [&](ByteWindow& window, StreamText& text) -> std::ptrdiff_t {
    const std::size_t length = ReadBytes(window, text, static_cast<char*>(buffer), count);
    return length == 0 && window.Failed() ? -1 : static_cast<std::ptrdiff_t>(length);
  });
}

long long TellStream(FILE* stream) {
  return ftello64(stream);
}

int SeekStream(FILE* stream, long long offset, int origin) {
  return fseeko64(stream, offset, origin);
}

int FlushStream(FILE* stream) {
  return fflush(stream);
}

}  // namespace qorgen::platform
