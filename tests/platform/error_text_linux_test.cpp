#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/error/error_text_table.h"
#include "qorgen/platform/module.h"

#include "tests/support/text.h"

namespace qorgen::platform {
namespace {

using qorgen::tests::Utf8;

std::string Text(DWORD flags, const void* module, DWORD number, DWORD language) {
  wchar_t buffer[1024] = L"";
  SetLastError(0);
  const DWORD length = FormatMessageW(flags, module, number, language, buffer, 1024, nullptr);
  return length != 0 ? Utf8(buffer) : "failed " + std::to_string(GetLastError());
}

// A row's English comes first, and no text brings its own line break.
TEST(ErrorTextTable, EachTextIsInItsLanguage) {
  for (const ErrorTextTable& table : {SystemErrorTexts(), WebTransportErrorTexts()}) {
    for (const ErrorText* row = table.first; row != table.last; ++row) {
      const std::string english = Utf8(row->english);
      EXPECT_GE(english.size(), 4u) << row->number;
      EXPECT_EQ(english.end(), std::find_if(english.begin(), english.end(), [](char c) { return c < ' '; }))
          << english;
      const std::string japanese = Utf8(row->japanese);
      EXPECT_NE(japanese.end(), std::find_if(japanese.begin(), japanese.end(), [](char c) { return c < 0; }))
          << japanese;
      EXPECT_EQ(std::string::npos, japanese.find('\n')) << japanese;
    }
  }
}

TEST(ErrorTextTable, BothLanguages) {
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  const std::tuple<DWORD, const char*, const char*> rows[] = {
      {2, "指定されたファイルが見つかりません。\r\n", "The system cannot find the file specified.\r\n"},
      {5, "アクセスが拒否されました。\r\n", "Access is denied.\r\n"},
      {193, "%1 は有効な Win32 アプリケーションではありません。\r\n",
       "%1 is not a valid Win32 application.\r\n"},
      {0x80004005, "エラーを特定できません\r\n", "Unspecified error\r\n"},
      {0x80070057, "パラメーターが間違っています。\r\n", "The parameter is incorrect.\r\n"},
      {0x80072EE2, "操作がタイムアウトになりました\r\n", "The operation timed out\r\n"},
  };
  for (const auto& [number, japanese, english] : rows) {
    EXPECT_EQ(japanese, Text(kFlags, nullptr, number, 0x411));
    EXPECT_EQ(english, Text(kFlags, nullptr, number, 0x409));
  }
  EXPECT_EQ("failed 1815", Text(kFlags, nullptr, 2, 0x407));
}

TEST(ErrorTextTable, TheUsersLanguageFollowsTheEnvironment) {
  const char* const before = std::getenv("LC_ALL");
  const std::string kept = before != nullptr ? before : "";
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  setenv("LC_ALL", "en_US.UTF-8", 1);
  EXPECT_EQ("Access is denied.\r\n", Text(kFlags, nullptr, 5, 0x400));
  setenv("LC_ALL", "ja_JP.UTF-8", 1);
  EXPECT_EQ("アクセスが拒否されました。\r\n", Text(kFlags, nullptr, 5, 0x400));
  before != nullptr ? setenv("LC_ALL", kept.c_str(), 1) : unsetenv("LC_ALL");
}

TEST(ErrorTextTable, RefusesWhatItDoesNotServe) {
  EXPECT_EQ("failed 87", Text(0, nullptr, 5, 0x400));
  EXPECT_EQ("failed 87", Text(FORMAT_MESSAGE_FROM_SYSTEM | 0x2000, nullptr, 5, 0x400));
  EXPECT_EQ("failed 87", Text(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 193, 0x400));
  EXPECT_EQ("failed 1813", Text(FORMAT_MESSAGE_FROM_HMODULE, LoadLibraryW(L"mlang.dll"), 5, 0x400));
  EXPECT_EQ("failed 317", Text(FORMAT_MESSAGE_FROM_HMODULE, LoadLibraryW(L"winhttp.dll"), 5, 0x400));
  EXPECT_EQ(0u, FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 5, 0x400, nullptr, 10, nullptr));
  EXPECT_FALSE(FreeLibrary(nullptr));
}

}  // namespace
}  // namespace qorgen::platform
