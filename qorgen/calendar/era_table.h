#pragma once

// The bounds of the calendar and the two tables of Japanese eras (元号). Constant data.
//
// First days: Meiji by the calendar of the proclamation (era text) or from the year's first day (date
// object), Taisho, Showa, Heisei and Reiwa by their proclamations. The two Meiji rows differ on purpose.

#include <iterator>

#include "qorgen/calendar/date_record.h"

namespace qorgen::calendar {

inline constexpr QORDATE kLowestYear(1, 1, 100);      // lowest year of any check
inline constexpr QORDATE kBaseDate(30, 12, 1899);     // base of the day numbers
inline constexpr QORDATE kDefaultLowest(8, 9, 1868);  // default bounds of the calendar
inline constexpr QORDATE kDefaultHighest(31, 12, 2087);

// The eras of the date object (CQorDate), oldest first.
struct Era {
  QORDATE first;
  const wchar_t* name;
  const wchar_t* letter;
};

inline constexpr Era kEras[] = {
    {QORDATE(1, 1, 1868), L"明治", L"M"},    //
    {QORDATE(30, 7, 1912), L"大正", L"T"},   //
    {QORDATE(25, 12, 1926), L"昭和", L"S"},  //
    {QORDATE(8, 1, 1989), L"平成", L"H"},    //
    {QORDATE(1, 5, 2019), L"令和", L"R"},
};
inline constexpr int kEraCount = static_cast<int>(std::size(kEras));
inline constexpr int kReiwa = 4;
// What the era year stores as the index of a date before all eras.
inline constexpr int kNoEra = kEraCount;

// The rows of era text. The first and last row are guards: before Meiji, and the last year that a record can
// hold.
struct EraText {
  QORDATE first;
  const wchar_t* name;
  const wchar_t* dotted;
  const wchar_t* letter;
};

inline constexpr EraText kEraTexts[] = {
    {QORDATE(), L"UnFl", L"U.", L"U"},              //
    {QORDATE(8, 9, 1868), L"明治", L"M.", L"M"},    //
    {QORDATE(30, 7, 1912), L"大正", L"T.", L"T"},   //
    {QORDATE(25, 12, 1926), L"昭和", L"S.", L"S"},  //
    {QORDATE(8, 1, 1989), L"平成", L"H.", L"H"},    //
    {QORDATE(1, 5, 2019), L"令和", L"R.", L"R"},    //
    {QORDATE(127, 127, 32767), L"OvFl", L"O.", L"O"},
};
inline constexpr int kEraTextCount = static_cast<int>(std::size(kEraTexts));
inline constexpr int kNoRow = -1;
inline constexpr int kHeiseiRow = 4;
inline constexpr int kOverflowRow = kEraTextCount - 1;

// The index of the era of a date, -1 before all of them.
constexpr int FindEra(const QORDATE& date) {
  int era = kEraCount - 1;
  while (era >= 0 && kEras[era].first > date) --era;
  return era;
}

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

constexpr bool Ascending() {
  for (int era = 1; era < kEraCount; ++era) {
    if (kEras[era].first <= kEras[era - 1].first) return false;
  }
  for (int row = 1; row < kEraTextCount; ++row) {
    if (kEraTexts[row].first <= kEraTexts[row - 1].first) return false;
  }
  return true;
}

// The text table is the era table between two guards, apart from the first day of Meiji.
constexpr bool SameEras() {
  for (int era = 0; era < kEraCount; ++era) {
    const EraText& row = kEraTexts[era + 1];
    if (era != 0 && row.first != kEras[era].first) return false;
    if (row.letter[0] != kEras[era].letter[0] || row.dotted[0] != row.letter[0] || row.dotted[1] != L'.')
      return false;
    if (row.name[0] != kEras[era].name[0] || row.name[1] != kEras[era].name[1] || row.name[2] != 0)
      return false;
    for (int other = 0; other < kEraTextCount; ++other) {
      if (other != era + 1 && kEraTexts[other].letter[0] == row.letter[0]) return false;
    }
  }
  return true;
}

static_assert(kEraCount == 5 && kEraTextCount == kEraCount + 2);
static_assert(Ascending() && SameEras());
static_assert(FindEra(QORDATE(7, 1, 1989)) == 2 && FindEra(QORDATE(31, 12, 1867)) == -1);
static_assert(FindEraRow(QORDATE()) == 0 && FindEraRow(QORDATE(7, 9, 1868)) == 0);

}  // namespace era_table_checks

}  // namespace qorgen::calendar
