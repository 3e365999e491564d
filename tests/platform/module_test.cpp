#include "qorgen/platform/module.h"

#include <gtest/gtest.h>

#include "qorgen/platform/error.h"

#include "tests/support/wine.h"

namespace {

TEST(Module, AShortBufferGetsATerminatedBeginning) {
  wchar_t path[6] = {L'#', L'#', L'#', L'#', L'#', L'#'};
  EXPECT_EQ(5u, GetModuleFileNameW(nullptr, path, 5));
  EXPECT_EQ(ERROR_INSUFFICIENT_BUFFER, GetLastError());
  // Wine leaves the terminator out, as the oldest systems did.
  EXPECT_TRUE(qorgen::tests::HoldsExceptOnWine(path[4] == 0));
  EXPECT_EQ(L'#', path[5]);
}

TEST(Module, NoneAtAStrayAddress) {
  int here = 0;
  wchar_t path[MAX_PATH + 1] = {};
  EXPECT_EQ(0u, GetModuleFileNameW(reinterpret_cast<HMODULE>(&here), path, MAX_PATH));
  EXPECT_EQ(ERROR_MOD_NOT_FOUND, GetLastError());
}

TEST(Module, OthersAreNotFound) {
  EXPECT_EQ(nullptr, LoadLibraryW(L"no-such-module.dll"));
  EXPECT_EQ(ERROR_MOD_NOT_FOUND, GetLastError());
  const HMODULE module = LoadLibraryW(L"MLANG");
  ASSERT_NE(nullptr, module);
  EXPECT_EQ(nullptr, reinterpret_cast<void*>(GetProcAddress(module, "NoSuchFunction")));
  EXPECT_EQ(ERROR_PROC_NOT_FOUND, GetLastError());
  EXPECT_TRUE(FreeLibrary(module));
}

}  // namespace
