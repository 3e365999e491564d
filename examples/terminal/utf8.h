#pragma once

// Text for the terminal: UTF-8 and the columns it takes there.

#include <string>

#include "qorgen/qorgen.h"

// UTF-8 of a wide text; a lone surrogate becomes U+FFFD. Null gives the empty text.
std::string ToUtf8(const wchar_t* text);
// The same with blanks for control characters, which would move the cursor of a terminal.
std::string WithoutControls(const wchar_t* text);

// The wide text of a UTF-8 one, such as a path from the command line; malformed bytes become U+FFFD.
CString FromUtf8(const std::string& text);

// The columns that a UTF-8 text takes on a terminal with a fixed-pitch font: 2 for full-width characters, 0
// for combining marks, else 1. Characters of ambiguous width (△, ○) count as 1, as terminals show them by
// default.
int DisplayWidth(const std::string& text);

// The text padded with blanks to `width` columns, cut with "…" when it is wider.
std::string FitLeft(const std::string& text, int width);
std::string FitRight(const std::string& text, int width);
