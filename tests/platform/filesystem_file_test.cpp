#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"

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
  // The error on a missing file, 0 if it is made; the error on one that is there, and its content afterwards.
  const std::tuple<DWORD, DWORD, DWORD, const char*> rows[] = {
      {CREATE_NEW, 0, ERROR_FILE_EXISTS, "old"},
      {CREATE_ALWAYS, 0, 0, ""},
      {OPEN_EXISTING, ERROR_FILE_NOT_FOUND, 0, "old"},
      {OPEN_ALWAYS, 0, 0, "old"},
      {TRUNCATE_EXISTING, ERROR_FILE_NOT_FOUND, 0, ""},
      {0, ERROR_INVALID_PARAMETER, ERROR_INVALID_PARAMETER, "old"},
      {6, ERROR_INVALID_PARAMETER, ERROR_INVALID_PARAMETER, "old"},
  };
  ScratchFolder folder;
  for (const auto& [disposition, missing, present, remaining] : rows) {
    SCOPED_TRACE(disposition);
    DeleteFileW(folder.Path(L"new"));
    ASSERT_TRUE(PutFile(folder.Path(L"old"), "old"));
    EXPECT_EQ(ErrorOfOpen(folder.Path(L"new"), kBoth, 0, disposition), missing);
    EXPECT_EQ(Exists(folder.Path(L"new")), missing == 0);
    EXPECT_EQ(ErrorOfOpen(folder.Path(L"old"), kBoth, 0, disposition), present);
    EXPECT_EQ(GetFile(folder.Path(L"old")), remaining);
  }
  // Opening or making tells which of the two it was.
  for (const auto& [name, error] :
       {std::pair<const wchar_t*, DWORD>(L"old", ERROR_ALREADY_EXISTS), {L"fresh", 0}}) {
    SetLastError(99);
    CloseHandle(Open(folder.Path(name), kBoth, 0, OPEN_ALWAYS));
    EXPECT_EQ(GetLastError(), error) << Utf8(name);
  }
}

TEST(OpenFile, ErrorNumbersTellWhatIsMissing) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"file"), "x"));
  const struct {
    const wchar_t* name;
    DWORD disposition;
    DWORD error;
    DWORD flags = 0;
    bool on_wine = true;
  } rows[] = {
      {L"none\\a", CREATE_NEW, ERROR_PATH_NOT_FOUND},
      {L"file\\a", OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
      {L"a?b", CREATE_NEW, ERROR_INVALID_NAME},
      {L"*", OPEN_EXISTING, ERROR_INVALID_NAME},
      {L"file", TRUNCATE_EXISTING, ERROR_INVALID_PARAMETER, 0, false},  // Wine truncates for a reader
      {L".", OPEN_EXISTING, 0, FILE_FLAG_BACKUP_SEMANTICS},
      {L"none\\..\\file", OPEN_EXISTING, 0},
  };
  for (const auto& row : rows) {
    const DWORD error =
        ErrorOfOpen(folder.Path(row.name), GENERIC_READ, FILE_SHARE_READ, row.disposition, row.flags);
    EXPECT_TRUE(AsPublished(error == row.error, row.on_wine)) << Utf8(row.name) << ": " << error;
  }
}

TEST(OpenFile, ReadOnlyFilesRefuseToBeChanged) {
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"帳簿.txt");
  ASSERT_TRUE(PutFile(path, "kept"));
  ASSERT_TRUE(SetFileAttributesW(path, FILE_ATTRIBUTE_READONLY));
  if (!ReadOnlyFilesAreWritable()) {
    EXPECT_EQ(ErrorOfOpen(path, GENERIC_READ, 0, CREATE_ALWAYS), ERROR_ACCESS_DENIED);
  }
  EXPECT_EQ(ErrorOfOpen(path, GENERIC_READ, 0, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(GetFile(path), "kept");

  // The mark given at creation doesn't hold for the handle that made the file.
  const HANDLE file = Open(folder.Path(L"made"), GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY);
  DWORD written = 0;
  EXPECT_TRUE(WriteFile(file, "ab", 2, &written, nullptr));
  CloseHandle(file);
  EXPECT_NE(GetFileAttributesW(folder.Path(L"made")) & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST(OpenFile, ShareModesOfTwoHandlesMustAgree) {
  constexpr DWORD kRead = GENERIC_READ;
  constexpr DWORD kWrite = GENERIC_WRITE;
  constexpr DWORD kR = FILE_SHARE_READ;
  constexpr DWORD kW = FILE_SHARE_WRITE;
  constexpr DWORD kD = FILE_SHARE_DELETE;
  // Access and share mode of the first handle and of the second, and whether they agree.
  const std::tuple<DWORD, DWORD, DWORD, DWORD, bool> rows[] = {
      {kRead, 0, kRead, kR, false},
      {kRead, kR, kRead, kR, true},
      {kRead, kR, kRead, 0, false},
      {kRead, kR, kWrite, kR, false},
      {kRead, kR | kW, kWrite, kR, true},
      {kRead, kR | kW, kWrite, kW, false},
      {kWrite, kR, kRead, kR, false},
      {kWrite, kR, kRead, kR | kW, true},
      {kRead, kR, DELETE, kR, false},
      {kRead, kR | kD, DELETE, kR, true},
      {kRead, 0, FILE_WRITE_ATTRIBUTES, 0, true},
  };
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"a");
  ASSERT_TRUE(PutFile(path, "x"));
  for (const auto& [access, share, second_access, second_share, agrees] : rows) {
    const HANDLE first = Open(path, access, share, OPEN_EXISTING);
    EXPECT_EQ(ErrorOfOpen(path, second_access, second_share, OPEN_EXISTING),
              agrees ? 0u : ERROR_SHARING_VIOLATION)
        << access << ' ' << share << ", " << second_access << ' ' << second_share;
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
  const HANDLE file = Open(path, kBoth, 0, CREATE_NEW, FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE);
  EXPECT_TRUE(Exists(path));
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_FALSE(Exists(path));
}

TEST(FileHandle, SeeksFromThreePlaces) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"a"), "0123456789"));
  const HANDLE file = Open(folder.Path(L"a"), GENERIC_READ, 0, OPEN_EXISTING);
  const std::tuple<long long, DWORD, long long, DWORD> rows[] = {
      {-4, FILE_END, 6, 0},
      {-2, FILE_CURRENT, 4, 0},
      {-8, FILE_CURRENT, -1, ERROR_NEGATIVE_SEEK},
      {0, 3, -1, ERROR_INVALID_PARAMETER},
      {0, FILE_CURRENT, 4, 0},  // where it was before the refusals
      {0x140000000, FILE_BEGIN, 0x140000000, 0},
  };
  for (const auto& [distance, method, reached, error] : rows) {
    SetLastError(0);
    EXPECT_EQ(Seek(file, distance, method), reached) << distance;
    EXPECT_EQ(GetLastError(), error) << distance;
  }
  CloseHandle(file);
}

TEST(FileHandle, RightsAndValidityAreChecked) {
  ScratchFolder folder;
  ASSERT_TRUE(PutFile(folder.Path(L"a"), "x"));
  char byte = 0;
  DWORD count = 99;
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE;
  const HANDLE reader = Open(folder.Path(L"a"), GENERIC_READ, kShare, OPEN_EXISTING);
  const HANDLE writer = Open(folder.Path(L"a"), GENERIC_WRITE, kShare, OPEN_EXISTING);
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
  CloseHandle(reader);

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
  // Beyond the end of the file and up to the last byte there can be.
  EXPECT_TRUE(LockFile(a, 0, 1, 0xFFFFFFFF, 0xFFFFFFFE));
  // The low and the high half of the offset, the bytes, and whether they are free.
  const std::tuple<DWORD, DWORD, DWORD, bool> rows[] = {{0, 0, 4, true},  {0, 0, 5, false},
                                                        {5, 0, 1, false}, {6, 0, 4, true},
                                                        {3, 0, 9, false}, {0xFFFFFFF0, 0xFFFFFFFF, 1, false}};
  for (const auto& [offset, high, bytes, free] : rows) {
    EXPECT_EQ(LockFile(b, offset, high, bytes, 0) != FALSE, free) << offset << ' ' << bytes;
    EXPECT_EQ(UnlockFile(b, offset, high, bytes, 0) != FALSE, free) << offset << ' ' << bytes;
  }
  char text[10];
  DWORD count = 0;
  EXPECT_TRUE(ReadFile(b, text, 4, &count, nullptr));
  // Wine's locks bar other locks alone, neither reading nor writing.
  EXPECT_TRUE(
      HoldsExceptOnWine(!WriteFile(b, "x", 1, &count, nullptr) && GetLastError() == ERROR_LOCK_VIOLATION));
  EXPECT_TRUE(ReadFile(a, text, 10, &count, nullptr));
  EXPECT_EQ(count, 10u);
  EXPECT_FALSE(UnlockFile(a, 4, 0, 1, 0));
  CloseHandle(a);
  EXPECT_TRUE(LockFile(b, 4, 0, 2, 0));
  CloseHandle(b);
}

}  // namespace
}  // namespace qorgen::tests
