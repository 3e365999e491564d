#pragma once

// Names for the bits of the two style words, for the sources of the calendar; what each bit does is told at
// CQorDateUtil and CQorDate. Constant data.

namespace qorgen::calendar {

// The style word of date text.
inline constexpr unsigned kStyleEraYear = 0x1;
inline constexpr unsigned kStyleOpen = 0x4;
inline constexpr unsigned kStyleClose = 0x8;
inline constexpr unsigned kStylePlain = 0x10;  // no delimiters; a bare era letter
inline constexpr unsigned kStylePoint = 0x20;
inline constexpr unsigned kStyleJapanese = 0x40;
inline constexpr unsigned kStyleFirstYear = 0x80;
inline constexpr unsigned kStyleDay = 0x100;
inline constexpr unsigned kStyleMonth = 0x200;
inline constexpr unsigned kStyleYear = 0x400;
inline constexpr unsigned kStyleSilentYear = 0x800;  // counts as a year in use, writes nothing
inline constexpr unsigned kStyleEraName = 0x1000;
inline constexpr unsigned kStyleEraPoint = 0x2000;
inline constexpr unsigned kStyleEraLetter = 0x4000;
inline constexpr unsigned kStyleWeekShort = 0x10000;
inline constexpr unsigned kStyleWeekLong = 0x20000;
inline constexpr unsigned kStyleWeekMask = 0xF0000;
inline constexpr unsigned kStyleBlankPad = 0x100000;

inline constexpr unsigned kStyleWholeDate = kStyleYear | kStyleMonth | kStyleDay;

// The style word of time text.
inline constexpr unsigned kTimeTwelve = 0x1;
inline constexpr unsigned kTimeTwentyFour = 0x2;
inline constexpr unsigned kTimeMinute = 0x4;
inline constexpr unsigned kTimeSecond = 0x8;
inline constexpr unsigned kTimeJapanese = 0x10;

// The style word of the date object.
inline constexpr unsigned kKindMask = 0xF;
inline constexpr unsigned kEmptyAllowed = 0x10;

}  // namespace qorgen::calendar
