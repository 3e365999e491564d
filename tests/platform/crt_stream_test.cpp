// Text streams: what stands on disk, what comes back, and where the position is.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/held_stream.h"
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

  // Everything that fgetws gives through a buffer of `capacity`; or what a held stream gives.
  std::string Lines(const wchar_t* mode, int capacity, const platform::HeldText* held = nullptr) {
    FILE* stream = Open(mode);
    if (stream == nullptr) return "(closed)";
    if (held != nullptr) platform::HoldStream(stream, *held);
    std::vector<wchar_t> buffer(static_cast<size_t>(capacity));
    std::vector<wchar_t> all;
    while ((held != nullptr ? platform::GetLine(buffer.data(), capacity, stream)
                            : fgetws(buffer.data(), capacity, stream)) != nullptr) {
      all.insert(all.end(), buffer.data(), buffer.data() + wcslen(buffer.data()));
    }
    all.push_back(0);
    EXPECT_TRUE(feof(stream));
    platform::ReleaseStream(stream);
    fclose(stream);
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

TEST_F(Stream, WideTextReadsTheSameThroughEveryBufferSize) {
  const ReadRow rows[] = {
      {"ansi line ends", L"rt", "a\r\nb\nc\rd\r\r\ne", "a\nb\nc\rd\r\ne"},
      {"ansi characters", L"rt", "\x93\xFA\x96{\xB1\r\n\x83\\", "日本ｱ\nソ"},
      {"ansi end mark", L"r",
       "ab\x1A"
       "cd",
       "ab"},
      {"ansi cr at the end", L"rt", "ab\r", "ab\r"},
      {"utf8 with mark", L"rt,ccs=UTF-8", "\xEF\xBB\xBF日本\r\n𠮷野家\r\n", "日本\n𠮷野家\n"},
      {"utf8 without mark", L"rt,ccs=UTF-8", "é\n日", "é\n日"},
      {"utf8 mark inside is text", L"rt,ccs=UTF-8",
       "a\n\xEF\xBB\xBF"
       "b",
       "a\n\xEF\xBB\xBF"
       "b"},
      {"utf8 end mark", L"rt,ccs=UTF-8", "日\x1A日", "日"},
      {"utf8 invalid", L"rt,ccs=UTF-8",
       "a\xFF"
       "b\xE3\x81\nc",
       "a\xEF\xBF\xBD"
       "b\xEF\xBF\xBD\nc"},
      {"utf8 cut", L"rt,ccs=UTF-8", "ab\xF0\x9F\x98", "ab\xEF\xBF\xBD"},
      {"utf16 with mark", L"rt,ccs=UTF-16LE", std::string("\xFF\xFE\xE5\x65\r\0\n\0\x0D\0b\0", 12),
       "日\n\rb"},
      {"utf16 without mark", L"rt,ccs=UTF-16LE", std::string("a\0\n\0b\0", 6), "a\nb"},
      {"utf16 end mark", L"rt,ccs=UTF-16LE", std::string("a\0\x1A\0b\0", 6), "a"},
      {"utf16 odd byte", L"rt,ccs=UTF-16LE", std::string("a\0b\0c", 5), "ab"},
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
      {"empty", L"rt,ccs=UTF-8", "", ""},
  };
  for (const ReadRow& row : rows) {
    ASSERT_TRUE(PutFile(Path(), row.bytes));
    const bool marked = row.bytes.substr(0, 2) == "\xFF\xFE" || row.bytes.substr(0, 3) == "\xEF\xBB\xBF";
    const bool unicode = marked || wcsstr(row.mode, L"UTF-8") != nullptr;
    const auto held = unicode ? platform::HeldText::kUnicode : platform::HeldText::kAnsi;
    for (const int capacity : {2, 3, 4, 5, 1000}) {
      EXPECT_EQ(row.text, Lines(row.mode, capacity)) << row.name << ", buffer of " << capacity;
      // What holds a stream can't know that it is UTF-16 without a mark.
      if (!unicode && wcsstr(row.mode, L"UTF-16") != nullptr) continue;
      EXPECT_EQ(row.text, Lines(row.mode, capacity, &held)) << row.name << ", held, buffer of " << capacity;
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

TEST_F(Stream, NarrowLinesWriteTheirDataAndOneTerminator) {
  ASSERT_TRUE(PutFile(Path(), std::string("ab\r\n\0x\r\ncdef\r\n\r\n12\r3", 20)));
  FILE* stream = Open(L"rt");
  struct Row {
    int capacity;
    std::string line;
    long position;
  };
  const Row rows[] = {{16, "ab\n", 4}, {16, std::string("\0x\n", 3), 8},
                      {5, "cdef", 12}, {2, "\n", 14},
                      {16, "\n", 16},  {4, "12\r", 19},
                      {16, "3", 20}};
  for (const Row& row : rows) {
    std::string buffer(32, '\x7E');
    ASSERT_NE(nullptr, fgets(buffer.data(), row.capacity, stream)) << row.position;
    EXPECT_EQ(row.line + '\0' + std::string(31 - row.line.size(), '\x7E'), buffer);
    EXPECT_EQ(row.position, ftell(stream));
  }
  char rest[8];
  EXPECT_EQ(nullptr, fgets(rest, 8, stream));
  EXPECT_TRUE(feof(stream));
  rewind(stream);
  EXPECT_FALSE(feof(stream));
  EXPECT_STREQ("ab\n", fgets(rest, 8, stream));
  fclose(stream);
}

TEST_F(Stream, LineEndAcrossTheEdgeOfTheBuffer) {
  for (size_t length = 65530; length <= 65540; ++length) {
    const std::string line(length, 'a');
    ASSERT_TRUE(PutFile(Path(), line + "\r\nb\x93\xFA"));
    FILE* stream = Open(L"rt");
    std::string buffer(70000, '\0');
    ASSERT_NE(nullptr, fgets(buffer.data(), 70000, stream));
    EXPECT_EQ(line + "\n", buffer.c_str());
    wchar_t wide[8];
    EXPECT_TEXT(L"b日", fgetws(wide, 8, stream));
    fclose(stream);
  }
  for (size_t length = 65524; length <= 65540; ++length) {
    ASSERT_TRUE(PutFile(Path(), std::string(length, 'a') + "𠮷\r\n日"));
    FILE* stream = Open(L"rt,ccs=UTF-8");
    std::vector<wchar_t> buffer(70000);
    ASSERT_NE(nullptr, fgetws(buffer.data(), 70000, stream));
    EXPECT_TEXT(L"𠮷\n", buffer.data() + length);
    EXPECT_TEXT(L"日", fgetws(buffer.data(), 8, stream));
    fclose(stream);
  }
}

TEST_F(Stream, MarksAndPlacesOfAUnicodeStream) {
  ASSERT_TRUE(PutFile(Path(), "\xEF\xBB\xBF日\r\nab\r\n"));
  FILE* stream = Open(L"rt,ccs=UTF-8");
  wchar_t buffer[8];
  EXPECT_EQ(3, ftell(stream));
  EXPECT_TEXT(L"日", fgetws(buffer, 2, stream));
  EXPECT_TEXT(L"\n", fgetws(buffer, 8, stream));
  EXPECT_EQ(0, fseek(stream, 9, SEEK_SET));
  EXPECT_EQ(static_cast<wint_t>(L'b'), fgetwc(stream));
  EXPECT_EQ(static_cast<wint_t>(L'z'), ungetwc(L'z', stream));
  EXPECT_TEXT(L"z\n", fgetws(buffer, 8, stream));
  EXPECT_EQ(WEOF, fgetwc(stream));
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
  EXPECT_EQ(-1, _wremove(folder_.Path(L"")));
  EXPECT_EQ(EACCES, errno);
  EXPECT_EQ(0, _waccess(Path(), 6));
  EXPECT_EQ(0, _wremove(Path()));
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
  fputs("a\nb\n", stream);
  rewind(stream);
  char line[8];
  EXPECT_STREQ("a\n", fgets(line, 8, stream));
  EXPECT_EQ(3, ftell(stream));
  fclose(stream);
  EXPECT_EQ("a\r\nb\r\n", GetFile(Path()));
  EXPECT_EQ(-1, _close(descriptor));
}

TEST_F(Stream, UpdateDropsAnEndMarkAtTheEnd) {
  ASSERT_TRUE(PutFile(Path(), "ab\x1A"));
  FILE* stream = Open(L"a+t");
  fputs("c\n", stream);
  fclose(stream);
  // Wine leaves the mark where it is.
  EXPECT_TRUE(HoldsExceptOnWine(GetFile(Path()) == "abc\r\n"));
}

TEST_F(Stream, FormattedTextGoesThroughTheSameTranslation) {
  FILE* stream = Open(L"wt,ccs=UTF-8");
  EXPECT_EQ(5, fwprintf(stream, L"%s=%d\n", L"金", 12));
  fclose(stream);
  EXPECT_EQ("\xEF\xBB\xBF金=12\r\n", GetFile(Path()));
}

}  // namespace
}  // namespace qorgen::tests
