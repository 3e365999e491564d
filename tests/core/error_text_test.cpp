#include "qorgen/core/error_text.h"

#include <gtest/gtest.h>

#include "qorgen/afx/string_resource.h"
#include "qorgen/platform/error.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

using qorgen::tests::Utf8;

constexpr unsigned long kUnknown = 0x2ABCDEF0;  // no system has a text for it

bool StartsWith(const CString& text, const wchar_t* start) {
  return text.Left(CString::StringLength(start)) == start;
}

bool EndsWith(const CString& text, const wchar_t* end) {
  return text.Right(CString::StringLength(end)) == end;
}

CString SystemText(unsigned long error) {
  return CGenUtil::GetLastErrorMessage(error, nullptr, 0);
}

}  // namespace

TEST(ErrorText, SystemTextsKeepTheirLineEnd) {
  for (const unsigned long error : {2ul, 3ul, 5ul, 32ul, 87ul, 112ul, 0x80004005ul, 0x80070057ul}) {
    const CString text = SystemText(error);
    EXPECT_TRUE(EndsWith(text, L"\r\n")) << error << ": " << Utf8(text);
    EXPECT_FALSE(StartsWith(text, L"***")) << error;
    EXPECT_GT(text.GetLength(), 4);
  }
  EXPECT_NE(Utf8(SystemText(2)), Utf8(SystemText(3)));
}

TEST(ErrorText, ZeroStandsForTheLastError) {
  SetLastError(5);
  EXPECT_TEXT(SystemText(5), SystemText(0));
  SetLastError(2);
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(nullptr, 2, nullptr),
              CGenUtil::FormatLastErrorMessage(nullptr, 0, nullptr));
  SetLastError(2);
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(L"見出し", 2, nullptr),
              CGenUtil::FormatLastErrorMessage(L"見出し", 0, nullptr));
}

TEST(ErrorText, OnlyTheLow32BitsCount) {
  // The way a negative HRESULT arrives where the language's long is wider.
  const unsigned long extended = static_cast<unsigned long>(static_cast<long>(E_FAIL));
  EXPECT_TEXT(SystemText(0x80004005ul), SystemText(extended));
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(nullptr, 0x80004005ul, nullptr),
              CGenUtil::FormatLastErrorMessage(nullptr, extended, nullptr));
}

TEST(ErrorText, UnknownNumbersTellWhyThereIsNoText) {
  CString start;
  start.Format(L"*** FormatMessage(%d) failed(", static_cast<int>(kUnknown));
  const CString text = SystemText(kUnknown);
  EXPECT_TRUE(StartsWith(text, start)) << Utf8(text);
  EXPECT_TRUE(text.Find(L")! ***\r\n") > 0) << Utf8(text);
  EXPECT_TRUE(EndsWith(text, L"\r\n")) << "the text of the reason is missing: " << Utf8(text);
  EXPECT_TRUE(StartsWith(SystemText(0xEABCDEF0ul), L"*** FormatMessage(-356720912) failed("))
      << "a signed number";
  // Without the second look-up the answer has the same shape.
  EXPECT_TRUE(StartsWith(CGenUtil::GetLastErrorMessage(kUnknown, nullptr, 1), start));
}

TEST(ErrorText, TheWebTransportHasTextsOfItsOwn) {
  constexpr unsigned long kCannotConnect = 12029;
  const CString text = SystemText(kCannotConnect);
  EXPECT_FALSE(text.IsEmpty());
  // Wine's module has no table.
  EXPECT_TRUE(qorgen::tests::HoldsExceptOnWine(!StartsWith(text, L"***"))) << Utf8(text);
  EXPECT_TEXT(text, CGenUtil::GetLastErrorMessage(kCannotConnect, L"winhttp.dll", 1));
  EXPECT_TRUE(StartsWith(CGenUtil::GetLastErrorMessage(kCannotConnect, nullptr, 1), L"***"));
}

TEST(ErrorText, AModuleThatCannotBeLoadedOnlyNarrowsTheSearch) {
  EXPECT_TEXT(SystemText(5), CGenUtil::GetLastErrorMessage(5, L"no such module.dll", 0));
  EXPECT_TEXT(SystemText(5), CGenUtil::GetLastErrorMessage(5, L"", 0));
  EXPECT_TEXT(SystemText(5), CGenUtil::GetLastErrorMessage(5, L"winhttp.dll", 0));
}

TEST(ErrorText, TheReportHasTwoLines) {
  struct Row {
    const wchar_t* header;
    unsigned long error;
    const wchar_t* footer;
    const wchar_t* before;
    const wchar_t* after;
  };
  for (const Row& row :
       {Row{nullptr, 2, nullptr, L"［エラー番号］2\r\n［エラー内容］", L""},
        Row{L"", 2, L"", L"［エラー番号］2\r\n［エラー内容］", L""},
        Row{L"A", 0x80004005, L"B", L"A\r\n［エラー番号］80004005\r\n［エラー内容］", L"\r\nB"},
        Row{L"A", 0x8007000E, nullptr, L"A\r\n［エラー番号］8007000e\r\n［エラー内容］", L""},
        Row{nullptr, 112, L"保存できません。", L"［エラー番号］112\r\n［エラー内容］",
            L"\r\n保存できません。"}}) {
    EXPECT_TEXT(row.before + SystemText(row.error) + row.after,
                CGenUtil::FormatLastErrorMessage(row.header, row.error, row.footer));
  }
}

TEST(ErrorText, HeaderAndFooterMayBeResources) {
  static const QorStringResource kTable[] = {{7101, L"読込", L"reading"}, {7102, L"中止", L"stopped"}};
  QorAddStringResources(kTable, 2);
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(QorFindStringResource(7101), 5, QorFindStringResource(7102)),
              CGenUtil::FormatLastErrorMessageRes(7101, 5, 7102));
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(nullptr, 5, nullptr),
              CGenUtil::FormatLastErrorMessageRes(0, 5, 0));
  SetLastError(5);
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(nullptr, 5, nullptr),
              CGenUtil::FormatLastErrorMessageRes(0, 0, 7199));
  QorRemoveStringResources(kTable);
}

TEST(AssocQueryExecutable, TakesTheExtensionWithOrWithoutDot) {
  CString untouched(L"untouched");
  EXPECT_EQ(0, CGenUtil::AssocQueryExecutable(L"", &untouched));
  EXPECT_EQ(0, CGenUtil::AssocQueryExecutable(nullptr, &untouched));
  EXPECT_TEXT(L"untouched", untouched);
  EXPECT_EQ(0, CGenUtil::AssocQueryExecutable(L"no-such-type-qorgen", &untouched));
  CString with_dot;
  CString without;
  const int found = CGenUtil::AssocQueryExecutable(L".txt", &with_dot);
  EXPECT_EQ(found, CGenUtil::AssocQueryExecutable(L"txt", &without));
  EXPECT_EQ(found, CGenUtil::AssocQueryExecutable(L"txt", nullptr));
  if (found != 0) {
    EXPECT_TEXT(with_dot, without);
    EXPECT_FALSE(with_dot.IsEmpty());
  }
}

TEST(CGenUtil, IsCopiedWithoutEffect) {
  CGenUtil one;
  CGenUtil other(one);
  EXPECT_EQ(&one, &(one = other));
  EXPECT_EQ(&one, &(one = CGenUtil()));
}
