
#include "qorgen/files/file_util.h"
#include "qorgen/files/internal/file_version.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"
#include "tests/support/version_file.h"

using namespace qorgen::tests;

namespace {

class ChecksTest : public testing::Test {
 protected:
  CString In(const wchar_t* name) { return CQorFileUtil::ConnectPath(m_folder.Path(L""), name); }

  ScratchFolder m_folder;
};

TEST_F(ChecksTest, Existence) {
  ASSERT_TRUE(PutFile(In(L"売上.csv"), "x"));
  ASSERT_EQ(1, CQorFileUtil::CreateDirectoryW(In(L"sub")));
  const std::tuple<const wchar_t*, int> rows[] = {{L"売上.csv", 1}, {L"sub", 1},    {L"*.csv", 1},
                                                  {L"*.CSV", 1},    {L"売?.*", 1},  {L"*.txt", 0},
                                                  {L"none", 0},     {L"none\\x", 0}};
  for (const auto& [name, exists] : rows)
    EXPECT_EQ(exists, CQorFileUtil::IsExistFile(In(name))) << Utf8(name);
  EXPECT_EQ(0, CQorFileUtil::IsExistFile(L""));
  EXPECT_EQ(0, CQorFileUtil::IsExistFile(nullptr));
}

TEST_F(ChecksTest, Drives) {
  const std::tuple<const wchar_t*, int, int> rows[] = {
      {L"\\\\srv\\share", 1, 1}, {L"//srv", 1, 1}, {L"\\/", 1, 1},
      {L"C:\\x\\none", 0, 1},    {L"C:", 0, 1},    {L"1:\\", 0, 0},
      {L"a.txt", 0, 0},          {L"\\a", 0, 0},   {L"", 0, 0},
      {nullptr, 0, 0},
  };
  for (const auto& [path, network, alive] : rows) {
    EXPECT_EQ(network, CQorFileUtil::IsNetDrive(path)) << Utf8(path);
    EXPECT_EQ(alive, CQorFileUtil::IsDriveAlive(path)) << Utf8(path);
  }
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  SetErrorMode(mode);
  CQorFileUtil::IsDriveAlive(L"C:\\");
  EXPECT_EQ(mode, SetErrorMode(mode));
}

TEST_F(ChecksTest, TextFiles) {
  const std::tuple<std::string, long, int> rows[] = {
      {"", 100, 1},
      {"a", 100, 1},
      {"plain text", 4, 1},
      {std::string("ab\0\0", 4), 100, 0},
      {std::string("ab\0\0", 4), 2, 1},
      {"\x01z", 100, 0},
      // Units, not bytes: the byte at an odd position is passed over.
      {std::string("a\0b\0", 4), 100, 1},
      // A line end counts only as a whole unit.
      {std::string("\n\0", 2), 100, 1},
      {"a\r\nb", 100, 0},
      {"\r\nab", 100, 0},
      // 日本語 in code page 932: lead and trail bytes.
      {"\x93\xFA\x96\x7B\x8C\xEA", 100, 1},
      {"\x81", 1, 1},
      // A lead byte whose next unit is no trail byte.
      {"\x81 \x20 ", 100, 0},
      // Half-width katakana.
      {"\xB1 \xB2 ", 100, 1},
      {"\xFF ", 100, 0},
      {"text", -1, 0},
      {std::string(100000, 'a'), 0x7FFFFFFF, 1},
  };
  for (const auto& [content, sample, is_text] : rows) {
    ASSERT_TRUE(PutFile(In(L"a.txt"), content));
    EXPECT_EQ(is_text, CQorFileUtil::IsTextFile(In(L"a.txt"), sample))
        << testing::PrintToString(content.substr(0, 20)) << ' ' << sample;
  }
  EXPECT_EQ(0, CQorFileUtil::IsTextFile(In(L"none"), 100));
  EXPECT_EQ(0, CQorFileUtil::IsTextFile(In(L""), 100));
  EXPECT_EQ(0, CQorFileUtil::IsTextFile(nullptr, 100));
}

TEST_F(ChecksTest, WritableFolder) {
  EXPECT_EQ(1, CQorFileUtil::WriteCheck(In(L"")));
  EXPECT_EQ(0, CQorFileUtil::IsExistFile(In(L"ask*")));
  EXPECT_EQ(0, CQorFileUtil::WriteCheck(In(L"none")));
  EXPECT_EQ(0, CQorFileUtil::WriteCheck(CString(L'x', 400)));
  EXPECT_EQ(0, CQorFileUtil::WriteCheck(nullptr));
}

TEST_F(ChecksTest, DigestOfTheFirstBlock) {
  const std::string block(65536, 'q');
  const std::tuple<std::string, const wchar_t*> rows[] = {
      {"", L"d41d8cd98f00b204e9800998ecf8427e"},
      {"message digest", L"f96b697d7cb7938d525a2f31aaf161d0"},
  };
  CString digest;
  for (const auto& [content, expected] : rows) {
    ASSERT_TRUE(PutFile(In(L"a"), content));
    EXPECT_EQ(1, CQorFileUtil::GetFileMD5(In(L"a"), digest));
    EXPECT_TEXT(expected, digest);
  }
  CString digests[3];
  const std::string contents[3] = {block, block + "one", block.substr(1)};
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(PutFile(In(L"a"), contents[i]));
    ASSERT_EQ(1, CQorFileUtil::GetFileMD5(In(L"a"), digests[i]));
  }
  EXPECT_TEXT(digests[0], digests[1]);
  EXPECT_NE(Utf8(digests[0]), Utf8(digests[2]));

  EXPECT_EQ(0, CQorFileUtil::GetFileMD5(In(L"none"), digest));
  EXPECT_TEXT(L"", digest);
  EXPECT_EQ(0, CQorFileUtil::GetFileMD5(nullptr, digest));
  EXPECT_EQ(0, CQorFileUtil::GetFileMD5(In(L""), digest));
  CString own = In(L"a");
  EXPECT_EQ(1, CQorFileUtil::GetFileMD5(own, own));
  EXPECT_TEXT(digests[2], own);
}

TEST_F(ChecksTest, StatusAndNames) {
  ASSERT_TRUE(PutFile(In(L"a"), "12345"));
  EXPECT_EQ(5u, CQorFileUtil::GetFileStatus(In(L"a")).m_size);
  for (const wchar_t* none : {L"none", static_cast<const wchar_t*>(nullptr)})
    EXPECT_EQ(CTime(), CQorFileUtil::GetFileStatus(none).m_mtime);
  EXPECT_EQ(1, CQorFileUtil::IsEqualFile(L"A.TXT", L"a.txt"));
  EXPECT_EQ(0, CQorFileUtil::IsEqualFile(L"a.txt", L".\\a.txt"));
  EXPECT_EQ(1, CQorFileUtil::IsEqualFile(nullptr, L""));
}

TEST_F(ChecksTest, Versions) {
  ASSERT_TRUE(PutFile(In(L"a.dll"), MakeVersionFile({0x00010002, 0x00030004, 0x00050006, 0x00070008})));
  unsigned long high = 9;
  unsigned long low = 9;
  EXPECT_EQ(1, CQorFileUtil::GetFileVer(high, low, In(L"a.dll")));
  EXPECT_EQ(0x00010002u, high);
  EXPECT_EQ(0x00030004u, low);
  EXPECT_EQ(1, CQorFileUtil::GetProductVer(high, low, In(L"a.dll")));
  EXPECT_EQ(0x00050006u, high);
  EXPECT_EQ(0x00070008u, low);
  EXPECT_TEXT(L"1.2.3.4", CQorFileUtil::GetFileVerStr(In(L"a.dll")));
  EXPECT_TEXT(L"5.6.7.8", CQorFileUtil::GetProductVerStr(In(L"a.dll")));

  // Numbers without a list of languages count as no version.
  ASSERT_TRUE(PutFile(In(L"b.dll"), MakeVersionFile({1, 2, 3, 4, false})));
  ASSERT_TRUE(PutFile(In(L"c.txt"), "text"));
  for (const wchar_t* name : {L"b.dll", L"c.txt", L"none", L""}) {
    high = low = 9;
    EXPECT_EQ(0, CQorFileUtil::GetFileVer(high, low, In(name))) << Utf8(name);
    EXPECT_EQ(0u, high);
    EXPECT_EQ(0u, low);
    EXPECT_EQ(0, CQorFileUtil::GetProductVer(high, low, In(name)));
    EXPECT_TEXT(L"", CQorFileUtil::GetFileVerStr(In(name)));
    EXPECT_TEXT(L"", CQorFileUtil::GetProductVerStr(In(name)));
  }
  EXPECT_EQ(0, CQorFileUtil::GetFileVer(high, low, nullptr));  // the test program itself has none
  CQorFileVerInfo info;
  EXPECT_EQ(nullptr, info.GetFixedInfo());
  EXPECT_EQ(1, info.Load(In(L"a.dll")));
  EXPECT_NE(nullptr, info.GetFixedInfo());
  EXPECT_EQ(0, info.Load(In(L"b.dll")));
  EXPECT_EQ(nullptr, info.GetFixedInfo());
}

}  // namespace
