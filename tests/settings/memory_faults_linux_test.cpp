// Every allocation of an operation fails once: nothing hangs, stays open or goes to the wrong place.

#include <functional>

#include "tests/settings/test_key.h"
#include "tests/support/failing_memory.h"
#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST_F(KeyTest, AllocationsThatFail) {
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
