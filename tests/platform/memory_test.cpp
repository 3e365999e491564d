#include "qorgen/platform/memory.h"

#include <gtest/gtest.h>

#include "qorgen/platform/error.h"

namespace {

TEST(MemoryStatusTest, figures_agree_with_each_other) {
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof(status);
  ASSERT_TRUE(GlobalMemoryStatusEx(&status));
  EXPECT_LE(status.dwMemoryLoad, 100u);
  EXPECT_GT(status.ullTotalPhys, 16u << 20);
  EXPECT_LE(status.ullAvailPhys, status.ullTotalPhys);
  EXPECT_GE(status.ullTotalPageFile, status.ullTotalPhys);
  EXPECT_LT(status.ullAvailVirtual, status.ullTotalVirtual);
  EXPECT_EQ(0u, status.ullAvailExtendedVirtual);

  MEMORYSTATUS small = {};
  GlobalMemoryStatus(&small);
  EXPECT_EQ(sizeof(small), small.dwLength);
  EXPECT_EQ(status.ullTotalPhys, small.dwTotalPhys);
}

TEST(MemoryStatusTest, wrong_length_fills_nothing) {
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof(status) - 1;
  EXPECT_FALSE(GlobalMemoryStatusEx(&status));
  EXPECT_EQ(ERROR_INVALID_PARAMETER, GetLastError());
  EXPECT_EQ(0u, status.ullTotalPhys);
}

TEST(SystemVersionTest, needs_the_record_size) {
  OSVERSIONINFOW version = {};
  EXPECT_FALSE(GetVersionExW(&version));
  version.dwOSVersionInfoSize = sizeof(version);
  ASSERT_TRUE(GetVersionExW(&version));
  EXPECT_GE(version.dwMajorVersion, 5u);
  EXPECT_EQ(2u, version.dwPlatformId);
}

}  // namespace
