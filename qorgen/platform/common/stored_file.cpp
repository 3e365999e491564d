#include "qorgen/platform/stored_file.h"

#include <string_view>

namespace qorgen::platform {

bool IsReplacementName(LPCWSTR name) {
  constexpr std::basic_string_view<wchar_t> kEnd = L".qr~";
  if (name == nullptr || *name++ != L'~') return false;
  int digits = 0;
  const auto is_digit = [](wchar_t c) { return (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'F'); };
  while (digits < 8 && is_digit(name[digits])) ++digits;
  name += digits;
  for (const wchar_t c : kEnd) {
    if (*name++ != c) return false;
  }
  return digits > 0 && *name == 0;
}

}  // namespace qorgen::platform
