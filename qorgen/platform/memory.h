#pragma once

// The machine's memory figures and the level of the system interface. May be called from any thread.

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

// Sizes in bytes, the load in percent.
struct MEMORYSTATUS {
  DWORD dwLength;
  DWORD dwMemoryLoad;
  SIZE_T dwTotalPhys;
  SIZE_T dwAvailPhys;
  SIZE_T dwTotalPageFile;
  SIZE_T dwAvailPageFile;
  SIZE_T dwTotalVirtual;
  SIZE_T dwAvailVirtual;
};

struct MEMORYSTATUSEX {
  DWORD dwLength;
  DWORD dwMemoryLoad;
  DWORDLONG ullTotalPhys;
  DWORDLONG ullAvailPhys;
  DWORDLONG ullTotalPageFile;
  DWORDLONG ullAvailPageFile;
  DWORDLONG ullTotalVirtual;
  DWORDLONG ullAvailVirtual;
  DWORDLONG ullAvailExtendedVirtual;
};

inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

struct OSVERSIONINFOW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  wchar_t szCSDVersion[128];
};

// Fills the record, dwLength included. Linux: all zeros (with the right length) when the kernel gives no
// figures.
QORGEN_API void GlobalMemoryStatus(MEMORYSTATUS* status);

// Fills the record. FALSE with ERROR_INVALID_PARAMETER when dwLength is not the record's size, and with
// ERROR_NOT_SUPPORTED when the kernel gives no figures; the record stays as it was.
// Linux: physical memory as the kernel counts it (available: what programs can get without swapping); the
// page file figures are physical memory and swap space together; the limits of a container are not looked at.
QORGEN_API BOOL GlobalMemoryStatusEx(MEMORYSTATUSEX* status);

// The system's version. FALSE with ERROR_INSUFFICIENT_BUFFER when dwOSVersionInfoSize is not the record's
// size. Linux: the level of the interface that qorgen/platform offers, 10.0, whatever the kernel's number.
QORGEN_API BOOL GetVersionExW(OSVERSIONINFOW* version);

#endif

static_assert(sizeof(MEMORYSTATUSEX) == 64);
