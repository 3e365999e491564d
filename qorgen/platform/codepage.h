#pragma once

// Conversion between code pages and UTF-16, under the published names.
//
// On Linux the ANSI, the thread's and the OEM code page are always 932, and UTF-8 (65001) is the other one.
// The tables of 932 are filled once, on first use, and are constant from then on; every function may be
// called from any thread.

#include <cstddef>

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

inline constexpr UINT CP_ACP = 0;
inline constexpr UINT CP_OEMCP = 1;
inline constexpr UINT CP_THREAD_ACP = 3;
inline constexpr UINT CP_UTF8 = 65001;

inline constexpr DWORD MB_PRECOMPOSED = 0x1;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x8;
inline constexpr DWORD WC_ERR_INVALID_CHARS = 0x80;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;

// Decodes `bytes` bytes, or a terminated text with its terminator when `bytes` is negative, into `text`,
// which holds `units`; with `units` 0 nothing is written. Gives the number of units, or 0 with the last error
// ERROR_INVALID_PARAMETER (null or empty input, unknown code page), ERROR_INVALID_FLAGS,
// ERROR_INSUFFICIENT_BUFFER (the buffer holds the beginning), or with MB_ERR_INVALID_CHARS
// ERROR_NO_UNICODE_TRANSLATION.
//
// 932 never yields more units than bytes, and neither does UTF-8: a caller with a buffer of `bytes` units can
// leave the sizing call out. What isn't a character of 932 (a lead byte with a byte that can't follow it, an
// unassigned pair) takes two bytes and becomes U+30FB; so does a lead byte without a second one (at the very
// end, or before a zero byte, which stays), alone. In UTF-8 each longest prefix of a possible character, or
// else each byte, becomes U+FFFD.
int MultiByteToWideChar(UINT codePage, DWORD flags, const char* source, int bytes, wchar_t* text, int units);

// Encodes `units` units, or a terminated text with its terminator when `units` is negative. Results and
// errors as above. In 932 a character without a code takes its best fit (U+00A5 gives "\"), unless
// WC_NO_BEST_FIT_CHARS is set, and else `defaultChar`, or "?" when that is null, which `*usedDefaultChar`
// reports; each half of a surrogate pair counts. In UTF-8 both last pointers must be null, and a lone
// surrogate becomes U+FFFD; with WC_ERR_INVALID_CHARS it fails. 932 yields at most 2 bytes a unit, UTF-8 at
// most 3.
int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* text, int units, char* destination,
                        int bytes, const char* defaultChar, BOOL* usedDefaultChar);

// Nonzero for the lead bytes of code page 932, 0x81 to 0x9F and 0xE0 to 0xFC; zero for every byte of UTF-8.
BOOL IsDBCSLeadByteEx(UINT codePage, BYTE byte);

#endif

// Whole text of one code page in another, CP_ACP and CP_UTF8 either way: what MultiByteToWideChar and then
// WideCharToMultiByte give for these bytes, in one pass where the host's own code pages allow it. The
// destination has room for qorgen_recode_room(bytes) bytes and doesn't overlap the source; bytes of it behind
// the result may be overwritten. `bytes` is at most 2^29. Gives the length of the result; 0 for no
// bytes, without memory, and for other code pages.
std::size_t qorgen_recode(UINT from, UINT to, const char* source, std::size_t bytes, char* destination);
constexpr std::size_t qorgen_recode_room(std::size_t bytes) {
  return 3 * bytes + 64;
}
