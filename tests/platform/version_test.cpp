#include "qorgen/platform/version.h"

#include "tests/support/testing.h"
#include "tests/support/version_file.h"

namespace {

TEST(VersionTest, ValuesOfBothKindsOfExecutable) {
  qorgen::tests::ScratchFolder folder;
  const wchar_t* path = folder.Path(L"版.dll");
  for (const bool is_64_bit : {true, false}) {
    const qorgen::tests::VersionFile version = {0x00010002, 0x00030004, 0x00050006,
                                                0x00070008, true,       is_64_bit};
    ASSERT_TRUE(qorgen::tests::PutFile(path, qorgen::tests::MakeVersionFile(version)));
    DWORD handle = 7;
    std::vector<BYTE> block(GetFileVersionInfoSizeW(path, &handle));
    EXPECT_EQ(0u, handle);
    ASSERT_TRUE(GetFileVersionInfoW(path, 0, static_cast<DWORD>(block.size()), block.data()));

    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &value, &length));
    ASSERT_EQ(sizeof(VS_FIXEDFILEINFO), length);
    EXPECT_EQ(0xFEEF04BD, static_cast<const VS_FIXEDFILEINFO*>(value)->dwSignature);
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &value, &length));
    EXPECT_EQ(4u, length);
    EXPECT_EQ(0x0411, *static_cast<const WORD*>(value));
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\stringfileinfo\\041104B0\\PRODUCTNAME", &value, &length));
    EXPECT_EQ(3u, length);
    EXPECT_TEXT(L"帳簿", static_cast<const wchar_t*>(value));
    value = nullptr;
    EXPECT_FALSE(VerQueryValueW(block.data(), L"\\StringFileInfo\\041104b0\\Product", &value, &length));
    EXPECT_EQ(nullptr, value);
  }
}

}  // namespace
