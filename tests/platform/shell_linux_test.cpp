// Known folders and file types against a home and a desktop database made for the test.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdlib.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/shell.h"

#include "tests/support/testing.h"

namespace {

using namespace qorgen::tests;
namespace fs = std::filesystem;

// Set up before the first test: the desktop library reads these variables once.
class Home : public testing::Environment {
 public:
  void SetUp() override {
    char pattern[] = "/tmp/qorgen_homeXXXXXX";
    root = mkdtemp(pattern);
    Write("data/mime/globs2",
          "50:application/x-qorgen-ledger:*.qorledger\n50:application/x-qorgen-bare:*.qorbare\n");
    Write("data/mime/types", "application/x-qorgen-ledger\napplication/x-qorgen-bare\n");
    Write("data/applications/ledger.desktop",
          "[Desktop Entry]\nType=Application\nName=Ledger\nExec=sh "
          "%f\nMimeType=application/x-qorgen-ledger;\n");
    Write("data/applications/mimeapps.list",
          "[Default Applications]\napplication/x-qorgen-ledger=ledger.desktop\n");
    Write("config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/写真\"\n");
    setenv("HOME", root.c_str(), 1);
    setenv("XDG_DATA_HOME", (root / "data").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (root / "config").c_str(), 1);
    setenv("XDG_DATA_DIRS", (root / "none").c_str(), 1);
  }
  void TearDown() override { fs::remove_all(root); }

  static fs::path root;

 private:
  static void Write(const char* name, const char* text) {
    fs::create_directories((root / name).parent_path());
    std::ofstream(root / name) << text;
  }
};

fs::path Home::root;
[[maybe_unused]] testing::Environment* const g_home = testing::AddGlobalTestEnvironment(new Home);

std::string LibraryForm(const fs::path& path) {
  std::string text = "C:" + path.string();
  std::replace(text.begin(), text.end(), '/', '\\');
  return text;
}

TEST(KnownFolderTest, MissingFolderIsMadeOnRequestOnly) {
  const std::pair<int, const char*> rows[] = {
      {CSIDL_DESKTOP, "Desktop"}, {CSIDL_PERSONAL, "Documents"}, {CSIDL_MYPICTURES, "写真"}};
  for (const auto& [id, place] : rows) {
    const fs::path expected = Home::root / place;
    wchar_t path[MAX_PATH] = {L'x'};
    EXPECT_FALSE(SHGetSpecialFolderPathW(nullptr, path, id, FALSE)) << place;
    EXPECT_EQ(0, path[0]);
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, id, TRUE)) << place;
    EXPECT_EQ(LibraryForm(expected), Utf8(path));
    EXPECT_TRUE(fs::is_directory(expected));
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, id, FALSE)) << place;
  }
}

TEST(KnownFolderTest, FoldersOfProgramsAreAlwaysThereAndTakeFiles) {
  fs::remove_all(Home::root / "data" / "qorgen");
  for (const int id : {CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA, CSIDL_COMMON_DOCUMENTS}) {
    wchar_t path[MAX_PATH] = {};
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, id, FALSE)) << id;
    const CString file = CString(path) + L"\\qorgen known folder test";
    EXPECT_TRUE(PutFile(file, "x")) << Utf8(file);
    EXPECT_TRUE(DeleteFileW(file));
  }
}

TEST(AssocQueryStringTest, ProgramOfARegisteredType) {
  wchar_t program[261] = {L'#'};
  const auto ask = [&program](ASSOCF flags, wchar_t* room, DWORD& count) {
    return AssocQueryStringW(flags, ASSOCSTR_EXECUTABLE, L".qorledger", L"open", room, &count);
  };
  DWORD needed = 0;
  EXPECT_EQ(S_FALSE, ask(0, nullptr, needed));
  DWORD count = 4;
  EXPECT_EQ(E_POINTER, ask(ASSOCF_NOTRUNCATE, program, count));
  EXPECT_EQ(needed, count);
  EXPECT_EQ(L'#', program[0]);
  count = 4;
  EXPECT_EQ(E_POINTER, ask(0, program, count));
  EXPECT_EQ("C:\\", Utf8(program));
  count = 260;
  ASSERT_EQ(S_OK, ask(ASSOCF_NOTRUNCATE, program, count));
  EXPECT_EQ(needed, count);
  EXPECT_EQ(static_cast<DWORD>(CString(program).GetLength()) + 1, count);
  EXPECT_TEXT(L"C:\\", CString(program).Left(3));
  EXPECT_TEXT(L"\\sh", CString(program).Right(3));
}

TEST(AssocQueryStringTest, NothingRegistered) {
  DWORD count = 260;
  constexpr HRESULT kNone = HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION);
  const std::tuple<const wchar_t*, const wchar_t*, HRESULT> rows[] = {
      {L".qorbare", L"open", kNone}, {L".qornothing", L"open", kNone},  {L"qorledger", L"open", kNone},
      {L".", L"open", kNone},        {L".\\qorledger", L"open", kNone}, {L".qorledger", L"print", kNone},
      {L"", L"open", E_INVALIDARG},
  };
  for (const auto& [extension, verb, result] : rows) {
    EXPECT_EQ(result, AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, extension, verb, nullptr, &count))
        << Utf8(extension);
    EXPECT_EQ(260u, count);
  }
  EXPECT_EQ(E_INVALIDARG,
            AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L".qorledger", L"open", nullptr, nullptr));
}

}  // namespace
