#include <cstdlib>
#include <cstring>

#include "qorgen/platform/automation.h"

namespace {

// The length stands in the last four of these bytes; the others keep the text aligned as any block is.
constexpr std::size_t kHead = 16;

BSTR Allocate(std::size_t bytes) {
  if (bytes > 0x7FFFFFF0) return nullptr;
  // The terminator behind an odd count of bytes takes three.
  char* const block = static_cast<char*>(std::malloc(kHead + bytes + 3));
  if (block == nullptr) return nullptr;
  const UINT length = static_cast<UINT>(bytes);
  std::memcpy(block + kHead - sizeof length, &length, sizeof length);
  std::memset(block + kHead + bytes, 0, 3);
  return reinterpret_cast<BSTR>(block + kHead);
}

}  // namespace

BSTR SysAllocStringByteLen(const char* bytes, UINT length) {
  BSTR text = Allocate(length);
  if (text == nullptr || length == 0) return text;
  if (bytes != nullptr) {
    std::memcpy(text, bytes, length);
  } else {
    std::memset(text, 0, length);
  }
  return text;
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
  if (length > 0x3FFFFFF0) return nullptr;
  return SysAllocStringByteLen(reinterpret_cast<const char*>(text), length * 2);
}

BSTR SysAllocString(const OLECHAR* text) {
  if (text == nullptr) return nullptr;
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  return length > 0x3FFFFFF0 ? nullptr : SysAllocStringLen(text, static_cast<UINT>(length));
}

void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(reinterpret_cast<char*>(text) - kHead);
}

UINT SysStringByteLen(BSTR text) {
  if (text == nullptr) return 0;
  UINT length = 0;
  std::memcpy(&length, reinterpret_cast<const char*>(text) - sizeof length, sizeof length);
  return length;
}

UINT SysStringLen(BSTR text) {
  return SysStringByteLen(text) / 2;
}
