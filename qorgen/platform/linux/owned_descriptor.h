#pragma once

// A file descriptor that is closed when its owner ends; -1 is none.

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace qorgen::platform {

class OwnedDescriptor {
 public:
  explicit OwnedDescriptor(int number) : number_(number) {}
  OwnedDescriptor(OwnedDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  OwnedDescriptor& operator=(OwnedDescriptor&&) = delete;
  ~OwnedDescriptor() {
    if (number_ >= 0) close(number_);
  }
  [[nodiscard]] int Get() const { return number_; }
  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
  // The last word of a network file system on what was written; false with errno.
  [[nodiscard]] bool Close() { return close(std::exchange(number_, -1)) == 0 || errno == EINTR; }

 private:
  int number_;
};

}  // namespace qorgen::platform
