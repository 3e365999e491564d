#pragma once

// A descriptor of the host that is closed with its owner. One thread at a time.

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace qorgen::platform {

class OwnedDescriptor {
 public:
  OwnedDescriptor() = default;
  explicit OwnedDescriptor(int number) : number_(number) {}
  OwnedDescriptor(OwnedDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  // Leaves errno as it is.
  ~OwnedDescriptor() {
    const int error = errno;
    if (number_ >= 0) close(number_);
    errno = error;
  }

  [[nodiscard]] int Get() const { return number_; }
  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
  [[nodiscard]] int Release() { return std::exchange(number_, -1); }
  // False with errno: the last word of a network file system on what was written.
  [[nodiscard]] bool Close() { return close(Release()) == 0 || errno == EINTR; }

 private:
  int number_ = -1;
};

}  // namespace qorgen::platform
