#include "qorgen/files/memory_util.h"

#include "qorgen/files/internal/memory_widening.h"

namespace qorgen::files {

void WidenMemoryStatus(const MEMORYSTATUS& figures, MEMORYSTATUSEX& status) {
  status.dwMemoryLoad = figures.dwMemoryLoad;
  status.ullTotalPhys = static_cast<DWORD>(figures.dwTotalPhys);
  status.ullAvailPhys = static_cast<DWORD>(figures.dwAvailPhys);
  status.ullTotalPageFile = static_cast<DWORD>(figures.dwTotalPageFile);
  status.ullAvailPageFile = static_cast<DWORD>(figures.dwAvailPageFile);
  status.ullTotalVirtual = static_cast<DWORD>(figures.dwTotalVirtual);
  status.ullAvailVirtual = static_cast<DWORD>(figures.dwAvailVirtual);
  status.ullAvailExtendedVirtual = 0;
}

}  // namespace qorgen::files

void CQorMemoryUtil::GetMemoryStatus(MEMORYSTATUS* status) {
  if (status != nullptr) GlobalMemoryStatus(status);
}

void CQorMemoryUtil::GetMemoryStatusEx(MEMORYSTATUSEX* status) {
  if (status == nullptr) return;
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof(version);
  if (!GetVersionExW(&version)) return;
  if (version.dwMajorVersion >= 5) {
    if (!GlobalMemoryStatusEx(status)) *status = {};
    return;
  }
  MEMORYSTATUS figures = {};
  GlobalMemoryStatus(&figures);
  qorgen::files::WidenMemoryStatus(figures, *status);
}
