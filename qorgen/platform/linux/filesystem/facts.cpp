#include "qorgen/platform/linux/filesystem/facts.h"

#include <algorithm>
#include <fcntl.h>
#include <utility>

#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"

namespace qorgen::platform {
namespace {

constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;
constexpr std::int64_t kTicksPerSecond = 10000000;

// Counts of 100 nanoseconds since 1601. Host times before that become 0.
FILETIME TimeOf(const struct statx_timestamp& time) {
  constexpr std::int64_t kLast = INT64_MAX / kTicksPerSecond - kSecondsFrom1601To1970 - 1;
  const std::int64_t seconds = time.tv_sec;
  if (seconds < -kSecondsFrom1601To1970) return {};
  const std::int64_t since = std::min(seconds, kLast) + kSecondsFrom1601To1970;
  return FromTicks(static_cast<std::uint64_t>(since * kTicksPerSecond + time.tv_nsec / 100));
}

bool Ask(int folder, const char* path, int flags, struct statx& answer) {
  return statx(folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &answer) == 0;
}

void Translate(const struct statx& answer, FileFacts& facts) {
  const bool folder = S_ISDIR(answer.stx_mode);
  facts.attributes = (folder ? FILE_ATTRIBUTE_DIRECTORY : 0) |
                     ((answer.stx_mode & S_IWUSR) == 0 ? FILE_ATTRIBUTE_READONLY : 0);
  facts.access = TimeOf(answer.stx_atime);
  facts.write = TimeOf(answer.stx_mtime);
  const FILETIME change = TimeOf(answer.stx_ctime);
  facts.creation = (answer.stx_mask & STATX_BTIME) != 0
                       ? TimeOf(answer.stx_btime)
                       : std::min(change, facts.write, [](auto& a, auto& b) { return Ticks(a) < Ticks(b); });
  facts.size = folder ? 0 : answer.stx_size;
}

// A file without any mark is said to be a normal one.
void Finish(FileFacts& facts) {
  if (facts.attributes == 0) facts.attributes = FILE_ATTRIBUTE_NORMAL;
}

}  // namespace

struct timespec HostTimeOf(const FILETIME* time) {
  struct timespec host = {0, UTIME_OMIT};
  if (time == nullptr) return host;
  const std::uint64_t ticks = Ticks(*time);
  if (ticks == 0 || ticks == UINT64_MAX) return host;
  constexpr auto kPerSecond = static_cast<std::uint64_t>(kTicksPerSecond);
  host.tv_sec = static_cast<std::time_t>(ticks / kPerSecond) - kSecondsFrom1601To1970;
  host.tv_nsec = static_cast<long>(ticks % kPerSecond * 100);
  return host;
}

bool ReadFacts(const std::string& host, bool marksLinks, FileFacts& facts) {
  struct statx own;
  if (!Ask(AT_FDCWD, host.c_str(), AT_SYMLINK_NOFOLLOW, own)) return false;
  const bool link = S_ISLNK(own.stx_mode);
  struct statx target;
  Translate(link && Ask(AT_FDCWD, host.c_str(), 0, target) ? target : own, facts);
  if (link && marksLinks) facts.attributes |= FILE_ATTRIBUTE_REPARSE_POINT;
  const std::string leaf = HostLeaf(host);
  if (leaf.size() > 1 && leaf[0] == '.' && leaf != "..") facts.attributes |= FILE_ATTRIBUTE_HIDDEN;
  Finish(facts);
  return true;
}

bool ReadFacts(int descriptor, FileFacts& facts) {
  struct statx answer;
  if (!Ask(descriptor, "", AT_EMPTY_PATH, answer)) return false;
  Translate(answer, facts);
  Finish(facts);
  return true;
}

}  // namespace qorgen::platform
