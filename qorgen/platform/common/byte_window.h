#pragma once

// What the reader of text streams sees of a stream, and all that a host has to supply of it. A window belongs
// to one call on one stream.

#include <cstddef>

namespace qorgen::platform {

// Bytes behind a padded window, and behind every line, that may be read and hold nothing in particular.
inline constexpr std::size_t kLinePadding = 64;

// Whether NUL or Ctrl-Z is among the bytes.
[[nodiscard]] bool HoldsControl(const void* bytes, std::size_t length);

// The bytes that have been read ahead and not been taken: [at, end).
class ByteWindow {
 public:
  [[nodiscard]] std::size_t Available() const { return static_cast<std::size_t>(end - at); }

  // At least `count` bytes (1 to 4) in a row, or what is left of the stream: false then, at its end as well as
  // after an error, which Failed tells apart.
  [[nodiscard]] bool Ensure(std::size_t count) { return Available() >= count || Read(count); }
  [[nodiscard]] virtual bool Failed() const = 0;
  // The offset of `at` in the file; -1 where a stream has no places.
  [[nodiscard]] virtual long long Place() const = 0;
  // Moves to the end of the file: nothing more is to be read.
  virtual void End() = 0;

  const unsigned char* at = nullptr;
  const unsigned char* end = nullptr;
  bool padded = false;           // kLinePadding bytes behind `end` may be read
  bool may_hold_control = true;  // NUL or Ctrl-Z may be among the bytes

 protected:
  ~ByteWindow() = default;

 private:
  virtual bool Read(std::size_t count) = 0;
};

}  // namespace qorgen::platform
