#pragma once

// What the formatter of times asks of its host. Callable from any thread.

namespace qorgen::platform {

// Whether names of days and months and the long forms are Japanese: _wsetlocale has chosen Japanese for LC_TIME.
bool IsTimeJapanese();

struct TimeZone {
  int minutes;  // east of universal time
  wchar_t name[64];
};
// The machine's zone, in its standard time or in summer.
TimeZone LocalZone(bool summer);

}  // namespace qorgen::platform
