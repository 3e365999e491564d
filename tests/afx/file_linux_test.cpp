// A device that is always full stands for a full disk.

#include "qorgen/afx/stdio_file.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

TEST(FullDisk, IsTheCauseWhereverItShows) {
  constexpr unsigned int kFlags = CFile::modeWrite | CFile::shareDenyNone;
  CFile file(L"/dev/full", kFlags);
  EXPECT_EQ(CauseOf([&] { file.Write("x", 1); }), CFileException::diskFull);

  CStdioFile flushed(L"/dev/full", kFlags);
  flushed.WriteString(L"x");
  EXPECT_EQ(CauseOf([&] { flushed.Flush(); }), CFileException::diskFull);
  flushed.Abort();
  CStdioFile closed(L"/dev/full", kFlags);
  closed.Write("x", 1);
  EXPECT_EQ(CauseOf([&] { closed.Close(); }), CFileException::diskFull);
  CStdioFile large(L"/dev/full", kFlags);
  const CString text(L'x', 1000000);
  EXPECT_EQ(CauseOf([&] { large.WriteString(text); }), CFileException::diskFull);
  CStdioFile raw(L"/dev/full", kFlags);
  const std::string bytes(1000000, 'x');
  EXPECT_EQ(CauseOf([&] { raw.Write(bytes.data(), 1000000); }), CFileException::diskFull);
}

}  // namespace
}  // namespace qorgen::tests
