#pragma once

// What the formatter of times needs to know of the locale that _wsetlocale remembers. Callable from any
// thread.

namespace qorgen::platform {

// Whether names of days and months and the long forms are Japanese.
bool IsTimeJapanese();

}  // namespace qorgen::platform
