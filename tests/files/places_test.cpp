
#include "qorgen/files/disk_util.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/internal/memory_widening.h"
#include "qorgen/files/memory_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST(PlacesTest, Executable) {
  const CString path = CQorFileUtil::GetModuleFileNameW(nullptr);
  EXPECT_TEXT(L"qorgen_files_tests", CQorFileUtil::GetExeName());
  const CString folder = CQorFileUtil::GetExeDir();
  EXPECT_NE(L'\\', folder[folder.GetLength() - 1]);
  EXPECT_TEXT(path.Left(folder.GetLength()), folder);
  EXPECT_EQ(L'\\', path[folder.GetLength()]);
}

TEST(PlacesTest, KnownFoldersExistOrAreEmpty) {
  for (const auto folder : {CQorFileUtil::GetDesktopPath, CQorFileUtil::GetMyDocumentPath,
                            CQorFileUtil::GetMyPicturesPath, CQorFileUtil::GetAppDataLocalPath,
                            CQorFileUtil::GetCommonAppDataPath, CQorFileUtil::GetCommonDocumentPath}) {
    const CString path = folder();
    if (path.IsEmpty()) continue;
    EXPECT_EQ(1, CQorFileUtil::IsExistFile(path)) << Utf8(path);
    EXPECT_NE(L'\\', path[path.GetLength() - 1]);
  }
  wchar_t buffer[261] = {L'x'};
  EXPECT_EQ(0, CQorFileUtil::GetShellFolderPath(buffer, 0x7FFF, 1));
  EXPECT_EQ(0, buffer[0]);
  EXPECT_EQ(0, CQorFileUtil::GetShellFolderPath(nullptr, 5, 1));
}

TEST(PlacesTest, TemporaryFileIsMadeEmpty) {
  const CString folder = CQorFileUtil::GetTempPathW();
  EXPECT_EQ(L'\\', folder[folder.GetLength() - 1]);
  const std::tuple<const wchar_t*, const wchar_t*> rows[] = {{nullptr, L"qor"}, {L"abcdef", L"abc"}};
  for (const auto& [prefix, start] : rows) {
    const CString path = CQorFileUtil::GetTempFileNameW(prefix);
    ASSERT_FALSE(path.IsEmpty());
    EXPECT_TEXT(start, path.Mid(folder.GetLength(), 3));
    EXPECT_EQ(0u, CQorFileUtil::GetFileStatus(path).m_size);
    EXPECT_EQ(1, CQorFileUtil::DeleteFileW(path));
  }
}

TEST(DiskUtilTest, ListsRootsAgainAndAgain) {
  CQorDiskUtil disks;
  EXPECT_EQ(0, disks.GetCount());
  EXPECT_THROWS_POINTER(disks.GetString(0), CInvalidArgException);
  ASSERT_EQ(1, disks.Initialize());
  const int count = disks.GetCount();
  ASSERT_GE(count, 1);
  EXPECT_EQ(1, disks.Initialize());
  EXPECT_EQ(count, disks.GetCount());

  int system = -1;
  for (int i = 0; i < count; ++i) {
    const CString root = disks.GetString(i);
    EXPECT_EQ(L'\\', root[root.GetLength() - 1]);
    if (root.CompareNoCase(L"C:\\") == 0) system = i;
  }
  ASSERT_GE(system, 0);
  EXPECT_GE(disks.GetType(system), 2u);
  ULARGE_INTEGER available = {};
  ULARGE_INTEGER total = {};
  ULARGE_INTEGER free = {};
  EXPECT_EQ(1, disks.GetBytes(system, &available, &total, &free));
  EXPECT_GT(total.QuadPart, 0u);
  EXPECT_LE(available.QuadPart, free.QuadPart);
  EXPECT_EQ(1, disks.GetBytes(system, nullptr, nullptr, nullptr));

  for (const int index : {-1, count}) {
    EXPECT_THROWS_POINTER(disks.GetString(index), CInvalidArgException);
    EXPECT_THROWS_POINTER(disks.GetType(index), CInvalidArgException);
    EXPECT_THROWS_POINTER(disks.GetBytes(index, nullptr, nullptr, nullptr), CInvalidArgException);
  }
  disks.Finalize();
  EXPECT_EQ(0, disks.GetCount());
}

TEST(MemoryUtilTest, FiguresOrAClearedRecord) {
  CQorMemoryUtil::GetMemoryStatus(nullptr);
  CQorMemoryUtil::GetMemoryStatusEx(nullptr);
  MEMORYSTATUS small = {};
  CQorMemoryUtil::GetMemoryStatus(&small);
  EXPECT_GT(small.dwTotalPhys, 0u);

  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof(status);
  CQorMemoryUtil::GetMemoryStatusEx(&status);
  EXPECT_EQ(sizeof(status), status.dwLength);
  EXPECT_GE(status.ullTotalPhys, small.dwTotalPhys);

  status.dwLength = 3;
  CQorMemoryUtil::GetMemoryStatusEx(&status);
  EXPECT_EQ(0u, status.dwLength);
  EXPECT_EQ(0u, status.ullTotalPhys);
}

TEST(MemoryUtilTest, OlderFiguresAreWidenedOneByOne) {
  const MEMORYSTATUS figures = {1, 2, 3, 4, 5, 6, 7, 0xFFFFFFFF};
  MEMORYSTATUSEX status = {64, 9, 9, 9, 9, 9, 9, 9, 9};
  qorgen::files::WidenMemoryStatus(figures, status);
  EXPECT_EQ(64u, status.dwLength);
  EXPECT_EQ(2u, status.dwMemoryLoad);
  EXPECT_EQ(3u, status.ullTotalPhys);
  EXPECT_EQ(4u, status.ullAvailPhys);
  EXPECT_EQ(5u, status.ullTotalPageFile);
  EXPECT_EQ(6u, status.ullAvailPageFile);
  EXPECT_EQ(7u, status.ullTotalVirtual);
  EXPECT_EQ(0xFFFFFFFFu, status.ullAvailVirtual);
  EXPECT_EQ(0u, status.ullAvailExtendedVirtual);
}

}  // namespace
