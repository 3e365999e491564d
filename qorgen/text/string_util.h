#pragma once

// Japanese text: character classes, half and full width, kana folding, search and sort keys, comparison, and
// the text helpers that the rest of the library calls.
//
// Every operation is static, keeps no state and may be called from any thread. Folding, comparison and keys
// never ask a locale or the operating system: their results are the same on every machine and every host.
// Text is UTF-16; a "character" is one unit, and the halves of a surrogate pair go through every conversion
// unchanged.
//
// Conversions come in up to three forms:
//   (wchar_t* dest, const wchar_t* src)   into the caller's buffer, whose size with the terminator each
//                                         operation states. A null `src` empties the buffer.
//   (CString& dest, const wchar_t* src)   into a string. A null `src` leaves the string as it was.
//   (const wchar_t* src)                  a new array, which goes back through QorFree; null for null.
// In all of them `src` may be, or lie within, what `dest` holds. The cost grows with the length of the text;
// nothing is allocated but the result, apart from work space for texts of more than 256 units where one is
// needed.

#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"
#include "qorgen/text/char_type.h"

class COleDateTime;
class CStringArray;

class QORGEN_API CQorStringUtil {
 public:
  // --- Classes and width ---

  // The class of a character, one of the CHARTYPE_ values, or 0. Values above U+FFFF have none.
  static unsigned int GetCharType(unsigned int c);

  // The half-width (半角) form of one character, without a voicing mark: ガ -> ｶ. Whatever has none is given
  // back as it is; so are the full-width space, ”, ’ and ￥, although ToWideChar makes them of the half-width
  // ones.
  static unsigned int ToHalfChar(unsigned int c);

  // The full-width (全角) form of one character; a half-width voicing mark becomes the spacing mark ゛ or ゜.
  static unsigned int ToWideChar(unsigned int c);

  // Half width, with a mark behind the form of a voiced kana: ガ -> ｶﾞ, ぱ -> ﾊﾟ. ゔ gives ｳ alone. `dest`
  // holds twice the length of `src`, plus 1. The int forms give 0.
  static int ToHalfString(wchar_t* dest, const wchar_t* src);
  static int ToHalfString(CString& dest, const wchar_t* src);
  static wchar_t* ToHalfString(const wchar_t* src);

  // Full width. A half-width mark fuses with a kana before it that can take it, in either width or script: ｶﾞ
  // -> ガ, かﾞ -> が; else it becomes the spacing mark: ｱﾞ -> ア゛. `dest` holds the length of `src`, plus 1.
  // The int forms give 0.
  static int ToWideString(wchar_t* dest, const wchar_t* src);
  static int ToWideString(CString& dest, const wchar_t* src);
  static wchar_t* ToWideString(const wchar_t* src);

  // --- Folding ---
  // `dest` holds the length of `src`, plus 1. The int forms give the length of `src`.

  // Hiragana to katakana, the whole block: ゝ -> ヽ, and a spacing mark becomes ・ or ー.
  static int GanaToKana(wchar_t* dest, const wchar_t* src);
  static int GanaToKana(CString& dest, const wchar_t* src);
  static wchar_t* GanaToKana(const wchar_t* src);

  // Voiced (濁音) and semi-voiced kana to plain ones (清音); half-width marks are dropped: ﾊﾞｶﾞ -> ﾊｶ. ゔ and
  // the spacing marks stay. The int forms give the length of `src`, also when the result is shorter.
  static int DakuonToSeion(wchar_t* dest, const wchar_t* src);
  static int DakuonToSeion(CString& dest, const wchar_t* src);
  static wchar_t* DakuonToSeion(const wchar_t* src);

  // Letters of both widths to capitals, and unless `lettersOnly` is nonzero small kana to large ones: ッ ->
  // ツ. ゎ ヮ ヵ ヶ ゕ ゖ stay small.
  static int ToUpperCase(wchar_t* dest, const wchar_t* src, int lettersOnly);
  static int ToUpperCase(CString& dest, const wchar_t* src, int lettersOnly);
  static wchar_t* ToUpperCase(const wchar_t* src, int lettersOnly);

  // --- Keys ---
  // A key is never longer than its text. The buffer forms store the first `capacity` - 1 units of the key,
  // end the buffer at its last place, and give the length of the key or `capacity`, whichever is smaller: a
  // result equal to `capacity` tells that the key was cut. A `capacity` of 0 or less stores nothing and gives
  // 0. With a null `dest` the result is the length of the whole key. The CString forms give the length of the
  // key. A null `src` gives 0 and leaves `dest` alone in every form.

  // The search key: full width, katakana, capitals; small kana stay small and a minus sign a minus. The two
  // names say on which side of a comparison a text stands, and do the same. "ab c" -> "ＡＢ　Ｃ", "ｶﾞｯﾂ" ->
  // "ガッツ".
  static int GetBaseStrForSearch(wchar_t* dest, const wchar_t* src, int capacity);
  static int GetBaseStrForSearch(CString& dest, const wchar_t* src);
  static wchar_t* GetBaseStrForSearch(const wchar_t* src);
  static int GetSearchStrForSearch(wchar_t* dest, const wchar_t* src, int capacity);
  static int GetSearchStrForSearch(CString& dest, const wchar_t* src);
  static wchar_t* GetSearchStrForSearch(const wchar_t* src);

  // The sort key: as above, with large kana for small ones and every dash a long sound mark. "ｶﾞｯﾂ" ->
  // "ガツツ".
  static int GetStringForSort(wchar_t* dest, const wchar_t* src, int capacity);
  static int GetStringForSort(CString& dest, const wchar_t* src);
  static wchar_t* GetStringForSort(const wchar_t* src);

  // --- Comparison ---
  // By unit value, exact; `mode` is one of the STRCOMPARE_ values. The result is 1 when its test holds, else
  // 0. An empty pattern is contained in nothing, and nothing fails to contain it either: modes 1 to 4 give 0.
  // The time grows with the sum of both lengths.

  // A null text or pattern gives 0 in every mode.
  static int StrCompare(const wchar_t* text, const wchar_t* pattern, unsigned char mode);

  // With a nonzero `fold`, both go through ToUpperCase with large kana and then ToWideString first (hiragana
  // stays hiragana), and null counts as empty. With 0 it is the form above.
  static int StrCompare(const wchar_t* text, const wchar_t* pattern, unsigned char mode, int fold);

  // Compares search keys, for type-ahead: where the test fails, it is tried again with the last character of
  // the pattern voiced and then semi-voiced, so か finds ガ and は finds パ. This holds in every mode, the
  // negative ones too. A null text or pattern gives 0.
  static int StrCompareForSearch(const wchar_t* text, const wchar_t* pattern, unsigned char mode);

  // -1, 0 or 1 by unsigned unit values: the library's order of keys. Neither text may be null.
  static int CompareStringW(const wchar_t* a, const wchar_t* b);

  // Whether the text contains every pattern, after folding as above if `fold` is nonzero. 0 for a null or
  // blank text and for no patterns; an empty pattern fails the whole match. The text itself is searched
  // untrimmed.
  static int IsMatch(const wchar_t* text, CStringArray& patterns, int fold);

  // --- Vertical writing ---
  // Full width, with numerals for columns. `dest` holds the length of `src`, plus 1; the int forms give the
  // length of the result.

  // Digits as 〇一二三四五六七八九, dashes as ー: "12-3" -> "一二ー三".
  static int ToColumnarWritingChineseNumerals(wchar_t* dest, const wchar_t* src);
  static wchar_t* ToColumnarWritingChineseNumerals(const wchar_t* src);

  // Full-width digits, dashes as ―: "12-3" -> "１２―３".
  static int ToColumnarWritingWideNumerals(wchar_t* dest, const wchar_t* src);
  static wchar_t* ToColumnarWritingWideNumerals(const wchar_t* src);

  // --- Web text ---

  // UTF-8 in percent encoding: a space becomes "+"; digits, ASCII letters and $ - _ . ! * ' ( ) , stay.
  // Converted in pieces of 100 units, so a surrogate pair on a border comes apart. Null gives an empty text;
  // where the system's conversion is missing or fails, what was gathered so far. Loads a system library on
  // each call.
  static CString EncodeUTF16ToUTF8(const wchar_t* text);

  // The way back, apart from "+", which stays. 1 on success. 0, with `dest` untouched, if the text can't be
  // decoded or comes to more than 1,011 bytes; `dest` holds at most 1,012 units then. Null gives an empty
  // text.
  static int EncodeUTF8ToUTF16(const char* text, wchar_t* dest);

  // --- Versions ---

  // "1.2.3.4" of the four bytes 0x01020304, or of the four halves of 0x00010002 and 0x00030004. The low 32
  // bits count.
  static CString NumberToVersionString(unsigned long version);
  static CString NumberToVersionString(unsigned long high, unsigned long low);

  // The first four numbers in a text, whatever separates them; missing ones are 0. With `low`, parts 1 and 2
  // as the high and low half of the result, 3 and 4 likewise in `low`: what the form above reads. Without,
  // one byte each with the first part lowest: "1.2.3.4" -> 0x04030201. A part keeps the low bits that fit its
  // place. Null or empty gives 0 and leaves `low` alone.
  static unsigned long VersionStringToNumber(const wchar_t* text, unsigned long* low);

  // --- Line breaks as marks ---
  // The mark is "&n" if `ampersand` is nonzero, else a backslash and "n". Only the lines from 0 to `lastLine`
  // are kept; a negative `lastLine` keeps none. Null makes `dest` empty; `text` may be what `dest` holds.

  // CR LF, CR and LF each become a mark.
  static void GetEncodeString(const wchar_t* text, CString& dest, int lastLine, int ampersand);

  // CR and LF go; marks become CR LF.
  static void GetDecodeString(const wchar_t* text, CString& dest, int lastLine, int ampersand);

  // --- White space and lines ---
  // White space is the platform's: U+0009..U+000D, U+0085 and the spaces of Unicode, U+3000 among them.

  // Splits at runs of white space. Leading white space makes an empty first part; trailing makes none. 1, or
  // 0 with no parts for a null or blank text. (Nothing process-wide is changed: no locale is given to any
  // stream.)
  static int SplitSpace(const wchar_t* text, CStringArray& parts);

  // Each CR LF becomes a space; a lone CR or LF stays. Null makes `dest` empty.
  static void ReturnToSpace(const wchar_t* text, CString& dest);

  // Appends a line, with a space and LF before it unless `text` is still empty. With a nonzero `always` the
  // separator comes there too, and also for a null or empty line, which else appends nothing.
  static void AddStringNewLine(CString& text, const wchar_t* line, int always);

  // 1 if the text is null, empty or only white space.
  static int IsSpace(const wchar_t* text);

  // 1 if the text, trimmed, is an integer of 32 bits in the form that ToString gives: not "012", "+5" or
  // "-0".
  static int IsNumber(const wchar_t* text);

  // --- Scalars ---

  // "true" or "false".
  static CString FromBool(int value);
  static CString FromInt(int value);
  static CString FromUint(unsigned int value);

  // "2024/05/31" and "2024/05/31 13:45:00". The date value 0 gives the empty text whatever its status, a null
  // status too; an invalid one gives the text for invalid dates of COleDateTime::Format.
  static CString FromDate(const COleDateTime& date);
  static CString FromDateTime(const COleDateTime& date);

  // "true" is 1 and "false" 0, in any case; anything else as StrToIntW reads it. Null and empty give 0. The
  // unsigned forms give the same 32 bits.
  static int ToInt(const wchar_t* text);
  static unsigned int ToUint(const wchar_t* text);
  static unsigned long ToDword(const wchar_t* text);

  // A date as VarDateFromStr reads it under the user's language. Null and empty text give the valid value 0;
  // text that is no date gives an invalid 0, any other failure an invalid -1.
  static COleDateTime ToDateTime(const wchar_t* text);

  // --- Buffers and characters ---
  // `capacity` counts units with the terminator; 0 writes nothing. A null source counts as empty.

  // Copies what fits and fills the rest of the buffer with terminators. Gives `dest`.
  static wchar_t* CopyString(wchar_t* dest, const wchar_t* src, unsigned int capacity);

  // Appends a number inside `width` units, cutting the text before it if need be, and fills the buffer, which
  // holds `width` + 1 units, with terminators: "ABCDEFGH", 12, 8 -> "ABCDEF12". 1, or 0 with `dest` untouched
  // if the number alone is wider. Of `value` the low 32 bits count.
  static int AttachToStr(wchar_t* dest, long value, long width);

  // Copies `text` without `prefix`, if it begins with that; else all of it, as CopyString does.
  static void RemovePrefixStr(wchar_t* dest, const wchar_t* text, const wchar_t* prefix,
                              unsigned int capacity);

  // Deletes `count` characters from `index`, both clamped to the text. Gives the new length.
  static long Delete(CString& text, long index, long count);

  // The index of the first `c`, or -1; the terminator and a null text have none.
  static int FindChar(const wchar_t* text, wchar_t c);

  // A new text of the one character at `index`; empty if that lies outside the text, null for null.
  static wchar_t* GetChar(const wchar_t* text, int index);

  // The length in units, one operation under two names; 0 for null.
  static int GetStringCount(const wchar_t* text);
  static long GetStringLen(const wchar_t* text);

  // The system's text for an error number, or with 0 for the thread's last error, in the user's language and
  // with its line break; empty if there is none. The low 32 bits count.
  static CString GetLastErrorText(unsigned long error);
};
