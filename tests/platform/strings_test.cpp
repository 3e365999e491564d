#include "qorgen/platform/strings.h"

#include "qorgen/platform/error.h"
#include "qorgen/platform/module.h"

#include "tests/support/testing.h"

namespace {

// Signs, digits and white space as such: in the tests of the scalars.
TEST(StrToInt, ReadsADecimalInteger) {
  const std::pair<const wchar_t*, int> rows[] = {
      {L"-", 0},      {L"--1", 0}, {L"- 1", 0},  {L"1,000", 1},      {L"2147483647", INT_MAX},
      {L"00012", 12}, {L"1.9", 1}, {L"１２", 0}, {L"4294967297", 1}, {L"-2147483648", INT_MIN}};
  for (const auto& [text, value] : rows) EXPECT_EQ(value, StrToIntW(text)) << qorgen::tests::Utf8(text);
  // Wine doesn't pass over white space in front.
  EXPECT_TRUE(qorgen::tests::HoldsExceptOnWine(StrToIntW(L"\t+7") == 7));
}

using ConvertFunction = HRESULT (*)(DWORD*, DWORD, const wchar_t*, int*, char*, int*);

TEST(LanguageModule, ConvertsToUtf8) {
  const HMODULE module = LoadLibraryW(L"mlang.dll");
  ASSERT_NE(nullptr, module);
  const auto convert = reinterpret_cast<ConvertFunction>(
      reinterpret_cast<void (*)()>(GetProcAddress(module, "ConvertINetUnicodeToMultiByte")));
  ASSERT_NE(nullptr, convert);
  // How many units of the text, up to its end for -1.
  const std::tuple<const wchar_t*, int, std::string> rows[] = {
      {L"日本 a", 4, "日本 a"}, {L"日本 a", -1, "日本 a"}, {L"日本", 1, "日"}, {L"\xD842\xDFB7", 2, "𠮷"}};
  for (const auto& [text, units, utf8] : rows) {
    DWORD mode = 0;
    int count = units;
    char target[64] = {};
    int size = 64;
    EXPECT_EQ(S_OK, convert(&mode, 65001, text, &count, target, &size)) << utf8;
    EXPECT_EQ(utf8, std::string(target, static_cast<std::size_t>(size)));
    EXPECT_GE(count, 1);
  }
  // Only asks for the size.
  DWORD mode = 0;
  int count = 2;
  int size = 0;
  EXPECT_EQ(S_OK, convert(&mode, 65001, L"日本", &count, nullptr, &size));
  EXPECT_EQ(6, size);
  char small[5];
  size = 5;
  EXPECT_TRUE(convert(&mode, 65001, L"日本", &count, small, &size) != S_OK);
  // Wine asks the system about a code page only once it converts.
  EXPECT_TRUE(
      qorgen::tests::HoldsExceptOnWine(convert(&mode, 12345, L"x", &count, nullptr, &size) == S_FALSE));
  EXPECT_TRUE(FreeLibrary(module));
}

}  // namespace
