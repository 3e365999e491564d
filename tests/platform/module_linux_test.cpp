#include <dlfcn.h>
#include <gtest/gtest.h>

#include "qorgen/platform/module.h"

#include "tests/support/text.h"

namespace {

TEST(Module, AnyAddressNamesItsModule) {
  wchar_t path[MAX_PATH + 1] = {};
  void* in_the_runtime = dlsym(RTLD_DEFAULT, "fopen");
  ASSERT_GT(GetModuleFileNameW(static_cast<HMODULE>(in_the_runtime), path, MAX_PATH), 0u);
  wchar_t executable[MAX_PATH + 1] = {};
  ASSERT_GT(GetModuleFileNameW(nullptr, executable, MAX_PATH), 0u);
  EXPECT_NE(qorgen::tests::Utf8(executable), qorgen::tests::Utf8(path));

  static const int kMine = 0;
  void* in_the_executable = const_cast<int*>(&kMine);
  ASSERT_GT(GetModuleFileNameW(static_cast<HMODULE>(in_the_executable), path, MAX_PATH), 0u);
  EXPECT_TEXT(executable, path);
}

}  // namespace
