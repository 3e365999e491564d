// Faults of the host: full devices, limits and permissions, in child processes where they would stick to this
// one.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "qorgen/platform/linux/filesystem/path_mapping.h"

#include "tests/settings/test_key.h"
#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

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

long OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

// Starts a child that takes the steps and compares what they give with `expected`.
template <class Steps>
pid_t Start(const std::vector<int>& expected, Steps steps) {
  const pid_t child = fork();
  if (child != 0) return child;
  const std::vector<int> results = steps();
  for (std::size_t i = 0; i < results.size() && results != expected; ++i) {
    std::fprintf(stderr, "in the child, result %zu: %d\n", i, results[i]);
  }
  _exit(results == expected ? 0 : 1);
}

bool EndedWell(pid_t child) {
  int status = 0;
  return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class RegFileFaultTest : public KeyTest {
 protected:
  RegFileFaultTest() { CQorFileUtil::CreateDirectories(m_key.GetKeyName()); }
  std::string Host(const wchar_t* name) { return qorgen::platform::HostPath(In(name)); }
  std::string m_large = std::string(200'000, 'x');  // more than a stream's buffer
  CString m_large_text = CString(L'x', 200'000);
};

TEST_F(RegFileFaultTest, LimitOfAFilesSize) {
  m_key.SetString(L"s", L"円");
  m_key.SetBinary(L"b", const_cast<char*>("old"), 3);
  // The default is given back although it can't be stored.
  EXPECT_TRUE(EndedWell(Start({0, 0, 200'000, 0, 1}, [this]() -> std::vector<int> {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {100'000, 100'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    const long before = OpenDescriptors();
    return {m_key.SetBinary(L"b", m_large.data(), 200'000), m_key.SetString(L"s", m_large_text),
            CString(m_key.GetString(L"t", m_large_text)).GetLength(),
            static_cast<int>(OpenDescriptors() - before), m_key.SetLong(L"n", 1)};
  })));
  // What was there is there, and nothing else.
  EXPECT_TEXT(L"円", m_key.GetString(L"s", nullptr));
  EXPECT_EQ("old", Get(L"b.dat"));
  int count = 0;
  m_key.GetValueNames(&count);
  EXPECT_EQ(3, count);
}

TEST_F(RegFileFaultTest, WithoutRights) {
  // Where other users come, too.
  char place[] = "/tmp/qorgen_testXXXXXX";
  ASSERT_NE(nullptr, mkdtemp(place));
  chmod(place, 0755);
  m_key.Construct(CString(place) + L"\\key");
  m_key.SetString(L"s", L"円");
  for (const wchar_t* name : {L"n.dw", L"b.dat", L"secret.dw"}) Put(name, Wide("7"));
  PutFolder(L"sub");
  for (const wchar_t* name : {L"n.dw", L"s.sz", L"b.dat"}) chmod(Host(name).c_str(), 0444);
  chmod(Host(L"secret.dw").c_str(), 0);
  // The superuser is refused nothing; the child's user isn't the folder's owner either. As its owner one may
  // make its attributes normal, which is asked for with the sub-keys.
  const bool other_user = geteuid() == 0;
  const std::vector<int> expected = {7, 1, 1, 0, 5, 1, 0, 0, 0, 0, 1, 4, other_user, 0};
  chmod(Host(L"").c_str(), 0555);
  EXPECT_TRUE(EndedWell(Start(expected, [&]() -> std::vector<int> {
    if (other_user && (setgid(65534) != 0 || setuid(65534) != 0)) return {};
    const long before = OpenDescriptors();
    char bytes[2] = {};
    int count = 9;
    return {m_key.GetInt(L"n", 1),
            CString(m_key.GetString(L"s", nullptr)) == L"円",
            m_key.GetBinary(L"b", bytes, 2),
            m_key.GetInt(L"secret", 5),
            m_key.GetInt(L"new", 5),
            CString(m_key.GetString(L"new", L"d")) == L"d",
            m_key.SetLong(L"n", 8),
            m_key.SetString(L"s", L"x"),
            m_key.SetBinary(L"b", bytes, 2),
            m_key.SetLong(L"new", 8),
            m_key.OpenSubKey(L"x", 1) == nullptr,
            m_key.GetValueNames(&count) != nullptr ? count : 0,
            m_key.GetSubKeyNames(&count) == nullptr,
            static_cast<int>(OpenDescriptors() - before)};
  })));
  chmod(Host(L"").c_str(), 0755);
  EXPECT_EQ(Wide("7"), Get(L"n.dw"));
  EXPECT_FALSE(Exists(In(L"new.dw")));
  EXPECT_EQ(1, CQorFileUtil::DeleteDirectory(CString(place)));
}

TEST_F(RegFileFaultTest, MoreBytesThanASizeCanTell) {
  Put(L"b.dat", "1234");
  ASSERT_EQ(0, truncate(Host(L"b.dat").c_str(), 1LL << 31));
  int size = 9;
  char bytes[] = "####";
  EXPECT_EQ(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_EQ(0, size);
  EXPECT_EQ(1, m_key.GetBinary(L"b", bytes, 4));
  EXPECT_STREQ("1234", bytes);
}

TEST_F(RegFileFaultTest, ProcessesWriteOneTree) {
  std::vector<pid_t> writers;
  for (const int value : {11111, 22222, 33333}) {
    writers.push_back(Start({0}, [this, value]() -> std::vector<int> {
      int wrong = 0;
      for (int i = 0; i < 200; ++i) {
        // None when another one removes the folder meanwhile.
        const std::unique_ptr<CQorRegFileKey> key(m_key.OpenSubKey(L"a\\b", 1));
        if (key == nullptr) continue;
        key->SetLong(L"n", value);
        // One of the three, whole; 0 where the value went between the look and the reading.
        const long number = key->GetLong(L"n", value);
        wrong += number != 0 && number != 11111 && number != 22222 && number != 33333;
        key->GetValueNames(nullptr);
        if (i % 50 == 0) m_key.DeleteSubKey(L"a");
      }
      return {wrong};
    }));
  }
  for (const pid_t writer : writers) EXPECT_TRUE(EndedWell(writer));
  // The last writer wins: the value of one of two is there, whole.
  for (int round = 0; round < 50; ++round) {
    const pid_t one = Start({1}, [this] { return std::vector<int>{m_key.SetInt(L"n", 11111)}; });
    const pid_t two = Start({1}, [this] { return std::vector<int>{m_key.SetInt(L"n", 22222)}; });
    EXPECT_TRUE(EndedWell(one));
    EXPECT_TRUE(EndedWell(two));
    const std::string bytes = Get(L"n.dw");
    EXPECT_TRUE(bytes == Wide("11111") || bytes == Wide("22222")) << bytes;
  }
}

}  // namespace
