
#include "qorgen/afx/exception.h"
#include "qorgen/afx/string.h"
#include "qorgen/platform/codepage.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

TEST(CStringFormat, FollowsTheWideRules) {
  const CString name(L"売掛金");
  const wchar_t* const pointer = L"現金";
  CString text;
  text.Format(L"%s|%s|%ls|%S|%hs|%c|%lc", name, pointer, L"預金", "abc", "def", L'円', L'銭');
  EXPECT_TEXT(L"売掛金|現金|預金|abc|def|円|銭", text);
  text.Format(L"%d|%+5d|%-5d|%05d|%u|%x|%X|%I64d|%lld", -1, 2, 3, 4, 4000000000u, 0xABu, 0xCDu, 1LL << 40,
              -(1LL << 40));
  EXPECT_TEXT(L"-1|   +2|3    |00004|4000000000|ab|CD|1099511627776|-1099511627776", text);
  text.Format(L"%.2f|%8.3f|%e|%g|%*d|%.*s|%%", 1.005, -2.5, 12345.678, 0.0001, 6, 42, 2, L"abcdef");
  text.Replace(L"e+004", L"e+04");  // the older of the platform's runtimes write three digits
  EXPECT_TEXT(L"1.00|  -2.500|1.234568e+04|0.0001|    42|ab|%", text);
}

TEST(CStringFormat, TakesItsOwnTextAsArgument) {
  CString text(L"12");
  text.Format(L"%s-%s", text, text);
  EXPECT_TEXT(L"12-12", text);
  text.AppendFormat(L"/%s", text.GetString());
  text.Preallocate(100);
  text.AppendFormat(L"(%s)", text.GetString() + 9);
  EXPECT_TEXT(L"12-12/12-12(12)", text);
  text = L"%s!";
  text.Format(text, text);
  EXPECT_TEXT(L"%s!!", text);
}

TEST(CStringFormat, LengthIsOnlyBoundByMemory) {
  const CString piece(L'あ', 100000);
  CString text(L"<");
  const CString copy(text);
  text.AppendFormat(L"%s%s>", piece, piece);
  EXPECT_EQ(200002, text.GetLength());
  EXPECT_EQ(L'>', text[200001]);
  EXPECT_TEXT(L"<", copy);
}

TEST(CStringFormat, RefusesANullFormatAndKeepsTheText) {
  CString text(L"kept");
  const wchar_t* const none = nullptr;
  EXPECT_THROWS_POINTER(text.Format(none), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.AppendFormat(none, 1), CInvalidArgException);
  EXPECT_TEXT(L"kept", text);
}

TEST(CStringNarrow, ReadsTheAnsiCodePage) {
  EXPECT_TEXT(L"仕訳帳", CString("\x8E\x64\x96\xF3\x92\xA0"));
  EXPECT_TEXT(L"仕", CString("\x8E\x64\x96\xF3", 2));
  CString text;
  text = "ABC";
  text += "\xB1";
  text += 'x';
  EXPECT_TEXT(L"ABCｱx", text);
  EXPECT_TEXT(L"-ABCｱx-", "-" + text + "-");
  EXPECT_TEXT(L"-ABCｱx!", '-' + text + '!');
  EXPECT_TEXT(L"zzz", CString('z', 3));
  EXPECT_TRUE(text == "ABC\xB1x");
  text = static_cast<const char*>(nullptr);
  EXPECT_TRUE(text.IsEmpty());
}
