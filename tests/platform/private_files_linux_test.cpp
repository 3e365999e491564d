// Nobody else's file: temporary files, links in the way of a deletion, permissions of copies, the shared place.

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/shared_place.h"
#include "qorgen/platform/remove_tree.h"
#include "qorgen/platform/stored_file.h"

#include "tests/support/child_process.h"
#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

using platform::HostPath;

constexpr uid_t kStranger = 65533;

class PrivateFiles : public testing::Test {
 protected:
  std::string Host(const wchar_t* name) { return HostPath(scratch.Path(name)); }
  static mode_t ModeOf(const std::string& host) {
    struct stat facts = {};
    return lstat(host.c_str(), &facts) == 0 ? facts.st_mode & 07777 : 0;
  }

  ScratchFolder scratch;
};

// The temporary folder that a process with this TMPDIR gets, as a host path with a slash at its end.
std::string TempFolder() {
  wchar_t path[MAX_PATH + 1] = {};
  return GetTempPathW(MAX_PATH + 1, path) != 0 ? HostPath(path) : "";
}

TEST_F(PrivateFiles, TemporaryFolderIsTheUsersOwn) {
  const std::string place = Host(L"");
  const std::string own = place + "/qorgen-" + std::to_string(geteuid());
  const std::string outside = Host(L"outside");
  ASSERT_EQ(0, mkdir(outside.c_str(), 0777));
  const struct {
    const char* what;
    std::function<void()> plant;
    mode_t placeMode;
    bool used;  // else another place is taken
  } rows[] = {
      {"nothing", [] {}, 0755, true},
      {"own, but open to others", [&] { mkdir(own.c_str(), 0700), chmod(own.c_str(), 0777); }, 0755, true},
      {"a link", [&] { ASSERT_EQ(0, symlink(outside.c_str(), own.c_str())); }, 0755, false},
      {"a file", [&] { std::ofstream(own) << "x"; }, 0755, false},
      {"in a place where others exchange it", [] {}, 0777, false},
      {"in a place where each keeps his own", [] {}, 01777, true},
      // A stranger's, where a test may make one.
      {"a stranger's",
       [&] {
         mkdir(own.c_str(), 0777);
         if (geteuid() != 0 || chown(own.c_str(), kStranger, kStranger) != 0) rmdir(own.c_str());
       },
       01777, geteuid() != 0},
  };
  for (const auto& row : rows) {
    row.plant();
    chmod(place.c_str(), row.placeMode);
    const int result = InChild([&] {
      setenv("TMPDIR", place.c_str(), 1);
      const std::string folder = TempFolder();
      struct stat facts = {};
      const bool right = lstat(folder.substr(0, folder.size() - 1).c_str(), &facts) == 0 &&
                         facts.st_uid == geteuid() && (facts.st_mode & 07777) == 0700 &&
                         S_ISDIR(facts.st_mode);
      return (right ? 1 : 0) + (folder == own + '/' ? 2 : 0);
    });
    EXPECT_EQ(row.used ? 3 : 1, result) << row.what;
    chmod(place.c_str(), 0755);
    if (unlink(own.c_str()) != 0) rmdir(own.c_str());
  }
}

TEST_F(PrivateFiles, TemporaryFilesArePrivate) {
  const mode_t mask = umask(0);
  wchar_t name[MAX_PATH];
  EXPECT_NE(0u, GetTempFileNameW(scratch.Path(L""), L"qor", 0, name));
  EXPECT_EQ(0600u, ModeOf(HostPath(name)));
  // A link that was planted under the name isn't followed.
  ASSERT_EQ(0, symlink(Host(L"target").c_str(), Host(L"link").c_str()));
  EXPECT_EQ(INVALID_HANDLE_VALUE, CreateFileW(scratch.Path(L"link"), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                              FILE_ATTRIBUTE_TEMPORARY, nullptr));
  EXPECT_FALSE(Exists(scratch.Path(L"target")));
  umask(mask);
}

TEST_F(PrivateFiles, CopiesHaveThePermissionsOfTheSourceOrKeepTheirOwn) {
  const mode_t mask = umask(022);
  const struct {
    mode_t source;
    mode_t there;  // 0: no file
    mode_t after;
  } rows[] = {{0600, 0, 0600}, {0666, 0, 0666}, {0444, 0, 0444}, {0644, 0600, 0600}, {0600, 0664, 0664}};
  for (const auto& row : rows) {
    ASSERT_TRUE(PutFile(scratch.Path(L"a"), "secret"));
    chmod(Host(L"a").c_str(), row.source);
    if (row.there != 0) {
      ASSERT_TRUE(PutFile(scratch.Path(L"b"), "longer than before"));
      chmod(Host(L"b").c_str(), row.there);
    }
    EXPECT_TRUE(CopyFileW(scratch.Path(L"a"), scratch.Path(L"b"), FALSE));
    EXPECT_EQ(row.after, ModeOf(Host(L"b")));
    EXPECT_EQ("secret", GetFile(scratch.Path(L"b")));
    for (const wchar_t* name : {L"a", L"b"}) unlink(Host(name).c_str());
  }
  // At no moment more: the widest permissions that a copy has at any system call.
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "secret"));
  chmod(Host(L"a").c_str(), 0600);
  umask(0);
  mode_t widest = 0;
  for (int n = 1; StopsAtCall(
           n, false, [&] { CopyFileW(scratch.Path(L"a"), scratch.Path(L"b"), TRUE); },
           [&] { widest |= ModeOf(Host(L"b")); });
       ++n) {
    EXPECT_EQ("secret", GetFile(scratch.Path(L"b")));
    unlink(Host(L"b").c_str());
  }
  EXPECT_EQ(0600u, widest);
  umask(mask);
}

class LinksInTheWay : public PrivateFiles {
 protected:
  void SetUp() override {
    ASSERT_EQ(0, mkdir(Host(L"outside").c_str(), 0755));
    ASSERT_TRUE(PutFile(scratch.Path(L"outside\\precious"), "x"));
    chmod(Host(L"outside\\precious").c_str(), 0444);
  }
  bool IsUntouched() {
    return GetFile(scratch.Path(L"outside\\precious")) == "x" && ModeOf(Host(L"outside\\precious")) == 0444;
  }
};

TEST_F(LinksInTheWay, LinksAreRemovedThemselves) {
  const struct {
    const wchar_t* target;
    const wchar_t* path;
    DWORD error;
    BOOL (*remove)(LPCWSTR);
  } rows[] = {
      {L"outside", L"link", 0, platform::RemoveTree},
      {L"outside", L"link\\", 0, platform::RemoveTree},
      {L"outside\\precious", L"link", 0, platform::RemoveTree},
      {L"nowhere", L"link", 0, platform::RemoveTree},
      {L"outside\\precious", L"link", 0, DeleteFileW},
      {L"nowhere", L"link", 0, DeleteFileW},
      {L"outside", L"link", ERROR_ACCESS_DENIED, DeleteFileW},  // a folder on the platform
      {L"outside", L"link", 0, RemoveDirectoryW},
      // Marks are those of a link itself, which has none.
      {L"outside\\precious", L"link", 1,
       [](LPCWSTR path) { return SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL); }},
      {L"nowhere", L"link", 1,
       [](LPCWSTR path) { return SetFileAttributesW(path, FILE_ATTRIBUTE_READONLY); }},
  };
  for (const auto& row : rows) {
    ASSERT_EQ(0, symlink(Host(row.target).c_str(), Host(L"link").c_str()));
    EXPECT_EQ(row.error <= 1, row.remove(scratch.Path(row.path)) != FALSE) << &row - rows;
    struct stat facts;
    EXPECT_EQ(row.error == 0, lstat(Host(L"link").c_str(), &facts) != 0) << &row - rows;
    EXPECT_TRUE(IsUntouched()) << &row - rows;
    unlink(Host(L"link").c_str());
  }
  // What isn't there, and a file, is no folder.
  EXPECT_FALSE(platform::RemoveTree(scratch.Path(L"none")));
  EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
  EXPECT_FALSE(platform::RemoveTree(scratch.Path(L"outside\\precious")));
  EXPECT_EQ(ERROR_DIRECTORY, GetLastError());
}

// A folder of the tree makes way for a link at every system call of a deletion.
TEST_F(LinksInTheWay, FoldersExchangedForLinksMeanwhile) {
  const std::pair<const wchar_t*, const wchar_t*> exchanged[] = {{L"t", L"away"}, {L"t\\a", L"away"}};
  for (const auto& [folder, away] : exchanged) {
    int stops = 0;
    for (int n = 1;; ++n) {
      for (const wchar_t* made : {L"t", L"t\\a", L"t\\a\\b", L"t\\c"}) mkdir(Host(made).c_str(), 0755);
      for (const wchar_t* made : {L"t\\1", L"t\\a\\2", L"t\\a\\b\\precious"}) PutFile(scratch.Path(made), "");
      const bool reached = StopsAtCall(
          n, false, [&] { platform::RemoveTree(scratch.Path(L"t")); },
          [&] {
            if (rename(Host(folder).c_str(), Host(away).c_str()) == 0) {
              ASSERT_EQ(0, symlink(Host(L"outside").c_str(), Host(folder).c_str()));
            }
          });
      ASSERT_TRUE(IsUntouched()) << Utf8(folder) << ' ' << n;
      platform::RemoveTree(scratch.Path(L"t"));
      platform::RemoveTree(scratch.Path(away));
      ASSERT_FALSE(Exists(scratch.Path(L"t")));
      if (!reached) break;
      ++stops;
    }
    EXPECT_GT(stops, 20);
  }
}

TEST_F(LinksInTheWay, DeepTreesAndLockedFolders) {
  // Deeper than the process has descriptors, and than a path may be long.
  const std::string name(30, 'x');
  ASSERT_EQ(0, mkdir(Host(L"deep").c_str(), 0755));
  int folder = open(Host(L"deep").c_str(), O_RDONLY | O_DIRECTORY);
  for (int depth = 0; depth < 200; ++depth) {
    symlinkat(Host(L"outside").c_str(), folder, "link");
    mkdirat(folder, name.c_str(), 0755);
    const int next = openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
    if (depth % 2 == 0) fchmod(folder, 0555);
    close(folder);
    folder = next;
  }
  close(folder);
  EXPECT_EQ(1, InChild([&] {
              const rlimit few = {32, 32};
              setrlimit(RLIMIT_NOFILE, &few);
              return platform::RemoveTree(scratch.Path(L"deep")) ? 1 : 0;
            }));
  EXPECT_FALSE(Exists(scratch.Path(L"deep")));
  EXPECT_TRUE(IsUntouched());
}

TEST_F(PrivateFiles, StoredFilesAreNeitherFollowedNorWaitedFor) {
  ASSERT_TRUE(PutFile(scratch.Path(L"real"), "secret"));
  ASSERT_EQ(0, symlink(Host(L"real").c_str(), Host(L"link").c_str()));
  ASSERT_EQ(0, mkfifo(Host(L"pipe").c_str(), 0600));
  for (const wchar_t* path : {scratch.Path(L"link"), scratch.Path(L"pipe"), L"/dev/zero", L"/dev/tty"}) {
    EXPECT_EQ(INVALID_HANDLE_VALUE, platform::OpenStoredFile(path)) << Utf8(path);
  }
  platform::FileReplacement file;
  ASSERT_TRUE(file.Begin(scratch.Path(L"link")) && file.Write("new", 3) && file.Commit());
  EXPECT_EQ("secret", GetFile(scratch.Path(L"real")));
  EXPECT_EQ("new", GetFile(scratch.Path(L"link")));
}

TEST_F(PrivateFiles, ReplacementsKeepThePermissions) {
  const mode_t mask = umask(027);
  for (const mode_t mode : {0u, 0600u, 0664u, 0604u}) {  // 0: a new file
    if (mode != 0) {
      PutFile(scratch.Path(L"v"), "old");
      chmod(Host(L"v").c_str(), mode);
    }
    platform::FileReplacement file;
    ASSERT_TRUE(file.Begin(scratch.Path(L"v")));
    EXPECT_EQ(0600u, ModeOf(Host(L"~0.qr~")));
    ASSERT_TRUE(file.Write("new", 3) && file.Commit());
    EXPECT_EQ(mode != 0 ? mode : 0640u, ModeOf(Host(L"v")));
  }
  umask(mask);
}

// A link in the place of a folder below the shared place leads nowhere.
TEST_F(PrivateFiles, SharedPlaceHandsDownItsPermissionsAndFollowsNoLink) {
  const std::string former = platform::SharedPlace();
  platform::SetSharedPlace(Host(L"place"));
  const mode_t mask = umask(077);
  const struct {
    mode_t place;
    mode_t folder;
    mode_t file;
  } rows[] = {{01777, 01777, 0644}, {0777, 01777, 0644},  // everybody adds, each keeps his own
              {02770, 02770, 0660}, {0775, 02775, 0664},  // a group shares
              {03770, 03770, 0640},                       // a group adds, each keeps his own
              {0755, 0755, 0644},   {0700, 0700, 0600}};  // the owner only
  for (const auto& row : rows) {
    ASSERT_EQ(0, mkdir(Host(L"place").c_str(), 0700));
    chmod(Host(L"place").c_str(), row.place);
    EXPECT_TRUE(CreateDirectoryW(scratch.Path(L"place\\a"), nullptr));
    EXPECT_TRUE(CreateDirectoryW(scratch.Path(L"place\\a\\b"), nullptr));
    EXPECT_EQ(row.folder, ModeOf(Host(L"place\\a")));
    EXPECT_EQ(row.folder, ModeOf(Host(L"place\\a\\b")));
    EXPECT_TRUE(PutFile(scratch.Path(L"place\\a\\b\\1"), "x"));
    platform::FileReplacement file;
    EXPECT_TRUE(file.Begin(scratch.Path(L"place\\a\\b\\2")) && file.Commit());
    EXPECT_EQ(row.file, ModeOf(Host(L"place\\a\\b\\1")));
    EXPECT_EQ(row.file, ModeOf(Host(L"place\\a\\b\\2")));

    ASSERT_EQ(0, mkdir(Host(L"victim").c_str(), 0700));
    ASSERT_TRUE(PutFile(scratch.Path(L"victim\\v"), "x"));
    ASSERT_EQ(0, symlink(Host(L"victim").c_str(), Host(L"place\\link").c_str()));
    EXPECT_EQ(INVALID_HANDLE_VALUE, platform::OpenStoredFile(scratch.Path(L"place\\link\\v")));
    EXPECT_FALSE(platform::FileReplacement().Begin(scratch.Path(L"place\\link\\v")));
    EXPECT_FALSE(CreateDirectoryW(scratch.Path(L"place\\link\\new"), nullptr));
    EXPECT_FALSE(platform::RemoveTree(scratch.Path(L"place\\link\\v")));
    EXPECT_EQ("x", GetFile(scratch.Path(L"victim\\v")));
    EXPECT_FALSE(Exists(scratch.Path(L"victim\\new")));
    EXPECT_TRUE(platform::RemoveTree(scratch.Path(L"place")));
    EXPECT_TRUE(platform::RemoveTree(scratch.Path(L"victim")));
  }
  umask(mask);
  platform::SetSharedPlace(former);
}

}  // namespace
}  // namespace qorgen::tests
