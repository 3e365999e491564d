#pragma once

// A portable executable made in memory that holds nothing but a version resource.

#include <cstdint>
#include <string>

namespace qorgen::tests {

struct VersionFile {
  std::uint32_t file_ms = 0;
  std::uint32_t file_ls = 0;
  std::uint32_t product_ms = 0;
  std::uint32_t product_ls = 0;
  bool with_translation = true;
  bool is_64_bit = true;
};

// The bytes of the file. Its language is Japanese, its product name "帳簿".
std::string MakeVersionFile(const VersionFile& version);

}  // namespace qorgen::tests
