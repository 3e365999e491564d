// What has no counterpart on Windows: symbolic links, permission bits, names of the host, the mount table.

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/filesystem/mount_table.h"
#include "qorgen/platform/linux/filesystem/name_pattern.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

using platform::HostPath;

TEST(HostFiles, LinksAreSeenAndRemovedAsThemselves) {
  ScratchFolder scratch;
  CreateDirectoryW(scratch.Path(L"real"), nullptr);
  ASSERT_TRUE(PutFile(scratch.Path(L"real\\file"), "x"));
  ASSERT_EQ(symlink("real", HostPath(scratch.Path(L"link")).c_str()), 0);
  ASSERT_EQ(symlink("nowhere", HostPath(scratch.Path(L"dead")).c_str()), 0);
  EXPECT_EQ(GetFile(scratch.Path(L"link\\file")), "x");
  WIN32_FIND_DATAW data;
  FindClose(FindFirstFileW(scratch.Path(L"lin*"), &data));
  EXPECT_EQ(data.dwFileAttributes, FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);
  EXPECT_TRUE(Exists(scratch.Path(L"dead")));
  EXPECT_TRUE(DeleteFileW(scratch.Path(L"dead")));
  EXPECT_FALSE(DeleteFileW(scratch.Path(L"link")));
  EXPECT_TRUE(RemoveDirectoryW(scratch.Path(L"link")));
  EXPECT_EQ(GetFile(scratch.Path(L"real\\file")), "x");
}

TEST(HostFiles, ReadOnlyIsTheOwnersPermission) {
  ScratchFolder scratch;
  const wchar_t* path = scratch.Path(L"a");
  ASSERT_TRUE(PutFile(path, "x"));
  const std::string host = HostPath(path);
  chmod(host.c_str(), 0464);
  EXPECT_EQ(GetFileAttributesW(path), FILE_ATTRIBUTE_READONLY);
  chmod(host.c_str(), 0664);
  for (const auto& [attributes, mode] :
       {std::pair(FILE_ATTRIBUTE_READONLY, 0444u), {FILE_ATTRIBUTE_NORMAL, 0644u}}) {
    EXPECT_TRUE(SetFileAttributesW(path, attributes));
    struct stat facts;
    ASSERT_EQ(stat(host.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, mode);
  }
  ASSERT_TRUE(PutFile(scratch.Path(L".rc"), "x"));
  EXPECT_EQ(GetFileAttributesW(scratch.Path(L".rc")), FILE_ATTRIBUTE_HIDDEN);
}

TEST(HostFiles, NamesThatTheLibraryWouldNotGive) {
  ScratchFolder scratch;
  const std::string folder = HostPath(scratch.Path(L""));
  for (const char* name : {"what?", "back\\slash", "latin\xE9", "A", "a"}) {
    std::FILE* file = std::fopen((folder + '/' + name).c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
  }
  // Every file that a search names can be opened and removed under that name.
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW(scratch.Path(L"*"), &data);
  int removed = 0;
  do {
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) continue;
    EXPECT_EQ(GetFile(scratch.Path(data.cFileName)), "");
    removed += DeleteFileW(scratch.Path(data.cFileName));
  } while (FindNextFileW(search, &data));
  FindClose(search);
  EXPECT_EQ(removed, 5);
}

TEST(HostFiles, AFullDiskEndsACopy) {
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"a"), "x"));
  EXPECT_FALSE(CopyFileW(scratch.Path(L"a"), L"/dev/full", FALSE));
  EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
  EXPECT_TRUE(Exists(L"/dev/full"));
}

TEST(HostFiles, TemporaryFolderFollowsItsVariable) {
  const char* before = std::getenv("TMPDIR");
  const std::string saved = before != nullptr ? before : "";
  const std::pair<const char*, const char16_t*> rows[] = {
      {"/var/tmp", u"C:\\var\\tmp"}, {"/var/tmp/", u"C:\\var\\tmp"}, {"", u"C:\\tmp"}};
  const std::u16string own = platform::LibraryPath("/qorgen-" + std::to_string(geteuid()) + '/').substr(2);
  for (const auto& [value, expected] : rows) {
    setenv("TMPDIR", value, 1);
    wchar_t path[MAX_PATH + 1];
    GetTempPathW(MAX_PATH + 1, path);
    EXPECT_EQ(platform::TextOf(path), expected + own);
  }
  before != nullptr ? setenv("TMPDIR", saved.c_str(), 1) : unsetenv("TMPDIR");
}

TEST(NamePattern, MatchesAsPublished) {
  const std::tuple<const char16_t*, const char16_t*, bool> rows[] = {
      {u"*", u"", true},           {u"*.*", u"abc", true},     {u"a*.*", u"abc", true},
      {u"*.*x", u"abc", false},    {u"*.", u"abc", true},      {u"*.", u"a.bc", false},
      {u"*.", u"a.", true},        {u"a*.", u"abc", true},     {u"a*.", u"a.b.", true},
      {u"?", u"", true},           {u"?", u"ab", false},       {u"a??", u"a", true},
      {u"a??", u"abc", true},      {u"a??", u"abcd", false},   {u"??.t", u"a.t", true},
      {u"??.t", u"abc.t", false},  {u"?b", u"b", false},       {u"a.?", u"a", true},
      {u"a.?", u"a.", true},       {u"a.?", u"a.b", true},     {u"a.?", u"a.bc", false},
      {u"*.t?t", u"x.TXT", true},  {u"*a*b*", u"xAyBz", true}, {u"*a*b*", u"xbya", false},
      {u"帳*", u"帳簿.csv", true}, {u"ｱ*", u"ア", false},      {u"é.*", u"É.x", true},
      {u"ſ*", u"s", false},        {u"ａ*", u"Ａb", true},     {u"abc", u"abcd", false},
      {u"abc*", u"abc", true},     {u"*.*.*", u"a.b", true},
  };
  for (const auto& [pattern, name, matches] : rows) {
    EXPECT_EQ(platform::NamePattern(pattern).Matches(name), matches)
        << platform::HostName(pattern) << ", " << platform::HostName(name);
  }
  // The work must not explode with the number of stars.
  std::u16string stars;
  for (int i = 0; i < 60; ++i) stars += u"*a";
  EXPECT_FALSE(platform::NamePattern(stars + u"b").Matches(std::u16string(255, u'a')));
}

TEST(MountTable, KindsAndVolumesOfAUser) {
  constexpr UINT kUnknown = 99;  // the host knows more of a device than its line here
  struct Row {
    const char* line;
    const char* folder;
    UINT kind;
    bool of_user;
  };
  const Row rows[] = {
      {"overlay / overlay rw 0 0", "/", DRIVE_FIXED, false},
      {"proc /proc proc rw 0 0", "/proc", DRIVE_FIXED, false},
      {"tmpfs /tmp tmpfs rw 0 0", "/tmp", DRIVE_RAMDISK, false},
      {"/dev/sda1 /boot/efi vfat rw 0 0", "/boot/efi", kUnknown, false},
      {"/dev/sdb1 /media/user/USB\\040DISK vfat rw 0 0", "/media/user/USB DISK", kUnknown, true},
      {"srv:/books /mnt/books nfs4 rw 0 0", "/mnt/books", DRIVE_REMOTE, true},
      {"/dev/sr0 /run/media/user/CD iso9660 ro 0 0", "/run/media/user/CD", DRIVE_CDROM, true},
      {"/dev/loop3 /snap/core squashfs ro 0 0", "/snap/core", kUnknown, false},
      {"/dev/sdc1 /data ext4 rw 0 0\nsrv:/new /data nfs rw 0 0", "/data", DRIVE_REMOTE, true},  // the later
  };
  std::string table;
  for (const Row& row : rows) table += std::string(row.line) + '\n';
  ScratchFolder scratch;
  ASSERT_TRUE(PutFile(scratch.Path(L"mounts"), table));
  const auto mounts = platform::ReadMountTable(HostPath(scratch.Path(L"mounts")).c_str());
  ASSERT_EQ(mounts.size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(mounts[i].folder, rows[i].folder);
    EXPECT_EQ(platform::IsUserVolume(mounts[i]), rows[i].of_user) << rows[i].folder;
    if (rows[i].kind == kUnknown) continue;
    EXPECT_EQ(platform::KindOf(mounts[i]), rows[i].kind) << rows[i].folder;
  }
  EXPECT_TRUE(platform::ReadMountTable("/no/such/table").empty());
}

}  // namespace
}  // namespace qorgen::tests
