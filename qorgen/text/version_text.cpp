// Version numbers as text.

#include <array>
#include <cstdint>

#include "qorgen/text/string_util.h"

namespace {

using Parts = std::array<std::uint32_t, 4>;

CString Joined(const Parts& parts) {
  CString text;
  text.Format(L"%u.%u.%u.%u", parts[0], parts[1], parts[2], parts[3]);
  return text;
}

constexpr std::uint32_t High(unsigned long number) {
  return (number >> 16) & 0xFFFF;
}
constexpr std::uint32_t Low(unsigned long number) {
  return number & 0xFFFF;
}
constexpr std::uint32_t Pair(std::uint32_t high, std::uint32_t low) {
  return (high & 0xFFFF) << 16 | (low & 0xFFFF);
}

Parts Split(const wchar_t* text) {
  Parts parts{};
  std::size_t count = 0;
  CString part;
  for (; count < parts.size(); ++text) {
    if (*text >= L'0' && *text <= L'9') {
      part.AppendChar(*text);
    } else if (!part.IsEmpty()) {
      parts[count++] = static_cast<std::uint32_t>(CQorStringUtil::ToInt(part));
      part.Truncate(0);
    }
    if (*text == 0) break;
  }
  return parts;
}

}  // namespace

CString CQorStringUtil::NumberToVersionString(unsigned long version) {
  return Joined({High(version) >> 8, High(version) & 0xFF, Low(version) >> 8, Low(version) & 0xFF});
}

CString CQorStringUtil::NumberToVersionString(unsigned long high, unsigned long low) {
  return Joined({High(high), Low(high), High(low), Low(low)});
}

unsigned long CQorStringUtil::VersionStringToNumber(const wchar_t* text, unsigned long* low) {
  if (text == nullptr || *text == 0) return 0;
  const Parts parts = Split(text);
  if (low != nullptr) {
    *low = Pair(parts[2], parts[3]);
    return Pair(parts[0], parts[1]);
  }
  // The first part lowest: the other way round than NumberToVersionString reads one number.
  std::uint32_t packed = 0;
  for (std::size_t i = 0; i < parts.size(); ++i) packed |= (parts[i] & 0xFF) << (8 * i);
  return packed;
}
