
#include "qorgen/files/create_path.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/split_path.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

CString Long(int length) {
  return CString(L'x', length);
}

TEST(SplitPathTest, Parts) {
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                   const wchar_t*>
      rows[] = {
          {L"C:\\a\\b.txt", L"C:", L"", L"\\a\\", L"b", L".txt"},
          {L"C:a.txt", L"C:", L"", L"", L"a", L".txt"},
          {L"a/b.tar.gz", L"", L"", L"a/", L"b.tar", L".gz"},
          {L".profile", L"", L"", L"", L"", L".profile"},
          {L"\\\\srv\\share\\dir\\a.txt", L"\\\\srv", L"srv", L"\\share\\dir\\", L"a", L".txt"},
          {L"\\\\srv\\share", L"\\\\srv", L"srv", L"\\", L"share", L""},
          {L"\\\\srv\\", L"\\\\srv", L"srv", L"", L"", L""},
          {L"\\\\srv", L"", L"", L"", L"srv", L""},
          {L"//srv/share/a", L"", L"", L"//srv/share/", L"a", L""},
          {L"\\\\srv/share/a", L"\\\\srv/share/", L"srv/share/", L"", L"a", L""},
      };
  for (const auto& [path, drive, computer, directory, name, extension] : rows) {
    const CQorSplitPath parts(path);
    EXPECT_TEXT(path, parts.GetPath());
    EXPECT_TEXT(drive, parts.GetDrive()) << Utf8(path);
    EXPECT_TEXT(computer, parts.GetComputerNameW()) << Utf8(path);
    EXPECT_TEXT(directory, parts.GetDirectory()) << Utf8(path);
    EXPECT_TEXT(name, parts.GetFileName()) << Utf8(path);
    EXPECT_TEXT(extension, parts.GetExtension()) << Utf8(path);
    EXPECT_EQ(Utf8(drive) + Utf8(directory), Utf8(parts.GetConnectPath())) << Utf8(path);
    EXPECT_EQ(Utf8(name) + Utf8(extension), Utf8(parts.GetConnectFile())) << Utf8(path);
  }
}

TEST(SplitPathTest, SecondSplitKeepsTheMachineOfTheFirst) {
  CQorSplitPath parts(L"\\\\srv\\share\\a.txt");
  EXPECT_EQ(0, parts.Split(nullptr));
  EXPECT_TEXT(L"a.txt", parts.GetConnectFile());
  EXPECT_EQ(1, parts.Split(L"C:\\b"));
  EXPECT_TEXT(L"C:", parts.GetDrive());
  EXPECT_TEXT(L"", parts.GetExtension());
  EXPECT_TEXT(L"srv", parts.GetComputerNameW());
  EXPECT_EQ(1, parts.Split(parts.GetConnectPath()));
  EXPECT_TEXT(L"C:\\", parts.GetPath());
}

TEST(SplitPathTest, LimitOf260Characters) {
  for (const int length : {259, 260, 261, 5000}) {
    const CQorSplitPath parts(Long(length));
    EXPECT_EQ(length < 260 ? length : 260, CString(parts.GetPath()).GetLength());
  }
  const CQorSplitPath machine(L"\\\\" + Long(200) + L"\\" + Long(40) + L"\\a.txt");
  EXPECT_EQ(200, CString(machine.GetComputerNameW()).GetLength());
  EXPECT_EQ(202, CString(machine.GetDrive()).GetLength());
  EXPECT_EQ(42, CString(machine.GetDirectory()).GetLength());
}

TEST(SplitPathTest, CopiesShareTheirTexts) {
  CQorSplitPath other(L"D:\\x");
  {
    CQorSplitPath first(L"C:\\a");
    CQorSplitPath second(first);
    EXPECT_EQ(first.GetPath(), second.GetPath());
    second.Split(L"C:\\b");
    EXPECT_TEXT(L"b", first.GetFileName());
    other = second;
    const CQorSplitPath& self = other;
    other = self;
  }
  EXPECT_TEXT(L"C:\\b", other.GetPath());
}

TEST(CreatePathTest, AddsWhatIsMissing) {
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*> rows[] = {
      {L"C", L"\\a", L"b", L"txt", L"C:\\a\\b.txt"},
      {L"C:", L"\\a\\", L"b", L".txt", L"C:\\a\\b.txt"},
      {nullptr, L"C:\\a", L"*.*", nullptr, L"C:\\a\\*.*"},
      {L"\\\\srv", L"share\\a", L"b", L".txt", L"\\\\srv\\share\\a\\b.txt"},
      {L"\\\\srv", nullptr, L"b", nullptr, L"\\\\srv\\b"},
      {nullptr, nullptr, nullptr, nullptr, L""},
  };
  for (const auto& [drive, directory, name, extension, whole] : rows) {
    const CQorCreatePath path(drive, directory, name, extension);
    EXPECT_TEXT(whole, static_cast<const wchar_t*>(path));
    CQorCreatePath copy(nullptr, L"x", nullptr, nullptr);
    copy = path;
    EXPECT_TEXT(whole, static_cast<const wchar_t*>(copy));
  }
  EXPECT_TEXT(L"", static_cast<const wchar_t*>(CQorCreatePath(nullptr, Long(2000), L"a", nullptr)));
  EXPECT_TEXT(L"", static_cast<const wchar_t*>(CQorCreatePath(L"\\\\srv", Long(2000), L"a", nullptr)));
}

TEST(FilePathTest, ConnectPath) {
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> rows[] = {
      {L"C:\\a", L"D:\\b\\c.txt", L"C:\\a\\b\\c.txt"},
      {nullptr, L"a\\b.txt", L"a\\b.txt"},
      {L"C:/x/", L"/b.txt", L"C:/x/b.txt"},
      {L"", L"\\a", L"a"},
      {L"C:\\a\\\\", L"b", L"C:\\a\\\\b"},
      {L"C:\\a", nullptr, L"C:\\a\\"},
      {L"C:\\a", L"\\\\b", L"C:\\a\\b"},
  };
  for (const auto& [directory, file, path] : rows)
    EXPECT_TEXT(path, CQorFileUtil::ConnectPath(directory, file));
}

TEST(FilePathTest, AddExtension) {
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> rows[] = {
      {L"a.TXT", L".txt", L"a.TXT"},   {L"a", L".txt", L"a.txt"},       {L"a.txt", L".csv", L"a.txt.csv"},
      {L"a.txt", L"txt", L"a.txttxt"}, {nullptr, L".txt", L""},         {L"a.txt", nullptr, L"a.txt"},
      {L"", L".txt", L".txt"},         {L"d.x\\a", L".x", L"d.x\\a.x"},
  };
  for (const auto& [path, extension, result] : rows)
    EXPECT_TEXT(result, CQorFileUtil::AddExtension(path, extension));
}

TEST(FilePathTest, TailsAndRoots) {
  const std::tuple<const wchar_t*, const wchar_t*, int, const wchar_t*> rows[] = {
      {L"C:\\", L"C:\\", 1, L"C:\\"},
      {L"C:\\a\\", L"C:\\a", 0, L"C:\\"},
      {L"C:\\a/", L"C:\\a/", 0, L"C:\\"},
      {L"C:\\a\\\\", L"C:\\a\\", 0, L"C:\\a\\\\"},
      {L"C:", L"C:", 1, L"C:"},
      {L"a:b", L"a:b", 1, L"a:b"},
      {L"", L"", 0, L""},
      {nullptr, L"", 0, L""},
      {L"\\\\srv\\share\\dir\\a", L"\\\\srv\\share\\dir\\a", 0, L"\\\\srv\\share\\"},
      {L"//srv/share/dir", L"//srv/share/dir", 0, L"//srv/share/"},
      {L"\\\\srv\\share", L"\\\\srv\\share", 0, L"\\\\srv\\share"},
  };
  for (const auto& [path, without_tail, is_root, expected] : rows) {
    EXPECT_TEXT(without_tail, CQorFileUtil::RemoveTailDirSep(path));
    EXPECT_EQ(is_root, CQorFileUtil::IsRootDir(path)) << Utf8(path);
    CString root = L"former text";
    CQorFileUtil::GetRoot(path, root);
    EXPECT_TEXT(expected, root.GetString()) << Utf8(path);
    root.ReleaseBuffer();
    EXPECT_EQ(CString(expected).GetLength(), root.GetLength());
  }
  CString own = L"C:\\dir\\" + Long(300);
  CQorFileUtil::GetRoot(own, own);
  EXPECT_TEXT(L"C:\\", own.GetString());
  CQorFileUtil::GetRoot(Long(300), own);
  EXPECT_TEXT(Long(260), own.GetString());
}

TEST(FilePathTest, NameOnly) {
  const std::tuple<const wchar_t*, const wchar_t*> rows[] = {
      {L"C:a.txt", L"a.txt"}, {L"C:\\a/b.txt", L"b.txt"}, {L"a\\", L""}, {L"a", L"a"}, {nullptr, L""}};
  for (const auto& [path, name] : rows) {
    EXPECT_EQ(static_cast<unsigned>(CString(name).GetLength()) + 1,
              CQorFileUtil::GetFileNameOnly(path, nullptr, 0));
    wchar_t buffer[16] = {};
    EXPECT_EQ(0u, CQorFileUtil::GetFileNameOnly(path, buffer, 16));
    EXPECT_TEXT(name, static_cast<const wchar_t*>(buffer));
  }
  wchar_t small[4] = {L'#', L'#', L'#', L'#'};
  CQorFileUtil::GetFileNameOnly(L"abcdef", small, 0);
  EXPECT_EQ(L'#', small[0]);
  CQorFileUtil::GetFileNameOnly(L"abcdef", small, 3);
  EXPECT_TEXT(L"ab", static_cast<const wchar_t*>(small));
  EXPECT_EQ(L'#', small[3]);
}

TEST(FilePathTest, ShortenedForDisplay) {
  EXPECT_EQ(nullptr, CQorFileUtil::GetCompactPath(nullptr, 20));
  EXPECT_EQ("C:\\fold...\\name.txt",
            TakeUtf8(CQorFileUtil::GetCompactPath(L"C:\\folder\\sub\\name.txt", 20)));
  EXPECT_EQ("C:\\a.txt", TakeUtf8(CQorFileUtil::GetCompactPath(L"C:\\a.txt", 0)));
  EXPECT_EQ(259u, TakeUtf8(CQorFileUtil::GetCompactPath(Long(400), 0)).size());
  EXPECT_EQ(259u, TakeUtf8(CQorFileUtil::GetCompactPath(Long(400), 1000)).size());

  EXPECT_TEXT(L"name.txt", CQorFileUtil::GetDispFileString(L"C:\\folder\\name.txt", 40));
  EXPECT_TEXT(L"na...", CQorFileUtil::GetDispFileString(L"C:\\folder\\name.txt", 6));
  EXPECT_TEXT(L"name.txt", CQorFileUtil::GetDispFileString(L"name.txt", -1));
  EXPECT_TEXT(L"", CQorFileUtil::GetDispFileString(nullptr, 10));

  const std::tuple<const wchar_t*, int, const wchar_t*> rows[] = {
      {L"C:\\folder\\sub\\a.txt", 40, L"C:\\folder\\sub"},
      {L"C:\\folder\\sub\\a.txt", 11, L"C:\\...\\sub"},
      {L"a.txt", 40, L""},
      {L"ab\\c", 40, L"ab\\"},
      {L"C:\\folder\\a.txt", 0, L"C:\\folder"},
      {nullptr, 40, L""},
  };
  for (const auto& [path, limit, text] : rows) {
    EXPECT_TEXT(text, CQorFileUtil::GetDispFolderString(path, limit)) << Utf8(path);
  }
}

TEST(FilePathTest, ForbiddenCharacters) {
  const std::string forbidden = "\\/:;*?\"<>|";
  for (wchar_t c = 1; c < 0x100; ++c) {
    const bool expected = c < 0x80 && forbidden.find(static_cast<char>(c)) != std::string::npos;
    const wchar_t text[] = {L'a', c, L'b', 0};
    EXPECT_EQ(expected ? 1 : 0, CQorFileUtil::IsInvalidChar(text)) << static_cast<int>(c);
    EXPECT_EQ(expected ? 2 : 3, CQorFileUtil::CutInvalidChar(text).GetLength()) << static_cast<int>(c);
  }
  EXPECT_TEXT(L"abc", CQorFileUtil::CutInvalidChar(L"a;b:c<>"));
  EXPECT_TEXT(L"", CQorFileUtil::CutInvalidChar(nullptr));
  EXPECT_EQ(0, CQorFileUtil::IsInvalidChar(L"売上；"));
  EXPECT_EQ(0, CQorFileUtil::IsInvalidChar(nullptr));
}

}  // namespace
