// What was stored stays stored, and nobody else's file is touched: writers that are killed, users who share the
// machine-wide place, links and pipes in the place of values.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/shared_place.h"

#include "tests/settings/test_key.h"
#include "tests/support/child_process.h"

namespace {

using namespace qorgen::tests;

std::string HostOf(const wchar_t* path) {
  return qorgen::platform::HostPath(path);
}

// Every system call of a writer is its last one once: the old value is there, or the new one, alone.
TEST_F(KeyTest, WriterKilledAtAnyMoment) {
  const CString old_text(L'o', 2000);
  const CString new_text(L'n', 2000);
  for (const bool there : {true, false}) {
    int calls = 0;
    int replaced = 0;
    for (;; ++calls) {
      m_key.DeleteValue(L"s");
      if (there) m_key.SetString(L"s", old_text);
      const bool reached = StopsAtCall(
          calls + 1, true, [&] { m_key.SetString(L"s", new_text); }, [] {});
      int count = 0;
      m_key.GetValueNames(&count);
      const CString text = m_key.IsExistValue(L"s") ? m_key.GetString(L"s", nullptr) : L"";
      ASSERT_TRUE(text == new_text || text == (there ? old_text.GetString() : L"")) << calls << Utf8(text);
      ASSERT_EQ(there || !text.IsEmpty() ? 1 : 0, count) << calls;
      replaced += text == new_text;
      // What it left behind goes with the next write, of any value.
      m_key.SetLong(L"n", 1);
      m_key.DeleteValue(L"n");
      ASSERT_FALSE(Exists(In(L"~0.qr~"))) << calls;
      if (!reached) break;
    }
    EXPECT_GT(calls, 10);
    EXPECT_GT(replaced, 1);
  }
}

// A reader at every system call of a writer finds the old value or the new one.
TEST_F(KeyTest, ReaderBesideAWriter) {
  int old_ones = 0;
  int new_ones = 0;
  for (int n = 1;; ++n) {
    m_key.SetInt(L"n", 11111);
    const bool reached = StopsAtCall(
        n, false, [&] { m_key.SetInt(L"n", 22222); },
        [&] {
          ++(m_key.GetInt(L"n", 0) == 11111 ? old_ones : m_key.GetInt(L"n", 0) == 22222 ? new_ones : n);
        });
    ASSERT_EQ(22222, m_key.GetInt(L"n", 0));
    if (!reached) {
      EXPECT_EQ(n, old_ones + new_ones + 1);
      break;
    }
  }
  EXPECT_TRUE(old_ones > 5 && new_ones > 0) << old_ones << ' ' << new_ones;
}

TEST_F(KeyTest, LinksAndPipesInThePlaceOfValues) {
  Put(L"..\\private.dw", Wide("7"));
  const std::string target = HostOf(In(L"..\\private.dw"));
  PutFolder(L"");
  ASSERT_EQ(0, symlink(target.c_str(), HostOf(In(L"n.dw")).c_str()));
  ASSERT_EQ(0, symlink("/dev/zero", HostOf(In(L"b.dat")).c_str()));
  ASSERT_EQ(0, mkfifo(HostOf(In(L"s.sz")).c_str(), 0600));
  ASSERT_EQ(0, symlink("/no/where", HostOf(In(L"dead.dw")).c_str()));
  char bytes[4] = {};
  int size = 9;
  EXPECT_EQ(0, m_key.GetInt(L"n", 5) | m_key.GetBinary(L"b", bytes, 4));
  EXPECT_EQ(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_TEXT(L"", m_key.GetString(L"s", L"d"));
  // A value takes their place.
  EXPECT_EQ(1, m_key.SetInt(L"n", 8) & m_key.SetString(L"s", L"x") & m_key.SetBinary(L"b", bytes, 4));
  EXPECT_EQ(Wide("7"), Get(L"..\\private.dw"));
  EXPECT_EQ(8, m_key.GetInt(L"n", 5));
  EXPECT_EQ(1, m_key.DeleteValue(L"dead"));
  struct stat facts;
  EXPECT_NE(0, lstat(HostOf(In(L"dead.dw")).c_str(), &facts));

  // A sub-key that is a link goes itself.
  PutFolder(L"..\\outside");
  Put(L"..\\outside\\v.dw", Wide("1"));
  for (const wchar_t* leads_to : {L"..\\outside", L"..\\nowhere"}) {
    ASSERT_EQ(0, symlink(HostOf(In(leads_to)).c_str(), HostOf(In(L"link")).c_str()));
    EXPECT_EQ(1, m_key.DeleteSubKey(L"link"));
  }
  EXPECT_EQ(Wide("1"), Get(L"..\\outside\\v.dw"));
}

// Two users of a machine. Only the superuser's tests can be both; for others they are one user.
TEST_F(KeyTest, UsersShareAsTheAdministratorSays) {
  const bool both = geteuid() == 0;
  const uid_t anna = both ? 65531 : 0;
  const uid_t berta = both ? 65532 : 0;
  const gid_t group = both ? 65530 : 0;
  const std::string former = qorgen::platform::SharedPlace();
  char place[] = "/tmp/qorgen_placeXXXXXX";
  ASSERT_NE(nullptr, mkdtemp(place));
  qorgen::platform::SetSharedPlace(place);
  const struct {
    mode_t mode;
    bool replaces;  // what the other user has stored
  } rows[] = {{01777, !both}, {02770, true}, {03770, !both}};
  for (const auto& row : rows) {
    ASSERT_EQ(0, both ? chown(place, 0, group) : 0);
    chmod(place, row.mode);
    EXPECT_EQ(1, InChild(anna, group, [] {
                umask(077);
                CQorRegFileKey key(HKEY_CURRENT_USER);
                return key.SetInt(L"a", 1) & key.SetString(L"own", L"円");
              }));
    EXPECT_EQ(row.replaces ? 7 : 3, InChild(berta, group, [] {
                CQorRegFileKey key(HKEY_CURRENT_USER);
                const bool read = key.GetInt(L"a", 5) == 1 && CString(key.GetString(L"own", L"")) == L"円";
                const bool added = key.SetInt(L"b", 2) && key.SetInt(L"b", 3) && key.GetInt(L"b", 0) == 3;
                const bool replaced =
                    key.SetInt(L"a", 4) && key.GetInt(L"a", 5) == 4 && key.DeleteValue(L"own");
                return (read ? 1 : 0) + (added ? 2 : 0) + (replaced ? 4 : 0);
              }));
    EXPECT_EQ(1, InChild(anna, group, [&row] {
                CQorRegFileKey key(HKEY_CURRENT_USER);
                return key.GetInt(L"a", 5) == (row.replaces ? 4 : 1) && key.GetInt(L"b", 0) == 3 ? 1 : 0;
              }));
    CQorFileUtil::DeleteDirectory(CString(place) + L"\\CommonDocuments");
  }
  qorgen::platform::SetSharedPlace(former);
  rmdir(place);
}

}  // namespace
