// Files that are replaced in one step, on either host.

#include "qorgen/platform/stored_file.h"

#include <atomic>
#include <thread>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

using platform::FileReplacement;

TEST(StoredFile, OldContentStaysUntilTheNewIsWhole) {
  ScratchFolder scratch;
  const wchar_t* path = scratch.Path(L"値.sz");
  for (const bool there : {false, true}) {
    const std::string before = GetFile(path);
    {
      FileReplacement given_up;
      ASSERT_TRUE(given_up.Begin(path) && given_up.Write("abandoned", 9));
      EXPECT_EQ(before, GetFile(path)) << there;
    }
    FileReplacement file;
    ASSERT_TRUE(file.Begin(path) && file.Write("ne", 2) && file.Write("w", 1));
    EXPECT_EQ(before, GetFile(path)) << there;
    EXPECT_TRUE(file.Commit(there)) << there;
    EXPECT_EQ("new", GetFile(path)) << there;
  }
  FileReplacement late;
  ASSERT_TRUE(late.Begin(path) && late.Write("late", 4));
  EXPECT_FALSE(late.Commit(false));
  EXPECT_EQ(ERROR_ALREADY_EXISTS, GetLastError());
  EXPECT_EQ("new", GetFile(path));
}

TEST(StoredFile, WhatIsLeftBehindGoesAndWhatIsAliveStays) {
  ScratchFolder scratch;
  // Left behind: of a killed writer nobody has the file open. The other two are somebody's own.
  for (const wchar_t* name : {L"~0.qr~", L"~1.qr~", L"~3.qr~"}) ASSERT_TRUE(PutFile(scratch.Path(name), "x"));
  for (const wchar_t* name : {L"~0.qr", L"a~0.qr~"}) ASSERT_TRUE(PutFile(scratch.Path(name), "x"));
  FileReplacement alive;
  ASSERT_TRUE(alive.Begin(scratch.Path(L"a")) && alive.Write("a", 1));
  FileReplacement other;
  ASSERT_TRUE(other.Begin(scratch.Path(L"b")) && other.Write("b", 1) && other.Commit());
  EXPECT_TRUE(alive.Commit());
  EXPECT_EQ("ab", GetFile(scratch.Path(L"a")) + GetFile(scratch.Path(L"b")));
  for (const wchar_t* name : {L"~0.qr~", L"~1.qr~", L"~2.qr~", L"~3.qr~"}) {
    EXPECT_FALSE(Exists(scratch.Path(name))) << Utf8(name);
  }
  for (const wchar_t* name : {L"~0.qr", L"a~0.qr~"}) EXPECT_TRUE(Exists(scratch.Path(name))) << Utf8(name);
}

TEST(StoredFile, NamesOfReplacements) {
  const std::pair<const wchar_t*, bool> rows[] = {
      {L"~0.qr~", true},     {L"~FF.qr~", true}, {L"~12345678.qr~", true}, {L"~123456789.qr~", false},
      {L"~.qr~", false},     {L"~0.qr", false},  {L"0.qr~", false},        {L"~g.qr~", false},
      {L"~0.qr~.sz", false}, {L"", false},       {nullptr, false},
  };
  for (const auto& [name, is] : rows)
    EXPECT_EQ(is, platform::IsReplacementName(name)) << (name ? Utf8(name) : "");
}

TEST(StoredFile, RefusedTargets) {
  ScratchFolder scratch;
  ASSERT_TRUE(CreateDirectoryW(scratch.Path(L"folder"), nullptr));
  ASSERT_TRUE(PutFile(scratch.Path(L"locked"), "x"));
  ASSERT_TRUE(SetFileAttributesW(scratch.Path(L"locked"), FILE_ATTRIBUTE_READONLY));
  const std::pair<const wchar_t*, DWORD> rows[] = {{scratch.Path(L"folder"), ERROR_ACCESS_DENIED},
                                                   {scratch.Path(L"locked"), ERROR_ACCESS_DENIED},
                                                   {scratch.Path(L"none\\x"), ERROR_PATH_NOT_FOUND},
                                                   {L"", ERROR_PATH_NOT_FOUND}};
  for (const auto& [path, error] : rows) {
    EXPECT_FALSE(FileReplacement().Begin(path)) << Utf8(path);
    EXPECT_EQ(error, GetLastError()) << Utf8(path);
  }
  EXPECT_EQ(INVALID_HANDLE_VALUE, platform::OpenStoredFile(scratch.Path(L"folder")));
  EXPECT_EQ(ERROR_ACCESS_DENIED, GetLastError());
  EXPECT_EQ(INVALID_HANDLE_VALUE, platform::OpenStoredFile(scratch.Path(L"none")));
  EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
}

// A reader is in no writer's way, and finds one content or another.
TEST(StoredFile, BusyReader) {
  ScratchFolder scratch;
  const wchar_t* path = scratch.Path(L"a");
  const std::string contents[] = {std::string(5000, 'a'), std::string(9000, 'b')};
  ASSERT_TRUE(PutFile(path, contents[0]));
  std::atomic<bool> done = false;
  int torn = 0;
  std::thread reader([&] {
    std::string bytes(10'000, 0);
    while (!done) {
      const HANDLE file = platform::OpenStoredFile(path);
      DWORD read = 0;
      ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
      CloseHandle(file);
      if (bytes.compare(0, read, contents[0]) != 0 && bytes.compare(0, read, contents[1]) != 0) ++torn;
    }
  });
  int failed = 0;
  for (int round = 0; round < 100; ++round) {
    const std::string& content = contents[round % 2];
    FileReplacement file;
    if (!file.Begin(path) || !file.Write(content.data(), content.size()) || !file.Commit()) ++failed;
  }
  done = true;
  reader.join();
  EXPECT_EQ(0, failed);
  EXPECT_EQ(0, torn);
}

}  // namespace
}  // namespace qorgen::tests
