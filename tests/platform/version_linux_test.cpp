// Damaged executables: nothing outside the file or the block may be read, whatever its offsets say.

#include <cstring>
#include <gtest/gtest.h>
#include <memory>

#include "qorgen/platform/linux/version/version_resource.h"
#include "qorgen/platform/version.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/version_file.h"

namespace {

using qorgen::platform::FindVersionResource;
using qorgen::platform::PeStatus;
using qorgen::platform::VersionResource;

PeStatus Find(const std::string& file, VersionResource& resource) {
  const auto read = [&file](std::uint64_t offset, void* buffer, std::uint32_t size) {
    if (offset > file.size() || file.size() - offset < size) return false;
    std::memcpy(buffer, file.data() + offset, size);
    return true;
  };
  return FindVersionResource(read, resource);
}

// Asks everything of a block in memory of just its size, so that a sanitizer sees any step beyond.
void QueryAll(const std::string& bytes) {
  const std::unique_ptr<BYTE[]> block(new BYTE[bytes.size()]);
  std::memcpy(block.get(), bytes.data(), bytes.size());
  for (const wchar_t* name :
       {L"\\", L"\\VarFileInfo\\Translation", L"\\StringFileInfo\\041104b0\\ProductName"}) {
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.get(), name, &value, &length)) continue;
    const auto* start = static_cast<const BYTE*>(value);
    EXPECT_LE(start + length, block.get() + bytes.size());
  }
}

TEST(VersionResourceTest, EveryLengthOfTheFile) {
  const std::string whole = qorgen::tests::MakeVersionFile({1, 2, 3, 4});
  VersionResource resource;
  ASSERT_EQ(PeStatus::kFound, Find(whole, resource));
  // Up to the entry that tells where the block lies; the block itself is read later.
  for (std::size_t length = 0; length < 0x200 + 80; ++length) {
    EXPECT_NE(PeStatus::kFound, Find(whole.substr(0, length), resource)) << length;
  }
}

TEST(VersionResourceTest, EveryByteDamaged) {
  const std::string whole = qorgen::tests::MakeVersionFile({1, 2, 3, 4});
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const int damage : {0x00, 0x7F, 0xFF}) {
      std::string file = whole;
      file[i] = static_cast<char>(damage);
      VersionResource resource;
      if (Find(file, resource) == PeStatus::kFound) {
        EXPECT_LE(resource.size, 0xFFFFu);
      }
    }
  }
}

TEST(VersionResourceTest, DamagedBlocksThroughTheFileCalls) {
  qorgen::tests::ScratchFolder folder;
  const std::string whole = qorgen::tests::MakeVersionFile({1, 2, 3, 4});
  constexpr std::size_t kBlock = 0x200 + 88;
  for (std::size_t i = kBlock; i < whole.size(); ++i) {
    std::string file = whole;
    file[i] = '\xFF';
    const wchar_t* path = folder.Path(L"a.dll");
    ASSERT_TRUE(qorgen::tests::PutFile(path, file));
    // A room that is too small cuts the block, and its own length with it.
    for (const DWORD room : {DWORD{8}, DWORD{100}, GetFileVersionInfoSizeW(path, nullptr)}) {
      if (room == 0) continue;
      std::string block(room, '\0');
      if (GetFileVersionInfoW(path, 0, room, block.data())) QueryAll(block);
    }
  }
}

}  // namespace
