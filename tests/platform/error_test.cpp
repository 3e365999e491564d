#include "qorgen/platform/error.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "qorgen/platform/module.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

using qorgen::tests::AsPublished;
using qorgen::tests::HoldsExceptOnWine;
using qorgen::tests::Utf8;

constexpr DWORD kSystem = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;

std::string SystemText(DWORD number, DWORD language = 0x400) {
  wchar_t buffer[2048] = L"unchanged";
  SetLastError(0);
  const DWORD length = FormatMessageW(kSystem, nullptr, number, language, buffer, 2048, nullptr);
  const std::string text = Utf8(buffer);
  if (length == 0) return "failed " + std::to_string(GetLastError());
  if (buffer[length] != 0 || buffer[length - 1] != L'\n' || buffer[length - 2] != L'\r')
    return "no line break";
  return text;
}

// The system's and ours alike: a number that callers show has a text.
TEST(ErrorText, NumbersOfTheSystemHaveOneAndUnknownOnesFail) {
  const struct {
    std::int64_t number;
    bool known;
    bool on_wine = true;
  } rows[] = {
      {ERROR_SUCCESS, true},
      {ERROR_FILE_NOT_FOUND, true},
      {ERROR_DISK_FULL, true},
      {ERROR_KEY_DELETED, true},
      {ERROR_NO_ASSOCIATION, true},
      {E_NOTIMPL, true},
      {E_FAIL, true},
      {HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), true},  // as the error's own
      {WAIT_TIMEOUT, true, false},
      {E_UNEXPECTED, true, false},
      {DISP_E_TYPEMISMATCH, true, false},
      {STG_E_FILENOTFOUND, true, false},
      {REGDB_E_CLASSNOTREG, true, false},
      {0xFFFFFFFF, false},
      {0x20000001, false},
      {0x8007FFF0, false},
      {12002, false},  // the web transport's
  };
  for (const auto& row : rows) {
    const std::string text = SystemText(static_cast<DWORD>(row.number));
    EXPECT_TRUE(AsPublished((text != "failed 317") == row.known, row.on_wine)) << row.number << ": " << text;
  }
  EXPECT_EQ(SystemText(ERROR_DISK_FULL), SystemText(static_cast<DWORD>(HRESULT_FROM_WIN32(ERROR_DISK_FULL))));
}

TEST(ErrorText, ABufferMustHoldTheTextAndItsTerminator) {
  wchar_t buffer[512];
  const DWORD length = FormatMessageW(kSystem, nullptr, 5, 0x400, buffer, 512, nullptr);
  ASSERT_GT(length, 2u);
  EXPECT_EQ(length, FormatMessageW(kSystem, nullptr, 5, 0x400, buffer, length + 1, nullptr));
  EXPECT_EQ(0u, FormatMessageW(kSystem, nullptr, 5, 0x400, buffer, length, nullptr));
  EXPECT_EQ(ERROR_INSUFFICIENT_BUFFER, GetLastError());
}

TEST(ErrorText, TheWebTransportHasItsOwnTable) {
  const HMODULE module = LoadLibraryW(L"winhttp.dll");
  ASSERT_NE(nullptr, module);
  const auto text = [module](DWORD number) {
    wchar_t buffer[512] = L"";
    FormatMessageW(kSystem | FORMAT_MESSAGE_FROM_HMODULE, module, number, 0x400, buffer, 512, nullptr);
    return Utf8(buffer);
  };
  EXPECT_TRUE(HoldsExceptOnWine(!text(12002).empty()));  // Wine's module has no table
  EXPECT_EQ(SystemText(5), text(5));                     // the system's stands behind it
  EXPECT_EQ("", text(19999));
  EXPECT_EQ(ERROR_MR_MID_NOT_FOUND, GetLastError());
  EXPECT_TRUE(FreeLibrary(module));
}

TEST(Hresult, FromASystemError) {
  EXPECT_EQ(S_OK, HRESULT_FROM_WIN32(0));
  EXPECT_EQ(E_INVALIDARG, HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER));
  EXPECT_EQ(E_FAIL, HRESULT_FROM_WIN32(static_cast<DWORD>(E_FAIL)));
}

}  // namespace
