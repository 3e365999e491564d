#include "qorgen/afx/internal/message_text.h"

#include <algorithm>

#include "qorgen/platform/locale.h"

namespace qorgen::afx {

bool IsUserJapanese() noexcept {
  constexpr unsigned int kPrimaryLanguage = 0x3FF;
  constexpr unsigned int kJapanese = 0x11;
  return (GetUserDefaultUILanguage() & kPrimaryLanguage) == kJapanese;
}

int CopyMessage(const wchar_t* text, int length, wchar_t* buffer, unsigned int room) noexcept {
  if (buffer == nullptr || room == 0) return 0;
  const unsigned int copied = std::min(static_cast<unsigned int>(length), room - 1);
  std::copy_n(text, copied, buffer);
  buffer[copied] = 0;
  return 1;
}

}  // namespace qorgen::afx
