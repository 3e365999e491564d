#include "qorgen/platform/version.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/error/errno_map.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/owned_descriptor.h"
#include "qorgen/platform/linux/version/version_resource.h"

namespace {

using qorgen::platform::PeStatus;
using qorgen::platform::VersionResource;

// Every level of the block: length, length of the value, type, then a terminated name.
constexpr std::size_t kHeadSize = 6;
constexpr std::uint16_t kTextType = 1;

class File {
 public:
  explicit File(const std::string& path) : m_file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}

  bool IsOpen() const { return m_file.IsOpen(); }

  bool IsRegular() const {
    struct stat facts;
    return fstat(m_file.Get(), &facts) == 0 && S_ISREG(facts.st_mode);
  }

  bool Read(std::uint64_t offset, void* buffer, std::uint32_t size) const {
    return pread(m_file.Get(), buffer, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
  }

 private:
  qorgen::platform::OwnedDescriptor m_file;
};

// The resource of the file, and its bytes if `block` is not null; 0 bytes with the last error set on failure.
std::uint32_t ReadVersion(LPCWSTR path, void* block, std::uint32_t room) {
  DWORD error = ERROR_SUCCESS;
  const std::string host = qorgen::platform::HostPath(path, &error);
  if (host.empty()) {
    SetLastError(error);
    return 0;
  }
  const File file(host);
  if (!file.IsOpen()) {
    qorgen::platform::SetLastErrorFromErrno();
    return 0;
  }
  const auto read = [&file](std::uint64_t offset, void* buffer, std::uint32_t size) {
    return file.Read(offset, buffer, size);
  };
  VersionResource resource;
  const PeStatus status = file.IsRegular() ? FindVersionResource(read, resource) : PeStatus::kNotPe;
  if (status == PeStatus::kFound && resource.size >= kHeadSize) {
    const std::uint32_t count = std::min(room, resource.size);
    if (block == nullptr || file.Read(resource.offset, block, count)) return resource.size;
  }
  SetLastError(status == PeStatus::kNotPe ? ERROR_RESOURCE_DATA_NOT_FOUND : ERROR_RESOURCE_TYPE_NOT_FOUND);
  return 0;
}

// One level of a block, by offsets from its start; nothing is read beyond `end` of the level around it.
struct Level {
  std::size_t name = 0;
  std::size_t name_length = 0;
  std::size_t value = 0;
  std::size_t value_length = 0;  // as stored: bytes or characters
  std::size_t children = 0;
  std::size_t end = 0;
  bool is_text = false;
};

class Block {
 public:
  explicit Block(const void* bytes) : m_bytes(static_cast<const unsigned char*>(bytes)) {}

  std::uint16_t Get(std::size_t offset) const {
    std::uint16_t value;
    std::memcpy(&value, m_bytes + offset, sizeof(value));
    return value;
  }

  bool Parse(std::size_t start, std::size_t limit, Level& level) const {
    if (start > limit || limit - start < kHeadSize) return false;
    const std::size_t length = Get(start);
    if (length < kHeadSize || length > limit - start) return false;
    level.end = start + length;
    level.value_length = Get(start + 2);
    level.is_text = Get(start + 4) == kTextType;
    level.name = start + kHeadSize;
    std::size_t at = level.name;
    while (true) {
      if (level.end - at < 2) return false;
      if (Get(at) == 0) break;
      at += 2;
    }
    level.name_length = (at - level.name) / 2;
    level.value = std::min(Align(at + 2), level.end);
    const std::size_t unit = level.is_text ? 2 : 1;
    level.value_length = std::min(level.value_length, (level.end - level.value) / unit);
    level.children = std::min(Align(level.value + level.value_length * unit), level.end);
    return true;
  }

  bool FindChild(const Level& parent, const wchar_t* name, std::size_t length, Level& child) const {
    for (std::size_t at = parent.children; Parse(at, parent.end, child); at = Align(child.end)) {
      if (child.name_length == length && EqualNames(child.name, name, length)) return true;
    }
    return false;
  }

 private:
  static std::size_t Align(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

  static std::uint16_t Fold(std::uint16_t c) {
    return c >= 'a' && c <= 'z' ? static_cast<std::uint16_t>(c - 'a' + 'A') : c;
  }

  bool EqualNames(std::size_t offset, const wchar_t* name, std::size_t length) const {
    for (std::size_t i = 0; i < length; ++i) {
      if (Fold(Get(offset + 2 * i)) != Fold(static_cast<std::uint16_t>(name[i]))) return false;
    }
    return true;
  }

  const unsigned char* m_bytes;
};

}  // namespace

DWORD GetFileVersionInfoSizeW(LPCWSTR path, DWORD* handle) {
  if (handle != nullptr) *handle = 0;
  return ReadVersion(path, nullptr, 0);
}

BOOL GetFileVersionInfoW(LPCWSTR path, DWORD /*handle*/, DWORD size, void* block) {
  if (block == nullptr || size < kHeadSize) {
    SetLastError(ERROR_INVALID_DATA);
    return FALSE;
  }
  std::memset(block, 0, size);
  const DWORD whole = ReadVersion(path, block, size);
  if (whole == 0) return FALSE;
  // VerQueryValueW is not told the room, so the block's own length must not promise more than is there.
  std::uint16_t length;
  std::memcpy(&length, block, sizeof(length));
  length = static_cast<std::uint16_t>(std::min<DWORD>(length, std::min(size, whole)));
  std::memcpy(block, &length, sizeof(length));
  return TRUE;
}

BOOL VerQueryValueW(const void* block, LPCWSTR name, void** value, UINT* length) {
  if (block == nullptr || name == nullptr || value == nullptr || length == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  const Block bytes(block);
  Level level;
  if (!bytes.Parse(0, bytes.Get(0), level)) {
    SetLastError(ERROR_INVALID_DATA);
    return FALSE;
  }
  while (*name != 0) {
    if (*name == L'\\') {
      ++name;
      continue;
    }
    std::size_t count = 0;
    while (name[count] != 0 && name[count] != L'\\') ++count;
    Level child;
    if (!bytes.FindChild(level, name, count, child)) {
      SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
      return FALSE;
    }
    level = child;
    name += count;
  }
  *value = const_cast<unsigned char*>(static_cast<const unsigned char*>(block)) + level.value;
  *length = static_cast<UINT>(level.value_length);
  return TRUE;
}
