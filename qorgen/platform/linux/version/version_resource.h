#pragma once

// Finds the version resource of a portable executable. Every offset in the file is taken as hostile: nothing
// is read outside the file, and nothing follows a chain of unbounded length. Any thread may call it.

#include <cstdint>
#include <functional>
#include <optional>

namespace qorgen::platform {

// Reads exactly `size` bytes at `offset`; false if the file does not hold them.
using ReadAt = std::function<bool(std::uint64_t offset, void* buffer, std::uint32_t size)>;

struct VersionResource {
  std::uint64_t offset = 0;  // in the file
  std::uint32_t size = 0;    // at most 65,535 bytes: what the block's own 16-bit length can say
};

enum class PeStatus { kFound, kNoResource, kNotPe };

// `resource` is set when the result is kFound. A damaged file is kNotPe or kNoResource, by how far it could
// be read.
[[nodiscard]] PeStatus FindVersionResource(const ReadAt& read, VersionResource& resource);

}  // namespace qorgen::platform
