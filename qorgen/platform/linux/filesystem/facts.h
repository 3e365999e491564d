#pragma once

// What a folder entry is: attributes, times and size in the platform's terms. Any thread may call.

#include <cstdint>
#include <ctime>
#include <string>
#include <sys/stat.h>

#include "qorgen/platform/types.h"

namespace qorgen::platform {

struct FileFacts {
  DWORD attributes = 0;
  FILETIME creation = {};
  FILETIME access = {};
  FILETIME write = {};
  std::uint64_t size = 0;  // 0 for folders
};

// Of an entry by its host path. A symbolic link counts as what it leads to, and, if `marksLinks`, as a
// reparse point too; a link that leads nowhere is described itself. False with errno when there is no such
// entry.
[[nodiscard]] bool ReadFacts(const std::string& host, bool marksLinks, FileFacts& facts);
// Of an open file; the name, and so whether it is hidden, isn't known.
[[nodiscard]] bool ReadFacts(int descriptor, FileFacts& facts);

// The argument of utimensat: null, 0 and all bits set mean that the time stays.
[[nodiscard]] struct timespec HostTimeOf(const FILETIME* time);

constexpr std::uint64_t Ticks(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}
constexpr FILETIME FromTicks(std::uint64_t ticks) {
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

}  // namespace qorgen::platform
