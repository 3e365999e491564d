#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

#include "qorgen/platform/linux/error/errno_map.h"

namespace qorgen::platform {
namespace {

TEST(ErrnoMap, AnswersEveryNumberAndUnknownOnesAsGeneralFailure) {
  for (int host = 1; host < 200; ++host) EXPECT_NE(ERROR_SUCCESS, Win32ErrorFromErrno(host)) << host;
  EXPECT_EQ(ERROR_SUCCESS, Win32ErrorFromErrno(0));
  EXPECT_EQ(ERROR_PATH_NOT_FOUND, Win32ErrorFromErrno(ENOTDIR));
  EXPECT_EQ(ERROR_DISK_FULL, Win32ErrorFromErrno(EDQUOT));
  EXPECT_EQ(ERROR_GEN_FAILURE, Win32ErrorFromErrno(-1));
  EXPECT_EQ(ERROR_GEN_FAILURE, Win32ErrorFromErrno(100000));
}

TEST(ErrnoMap, SetsTheLastErrorOfThisThreadAlone) {
  SetLastError(7);
  std::thread([] {
    EXPECT_EQ(0u, GetLastError());
    errno = ENOENT;
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, SetLastErrorFromErrno());
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
    EXPECT_EQ(ENOENT, errno);
  }).join();
  EXPECT_EQ(7u, GetLastError());
}

}  // namespace
}  // namespace qorgen::platform
