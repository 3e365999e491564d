#pragma once

// Clocks and the variant time: a double that counts days since 30 December 1899, with the time of day as its
// fraction.
//
// In a negative variant time the fraction still counts forward: -1.25 is 29 December 1899, 06:00, and -0.75
// is the same moment as 0.75. All functions may be called from any thread.
//
// On Linux the local time follows TZ; tests can fix the clock (platform/linux/time/test_clock.h).

#include <cstdint>
#include <ctime>

#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <oleauto.h>
#else

using DATE = double;
using __time64_t = std::int64_t;

// The variant time of a date of the years 100 to 9999, in whole seconds; milliseconds and the day of the week
// are ignored. 1 on success. A year of two digits is moved into 1930 to 2029. A day up to 31 that its month
// doesn't have goes on into the next month (29 February 2001 is 1 March), day 0 is the last day of the month
// before. Anything else out of range gives 0 and leaves the target alone.
QORGEN_API int SystemTimeToVariantTime(SYSTEMTIME* system_time, double* variant_time);

// The date and time of a variant time, rounded to the nearest second (half a second goes up), milliseconds 0,
// the day of the week filled in. 1 on success; 0, with the target left alone, for anything outside 1 January
// 100 to 31 December 9999 after rounding, and for what is no number.
QORGEN_API int VariantTimeToSystemTime(double variant_time, SYSTEMTIME* system_time);

// Now, in the local time, to the millisecond.
QORGEN_API void GetLocalTime(SYSTEMTIME* system_time);

// Seconds since 1 January 1970 UTC; also stored in `time` unless that is null.
QORGEN_API __time64_t _time64(__time64_t* time);

// Breaks `time` down into the local time. 0 on success. EINVAL (also in errno), with every field of `result`
// -1, for a time before 1970 or after the year 3000, and for null pointers.
QORGEN_API int _localtime64_s(std::tm* result, const __time64_t* time);

#endif
