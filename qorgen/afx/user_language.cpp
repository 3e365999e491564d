#include "qorgen/afx/internal/resource_ids.h"
#include "qorgen/platform/locale.h"

namespace qorgen::afx {

bool IsUserJapanese() noexcept {
  constexpr unsigned int kPrimaryLanguage = 0x3FF;
  constexpr unsigned int kJapanese = 0x11;
  return (GetUserDefaultUILanguage() & kPrimaryLanguage) == kJapanese;
}

}  // namespace qorgen::afx
