#include "qorgen/exchange/space_file.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

constexpr unsigned int kNew = CFile::modeCreate | CFile::modeWrite | CFile::typeText;

TEST(SpaceFile, WritesLinesInTheLegacyEncoding) {
  ScratchFolder scratch;
  CQorSpaceFile file(scratch.Path(L"a"), kNew);
  CQorSpaceOneLine line;
  EXPECT_EQ(1, file.Write(line));
  line.AddSpace(L"日本", 3);
  line.AddZero(L"7", 3);
  EXPECT_EQ(1, file.Write(line));
  EXPECT_EQ(1, file.Write(line));
  line.Empty();
  line.AddSpace(L"a\x00E9\xD83D\xDE00z", 6);  // what the code page lacks
  line.AddZero(CString(L'x', 3000), 2999);
  EXPECT_EQ(1, file.Write(line));
  file.Close();
  const std::string row = "\x93\xFA\x96\x7B 007\r\n";
  const std::string bytes = GetFile(scratch.Path(L"a"));
  EXPECT_EQ("\r\n" + row + row, bytes.substr(0, 2 + 2 * row.size()));
  const std::string last = bytes.substr(2 + 2 * row.size());
  ASSERT_EQ('a', last.front());
  EXPECT_EQ("z " + std::string(2999, 'x') + "\r\n", last.substr(last.find('z')));
}

TEST(SpaceFile, ReadsLines) {
  ScratchFolder scratch;
  // A character whose bytes lie in two pieces of the reader.
  const std::string split = std::string(1022, 'x') + "\x93\xFA";
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "\x93\xFA 007\r\n\n" + split + "\nlast"));
  CQorSpaceFile file;
  CStdioFile& lines = file;  // the readers are those of the base
  CString line(L"former");
  EXPECT_EQ(0, lines.ReadString(line));
  ASSERT_TRUE(file.Open(scratch.Path(L"a"), CFile::modeRead | CFile::typeText, nullptr));
  for (const CString& expected :
       {CString(L"日 007"), CString(), CString(L'x', 1022) + L"日", CString(L"last")}) {
    ASSERT_EQ(1, lines.ReadString(line));
    EXPECT_TRUE(line == expected) << line.GetLength();
  }
  EXPECT_EQ(0, lines.ReadString(line));
  EXPECT_TEXT(L"last", line);
  EXPECT_THROWS_POINTER(CQorSpaceFile(scratch.Path(L"none"), CFile::modeRead), CFileException);
}

}  // namespace
