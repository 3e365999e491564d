#pragma once

// The style words of date and time text, see CQorDateUtil. Constant data.

// Which parts of a date are in use.
inline constexpr unsigned int DATEFORMAT_DAY = 0x100;
inline constexpr unsigned int DATEFORMAT_MONTH = 0x200;
inline constexpr unsigned int DATEFORMAT_YEAR = 0x400;
inline constexpr unsigned int DATEFORMAT_HIDDENYEAR = 0x800;  // counts as a year in use and writes nothing
inline constexpr unsigned int DATEFORMAT_DATE = DATEFORMAT_YEAR | DATEFORMAT_MONTH | DATEFORMAT_DAY;

// The year as an era year (和暦), and its title, of which there is none without one of the last three.
inline constexpr unsigned int DATEFORMAT_ERAYEAR = 0x1;
inline constexpr unsigned int DATEFORMAT_GANNEN = 0x80;       // the first era year is 元
inline constexpr unsigned int DATEFORMAT_ERANAME = 0x1000;    // 平成
inline constexpr unsigned int DATEFORMAT_ERAPOINT = 0x2000;   // H. (wins); H under DATEFORMAT_NODELIMITER
inline constexpr unsigned int DATEFORMAT_ERALETTER = 0x4000;  // H (wins over the name)

// Delimiters, "/" between the parts without any of these; the first one that is given decides.
inline constexpr unsigned int DATEFORMAT_NODELIMITER = 0x10;
inline constexpr unsigned int DATEFORMAT_KANJI = 0x40;  // 年 月 日, and 元 as CQorDateUtil::GannenUse() says
inline constexpr unsigned int DATEFORMAT_POINT = 0x20;  // "."

// What stands around the date, and padding.
inline constexpr unsigned int DATEFORMAT_ZEROFILL = 0x2;         // no effect on the finished text
inline constexpr unsigned int DATEFORMAT_OPEN = 0x4;             // "(" in front
inline constexpr unsigned int DATEFORMAT_CLOSE = 0x8;            // ")" behind
inline constexpr unsigned int DATEFORMAT_WEEKKANJI = 0x10000;    // day of the week behind, "(火)" (wins)
inline constexpr unsigned int DATEFORMAT_WEEKENGLISH = 0x20000;  // "(TUE)"
inline constexpr unsigned int DATEFORMAT_WEEKMASK = 0xF0000;     // bits that ask for a day of the week
inline constexpr unsigned int DATEFORMAT_BLANKPAD = 0x100000;    // blanks instead of leading zeros

// The time of day. Hours keep a leading blank, minutes and seconds are zero-padded.
inline constexpr unsigned short TIMEFORMAT_HOUR12 = 0x1;  // with a prefix, 午前 or AM (wins)
inline constexpr unsigned short TIMEFORMAT_HOUR24 = 0x2;
inline constexpr unsigned short TIMEFORMAT_MINUTE = 0x4;
inline constexpr unsigned short TIMEFORMAT_SECOND = 0x8;
inline constexpr unsigned short TIMEFORMAT_KANJI = 0x10;  // 時 分 秒 and the prefix in Japanese
