#include "qorgen/afx/memory.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include "qorgen/afx/exception.h"

void QorFree(void* block) noexcept {
  std::free(block);
}

namespace qorgen {

void* AllocateBlock(std::size_t bytes) {
  // malloc(0) may give null, which would look like exhaustion.
  void* block = std::malloc(bytes != 0 ? bytes : 1);
  if (block == nullptr) AfxThrowMemoryException();
  return block;
}

wchar_t* AllocateText(std::size_t characters) {
  if (characters > std::numeric_limits<std::size_t>::max() / sizeof(wchar_t)) AfxThrowMemoryException();
  return static_cast<wchar_t*>(AllocateBlock(characters * sizeof(wchar_t)));
}

wchar_t* CopyText(const wchar_t* text, std::size_t length) {
  if (length == std::numeric_limits<std::size_t>::max()) AfxThrowMemoryException();
  wchar_t* copy = AllocateText(length + 1);
  if (length != 0) std::memcpy(copy, text, length * sizeof(wchar_t));
  copy[length] = 0;
  return copy;
}

}  // namespace qorgen
