// Text in memory: length, copy, search and comparison of UTF-16 units. Pure; no shared state.

#include <algorithm>

#include "qorgen/platform/common/text_length.h"
#include "qorgen/platform/crt.h"

namespace {

// The difference as -1, 0 or 1; wchar_t is unsigned on both hosts, so units compare by value.
int Order(wint_t left, wint_t right) {
  return left < right ? -1 : (left > right ? 1 : 0);
}

bool IsIn(wchar_t unit, const wchar_t* set) {
  for (; *set != 0; ++set) {
    if (*set == unit) return true;
  }
  return false;
}

}  // namespace

size_t qorgen_wcslen(const wchar_t* text) {
  return qorgen::platform::TextLength(text);
}

size_t qorgen_wcsnlen(const wchar_t* text, size_t limit) {
  size_t length = 0;
  while (length < limit && text[length] != 0) ++length;
  return length;
}

wchar_t* qorgen_wcscpy(wchar_t* destination, const wchar_t* source) {
  std::memcpy(destination, source, (wcslen(source) + 1) * sizeof(wchar_t));
  return destination;
}

wchar_t* qorgen_wcsncpy(wchar_t* destination, const wchar_t* source, size_t count) {
  const size_t length = wcsnlen(source, count);
  std::copy_n(source, length, destination);
  std::fill_n(destination + length, count - length, L'\0');
  return destination;
}

wchar_t* qorgen_wcscat(wchar_t* destination, const wchar_t* source) {
  wcscpy(destination + wcslen(destination), source);
  return destination;
}

wchar_t* qorgen_wcsncat(wchar_t* destination, const wchar_t* source, size_t count) {
  wchar_t* end = destination + wcslen(destination);
  const size_t length = wcsnlen(source, count);
  std::copy_n(source, length, end);
  end[length] = 0;
  return destination;
}

int qorgen_wcscmp(const wchar_t* left, const wchar_t* right) {
  while (*left != 0 && *left == *right) {
    ++left;
    ++right;
  }
  return Order(*left, *right);
}

int qorgen_wcsncmp(const wchar_t* left, const wchar_t* right, size_t count) {
  for (; count != 0; --count, ++left, ++right) {
    if (*left != *right) return Order(*left, *right);
    if (*left == 0) return 0;
  }
  return 0;
}

const wchar_t* qorgen_wcschr(const wchar_t* text, wchar_t unit) {
  for (;; ++text) {
    if (*text == unit) return text;
    if (*text == 0) return nullptr;
  }
}

wchar_t* qorgen_wcschr(wchar_t* text, wchar_t unit) {
  return const_cast<wchar_t*>(wcschr(const_cast<const wchar_t*>(text), unit));
}

const wchar_t* qorgen_wcsrchr(const wchar_t* text, wchar_t unit) {
  const wchar_t* found = nullptr;
  for (;; ++text) {
    if (*text == unit) found = text;
    if (*text == 0) return found;
  }
}

wchar_t* qorgen_wcsrchr(wchar_t* text, wchar_t unit) {
  return const_cast<wchar_t*>(wcsrchr(const_cast<const wchar_t*>(text), unit));
}

const wchar_t* qorgen_wcsstr(const wchar_t* text, const wchar_t* part) {
  if (*part == 0) return text;
  const wchar_t* end = text + wcslen(text);
  const wchar_t* found = std::search(text, end, part, part + wcslen(part));
  return found == end ? nullptr : found;
}

wchar_t* qorgen_wcsstr(wchar_t* text, const wchar_t* part) {
  return const_cast<wchar_t*>(wcsstr(const_cast<const wchar_t*>(text), part));
}

const wchar_t* qorgen_wcspbrk(const wchar_t* text, const wchar_t* set) {
  text += wcscspn(text, set);
  return *text == 0 ? nullptr : text;
}

wchar_t* qorgen_wcspbrk(wchar_t* text, const wchar_t* set) {
  return const_cast<wchar_t*>(wcspbrk(const_cast<const wchar_t*>(text), set));
}

size_t qorgen_wcsspn(const wchar_t* text, const wchar_t* set) {
  size_t length = 0;
  while (text[length] != 0 && IsIn(text[length], set)) ++length;
  return length;
}

size_t qorgen_wcscspn(const wchar_t* text, const wchar_t* set) {
  size_t length = 0;
  while (text[length] != 0 && !IsIn(text[length], set)) ++length;
  return length;
}

wchar_t* qorgen_wmemcpy(wchar_t* destination, const wchar_t* source, size_t count) {
  if (count != 0) std::memcpy(destination, source, count * sizeof(wchar_t));
  return destination;
}

wchar_t* qorgen_wmemmove(wchar_t* destination, const wchar_t* source, size_t count) {
  if (count != 0) std::memmove(destination, source, count * sizeof(wchar_t));
  return destination;
}

wchar_t* qorgen_wmemset(wchar_t* destination, wchar_t unit, size_t count) {
  std::fill_n(destination, count, unit);
  return destination;
}

int qorgen_wmemcmp(const wchar_t* left, const wchar_t* right, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    if (left[i] != right[i]) return Order(left[i], right[i]);
  }
  return 0;
}

const wchar_t* qorgen_wmemchr(const wchar_t* text, wchar_t unit, size_t count) {
  const wchar_t* end = text + count;
  // Blocks of eight without an early way out, which the compiler turns into vector comparisons.
  while (end - text >= 8) {
    unsigned found = 0;
    for (int i = 0; i < 8; ++i) found |= text[i] == unit;
    if (found != 0) break;
    text += 8;
  }
  for (; text != end; ++text) {
    if (*text == unit) return text;
  }
  return nullptr;
}

wchar_t* qorgen_wmemchr(wchar_t* text, wchar_t unit, size_t count) {
  return const_cast<wchar_t*>(wmemchr(const_cast<const wchar_t*>(text), unit, count));
}

wchar_t* _wcsrev(wchar_t* text) {
  std::reverse(text, text + wcslen(text));
  return text;
}

wchar_t* lstrcpynW(wchar_t* destination, const wchar_t* source, int capacity) {
  if (destination == nullptr || source == nullptr) return nullptr;
  if (capacity <= 0) return destination;
  const size_t length = wcsnlen(source, static_cast<size_t>(capacity) - 1);
  std::copy_n(source, length, destination);
  destination[length] = 0;
  return destination;
}

int lstrcmpiW(const wchar_t* left, const wchar_t* right) {
  if (left == nullptr || right == nullptr) return Order(left != nullptr, right != nullptr);
  return _wcsicmp(left, right);
}
