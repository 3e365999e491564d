// Known folders and file types against a home and a desktop database made for the test.

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>
#include <sys/stat.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/shell.h"

#include "tests/support/text.h"

namespace {

using qorgen::tests::Utf8;
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
  for (char& c : text) {
    if (c == '/') c = '\\';
  }
  return text;
}

TEST(KnownFolderTest, missing_folder_is_made_on_request_only) {
  struct {
    int id;
    const char* place;
  } const rows[] = {{CSIDL_DESKTOP, "Desktop"}, {CSIDL_PERSONAL, "Documents"}, {CSIDL_MYPICTURES, "写真"}};
  for (const auto& row : rows) {
    const fs::path expected = Home::root / row.place;
    wchar_t path[MAX_PATH] = {L'x'};
    EXPECT_FALSE(SHGetSpecialFolderPathW(nullptr, path, row.id, FALSE)) << row.place;
    EXPECT_EQ(0, path[0]);
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, row.id, TRUE)) << row.place;
    EXPECT_EQ(LibraryForm(expected), Utf8(path));
    EXPECT_TRUE(fs::is_directory(expected));
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, row.id, FALSE)) << row.place;
  }
}

TEST(KnownFolderTest, common_folders_are_always_there) {
  for (const int id : {CSIDL_COMMON_APPDATA, CSIDL_COMMON_DOCUMENTS}) {
    fs::remove_all(Home::root / "data" / "qorgen");
    wchar_t path[MAX_PATH] = {};
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, id, FALSE)) << id;
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(path)) << Utf8(path);
  }
}

TEST(AssocQueryStringTest, program_of_a_registered_type) {
  wchar_t program[261] = {};
  DWORD count = 260;
  ASSERT_EQ(S_OK, AssocQueryStringW(ASSOCF_NOTRUNCATE, ASSOCSTR_EXECUTABLE, L".qorledger", L"open", program,
                                    &count));
  EXPECT_EQ(count, static_cast<DWORD>(CString(program).GetLength()) + 1);
  EXPECT_EQ("C:\\", Utf8(program).substr(0, 3));
  EXPECT_EQ("\\sh", Utf8(program).substr(Utf8(program).size() - 3));

  const DWORD needed = count;
  count = 0;
  EXPECT_EQ(S_FALSE, AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L".qorledger", nullptr, nullptr, &count));
  EXPECT_EQ(needed, count);

  count = 4;
  program[0] = L'#';
  EXPECT_EQ(E_POINTER, AssocQueryStringW(ASSOCF_NOTRUNCATE, ASSOCSTR_EXECUTABLE, L".qorledger", L"open",
                                         program, &count));
  EXPECT_EQ(needed, count);
  EXPECT_EQ(L'#', program[0]);
  count = 4;
  EXPECT_EQ(E_POINTER, AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L".qorledger", L"open", program, &count));
  EXPECT_EQ("C:\\", Utf8(program));
}

TEST(AssocQueryStringTest, nothing_registered) {
  for (const wchar_t* extension : {L".qorbare", L".qornothing", L"qorledger", L".", L".\\qorledger"}) {
    wchar_t program[261] = {};
    DWORD count = 260;
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION),
              AssocQueryStringW(ASSOCF_NOTRUNCATE, ASSOCSTR_EXECUTABLE, extension, L"open", program, &count))
        << Utf8(extension);
    EXPECT_EQ(260u, count);
  }
  DWORD count = 260;
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION),
            AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L".qorledger", L"print", nullptr, &count));
  EXPECT_EQ(E_INVALIDARG, AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L"", L"open", nullptr, &count));
  EXPECT_EQ(E_INVALIDARG,
            AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L".qorledger", L"open", nullptr, nullptr));
}

}  // namespace
