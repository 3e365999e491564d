// What the host's streams do where the platform's would end the process: wrong modes and arguments; and
// streams of others.

#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/text_stream.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"

namespace qorgen::tests {
namespace {

TEST(StreamOnLinux, WrongModesAndArgumentsAreRefused) {
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"stream.txt");
  ASSERT_TRUE(PutFile(path, "x"));
  for (const wchar_t* mode : {L"", L"x", L"rbt", L"rr", L"rx", L"r++", L"rt,ccs=UTF-9", L"rt,ccs=UTF-8x",
                              L"rt,ccs", L"rb,ccs=UTF-8", L"rt;ccs=UTF-8"}) {
    errno = 0;
    EXPECT_EQ(nullptr, _wfopen(path, mode)) << Utf8(mode);
    EXPECT_EQ(EINVAL, errno);
  }
  EXPECT_EQ(nullptr, _wfopen(nullptr, L"r"));
  EXPECT_EQ(nullptr, _wfopen(path, nullptr));
  EXPECT_EQ("x", GetFile(path));
  ASSERT_TRUE(PutFile(path,
                      "\xFE\xFF"
                      "ab"));
  EXPECT_EQ(nullptr, _wfopen(path, L"rt,ccs=UTF-16LE"));
}

TEST(StreamOnLinux, StreamsOfOthersAreUtf8WithoutTranslation) {
  FILE* stream = tmpfile();
  EXPECT_GE(fputws(L"日\r\n𠮷", stream), 0);
  EXPECT_EQ(9, ftell(stream));
  rewind(stream);
  wchar_t units[8];
  // No byte is taken that isn't read.
  EXPECT_EQ(1, platform::GetText(units, 1, stream));
  EXPECT_EQ(L'日', units[0]);
  EXPECT_EQ('\r', getc(stream));
  rewind(stream);
  platform::StreamLine line;
  EXPECT_EQ(platform::LineResult::kLine, line.Read(stream));
  EXPECT_EQ(4u, line.Bytes().length);
  EXPECT_EQ(2, platform::GetText(units, 8, stream));
  EXPECT_EQ(0xD842, units[0]);
  fclose(stream);
}

// The lines that are left.
std::vector<std::string> Lines(FILE* stream, bool ansi) {
  std::vector<std::string> lines;
  platform::StreamLine line;
  while (line.Read(stream, ansi) == platform::LineResult::kLine) {
    std::vector<wchar_t> units(line.Bytes().length + platform::kLinePadding);
    units[line.Decode(units.data())] = 0;
    lines.emplace_back(Utf8(units.data()));
  }
  return lines;
}

TEST(StreamOnLinux, BuffersOfTheCallerAndBytesPutBack) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"a"), "日本\r\n𠮷\n"));
  const int own = -1;
  for (const int mode : {own, _IONBF, _IOFBF}) {
    FILE* stream = _wfopen(folder.Path(L"a"), L"rt,ccs=UTF-8");
    char buffer[7];
    if (mode != own) setvbuf(stream, mode == _IONBF ? nullptr : buffer, mode, sizeof buffer);
    wchar_t units[8];
    EXPECT_EQ(1, platform::GetText(units, 1, stream));
    EXPECT_EQ(3, ftell(stream));
    EXPECT_EQ('\n', ungetc('\n', stream));
    EXPECT_EQ('x', ungetc('x', stream));
    EXPECT_EQ((std::vector<std::string>{"x", "本", "𠮷"}), Lines(stream, false)) << mode;
    fclose(stream);
  }
}

TEST(StreamOnLinux, AnEndMarkInAPipeWaitsForNobody) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  ASSERT_EQ(6, write(ends[1], "a\nb\x1A\nc", 6));
  CString path;
  path.Format(L"/proc/self/fd/%d", ends[0]);
  FILE* stream = _wfopen(path, L"rt");
  ASSERT_NE(nullptr, stream);
  EXPECT_EQ((std::vector<std::string>{"a", "b"}), Lines(stream, true));
  fclose(stream);
  close(ends[0]);
  close(ends[1]);
}

TEST(StreamOnLinux, AnsiText) {
  FILE* stream = tmpfile();
  fputs("\x93\xFA\n\x93", stream);
  rewind(stream);
  EXPECT_EQ((std::vector<std::string>{"日", "・"}), Lines(stream, true));
  fclose(stream);
  // A lead byte before a NUL stands alone; the NUL, for which there was no room, is the first unit of the line.
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"a"), std::string("\x93\0b", 3)));
  stream = _wfopen(folder.Path(L"a"), L"rt");
  wchar_t units[2 + platform::kLinePadding];
  EXPECT_EQ(1, platform::GetText(units, 1, stream));
  platform::StreamLine line;
  EXPECT_EQ(platform::LineResult::kLine, line.Read(stream));
  EXPECT_EQ(2u, line.Decode(units));
  fclose(stream);
}

}  // namespace
}  // namespace qorgen::tests
