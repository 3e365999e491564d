#include "qorgen/platform/shell.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST(PathRemoveFileSpecTest, CutsTheLastComponentAndKeepsTheRoot) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"C:\\a\\b.txt", L"C:\\a"},
      {L"C:\\a", L"C:\\"},
      {L"C:\\", L"C:\\"},
      {L"C:a", L"C:"},
      {L"C:", L"C:"},
      {L"\\a", L"\\"},
      {L"\\", L"\\"},
      {L"a", L""},
      {L"", L""},
      {L"a\\b", L"a"},
      {L"C:\\a\\", L"C:\\a"},
      {L"\\\\srv\\share\\a", L"\\\\srv\\share"},
      {L"\\\\srv\\share", L"\\\\srv"},
  };
  for (const auto& [path, rest] : rows) {
    CString buffer(path);
    EXPECT_EQ(buffer != rest, PathRemoveFileSpecW(buffer.GetBuffer(300)) != FALSE) << Utf8(path);
    buffer.ReleaseBuffer();
    EXPECT_TEXT(rest, buffer) << Utf8(path);
  }
  EXPECT_FALSE(PathRemoveFileSpecW(nullptr));
}

TEST(PathFindExtensionTest, LastDotOfTheLastComponent) {
  const wchar_t* const rows[][2] = {
      {L"a.txt", L".txt"}, {L"C:\\a.b\\c.tar.gz", L".gz"},
      {L"a.", L"."},       {L".dw", L".dw"},
      {L"a", L""},         {L"a.b\\c", L""},
      {L"a.b c", L""},     {L"a b.c", L".c"},
      {L"", L""},          {L"a.b\\", L""},
  };
  for (const auto& [path, extension] : rows) EXPECT_TEXT(extension, PathFindExtensionW(path)) << Utf8(path);
  EXPECT_EQ(nullptr, PathFindExtensionW(nullptr));
}

TEST(PathIsDirectoryTest, FoldersOnly) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"file"), "x"));
  EXPECT_TRUE(PathIsDirectoryW(folder.Path(L"")));
  EXPECT_TRUE(PathIsDirectoryW(CString(folder.Path(L"")) + L"\\"));
  for (const wchar_t* path : {folder.Path(L"file"), folder.Path(L"none"), L"", (const wchar_t*)nullptr}) {
    EXPECT_FALSE(PathIsDirectoryW(path)) << Utf8(path);
  }
}

TEST(PathSkipRootTest, PointsBehindDriveOrShare) {
  struct {
    const wchar_t* path;
    const wchar_t* rest;  // null: no root
    bool on_wine = true;  // it knows neither the root of the current drive nor a share without a path
  } const rows[] = {
      {L"C:\\a\\b", L"a\\b"},          {L"C:\\", L""},
      {L"\\a", L"a", false},           {L"\\\\srv\\share\\a", L"a"},
      {L"\\\\srv\\share", L"", false}, {L"a\\b", nullptr},
      {L"\\\\?\\C:\\a", L"a"},         {L"", nullptr},
  };
  for (const auto& row : rows) {
    const std::string rest = Utf8(static_cast<const wchar_t*>(PathSkipRootW(row.path)));
    EXPECT_TRUE(AsPublished(rest == Utf8(row.rest), row.on_wine)) << Utf8(row.path);
  }
  EXPECT_EQ(nullptr, PathSkipRootW(nullptr));
}

TEST(PathCompactPathExTest, ShortensByThePublishedRule) {
  struct {
    const wchar_t* path;
    UINT room;
    const wchar_t* result;
    bool on_wine = true;  // it doesn't count the room of the terminator where the whole path fits
  } const rows[] = {
      {L"My Filename", 12, L"My Filename", false},
      {L"My Filename", 10, L"My Fil..."},
      {L"My Filename", 5, L"M..."},
      {L"My Filename", 4, L"..."},
      {L"My Filename", 3, L".."},
      {L"My Filename", 1, L""},
      {L"C:\\folder\\sub\\name.txt", 23, L"C:\\folder\\sub\\name.txt", false},
      {L"C:\\folder\\sub\\name.txt", 22, L"C:\\folder...\\name.txt"},
      {L"C:\\folder\\sub\\name.txt", 20, L"C:\\fold...\\name.txt"},
      {L"C:\\folder\\sub\\name.txt", 13, L"...\\name.txt"},
      {L"C:\\folder\\long name.txt", 12, L"...\\long..."},
      {L"C:\\folder\\long name.txt", 9, L"...\\l..."},
      {L"C:\\folder\\long name.txt", 7, L"...\\.."},
      {L"C:\\folder\\long name.txt", 5, L"...\\"},
      {L"C:\\folder\\long name.txt", 3, L".."},
      {L"C:/folder/sub/name.txt", 20, L"C:/fold...\x2Fname.txt"},
  };
  for (const auto& row : rows) {
    std::vector<wchar_t> out(row.room, L'#');
    EXPECT_TRUE(PathCompactPathExW(out.data(), row.path, row.room, 0));
    ASSERT_NE(out.end(), std::find(out.begin(), out.end(), wchar_t{0}));
    EXPECT_TRUE(AsPublished(Utf8(out.data()) == Utf8(row.result), row.on_wine))
        << Utf8(row.path) << ' ' << row.room << ' ' << Utf8(out.data());
  }
  wchar_t out[4] = {L'x'};
  EXPECT_FALSE(PathCompactPathExW(out, nullptr, 4, 0));
  EXPECT_EQ(L'x', out[0]);
}

}  // namespace
