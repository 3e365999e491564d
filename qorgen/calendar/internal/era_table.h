#pragma once

// The bounds of the calendar and its rows of Japanese eras (元号), made from the one list of eras. Constant data.

#include "qorgen/calendar/date_record.h"
#include "qorgen/platform/common/era_list.h"

namespace qorgen::calendar {

using qorgen::platform::kEraList;

constexpr QORDATE FirstDay(const qorgen::platform::EraRow& era) {
  return QORDATE(era.day, era.month, era.year);
}

inline constexpr QORDATE kLowestYear(1, 1, 100);                  // lowest year of any check
inline constexpr QORDATE kBaseDate(30, 12, 1899);                 // base of the day numbers
inline constexpr QORDATE kDefaultLowest = FirstDay(kEraList[0]);  // default bounds of the calendar
inline constexpr QORDATE kDefaultHighest(31, 12, 2087);

inline constexpr int kEraCount = qorgen::platform::kEraListCount;
inline constexpr int kReiwa = 4;
// What the era year stores as the index of a date before all eras.
inline constexpr int kNoEra = kEraCount;

// The index in kEraList of the era of a date as the date object (CQorDate) counts them, -1 before all of them.
// There Meiji begins with its year, on purpose.
constexpr int FindEra(const QORDATE& date) {
  int era = kEraCount - 1;
  while (era > 0 && FirstDay(kEraList[era]) > date) --era;
  return era == 0 && QORDATE(1, 1, kEraList[0].year) > date ? -1 : era;
}

// The rows of era text: the eras between two guards, which stand for the time before Meiji and for the last
// year that a record can hold.
struct EraText {
  QORDATE first;
  const wchar_t* name;
  const wchar_t* dotted;
  const wchar_t* letter;
};

inline constexpr int kEraTextCount = kEraCount + 2;
inline constexpr int kNoRow = -1;
inline constexpr int kHeiseiRow = 4;
inline constexpr int kOverflowRow = kEraTextCount - 1;

struct EraTexts {
  EraText rows[kEraTextCount];

  constexpr EraTexts() {
    rows[0] = {QORDATE(), L"UnFl", L"U.", L"U"};
    for (int era = 0; era < kEraCount; ++era) {
      const auto& row = kEraList[era];
      rows[era + 1] = {FirstDay(row), row.name, row.dotted, row.letter};
    }
    rows[kOverflowRow] = {QORDATE(127, 127, 32767), L"OvFl", L"O.", L"O"};
  }
  constexpr const EraText& operator[](int row) const { return rows[row]; }
};
inline constexpr EraTexts kEraTexts;

// The row of era text of a date: the last whose first day is not after it, and the upper guard for the whole
// of its year. kNoRow for a date with a negative integer form.
constexpr int FindEraRow(const QORDATE& date) {
  if (date.ToLongDate() < 0) return kNoRow;
  if (date.year == kEraTexts[kOverflowRow].first.year) return kOverflowRow;
  int row = kOverflowRow - 1;
  while (kEraTexts[row].first > date) --row;
  return row;
}

namespace era_table_checks {

// Dates ascend, and a letter names one row.
constexpr bool InOrder() {
  for (int row = 1; row < kEraTextCount; ++row) {
    if (kEraTexts[row].first <= kEraTexts[row - 1].first) return false;
    if (kEraTexts[row].dotted[0] != kEraTexts[row].letter[0]) return false;
    for (int other = 0; other < row; ++other) {
      if (kEraTexts[other].letter[0] == kEraTexts[row].letter[0]) return false;
    }
  }
  return true;
}

static_assert(InOrder());
static_assert(kEraList[kReiwa].year == 2019 && kEraTexts[kHeiseiRow].first.year == 1989);
static_assert(FindEra(QORDATE(7, 1, 1989)) == 2 && FindEra(QORDATE(31, 12, 1867)) == -1);
static_assert(FindEra(QORDATE(1, 1, 1868)) == 0 && FindEraRow(QORDATE(7, 9, 1868)) == 0);
static_assert(FindEraRow(QORDATE()) == 0);

}  // namespace era_table_checks

}  // namespace qorgen::calendar
