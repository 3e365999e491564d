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
#else

#define _O_TEXT 0x4000
#define _O_BINARY 0x8000
#define _MAX_PATH 260
#define _MAX_DRIVE 3
#define _MAX_DIR 256
#define _MAX_FNAME 256
#define _MAX_EXT 256

// ---- text in memory ---------------------------------------------------------------------------------------
//
// As the C standard describes them, for UTF-16 units.

size_t qorgen_wcslen(const wchar_t* text);
size_t qorgen_wcsnlen(const wchar_t* text, size_t limit);
int qorgen_wcsncmp(const wchar_t* left, const wchar_t* right, size_t count);
const wchar_t* qorgen_wcschr(const wchar_t* text, wchar_t unit);
wchar_t* qorgen_wcschr(wchar_t* text, wchar_t unit);
const wchar_t* qorgen_wcspbrk(const wchar_t* text, const wchar_t* set);
size_t qorgen_wcscspn(const wchar_t* text, const wchar_t* set);
wchar_t* qorgen_wmemcpy(wchar_t* destination, const wchar_t* source, size_t count);
wchar_t* qorgen_wmemmove(wchar_t* destination, const wchar_t* source, size_t count);
const wchar_t* qorgen_wmemchr(const wchar_t* text, wchar_t unit, size_t count);

// ---- numbers ----------------------------------------------------------------------------------------------

// White space, one sign and digits, decimal ones of other scripts too, as full-width ones. The `long` carries
// a 32-bit quantity: at its bounds the value stops, with errno ERANGE.
long _wtol(const wchar_t* text);
// The decimal point is "." in every locale; hexadecimal and named forms count as the C standard has them.
// Beyond the range an infinity, with errno ERANGE.
double _wtof(const wchar_t* text);
// Digits in `radix` 2 to 36, lower case, a minus sign only with radix 10. A wrong radix gives an empty text
// and errno EINVAL.
wchar_t* _itow(int value, wchar_t* buffer, int radix);

// ---- formatting -------------------------------------------------------------------------------------------
//
// The platform's wide rules: %s, %ls, %ws and %c are wide; %S, %hs, %C and %hc are narrow, in the ANSI code
// page; the size prefixes h hh l ll j z t I I32 I64 w L; %n isn't supported. On Linux %ld reads the 64 bits
// that a `long` has there. A null text prints as "(null)".

// The number of units written. A text of exactly `capacity` units is written without terminator; a longer one
// is cut there with the result -1. A wrong format gives -1 and an empty text. A null buffer with capacity 0
// gives the length.
int _vsnwprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list arguments);
// The length of the formatted text, without the terminator; -1 for a wrong format.
int _vscwprintf(const wchar_t* format, va_list arguments);

// ---- paths ------------------------------------------------------------------------------------------------

// Cuts a path into drive ("C:"), folder (up to and with the last separator of either kind), name, and
// extension (from the last dot of the name on). Any result pointer may be null. A share's leading "\\" stays
// in the folder. When a part is too long for its buffer (_MAX_DRIVE, _MAX_DIR, _MAX_FNAME, _MAX_EXT) all
// results are empty and errno is ERANGE.
void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* folder, wchar_t* name, wchar_t* extension);
// Joins the parts into `path` of _MAX_PATH units; a missing colon, trailing separator ("\") or dot is added,
// null and empty parts are left out. A path that is too long comes out empty with errno ERANGE.
void _wmakepath(wchar_t* path, const wchar_t* drive, const wchar_t* folder, const wchar_t* name,
                const wchar_t* extension);

// ---- files and text streams -------------------------------------------------------------------------------
//
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

// 0 when the path exists and, with 2 or 6, isn't read-only; else -1 with errno. Modes: 0, 2, 4, 6.
int _waccess(const wchar_t* path, int mode);

#define wcslen qorgen_wcslen
#define wcsnlen qorgen_wcsnlen
#define wcsncmp qorgen_wcsncmp
#define wcschr qorgen_wcschr
#define wcspbrk qorgen_wcspbrk
#define wcscspn qorgen_wcscspn
#define wmemcpy qorgen_wmemcpy
#define wmemmove qorgen_wmemmove
#define wmemchr qorgen_wmemchr
#define fputws qorgen_fputws

#endif

#define _wcsicmp qorgen_wcsicmp
#define _wcsnicmp qorgen_wcsnicmp
#define wcsftime qorgen_wcsftime
