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
  EXPECT_THROWS_POINTER(CQorSpaceFile(scratch.Path(L"none"), CFile::modeRead), CFileException);
  const std::string row = "\x93\xFA\x96\x7B 007\r\n";
  const std::string bytes = GetFile(scratch.Path(L"a"));
  EXPECT_EQ("\r\n" + row + row, bytes.substr(0, 2 + 2 * row.size()));
  const std::string last = bytes.substr(2 + 2 * row.size());
  ASSERT_EQ('a', last.front());
  EXPECT_EQ("z " + std::string(2999, 'x') + "\r\n", last.substr(last.find('z')));
}

}  // namespace
