#include <cstring>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

// The error of a call, 0 when it succeeded.
DWORD ErrorOf(BOOL result) {
  return result ? 0 : GetLastError();
}

TEST(Folder, IsMadeOneLevelAtATime) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"file"), ""));
  const std::pair<const wchar_t*, DWORD> rows[] = {
      {L"a", 0},         {L"a", ERROR_ALREADY_EXISTS}, {L"file", ERROR_ALREADY_EXISTS},
      {L"a\\帳簿\\", 0}, {L"a*", ERROR_INVALID_NAME},  {L"b\\c", ERROR_PATH_NOT_FOUND},
  };
  for (const auto& [name, error] : rows) {
    EXPECT_EQ(ErrorOf(CreateDirectoryW(scratch.Path(name), nullptr)), error) << Utf8(name);
  }
  EXPECT_EQ(ErrorOf(CreateDirectoryW(L"", nullptr)), ERROR_PATH_NOT_FOUND);
  EXPECT_NE(GetFileAttributesW(scratch.Path(L"a\\帳簿")) & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST(Entry, GoesByItsOwnCallAndOnlyWhenEmpty) {
  ScratchFolder scratch;
  CreateDirectoryW(scratch.Path(L"a"), nullptr);
  ASSERT_TRUE(PutFile(scratch.Path(L"a\\file"), ""));
  const std::tuple<decltype(&DeleteFileW), const wchar_t*, DWORD> rows[] = {
      {RemoveDirectoryW, L"a", ERROR_DIR_NOT_EMPTY},
      {RemoveDirectoryW, L"a\\file", ERROR_DIRECTORY},
      {RemoveDirectoryW, L"none", ERROR_FILE_NOT_FOUND},
      {RemoveDirectoryW, L"none\\a", ERROR_PATH_NOT_FOUND},
      {DeleteFileW, L"a", ERROR_ACCESS_DENIED},
      {DeleteFileW, L"none\\a", ERROR_PATH_NOT_FOUND},
      {DeleteFileW, L"a\\file", 0},
      {DeleteFileW, L"a\\file", ERROR_FILE_NOT_FOUND},
      {RemoveDirectoryW, L"a\\", 0},
  };
  for (const auto& [remove, name, error] : rows) {
    EXPECT_EQ(ErrorOf(remove(scratch.Path(name))), error) << Utf8(name);
  }
  EXPECT_FALSE(Exists(scratch.Path(L"a")));
}

TEST(Attributes, ReadOnlyIsSetSeenAndHeeded) {
  ScratchFolder scratch;
  const wchar_t* path = scratch.Path(L"file");
  ASSERT_TRUE(PutFile(path, "abc"));
  ASSERT_TRUE(PutFile(scratch.Path(L"other"), "x"));
  EXPECT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL));
  // Wine can't take the archive mark from a file.
  const DWORD rest = UnderWine() ? FILE_ATTRIBUTE_ARCHIVE : 0;
  EXPECT_EQ(GetFileAttributesW(path), rest != 0 ? rest : FILE_ATTRIBUTE_NORMAL);
  EXPECT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(GetFileAttributesW(path), FILE_ATTRIBUTE_READONLY | rest);
  EXPECT_EQ(ErrorOf(DeleteFileW(path)), ERROR_ACCESS_DENIED);
  if (!ReadOnlyFilesAreWritable()) {
    EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"other"), path, FALSE)), ERROR_ACCESS_DENIED);
  }
  EXPECT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL));
  EXPECT_EQ(ErrorOf(DeleteFileW(path)), 0u);
  EXPECT_EQ(ErrorOf(SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL)), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(GetFileAttributesW(scratch.Path(L"none\\a")), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
}

TEST(Move, RenamesAndReplacesNothing) {
  ScratchFolder scratch;
  CreateDirectoryW(scratch.Path(L"d"), nullptr);
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "aaa"));
  ASSERT_TRUE(PutFile(scratch.Path(L"b"), "b"));
  const std::tuple<const wchar_t*, const wchar_t*, DWORD> rows[] = {
      {L"a", L"b", ERROR_ALREADY_EXISTS},
      {L"none", L"c", ERROR_FILE_NOT_FOUND},
      {L"a", L"c?", ERROR_INVALID_NAME},
      {L"a", L"none\\c", ERROR_PATH_NOT_FOUND},
      {L"a", L"a", 0},
      {L"d", L"e", 0},
      {L"a", L"e\\a", 0},
  };
  for (const auto& [source, target, error] : rows) {
    EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(source), scratch.Path(target))), error)
        << Utf8(source) << " to " << Utf8(target);
  }
  EXPECT_EQ(GetFile(scratch.Path(L"e\\a")), "aaa");
  EXPECT_FALSE(Exists(scratch.Path(L"a")));
}

TEST(Copy, TakesContentAttributesAndTime) {
  ScratchFolder scratch;
  const std::string content(700000, 'k');
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), content));
  ASSERT_TRUE(PutFile(scratch.Path(L"c"), "longer than nothing"));
  ASSERT_TRUE(PutFile(scratch.Path(L"empty"), ""));
  const FILETIME time = {0x44FF8000, 0x01C138D1};  // 2001-09-09 01:46:40
  const HANDLE file = CreateFileW(scratch.Path(L"a"), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  SetFileTime(file, nullptr, nullptr, &time);
  CloseHandle(file);
  SetFileAttributesW(scratch.Path(L"a"), FILE_ATTRIBUTE_READONLY);
  // The third: whether a target that is there is kept.
  const std::tuple<const wchar_t*, const wchar_t*, BOOL, DWORD> rows[] = {
      {L"a", L"b", TRUE, 0},
      {L"empty", L"c", TRUE, ERROR_FILE_EXISTS},
      {L"empty", L"c", FALSE, 0},
      {L"none", L"d", FALSE, ERROR_FILE_NOT_FOUND},
      {L"c", L"none\\d", FALSE, ERROR_PATH_NOT_FOUND},
      {L"", L"d", FALSE, ERROR_ACCESS_DENIED},
      {L"c", L"c", FALSE, ERROR_SHARING_VIOLATION},
  };
  for (const auto& [source, target, keep, error] : rows) {
    EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(source), scratch.Path(target), keep)), error)
        << Utf8(source) << " to " << Utf8(target);
  }
  EXPECT_EQ(GetFile(scratch.Path(L"b")), content);
  EXPECT_EQ(GetFile(scratch.Path(L"c")), "");
  WIN32_FILE_ATTRIBUTE_DATA data;
  ASSERT_TRUE(GetFileAttributesExW(scratch.Path(L"b"), GetFileExInfoStandard, &data));
  EXPECT_NE(data.dwFileAttributes & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_EQ(std::memcmp(&data.ftLastWriteTime, &time, sizeof time), 0);
}

// The names that a search gives, each followed by a blank.
std::string Names(const wchar_t* pattern) {
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW(pattern, &data);
  if (search == INVALID_HANDLE_VALUE) return "error " + std::to_string(GetLastError());
  std::string names;
  do {
    names += Utf8(data.cFileName) + ' ';
  } while (FindNextFileW(search, &data));
  EXPECT_EQ(GetLastError(), ERROR_NO_MORE_FILES);
  EXPECT_TRUE(FindClose(search));
  return names;
}

TEST(Search, PatternsOverAFolder) {
  ScratchFolder scratch;
  for (const wchar_t* name : {L"b.TXT", L"A.txt", L"plain", L"two.dots.csv", L"帳簿.csv"}) {
    ASSERT_TRUE(PutFile(scratch.Path(name), "12345"));
  }
  CreateDirectoryW(scratch.Path(L"Folder.d"), nullptr);
  const struct {
    const wchar_t* pattern;
    const char* names;
    bool on_wine = true;
  } rows[] = {
      {L"*", ". .. A.txt b.TXT Folder.d plain two.dots.csv 帳簿.csv "},
      {L"*.*", ". .. A.txt b.TXT Folder.d plain two.dots.csv 帳簿.csv "},
      {L"*.", ". .. plain ", false},  // Wine drops the dot
      {L"?.txt", "A.txt b.TXT "},
      {L"*.c?v", "two.dots.csv 帳簿.csv "},
      {L"PLAIN*", "plain "},
      {L"Folder.d", "Folder.d "},
      {L"*.none", "error 2"},
      {L"none\\*", "error 3"},
      {L"plain\\*", "error 267", false},  // to Wine a wrong name
      {L"Folder.d\\", "error 2"},
      {L"Folder.d\\*", ". .. "},
      {L"Folder.d\\x", "error 2"},
      {L"Folder.d\\..\\plain", "plain "},
      {L"Folder.d\\.", "Folder.d "},
  };
  for (const auto& row : rows) {
    const std::string names = Names(scratch.Path(row.pattern));
    EXPECT_TRUE(AsPublished(names == row.names, row.on_wine)) << Utf8(row.pattern) << ": " << names;
  }
  EXPECT_EQ(Names(L""), "error 3");
  EXPECT_EQ(Names(nullptr), "error 3");
  EXPECT_EQ(Names(L"C:\\"), "error 2");
  EXPECT_NE(Names(L"C:\\*").substr(0, 2), ". ");  // a root has no dots
  EXPECT_FALSE(FindClose(INVALID_HANDLE_VALUE));
  WIN32_FIND_DATAW data;
  const HANDLE closed = FindFirstFileW(scratch.Path(L"a*"), &data);
  EXPECT_TRUE(FindClose(closed));
  EXPECT_EQ(ErrorOf(FindNextFileW(closed, &data)), ERROR_INVALID_HANDLE);
}

TEST(Names, TemporaryFiles) {
  wchar_t name[MAX_PATH + 1];
  EXPECT_EQ(GetTempPathW(2, name), GetTempPathW(MAX_PATH + 1, name) + 1);
  ScratchFolder scratch;
  EXPECT_EQ(GetTempFileNameW(scratch.Path(L""), L"asked", 0x12ABCD, name), 0xABCDu);
  EXPECT_EQ(CString(name).CompareNoCase(scratch.Path(L"askABCD.TMP")), 0);  // the case is not promised
  EXPECT_FALSE(Exists(name));
  EXPECT_NE(GetTempFileNameW(scratch.Path(L""), L"qor", 0, name), 0u);
  EXPECT_EQ(GetFile(name), "");
  EXPECT_EQ(GetTempFileNameW(scratch.Path(L"none"), L"qor", 0, name), 0u);
  EXPECT_EQ(GetLastError(), ERROR_DIRECTORY);
}

TEST(Names, FullPaths) {
  ScratchFolder scratch;
  CreateDirectoryW(scratch.Path(L"sub"), nullptr);
  ASSERT_TRUE(PutFile(scratch.Path(L"here.txt"), "h"));
  const InFolder here(scratch.Path(L"sub"));
  wchar_t full[MAX_PATH];
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> rows[] = {
      {L"x\\..\\..\\a.txt", scratch.Path(L"a.txt"), L"a.txt"},
      {L"C:/a/./b/", L"C:\\a\\b\\", nullptr},
      {L"\\\\srv\\share/x", L"\\\\srv\\share\\x", L"x"},
  };
  for (const auto& [path, expected, expected_name] : rows) {
    LPWSTR name = nullptr;
    const DWORD length = GetFullPathNameW(path, MAX_PATH, full, &name);
    EXPECT_EQ(length, static_cast<DWORD>(CString(expected).GetLength()));
    EXPECT_TEXT(expected, full);
    EXPECT_TEXT(expected_name, name);
  }
  EXPECT_EQ(GetFullPathNameW(L"C:\\a", 4, full, nullptr), 5u);
  EXPECT_EQ(GetFullPathNameW(L"", MAX_PATH, full, nullptr), 0u);
  EXPECT_EQ(Names(L"..\\here.*"), "here.txt ");
  EXPECT_EQ(Names(L"."), "sub ");
}

TEST(Volume, RootsAndRoom) {
  const std::pair<const wchar_t*, UINT> rows[] = {
      {L"C:\\", DRIVE_FIXED}, {L"C:", DRIVE_FIXED}, {L"", DRIVE_NO_ROOT_DIR}, {L"1:\\", DRIVE_NO_ROOT_DIR}};
  for (const auto& [root, kind] : rows) EXPECT_EQ(GetDriveTypeW(root), kind) << Utf8(root);
  wchar_t list[MAX_PATH + 1];
  EXPECT_EQ(GetLogicalDriveStringsW(2, list), GetLogicalDriveStringsW(MAX_PATH, list) + 1);
  EXPECT_FALSE(GetDiskFreeSpaceExW(L"C:\\no such folder\\x", nullptr, nullptr, nullptr));
}

}  // namespace
}  // namespace qorgen::tests
