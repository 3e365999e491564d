#pragma once

// Numbers as display text and back, the three rounding rules of the suite, and byte counts in KB, MB and GB.
//
// Every operation is static, keeps no state and may be called from any thread. A `wchar_t*` result is a new
// array that goes back through QorFree. `length`, where one is passed, receives the number of characters of
// the result; it may be null everywhere. `long` and `unsigned long` carry 32 bits on every host: printing
// uses the low 32 bits, reading clamps at the 32-bit bounds.

#include "qorgen/numeric/state_value.h"
#include "qorgen/platform/export.h"
#include "qorgen/platform/types.h"

// The flags of CQorNumUtil::FormatString. 0 means that no formatting is wanted.
inline constexpr unsigned int NUMFORMAT_GROUP = 0x00000001;    // "," between groups of three integer digits
inline constexpr unsigned int NUMFORMAT_FIXED = 0x00000002;    // a field of `width` and `decimals` places
inline constexpr unsigned int NUMFORMAT_OPEN = 0x00000004;     // begin with "("
inline constexpr unsigned int NUMFORMAT_CLOSE = 0x00000008;    // end with ")"
inline constexpr unsigned int NUMFORMAT_NOMINUS = 0x00000010;  // no minus sign
inline constexpr unsigned int NUMFORMAT_WHITETRIANGLE = 0x00000020;  // "△" in place of the minus sign
inline constexpr unsigned int NUMFORMAT_BLACKTRIANGLE = 0x00000040;  // "▲" instead, unless "△" is asked for
inline constexpr unsigned int NUMFORMAT_BLANKZERO = 0x00100000;      // no digit from 1 to 9: blank

class QORGEN_API CQorNumUtil {
 public:
  // ---- Display text ----

  // Lays a number's text out under `flags` (NUMFORMAT_...). Characters other than digits, "-" and "." are
  // taken out first. Null when there is nothing to format: a null text, flags of 0, or an empty text without
  // NUMFORMAT_FIXED (with it an empty text counts as "0").
  //   "1234567", GROUP -> "1,234,567"        "-1234", GROUP | WHITETRIANGLE -> "△1,234"
  //   "-1234", GROUP | OPEN | CLOSE -> "(-1,234)", with NOMINUS "(1,234)"
  //   "12", FIXED, width 6 -> "    12"       "0.00", BLANKZERO -> ""
  // With NUMFORMAT_FIXED, unused places hold `pad`; marks stand at the left edge, digits at the right of the
  // integer places. As soon as `decimals` and `width` are both above 0 the integer part counts 2 places,
  // whatever `width` says: "1234.5", GROUP | FIXED, width 8, decimals 2 -> "1,234.5 ". `width` and `decimals`
  // beyond a million either way count as a million. A text of any length and shape is safe; a `pad` of 0 ends
  // the text at the first padded place.
  static wchar_t* FormatString(const wchar_t* text, unsigned int flags, int* length, int width, int decimals,
                               wchar_t pad);

  // The same for the plain text of an integer, with 0 decimals; flags of 0 hand back the plain text.
  static wchar_t* FormatString(short value, unsigned int flags, int* length, int width, wchar_t pad);
  static wchar_t* FormatString(unsigned short value, unsigned int flags, int* length, int width, wchar_t pad);
  static wchar_t* FormatString(int value, unsigned int flags, int* length, int width, wchar_t pad);
  static wchar_t* FormatString(long value, unsigned int flags, int* length, int width, wchar_t pad);
  static wchar_t* FormatString(unsigned int value, unsigned int flags, int* length, int width, wchar_t pad);
  static wchar_t* FormatString(unsigned long value, unsigned int flags, int* length, int width, wchar_t pad);

  // The same for ToString(value, decimals, length, mode, trim), where trailing zeros are trimmed unless
  // NUMFORMAT_FIXED is set.
  static wchar_t* FormatString(double value, unsigned int flags, int* length, int decimals, int mode,
                               int width, wchar_t pad);

  // An integer in decimal digits.
  static wchar_t* ToString(unsigned char value, int* length);
  static wchar_t* ToString(short value, int* length);
  static wchar_t* ToString(unsigned short value, int* length);
  static wchar_t* ToString(int value, int* length);
  static wchar_t* ToString(long value, int* length);
  static wchar_t* ToString(unsigned int value, int* length);
  static wchar_t* ToString(unsigned long value, int* length);

  // A number with up to |decimals| decimals (15 at most), rounded by `mode` first unless that is 0. No more
  // than fifteen significant digits are printed: a large integer part costs decimals. A nonzero `trim` drops
  // trailing zeros of the fraction; a lone point is always dropped. Negative zero gives "0", infinities "inf"
  // and "-inf", any NaN "nan".
  static wchar_t* ToString(double value, int decimals, int* length, int mode, int trim);

  // The same within `maxChars` characters, where that is above 0: a longer text is cut there and trimmed
  // again, and `over`, which may be null, receives 1 when `maxChars` characters or more are still left, else
  // 0.
  static wchar_t* ToString(double value, int decimals, int maxChars, int* length, int mode, int trim,
                           int* over);

  // No rounding step and no decimals: ToString(value, 0, length, 0, 1).
  static wchar_t* ToString(double value, int* length);

  // ---- Reading ----

  // A new text of only the digits, "-" and "." of `text`; null, with `length` left alone, if nothing needs
  // removing: `text` is null, empty, or made of number characters. A blank is one of those, so a blank alone
  // keeps the text as it is, and yet goes too once anything else has to go.
  static wchar_t* ParseString(const wchar_t* text, int* length);

  // How many characters are number characters: half-width digits, "-", "." and the blank. 0 for null.
  static int ParseStringLength(const wchar_t* text);

  // The number in the text, read in base 10 after ParseString has cleaned it: "1,234.5" -> 1234.5, "12,3" ->
  // 123. It ends at the first character that doesn't fit: "12 3" -> 12. Null, empty and unusable text give 0.
  // Each clamps at the bounds of its type; ToUInt and ToULong at 32 bits, and a negative text wraps there
  // before the smaller unsigned types clamp: "-1" gives 4294967295, 65535 and 255. A double beyond its range
  // gives an infinity or 0.
  static double ToDouble(const wchar_t* text);
  static int ToInt(const wchar_t* text);
  static long ToLong(const wchar_t* text);
  static short ToShort(const wchar_t* text);
  static unsigned char ToUChar(const wchar_t* text);
  static unsigned int ToUInt(const wchar_t* text);
  static unsigned long ToULong(const wchar_t* text);
  static unsigned short ToUShort(const wchar_t* text);

  // ---- Rounding ----
  // `mode`: 2 rounds up (away from zero), 3 rounds half up (away from zero), anything else truncates. `place`
  // is the power of ten of the unit: 0 units, -2 hundredths, 2 hundreds. Amounts round as the decimal text
  // that a user sees: a tolerance at the fifteenth digit is added first, so 1.005 rounds half up to 1.01.

  // Rounds in place; never gives a negative zero. A value that is not finite, or too large to have digits at
  // `place`, stays as it is; places beyond 308 either way count as 308.
  static void Round(double& value, int place, int mode);

  // The rounded percentage numerator * 100 / denominator; null when the denominator is 0.
  static CQorStateDouble Ratio(double numerator, double denominator, int place, int mode);

  // `value` as a count of units of 10 to the power `place`, rounded. Clamps at the 32-bit bounds; NaN gives
  // 0, and so does an infinity counted in units beyond any double.
  static long DoubleToLong(double value, long place, int mode);

  // `value` times 10 to the power `place`; 0 stays 0 at any place.
  static double LongToDouble(long value, long place);

  // ---- Byte counts ----

  // The size in its largest fitting unit; `unit` receives the divisor: 0 (bytes), 1024, 1048576 or
  // 1073741824. A size above 1 GB ignores the lowest 16 bits of the count and everything above bit 47.
  static double ToUnitDouble(unsigned long bytes, unsigned long& unit);
  static double ToUnitDouble(const unsigned long long& bytes, unsigned long& unit);
  static double ToUnitDouble(const ULARGE_INTEGER& bytes, unsigned long& unit);

  // The size with its unit, at most two decimals: 1536 -> "1.5 KB", 500 -> "500".
  static wchar_t* ToUnitString(const unsigned long long& bytes);
  static wchar_t* ToUnitString(const ULARGE_INTEGER& bytes);
  // The value as it is, with the text of `unit` behind.
  static wchar_t* ToUnitString(double value, unsigned long unit);

  // " KB", " MB" or " GB"; the empty text for any other unit. A constant: not to be given back.
  static const wchar_t* GetUnitString(unsigned long unit);
};
