// Text streams: what stands on disk, what comes back, and where the position is.

#include "qorgen/platform/text_stream.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/locale.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace qorgen::tests {
namespace {

class Stream : public testing::Test {
 protected:
  // On Windows the process starts in the "C" locale, where streams have no code page.
  void SetUp() override { _wsetlocale(LC_ALL, L"japanese"); }

  FILE* Open(const wchar_t* mode) { return _wfopen(Path(), mode); }
  const wchar_t* Path() { return folder_.Path(L"stream.txt"); }

  // What is left of a stream, in lines and in pieces of up to `room` units in turn.
  static std::string Rest(FILE* stream, size_t room) {
    std::vector<wchar_t> all;
    std::vector<wchar_t> piece(room);
    for (;;) {
      const std::ptrdiff_t count = platform::GetText(piece.data(), room, stream);
      if (count <= 0) break;
      all.insert(all.end(), piece.begin(), piece.begin() + count);
      platform::StreamLine line;
      if (line.Read(stream) != platform::LineResult::kLine) continue;
      std::vector<wchar_t> units(line.Bytes().length + platform::kLinePadding);
      const size_t length = line.Decode(units.data());
      all.insert(all.end(), units.data(), units.data() + length);
      if (line.Bytes().ended) all.push_back(L'\n');
    }
    all.push_back(0);
    return Utf8(all.data());
  }

  ScratchFolder folder_;
};

struct ReadRow {
  const char* name;
  const wchar_t* mode;
  std::string bytes;
  std::string text;
};

TEST_F(Stream, EveryModeReadsItsText) {
  const ReadRow rows[] = {
      {"ansi", L"rt",
       "\x93\xFA\x96{\r\n\xB1\x83\\\na\rb\x1A"
       "c",
       "日本\nｱソ\na\rb"},
      {"utf8 with mark", L"rt,ccs=UTF-8", "\xEF\xBB\xBF日本\r\n𠮷野家\r\n", "日本\n𠮷野家\n"},
      {"utf8 without mark", L"rt,ccs=UTF-8", "é\n日", "é\n日"},
      {"utf16 with mark", L"rt,ccs=UTF-16LE", std::string("\xFF\xFE\xE5\x65\r\0\n\0\x0D\0b\0", 12),
       "日\n\rb"},
      {"utf16 without mark", L"rt,ccs=UTF-16LE", std::string("a\0\n\0b\0", 6), "a\nb"},
      {"the file's mark wins over utf8", L"rt,ccs=UTF-8",
       std::string("\xFF\xFE"
                   "a\0",
                   4),
       "a"},
      {"the file's mark wins over utf16", L"rt,ccs=UTF-16LE",
       "\xEF\xBB\xBF"
       "a",
       "a"},
      {"unicode without mark is ansi", L"rt,ccs=UNICODE", "\x93\xFA", "日"},
      {"binary", L"rb", std::string("a\0\r\0\n\0b\0", 8), "a\r\nb"},
  };
  for (const ReadRow& row : rows) {
    ASSERT_TRUE(PutFile(Path(), row.bytes));
    const bool marked = row.bytes.substr(0, 2) == "\xFF\xFE" || row.bytes.substr(0, 3) == "\xEF\xBB\xBF";
    const bool unicode = marked || Utf8(row.mode).find("UTF-8") != std::string::npos;
    // What holds a stream can't know that it is binary, or UTF-16 without a mark.
    const bool holds = row.mode[1] == L't' && (unicode || Utf8(row.mode).find("UTF-16") == std::string::npos);
    for (const bool held : {false, true}) {
      for (const size_t room : {1, 2, 3, 1000}) {
        FILE* stream = Open(row.mode);
        ASSERT_NE(nullptr, stream) << row.name;
        if (held && holds) {
          platform::HoldStream(stream, unicode ? platform::HeldText::kUnicode : platform::HeldText::kAnsi);
        }
        EXPECT_EQ(row.text, Rest(stream, room))
            << row.name << (held ? ", held" : "") << ", room for " << room;
        platform::ReleaseStream(stream);
        fclose(stream);
      }
    }
  }
}

struct WriteRow {
  const char* name;
  const wchar_t* mode;
  const char* before;
  std::vector<const wchar_t*> texts;
  std::string bytes;
};

TEST_F(Stream, WideTextIsWrittenInTheStreamsEncoding) {
  const WriteRow rows[] = {
      {"ansi", L"wt", "old", {L"日本\n", L"a\r\n"}, "\x93\xFA\x96{\r\na\r\r\n"},
      {"utf8", L"wt,ccs=UTF-8", "old", {L"日\n"}, "\xEF\xBB\xBF日\r\n"},
      {"utf8 pair over two calls", L"wt,ccs=UTF-8", "", {L"\xD842", L"\xDFB7"}, "\xEF\xBB\xBF𠮷"},
      {"utf8 lone halves",
       L"wt,ccs=UTF-8",
       "",
       {L"\xDFB7", L"a\xD842"},
       "\xEF\xBB\xBF\xEF\xBF\xBD"
       "a\xEF\xBF\xBD"},
      {"utf8 mark alone", L"wt,ccs=UTF-8", "old", {}, "\xEF\xBB\xBF"},
      {"utf16",
       L"wt,ccs=UTF-16LE",
       "",
       {L"a\n"},
       std::string("\xFF\xFE"
                   "a\0\r\0\n\0",
                   8)},
      {"append to nothing",
       L"at,ccs=UTF-8",
       "",
       {L"a"},
       "\xEF\xBB\xBF"
       "a"},
      {"append keeps what is there", L"at,ccs=UTF-8", "x", {L"日"}, "x日"},
      {"append in the file's encoding", L"at,ccs=UTF-16LE", "\xEF\xBB\xBFx", {L"日"}, "\xEF\xBB\xBFx日"},
      {"binary", L"wb", "", {L"a\n"}, std::string("a\0\n\0", 4)},
  };
  for (const WriteRow& row : rows) {
    ASSERT_TRUE(PutFile(Path(), row.before));
    FILE* stream = Open(row.mode);
    ASSERT_NE(nullptr, stream) << row.name;
    for (const wchar_t* text : row.texts) EXPECT_GE(fputws(text, stream), 0) << row.name;
    EXPECT_EQ(0, fclose(stream));
    EXPECT_EQ(row.bytes, GetFile(Path())) << row.name;
  }
}

TEST_F(Stream, CharacterWithoutCodeEndsTheWriting) {
  FILE* stream = Open(L"wt");
  errno = 0;
  EXPECT_EQ(static_cast<int>(WEOF), fputws(L"ab\xAC00"
                                           L"cd",
                                           stream));
  EXPECT_EQ(EILSEQ, errno);
  fclose(stream);
  EXPECT_EQ("ab", GetFile(Path()));
}

TEST_F(Stream, HeldStreamsStandBehindWhatWasRead) {
  ASSERT_TRUE(PutFile(Path(), "\xEF\xBB\xBF日\r\nab\r\n" + std::string(70000, 'x') + "\r\n𠮷\n"));
  FILE* stream = Open(L"rt,ccs=UTF-8");
  platform::HoldStream(stream, platform::HeldText::kUnicode);
  wchar_t units[8];
  platform::StreamLine line;
  EXPECT_EQ(1, platform::GetText(units, 1, stream));
  EXPECT_EQ(6, platform::TellStream(stream));
  EXPECT_EQ(1, platform::GetText(units, 8, stream));
  EXPECT_EQ(8, platform::TellStream(stream));
  EXPECT_EQ(0, platform::SeekStream(stream, 9, SEEK_SET));
  EXPECT_EQ(platform::LineResult::kLine, line.Read(stream));
  EXPECT_EQ(1u, line.Bytes().length);
  // Across the edge of the buffer, and the half of a pair that finds no room.
  EXPECT_EQ(platform::LineResult::kLine, line.Read(stream));
  EXPECT_EQ(70000u, line.Bytes().length);
  EXPECT_EQ(70014, platform::TellStream(stream));
  EXPECT_EQ(1, platform::GetText(units, 1, stream));
  EXPECT_EQ(70018, platform::TellStream(stream));
  EXPECT_EQ(2, platform::GetText(units, 8, stream));
  EXPECT_EQ(0xDFB7, units[0]);
  EXPECT_EQ(0, platform::GetText(units, 8, stream));
  platform::ReleaseStream(stream);
  fclose(stream);
}

TEST_F(Stream, EndMarkEndsAtTheEndOfTheFile) {
  ASSERT_TRUE(PutFile(Path(),
                      "ab\r\n\x1A"
                      "cd\r\n"));
  FILE* stream = Open(L"rt");
  platform::HoldStream(stream, platform::HeldText::kAnsi);
  EXPECT_EQ("ab\n", Rest(stream, 1));
  EXPECT_EQ(9, platform::TellStream(stream));
  EXPECT_EQ(0, platform::SeekStream(stream, 0, SEEK_SET));
  char bytes[8];
  EXPECT_EQ(3, platform::GetBytes(bytes, 8, stream));
  EXPECT_EQ("ab\n", std::string(bytes, 3));
  platform::ReleaseStream(stream);
  fclose(stream);
}

TEST_F(Stream, ModesAndRefusals) {
  for (const wchar_t* mode :
       {L"r", L"rb", L"r+", L"rt+", L"a+b", L"w+", L"r, ccs = utf-8", L"at,ccs=UTF-16LE"}) {
    ASSERT_TRUE(PutFile(Path(), "x"));
    FILE* stream = Open(mode);
    ASSERT_NE(nullptr, stream) << Utf8(mode);
    fclose(stream);
  }
  errno = 0;
  EXPECT_EQ(nullptr, _wfopen(folder_.Path(L""), L"rt"));
  EXPECT_EQ(EACCES, errno);
  EXPECT_EQ(nullptr, _wfopen(folder_.Path(L"none\\none.txt"), L"wt"));
  EXPECT_EQ(ENOENT, errno);
  EXPECT_EQ(0, _waccess(Path(), 6));
  DeleteFileW(Path());
  EXPECT_EQ(-1, _waccess(Path(), 0));
  EXPECT_EQ(ENOENT, errno);
}

TEST_F(Stream, DescriptorOfAHandleBecomesAStream) {
  const HANDLE handle =
      CreateFileW(Path(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_TEXT);
  ASSERT_GE(descriptor, 0);
  EXPECT_EQ(reinterpret_cast<intptr_t>(handle), _get_osfhandle(descriptor));
  FILE* stream = _wfdopen(descriptor, L"w+t");
  ASSERT_NE(nullptr, stream);
  EXPECT_EQ(descriptor, _fileno(stream));
  EXPECT_TRUE(platform::PutBytes("a\nb\n", 4, stream));
  fclose(stream);
  EXPECT_EQ("a\r\nb\r\n", GetFile(Path()));
  EXPECT_EQ(-1, _close(descriptor));
}

TEST_F(Stream, UpdateDropsAnEndMarkAtTheEnd) {
  ASSERT_TRUE(PutFile(Path(), "ab\x1A"));
  FILE* stream = Open(L"a+t");
  EXPECT_TRUE(platform::PutBytes("c\n", 2, stream));
  fclose(stream);
  // Wine leaves the mark where it is.
  EXPECT_TRUE(HoldsExceptOnWine(GetFile(Path()) == "abc\r\n"));
}

}  // namespace
}  // namespace qorgen::tests
