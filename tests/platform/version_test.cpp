#include "qorgen/platform/version.h"

#include <gtest/gtest.h>
#include <vector>

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"
#include "tests/support/version_file.h"

namespace {

using qorgen::tests::VersionFile;

std::vector<BYTE> LoadBlock(const wchar_t* path) {
  DWORD handle = 7;
  std::vector<BYTE> block(GetFileVersionInfoSizeW(path, &handle));
  EXPECT_EQ(0u, handle);
  if (!block.empty()) {
    EXPECT_TRUE(GetFileVersionInfoW(path, 0, static_cast<DWORD>(block.size()), block.data()));
  }
  return block;
}

TEST(VersionTest, values_of_both_kinds_of_executable) {
  qorgen::tests::ScratchFolder folder;
  for (const bool is_64_bit : {true, false}) {
    const VersionFile version = {0x00010002, 0x00030004, 0x00050006, 0x00070008, true, is_64_bit};
    const wchar_t* path = folder.Path(L"版.dll");
    ASSERT_TRUE(qorgen::tests::PutFile(path, qorgen::tests::MakeVersionFile(version)));
    const std::vector<BYTE> block = LoadBlock(path);
    ASSERT_FALSE(block.empty());

    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &value, &length));
    ASSERT_EQ(sizeof(VS_FIXEDFILEINFO), length);
    const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(value);
    EXPECT_EQ(0xFEEF04BD, fixed->dwSignature);
    EXPECT_EQ(0x00010002u, fixed->dwFileVersionMS);
    EXPECT_EQ(0x00070008u, fixed->dwProductVersionLS);

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

TEST(VersionTest, files_without_version) {
  qorgen::tests::ScratchFolder folder;
  const wchar_t* path = folder.Path(L"a.txt");
  EXPECT_TRUE(LoadBlock(path).empty());
  for (const std::string& content : {std::string(), std::string("MZ"), std::string(4096, 'M')}) {
    ASSERT_TRUE(qorgen::tests::PutFile(path, content));
    EXPECT_TRUE(LoadBlock(path).empty());
  }
}

}  // namespace
