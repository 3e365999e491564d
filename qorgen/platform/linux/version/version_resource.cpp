#include "qorgen/platform/linux/version/version_resource.h"

#include <algorithm>
#include <cstddef>

namespace qorgen::platform {
namespace {

// Offsets are those of the published portable executable format.
constexpr std::uint32_t kOffsetOfPeHeader = 0x3C;
constexpr std::uint32_t kCoffHeaderSize = 4 + 20;  // with the "PE" signature
constexpr std::uint16_t kPe32 = 0x10B;
constexpr std::uint16_t kPe32Plus = 0x20B;
constexpr std::uint32_t kDirectoryEntrySize = 8;
constexpr std::uint32_t kResourceDirectory = 2;
constexpr std::uint32_t kSectionSize = 40;
constexpr std::uint32_t kSubdirectoryFlag = 0x80000000;
constexpr std::uint32_t kVersionType = 16;

class Image {
 public:
  explicit Image(const ReadAt& read) : m_read(read) {}

  bool Get16(std::uint64_t offset, std::uint32_t& value) const { return Get(offset, 2, value); }
  bool Get32(std::uint64_t offset, std::uint32_t& value) const { return Get(offset, 4, value); }

  bool ReadHeaders() {
    std::uint32_t value = 0;
    std::uint32_t pe = 0;
    if (!Get16(0, value) || value != 0x5A4D || !Get32(kOffsetOfPeHeader, pe)) return false;
    if (!Get32(pe, value) || value != 0x00004550) return false;
    std::uint32_t optional_size = 0;
    const std::uint64_t optional = std::uint64_t{pe} + kCoffHeaderSize;
    if (!Get16(pe + std::uint64_t{6}, m_sections) || !Get16(pe + std::uint64_t{20}, optional_size))
      return false;
    if (!Get16(optional, value) || (value != kPe32 && value != kPe32Plus)) return false;
    m_directories = optional + (value == kPe32 ? 96 : 112);
    m_section_table = optional + optional_size;
    return Get32(m_directories - 4, m_directory_count);
  }

  // Where the resources start: file offset and virtual address.
  bool FindResources() {
    std::uint32_t address = 0;
    return m_directory_count > kResourceDirectory &&
           Get32(m_directories + kResourceDirectory * kDirectoryEntrySize, address) && address != 0 &&
           ToFileOffset(address, m_resources);
  }

  bool ToFileOffset(std::uint32_t address, std::uint64_t& offset) const {
    for (std::uint32_t i = 0; i < m_sections; ++i) {
      const std::uint64_t section = m_section_table + std::uint64_t{i} * kSectionSize;
      std::uint32_t virtual_size = 0, start = 0, raw_size = 0, raw_offset = 0;
      if (!Get32(section + 8, virtual_size) || !Get32(section + 12, start) ||
          !Get32(section + 16, raw_size) || !Get32(section + 20, raw_offset)) {
        return false;
      }
      if (address >= start && address - start < raw_size) {
        offset = std::uint64_t{raw_offset} + (address - start);
        return true;
      }
    }
    return false;
  }

  // The entry of a directory (offsets count from the start of the resources): the one whose number is `id`,
  // or the first one without an id.
  bool FindEntry(std::uint32_t directory, std::optional<std::uint32_t> id, std::uint32_t& target) const {
    std::uint32_t named = 0, numbered = 0;
    const std::uint64_t base = m_resources + directory;
    if (!Get16(base + 12, named) || !Get16(base + 14, numbered)) return false;
    for (std::uint32_t i = id ? named : 0; i < named + numbered; ++i) {
      const std::uint64_t entry = base + 16 + std::uint64_t{i} * 8;
      std::uint32_t name = 0;
      if (!Get32(entry, name) || !Get32(entry + 4, target)) return false;
      if (!id || name == *id) return true;
    }
    return false;
  }

  bool FindVersion(VersionResource& resource) const {
    // Three levels: type, name, language.
    std::uint32_t target = 0;
    if (!FindEntry(0, kVersionType, target)) return false;
    for (int level = 0; level < 2; ++level) {
      if ((target & kSubdirectoryFlag) == 0 || !FindEntry(target & ~kSubdirectoryFlag, {}, target))
        return false;
    }
    if ((target & kSubdirectoryFlag) != 0) return false;
    std::uint32_t address = 0, size = 0;
    if (!Get32(m_resources + target, address) || !Get32(m_resources + target + 4, size)) return false;
    resource.size = std::min<std::uint32_t>(size, 0xFFFF);
    return ToFileOffset(address, resource.offset);
  }

 private:
  bool Get(std::uint64_t offset, std::uint32_t size, std::uint32_t& value) const {
    unsigned char bytes[4] = {};
    if (!m_read(offset, bytes, size)) return false;
    value = bytes[0] | bytes[1] << 8 | bytes[2] << 16 | std::uint32_t{bytes[3]} << 24;
    return true;
  }

  const ReadAt& m_read;
  std::uint32_t m_sections = 0;
  std::uint32_t m_directory_count = 0;
  std::uint64_t m_directories = 0;
  std::uint64_t m_section_table = 0;
  std::uint64_t m_resources = 0;
};

}  // namespace

PeStatus FindVersionResource(const ReadAt& read, VersionResource& resource) {
  Image image(read);
  if (!image.ReadHeaders()) return PeStatus::kNotPe;
  if (!image.FindResources() || !image.FindVersion(resource)) return PeStatus::kNoResource;
  return PeStatus::kFound;
}

}  // namespace qorgen::platform
