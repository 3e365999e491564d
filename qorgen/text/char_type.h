#pragma once

// The classes of characters and the modes of text comparison that CQorStringUtil speaks in. Constants only.

// CQorStringUtil::GetCharType gives exactly one of these, or 0 for a character of no class: the half-width
// space, control characters, U+007F, U+00A0..U+1FFF, U+9FA6..U+FF00, U+FF5F, U+FF60 and U+FFA0 upward. Each
// is a bit of its own, so a set of classes is tested with a mask.
inline constexpr unsigned int CHARTYPE_HALFALPHA = 0x001;   // A-Z, a-z
inline constexpr unsigned int CHARTYPE_HALFDIGIT = 0x002;   // 0-9
inline constexpr unsigned int CHARTYPE_HALFSYMBOL = 0x004;  // the rest of U+0021..U+007E
inline constexpr unsigned int CHARTYPE_HALFKANA =
    0x008;  // 半角カナ: U+FF61..U+FF9F, its marks and punctuation too
inline constexpr unsigned int CHARTYPE_WIDEALPHA = 0x010;   // 全角: U+FF21..U+FF3A, U+FF41..U+FF5A
inline constexpr unsigned int CHARTYPE_WIDEDIGIT = 0x020;   // U+FF10..U+FF19
inline constexpr unsigned int CHARTYPE_WIDESYMBOL = 0x040;  // the rest of U+FF01..U+FF5E
inline constexpr unsigned int CHARTYPE_KATAKANA =
    0x080;  // U+30A1..U+30FE, the dot and the long sound mark too
inline constexpr unsigned int CHARTYPE_HIRAGANA = 0x100;   // U+3041..U+309E, the spacing voicing marks too
inline constexpr unsigned int CHARTYPE_WIDEOTHER = 0x200;  // kanji and the rest of U+2000..U+9FA5

// The modes of CQorStringUtil::StrCompare. Any value above 5 acts as STRCOMPARE_EQUAL.
inline constexpr unsigned char STRCOMPARE_EQUAL = 0;        // the two texts are the same
inline constexpr unsigned char STRCOMPARE_CONTAINS = 1;     // the first contains the second
inline constexpr unsigned char STRCOMPARE_STARTSWITH = 2;   // the first starts with the second
inline constexpr unsigned char STRCOMPARE_ENDSWITH = 3;     // the first ends with the second
inline constexpr unsigned char STRCOMPARE_NOTCONTAINS = 4;  // the first does not contain the second
inline constexpr unsigned char STRCOMPARE_NOTEQUAL = 5;     // the two texts differ
