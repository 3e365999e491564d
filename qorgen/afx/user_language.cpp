#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "qorgen/afx/internal/resource_ids.h"

namespace qorgen::afx {

bool IsUserJapanese() noexcept {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == 0) continue;
    return std::strncmp(value, "ja", 2) == 0 || std::strcmp(value, "C") == 0 ||
           std::strncmp(value, "C.", 2) == 0;
  }
  return true;
}

}  // namespace qorgen::afx
