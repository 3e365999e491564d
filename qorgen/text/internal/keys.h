#pragma once

// The pipelines of search keys, sort keys and folded comparison, each in one pass. Shared by the sources of
// this folder; pure functions.

#include "qorgen/text/internal/convert.h"

namespace qorgen::text {

// Full width, katakana, capitals, signs. Small kana stay small.
std::size_t SearchKey(wchar_t* out, View text);
// Full width, katakana, capitals and large kana, dashes as long sound marks.
std::size_t SortKey(wchar_t* out, View text);
// Capitals and large kana first, then full width; hiragana stays.
std::size_t CompareFold(wchar_t* out, View text);

}  // namespace qorgen::text
