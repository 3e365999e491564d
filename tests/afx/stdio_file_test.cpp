#include "qorgen/afx/stdio_file.h"

#include <gtest/gtest.h>
#include <tuple>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/locale.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"
#include "tests/support/throws.h"

namespace qorgen::tests {
namespace {

constexpr unsigned int kCreateText = CFile::modeCreate | CFile::modeWrite | CFile::typeText;

// On Windows the streams of a process that has set no locale know ASCII alone.
class JapaneseLocale {
 public:
  JapaneseLocale() { _wsetlocale(LC_ALL, L"japanese"); }
  ~JapaneseLocale() { _wsetlocale(LC_ALL, L"C"); }
};

TEST(CStdioFile, WritesTextWithCrLfInTheAnsiCodePage) {
  const JapaneseLocale locale;
  ScratchFolder scratch;
  CStdioFile file(scratch.Path(L"a.txt"), kCreateText);
  file.WriteString(L"仕訳\nｱ\n");
  file.WriteString(nullptr);
  file.WriteString(L"end");
  EXPECT_EQ(file.GetLength(), 12u);
  EXPECT_EQ(file.GetPosition(), 12u);
  file.Close();
  EXPECT_EQ(GetFile(scratch.Path(L"a.txt")), "\x8E\x64\x96\xF3\r\n\xB1\r\nend");
}

TEST(CStdioFile, ReadsLinesOfEveryLengthAndKind) {
  ScratchFolder scratch;
  const std::string long_line(100000, 'x');
  const std::string bytes = "\r\nshort\n" + long_line + "\r\n" + std::string("nul\0inside\n", 11) +
                            "\xE5\xB8\xB3 \xF0\x9F\x93\x84\nlast";
  const CString lines[] = {L"",     L"short", CString(L'x', 100000), CString(L"nul\0inside", 10),
                           L"帳 📄", L"last"};
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), bytes));
  CStdioFile file(_wfopen(scratch.Path(L"a"), L"rt,ccs=UTF-8"));
  CString line = L"before";
  const CString shared = line;
  for (int pass = 0; pass < 2; ++pass) {
    for (const CString& expected : lines) {
      ASSERT_EQ(file.ReadString(line), 1);
      EXPECT_TRUE(line == expected) << Utf8(expected.Left(20));
    }
    EXPECT_EQ(file.ReadString(line), 0);
    EXPECT_TEXT(L"", line);
    file.SeekToBegin();
  }
  EXPECT_TEXT(L"before", shared);
  file.Close();
}

TEST(CStdioFile, ALineReusesTheBlockOfItsString) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), std::string(5000, 'x') + "\nsecond\nthird\n"));
  CStdioFile file(scratch.Path(L"a"), CFile::modeRead);
  CString line;
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_EQ(line.GetLength(), 5000);
  const wchar_t* block = line;
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_TEXT(L"second", line);
  EXPECT_EQ(static_cast<const wchar_t*>(line), block);
}

TEST(CStdioFile, BufferFormOfReadString) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "abc\r\nde"));
  CStdioFile file(scratch.Path(L"a"), CFile::modeRead);
  wchar_t buffer[4] = {L'#', L'#', L'#', L'#'};
  EXPECT_EQ(file.ReadString(nullptr, 4), nullptr);
  EXPECT_EQ(file.ReadString(buffer, 0), nullptr);
  const wchar_t* pieces[] = {L"abc", L"\n", L"de"};
  for (const wchar_t* piece : pieces) {
    EXPECT_EQ(file.ReadString(buffer, 4), buffer);
    EXPECT_TEXT(piece, buffer);
  }
  EXPECT_EQ(file.ReadString(buffer, 4), nullptr);
  EXPECT_TEXT(L"de", buffer);
}

TEST(CStdioFile, KeepsItsPlaceHoweverItIsRead) {
  const JapaneseLocale locale;
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "a\nb\r\nc\rd\r\r\n\n\x8E\x64x"));
  CStdioFile file(scratch.Path(L"a"), CFile::modeReadWrite | CFile::typeText);
  const struct {
    unsigned int room;
    const wchar_t* text;
    unsigned long long place;
  } rows[] = {{9, L"a\n", 2},   {2, L"b", 3},   {9, L"\n", 5},  {4, L"c\rd", 8},
              {9, L"\r\n", 11}, {9, L"\n", 12}, {2, L"仕", 14}, {9, L"x", 15}};
  for (int pass = 0; pass < 2; ++pass) {
    unsigned long long place = 0;
    for (const auto& row : rows) {
      wchar_t text[9];
      // The length asked for in between costs nothing.
      for (int look = 0; look < 2; ++look) {
        EXPECT_EQ(file.Seek(static_cast<long long>(place), CFile::begin), place);
        EXPECT_EQ(file.GetLength(), 15u);
        ASSERT_NE(file.ReadString(text, row.room), nullptr);
        EXPECT_TEXT(row.text, text);
        EXPECT_EQ(file.GetPosition(), row.place);
      }
      place = row.place;
    }
    file.SeekToBegin();
  }
  // What is written stands where the reading was, and the runtime goes on from there.
  CString line;
  ASSERT_TRUE(file.ReadString(line));
  file.WriteString(L"B");
  EXPECT_EQ(file.GetPosition(), 3u);
  file.Flush();
  file.Seek(0, CFile::current);
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_TEXT(L"", line);
  file.Flush();
  EXPECT_EQ(fgetc(file.m_pStream), 'c');
  file.Close();
  EXPECT_EQ(GetFile(scratch.Path(L"a")), "a\nB\r\nc\rd\r\r\n\n\x8E\x64x");

  // A stream that stays the caller's goes on, too.
  FILE* stream = _wfopen(scratch.Path(L"a"), L"rb");
  char bytes[2];
  {
    CStdioFile borrowed(stream);
    EXPECT_EQ(borrowed.Read(bytes, 2), 2u);
    EXPECT_EQ(borrowed.GetLength(), 15u);
    borrowed.Flush();
    EXPECT_EQ(borrowed.GetPosition(), 2u);
  }
  EXPECT_EQ(fgetc(stream), 'B');
  fclose(stream);
}

TEST(CStdioFile, BytesOfATextFileAreTranslated) {
  ScratchFolder scratch;
  CStdioFile file(scratch.Path(L"a"), kCreateText);
  file.Write("a\n\r\n", 4);
  file.Close();
  EXPECT_EQ(GetFile(scratch.Path(L"a")), "a\r\n\r\r\n");
  ASSERT_TRUE(file.Open(scratch.Path(L"a"), CFile::modeRead | CFile::typeText));
  char bytes[8];
  EXPECT_EQ(file.Read(bytes, sizeof bytes), 4u);
  EXPECT_EQ(std::string(bytes, 4), "a\n\r\n");
  EXPECT_EQ(file.GetPosition(), 6u);
}

TEST(CStdioFile, OpenModes) {
  ScratchFolder scratch;
  const std::tuple<unsigned int, const char*> rows[] = {
      {CFile::modeWrite | CFile::typeBinary, "Xld"},
      {CFile::modeReadWrite | CFile::typeBinary, "Xld"},
      {CFile::modeCreate | CFile::modeWrite | CFile::typeBinary, "X"},
      {CFile::modeCreate | CFile::modeReadWrite | CFile::typeText, "X"},
      {CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite | CFile::typeText, "Xld"},
      {CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite, "Xld"},
  };
  for (const auto& [flags, after] : rows) {
    ASSERT_TRUE(PutFile(scratch.Path(L"a"), "old"));
    CStdioFile file;
    ASSERT_TRUE(file.Open(scratch.Path(L"a"), flags)) << flags;
    file.Write("X", 1);
    file.Close();
    EXPECT_EQ(GetFile(scratch.Path(L"a")), after) << flags;
  }
  // Reading and writing in turn, and a new length.
  CStdioFile file(scratch.Path(L"b"), CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary);
  file.Write("0123456789", 10);
  file.SetLength(4);
  EXPECT_EQ(file.GetLength(), 4u);
  EXPECT_EQ(file.GetPosition(), 4u);
  file.SeekToBegin();
  char text[8];
  EXPECT_EQ(file.Read(text, sizeof text), 4u);
  EXPECT_EQ(std::string(text, 4), "0123");
  EXPECT_EQ(file.Read(text, sizeof text), 0u);
  CFileStatus status;
  ASSERT_TRUE(file.GetStatus(status));
  EXPECT_EQ(status.m_size, 4u);
  EXPECT_THROWS_POINTER(file.Duplicate(), CNotSupportedException);
  EXPECT_THROWS_POINTER(file.LockRange(0, 1), CNotSupportedException);
}

TEST(CStdioFile, FailuresHaveTheirCause) {
  ScratchFolder scratch;
  const std::tuple<const wchar_t*, int> rows[] = {{scratch.Path(L"none"), CFileException::fileNotFound},
                                                  {scratch.Path(L"none\\a"), CFileException::badPath},
                                                  {scratch.Path(L""), CFileException::accessDenied}};
  for (const auto& [path, cause] : rows) {
    try {
      CStdioFile file(path, CFile::modeRead);
      ADD_FAILURE();
    } catch (CFileException* thrown) {
      EXPECT_EQ(thrown->m_cause, cause);
      EXPECT_TEXT(path, thrown->m_strFileName);
      thrown->Delete();
    }
  }
  CStdioFile closed;
  CString line;
  EXPECT_THROWS_POINTER(closed.ReadString(line), CFileException);
  EXPECT_THROWS_POINTER(closed.WriteString(L"x"), CFileException);
  EXPECT_THROWS_POINTER(closed.GetLength(), CFileException);
  closed.Flush();
  closed.Close();
  EXPECT_THROWS_POINTER(CStdioFile(static_cast<FILE*>(nullptr)).GetPosition(), CFileException);

  // A stream for one direction refuses the other.
  CStdioFile writer(scratch.Path(L"w"), kCreateText);
  EXPECT_THROWS_POINTER(writer.ReadString(line), CFileException);
  writer.Close();
  CStdioFile reader(scratch.Path(L"w"), CFile::modeRead);
  EXPECT_THROWS_POINTER(reader.WriteString(L"x"), CFileException);
  EXPECT_THROWS_POINTER(reader.Seek(-1, CFile::end), CFileException);
  EXPECT_THROWS_POINTER(reader.Seek(0, 3), CFileException);
}

TEST(CStdioFile, ClosesWhatItOpened) {
  ScratchFolder scratch;
  {
    CStdioFile file(scratch.Path(L"a"), kCreateText);
    file.WriteString(L"kept");
  }
  EXPECT_EQ(GetFile(scratch.Path(L"a")), "kept");
  EXPECT_TRUE(DeleteFileW(scratch.Path(L"a")));

  FILE* stream = _wfopen(scratch.Path(L"b"), L"wb");
  { const CStdioFile file(stream); }
  EXPECT_EQ(std::fputc('x', stream), 'x');
  CStdioFile owner(stream);
  owner.Close();
  EXPECT_EQ(GetFile(scratch.Path(L"b")), "x");
  EXPECT_TRUE(DeleteFileW(scratch.Path(L"b")));

  // A second file for the same object.
  CStdioFile file(scratch.Path(L"c"), kCreateText);
  file.WriteString(L"1");
  ASSERT_TRUE(file.Open(scratch.Path(L"d"), kCreateText));
  file.WriteString(L"2");
  EXPECT_TEXT(L"d", file.GetFileName());
  file.Abort();
  EXPECT_EQ(GetFile(scratch.Path(L"c")), "1");
  EXPECT_EQ(GetFile(scratch.Path(L"d")), "2");
}

}  // namespace
}  // namespace qorgen::tests
