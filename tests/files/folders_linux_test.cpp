// Links, and paths in the host's own vocabulary.

#include <cstdio>
#include <unistd.h>

#include "qorgen/files/file_util.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

class FoldersLinuxTest : public testing::Test {
 protected:
  CString In(const wchar_t* name) { return CQorFileUtil::ConnectPath(m_folder.Path(L""), name); }
  std::string Host(const wchar_t* name) { return qorgen::platform::HostPath(In(name)); }

  ScratchFolder m_folder;
};

TEST_F(FoldersLinuxTest, LinksAreRemovedAndNotFollowed) {
  ASSERT_EQ(1, CQorFileUtil::CreateDirectories(In(L"outside")));
  ASSERT_TRUE(PutFile(In(L"outside\\precious.txt"), "x"));
  ASSERT_EQ(1, CQorFileUtil::CreateDirectories(In(L"t\\sub")));
  ASSERT_EQ(0, symlink(Host(L"outside").c_str(), Host(L"t\\sub\\to_folder").c_str()));
  ASSERT_EQ(0, symlink(Host(L"outside\\precious.txt").c_str(), Host(L"t\\sub\\to_file").c_str()));
  EXPECT_EQ(1, CQorFileUtil::DeleteDirectory(In(L"t")));
  EXPECT_FALSE(Exists(In(L"t")));
  EXPECT_TRUE(Exists(In(L"outside\\precious.txt")));
}

TEST_F(FoldersLinuxTest, FileOfAHostPathInAnExistingFolder) {
  const std::string host = Host(L"x.csv");
  CString path;
  for (const char c : host) path += static_cast<wchar_t>(c);
  ASSERT_EQ(L'/', path[0]);
  EXPECT_EQ(1, CQorFileUtil::CreateDirIfNotExists(path, 1));
  FILE* stream = CQorFileUtil::Open(path, CQorFileUtil::_modeWb, 1);
  ASSERT_NE(nullptr, stream);
  std::fclose(stream);
  EXPECT_TRUE(Exists(In(L"x.csv")));
}

}  // namespace
