// Wide formatting by the platform's rules where the headers of mingw-w64 would bring their own, in which %s
// is narrow. Callable from any thread.

#include "qorgen/platform/crt.h"

int qorgen_vswprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list arguments) {
  if (capacity == 0) return -1;
  const int length = _vsnwprintf(buffer, capacity, format, arguments);
  if (length >= 0 && static_cast<size_t>(length) < capacity) return length;
  buffer[capacity - 1] = 0;
  return -1;
}

int qorgen_swprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = qorgen_vswprintf(buffer, capacity, format, arguments);
  va_end(arguments);
  return length;
}
