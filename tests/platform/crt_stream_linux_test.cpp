// What the host's streams do where the platform's would end the process: wrong modes and arguments; and
// streams of others.

#include <gtest/gtest.h>

#include "qorgen/platform/crt.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"

namespace qorgen::tests {
namespace {

// The platform's own positions in a Unicode stream are of no use, and its mark is met as a character again.
TEST(StreamOnLinux, PositionsAreBytesAndTheMarkIsSkippedAgain) {
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"stream.txt");
  ASSERT_TRUE(PutFile(path, "\xEF\xBB\xBF日\r\nab\r\n"));
  FILE* stream = _wfopen(path, L"rt,ccs=UTF-8");
  wchar_t buffer[8];
  EXPECT_EQ(3, ftell(stream));
  EXPECT_TEXT(L"日", fgetws(buffer, 2, stream));
  EXPECT_EQ(6, ftell(stream));
  EXPECT_TEXT(L"\n", fgetws(buffer, 8, stream));
  EXPECT_EQ(8, ftell(stream));
  rewind(stream);
  EXPECT_TEXT(L"日\n", fgetws(buffer, 8, stream));
  fclose(stream);

  // A Ctrl-Z ends what is read, not where the stream stands.
  ASSERT_TRUE(PutFile(path,
                      "ab\r\n3\x1A"
                      "4"));
  stream = _wfopen(path, L"rt");
  char line[8];
  EXPECT_STREQ("ab\n", fgets(line, 8, stream));
  EXPECT_EQ(4, ftell(stream));
  EXPECT_STREQ("3", fgets(line, 8, stream));
  EXPECT_EQ(5, ftell(stream));
  EXPECT_EQ(nullptr, fgets(line, 8, stream));
  fclose(stream);
}

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

  ASSERT_TRUE(PutFile(path, "ab"));
  FILE* stream = _wfopen(path, L"rt,ccs=UTF-8");
  char narrow[4];
  errno = 0;
  EXPECT_EQ(nullptr, fgets(narrow, 4, stream));
  EXPECT_EQ(EINVAL, errno);
  EXPECT_EQ(EOF, fputs("a", stream));
  wchar_t wide[4];
  EXPECT_EQ(nullptr, fgetws(wide, 0, stream));
  fclose(stream);
}

TEST(StreamOnLinux, StreamsOfOthersAreUtf8WithoutTranslation) {
  FILE* stream = tmpfile();
  EXPECT_GE(fputws(L"日\r\n𠮷", stream), 0);
  EXPECT_EQ(9, ftell(stream));
  rewind(stream);
  wchar_t text[8];
  EXPECT_TEXT(L"日\r\n", fgetws(text, 8, stream));
  EXPECT_TEXT(L"𠮷", fgetws(text, 8, stream));
  rewind(stream);
  char bytes[16];
  EXPECT_STREQ("日\r\n", fgets(bytes, 16, stream));
  fclose(stream);
}

}  // namespace
}  // namespace qorgen::tests
