#include "qorgen/platform/shell.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

using qorgen::tests::Utf8;

struct Buffer {
  explicit Buffer(const wchar_t* text) {
    const CString source(text);
    std::copy_n(source.GetString(), source.GetLength() + 1, characters);
  }
  wchar_t characters[300] = {};
};

TEST(PathRemoveFileSpecTest, cuts_the_last_component_and_keeps_the_root) {
  struct {
    const wchar_t* path;
    const wchar_t* rest;
    BOOL cut;
  } const rows[] = {
      {L"C:\\a\\b.txt", L"C:\\a", TRUE},
      {L"C:\\a", L"C:\\", TRUE},
      {L"C:\\", L"C:\\", FALSE},
      {L"C:a", L"C:", TRUE},
      {L"C:", L"C:", FALSE},
      {L"\\a", L"\\", TRUE},
      {L"\\", L"\\", FALSE},
      {L"a", L"", TRUE},
      {L"", L"", FALSE},
      {L"a\\b", L"a", TRUE},
      {L"C:\\a\\", L"C:\\a", TRUE},
      {L"\\\\srv\\share\\a", L"\\\\srv\\share", TRUE},
      {L"\\\\srv\\share", L"\\\\srv", TRUE},
  };
  for (const auto& row : rows) {
    Buffer buffer(row.path);
    EXPECT_EQ(row.cut, PathRemoveFileSpecW(buffer.characters)) << Utf8(row.path);
    EXPECT_TEXT(row.rest, buffer.characters) << Utf8(row.path);
  }
  EXPECT_FALSE(PathRemoveFileSpecW(nullptr));
}

TEST(PathFindExtensionTest, last_dot_of_the_last_component) {
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

TEST(PathIsDirectoryTest, folders_only) {
  qorgen::tests::ScratchFolder folder;
  ASSERT_TRUE(qorgen::tests::PutFile(folder.Path(L"file"), "x"));
  EXPECT_TRUE(PathIsDirectoryW(folder.Path(L"")));
  EXPECT_TRUE(PathIsDirectoryW(CString(folder.Path(L"")) + L"\\"));
  for (const wchar_t* path : {folder.Path(L"file"), folder.Path(L"none"), L"", (const wchar_t*)nullptr}) {
    EXPECT_FALSE(PathIsDirectoryW(path)) << Utf8(path);
  }
}

TEST(PathSkipRootTest, points_behind_drive_or_share) {
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
    EXPECT_TRUE(qorgen::tests::AsPublished(rest == Utf8(row.rest), row.on_wine)) << Utf8(row.path);
  }
  EXPECT_EQ(nullptr, PathSkipRootW(nullptr));
}

TEST(PathCompactPathExTest, shortens_by_the_published_rule) {
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
    EXPECT_TRUE(qorgen::tests::AsPublished(Utf8(out.data()) == Utf8(row.result), row.on_wine))
        << Utf8(row.path) << ' ' << row.room << ' ' << Utf8(out.data());
  }
  wchar_t out[4] = {L'x'};
  EXPECT_FALSE(PathCompactPathExW(out, nullptr, 4, 0));
  EXPECT_EQ(L'x', out[0]);
}

TEST(KnownFolderTest, each_is_there_and_takes_files) {
  const int folders[] = {CSIDL_DESKTOP,       CSIDL_PERSONAL,       CSIDL_MYPICTURES,
                         CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA, CSIDL_COMMON_DOCUMENTS};
  for (const int id : folders) {
    wchar_t path[MAX_PATH] = {L'x'};
    ASSERT_TRUE(SHGetSpecialFolderPathW(nullptr, path, id, TRUE)) << id;
    const CString folder(path);
    EXPECT_TEXT(L":\\", folder.Mid(1, 2));
    EXPECT_NE(L'\\', folder[folder.GetLength() - 1]) << Utf8(folder);
    EXPECT_NE(0u, GetFileAttributesW(folder) & FILE_ATTRIBUTE_DIRECTORY) << Utf8(folder);
    const CString file = folder + L"\\qorgen known folder test";
    EXPECT_TRUE(qorgen::tests::PutFile(file, "x")) << Utf8(file);
    EXPECT_TRUE(DeleteFileW(file));
    // Once it is there, it needs no making.
    wchar_t again[MAX_PATH] = {};
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, again, id, FALSE));
    EXPECT_TEXT(folder, again);
  }
  wchar_t path[MAX_PATH] = {L'x'};
  EXPECT_FALSE(SHGetSpecialFolderPathW(nullptr, path, 999, TRUE));
  EXPECT_EQ(0, path[0]);
}

}  // namespace
