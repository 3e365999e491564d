// Faults of the host: full devices, limits and permissions, in child processes where they would stick to this
// one.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "qorgen/files/file_util.h"
#include "qorgen/platform/linux/path_mapping.h"

#include "tests/settings/test_key.h"

namespace {

using qorgen::tests::Exists;
using qorgen::tests::GetFile;
using qorgen::tests::PutFile;
using qorgen::tests::ScratchFolder;
using qorgen::tests::TestKey;
using qorgen::tests::Wide;
using namespace std::string_literals;

// The known folders of all tests of the program, so that none of them touches the user's own. Set up before
// the first question: the desktop library reads the variables once.
class Home : public testing::Environment {
 public:
  void SetUp() override {
    setenv("HOME", qorgen::platform::HostPath(m_folder.Path(L"")).c_str(), 1);
    setenv("XDG_DATA_HOME", qorgen::platform::HostPath(m_folder.Path(L"data")).c_str(), 1);
  }

 private:
  ScratchFolder m_folder;
};
[[maybe_unused]] testing::Environment* const g_home = testing::AddGlobalTestEnvironment(new Home);

int OpenDescriptors() {
  int count = 0;
  DIR* folder = opendir("/proc/self/fd");
  while (readdir(folder) != nullptr) ++count;
  closedir(folder);
  return count;
}

// Starts a child that runs `steps`, and ends with success if they give true.
template <class Steps>
pid_t Start(Steps steps) {
  const pid_t child = fork();
  if (child == 0) _exit(steps() ? 0 : 1);
  return child;
}

bool EndedWell(pid_t child) {
  int status = 0;
  return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Says which of the child's expectations didn't hold.
bool Holds(bool condition, const char* what) {
  if (!condition) std::fprintf(stderr, "in the child: %s\n", what);
  return condition;
}
#define HOLDS(condition) Holds(condition, #condition)

class RegFileFaultTest : public testing::Test {
 protected:
  CString In(const wchar_t* name) { return CQorFileUtil::ConnectPath(m_key.GetKeyName(), name); }
  std::string Host(const wchar_t* name) { return qorgen::platform::HostPath(In(name)); }

  ScratchFolder m_folder;
  TestKey m_key{m_folder.Path(L"")};
};

TEST_F(RegFileFaultTest, no_space_left) {
  for (const wchar_t* name : {L"n.dw", L"s.sz", L"b.dat"}) {
    ASSERT_EQ(0, symlink("/dev/full", Host(name).c_str()));
  }
  const int before = OpenDescriptors();
  const std::string large(200'000, 'x');  // more than a stream's buffer
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(0, m_key.SetLong(L"n", 1));
    EXPECT_EQ(0, m_key.SetString(L"s", L"x"));
    EXPECT_EQ(0, m_key.SetString(L"s", CString(L'x', 200'000)));
    EXPECT_EQ(0, m_key.SetBinary(L"b", const_cast<char*>(large.data()), 1));
    EXPECT_EQ(0, m_key.SetBinary(L"b", const_cast<char*>(large.data()), 200'000));
    EXPECT_EQ(nullptr, m_key.m_openFile);
  }
  EXPECT_EQ(before, OpenDescriptors());
  // The device gives zeros without end when it is read: links away first.
  for (const wchar_t* name : {L"n.dw", L"s.sz", L"b.dat"}) ASSERT_EQ(0, unlink(Host(name).c_str()));
  EXPECT_EQ(1, m_key.SetLong(L"n", 1));
}

TEST_F(RegFileFaultTest, limit_of_a_file_s_size) {
  EXPECT_TRUE(EndedWell(Start([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {100'000, 100'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    const std::string large(200'000, 'x');
    bool good = HOLDS(m_key.SetBinary(L"b", const_cast<char*>(large.data()), 200'000) == 0);
    good &= HOLDS(m_key.SetString(L"s", CString(L'x', 200'000)) == 0);
    // The default is given back although it can't be stored.
    good &= HOLDS(CString(m_key.GetString(L"t", CString(L'x', 200'000))).GetLength() == 200'000);
    return good && HOLDS(m_key.SetLong(L"n", 1) == 1);
  })));
  // What could be written is there, and is read.
  int size = 0;
  EXPECT_NE(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_GT(size, 0);
  EXPECT_LE(size, 100'000);
  EXPECT_LT(CString(m_key.GetString(L"s", nullptr)).GetLength(), 50'000);
}

TEST_F(RegFileFaultTest, without_rights) {
  m_key.SetLong(L"n", 7);
  m_key.SetString(L"s", L"円");
  m_key.SetBinary(L"b", const_cast<char*>("12"), 2);
  ASSERT_TRUE(PutFile(In(L"secret.dw"), Wide("1")));
  ASSERT_EQ(1, CQorFileUtil::CreateDirectories(In(L"sub")));
  chmod(Host(L"secret.dw").c_str(), 0);
  for (const wchar_t* name : {L"n.dw", L"s.sz", L"b.dat"}) chmod(Host(name).c_str(), 0444);
  chmod(Host(L"").c_str(), 0555);
  EXPECT_TRUE(EndedWell(Start([this] {
    // The superuser is refused nothing; another user isn't the folder's owner either.
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) return false;
    const int before = OpenDescriptors();
    char bytes[2] = {};
    int count = 9;
    bool good = HOLDS(m_key.GetLong(L"n", 1) == 7);
    good &= HOLDS(CString(m_key.GetString(L"s", nullptr)) == L"円");
    good &= HOLDS(m_key.GetBinary(L"b", bytes, 2) == 1);
    good &= HOLDS(m_key.GetLong(L"secret", 5) == 0);
    good &= HOLDS(m_key.GetLong(L"new", 5) == 5);
    good &= HOLDS(CString(m_key.GetString(L"new", L"d")) == L"d");
    good &= HOLDS(m_key.SetLong(L"n", 8) == 0);
    good &= HOLDS(m_key.SetString(L"s", L"x") == 0);
    good &= HOLDS(m_key.SetBinary(L"b", bytes, 2) == 0);
    good &= HOLDS(m_key.SetLong(L"new", 8) == 0);
    good &= HOLDS(m_key.OpenSubKey(L"x", 1) == nullptr);
    good &= HOLDS(m_key.GetValueNames(&count) != nullptr && count == 4);
    if (getuid() == 65534) good &= HOLDS(m_key.DeleteValue(L"n") == 0);
    good &= HOLDS(m_key.DeleteSubKey(L"none") == 0);
    // Nobody but the owner makes the folder's attributes normal.
    if (getuid() == 65534) good &= HOLDS(m_key.CopyValues(m_key) == 0);
    return good && HOLDS(OpenDescriptors() == before);
  })));
  chmod(Host(L"").c_str(), 0755);
  EXPECT_EQ(Wide("7"), GetFile(In(L"n.dw")));
  EXPECT_EQ("12", GetFile(In(L"b.dat")));
  EXPECT_FALSE(Exists(In(L"new.dw")));
}

TEST_F(RegFileFaultTest, more_bytes_than_a_size_can_tell) {
  ASSERT_TRUE(PutFile(In(L"b.dat"), "1234"));
  ASSERT_EQ(0, truncate(Host(L"b.dat").c_str(), 1LL << 31));
  int size = 9;
  EXPECT_EQ(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_EQ(0, size);
  char bytes[4] = {};
  EXPECT_EQ(1, m_key.GetBinary(L"b", bytes, 4));
  EXPECT_EQ("1234", std::string(bytes, 4));
}

TEST_F(RegFileFaultTest, processes_write_one_tree) {
  std::vector<pid_t> writers;
  for (const int value : {11111, 22222, 33333}) {
    writers.push_back(Start([this, value] {
      bool good = true;
      for (int i = 0; i < 300 && good; ++i) {
        CQorRegFileKey* sub_key = m_key.OpenSubKey(L"a\\b", 1);
        // Another one may have removed the folder again.
        if (sub_key == nullptr) continue;
        sub_key->SetLong(L"n", value);
        // Half-written: nothing yet, or the beginning.
        const long number = sub_key->GetLong(L"n", value);
        good = HOLDS(number == 0 || std::to_string(number).find_first_not_of("123") == std::string::npos);
        sub_key->GetValueNames(nullptr);
        if (i % 50 == 0) m_key.DeleteSubKey(L"a");
        delete sub_key;
      }
      return good;
    }));
  }
  for (const pid_t writer : writers) EXPECT_TRUE(EndedWell(writer));

  // The last writer wins: without removals the value of one of them is there, whole.
  for (int round = 0; round < 50; ++round) {
    const pid_t one = Start([this] { return m_key.SetLong(L"n", 11111) == 1; });
    const pid_t two = Start([this] { return m_key.SetLong(L"n", 22222) == 1; });
    EXPECT_TRUE(EndedWell(one));
    EXPECT_TRUE(EndedWell(two));
    const std::string bytes = GetFile(In(L"n.dw"));
    EXPECT_TRUE(bytes == Wide("11111") || bytes == Wide("22222")) << bytes;
  }
}

}  // namespace
