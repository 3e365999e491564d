// Small operations on buffers and single characters.

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

#include "qorgen/text/internal/convert.h"
#include "qorgen/text/string_util.h"

using namespace qorgen::text;

namespace {

View ViewUpTo(const wchar_t* text, std::size_t limit) {
  std::size_t length = 0;
  while (length < limit && text[length] != 0) ++length;
  return {text, length};
}

// Fills the buffer to its last place, the rest with terminators. The text may lie in the buffer.
void Store(wchar_t* dest, View text, std::size_t capacity) {
  const std::size_t length = std::min(text.size(), capacity - 1);
  if (length > 0) std::memmove(dest, text.data(), length * sizeof(wchar_t));
  std::fill(dest + length, dest + capacity, L'\0');
}

}  // namespace

wchar_t* CQorStringUtil::CopyString(wchar_t* dest, const wchar_t* src, unsigned int capacity) {
  if (dest != nullptr && capacity > 0) {
    Store(dest, src != nullptr ? ViewUpTo(src, capacity - 1) : View(), capacity);
  }
  return dest;
}

int CQorStringUtil::AttachToStr(wchar_t* dest, long value, long width) {
  if (dest == nullptr) return 0;
  CString number;
  number.Format(L"%d", static_cast<int>(static_cast<std::int32_t>(value)));
  const long digits = number.GetLength();
  if (digits > width) return 0;
  const auto capacity = static_cast<std::size_t>(width) + 1;
  const std::size_t kept = ViewUpTo(dest, capacity - 1 - static_cast<std::size_t>(digits)).size();
  Store(dest + kept, View(number.GetString(), static_cast<std::size_t>(digits)), capacity - kept);
  return 1;
}

void CQorStringUtil::RemovePrefixStr(wchar_t* dest, const wchar_t* text, const wchar_t* prefix,
                                     unsigned int capacity) {
  if (text != nullptr && prefix != nullptr) {
    const View start = ViewOf(prefix);
    const View found = ViewUpTo(text, start.size());
    if (std::equal(start.begin(), start.end(), found.begin(), found.end())) text += start.size();
  }
  CopyString(dest, text, capacity);
}

long CQorStringUtil::Delete(CString& text, long index, long count) {
  const auto in_range = [](long value) {
    return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
  };
  return text.Delete(in_range(index), in_range(count));
}

int CQorStringUtil::FindChar(const wchar_t* text, wchar_t c) {
  if (text == nullptr) return -1;
  for (const wchar_t* at = text; *at != 0; ++at) {
    if (*at == c) return static_cast<int>(at - text);
  }
  return -1;
}

wchar_t* CQorStringUtil::GetChar(const wchar_t* text, int index) {
  if (text == nullptr) return nullptr;
  const bool inside =
      index >= 0 && ViewUpTo(text, static_cast<std::size_t>(index)).size() == static_cast<std::size_t>(index);
  return qorgen::CopyText(inside ? text + index : L"", 1);
}

int CQorStringUtil::GetStringCount(const wchar_t* text) {
  return CString::StringLength(text);
}

long CQorStringUtil::GetStringLen(const wchar_t* text) {
  return CString::StringLength(text);
}
