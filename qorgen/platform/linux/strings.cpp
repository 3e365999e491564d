#include "qorgen/platform/strings.h"

#include "qorgen/platform/common/white_space.h"
#include "qorgen/platform/linux/automation/width.h"

int StrToIntW(const wchar_t* text) {
  if (text == nullptr) return 0;
  while (qorgen::platform::IsNarrowSpace(*text)) ++text;
  const bool negative = *text == L'-';
  if (negative || *text == L'+') ++text;
  std::uint32_t value = 0;
  for (; qorgen::platform::IsDigit(*text); ++text)
    value = value * 10 + static_cast<std::uint32_t>(*text - L'0');
  return static_cast<int>(negative ? 0 - value : value);
}
