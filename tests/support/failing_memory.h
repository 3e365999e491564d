#pragma once

// The allocator of a test program, with allocations that fail on demand, and what such a failure must not
// leave behind. On Linux; for one source of a program.

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <new>

#include "qorgen/afx/exception.h"

namespace qorgen::tests {

inline thread_local int t_left = -1;  // allocations until one fails; none does below 0

inline void* Allocate(std::size_t bytes) {
  if (t_left >= 0 && t_left-- == 0) return nullptr;
  return std::malloc(bytes != 0 ? bytes : 1);
}

inline void* AllocateOrThrow(std::size_t bytes) {
  void* const block = Allocate(bytes);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace qorgen::tests

// Not inline: the compiler takes free for the wrong end of what it sees a new expression for.
[[gnu::noinline]] void* operator new(std::size_t bytes) {
  return qorgen::tests::AllocateOrThrow(bytes);
}
[[gnu::noinline]] void* operator new[](std::size_t bytes) {
  return qorgen::tests::AllocateOrThrow(bytes);
}
[[gnu::noinline]] void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return qorgen::tests::Allocate(bytes);
}
[[gnu::noinline]] void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return qorgen::tests::Allocate(bytes);
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
  std::free(block);
}
[[gnu::noinline]] void operator delete[](void* block) noexcept {
  std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
[[gnu::noinline]] void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}

namespace qorgen::tests {

inline long OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

// Whether the step had all the memory it asked for.
inline bool Completes(const std::function<void()>& step, int allocations) {
  bool complete = true;
  t_left = allocations;
  try {
    step();
  } catch (const std::bad_alloc&) {
    complete = false;
  } catch (CException* failure) {
    t_left = -1;
    failure->Delete();
  }
  complete = complete && t_left >= 0;
  t_left = -1;
  return complete;
}

}  // namespace qorgen::tests
