#include "qorgen/afx/file.h"

#include <memory>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

TEST(CFile, OpensByItsFlags) {
  ScratchFolder scratch;
  const std::tuple<unsigned int, int, const char*> rows[] = {
      {CFile::modeRead, CFileException::fileNotFound, "old"},
      {CFile::modeReadWrite | CFile::shareDenyNone, CFileException::fileNotFound, "old"},
      {CFile::modeCreate | CFile::modeWrite | CFile::typeText, CFileException::none, ""},
      {CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary, CFileException::none, ""},
      {CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite, CFileException::none, "old"},
  };
  for (const auto& [flags, cause_missing, remaining] : rows) {
    SCOPED_TRACE(flags);
    DeleteFileW(scratch.Path(L"new"));
    ASSERT_TRUE(PutFile(scratch.Path(L"old"), "old"));
    CFile file;
    CFileException error;
    EXPECT_EQ(file.Open(scratch.Path(L"new"), flags, &error), cause_missing == CFileException::none);
    EXPECT_EQ(error.m_cause, cause_missing);
    EXPECT_TRUE(file.Open(scratch.Path(L"old"), flags));
    file.Close();
    EXPECT_EQ(GetFile(scratch.Path(L"old")), remaining);
  }
}

TEST(CFile, FailureNamesCauseNumberAndFile) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"fixed"), "x"));
  SetFileAttributesW(scratch.Path(L"fixed"), FILE_ATTRIBUTE_READONLY);
  const std::tuple<const wchar_t*, unsigned int, int, DWORD> rows[] = {
      {scratch.Path(L"none"), CFile::modeRead, CFileException::fileNotFound, ERROR_FILE_NOT_FOUND},
      {scratch.Path(L"none\\a"), CFile::modeRead, CFileException::badPath, ERROR_PATH_NOT_FOUND},
      {scratch.Path(L""), CFile::modeRead, CFileException::accessDenied, ERROR_ACCESS_DENIED},
      {scratch.Path(L"fixed"), CFile::modeWrite, CFileException::accessDenied, ERROR_ACCESS_DENIED},
      {scratch.Path(L"a|b"), CFile::modeCreate | CFile::modeWrite, CFileException::badPath,
       ERROR_INVALID_NAME},
      {L"", CFile::modeRead, CFileException::badPath, ERROR_PATH_NOT_FOUND},
      {nullptr, CFile::modeRead, CFileException::badPath, ERROR_PATH_NOT_FOUND},
  };
  const bool writable = ReadOnlyFilesAreWritable();
  for (const auto& [path, flags, cause, number] : rows) {
    if (writable && flags == CFile::modeWrite) continue;
    try {
      CFile file(path, flags);
      ADD_FAILURE() << "opened " << Utf8(path);
    } catch (CFileException* thrown) {
      EXPECT_EQ(thrown->m_cause, cause);
      EXPECT_EQ(thrown->m_lOsError, static_cast<LONG>(number));
      EXPECT_TEXT(path != nullptr ? path : L"", thrown->m_strFileName);
      thrown->Delete();
    }
  }
}

TEST(CFile, ReadsWritesSeeksAndSetsItsLength) {
  ScratchFolder scratch;
  CFile file(scratch.Path(L"a"), CFile::modeCreate | CFile::modeReadWrite);
  file.Write("0123456789", 10);
  file.Write(nullptr, 0);
  EXPECT_EQ(file.GetLength(), 10u);
  EXPECT_EQ(file.Seek(-3, CFile::current), 7u);
  char text[16];
  EXPECT_EQ(file.Read(text, sizeof text), 3u);
  EXPECT_EQ(std::string(text, 3), "789");
  EXPECT_EQ(file.Read(text, sizeof text), 0u);
  EXPECT_EQ(CauseOf([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
  file.SetLength(4);
  EXPECT_EQ(file.GetPosition(), 4u);
  EXPECT_EQ(file.SeekToEnd(), 4u);
  file.SetLength(0x180000000);
  EXPECT_EQ(file.GetLength(), 0x180000000u);
  EXPECT_EQ(file.Seek(-1, CFile::end), 0x17FFFFFFFu);
  file.SetLength(2);
  file.Flush();

  std::unique_ptr<CFile> twin(file.Duplicate());
  file.SeekToBegin();
  EXPECT_EQ(twin->Read(text, 1), 1u);
  EXPECT_EQ(file.GetPosition(), 1u);
  file.Close();
  file.Close();
  EXPECT_EQ(twin->Read(text, 9), 1u);
  EXPECT_EQ(text[0], '1');
  EXPECT_EQ(CauseOf([&] { file.GetLength(); }), CFileException::invalidFile);
  EXPECT_EQ(CauseOf([&] { file.Read(text, 1); }), CFileException::invalidFile);
  file.Flush();
  file.Abort();
}

TEST(CFile, LocksAndShares) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "0123456789"));
  CFile first(scratch.Path(L"a"), CFile::modeReadWrite | CFile::shareDenyNone);
  CFile second(scratch.Path(L"a"), CFile::modeReadWrite | CFile::shareDenyNone);
  EXPECT_EQ(CauseOf([&] { CFile third(scratch.Path(L"a"), CFile::modeRead | CFile::shareDenyWrite); }),
            CFileException::sharingViolation);
  first.LockRange(2, 3);
  EXPECT_EQ(CauseOf([&] { second.LockRange(4, 1); }), CFileException::lockViolation);
  char byte = 0;
  second.Seek(3, CFile::begin);
  // Wine's locks bar other locks alone, neither reading nor writing.
  EXPECT_TRUE(HoldsExceptOnWine(CauseOf([&] { second.Read(&byte, 1); }) == CFileException::lockViolation));
  second.Seek(3, CFile::begin);
  first.UnlockRange(2, 3);
  EXPECT_EQ(second.Read(&byte, 1), 1u);
  EXPECT_EQ(byte, '3');
  EXPECT_NE(CauseOf([&] { first.UnlockRange(2, 3); }), CFileException::none);
}

TEST(CFile, KnowsItsNames) {
  ScratchFolder scratch;
  CFile file(scratch.Path(L"仕訳帳.2024.csv"), CFile::modeCreate | CFile::modeWrite);
  EXPECT_TEXT(L"仕訳帳.2024.csv", file.GetFileName());
  EXPECT_TEXT(L"仕訳帳.2024", file.GetFileTitle());
  EXPECT_TEXT(scratch.Path(L"仕訳帳.2024.csv"), file.GetFilePath());
  file.SetFilePath(L"C:\\x\\.profile");
  EXPECT_TEXT(L".profile", file.GetFileTitle());
  file.Close();
  EXPECT_TEXT(L"", file.GetFilePath());
}

TEST(CFile, RenamesAndRemoves) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "a"));
  ASSERT_TRUE(PutFile(scratch.Path(L"b"), "b"));
  EXPECT_EQ(CauseOf([&] { CFile::Rename(scratch.Path(L"a"), scratch.Path(L"b")); }),
            CFileException::accessDenied);
  CFile::Rename(scratch.Path(L"a"), scratch.Path(L"c"));
  EXPECT_EQ(GetFile(scratch.Path(L"c")), "a");
  CFile::Remove(scratch.Path(L"c"));
  EXPECT_EQ(CauseOf([&] { CFile::Remove(scratch.Path(L"c")); }), CFileException::fileNotFound);
}

TEST(CFileStatus, IsReadAndSet) {
  ScratchFolder scratch;
  const wchar_t* path = scratch.Path(L"a.txt");
  ASSERT_TRUE(PutFile(path, "12345"));
  CFileStatus status;
  ASSERT_TRUE(CFile::GetStatus(path, status));
  EXPECT_EQ(status.m_size, 5u);
  EXPECT_EQ(status.m_attribute & (CFile::readOnly | CFile::directory), 0u);
  EXPECT_TEXT(path, status.m_szFullName);
  EXPECT_NE(status.m_mtime.GetTime(), 0);

  status.m_mtime = CTime(2024, 2, 29, 12, 34, 56);
  status.m_atime = CTime();
  status.m_ctime = CTime();
  status.m_attribute = CFile::readOnly;
  CFile::SetStatus(path, status);
  CFileStatus after;
  ASSERT_TRUE(CFile::GetStatus(path, after));
  EXPECT_EQ(after.m_mtime, status.m_mtime);
  EXPECT_EQ(after.m_attribute & CFile::readOnly, static_cast<DWORD>(CFile::readOnly));

  // New times for a file that is read-only, and stays so.
  status.m_mtime += CTimeSpan(1, 0, 0, 0);
  CFile::SetStatus(path, status);
  {
    CFile file(path, CFile::modeRead);
    ASSERT_TRUE(file.GetStatus(after));
    EXPECT_EQ(after.m_mtime, CTime(2024, 3, 1, 12, 34, 56));
    EXPECT_EQ(after.m_size, 5u);
    EXPECT_EQ(after.m_attribute & CFile::readOnly, static_cast<DWORD>(CFile::readOnly));
  }
  status.m_attribute = CFile::normal;
  CFile::SetStatus(path, status);
  EXPECT_TRUE(DeleteFileW(path));

  after.m_size = 77;
  EXPECT_FALSE(CFile::GetStatus(path, after));
  EXPECT_FALSE(CFile::GetStatus(nullptr, after));
  EXPECT_FALSE(CFile().GetStatus(after));
  EXPECT_EQ(after.m_size, 77u);
  EXPECT_EQ(CauseOf([&] { CFile::SetStatus(path, status); }), CFileException::fileNotFound);
}

TEST(CTime, PartsThereAndBack) {
  const CTime time(2023, 12, 31, 23, 59, 58);
  EXPECT_EQ((std::tuple{2023, 12, 31, 23, 59, 58, 1}),
            (std::tuple{time.GetYear(), time.GetMonth(), time.GetDay(), time.GetHour(), time.GetMinute(),
                        time.GetSecond(), time.GetDayOfWeek()}));
  SYSTEMTIME parts;
  ASSERT_TRUE(time.GetAsSystemTime(parts));
  EXPECT_EQ(CTime(parts), time);
  EXPECT_EQ(CTime(time.GetAsFileTime()), time);
  EXPECT_EQ((time + CTimeSpan(0, 0, 0, 2)).GetDayOfWeek(), 2);
  EXPECT_EQ((time + CTimeSpan(366, 1, 2, 3) - time).GetDays(), 366);
  EXPECT_LT(time, time + CTimeSpan(1));

  EXPECT_THROWS_POINTER(CTime(2023, 13, 1, 0, 0, 0), CInvalidArgException);
  EXPECT_EQ(CTime(SYSTEMTIME{}).GetTime(), 0);
  EXPECT_EQ(CTime(FILETIME{}).GetTime(), 0);
  EXPECT_EQ(CTime(FILETIME{0xD53E8000, 0x019DB1DE}).GetTime(), 0);
  const CTime early(__time64_t{-1});
  EXPECT_EQ(early.GetYear(), 0);
  EXPECT_FALSE(early.GetAsSystemTime(parts));
  EXPECT_EQ(parts.wYear, 0);
  EXPECT_EQ(CTime(early.GetAsFileTime()), early);
  EXPECT_EQ(CTime(INT64_MAX).GetAsFileTime().dwHighDateTime, 0u);
  const CTimeSpan span(-90061);
  EXPECT_EQ((std::tuple{-1, -1, -1, -1}),
            (std::tuple{span.GetDays(), span.GetHours(), span.GetMinutes(), span.GetSeconds()}));
}

}  // namespace
}  // namespace qorgen::tests
