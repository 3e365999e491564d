#include "qorgen/afx/string.h"

#include <gtest/gtest.h>

#include "tests/support/text.h"

static_assert(sizeof(CString) == sizeof(void*));

TEST(CString, CopiesShareTheTextUntilOneChanges) {
  CString first(L"帳簿");
  CString second(first);
  EXPECT_EQ(first.GetString(), second.GetString());
  second.AppendChar(L'A');
  EXPECT_TEXT(L"帳簿", first);
  EXPECT_TEXT(L"帳簿A", second);
}

TEST(CString, AssignmentReusesTheBlockOfItsOnlyOwner) {
  CString text(L"a text of some length");
  const wchar_t* block = text.GetString();
  for (const wchar_t* value : {L"short", L"", L"another text", L"a text of some length"}) {
    text = value;
    EXPECT_TEXT(value, text);
    EXPECT_EQ(block, text.GetString());
  }
}
