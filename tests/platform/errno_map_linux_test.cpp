#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

#include "qorgen/platform/linux/error/errno_map.h"

namespace qorgen::platform {
namespace {

TEST(ErrnoMap, GivesTheNumbersOfFileOperations) {
  const struct {
    int host;
    DWORD expected;
  } rows[] = {{0, 0},           {ENOENT, 2},   {ENOTDIR, 3},        {EMFILE, 4},   {EACCES, 5},
              {EPERM, 5},       {EBADF, 6},    {ENOMEM, 8},         {EXDEV, 17},   {EROFS, 19},
              {EBUSY, 32},      {EINVAL, 87},  {EPIPE, 232},        {ENOSPC, 112}, {EDQUOT, 112},
              {ENOTEMPTY, 145}, {EEXIST, 183}, {ENAMETOOLONG, 206}, {EIO, 1117},   {EISDIR, 5},
              {ELOOP, 1921}};
  for (const auto& row : rows) EXPECT_EQ(row.expected, Win32ErrorFromErrno(row.host)) << row.host;
}

TEST(ErrnoMap, AnswersEveryNumberAndUnknownOnesAsGeneralFailure) {
  for (int host = 1; host < 200; ++host) EXPECT_NE(0u, Win32ErrorFromErrno(host)) << host;
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
