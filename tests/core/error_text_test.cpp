#include "qorgen/core/error_text.h"

#include "qorgen/afx/string_resource.h"
#include "qorgen/platform/error.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

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
  for (const unsigned long error : {2ul, 112ul, 0x80004005ul}) {
    const CString text = SystemText(error);
    EXPECT_TRUE(EndsWith(text, L"\r\n") && !StartsWith(text, L"***")) << error << ": " << Utf8(text);
    EXPECT_GT(text.GetLength(), 4);
  }
  EXPECT_NE(Utf8(SystemText(2)), Utf8(SystemText(3)));
}

TEST(ErrorText, ZeroStandsForTheLastError) {
  // High bits don't count: a negative HRESULT arrives extended where the language's long is wider.
  const auto extended = static_cast<unsigned long>(static_cast<long>(E_FAIL));
  for (const auto& [last, asked, meant] : {std::tuple(5u, 0ull, 5ul),
                                           {2u, 0x100000000ull, 2ul},
                                           {2u, 5ull, 5ul},
                                           {2u, extended + 0ull, 0x80004005ul}}) {
    const auto number = static_cast<unsigned long>(asked);
    const CString text = SystemText(meant);
    SetLastError(last);
    EXPECT_TEXT(text, SystemText(number));
    for (const wchar_t* header : {static_cast<const wchar_t*>(nullptr), L"見出し"}) {
      const CString expected = CGenUtil::FormatLastErrorMessage(header, meant, nullptr);
      SetLastError(last);
      EXPECT_TEXT(expected, CGenUtil::FormatLastErrorMessage(header, number, nullptr));
    }
  }
}

TEST(ErrorText, UnknownNumbersTellWhyThereIsNoText) {
  constexpr int kUnasked = 1;  // the web transport isn't
  for (const auto& [error, level, start] :
       {std::tuple(0x2ABCDEF0ul, 0, L"*** FormatMessage(717020912) failed("),
        {0xEABCDEF0ul, 0, L"*** FormatMessage(-356720912) failed("},
        {0x2ABCDEF0ul, kUnasked, L"*** FormatMessage(717020912) failed("}}) {
    const CString text = CGenUtil::GetLastErrorMessage(error, nullptr, level);
    EXPECT_TRUE(StartsWith(text, start) && text.Find(L")! ***\r\n") > 0) << Utf8(text);
    EXPECT_TRUE(EndsWith(text, L"\r\n")) << "the text of the reason is missing: " << Utf8(text);
  }
}

TEST(ErrorText, ModulesAddTexts) {
  constexpr unsigned long kCannotConnect = 12029;
  const CString text = SystemText(kCannotConnect);
  // Wine's module has no table.
  EXPECT_TRUE(HoldsExceptOnWine(!StartsWith(text, L"***"))) << Utf8(text);
  EXPECT_TEXT(text, CGenUtil::GetLastErrorMessage(kCannotConnect, L"winhttp.dll", 1));
  EXPECT_TRUE(StartsWith(CGenUtil::GetLastErrorMessage(kCannotConnect, nullptr, 1), L"***"));
  // A module that can't be loaded only narrows the search.
  for (const wchar_t* module : {L"no such module.dll", L"", L"winhttp.dll"}) {
    EXPECT_TEXT(SystemText(5), CGenUtil::GetLastErrorMessage(5, module, 0));
  }
}

TEST(ErrorText, TheReportHasTwoLines) {
  using Row = std::tuple<const wchar_t*, unsigned long, const wchar_t*, const wchar_t*, const wchar_t*>;
  for (const auto& [header, error, footer, before, after] :
       Rows(Row(nullptr, 2, nullptr, L"［エラー番号］2\r\n", L""),
            Row(L"A", 0x80004005, L"B", L"A\r\n［エラー番号］80004005\r\n", L"\r\nB"),
            Row(L"A", 0x8007000E, nullptr, L"A\r\n［エラー番号］8007000e\r\n", L""),
            Row(nullptr, 112, L"B%s", L"［エラー番号］112\r\n", L"\r\nB%s"))) {
    EXPECT_TEXT(CString(before) + L"［エラー内容］" + SystemText(error) + after,
                CGenUtil::FormatLastErrorMessage(header, error, footer));
  }
}

TEST(ErrorText, HeaderAndFooterMayBeResources) {
  static const QorStringResource kTable[] = {{7101, L"読込", L"reading"}, {7102, L"中止", L"stopped"}};
  QorAddStringResources(kTable, 2);
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(QorFindStringResource(7101), 5, QorFindStringResource(7102)),
              CGenUtil::FormatLastErrorMessageRes(7101, 5, 7102));
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
  CString with_dot, without;
  const int found = CGenUtil::AssocQueryExecutable(L".txt", &with_dot);
  EXPECT_EQ(found, CGenUtil::AssocQueryExecutable(L"txt", &without));
  EXPECT_EQ(found, CGenUtil::AssocQueryExecutable(L"txt", nullptr));
  EXPECT_TRUE(found == 0 || (with_dot == without && !with_dot.IsEmpty())) << Utf8(with_dot);
}

static_assert(std::is_copy_assignable_v<CGenUtil>);
