// Every allocation of an operation fails once: nothing hangs, stays open or goes to the wrong place.

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <new>

#include "qorgen/afx/exception.h"

#include "tests/settings/test_key.h"

namespace {

thread_local int t_left = -1;  // allocations until one fails; none does below 0

void* Allocate(std::size_t bytes) {
  if (t_left >= 0 && t_left-- == 0) return nullptr;
  return std::malloc(bytes != 0 ? bytes : 1);
}

void* AllocateOrThrow(std::size_t bytes) {
  void* const block = Allocate(bytes);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

void* operator new(std::size_t bytes) {
  return AllocateOrThrow(bytes);
}
void* operator new[](std::size_t bytes) {
  return AllocateOrThrow(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return Allocate(bytes);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}

namespace {

using namespace qorgen::tests;

long OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

// Whether the step had all the memory it asked for.
bool Completes(const std::function<void()>& step, int allocations) {
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

TEST_F(KeyTest, allocations_that_fail) {
  const std::function<void()> steps[] = {
      [&] { m_key.SetLong(L"n", 5); },
      [&] { m_key.GetLong(L"n", 5); },
      [&] { m_key.SetString(L"s", L"text"); },
      [&] { m_key.GetString(L"s", L"text"); },
      [&] { m_key.SetBinary(L"b", &m_folder, 4); },
      [&] { m_key.GetValueNames(nullptr); },
      [&] { delete m_key.OpenSubKey(L"a\\b", 1); },
      [&] { m_key.DeleteSubKey(L"a"); },
  };
  m_key.SetLong(L"n", 5);
  const long before = OpenDescriptors();
  for (const auto& step : steps) {
    int allocations = 0;
    while (!Completes(step, allocations) && ++allocations < 1000) {
    }
    EXPECT_TRUE(allocations > 0 && allocations < 1000) << &step - steps;
    EXPECT_EQ(before, OpenDescriptors()) << &step - steps;
  }
  int count = 0;
  EXPECT_NE(nullptr, m_key.GetValueNames(&count));
  EXPECT_EQ(3, count);
}

}  // namespace
