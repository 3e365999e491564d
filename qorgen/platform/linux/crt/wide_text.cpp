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

const wchar_t* qorgen_wcspbrk(const wchar_t* text, const wchar_t* set) {
  text += wcscspn(text, set);
  return *text == 0 ? nullptr : text;
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
