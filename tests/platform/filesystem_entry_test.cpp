#include <cstring>
#include <gtest/gtest.h>
#include <vector>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace qorgen::tests {
namespace {

// The error of a call, 0 when it succeeded.
DWORD ErrorOf(BOOL result) {
  return result ? 0 : GetLastError();
}

TEST(Folder, IsMadeOneLevelAtATime) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"file"), ""));
  EXPECT_EQ(ErrorOf(CreateDirectoryW(scratch.Path(L"a"), nullptr)), 0u);
  EXPECT_EQ(ErrorOf(CreateDirectoryW(scratch.Path(L"a"), nullptr)), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(ErrorOf(CreateDirectoryW(scratch.Path(L"file"), nullptr)), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(ErrorOf(CreateDirectoryW(scratch.Path(L"b\\c"), nullptr)), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(ErrorOf(CreateDirectoryW(scratch.Path(L"a\\帳簿\\"), nullptr)), 0u);
  EXPECT_EQ(ErrorOf(CreateDirectoryW(scratch.Path(L"a*"), nullptr)), ERROR_INVALID_NAME);
  EXPECT_EQ(ErrorOf(CreateDirectoryW(L"", nullptr)), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(GetFileAttributesW(scratch.Path(L"a\\帳簿")) & FILE_ATTRIBUTE_DIRECTORY,
            FILE_ATTRIBUTE_DIRECTORY);
}

TEST(Folder, GoesOnlyWhenEmpty) {
  ScratchFolder scratch;
  CreateDirectoryW(scratch.Path(L"a"), nullptr);
  ASSERT_TRUE(PutFile(scratch.Path(L"a\\file"), ""));
  EXPECT_EQ(ErrorOf(RemoveDirectoryW(scratch.Path(L"a"))), ERROR_DIR_NOT_EMPTY);
  EXPECT_EQ(ErrorOf(RemoveDirectoryW(scratch.Path(L"a\\file"))), ERROR_DIRECTORY);
  EXPECT_EQ(ErrorOf(RemoveDirectoryW(scratch.Path(L"none"))), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(ErrorOf(RemoveDirectoryW(scratch.Path(L"none\\a"))), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(ErrorOf(DeleteFileW(scratch.Path(L"a"))), ERROR_ACCESS_DENIED);
  EXPECT_EQ(ErrorOf(DeleteFileW(scratch.Path(L"a\\file"))), 0u);
  EXPECT_EQ(ErrorOf(RemoveDirectoryW(scratch.Path(L"a\\"))), 0u);
  EXPECT_FALSE(Exists(scratch.Path(L"a")));
}

TEST(Attributes, ReadOnlyIsSetSeenAndHeeded) {
  ScratchFolder scratch;
  const wchar_t* path = scratch.Path(L"file");
  ASSERT_TRUE(PutFile(path, "abc"));
  EXPECT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL));
  // Wine can't take the archive mark from a file.
  const DWORD rest = UnderWine() ? FILE_ATTRIBUTE_ARCHIVE : 0;
  EXPECT_EQ(GetFileAttributesW(path), rest != 0 ? rest : FILE_ATTRIBUTE_NORMAL);
  EXPECT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(GetFileAttributesW(path), FILE_ATTRIBUTE_READONLY | rest);
  EXPECT_EQ(ErrorOf(DeleteFileW(path)), ERROR_ACCESS_DENIED);
  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"other"), path, FALSE)), ERROR_FILE_NOT_FOUND);
  ASSERT_TRUE(PutFile(scratch.Path(L"other"), "x"));
  if (!ReadOnlyFilesAreWritable()) {
    EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"other"), path, FALSE)), ERROR_ACCESS_DENIED);
  }
  EXPECT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL));
  EXPECT_EQ(ErrorOf(DeleteFileW(path)), 0u);
  EXPECT_EQ(ErrorOf(DeleteFileW(path)), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(ErrorOf(DeleteFileW(scratch.Path(L"none\\a"))), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(ErrorOf(SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL)), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(GetFileAttributesW(scratch.Path(L"none\\a")), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
}

TEST(Move, RenamesAndReplacesOnRequestOnly) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "aaa"));
  ASSERT_TRUE(PutFile(scratch.Path(L"b"), "b"));
  EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(L"a"), scratch.Path(L"b"))), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(L"none"), scratch.Path(L"c"))), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(L"a"), scratch.Path(L"none\\c"))), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(L"a"), scratch.Path(L"c?"))), ERROR_INVALID_NAME);
  EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(L"a"), scratch.Path(L"a"))), 0u);
  EXPECT_EQ(ErrorOf(MoveFileExW(scratch.Path(L"a"), scratch.Path(L"b"), MOVEFILE_REPLACE_EXISTING)), 0u);
  EXPECT_EQ(GetFile(scratch.Path(L"b")), "aaa");
  EXPECT_FALSE(Exists(scratch.Path(L"a")));

  CreateDirectoryW(scratch.Path(L"d"), nullptr);
  EXPECT_EQ(ErrorOf(MoveFileExW(scratch.Path(L"b"), scratch.Path(L"d"), MOVEFILE_REPLACE_EXISTING)),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(L"d"), scratch.Path(L"e"))), 0u);
  EXPECT_EQ(ErrorOf(MoveFileW(scratch.Path(L"b"), scratch.Path(L"e\\b"))), 0u);
  EXPECT_EQ(GetFile(scratch.Path(L"e\\b")), "aaa");
}

TEST(Copy, TakesContentAttributesAndTime) {
  ScratchFolder scratch;
  const std::string content(700000, 'k');
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), content));
  const SYSTEMTIME moment = {2001, 9, 0, 9, 1, 46, 40, 0};
  FILETIME time;
  SystemTimeToFileTime(&moment, &time);
  const HANDLE file = CreateFileW(scratch.Path(L"a"), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  SetFileTime(file, nullptr, nullptr, &time);
  CloseHandle(file);
  SetFileAttributesW(scratch.Path(L"a"), FILE_ATTRIBUTE_READONLY);

  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"a"), scratch.Path(L"b"), TRUE)), 0u);
  EXPECT_EQ(GetFile(scratch.Path(L"b")), content);
  WIN32_FILE_ATTRIBUTE_DATA data;
  ASSERT_TRUE(GetFileAttributesExW(scratch.Path(L"b"), GetFileExInfoStandard, &data));
  EXPECT_EQ(data.dwFileAttributes & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(std::memcmp(&data.ftLastWriteTime, &time, sizeof time), 0);

  ASSERT_TRUE(PutFile(scratch.Path(L"c"), "longer than nothing"));
  ASSERT_TRUE(PutFile(scratch.Path(L"empty"), ""));
  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"empty"), scratch.Path(L"c"), TRUE)), ERROR_FILE_EXISTS);
  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"empty"), scratch.Path(L"c"), FALSE)), 0u);
  EXPECT_EQ(GetFile(scratch.Path(L"c")), "");
  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"none"), scratch.Path(L"d"), FALSE)), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"c"), scratch.Path(L"none\\d"), FALSE)), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L""), scratch.Path(L"d"), FALSE)), ERROR_ACCESS_DENIED);
  EXPECT_EQ(ErrorOf(CopyFileW(scratch.Path(L"c"), scratch.Path(L"c"), FALSE)), ERROR_SHARING_VIOLATION);
}

TEST(FileTime, PartsThereAndBack) {
  const struct {
    SYSTEMTIME parts;
    unsigned long long ticks;
  } rows[] = {
      {{1601, 1, 1, 1, 0, 0, 0, 0}, 0},
      {{1970, 1, 4, 1, 0, 0, 0, 0}, 116444736000000000},
      {{2000, 2, 2, 29, 23, 59, 59, 999}, 125963423999990000},
      {{2100, 3, 1, 1, 0, 0, 0, 1}, 157520160000010000},
      {{30827, 12, 5, 31, 23, 59, 59, 999}, 9223149887999990000},
  };
  for (const auto& row : rows) {
    FILETIME time;
    ASSERT_TRUE(SystemTimeToFileTime(&row.parts, &time));
    EXPECT_EQ(static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime, row.ticks);
    SYSTEMTIME parts;
    ASSERT_TRUE(FileTimeToSystemTime(&time, &parts));
    EXPECT_EQ(std::memcmp(&parts, &row.parts, sizeof parts), 0) << row.parts.wYear;
  }
  const struct {
    SYSTEMTIME parts;
    bool on_wine = true;  // it takes any day that some month has
  } wrong[] = {{{1600, 12, 0, 31, 0, 0, 0, 0}}, {{2023, 2, 0, 29, 0, 0, 0, 0}, false},
               {{2023, 13, 0, 1, 0, 0, 0, 0}},  {{2023, 1, 0, 0, 0, 0, 0, 0}},
               {{2023, 1, 0, 1, 24, 0, 0, 0}},  {{2023, 1, 0, 1, 0, 60, 0, 0}}};
  for (const auto& row : wrong) {
    FILETIME time;
    EXPECT_TRUE(
        AsPublished(ErrorOf(SystemTimeToFileTime(&row.parts, &time)) == ERROR_INVALID_PARAMETER, row.on_wine))
        << row.parts.wYear;
  }
  const FILETIME tooLate = {0, 0x80000000};
  SYSTEMTIME parts;
  EXPECT_EQ(ErrorOf(FileTimeToSystemTime(&tooLate, &parts)), ERROR_INVALID_PARAMETER);

  const FILETIME noon = {0, 0x01DA0000};
  FILETIME local;
  FILETIME back;
  ASSERT_TRUE(FileTimeToLocalFileTime(&noon, &local));
  ASSERT_TRUE(LocalFileTimeToFileTime(&local, &back));
  EXPECT_EQ(std::memcmp(&back, &noon, sizeof noon), 0);
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
      {L"*.txt", "A.txt b.TXT "},
      {L"*.", ". .. plain ", false},
      {L"p*.*", "plain "},
      {L"?.txt", "A.txt b.TXT "},
      {L"??.csv", "帳簿.csv "},
      {L"*.c?v", "two.dots.csv 帳簿.csv "},
      {L"PLAIN*", "plain "},
      {L"plain", "plain "},
      {L"Folder.d", "Folder.d "},
      {L"*.none", "error 2"},
      {L"none", "error 2"},
      {L"none\\*", "error 3"},
      {L"plain\\*", "error 267", false},
      {L"Folder.d\\", "error 2"},
      {L"Folder.d\\*", ". .. "},
      {L"Folder.d\\x", "error 2"},
      {L"Folder.d\\..\\plain", "plain "},
      {L"Folder.d\\.", "Folder.d "},
  };
  // Wine drops the dot of "*." and words the search in a file as one in a wrong name.
  for (const auto& row : rows) {
    const std::string names = Names(scratch.Path(row.pattern));
    EXPECT_TRUE(AsPublished(names == row.names, row.on_wine)) << Utf8(row.pattern) << ": " << names;
  }
  EXPECT_EQ(Names(L""), "error 3");
  EXPECT_EQ(Names(nullptr), "error 3");

  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW(scratch.Path(L"a*"), &data);
  EXPECT_EQ(data.nFileSizeLow, 5u);
  EXPECT_EQ(data.nFileSizeHigh, 0u);
  EXPECT_TRUE(FindClose(search));
  EXPECT_FALSE(FindNextFileW(search, &data));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
  EXPECT_FALSE(FindClose(INVALID_HANDLE_VALUE));
}

TEST(Search, ARootHasNoDots) {
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW(L"C:\\*", &data);
  ASSERT_NE(search, INVALID_HANDLE_VALUE);
  EXPECT_NE(Utf8(data.cFileName), ".");
  FindClose(search);
  EXPECT_EQ(Names(L"C:\\"), "error 2");
}

TEST(Names, TemporaryFilesAndFullPaths) {
  wchar_t folder[MAX_PATH + 1] = {};
  const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
  ASSERT_GT(length, 3u);
  EXPECT_EQ(folder[1], L':');
  EXPECT_EQ(folder[length - 1], L'\\');
  EXPECT_EQ(folder[length], 0);
  EXPECT_EQ(GetTempPathW(2, folder), length + 1);

  ScratchFolder scratch;
  wchar_t name[MAX_PATH];
  EXPECT_EQ(GetTempFileNameW(scratch.Path(L""), L"asked", 0x12ABCD, name), 0xABCDu);
  EXPECT_EQ(0, lstrcmpiW(scratch.Path(L"askABCD.TMP"), name));  // the case is not promised
  EXPECT_FALSE(Exists(name));
  const UINT number = GetTempFileNameW(scratch.Path(L""), L"qor", 0, name);
  EXPECT_NE(number, 0u);
  EXPECT_EQ(GetFile(name), "");
  EXPECT_EQ(GetTempFileNameW(scratch.Path(L"none"), L"qor", 0, name), 0u);
  EXPECT_EQ(GetLastError(), ERROR_DIRECTORY);

  wchar_t before[MAX_PATH];
  ASSERT_NE(GetCurrentDirectoryW(MAX_PATH, before), 0u);
  ASSERT_TRUE(SetCurrentDirectoryW(scratch.Path(L"")));
  wchar_t full[MAX_PATH];
  LPWSTR part = nullptr;
  EXPECT_NE(GetFullPathNameW(L"x\\..\\a.txt", MAX_PATH, full, &part), 0u);
  EXPECT_TEXT(scratch.Path(L"a.txt"), full);
  EXPECT_TEXT(L"a.txt", part);
  EXPECT_EQ(GetFullPathNameW(L"C:/a/./b/", MAX_PATH, full, &part), 7u);
  EXPECT_TEXT(L"C:\\a\\b\\", full);
  EXPECT_EQ(part, nullptr);
  EXPECT_EQ(GetFullPathNameW(L"C:\\a", 4, full, nullptr), 5u);
  EXPECT_EQ(GetFullPathNameW(L"\\\\srv\\share/x", MAX_PATH, full, nullptr), 13u);
  EXPECT_TEXT(L"\\\\srv\\share\\x", full);
  EXPECT_EQ(GetFullPathNameW(L"", MAX_PATH, full, nullptr), 0u);
  EXPECT_TRUE(PutFile(L"here.txt", "h"));
  EXPECT_EQ(GetFile(scratch.Path(L"here.txt")), "h");
  CreateDirectoryW(L"sub", nullptr);
  ASSERT_TRUE(SetCurrentDirectoryW(L"sub"));
  EXPECT_NE(GetFullPathNameW(L"..\\..\\sub.x", MAX_PATH, full, nullptr), 0u);
  EXPECT_EQ(Names(L"..\\here.*"), "here.txt ");
  EXPECT_EQ(Names(L"."), "sub ");
  ASSERT_TRUE(SetCurrentDirectoryW(before));
  EXPECT_EQ(ErrorOf(SetCurrentDirectoryW(scratch.Path(L"none"))), ERROR_FILE_NOT_FOUND);
}

TEST(Volume, TheSystemDriveIsFixedAndHasRoom) {
  EXPECT_EQ(GetDriveTypeW(L"C:\\"), DRIVE_FIXED);
  EXPECT_EQ(GetDriveTypeW(L"C:"), DRIVE_FIXED);
  EXPECT_EQ(GetDriveTypeW(L""), DRIVE_NO_ROOT_DIR);
  EXPECT_EQ(GetDriveTypeW(L"1:\\"), DRIVE_NO_ROOT_DIR);
  wchar_t list[MAX_PATH + 1] = {};
  const DWORD length = GetLogicalDriveStringsW(MAX_PATH, list);
  ASSERT_LE(length, MAX_PATH);
  bool found = false;
  DWORD seen = 0;
  for (const wchar_t* root = list; *root != 0;) {
    found = found || Utf8(root) == "C:\\";
    EXPECT_NE(GetDriveTypeW(root), DRIVE_NO_ROOT_DIR) << Utf8(root);
    while (*root++ != 0) ++seen;
    ++seen;
  }
  EXPECT_TRUE(found);
  EXPECT_EQ(seen, length);
  EXPECT_EQ(GetLogicalDriveStringsW(2, list), length + 1);

  ULARGE_INTEGER available;
  ULARGE_INTEGER total;
  ULARGE_INTEGER free;
  ASSERT_TRUE(GetDiskFreeSpaceExW(L"C:\\", &available, &total, &free));
  EXPECT_GT(total.QuadPart, 0u);
  EXPECT_LE(available.QuadPart, free.QuadPart);
  EXPECT_LE(free.QuadPart, total.QuadPart);
  EXPECT_TRUE(GetDiskFreeSpaceExW(L"C:\\", nullptr, nullptr, nullptr));
  EXPECT_FALSE(GetDiskFreeSpaceExW(L"C:\\no such folder\\x", &available, nullptr, nullptr));

  const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS);
  EXPECT_EQ(SetErrorMode(before), SEM_FAILCRITICALERRORS);
}

}  // namespace
}  // namespace qorgen::tests
