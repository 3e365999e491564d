#include "qorgen/platform/module.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/auxv.h>
#include <system_error>

#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"

namespace {

std::string ExecutablePath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

std::string ModulePath(const void* address) {
  Dl_info module = {};
  if (dladdr(address, &module) == 0 || module.dli_fname == nullptr) return {};
  // The loader knows the executable only by the name it was started with.
  Dl_info executable = {};
  const auto* headers = reinterpret_cast<const void*>(getauxval(AT_PHDR));
  if (dladdr(headers, &executable) != 0 && executable.dli_fbase == module.dli_fbase) return ExecutablePath();
  std::error_code error;
  const std::filesystem::path path = std::filesystem::canonical(module.dli_fname, error);
  return error ? std::string() : path.string();
}

}  // namespace

DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size) {
  const std::string host = module == nullptr ? ExecutablePath() : ModulePath(module);
  if (host.empty()) {
    if (path != nullptr && size > 0) path[0] = 0;
    SetLastError(ERROR_MOD_NOT_FOUND);
    return 0;
  }
  if (path == nullptr || size == 0) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  const std::u16string text = qorgen::platform::LibraryPath(host);
  const std::size_t count = std::min<std::size_t>(text.size(), size - 1);
  *std::copy_n(text.begin(), count, path) = 0;
  if (count < text.size()) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return size;
  }
  return static_cast<DWORD>(count);
}
