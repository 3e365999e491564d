// Links in a tree that is removed. Wine makes none of its own, but shows those of its host.

#include <windows.h>

#include "qorgen/platform/remove_tree.h"

#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

std::wstring HostPath(const wchar_t* path) {
  using Namer = char*(CDECL*)(LPCWSTR);
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  const auto name =
      reinterpret_cast<Namer>(reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_unix_file_name")));
  char* const text = name != nullptr ? name(path) : nullptr;
  std::wstring host;
  for (const char* c = text; c != nullptr && *c != 0; ++c) host += static_cast<unsigned char>(*c);
  HeapFree(GetProcessHeap(), 0, text);
  return host;
}

bool MakeFolderLink(const wchar_t* link, const wchar_t* target) {
  if (!UnderWine()) return CreateSymbolicLinkW(link, target, SYMBOLIC_LINK_FLAG_DIRECTORY) != 0;
  std::wstring command = L"Z:\\bin\\ln -s " + HostPath(target) + L" " + HostPath(link);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION made = {};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made)) {
    return false;
  }
  CloseHandle(made.hThread);
  CloseHandle(made.hProcess);
  // The host's program is no process that Wine could wait for.
  for (int wait = 0; wait < 500 && !Exists(link); ++wait) Sleep(10);
  return Exists(link);
}

TEST(RemoveTree, LinksOfFoldersAreNotFollowed) {
  ScratchFolder scratch;
  ASSERT_TRUE(CreateDirectoryW(scratch.Path(L"outside"), nullptr));
  ASSERT_TRUE(PutFile(scratch.Path(L"outside\\precious"), "x"));
  ASSERT_TRUE(CreateDirectoryW(scratch.Path(L"t"), nullptr));
  ASSERT_TRUE(MakeFolderLink(scratch.Path(L"t\\link"), scratch.Path(L"outside")));
  ASSERT_TRUE(MakeFolderLink(scratch.Path(L"link"), scratch.Path(L"outside")));
  for (const wchar_t* path : {L"t", L"link\\"}) {
    const bool removed = platform::RemoveTree(scratch.Path(path)) != FALSE;
    // Wine can't remove a link to a folder: it looks into the folder.
    EXPECT_TRUE(HoldsExceptOnWine(removed && !Exists(scratch.Path(path)))) << Utf8(path);
    EXPECT_EQ("x", GetFile(scratch.Path(L"outside\\precious"))) << Utf8(path);
  }
}

}  // namespace
}  // namespace qorgen::tests
