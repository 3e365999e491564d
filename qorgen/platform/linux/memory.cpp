#include "qorgen/platform/memory.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>

#include "qorgen/platform/error.h"

namespace {

struct Figures {
  std::uint64_t total = 0;
  std::uint64_t available = 0;
  std::uint64_t swap_total = 0;
  std::uint64_t swap_free = 0;
};

// What user programs can address on x86-64 with four-level page tables.
constexpr std::uint64_t kAddressSpace = 0x7FFF'FFFF'F000;

std::optional<Figures> ReadFigures() {
  std::ifstream file("/proc/meminfo");
  Figures figures;
  int found = 0;
  std::string name;
  std::uint64_t kilobytes = 0;
  for (std::string line; std::getline(file, line);) {
    const std::size_t colon = line.find(':');
    const std::size_t digit = line.find_first_of("0123456789", colon);
    if (colon == line.npos || digit == line.npos) continue;
    std::from_chars(line.data() + digit, line.data() + line.size(), kilobytes);
    const std::string_view field = std::string_view(line).substr(0, colon);
    std::uint64_t* target = field == "MemTotal"       ? &figures.total
                            : field == "MemAvailable" ? &figures.available
                            : field == "SwapTotal"    ? &figures.swap_total
                            : field == "SwapFree"     ? &figures.swap_free
                                                      : nullptr;
    if (target == nullptr) continue;
    *target = kilobytes * 1024;
    ++found;
  }
  if (found < 4 || figures.total == 0) return std::nullopt;
  return figures;
}

std::uint64_t AddressedByThisProcess() {
  std::ifstream file("/proc/self/statm");
  std::uint64_t pages = 0;
  file >> pages;
  return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

bool Fill(MEMORYSTATUSEX& status) {
  const std::optional<Figures> figures = ReadFigures();
  if (!figures) return false;
  const std::uint64_t available = std::min(figures->available, figures->total);
  status.dwMemoryLoad = static_cast<DWORD>((figures->total - available) * 100 / figures->total);
  status.ullTotalPhys = figures->total;
  status.ullAvailPhys = available;
  status.ullTotalPageFile = figures->total + figures->swap_total;
  status.ullAvailPageFile = available + figures->swap_free;
  status.ullTotalVirtual = kAddressSpace;
  status.ullAvailVirtual = kAddressSpace - std::min(kAddressSpace, AddressedByThisProcess());
  status.ullAvailExtendedVirtual = 0;
  return true;
}

}  // namespace

void GlobalMemoryStatus(MEMORYSTATUS* status) {
  MEMORYSTATUSEX figures = {};
  Fill(figures);
  status->dwLength = sizeof(MEMORYSTATUS);
  status->dwMemoryLoad = figures.dwMemoryLoad;
  status->dwTotalPhys = figures.ullTotalPhys;
  status->dwAvailPhys = figures.ullAvailPhys;
  status->dwTotalPageFile = figures.ullTotalPageFile;
  status->dwAvailPageFile = figures.ullAvailPageFile;
  status->dwTotalVirtual = figures.ullTotalVirtual;
  status->dwAvailVirtual = figures.ullAvailVirtual;
}

BOOL GlobalMemoryStatusEx(MEMORYSTATUSEX* status) {
  if (status == nullptr || status->dwLength != sizeof(MEMORYSTATUSEX)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  if (!Fill(*status)) {
    SetLastError(ERROR_NOT_SUPPORTED);
    return FALSE;
  }
  return TRUE;
}

BOOL GetVersionExW(OSVERSIONINFOW* version) {
  if (version == nullptr || version->dwOSVersionInfoSize != sizeof(OSVERSIONINFOW)) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  *version = {};
  version->dwOSVersionInfoSize = sizeof(OSVERSIONINFOW);
  version->dwMajorVersion = 10;
  version->dwPlatformId = VER_PLATFORM_WIN32_NT;
  return TRUE;
}
