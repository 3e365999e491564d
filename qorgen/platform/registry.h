#pragma once

// The types and constants of the registry that the library uses, under their published names and values.
//
// On Windows they are the system's own.

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

struct HKEY__;
using HKEY = HKEY__*;

// Predefined keys are no pointers: 32-bit numbers, widened with their sign.
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(-0x7FFFFFFF)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(-0x7FFFFFFE)))

inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;

#endif

static_assert(REG_SZ == 1 && REG_BINARY == 3 && REG_DWORD == 4);
