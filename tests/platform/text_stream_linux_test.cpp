// What the host's streams do where the platform's would end the process: wrong modes and arguments; and
// streams of others.

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace qorgen::tests
