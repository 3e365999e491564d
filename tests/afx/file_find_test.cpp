#include "qorgen/afx/file_find.h"

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

TEST(CFileFind, StepsThroughAFolder) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"b.tar.gz"), "12345"));
  ASSERT_TRUE(PutFile(scratch.Path(L"a.txt"), ""));
  CreateDirectoryW(scratch.Path(L"帳簿"), nullptr);
  SetFileAttributesW(scratch.Path(L"a.txt"), FILE_ATTRIBUTE_READONLY);

  using Row = std::tuple<const wchar_t*, const wchar_t*, int, int, int, unsigned long long>;
  CFileFind finder;
  int more = finder.FindFile(scratch.Path(L"*.*"));
  EXPECT_TRUE(more);
  EXPECT_TEXT(L"", finder.GetFileName());
  for (const auto& [name, title, dots, folder, read_only, length] :
       Rows(Row(L".", L".", 1, 1, 0, 0), Row(L"..", L"..", 1, 1, 0, 0), Row(L"a.txt", L"a", 0, 0, 1, 0),
            Row(L"b.tar.gz", L"b.tar", 0, 0, 0, 5), Row(L"帳簿", L"帳簿", 0, 1, 0, 0))) {
    ASSERT_TRUE(more);
    more = finder.FindNextFile();
    EXPECT_EQ(more, CString(name) != L"帳簿");
    EXPECT_TEXT(name, finder.GetFileName());
    EXPECT_TEXT(title, finder.GetFileTitle());
    EXPECT_TEXT(scratch.Path(name), finder.GetFilePath());
    EXPECT_TEXT(L"file://" + CString(scratch.Path(name)), finder.GetFileURL());
    EXPECT_EQ(finder.IsDots(), dots);
    EXPECT_EQ(finder.IsDirectory(), folder);
    EXPECT_EQ(finder.MatchesMask(FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY), folder | read_only);
    EXPECT_EQ(finder.IsReadOnly(), read_only);
    EXPECT_EQ(finder.GetLength(), length);
    CTime time;
    EXPECT_TRUE(finder.GetLastWriteTime(time));
    EXPECT_GT(time.GetTime(), 1700000000);
  }
  EXPECT_TEXT(scratch.Path(L""), finder.GetRoot());
  // Another step stays where it is.
  EXPECT_FALSE(finder.FindNextFile());
  EXPECT_TEXT(L"帳簿", finder.GetFileName());
  SetFileAttributesW(scratch.Path(L"a.txt"), FILE_ATTRIBUTE_NORMAL);
}

TEST(CFileFind, AnswersWithoutAFile) {
  ScratchFolder scratch;
  CFileFind finder;
  FILETIME time = {1, 2};
  EXPECT_FALSE(finder.FindNextFile());
  EXPECT_FALSE(finder.FindFile(scratch.Path(L"none*")));
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_FALSE(finder.FindFile(scratch.Path(L"none\\*")));
  EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
  EXPECT_FALSE(finder.FindFile(L""));
  EXPECT_EQ(finder.GetLength(), 0u);
  EXPECT_FALSE(finder.IsDirectory());
  EXPECT_FALSE(finder.GetCreationTime(&time));
  EXPECT_EQ(time.dwLowDateTime, 1u);
  EXPECT_TEXT(L"", finder.GetFilePath());
}

TEST(CFileFind, FindsOneNameAndBeginsAnew) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "x"));
  CFileFind finder;
  EXPECT_TRUE(finder.FindFile(scratch.Path(L"a")));
  EXPECT_FALSE(finder.FindNextFile());
  EXPECT_TEXT(scratch.Path(L"a"), finder.GetFilePath());
  EXPECT_TRUE(finder.FindFile(scratch.Path(L"")));
  EXPECT_FALSE(finder.IsDirectory());
  EXPECT_FALSE(finder.FindNextFile());
  EXPECT_TRUE(finder.IsDirectory());
  finder.Close();
  EXPECT_TEXT(L"", finder.GetRoot());

  // A search in the working folder, by its pattern and by null, and one in a root.
  {
    const InFolder working(scratch.Path(L""));
    EXPECT_TRUE(finder.FindFile(L"A*"));
    finder.FindNextFile();
    EXPECT_TEXT(scratch.Path(L"a"), finder.GetFilePath());
    EXPECT_TRUE(finder.FindFile());
    EXPECT_TEXT(scratch.Path(L""), finder.GetRoot());
  }
  EXPECT_TRUE(finder.FindFile(L"C:\\*"));
  EXPECT_TEXT(L"C:\\", finder.GetRoot());
  finder.FindNextFile();
  EXPECT_TEXT(L"C:\\" + finder.GetFileName(), finder.GetFilePath());
}

}  // namespace
}  // namespace qorgen::tests
