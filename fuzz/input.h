#pragma once

// The fuzzer's bytes as the inputs that the library takes.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qorgen::fuzz {

// Bytes read front to back; past the end everything is 0.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::uint8_t Byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  unsigned Word() {
    unsigned word = 0;
    for (int i = 0; i < 4; ++i) word = word << 8 | Byte();
    return word;
  }
  // What is left as bytes, and as 16-bit units with a terminator (an odd byte is dropped).
  const std::uint8_t* Data() const { return data_; }
  std::size_t Size() const { return size_; }
  std::vector<wchar_t> Text() const {
    std::vector<wchar_t> text;
    for (std::size_t i = 0; i + 1 < size_; i += 2) {
      text.push_back(static_cast<wchar_t>(data_[i] | data_[i + 1] << 8));
    }
    text.push_back(0);
    return text;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

}  // namespace qorgen::fuzz
