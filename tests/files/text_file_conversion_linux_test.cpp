// Targets that take no more: a full device and a limit on the size of files.

#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>

#include "qorgen/files/file_util.h"

#include "tests/support/own_temp_folder.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/throws.h"

namespace {

using namespace qorgen::tests;

TEST(TextFileConversionTest, ATargetThatTakesNoMoreIsAnException) {
  OwnTempFolder folder;
  std::string text;
  for (std::size_t i = 0; i < 100'000; ++i) text += "abc\n";
  PutFile(folder.Path(L"a.txt"), text);
  for (const auto convert : {CQorFileUtil::SJisToUtf8, CQorFileUtil::Utf8ToSJis}) {
    EXPECT_EQ(CFileException::diskFull, CauseOf([&] { convert(folder.Path(L"a.txt"), L"/dev/full"); }));
  }
  const auto former_action = std::signal(SIGXFSZ, SIG_IGN);
  rlimit former{};
  getrlimit(RLIMIT_FSIZE, &former);
  const rlimit small{100'000, former.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const int cause = CauseOf([&] { CQorFileUtil::SJisToUtf8(folder.Path(L"a.txt"), folder.Path(L"b.txt")); });
  setrlimit(RLIMIT_FSIZE, &former);
  std::signal(SIGXFSZ, former_action);
  EXPECT_NE(CFileException::none, cause);
  EXPECT_EQ(100'000u, GetFile(folder.Path(L"b.txt")).size());
}

}  // namespace
