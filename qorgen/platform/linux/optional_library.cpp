#include "qorgen/platform/linux/optional_library.h"

#include <atomic>
#include <dlfcn.h>

namespace qorgen::platform {
namespace {

std::atomic<int> g_without = 0;

}  // namespace

// Functions are bound as they are called: most lists use a small part of a big library.
OptionalLibrary::OptionalLibrary(const char* soname) : library_(dlopen(soname, RTLD_LAZY | RTLD_LOCAL)) {}

OptionalLibrary::Address OptionalLibrary::Find(const char* name) {
  void* address = library_ != nullptr ? dlsym(library_, name) : nullptr;
  complete_ = complete_ && address != nullptr;
  return Address(address);
}

OptionalLibrary::Address OptionalLibrary::FindIfThere(const char* name) const {
  return Address(library_ != nullptr ? dlsym(library_, name) : nullptr);
}

WithoutOptionalLibraries::WithoutOptionalLibraries() {
  g_without.fetch_add(1);
}

WithoutOptionalLibraries::~WithoutOptionalLibraries() {
  g_without.fetch_sub(1);
}

bool WithoutOptionalLibraries::IsAlive() {
  return g_without.load(std::memory_order_relaxed) != 0;
}

}  // namespace qorgen::platform
