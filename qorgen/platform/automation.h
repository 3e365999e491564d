#pragma once

// Automation values: BSTR texts, VARIANT, and the conversions between text, numbers and dates.
//
// On Windows all of it is the system's own. On Linux the conversions behave as on a Japanese system whatever
// the locale identifier and flags say, except where a comment names a flag. A VARIANT belongs to one thread
// at a time; everything else may be called from any thread.

#include "qorgen/platform/error.h"
#include "qorgen/platform/time.h"
#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <oleauto.h>

// The published signatures promise not to write to what is read; the headers of mingw-w64 leave that out.
inline HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, unsigned short flags, VARTYPE vt) {
  return VariantChangeType(target, const_cast<VARIANT*>(source), flags, vt);
}
inline HRESULT VariantChangeTypeEx(VARIANT* target, const VARIANT* source, LCID locale, unsigned short flags,
                                   VARTYPE vt) {
  return VariantChangeTypeEx(target, const_cast<VARIANT*>(source), locale, flags, vt);
}
inline HRESULT VarI4FromStr(const OLECHAR* text, LCID locale, ULONG flags, LONG* value) {
  return VarI4FromStr(const_cast<OLECHAR*>(text), locale, flags, value);
}
inline HRESULT VarR8FromStr(const OLECHAR* text, LCID locale, ULONG flags, double* value) {
  return VarR8FromStr(const_cast<OLECHAR*>(text), locale, flags, value);
}
inline HRESULT VarDateFromStr(const OLECHAR* text, LCID locale, ULONG flags, DATE* date) {
  return VarDateFromStr(const_cast<OLECHAR*>(text), locale, flags, date);
}
#else

using OLECHAR = wchar_t;
using BSTR = OLECHAR*;
using VARTYPE = unsigned short;
using VARIANT_BOOL = short;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum VARENUM : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_TYPEMASK = 0x0FFF,
};

struct VARIANT {
  VARTYPE vt;
  WORD wReserved1;
  WORD wReserved2;
  WORD wReserved3;
  union {
    LONGLONG llVal;
    LONG lVal;
    BYTE bVal;
    short iVal;
    float fltVal;
    double dblVal;
    VARIANT_BOOL boolVal;
    HRESULT scode;
    DATE date;
    BSTR bstrVal;
    BYTE* pbVal;
    short* piVal;
    LONG* plVal;
    LONGLONG* pllVal;
    float* pfltVal;
    double* pdblVal;
    VARIANT_BOOL* pboolVal;
    HRESULT* pscode;
    DATE* pdate;
    BSTR* pbstrVal;
    VARIANT* pvarVal;
    void* byref;
    signed char cVal;
    WORD uiVal;
    ULONG ulVal;
    ULONGLONG ullVal;
    int intVal;
    unsigned int uintVal;
    void* record[2];
  };
};
using VARIANTARG = VARIANT;
static_assert(sizeof(VARIANT) == 24 && offsetof(VARIANT, llVal) == 8);

inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;

inline constexpr WORD VARIANT_ALPHABOOL = 2;
inline constexpr ULONG VAR_TIMEVALUEONLY = 1;
inline constexpr ULONG VAR_DATEVALUEONLY = 2;

// ---- BSTR -------------------------------------------------------------------------------------------------
//
// Counted text with its length in bytes in the four bytes before it, and a terminator behind it.

// A new BSTR, to be given back with SysFreeString; null where there is no memory (and for a null text in the
// first). SysAllocStringLen leaves the units undefined-but-terminated (zero here) where `text` is null.
QORGEN_API BSTR SysAllocString(const OLECHAR* text);
QORGEN_API BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
QORGEN_API BSTR SysAllocStringByteLen(const char* bytes, UINT length);
// Null is fine, and in the length questions 0.
QORGEN_API void SysFreeString(BSTR text);
QORGEN_API UINT SysStringLen(BSTR text);
QORGEN_API UINT SysStringByteLen(BSTR text);

// ---- VARIANT ----------------------------------------------------------------------------------------------

QORGEN_API void VariantInit(VARIANT* value);

// Frees what the value owns (a BSTR) and makes it VT_EMPTY. DISP_E_BADVARTYPE, with the value left alone, for
// a type that this system doesn't hold (objects, arrays, VT_DECIMAL).
QORGEN_API HRESULT VariantClear(VARIANT* value);

// Clears the target and makes it a copy of the source, a BSTR with its own block. Copying onto itself does
// nothing. E_OUTOFMEMORY leaves the target empty, DISP_E_BADVARTYPE leaves it alone.
QORGEN_API HRESULT VariantCopy(VARIANT* target, const VARIANT* source);

// Converts `source` (also one with VT_BYREF) to the type `vt` and puts it in place of the target, which may
// be the source itself; on failure the target keeps its value. The types VT_I2, VT_I4, VT_INT, VT_UI1, VT_R8,
// VT_BOOL, VT_DATE and VT_BSTR, each to each, and from VT_EMPTY, which is 0, false or the empty text:
//
//   text to number        as VarI4FromStr and VarR8FromStr below, with no allocation
//   text to VT_BOOL       "True" and "False" in any case, "#TRUE#", "#FALSE#", else whether the number is
//                         nonzero
//   text to VT_DATE       VarDateFromStr
//   fraction to integer   to the nearest, a half to the even one: 0.5 is 0, 1.5 is 2, 2.5 is 2
//   VT_BOOL to number     true is -1 (255 in VT_UI1)
//   VT_BOOL to text       "-1" and "0", with VARIANT_ALPHABOOL "True" and "False"
//   VT_R8 to text         up to 15 digits: "0.1", "1E+20"
//   VT_DATE to text       "2024/03/05 9:05:00", without the time at midnight, without the date on day 0
//
//   DISP_E_OVERFLOW       the number doesn't fit
//   DISP_E_TYPEMISMATCH   the text is no number, boolean or date, or the pair isn't among these
//   DISP_E_BADVARTYPE     no type at all
QORGEN_API HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, unsigned short flags,
                                     VARTYPE vt);
QORGEN_API HRESULT VariantChangeTypeEx(VARIANT* target, const VARIANT* source, LCID locale,
                                       unsigned short flags, VARTYPE vt);

// ---- Text to number, with no block and no VARIANT between -------------------------------------------------
//
// The target is written on success alone. A number is, in this order:
//
//   - any of white space, one sign and one currency mark (\ or yen);
//   - digits with one decimal point, and with commas anywhere behind the first digit ("1,2,3" is 123);
//   - an exponent ("1e3", "1D+3");
//   - any of white space, one sign, if there was none in front, and one currency mark.
//
// Parentheses instead of a sign make it negative: "(5)" is -5, currency marks may stand inside or outside.
// Full-width forms of all these characters count, and the ideographic space.
//
// "&H1F" is hexadecimal and "&O17" octal, without sign or currency mark: up to 32 bits for an integer, taken
// as its bit pattern ("&HFFFFFFFF" is -1), up to 64 for a double, taken without a sign.
//
//   DISP_E_TYPEMISMATCH   null, empty or blank text, and anything else
//   DISP_E_OVERFLOW       a number too large; one too small for a double becomes 0

// A fraction is rounded to the nearest integer, exactly half to the even one, however many digits it has.
QORGEN_API HRESULT VarI4FromStr(const OLECHAR* text, LCID locale, ULONG flags, LONG* value);
// The double that is nearest to the decimal number, correctly rounded for any count of digits.
QORGEN_API HRESULT VarR8FromStr(const OLECHAR* text, LCID locale, ULONG flags, double* value);

// ---- Text to date -----------------------------------------------------------------------------------------
//
// A date, a time, or both in either order with white space between. Fields are separated by / - . or white
// space:
//
//   2024/3/5  24/3/5  2024-03-05  2024.3.5  2024 3 5   year, month, day
//   3/5/2024  25/12/2024  12/31/99                     where the order above cannot be: month, day, year, or
//                                                      else day, month, year
//   3/5  25/12                                         in the current year
//   2024/3  3/2024                                     the first of the month
//   2024年3月5日  3月5日  2024年3月                    the same with their units
//   令和6年3月5日  平成元年1月8日  R6.3.5  H31/4/30    years of an era
//   昭64年1月7日  ㍻5年1月1日
//   March 5, 2024  5-Mar-2024  Mar 5  March 2024       English months, three letters or more
//   12:34  12:34:56  3:05 PM  3 pm                     times
//   午後3時5分  午前9:30  15時30分20秒
//
// A year of one or two digits lies in 1930 to 2029. An era year counts from the era's first year, also past
// its end (昭和100年 is 2025). Full-width forms count. A date alone has no fraction; a time alone stands on
// day 0. DISP_E_TYPEMISMATCH for everything else, as for 24:00, 13月 and 2023/2/29. VAR_TIMEVALUEONLY and
// VAR_DATEVALUEONLY cut the result to its time or its day.
QORGEN_API HRESULT VarDateFromStr(const OLECHAR* text, LCID locale, ULONG flags, DATE* date);

#endif
