// Services on a machine that lacks the library behind them.

#include <gtest/gtest.h>
#include <unistd.h>

#include "qorgen/afx/image.h"
#include "qorgen/platform/crypto.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/imaging.h"
#include "qorgen/platform/linux/optional_library.h"
#include "qorgen/platform/shell.h"

namespace {

using qorgen::platform::Loaded;
using qorgen::platform::OptionalLibrary;
using qorgen::platform::WithoutOptionalLibraries;

struct Whole : OptionalLibrary {
  Whole() : OptionalLibrary("libc.so.6") {}
  QORGEN_LIBRARY_FUNCTION(getpid);
  int (*none)() = FindIfThere("qorgen_no_such_function");
};

struct WithoutOneFunction : OptionalLibrary {
  WithoutOneFunction() : OptionalLibrary("libc.so.6") {}
  int (*none)() = Find("qorgen_no_such_function");
  QORGEN_LIBRARY_FUNCTION(getpid);
};

struct Absent : OptionalLibrary {
  Absent() : OptionalLibrary("libqorgen_no_such_library.so.1") {}
  QORGEN_LIBRARY_FUNCTION(getpid);
};

TEST(OptionalLibraryTest, WholeOrNotAtAll) {
  ASSERT_NE(nullptr, Loaded<Whole>());
  EXPECT_EQ(::getpid(), Loaded<Whole>()->getpid());
  EXPECT_EQ(nullptr, Loaded<Whole>()->none);
  EXPECT_EQ(nullptr, Loaded<WithoutOneFunction>());
  EXPECT_EQ(nullptr, Loaded<Absent>());
}

TEST(OptionalLibraryTest, ImagesWithoutLibgd) {
  CImage::ReleaseGDIPlus();
  CImage image;
  ASSERT_TRUE(image.Create(1, 1, 24));
  {
    const WithoutOptionalLibraries without;
    std::uintptr_t token = 0;
    const Gdiplus::GdiplusStartupInput input;
    EXPECT_EQ(Gdiplus::Win32Error, Gdiplus::GdiplusStartup(&token, &input, nullptr));
    EXPECT_EQ(DWORD{ERROR_MOD_NOT_FOUND}, GetLastError());
    EXPECT_EQ(0u, token);
    EXPECT_FALSE(CImage::InitGDIPlus());
    EXPECT_EQ(E_FAIL, image.Save(L"qorgen_never_written.png"));
    EXPECT_EQ(E_FAIL, CImage().Load(L"qorgen_never_written.png"));
  }
  EXPECT_TRUE(CImage::InitGDIPlus());
}

TEST(OptionalLibraryTest, DigestsWithoutLibcrypto) {
  HCRYPTPROV provider = 0;
  HCRYPTHASH hash = 0;
  const WithoutOptionalLibraries without;
  EXPECT_FALSE(CryptAcquireContextW(&provider, nullptr, nullptr, PROV_RSA_FULL, CRYPT_VERIFYCONTEXT));
  EXPECT_EQ(static_cast<DWORD>(NTE_PROVIDER_DLL_FAIL), GetLastError());
  EXPECT_EQ(HCRYPTPROV{0}, provider);
  EXPECT_FALSE(CryptCreateHash(HCRYPTPROV{1}, CALG_MD5, 0, 0, &hash));
  EXPECT_EQ(static_cast<DWORD>(NTE_PROVIDER_DLL_FAIL), GetLastError());
}

TEST(OptionalLibraryTest, FileTypesWithoutGio) {
  DWORD count = 0;
  ASSERT_EQ(S_FALSE, AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L".qorledger", L"open", nullptr, &count));
  const WithoutOptionalLibraries without;
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION),
            AssocQueryStringW(0, ASSOCSTR_EXECUTABLE, L".qorledger", L"open", nullptr, &count));
}

}  // namespace
