#pragma once

// Text of the library in assertions: GoogleTest compares and prints UTF-8, never wide text (its own wide
// printing assumes the C library's wide functions).

#include <string>

#include "qorgen/afx/string.h"

namespace qorgen::tests {

// UTF-8 of a wide text; null gives "(null)"; a lone surrogate is shown as "<D800>".
std::string Utf8(const wchar_t* text);
std::string Utf8(const CString& text);

// The same, taking over a block that the library handed out and giving it back through QorFree.
std::string TakeUtf8(wchar_t* text);

}  // namespace qorgen::tests

// EXPECT_TEXT(L"△1,234", result): compares two wide texts (or CStrings) and shows both as UTF-8.
#define EXPECT_TEXT(expected, actual) EXPECT_EQ(qorgen::tests::Utf8(expected), qorgen::tests::Utf8(actual))
#define ASSERT_TEXT(expected, actual) ASSERT_EQ(qorgen::tests::Utf8(expected), qorgen::tests::Utf8(actual))
