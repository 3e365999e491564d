#include "qorgen/platform/linux/filesystem/path_mapping.h"

#include "tests/support/testing.h"

namespace qorgen::platform {
namespace {

using qorgen::tests::Utf8;

TEST(PathMapping, HostPathOfEitherVocabulary) {
  const std::pair<const wchar_t*, const char*> rows[] = {
      {L"C:\\a\\b.txt", "/a/b.txt"},
      {L"c:/a/b.txt", "/a/b.txt"},
      {L"\\a\\b", "/a/b"},
      {L"/a/b", "/a/b"},
      {L"a\\b/c", "a/b/c"},
      {L"C:a\\b", "a/b"},
      {L"C:", "."},
      {L"C:\\", "/"},
      {L"\\", "/"},
      {L".", "."},
      {L".\\", "./"},
      {L"..", ".."},
      {L"..\\..\\a", "../../a"},
      {L"a\\..\\..\\b", "../b"},
      {L"a\\..", "."},
      {L"C:\\a\\.\\b\\..\\c", "/a/c"},
      {L"C:\\a\\..\\..\\b\\", "/b/"},
      {L"C:\\a\\\\b\\\\", "/a/b/"},
      {L"C:\\..", "/"},
      {L"C:\\a\\...\\.b", "/a/.../.b"},
      {L"C:\\a \\b. ", "/a /b. "},
      {L"\\\\?\\C:\\a", "/a"},
      {L"\\\\.\\c:\\a", "/a"},
      {L"C:\\帳簿\\\xD83D\xDCC4.txt", "/帳簿/📄.txt"},
      {L"C:\\\xD800x\xDC00", "/\xED\xA0\x80x\xED\xB0\x80"},
  };
  for (const auto& [path, host] : rows) {
    DWORD error = 99;
    EXPECT_EQ(HostPath(path, &error), host);
    EXPECT_EQ(error, 0u) << host;
  }
}

TEST(PathMapping, PathsThatThisHostCannotHave) {
  const std::pair<const wchar_t*, DWORD> rows[] = {
      {nullptr, 3},         {L"", 3},        {L"D:\\a", 3},
      {L"z:", 3},           {L"a:b", 3},     {L"\\\\srv\\share\\a", 53},
      {L"//srv/share", 53}, {L"\\\\", 53},   {L"\\\\?\\UNC\\srv", 53},
      {L"\\\\.\\COM1", 2},  {L"\\\\?\\", 2}, {L"\\\\?\\D:\\a", 3},
  };
  for (const auto& [path, expected] : rows) {
    DWORD error = 0;
    EXPECT_EQ(HostPath(path, &error), "") << Utf8(path);
    EXPECT_EQ(error, expected) << Utf8(path);
  }
}

TEST(PathMapping, LibraryPathOfHostPath) {
  const std::pair<const char*, const char16_t*> rows[] = {
      {"/tmp/", u"C:\\tmp\\"}, {"/", u"C:\\"}, {"a/帳簿", u"a\\帳簿"}, {"", u""}};
  for (const auto& [host, path] : rows) EXPECT_EQ(LibraryPath(host), path);
}

TEST(PathMapping, EveryNameGoesThereAndBack) {
  const std::string names[] = {"plain",
                               "帳簿 2024.csv",
                               "📄",
                               "bad\x80\xFFutf8",
                               "cut\xE5\xB8",
                               "over\xC0\xAFlong",
                               "\xED\xA0\x80lone",
                               "\xED\xA0\x80\xED\xB0\x80pair of surrogates",
                               "\xED\xA0\x80\x80 surrogate and stray byte",
                               "\xED\xB2\x80 escape written out",
                               "\xEF\x81\x9C the sign for a backslash",
                               "\xF4\x90\x80\x80 beyond the last character",
                               "back\\slash"};
  for (const std::string& name : names) EXPECT_EQ(HostName(LibraryName(name)), name);
  for (char16_t unit = 1; unit != 0; ++unit) {
    if (unit == u'\\') continue;
    const std::u16string name = {u'x', unit};
    EXPECT_EQ(LibraryName(HostName(name)), name) << std::hex << static_cast<int>(unit);
  }
}

TEST(PathMapping, FolderLeafAndNewNames) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"/a/b", "/a", "b"}, {"/a/b/", "/a", "b"}, {"/a", "/", "a"}, {"a", ".", "a"},
      {"a/b", "a", "b"},   {"/", "/", "/"},      {"..", ".", ".."}};
  for (const auto& [host, folder, leaf] : rows) {
    EXPECT_EQ(HostFolder(host), folder) << host;
    EXPECT_EQ(HostLeaf(host), leaf) << host;
  }
  EXPECT_TRUE(IsCreatable("/a:b/c;d"));
  for (const char* bad : {"a?b", "a*", "<a", "a>", "a|b", "a\"", "a:b", "a\tb", "x/a?/"}) {
    EXPECT_FALSE(IsCreatable(bad)) << bad;
  }
}

TEST(PathMapping, StoreTextFillsOrAsksForRoom) {
  wchar_t buffer[4] = {L'#', L'#', L'#', L'#'};
  EXPECT_EQ(StoreText(u"abc", buffer, 3), 4u);
  EXPECT_EQ(buffer[0], L'#');
  EXPECT_EQ(StoreText(u"abc", nullptr, 0), 4u);
  EXPECT_EQ(StoreText(u"abc", buffer, 4), 3u);
  EXPECT_EQ(TextOf(buffer), u"abc");
  EXPECT_EQ(StoreText(u"", buffer, 1), 0u);
  EXPECT_EQ(buffer[0], 0);
}

}  // namespace
}  // namespace qorgen::platform
