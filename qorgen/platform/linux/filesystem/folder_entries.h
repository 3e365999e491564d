#pragma once

// What lies in a folder, in the order of the system's searches. Any thread may call.

#include <string>
#include <vector>

#include "qorgen/platform/linux/filesystem/name_pattern.h"
#include "qorgen/platform/linux/owned_descriptor.h"

namespace qorgen::platform {

struct FolderEntry {
  std::u16string upper;  // the name in upper case, by which the entries are sorted; empty for the dots
  std::string host;
};

// The entries of a folder open for reading whose names fit, "." and ".." among them; false with errno.
[[nodiscard]] bool ReadFolder(OwnedDescriptor folder, const NamePattern& pattern,
                              std::vector<FolderEntry>& entries);

}  // namespace qorgen::platform
