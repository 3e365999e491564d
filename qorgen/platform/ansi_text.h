#pragma once

// Text into a text stream of the ANSI code page, as it comes back from the thread's code page: what that
// lacks becomes its default character. For sources only; one stream is used by one thread at a time.

#include <cstddef>
#include <cstdio>

namespace qorgen::platform {

enum class AnsiPut {
  kDone,
  kFailed,   // with errno; a part may have been written
  kNotHere,  // the stream isn't one that this host writes in a single pass: the caller converts there and
             // back
};

#if defined(_WIN32)
// The runtime converts by its locale, which needn't have the thread's code page.
inline AnsiPut PutAnsiText(FILE*, const wchar_t*, std::size_t) {
  return AnsiPut::kNotHere;
}
#else
AnsiPut PutAnsiText(FILE* stream, const wchar_t* text, std::size_t units);
#endif

}  // namespace qorgen::platform
