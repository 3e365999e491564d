#include <cmath>
#include <cstdint>
#include <iterator>

#include "qorgen/platform/automation.h"
#include "qorgen/platform/common/civil_date.h"
#include "qorgen/platform/common/era_list.h"
#include "qorgen/platform/common/white_space.h"
#include "qorgen/platform/linux/automation/width.h"

using namespace qorgen::platform;

namespace {

enum class Kind : std::uint8_t {
  kEnd,
  kNumber,
  kMark,  // / - . , :
  kYear,  // 年 and so on, the counters behind a number
  kMonth,
  kDay,
  kHour,
  kMinute,
  kSecond,
  kEra,
  kFirstYear,  // 元
  kMonthName,
  kAm,
  kPm,
};

struct Token {
  Kind kind;
  bool spaced;   // white space stands before it
  wchar_t mark;  // of kMark
  int digits;    // of kNumber, with leading zeros
  int value;     // a number, a month of the year, or the year before an era's first
};

struct Sign {
  wchar_t text[3];
  Kind kind;
};

constexpr Sign kSigns[] = {
    {L"午前", Kind::kAm}, {L"午後", Kind::kPm},   {L"元", Kind::kFirstYear},
    {L"年", Kind::kYear}, {L"月", Kind::kMonth},  {L"日", Kind::kDay},
    {L"時", Kind::kHour}, {L"分", Kind::kMinute}, {L"秒", Kind::kSecond},
};

// The units at `text` that name the era: its name, its first character or its square form; 0 for others.
int NamedBy(const EraRow& era, const wchar_t* text) {
  if (*text == era.square) return 1;
  if (*text != era.name[0]) return 0;
  return text[1] == era.name[1] ? 2 : 1;
}

constexpr const char* kMonths[] = {"january", "february", "march",     "april",   "may",      "june",
                                   "july",    "august",   "september", "october", "november", "december"};

bool IsLetter(wchar_t unit) {
  return (unit | 0x20) >= L'a' && (unit | 0x20) <= L'z';
}

// Breaks a text into tokens; no date needs more than a dozen, and a text with more is none.
class Tokens {
 public:
  bool Read(const wchar_t* text) {
    const wchar_t* at = text;
    for (;;) {
      bool spaced = false;
      for (; IsNarrowSpace(NarrowUnit(*at)); ++at) spaced = true;
      Token& token = tokens_[count_];
      token = {Kind::kEnd, spaced, 0, 0, 0};
      if (*at == 0) return true;
      if (count_ + 1 == std::size(tokens_) || !ReadOne(&at, &token)) return false;
      ++count_;
    }
  }

  const Token& operator[](int index) const { return tokens_[index]; }

 private:
  static bool ReadOne(const wchar_t** at, Token* token) {
    const wchar_t unit = NarrowUnit(**at);
    if (IsDigit(unit)) return ReadDigits(at, token);
    if (IsLetter(unit)) return ReadWord(at, token);
    if (unit == L'/' || unit == L'-' || unit == L'.' || unit == L',' || unit == L':') {
      token->kind = Kind::kMark;
      token->mark = unit;
      ++*at;
      return true;
    }
    for (const EraRow& era : kEraList) {
      const int length = NamedBy(era, *at);
      if (length == 0) continue;
      *token = {Kind::kEra, token->spaced, 0, 0, era.year - 1};
      *at += length;
      return true;
    }
    for (const Sign& sign : kSigns) {
      int length = 0;
      while (sign.text[length] != 0 && (*at)[length] == sign.text[length]) ++length;
      if (sign.text[length] != 0) continue;
      token->kind = sign.kind;
      token->value = sign.kind == Kind::kFirstYear ? 1 : 0;
      *at += length;
      return true;
    }
    return false;
  }

  static bool ReadDigits(const wchar_t** at, Token* token) {
    token->kind = Kind::kNumber;
    for (; IsDigit(NarrowUnit(**at)); ++*at) {
      if (++token->digits > 4) return false;
      token->value = token->value * 10 + (NarrowUnit(**at) - L'0');
    }
    return true;
  }

  static bool ReadWord(const wchar_t** at, Token* token) {
    char word[10];
    std::size_t length = 0;
    for (; IsLetter(NarrowUnit(**at)); ++*at) {
      if (length == sizeof word) return false;
      word[length++] = static_cast<char>(NarrowUnit(**at) | 0x20);
    }
    const bool marks_half = length == 1 || (length == 2 && word[1] == 'm');
    if (marks_half && (word[0] == 'a' || word[0] == 'p')) {
      token->kind = word[0] == 'a' ? Kind::kAm : Kind::kPm;
      return true;
    }
    if (length == 1) {
      for (const EraRow& era : kEraList) {
        if (word[0] != (era.letter[0] | 0x20)) continue;
        token->kind = Kind::kEra;
        token->value = era.year - 1;
        return true;
      }
    }
    if (length < 3) return false;
    for (int month = 0; month < 12; ++month) {
      std::size_t same = 0;
      while (same < length && kMonths[month][same] == word[same]) ++same;
      if (same != length) continue;
      token->kind = Kind::kMonthName;
      token->value = month + 1;
      return true;
    }
    return false;
  }

  Token tokens_[24];
  std::size_t count_ = 0;
};

class DateReader {
 public:
  bool Read(const wchar_t* text) {
    if (!tokens_.Read(text)) return false;
    bool date = false;
    bool time = false;
    while (Now().kind != Kind::kEnd) {
      if (!time && BeginsTime()) {
        if (!ReadTime()) return false;
        time = true;
      } else if (!date) {
        if (!ReadDate()) return false;
        date = true;
      } else {
        return false;
      }
    }
    return date || time;
  }

  double Value() const {
    const double fraction = seconds_ / 86400.0;
    return day_ < 0 ? day_ - fraction : day_ + fraction;
  }

 private:
  const Token& Now() const { return tokens_[at_]; }
  // Only behind a token that isn't the end.
  const Token& Next() const { return tokens_[at_ + 1]; }
  bool NowMark(wchar_t mark) const { return Now().kind == Kind::kMark && Now().mark == mark; }

  bool TakeNumber(const Token** number) {
    if (Now().kind != Kind::kNumber) return false;
    *number = &Now();
    ++at_;
    return true;
  }
  bool Take(Kind kind) {
    if (Now().kind != kind) return false;
    ++at_;
    return true;
  }
  bool TakeMark(wchar_t mark) {
    if (!NowMark(mark)) return false;
    ++at_;
    return true;
  }

  bool BeginsTime() const {
    if (Now().kind == Kind::kAm || Now().kind == Kind::kPm) return true;
    if (Now().kind != Kind::kNumber) return false;
    const Token& next = Next();
    return (next.kind == Kind::kMark && next.mark == L':') || next.kind == Kind::kHour ||
           next.kind == Kind::kAm || next.kind == Kind::kPm;
  }

  // A further number of a date that is separated by space alone must not be the beginning of a time.
  bool NumberOfDate() const { return Now().kind == Kind::kNumber && !BeginsTime(); }

  bool ReadTime() {
    Kind half = Kind::kEnd;
    if (Now().kind == Kind::kAm || Now().kind == Kind::kPm) {
      half = Now().kind;
      ++at_;
    }
    const Token* hour = nullptr;
    const Token* number = nullptr;
    int minute = 0;
    int second = 0;
    if (!TakeNumber(&hour)) return false;
    if (TakeMark(L':')) {
      if (!TakeNumber(&number)) return false;
      minute = number->value;
      if (TakeMark(L':')) {
        if (!TakeNumber(&number)) return false;
        second = number->value;
      }
    } else if (Take(Kind::kHour)) {
      if (Now().kind == Kind::kNumber && Next().kind == Kind::kMinute) {
        minute = Now().value;
        at_ += 2;
        if (Now().kind == Kind::kNumber && Next().kind == Kind::kSecond) {
          second = Now().value;
          at_ += 2;
        }
      }
    }
    if (half == Kind::kEnd && (Now().kind == Kind::kAm || Now().kind == Kind::kPm)) {
      half = Now().kind;
      ++at_;
    }
    int hours = hour->value;
    if (half == Kind::kAm && hours > 12) return false;
    if (half == Kind::kAm && hours == 12) hours = 0;
    if (half == Kind::kPm && hours < 12) hours += 12;
    if (hours > 23 || minute > 59 || second > 59) return false;
    seconds_ = hours * 3600 + minute * 60 + second;
    return true;
  }

  bool ReadDate() {
    if (Now().kind == Kind::kEra) return ReadEraDate();
    if (Now().kind == Kind::kMonthName) return ReadMonthNameFirst();
    const Token* first = nullptr;
    if (!TakeNumber(&first)) return false;
    if (Take(Kind::kYear)) return ReadMonthAndDay(YearOf(*first), true);
    if (Now().kind == Kind::kMonth) {
      --at_;
      return ReadMonthAndDay(CurrentYear(), false);
    }
    if (Now().kind == Kind::kMonthName || (NowMark(L'-') && Next().kind == Kind::kMonthName)) {
      TakeMark(L'-');
      return ReadMonthNameSecond(*first);
    }
    return ReadPlainDate(*first);
  }

  // 3月5日, or 3月 alone for its first day when a year stands before it.
  bool ReadMonthAndDay(int year, bool year_given) {
    const Token* month = nullptr;
    const Token* day = nullptr;
    if (!TakeNumber(&month) || !Take(Kind::kMonth)) return false;
    if (NumberOfDate()) {
      return TakeNumber(&day) && Take(Kind::kDay) && Set(year, month->value, day->value);
    }
    return year_given && Set(year, month->value, 1);
  }

  bool ReadEraDate() {
    const int before = Now().value;
    ++at_;
    int year = 0;
    if (Now().kind == Kind::kNumber || Now().kind == Kind::kFirstYear) {
      year = Now().value;
      ++at_;
    }
    if (year < 1) return false;
    if (Take(Kind::kYear)) return ReadMonthAndDay(before + year, true);
    if (Now().kind != Kind::kMark) return false;
    const wchar_t mark = Now().mark;
    const Token* month = nullptr;
    const Token* day = nullptr;
    if (mark != L'/' && mark != L'-' && mark != L'.') return false;
    return TakeMark(mark) && TakeNumber(&month) && TakeMark(mark) && TakeNumber(&day) &&
           Set(before + year, month->value, day->value);
  }

  // March 5, 2024 - March 5 - March 2024
  bool ReadMonthNameFirst() {
    const int month = Now().value;
    ++at_;
    if (!TakeMark(L'.')) TakeMark(L'-');
    const Token* number = nullptr;
    if (!TakeNumber(&number)) return false;
    if (number->digits > 2 || number->value > 31) return Set(YearOf(*number), month, 1);
    if (!TakeMark(L',')) TakeMark(L'-');
    return Set(ReadYearBehind(), month, number->value);
  }

  // 5 March 2024 - 5-Mar-24 - 5 March - 2024 March 5
  bool ReadMonthNameSecond(const Token& first) {
    const int month = Now().value;
    ++at_;
    if (!TakeMark(L'-')) TakeMark(L',');
    if (first.digits <= 2 && first.value <= 31) return Set(ReadYearBehind(), month, first.value);
    const Token* day = nullptr;
    if (!NumberOfDate()) return Set(YearOf(first), month, 1);
    return TakeNumber(&day) && Set(YearOf(first), month, day->value);
  }

  int ReadYearBehind() {
    const Token* year = nullptr;
    return NumberOfDate() && TakeNumber(&year) ? YearOf(*year) : CurrentYear();
  }

  // Two or three numbers between equal separators, the first of them taken.
  bool ReadPlainDate(const Token& a) {
    wchar_t mark = 0;
    if (Now().kind == Kind::kMark) {
      mark = Now().mark;
      if (mark != L'/' && mark != L'-' && mark != L'.') return false;
      ++at_;
    } else if (!Now().spaced) {
      return false;
    }
    const Token* second = nullptr;
    if (!NumberOfDate() || !TakeNumber(&second)) return false;
    const Token& b = *second;
    const Token* third = nullptr;
    if (mark != 0 ? TakeMark(mark) : NumberOfDate()) {
      if (!NumberOfDate() || !TakeNumber(&third)) return false;
      return SetThree(a, b, *third);
    }
    return mark != L'.' && SetTwo(a, b);
  }

  bool SetThree(const Token& a, const Token& b, const Token& c) {
    const bool year_first = a.digits > 2 || a.value > 31;
    const bool year_last = !year_first && (c.digits > 2 || c.value > 31);
    if (!year_last && b.value <= 12) return Set(YearOf(a), b.value, c.value);
    if (year_first) return Set(YearOf(a), c.value, b.value);
    if (a.value <= 12) return Set(YearOf(c), a.value, b.value);
    return Set(YearOf(c), b.value, a.value);
  }

  bool SetTwo(const Token& a, const Token& b) {
    if (a.digits > 2) return Set(YearOf(a), b.value, 1);
    if (b.digits > 2) return Set(YearOf(b), a.value, 1);
    if (a.value <= 12) return Set(CurrentYear(), a.value, b.value);
    return Set(CurrentYear(), b.value, a.value);
  }

  static int YearOf(const Token& number) {
    if (number.digits > 2) return number.value;
    return number.value + (number.value < 30 ? 2000 : 1900);
  }

  static int CurrentYear() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return now.wYear;
  }

  bool Set(int year, int month, int day) {
    if (!HasDayNumber(year, month, day)) return false;
    day_ = DayNumber(year, month, day);
    return true;
  }

  Tokens tokens_;
  int at_ = 0;
  int day_ = 0;
  int seconds_ = 0;
};

}  // namespace

HRESULT VarDateFromStr(const OLECHAR* text, LCID, ULONG flags, DATE* date) {
  if (date == nullptr) return E_INVALIDARG;
  DateReader reader;
  if (text == nullptr || !reader.Read(text)) return DISP_E_TYPEMISMATCH;
  const double value = reader.Value();
  const double day = std::trunc(value);
  if ((flags & VAR_TIMEVALUEONLY) != 0) {
    *date = std::fabs(value - day);
  } else {
    *date = (flags & VAR_DATEVALUEONLY) != 0 ? day + 0.0 : value;
  }
  return S_OK;
}
