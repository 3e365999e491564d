#pragma once

// The bytes of one line of a text stream after another, in a buffer that is kept from line to line. One
// thread at a time. Part of CQorCSVFile; callers use that class.

#include <climits>
#include <cstddef>
#include <cstdio>
#include <memory>

namespace qorgen::exchange {

class LineReader {
 public:
  enum class Result {
    kEnd,       // the stream ended before any byte
    kFailed,    // the stream reports an error; a line cut by it is lost
    kLine,      // Text and Length give the line
    kNoMemory,  // the line is longer than memory or the limit; it was passed over, up to its line feed
  };

  // Lines of more than `limit` bytes, line feed included, give kNoMemory.
  explicit LineReader(std::size_t limit = INT_MAX - 1) : limit_(limit) {}

  // Reads the next line. A line that ends in a line feed loses it and all carriage returns and line feeds
  // before it; a last line without one stays as it is. NUL bytes are bytes like others.
  Result Read(std::FILE* stream);

  // The line of the last Read, followed by a NUL byte.
  const char* Text() const noexcept { return buffer_.get(); }
  std::size_t Length() const noexcept { return length_; }

 private:
  bool Reserve(std::size_t capacity);

  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_ = 0;
  std::size_t length_ = 0;
  std::size_t limit_;
};

}  // namespace qorgen::exchange
