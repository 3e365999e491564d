#include "qorgen/platform/strings.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "qorgen/platform/error.h"
#include "qorgen/platform/module.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

TEST(StrToInt, ReadsADecimalInteger) {
  const struct {
    const wchar_t* text;
    int value;
    bool on_wine = true;  // it doesn't pass over white space in front
  } rows[] = {
      {L"123", 123},
      {L"  -123", -123, false},
      {L"\t+7", 7, false},
      {L"12b34", 12},
      {L"0x1F", 0},
      {L"", 0},
      {L"abc", 0},
      {L"-", 0},
      {L"--1", 0},
      {L"- 1", 0},
      {L"1,000", 1},
      {L"1.9", 1},
      {L"2147483647", 2147483647},
      {L"-2147483648", -2147483647 - 1},
      {L"4294967297", 1},
      {L"00012", 12},
      {L"１２", 0},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(qorgen::tests::AsPublished(StrToIntW(row.text) == row.value, row.on_wine))
        << qorgen::tests::Utf8(row.text);
  }
}

using ConvertFunction = HRESULT (*)(DWORD*, DWORD, const wchar_t*, int*, char*, int*);

TEST(LanguageModule, ConvertsToUtf8) {
  const HMODULE module = LoadLibraryW(L"mlang.dll");
  ASSERT_NE(nullptr, module);
  const auto convert = reinterpret_cast<ConvertFunction>(
      reinterpret_cast<void (*)()>(GetProcAddress(module, "ConvertINetUnicodeToMultiByte")));
  ASSERT_NE(nullptr, convert);
  const struct {
    const wchar_t* text;
    int count;
    const char* utf8;
  } rows[] = {
      {L"abc", 3, "abc"},
      {L"日本 a", 4, "\xE6\x97\xA5\xE6\x9C\xAC a"},
      {L"日本 a", -1, "\xE6\x97\xA5\xE6\x9C\xAC a"},
      {L"日本", 1, "\xE6\x97\xA5"},
      {L"\xD842\xDFB7", 2, "\xF0\xA0\xAE\xB7"},
      {L"é", 1, "\xC3\xA9"},
  };
  for (const auto& row : rows) {
    DWORD mode = 0;
    int count = row.count;
    char target[64] = {};
    int size = 64;
    EXPECT_EQ(S_OK, convert(&mode, 65001, row.text, &count, target, &size)) << row.utf8;
    EXPECT_EQ(static_cast<int>(std::strlen(row.utf8)), size);
    EXPECT_EQ(row.utf8, std::string(target, static_cast<std::size_t>(size)));
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
