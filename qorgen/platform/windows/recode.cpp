#include <memory>
#include <new>

#include "qorgen/platform/codepage.h"

std::size_t qorgen_recode(UINT from, UINT to, const char* source, std::size_t bytes, char* destination) {
  if (bytes == 0) return 0;
  const std::unique_ptr<wchar_t[]> text(new (std::nothrow) wchar_t[bytes]);
  if (text == nullptr) return 0;
  const int size = static_cast<int>(bytes);
  const int units = MultiByteToWideChar(from, 0, source, size, text.get(), size);
  if (units <= 0) return 0;
  const int count = WideCharToMultiByte(to, 0, text.get(), units, destination,
                                        static_cast<int>(qorgen_recode_room(bytes)), nullptr, nullptr);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}
