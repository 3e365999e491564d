#pragma once

// The wide half of the C runtime and its text streams, under their published names.
//
// For sources only: never include it from a public header. On Windows these are the runtime's own functions.
// On Linux the C library's wide functions assume 32-bit units, so every name that the C library declares too
// is routed to this library's implementation by a macro. (The macros follow the standard headers on purpose:
// <cwchar> undefines the names that it declares.) Nothing here consults or changes the C library's own
// locale. All functions may be called from any thread; one stream is used by one thread at a time.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <cwctype>
#include <string>

#include "qorgen/platform/types.h"

// Comparison without case: -1, 0 or 1 by the order of the lower-case units, by the case of letter_case.h on both
// hosts and in every locale.
int qorgen_wcsicmp(const wchar_t* left, const wchar_t* right);
int qorgen_wcsnicmp(const wchar_t* left, const wchar_t* right, size_t count);

// Formats a broken-down time; 0 when the text with its terminator doesn't fit, or with errno EINVAL for an
// unknown letter or a field out of range. Letters: a A b B c C d D e F g G h H I j m M n p r R S t T u U V w
// W x X y Y z Z %; the flag # drops leading zeros and makes %c and %x long. Names are English until
// _wsetlocale has chosen Japanese.
size_t qorgen_wcsftime(wchar_t* buffer, size_t capacity, const wchar_t* format, const struct tm* time);

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <mbctype.h>
#include <mbstring.h>
#include <wchar.h>

// What the runtime that mingw-w64 links does by the locale, lacks, or has under other rules in the headers of
// mingw-w64. The contracts are those of the declarations below.
int qorgen_swprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, ...);
int qorgen_vswprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list arguments);

#define swprintf qorgen_swprintf
#define vswprintf qorgen_vswprintf
#else

#define _O_TEXT 0x4000
#define _O_BINARY 0x8000
#define _MAX_PATH 260
#define _MAX_DRIVE 3
#define _MAX_DIR 256
#define _MAX_FNAME 256
#define _MAX_EXT 256

// ---- text in memory
// ------------------------------------------------------------------------------------------- As the C
// standard describes them, for UTF-16 units.

size_t qorgen_wcslen(const wchar_t* text);
size_t qorgen_wcsnlen(const wchar_t* text, size_t limit);
wchar_t* qorgen_wcscpy(wchar_t* destination, const wchar_t* source);
wchar_t* qorgen_wcsncpy(wchar_t* destination, const wchar_t* source, size_t count);
wchar_t* qorgen_wcscat(wchar_t* destination, const wchar_t* source);
wchar_t* qorgen_wcsncat(wchar_t* destination, const wchar_t* source, size_t count);
int qorgen_wcscmp(const wchar_t* left, const wchar_t* right);
int qorgen_wcsncmp(const wchar_t* left, const wchar_t* right, size_t count);
const wchar_t* qorgen_wcschr(const wchar_t* text, wchar_t unit);
wchar_t* qorgen_wcschr(wchar_t* text, wchar_t unit);
const wchar_t* qorgen_wcsrchr(const wchar_t* text, wchar_t unit);
wchar_t* qorgen_wcsrchr(wchar_t* text, wchar_t unit);
const wchar_t* qorgen_wcsstr(const wchar_t* text, const wchar_t* part);
wchar_t* qorgen_wcsstr(wchar_t* text, const wchar_t* part);
const wchar_t* qorgen_wcspbrk(const wchar_t* text, const wchar_t* set);
wchar_t* qorgen_wcspbrk(wchar_t* text, const wchar_t* set);
size_t qorgen_wcsspn(const wchar_t* text, const wchar_t* set);
size_t qorgen_wcscspn(const wchar_t* text, const wchar_t* set);
wchar_t* qorgen_wmemcpy(wchar_t* destination, const wchar_t* source, size_t count);
wchar_t* qorgen_wmemmove(wchar_t* destination, const wchar_t* source, size_t count);
wchar_t* qorgen_wmemset(wchar_t* destination, wchar_t unit, size_t count);
int qorgen_wmemcmp(const wchar_t* left, const wchar_t* right, size_t count);
const wchar_t* qorgen_wmemchr(const wchar_t* text, wchar_t unit, size_t count);
wchar_t* qorgen_wmemchr(wchar_t* text, wchar_t unit, size_t count);

// Reverses units; a surrogate pair comes apart, as it does on the platform.
wchar_t* _wcsrev(wchar_t* text);
// Copies at most `capacity` - 1 units and terminates. Null for a null pointer; nothing is written for a
// capacity of 0 or less.
wchar_t* lstrcpynW(wchar_t* destination, const wchar_t* source, int capacity);
// -1, 0 or 1 by the order of the lower-case units. The platform sorts by the user's locale; only equality is
// the same.
int lstrcmpiW(const wchar_t* left, const wchar_t* right);

// ---- numbers
// -------------------------------------------------------------------------------------------------- `long`
// results carry a 32-bit quantity: wcstol, _wtol and _wtoi stop at the bounds of 32 bits with errno ERANGE,
// wcstoul at 0xFFFFFFFF; a minus sign before wcstoul negates in 32 bits. Decimal digits of other scripts
// count as digits, full width ones too, in the integer functions. The decimal point is "." in every locale.

long qorgen_wcstol(const wchar_t* text, wchar_t** end, int base);
unsigned long qorgen_wcstoul(const wchar_t* text, wchar_t** end, int base);
long long qorgen_wcstoll(const wchar_t* text, wchar_t** end, int base);
unsigned long long qorgen_wcstoull(const wchar_t* text, wchar_t** end, int base);
double qorgen_wcstod(const wchar_t* text, wchar_t** end);
int _wtoi(const wchar_t* text);
long _wtol(const wchar_t* text);
long long _wtoi64(const wchar_t* text);
double _wtof(const wchar_t* text);
// Digits in `radix` 2 to 36, lower case, a minus sign only with radix 10. A wrong radix gives an empty text
// and errno EINVAL. The `long` forms use the low 32 bits.
wchar_t* _itow(int value, wchar_t* buffer, int radix);
wchar_t* _ltow(long value, wchar_t* buffer, int radix);
wchar_t* _ultow(unsigned long value, wchar_t* buffer, int radix);
wchar_t* _i64tow(long long value, wchar_t* buffer, int radix);
wchar_t* _ui64tow(unsigned long long value, wchar_t* buffer, int radix);

// ---- formatting
// ----------------------------------------------------------------------------------------------- The
// platform's wide rules: %s, %ls, %ws and %c are wide; %S, %hs, %C and %hc are narrow, in the ANSI code page;
// the size prefixes h hh l ll j z t I I32 I64 w L; %n isn't supported. On Linux %ld reads the 64 bits that a
// `long` has there. A null text prints as "(null)".

// The number of units written, without the terminator; -1 when the text doesn't fit, which leaves a cut and
// terminated text, or when the format is wrong, which leaves an empty one.
int qorgen_swprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, ...);
int qorgen_vswprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list arguments);
// The same, but a text of exactly `capacity` units is written without terminator and a longer one is cut
// there with the result -1. A null buffer with capacity 0 gives the length.
int _snwprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, ...);
int _vsnwprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list arguments);
// The length of the formatted text, without the terminator; -1 for a wrong format.
int _scwprintf(const wchar_t* format, ...);
int _vscwprintf(const wchar_t* format, va_list arguments);

// ---- paths
// ---------------------------------------------------------------------------------------------------- Cuts a
// path into drive ("C:"), folder (up to and with the last separator of either kind), name, and extension
// (from the last dot of the name on). Any result pointer may be null. A share's leading "\\" stays in the
// folder. When a part is too long for its buffer (_MAX_DRIVE, _MAX_DIR, _MAX_FNAME, _MAX_EXT) all results are
// empty and errno is ERANGE.
void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* folder, wchar_t* name, wchar_t* extension);
// Joins the parts into `path` of _MAX_PATH units; a missing colon, trailing separator ("\") or dot is added,
// null and empty parts are left out. A path that is too long comes out empty with errno ERANGE.
void _wmakepath(wchar_t* path, const wchar_t* drive, const wchar_t* folder, const wchar_t* name,
                const wchar_t* extension);

// ---- files and text streams -------------------------------------------------------------------------------
// _wfopen opens a path of either vocabulary with the platform's modes: r, w or a; "+"; b or t (text is the
// default); x with w; D (the file goes when the stream is closed); c n N S R T, which change nothing; and
// ",ccs=UTF-8", ",ccs=UTF-16LE" or ",ccs=UNICODE" behind a text mode. Null with errno set, and the thread's
// last error where the system refused: EINVAL for a wrong mode or a UTF-16BE file, ENOENT, EACCES (a folder
// too) ...
//
// The stream is a FILE of the C library over the bytes of the file: fread, fwrite, fseek, ftell, rewind,
// fclose work on bytes and positions are exact byte offsets. (On Windows fread and fwrite of a text stream
// translate.) Text is read and written through text_stream.h and fputws:
//   - in a text stream LF is CR LF on disk;
//   - without ccs text is code page 932; a character without a code ends the writing with WEOF and EILSEQ;
//   - with ccs a byte-order mark is written into a new or empty file. A file's own mark decides its encoding
//     whatever ccs says. (Text written at the start of the file replaces it.)
// A stream that _wfopen or _wfdopen didn't make counts as UTF-8 without translation of line ends.

FILE* _wfopen(const wchar_t* path, const wchar_t* mode);
// Descriptors of this runtime, not the host's. _open_osfhandle takes over a handle of CreateFileW (the flags
// mean nothing here, the stream's mode decides); _wfdopen takes over the descriptor, unless it fails; _fileno
// and _get_osfhandle lead back. -1 with errno EBADF or EINVAL on failure.
int _open_osfhandle(intptr_t handle, int flags);
intptr_t _get_osfhandle(int descriptor);
FILE* _wfdopen(int descriptor, const wchar_t* mode);
int _fileno(FILE* stream);
int _close(int descriptor);

int qorgen_fputws(const wchar_t* text, FILE* stream);

// Removes a file; -1 with errno, EACCES for a folder.
int _wremove(const wchar_t* path);
// 0 when the path exists and, with 2 or 6, isn't read-only; else -1 with errno. Modes: 0, 2, 4, 6.
int _waccess(const wchar_t* path, int mode);

#define wcslen qorgen_wcslen
#define wcsnlen qorgen_wcsnlen
#define wcscpy qorgen_wcscpy
#define wcsncpy qorgen_wcsncpy
#define wcscat qorgen_wcscat
#define wcsncat qorgen_wcsncat
#define wcscmp qorgen_wcscmp
#define wcsncmp qorgen_wcsncmp
#define wcschr qorgen_wcschr
#define wcsrchr qorgen_wcsrchr
#define wcsstr qorgen_wcsstr
#define wcspbrk qorgen_wcspbrk
#define wcsspn qorgen_wcsspn
#define wcscspn qorgen_wcscspn
#define wmemcpy qorgen_wmemcpy
#define wmemmove qorgen_wmemmove
#define wmemset qorgen_wmemset
#define wmemcmp qorgen_wmemcmp
#define wmemchr qorgen_wmemchr
#define wcstol qorgen_wcstol
#define wcstoul qorgen_wcstoul
#define wcstoll qorgen_wcstoll
#define wcstoull qorgen_wcstoull
#define wcstod qorgen_wcstod
#define swprintf qorgen_swprintf
#define vswprintf qorgen_vswprintf
#define fputws qorgen_fputws

#endif

#define _wcsicmp qorgen_wcsicmp
#define _wcsnicmp qorgen_wcsnicmp
#define wcsftime qorgen_wcsftime
