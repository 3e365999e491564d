#include <gtest/gtest.h>
#include <string>

#include "qorgen/files/file_util.h"

#include "tests/support/own_temp_folder.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/throws.h"

namespace {

using namespace std::string_literals;
using qorgen::tests::CauseOf;
using qorgen::tests::Exists;
using qorgen::tests::GetFile;
using qorgen::tests::OwnTempFolder;
using qorgen::tests::PutFile;
using qorgen::tests::ScratchFolder;

using Conversion = int (*)(const wchar_t*, const wchar_t*);

CString MarkPath() {
  return CQorFileUtil::ConnectPath(CQorFileUtil::GetTempPathW(), L"uts.qor");
}

std::string Times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(TextFileConversionTest, Contents) {
  struct Row {
    Conversion convert;
    std::string source, expected;
  };
  const auto to_utf8 = CQorFileUtil::SJisToUtf8;
  const auto to_ansi = CQorFileUtil::Utf8ToSJis;
  const std::string ansi_line = "\x93\xFA\xB1,x", utf8_line = "日ｱ,x";
  const Row rows[] = {
      {to_utf8, "", ""},
      {to_utf8, "\x93\xFA\xB1\x5C\r\nb\nc\r", "日ｱ\\\r\nb\nc\r"},  // line ends stay
      {to_utf8, "\x93\xFA\0\x96\x7B"s, "日"},
      {to_utf8, "\0abc"s, ""},
      {to_utf8, "a\x93", "a・"},
      {to_utf8, "a\x1A\n", "a\x1A\n"},
      {to_utf8, Times(300'000, ansi_line), Times(300'000, utf8_line)},  // a line longer than a piece
      // What ends the text in one piece keeps the pieces behind it out.
      {to_utf8, Times(200'000, ansi_line + "\n") + "\0"s + Times(200'000, "abc\n"),
       Times(200'000, utf8_line + "\n")},
      {to_ansi, "", ""},
      {to_ansi, "a\nb\r\nc\rd\r\r\n\n日ｱ", "a\r\nb\r\nc\rd\r\r\n\r\n\x93\xFA\xB1\r\n"},
      {to_ansi, "a\r", "a\r\r\n"},
      {to_ansi, "\xEF\xBB\xBFé𠮷\xFF。", "?e???\x81\x42\r\n"},  // the mark, too, is a character
      {to_ansi, "a\0b"s, "a\r\n"},
      {to_ansi, "a\nb\x1A\n", "a\r\nb\r\n"},
      {to_ansi, "a\n\x1A\n", "a\r\n"},
      {to_ansi, Times(300'000, utf8_line), Times(300'000, ansi_line) + "\r\n"},
      {to_ansi, Times(200'000, utf8_line + "\n") + "\x1A" + Times(200'000, "abc\n"),
       Times(200'000, ansi_line + "\r\n")},
  };
  OwnTempFolder folder;
  for (const Row& row : rows) {
    PutFile(folder.Path(L"出典.txt"), row.source);
    PutFile(folder.Path(L"結果.txt"), "earlier content, longer than the new one");
    EXPECT_EQ(1, row.convert(folder.Path(L"出典.txt"), folder.Path(L"結果.txt")));
    const std::string result = GetFile(folder.Path(L"結果.txt"));
    EXPECT_TRUE(row.expected == result)
        << row.source.substr(0, 40) << " gives " << result.substr(0, 40) << ", " << result.size() << " bytes";
    EXPECT_FALSE(Exists(MarkPath()));
  }
}

TEST(TextFileConversionTest, FilesThatCannotBeOpened) {
  OwnTempFolder folder;
  PutFile(folder.Path(L"a.txt"), "a\n");
  for (const Conversion convert : {CQorFileUtil::SJisToUtf8, CQorFileUtil::Utf8ToSJis}) {
    const auto cause = [&](const wchar_t* from, const wchar_t* to) {
      return CauseOf([&] { convert(folder.Path(from), folder.Path(to)); });
    };
    EXPECT_EQ(CFileException::fileNotFound, cause(L"none.txt", L"b.txt"));
    EXPECT_EQ(CFileException::accessDenied, cause(L"", L"b.txt"));
    EXPECT_FALSE(Exists(folder.Path(L"b.txt")));
    EXPECT_FALSE(Exists(MarkPath()));
    EXPECT_EQ(CFileException::sharingViolation, cause(L"a.txt", L"a.txt"));
    EXPECT_EQ(CFileException::badPath, cause(L"a.txt", L"none\\b.txt"));
    EXPECT_EQ(CFileException::accessDenied, cause(L"a.txt", L""));
    // The mark of a call that an exception has left.
    EXPECT_EQ(convert == CQorFileUtil::Utf8ToSJis, Exists(MarkPath()));
    EXPECT_EQ("a\n", GetFile(folder.Path(L"a.txt")));
  }
  const CFile running(MarkPath(), CFile::modeCreate | CFile::modeWrite);
  EXPECT_EQ(CFileException::sharingViolation,
            CauseOf([&] { CQorFileUtil::Utf8ToSJis(folder.Path(L"a.txt"), folder.Path(L"b.txt")); }));
  EXPECT_FALSE(Exists(folder.Path(L"b.txt")));
}

TEST(TextFileConversionTest, CrlfToLfCopies) {
  ScratchFolder folder;
  PutFile(folder.Path(L"a.txt"), "a\r\nb\0c\r\n"s);
  PutFile(folder.Path(L"b.txt"), "earlier");
  EXPECT_EQ(1, CQorFileUtil::ChangeCRLFToLF(folder.Path(L"a.txt"), folder.Path(L"b.txt")));
  EXPECT_EQ("a\r\nb\0c\r\n"s, GetFile(folder.Path(L"b.txt")));
  EXPECT_EQ(0, CQorFileUtil::ChangeCRLFToLF(folder.Path(L"none.txt"), folder.Path(L"b.txt")));
  EXPECT_EQ(0, CQorFileUtil::ChangeCRLFToLF(folder.Path(L"a.txt"), folder.Path(L"")));
  EXPECT_EQ("a\r\nb\0c\r\n"s, GetFile(folder.Path(L"b.txt")));
}

}  // namespace
