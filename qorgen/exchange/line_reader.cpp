#include "qorgen/exchange/line_reader.h"

#include <algorithm>
#include <new>
#include <utility>

#include "qorgen/platform/held_stream.h"

namespace qorgen::exchange {
namespace {

constexpr std::size_t kPiece = 1024;
// A buffer above this size is given back once lines need less than an eighth of it.
constexpr std::size_t kKeptCapacity = 256 * 1024;

struct Piece {
  std::size_t length = 0;
  bool ends_line = false;
};

// One GetLine of up to `size` - 1 bytes, with the exact number of bytes also when there are NUL bytes among
// them. The space is filled with line feeds first. A line feed that was read is the last byte before the
// terminator; if the first line feed isn't followed by a NUL byte, it is filling, and the terminator stands
// right before it. Length 0 means the end of the stream.
Piece ReadPiece(std::FILE* stream, char* space, std::size_t size) {
  std::memset(space, '\n', size);
  if (platform::GetLine(space, static_cast<int>(size), stream) == nullptr) return {};
  const auto* const feed = static_cast<const char*>(std::memchr(space, '\n', size));
  if (feed == nullptr) return {size - 1, false};
  const auto index = static_cast<std::size_t>(feed - space);
  if (index + 1 < size && feed[1] == '\0') return {index + 1, true};
  return {index == 0 ? 0 : index - 1, false};
}

void SkipLine(std::FILE* stream) {
  char space[kPiece];
  for (;;) {
    const Piece piece = ReadPiece(stream, space, sizeof space);
    if (piece.length == 0 || piece.ends_line) return;
  }
}

}  // namespace

bool LineReader::Reserve(std::size_t capacity) {
  std::unique_ptr<char[]> buffer(new (std::nothrow) char[capacity]);
  if (buffer == nullptr) return false;
  if (length_ != 0) std::memcpy(buffer.get(), buffer_.get(), length_);
  buffer_ = std::move(buffer);
  capacity_ = capacity;
  return true;
}

LineReader::Result LineReader::Read(std::FILE* stream) {
  const bool shrink = capacity_ > kKeptCapacity && length_ < capacity_ / 8;
  length_ = 0;
  if ((shrink || capacity_ == 0) && !Reserve(kPiece)) {
    SkipLine(stream);
    return Result::kNoMemory;
  }
  for (;;) {
    // The first piece is small however large the buffer is, since it is filled for every line.
    const std::size_t size = length_ == 0 ? kPiece : std::min(capacity_ - length_, std::size_t{1} << 20);
    const Piece piece = ReadPiece(stream, buffer_.get() + length_, size);
    length_ += piece.length;
    if (length_ > limit_) {
      if (!piece.ends_line) SkipLine(stream);
      length_ = 0;
      return Result::kNoMemory;
    }
    if (piece.ends_line) {
      while (length_ != 0 && (buffer_[length_ - 1] == '\n' || buffer_[length_ - 1] == '\r')) --length_;
      buffer_[length_] = '\0';
      return Result::kLine;
    }
    // Fewer bytes than asked for without a line feed: the stream has ended.
    if (piece.length + 1 < size) {
      if (ferror(stream) != 0) {
        length_ = 0;
        return Result::kFailed;
      }
      buffer_[length_] = '\0';
      return length_ == 0 ? Result::kEnd : Result::kLine;
    }
    if (capacity_ - length_ < kPiece && !Reserve(capacity_ * 2)) {
      SkipLine(stream);
      length_ = 0;
      return Result::kNoMemory;
    }
  }
}

}  // namespace qorgen::exchange
