#pragma once

// The 128-bit identifier record of the system interface. On Windows it is the system's own.

#include <cstdint>
#include <cstring>

#include "qorgen/platform/types.h"

#if !defined(_WIN32)
struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
};
using CLSID = GUID;

inline bool operator==(const GUID& a, const GUID& b) {
  return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}
#endif

static_assert(sizeof(GUID) == 16);
