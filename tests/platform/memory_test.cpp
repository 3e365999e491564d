#include "qorgen/platform/memory.h"

#include <gtest/gtest.h>

namespace {

TEST(MemoryStatusTest, FiguresAgreeWithEachOther) {
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof(status);
  ASSERT_TRUE(GlobalMemoryStatusEx(&status));
  EXPECT_LE(status.dwMemoryLoad, 100u);
  EXPECT_GT(status.ullTotalPhys, 16u << 20);
  EXPECT_LE(status.ullAvailPhys, status.ullTotalPhys);
  EXPECT_GE(status.ullTotalPageFile, status.ullTotalPhys);
  EXPECT_LT(status.ullAvailVirtual, status.ullTotalVirtual);
}

TEST(SystemVersionTest, NeedsTheRecordSize) {
  OSVERSIONINFOW version = {};
  EXPECT_FALSE(GetVersionExW(&version));
  version.dwOSVersionInfoSize = sizeof(version);
  ASSERT_TRUE(GetVersionExW(&version));
  EXPECT_GE(version.dwMajorVersion, 5u);
  EXPECT_EQ(2u, version.dwPlatformId);
}

}  // namespace
