#include <cstdio>

#include "qorgen/files/file_util.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

class FoldersTest : public testing::Test {
 protected:
  CString In(const wchar_t* name) { return CQorFileUtil::ConnectPath(m_folder.Path(L""), name); }

  ScratchFolder m_folder;
};

TEST_F(FoldersTest, OneLevel) {
  EXPECT_EQ(1, CQorFileUtil::CreateDirectoryW(In(L"帳簿")));
  EXPECT_EQ(0, CQorFileUtil::CreateDirectoryW(In(L"帳簿")));
  EXPECT_EQ(0, CQorFileUtil::CreateDirectoryW(In(L"x\\y")));
  EXPECT_EQ(0, CQorFileUtil::CreateDirectoryW(nullptr));
}

TEST_F(FoldersTest, DeepFolder) {
  ASSERT_TRUE(PutFile(In(L"file"), "x"));
  const std::tuple<const wchar_t*, int> rows[] = {
      {L"a\\b\\c", 1}, {L"a\\b\\c", 0}, {L"a\\b\\d\\", 1}, {L"a", 0}, {L"file\\b", 0}, {L"file\\b\\c", 0},
  };
  for (const auto& [path, made] : rows)
    EXPECT_EQ(made, CQorFileUtil::CreateDeepDirectory(In(path))) << Utf8(path);
  EXPECT_TRUE(Exists(In(L"a\\b\\c")));
  EXPECT_TRUE(Exists(In(L"a\\b\\d")));
  for (const wchar_t* path : {L"", L"\\", L"C:\\", L"x/y/", L"C:/none/a/b", L"C:/none\\/\\b", L"//"}) {
    EXPECT_EQ(0, CQorFileUtil::CreateDeepDirectory(path)) << Utf8(path);
  }
  EXPECT_EQ(0, CQorFileUtil::CreateDeepDirectory(nullptr));
  EXPECT_EQ(0, CQorFileUtil::CreateDeepDirectory(In(CString(L'x', 400))));
}

TEST_F(FoldersTest, FoldersFromTheOutsideIn) {
  for (int again = 0; again < 2; ++again) EXPECT_EQ(1, CQorFileUtil::CreateDirectories(In(L"a\\b\\c")));
  EXPECT_EQ(1, CQorFileUtil::CreateDirectories(In(L"a\\d\\")));
  EXPECT_TRUE(Exists(In(L"a\\b\\c")));
  EXPECT_TRUE(Exists(In(L"a\\d")));
  EXPECT_EQ(1, CQorFileUtil::CreateDirectories(L"C:\\"));
  EXPECT_EQ(0, CQorFileUtil::CreateDirectories(nullptr));
  // Only the backslash is a level.
  EXPECT_EQ(0, CQorFileUtil::CreateDirectories(In(L"e") + L"/f"));
  EXPECT_FALSE(Exists(In(L"e")));
  ASSERT_TRUE(PutFile(In(L"file"), "x"));
  EXPECT_EQ(0, CQorFileUtil::CreateDirectories(In(L"file\\a")));
}

TEST_F(FoldersTest, FoldersOf261Characters) {
  CString path = In(L"long");
  while (path.GetLength() < 250) path += L"\\12345678";
  path += CString(L'x', 261 - path.GetLength());
  EXPECT_EQ(0, CQorFileUtil::CreateDirectories(path));
  EXPECT_FALSE(Exists(In(L"long")));
}

TEST_F(FoldersTest, FolderOnDemand) {
  EXPECT_EQ(1, CQorFileUtil::CreateDirIfNotExists(In(L""), 0));
  EXPECT_EQ(1, CQorFileUtil::CreateDirIfNotExists(In(L"a\\b\\c.txt"), 1));
  EXPECT_TRUE(Exists(In(L"a\\b")));
  EXPECT_FALSE(Exists(In(L"a\\b\\c.txt")));
  EXPECT_EQ(1, CQorFileUtil::CreateDirIfNotExists(In(L"a\\b\\c.txt"), 0));
  EXPECT_TRUE(Exists(In(L"a\\b\\c.txt")));
  EXPECT_EQ(0, CQorFileUtil::CreateDirIfNotExists(L"bare.txt", 1));
  EXPECT_EQ(0, CQorFileUtil::CreateDirIfNotExists(nullptr, 0));
}

TEST_F(FoldersTest, OpenMakesTheFolderOnRequestOnly) {
  const CString path = In(L"x\\売上.txt");
  EXPECT_EQ(nullptr, CQorFileUtil::Open(path, CQorFileUtil::_modeWb, 0));
  EXPECT_FALSE(Exists(In(L"x")));
  FILE* stream = CQorFileUtil::Open(path, CQorFileUtil::_modeWb, 1);
  ASSERT_NE(nullptr, stream);
  std::fputs("abc", stream);
  std::fclose(stream);
  EXPECT_EQ("abc", GetFile(path));
  EXPECT_EQ(nullptr, CQorFileUtil::Open(nullptr, CQorFileUtil::_modeRb, 0));
  EXPECT_EQ(nullptr, CQorFileUtil::Open(path, nullptr, 0));
}

TEST_F(FoldersTest, ModeTexts) {
  const std::tuple<const wchar_t*, const wchar_t*> rows[] = {
      {CQorFileUtil::_modeRb, L"rb"},
      {CQorFileUtil::_modeWb, L"wb"},
      {CQorFileUtil::_modeRtANSI, L"rt"},
      {CQorFileUtil::_modeWtANSI, L"wt"},
      {CQorFileUtil::_modeRtUTF8, L"rt,ccs=UTF-8"},
      {CQorFileUtil::_modeWtUTF8, L"wt,ccs=UTF-8"},
      {CQorFileUtil::_modeAtUTF8, L"at,ccs=UTF-8"},
      {CQorFileUtil::_modeRtUTF16LE, L"rt,ccs=UTF-16LE"},
      {CQorFileUtil::_modeWtUTF16LE, L"wt,ccs=UTF-16LE"},
      {CQorFileUtil::_modeAtUTF16LE, L"at,ccs=UTF-16LE"},
  };
  for (const auto& [mode, text] : rows) {
    EXPECT_TEXT(text, mode);
    const CString path = In(L"modes.txt");
    ASSERT_TRUE(PutFile(path, ""));
    FILE* stream = CQorFileUtil::Open(path, mode, 0);
    EXPECT_NE(nullptr, stream) << Utf8(mode);
    if (stream != nullptr) std::fclose(stream);
  }
}

TEST_F(FoldersTest, DeleteFile) {
  ASSERT_TRUE(PutFile(In(L"a.txt"), "x"));
  ASSERT_TRUE(SetFileAttributesW(In(L"a.txt"), FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(1, CQorFileUtil::DeleteFileW(In(L"a.txt")));
  EXPECT_EQ(0, CQorFileUtil::DeleteFileW(In(L"a.txt")));
  EXPECT_EQ(0, CQorFileUtil::DeleteFileW(In(L"")));
  EXPECT_EQ(0, CQorFileUtil::DeleteFileW(nullptr));
}

TEST_F(FoldersTest, DeleteFolderWithEverythingInIt) {
  ASSERT_EQ(1, CQorFileUtil::CreateDirectories(In(L"t\\帳簿\\c")));
  ASSERT_EQ(1, CQorFileUtil::CreateDirectories(In(L"t\\empty")));
  ASSERT_TRUE(PutFile(In(L"t\\a.txt"), "x"));
  ASSERT_TRUE(PutFile(In(L"t\\帳簿\\noextension"), "x"));
  ASSERT_TRUE(SetFileAttributesW(In(L"t\\帳簿\\noextension"), FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(1, CQorFileUtil::DeleteDirectory(In(L"t")));
  EXPECT_FALSE(Exists(In(L"t")));

  EXPECT_EQ(0, CQorFileUtil::DeleteDirectory(In(L"t")));
  ASSERT_TRUE(PutFile(In(L"a.txt"), "x"));
  EXPECT_EQ(0, CQorFileUtil::DeleteDirectory(In(L"a.txt")));
  EXPECT_TRUE(Exists(In(L"a.txt")));
  EXPECT_EQ(0, CQorFileUtil::DeleteDirectory(nullptr));
  EXPECT_EQ(0, CQorFileUtil::DeleteDirectory(CString(L'x', 2000)));
}

TEST_F(FoldersTest, DeletingAnEmptyNameLeavesTheWorkingFolderAlone) {
  ASSERT_TRUE(PutFile(In(L"precious.txt"), "x"));
  {
    const InFolder working(In(L""));
    EXPECT_EQ(0, CQorFileUtil::DeleteDirectory(L""));
  }
  EXPECT_TRUE(Exists(In(L"precious.txt")));
}

}  // namespace
