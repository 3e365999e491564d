#include <cstring>
#include <gtest/gtest.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/wine.h"

namespace qorgen::tests {
namespace {

constexpr DWORD kBoth = GENERIC_READ | GENERIC_WRITE;

HANDLE Open(const wchar_t* path, DWORD access, DWORD share, DWORD disposition,
            DWORD flags = FILE_ATTRIBUTE_NORMAL) {
  return CreateFileW(path, access, share, nullptr, disposition, flags, nullptr);
}

DWORD ErrorOfOpen(const wchar_t* path, DWORD access, DWORD share, DWORD disposition, DWORD flags = 0) {
  const HANDLE file = Open(path, access, share, disposition, flags);
  if (file == INVALID_HANDLE_VALUE) return GetLastError();
  CloseHandle(file);
  return 0;
}

long long Seek(HANDLE file, long long distance, DWORD method) {
  LARGE_INTEGER move;
  LARGE_INTEGER reached;
  move.QuadPart = distance;
  return SetFilePointerEx(file, move, &reached, method) ? reached.QuadPart : -1;
}

TEST(OpenFile, DispositionsOnMissingAndPresentFiles) {
  const struct {
    DWORD disposition;
    DWORD missing;          // error on a missing file, 0 if it is made
    DWORD present;          // error on a file that is there
    const char* remaining;  // its content afterwards
  } rows[] = {
      {CREATE_NEW, 0, ERROR_FILE_EXISTS, "old"},
      {CREATE_ALWAYS, 0, 0, ""},
      {OPEN_EXISTING, ERROR_FILE_NOT_FOUND, 0, "old"},
      {OPEN_ALWAYS, 0, 0, "old"},
      {TRUNCATE_EXISTING, ERROR_FILE_NOT_FOUND, 0, ""},
      {0, ERROR_INVALID_PARAMETER, ERROR_INVALID_PARAMETER, "old"},
      {6, ERROR_INVALID_PARAMETER, ERROR_INVALID_PARAMETER, "old"},
  };
  ScratchFolder folder;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.disposition);
    DeleteFileW(folder.Path(L"new"));
    ASSERT_TRUE(PutFile(folder.Path(L"old"), "old"));
    EXPECT_EQ(ErrorOfOpen(folder.Path(L"new"), kBoth, 0, row.disposition), row.missing);
    EXPECT_EQ(Exists(folder.Path(L"new")), row.missing == 0);
    EXPECT_EQ(ErrorOfOpen(folder.Path(L"old"), kBoth, 0, row.disposition), row.present);
    EXPECT_EQ(GetFile(folder.Path(L"old")), row.remaining);
  }
  const HANDLE file = Open(folder.Path(L"old"), kBoth, 0, OPEN_ALWAYS);
  EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
  CloseHandle(file);
  SetLastError(99);
  CloseHandle(Open(folder.Path(L"fresh"), kBoth, 0, OPEN_ALWAYS));
  EXPECT_EQ(GetLastError(), 0u);
}

TEST(OpenFile, ErrorNumbersTellWhatIsMissing) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"file"), "x"));
  const struct {
    const wchar_t* path;
    DWORD disposition;
    DWORD error;
  } rows[] = {
      {folder.Path(L"none"), OPEN_EXISTING, ERROR_FILE_NOT_FOUND},
      {folder.Path(L"none\\a"), OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
      {folder.Path(L"none\\a"), CREATE_NEW, ERROR_PATH_NOT_FOUND},
      {folder.Path(L"file\\a"), OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
      {folder.Path(L"a?b"), CREATE_NEW, ERROR_INVALID_NAME},
      {folder.Path(L"*"), OPEN_EXISTING, ERROR_INVALID_NAME},
      {folder.Path(L""), OPEN_EXISTING, ERROR_ACCESS_DENIED},
      {L"", OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
      {nullptr, OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ErrorOfOpen(row.path, GENERIC_READ, 0, row.disposition), row.error);
  }
  // Published: the caller must open with GENERIC_WRITE. Wine truncates without it.
  EXPECT_TRUE(HoldsExceptOnWine(ErrorOfOpen(folder.Path(L"file"), GENERIC_READ, 0, TRUNCATE_EXISTING) ==
                                ERROR_INVALID_PARAMETER));
  EXPECT_EQ(ErrorOfOpen(folder.Path(L"."), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING,
                        FILE_FLAG_BACKUP_SEMANTICS),
            0u);
  EXPECT_EQ(ErrorOfOpen(folder.Path(L"none\\..\\file"), GENERIC_READ, 0, OPEN_EXISTING), 0u);
}

TEST(OpenFile, ReadOnlyFilesRefuseToBeChanged) {
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"帳簿.txt");
  ASSERT_TRUE(PutFile(path, "kept"));
  ASSERT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_READONLY));
  if (!ReadOnlyFilesAreWritable()) {
    EXPECT_EQ(ErrorOfOpen(path, GENERIC_WRITE, 0, OPEN_EXISTING), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ErrorOfOpen(path, GENERIC_READ, 0, CREATE_ALWAYS), ERROR_ACCESS_DENIED);
  }
  EXPECT_EQ(ErrorOfOpen(path, GENERIC_READ, 0, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(ErrorOfOpen(path, GENERIC_READ, 0, OPEN_EXISTING), 0u);
  EXPECT_EQ(GetFile(path), "kept");

  // The mark given at creation doesn't hold for the handle that made the file.
  const HANDLE file = Open(folder.Path(L"made"), GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY);
  DWORD written = 0;
  EXPECT_TRUE(WriteFile(file, "ab", 2, &written, nullptr));
  CloseHandle(file);
  EXPECT_EQ(GetFileAttributesW(folder.Path(L"made")) & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
}

TEST(OpenFile, ShareModesOfTwoHandlesMustAgree) {
  constexpr DWORD kR = FILE_SHARE_READ;
  constexpr DWORD kW = FILE_SHARE_WRITE;
  constexpr DWORD kD = FILE_SHARE_DELETE;
  const struct {
    DWORD access;
    DWORD share;
    DWORD secondAccess;
    DWORD secondShare;
    bool agrees;
  } rows[] = {
      {GENERIC_READ, 0, GENERIC_READ, kR, false},
      {GENERIC_READ, kR, GENERIC_READ, kR, true},
      {GENERIC_READ, kR, GENERIC_READ, 0, false},
      {GENERIC_READ, kR, GENERIC_WRITE, kR, false},
      {GENERIC_READ, kR | kW, GENERIC_WRITE, kR, true},
      {GENERIC_READ, kR | kW, GENERIC_WRITE, kW, false},
      {GENERIC_WRITE, kR, GENERIC_READ, kR, false},
      {GENERIC_WRITE, kR, GENERIC_READ, kR | kW, true},
      {GENERIC_READ, kR, DELETE, kR, false},
      {GENERIC_READ, kR | kD, DELETE, kR, true},
      {GENERIC_READ, 0, FILE_WRITE_ATTRIBUTES, 0, true},
  };
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"a");
  ASSERT_TRUE(PutFile(path, "x"));
  for (const auto& row : rows) {
    const HANDLE first = Open(path, row.access, row.share, OPEN_EXISTING);
    ASSERT_NE(first, INVALID_HANDLE_VALUE);
    EXPECT_EQ(ErrorOfOpen(path, row.secondAccess, row.secondShare, OPEN_EXISTING),
              row.agrees ? 0u : ERROR_SHARING_VIOLATION)
        << (&row - rows);
    CloseHandle(first);
  }
  // A refused opening must not have emptied the file, and an open one can't be removed.
  const HANDLE first = Open(path, GENERIC_READ, kR | kW, OPEN_EXISTING);
  EXPECT_EQ(ErrorOfOpen(path, GENERIC_WRITE, 0, CREATE_ALWAYS), ERROR_SHARING_VIOLATION);
  EXPECT_EQ(GetFile(path), "x");
  EXPECT_FALSE(DeleteFileW(path));
  EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
  EXPECT_FALSE(MoveFileW(path, folder.Path(L"b")));
  EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
  CloseHandle(first);
  EXPECT_TRUE(DeleteFileW(path));
}

TEST(OpenFile, DeleteOnCloseRemovesTheFile) {
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"ask.tmp");
  const HANDLE file = Open(path, kBoth, 0, CREATE_NEW,
                           FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_WRITE_THROUGH);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_TRUE(Exists(path));
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_FALSE(Exists(path));
}

TEST(FileHandle, ReadsWritesAndMovesThePosition) {
  ScratchFolder folder;
  const HANDLE file = Open(folder.Path(L"a"), kBoth, 0, CREATE_NEW);
  DWORD count = 99;
  EXPECT_TRUE(WriteFile(file, "0123456789", 10, &count, nullptr));
  EXPECT_EQ(count, 10u);
  char text[8] = {};
  EXPECT_TRUE(ReadFile(file, text, sizeof text, &count, nullptr));
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(Seek(file, -4, FILE_END), 6);
  EXPECT_EQ(Seek(file, -2, FILE_CURRENT), 4);
  EXPECT_TRUE(ReadFile(file, text, 3, &count, nullptr));
  EXPECT_EQ(std::string(text, count), "456");
  EXPECT_EQ(Seek(file, -8, FILE_CURRENT), -1);
  EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
  EXPECT_EQ(Seek(file, 0, FILE_CURRENT), 7);
  EXPECT_EQ(Seek(file, 0, 3), -1);
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);

  // Beyond 4 GB, where a 32-bit offset would have wrapped around; the hole costs no space.
  const long long distant = 0x140000000;
  EXPECT_EQ(Seek(file, distant, FILE_BEGIN), distant);
  EXPECT_TRUE(SetEndOfFile(file));
  LARGE_INTEGER size;
  EXPECT_TRUE(GetFileSizeEx(file, &size));
  EXPECT_EQ(size.QuadPart, distant);
  Seek(file, 5, FILE_BEGIN);
  EXPECT_TRUE(SetEndOfFile(file));
  EXPECT_TRUE(FlushFileBuffers(file));
  CloseHandle(file);
  EXPECT_EQ(GetFile(folder.Path(L"a")), "01234");
}

TEST(FileHandle, RightsAndValidityAreChecked) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"a"), "x"));
  char byte = 0;
  DWORD count = 99;
  const HANDLE reader =
      Open(folder.Path(L"a"), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING);
  const HANDLE writer =
      Open(folder.Path(L"a"), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING);
  EXPECT_FALSE(WriteFile(reader, "x", 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(count, 0u);
  EXPECT_FALSE(ReadFile(writer, &byte, 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
  // Wine refuses as well, but names the parameter.
  EXPECT_TRUE(HoldsExceptOnWine(!SetEndOfFile(reader) && GetLastError() == ERROR_ACCESS_DENIED));
  EXPECT_FALSE(FlushFileBuffers(reader));
  EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
  CloseHandle(writer);

  HANDLE twin = nullptr;
  EXPECT_TRUE(DuplicateHandle(GetCurrentProcess(), reader, GetCurrentProcess(), &twin, 0, FALSE,
                              DUPLICATE_SAME_ACCESS));
  EXPECT_TRUE(CloseHandle(reader));
  EXPECT_TRUE(ReadFile(twin, &byte, 1, &count, nullptr));
  EXPECT_EQ(byte, 'x');
  EXPECT_TRUE(CloseHandle(twin));

  for (const HANDLE bad :
       {INVALID_HANDLE_VALUE, HANDLE{nullptr}, reinterpret_cast<HANDLE>(std::uintptr_t{0xABCD0})}) {
    EXPECT_FALSE(ReadFile(bad, &byte, 1, &count, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
  }
  EXPECT_FALSE(CloseHandle(nullptr));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST(FileHandle, LockedRangesBarOtherHandles) {
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"a");
  ASSERT_TRUE(PutFile(path, "0123456789"));
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE;
  const HANDLE a = Open(path, kBoth, kShare, OPEN_EXISTING);
  const HANDLE b = Open(path, kBoth, kShare, OPEN_EXISTING);
  EXPECT_TRUE(LockFile(a, 4, 0, 2, 0));
  const struct {
    DWORD offset;
    DWORD bytes;
    bool free;
  } rows[] = {{0, 4, true}, {0, 5, false}, {5, 1, false}, {6, 4, true}, {3, 9, false}};
  for (const auto& row : rows) {
    EXPECT_EQ(LockFile(b, row.offset, 0, row.bytes, 0) != FALSE, row.free) << row.offset;
    if (row.free) {
      EXPECT_TRUE(UnlockFile(b, row.offset, 0, row.bytes, 0));
    } else {
      EXPECT_EQ(GetLastError(), ERROR_LOCK_VIOLATION);
    }
  }
  char text[10];
  DWORD count = 0;
  // Wine's locks bar other locks alone, neither reading nor writing.
  EXPECT_TRUE(
      HoldsExceptOnWine(!ReadFile(b, text, 5, &count, nullptr) && GetLastError() == ERROR_LOCK_VIOLATION));
  SetFilePointerEx(b, LARGE_INTEGER{}, nullptr, FILE_BEGIN);
  EXPECT_TRUE(ReadFile(b, text, 4, &count, nullptr));
  EXPECT_TRUE(
      HoldsExceptOnWine(!WriteFile(b, "x", 1, &count, nullptr) && GetLastError() == ERROR_LOCK_VIOLATION));
  EXPECT_TRUE(ReadFile(a, text, 10, &count, nullptr));
  EXPECT_EQ(count, 10u);

  EXPECT_FALSE(UnlockFile(a, 4, 0, 1, 0));
  EXPECT_TRUE(UnlockFile(a, 4, 0, 2, 0));
  EXPECT_FALSE(UnlockFile(a, 4, 0, 2, 0));
  // Beyond the end of the file and up to the last byte there can be.
  EXPECT_TRUE(LockFile(a, 0, 1, 0xFFFFFFFF, 0xFFFFFFFE));
  EXPECT_FALSE(LockFile(b, 0xFFFFFFF0, 0xFFFFFFFF, 1, 0));
  CloseHandle(a);
  EXPECT_TRUE(LockFile(b, 4, 0, 2, 0));
  CloseHandle(b);
}

TEST(FileHandle, TimesAreSetAndRead) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"a"), "x"));
  const SYSTEMTIME moment = {2024, 2, 0, 29, 12, 34, 56, 0};
  FILETIME set;
  ASSERT_TRUE(SystemTimeToFileTime(&moment, &set));
  const HANDLE file = Open(folder.Path(L"a"), GENERIC_WRITE | FILE_WRITE_ATTRIBUTES, 0, OPEN_EXISTING);
  ASSERT_TRUE(SetFileTime(file, nullptr, nullptr, &set));
  FILETIME creation;
  FILETIME write;
  EXPECT_TRUE(GetFileTime(file, &creation, nullptr, &write));
  EXPECT_EQ(std::memcmp(&write, &set, sizeof set), 0);
  EXPECT_GT(creation.dwHighDateTime, 0u);
  CloseHandle(file);
  WIN32_FILE_ATTRIBUTE_DATA data;
  EXPECT_TRUE(GetFileAttributesExW(folder.Path(L"a"), GetFileExInfoStandard, &data));
  EXPECT_EQ(std::memcmp(&data.ftLastWriteTime, &set, sizeof set), 0);
  EXPECT_EQ(data.nFileSizeLow, 1u);
}

}  // namespace
}  // namespace qorgen::tests
