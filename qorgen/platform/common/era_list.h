#pragma once

// The Japanese eras (元号) since Meiji, the one list behind the calendar's tables and the reader of date texts.
// Constant data.
//
// First days: Meiji (明治) by the calendar of the proclamation; Taisho (大正), Showa (昭和), Heisei (平成) and
// Reiwa (令和) by their proclamations, the last by government ordinance 143 of 2019. A further era is a further
// row.

#include <iterator>

namespace qorgen::platform {

struct EraRow {
  short year;  // the first day
  char month;
  char day;
  const wchar_t* name;    // two characters; the first of them is a short name as well
  const wchar_t* letter;  // alone, and with its point
  const wchar_t* dotted;
  wchar_t square;  // the name as one character
};

inline constexpr EraRow kEraList[] = {
    {1868, 9, 8, L"明治", L"M", L"M.", L'㍾'},    //
    {1912, 7, 30, L"大正", L"T", L"T.", L'㍽'},   //
    {1926, 12, 25, L"昭和", L"S", L"S.", L'㍼'},  //
    {1989, 1, 8, L"平成", L"H", L"H.", L'㍻'},    //
    {2019, 5, 1, L"令和", L"R", L"R.", L'㋿'},
};
inline constexpr int kEraListCount = static_cast<int>(std::size(kEraList));

}  // namespace qorgen::platform
