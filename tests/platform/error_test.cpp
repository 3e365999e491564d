#include "qorgen/platform/error.h"

#include <gtest/gtest.h>
#include <string>

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

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

TEST(ErrorText, EveryNumberThatTheLibrarySetsHasOne) {
  const auto has_text = [](DWORD number) {
    const std::string text = SystemText(number);
    return text.size() > 2 && text.substr(text.size() - 2) == "\r\n";
  };
  for (const DWORD number :
       {0u,    1u,    2u,          3u,          4u,          5u,          6u,         8u,    13u,   14u,
        15u,   17u,   18u,         19u,         21u,         30u,         32u,        33u,   38u,   39u,
        50u,   53u,   80u,         82u,         87u,         110u,        111u,       112u,  120u,  122u,
        123u,  126u,  127u,        131u,        145u,        161u,        183u,       193u,  203u,  206u,
        234u,  259u,  267u,        317u,        998u,        1008u,       1009u,      1010u, 1011u, 1018u,
        1020u, 1117u, 1155u,       1168u,       1223u,       1314u,       1450u,      1460u, 1812u, 1813u,
        1814u, 1815u, 0x80004001u, 0x80004005u, 0x80070005u, 0x8007000Eu, 0x80070057u}) {
    EXPECT_TRUE(has_text(number)) << number;
  }
  // The published table has these, Wine's hasn't.
  for (const DWORD number :
       {258u, 0x80004002u, 0x8000FFFFu, 0x80020005u, 0x8002000Au, 0x80028019u, 0x80030002u, 0x80030005u,
        0x80030050u, 0x800300FBu, 0x80040110u, 0x80040154u, 0x800401F0u, 0x800401F3u}) {
    EXPECT_TRUE(HoldsExceptOnWine(has_text(number))) << number;
  }
}

TEST(ErrorText, AnHresultOfASystemErrorHasTheErrorsText) {
  for (const DWORD number : {2u, 5u, 32u, 112u, 183u}) {
    EXPECT_EQ(SystemText(number), SystemText(static_cast<DWORD>(HRESULT_FROM_WIN32(number)))) << number;
  }
}

TEST(ErrorText, UnknownNumbersFail) {
  for (const DWORD number : {0xFFFFFFFFu, 0x20000001u, 0x8007FFF0u, 12002u}) {
    EXPECT_EQ("failed 317", SystemText(number)) << number;
  }
}

TEST(ErrorText, ABufferMustHoldTheTextAndItsTerminator) {
  wchar_t buffer[512];
  const DWORD length = FormatMessageW(kSystem, nullptr, 5, 0x400, buffer, 512, nullptr);
  ASSERT_GT(length, 2u);
  EXPECT_EQ(length, FormatMessageW(kSystem, nullptr, 5, 0x400, buffer, length + 1, nullptr));
  EXPECT_EQ(0u, FormatMessageW(kSystem, nullptr, 5, 0x400, buffer, length, nullptr));
  EXPECT_EQ(ERROR_INSUFFICIENT_BUFFER, GetLastError());
}

TEST(ErrorText, AllocatesABlock) {
  wchar_t* block = nullptr;
  const DWORD length = FormatMessageW(kSystem | FORMAT_MESSAGE_ALLOCATE_BUFFER, nullptr, 2, 0x400,
                                      reinterpret_cast<wchar_t*>(&block), 0, nullptr);
  ASSERT_NE(nullptr, block);
  EXPECT_EQ(SystemText(2), Utf8(block));
  EXPECT_EQ(0, block[length]);
  EXPECT_EQ(nullptr, LocalFree(block));
  EXPECT_EQ(nullptr, LocalFree(nullptr));
}

TEST(ErrorText, TheWebTransportHasItsOwnTable) {
  const HMODULE module = LoadLibraryW(L"winhttp.dll");
  ASSERT_NE(nullptr, module);
  for (const DWORD number : {12002u, 12007u, 12029u, 12030u, 12044u, 12152u, 12175u}) {
    wchar_t buffer[512];
    // Wine's module has no table.
    EXPECT_TRUE(HoldsExceptOnWine(FormatMessageW(kSystem | FORMAT_MESSAGE_FROM_HMODULE, module, number, 0x400,
                                                 buffer, 512, nullptr) != 0))
        << number;
  }
  // The system's table stands behind the module's.
  wchar_t buffer[512];
  EXPECT_NE(0u,
            FormatMessageW(kSystem | FORMAT_MESSAGE_FROM_HMODULE, module, 5, 0x400, buffer, 512, nullptr));
  EXPECT_EQ(SystemText(5), Utf8(buffer));
  EXPECT_EQ(
      0u, FormatMessageW(kSystem | FORMAT_MESSAGE_FROM_HMODULE, module, 19999, 0x400, buffer, 512, nullptr));
  EXPECT_EQ(ERROR_MR_MID_NOT_FOUND, GetLastError());
  EXPECT_TRUE(FreeLibrary(module));
}

TEST(Modules, OthersAreNotFound) {
  EXPECT_EQ(nullptr, LoadLibraryW(L"no-such-module.dll"));
  EXPECT_EQ(ERROR_MOD_NOT_FOUND, GetLastError());
  const HMODULE module = LoadLibraryW(L"MLANG");
  ASSERT_NE(nullptr, module);
  EXPECT_EQ(nullptr, reinterpret_cast<void*>(GetProcAddress(module, "NoSuchFunction")));
  EXPECT_EQ(ERROR_PROC_NOT_FOUND, GetLastError());
  EXPECT_TRUE(FreeLibrary(module));
}

TEST(Hresult, FromASystemError) {
  EXPECT_EQ(S_OK, HRESULT_FROM_WIN32(0));
  EXPECT_EQ(E_ACCESSDENIED, HRESULT_FROM_WIN32(5));
  EXPECT_EQ(E_FAIL, HRESULT_FROM_WIN32(static_cast<DWORD>(E_FAIL)));
}

}  // namespace
