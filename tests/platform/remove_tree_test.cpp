// Removing a folder with all it holds, on either host.

#include "qorgen/platform/remove_tree.h"

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

TEST(RemoveTree, WhatCannotGoStaysWithItsFolders) {
  ScratchFolder scratch;
  const auto make = [&] {
    for (const wchar_t* folder : {L"t", L"t\\a", L"t\\b", L"t\\b\\深い", L"t\\c"}) {
      CreateDirectoryW(scratch.Path(folder), nullptr);
    }
    for (const wchar_t* file : {L"t\\1", L"t\\a\\2", L"t\\b\\深い\\3", L"t\\c\\4"}) {
      PutFile(scratch.Path(file), "x");
      SetFileAttributesW(scratch.Path(file), FILE_ATTRIBUTE_READONLY);
    }
    SetFileAttributesW(scratch.Path(L"t\\a"), FILE_ATTRIBUTE_READONLY);
  };
  make();
  const HANDLE locked = CreateFileW(scratch.Path(L"t\\b\\深い\\3"), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, locked);
  EXPECT_FALSE(platform::RemoveTree(scratch.Path(L"t")));
  EXPECT_EQ(ERROR_DIR_NOT_EMPTY, GetLastError());
  CloseHandle(locked);
  // Those before it are gone, and those behind it stay.
  EXPECT_FALSE(Exists(scratch.Path(L"t\\a")) || Exists(scratch.Path(L"t\\1")));
  EXPECT_TRUE(Exists(scratch.Path(L"t\\b\\深い\\3")) && Exists(scratch.Path(L"t\\c\\4")));
  make();
  EXPECT_TRUE(platform::RemoveTree(scratch.Path(L"t\\")));
  EXPECT_FALSE(Exists(scratch.Path(L"t")));

  ASSERT_TRUE(PutFile(scratch.Path(L"file"), "x"));
  for (const auto& [path, error] : {std::pair{L"file", ERROR_DIRECTORY}, {L"none", ERROR_FILE_NOT_FOUND}}) {
    EXPECT_FALSE(platform::RemoveTree(scratch.Path(path)));
    EXPECT_EQ(static_cast<DWORD>(error), GetLastError());
  }
  EXPECT_FALSE(platform::RemoveTree(nullptr));
}

}  // namespace
}  // namespace qorgen::tests
