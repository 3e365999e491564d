// The published conversion functions: argument checks and error numbers around the two codecs.

#include "qorgen/platform/codepage.h"

#include <climits>
#include <cstring>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/codepage/codec.h"

using qorgen::platform::DecodeUtf8;
using qorgen::platform::Encoding932;
using qorgen::platform::IsLead932;
using qorgen::platform::Progress;

namespace {

constexpr DWORD kNoUnicodeTranslation = 1113;

// Composition flags of single-byte code pages, which change nothing in 932.
constexpr DWORD kHarmlessDecodeFlags = MB_PRECOMPOSED | 0x2 /* MB_COMPOSITE */ | 0x4 /* MB_USEGLYPHCHARS */;
constexpr DWORD kHarmlessEncodeFlags = 0x200 /* WC_COMPOSITECHECK */ | 0x10 | 0x20 | 0x40;

int Fail(DWORD error) {
  SetLastError(error);
  return 0;
}

bool Is932(UINT codePage) {
  return codePage == CP_ACP || codePage == CP_OEMCP || codePage == CP_THREAD_ACP || codePage == 932;
}

// The result of a conversion of `length` characters that came to `progress`.
int Finish(const Progress& progress, size_t length) {
  if (progress.read < length) return Fail(ERROR_INSUFFICIENT_BUFFER);
  if (progress.written > INT_MAX) return Fail(ERROR_INVALID_PARAMETER);
  return static_cast<int>(progress.written);
}

}  // namespace

int MultiByteToWideChar(UINT codePage, DWORD flags, const char* source, int bytes, wchar_t* text, int units) {
  if (source == nullptr || bytes == 0 || units < 0 || (units != 0 && text == nullptr) ||
      static_cast<const void*>(source) == static_cast<const void*>(text)) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  const bool is932 = Is932(codePage);
  if (!is932 && codePage != CP_UTF8) return Fail(ERROR_INVALID_PARAMETER);
  if ((flags & ~(MB_ERR_INVALID_CHARS | (is932 ? kHarmlessDecodeFlags : 0))) != 0)
    return Fail(ERROR_INVALID_FLAGS);
  const size_t length = bytes < 0 ? std::strlen(source) + 1 : static_cast<size_t>(bytes);
  const auto* data = reinterpret_cast<const unsigned char*>(source);
  const auto capacity = static_cast<size_t>(units);
  const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
  if (is932) {
    if (strict && !qorgen::platform::IsValid932(data, length)) return Fail(kNoUnicodeTranslation);
    if (units == 0) return Finish({length, qorgen::platform::Count932(data, length)}, length);
    return Finish(qorgen::platform::Decode932(data, length, text, capacity), length);
  }
  bool invalid = false;
  const Progress progress = DecodeUtf8(data, length, units == 0 ? nullptr : text, capacity, invalid);
  if (strict && invalid) return Fail(kNoUnicodeTranslation);
  return Finish(progress, length);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* text, int units, char* destination,
                        int bytes, const char* defaultChar, BOOL* usedDefaultChar) {
  if (text == nullptr || units == 0 || bytes < 0 || (bytes != 0 && destination == nullptr) ||
      static_cast<const void*>(text) == static_cast<const void*>(destination)) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  const bool is932 = Is932(codePage);
  if (!is932 && (codePage != CP_UTF8 || defaultChar != nullptr || usedDefaultChar != nullptr)) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  const DWORD known = is932 ? WC_NO_BEST_FIT_CHARS | kHarmlessEncodeFlags : WC_ERR_INVALID_CHARS;
  if ((flags & ~known) != 0) return Fail(ERROR_INVALID_FLAGS);
  const size_t length = units < 0 ? wcslen(text) + 1 : static_cast<size_t>(units);
  const auto capacity = static_cast<size_t>(bytes);
  char* target = bytes == 0 ? nullptr : destination;
  if (is932) {
    Encoding932 encoding;
    encoding.bestFit = (flags & WC_NO_BEST_FIT_CHARS) == 0;
    if (defaultChar != nullptr) {
      const auto first = static_cast<unsigned char>(defaultChar[0]);
      const bool pair = IsLead932(first) && defaultChar[1] != 0;
      encoding.replacement =
          static_cast<std::uint16_t>(pair ? first | static_cast<unsigned char>(defaultChar[1]) << 8 : first);
    }
    const Progress progress = qorgen::platform::Encode932(text, length, target, capacity, encoding);
    if (usedDefaultChar != nullptr) *usedDefaultChar = encoding.replaced ? TRUE : FALSE;
    return Finish(progress, length);
  }
  bool invalid = false;
  const Progress progress = qorgen::platform::EncodeUtf8(text, length, target, capacity, invalid);
  if (invalid && (flags & WC_ERR_INVALID_CHARS) != 0) return Fail(kNoUnicodeTranslation);
  return Finish(progress, length);
}

BOOL IsDBCSLeadByteEx(UINT codePage, BYTE byte) {
  return Is932(codePage) && IsLead932(byte) ? TRUE : FALSE;
}
