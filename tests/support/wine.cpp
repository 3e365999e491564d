#include "tests/support/wine.h"

#include "qorgen/platform/module.h"

namespace qorgen::tests {

bool UnderWine() {
  static const bool wine = [] {
    const HMODULE module = LoadLibraryW(L"ntdll.dll");
    return module != nullptr && GetProcAddress(module, "wine_get_version") != nullptr;
  }();
  return wine;
}

bool HoldsExceptOnWine(bool holds) {
  return holds != UnderWine();
}

}  // namespace qorgen::tests
