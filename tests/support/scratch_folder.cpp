#include "tests/support/scratch_folder.h"

#include <algorithm>
#include <cstring>

#include "qorgen/platform/error.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace qorgen::tests {
namespace {

std::u16string Text(const wchar_t* text) {
  std::u16string copy;
  for (; *text != 0; ++text) copy += static_cast<char16_t>(*text);
  return copy;
}

void Store(const std::u16string& text, wchar_t (&buffer)[512]) {
  std::size_t length = 0;
  for (; length < text.size() && length < 511; ++length) buffer[length] = static_cast<wchar_t>(text[length]);
  buffer[length] = 0;
}

void RemoveTree(const std::u16string& folder) {
  wchar_t path[512];
  Store(folder + u"\\*", path);
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW(path, &data);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      const std::u16string name = Text(data.cFileName);
      if (name == u"." || name == u"..") continue;
      const bool link = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
      Store(folder + u'\\' + name, path);
      if (!link) SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL);
      if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !link) RemoveTree(folder + u'\\' + name);
      Store(folder + u'\\' + name, path);
      if (!DeleteFileW(path)) RemoveDirectoryW(path);
    } while (FindNextFileW(search, &data));
    FindClose(search);
  }
  Store(folder, path);
  RemoveDirectoryW(path);
}

}  // namespace

ScratchFolder::ScratchFolder() {
  wchar_t folder[MAX_PATH + 1];
  wchar_t name[MAX_PATH];
  GetTempPathW(MAX_PATH + 1, folder);
  // The first free name. Whoever makes the folder has it: tests run side by side, and a file that holds the
  // name until it makes room for the folder would let another in between.
  UINT number = 0;
  do {
    GetTempFileNameW(folder, L"qgt", ++number, name);
  } while (!CreateDirectoryW(name, nullptr) && GetLastError() == ERROR_ALREADY_EXISTS && number < 0xFFFF);
  root_ = Text(name);
}

ScratchFolder::~ScratchFolder() {
  RemoveTree(root_);
}

const wchar_t* ScratchFolder::Path(const wchar_t* name) {
  wchar_t(&text)[512] = texts_[next_];
  next_ = (next_ + 1) % 8;
  Store(*name == 0 ? root_ : root_ + u'\\' + Text(name), text);
  return text;
}

InFolder::InFolder(const wchar_t* path) : former_(std::filesystem::current_path()) {
  std::string text = Utf8(path);
  std::replace(text.begin(), text.end(), '\\', '/');
  // A drive means something to the runtime of one host alone.
  if (text.substr(0, 2) == "C:" && !std::filesystem::path(text).has_root_name()) text.erase(0, 2);
  std::filesystem::current_path(text);
}

InFolder::~InFolder() {
  std::filesystem::current_path(former_);
}

bool PutFile(const wchar_t* path, const std::string& bytes) {
  const HANDLE file =
      CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool done = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
  return done && written == bytes.size();
}

std::string GetFile(const wchar_t* path) {
  const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "(missing)";
  std::string bytes;
  char block[4096];
  for (DWORD got = 0; ReadFile(file, block, sizeof block, &got, nullptr) && got != 0;)
    bytes.append(block, got);
  CloseHandle(file);
  return bytes;
}

bool ReadOnlyFilesAreWritable() {
  if (!UnderWine()) return false;
  ScratchFolder folder;
  const wchar_t* path = folder.Path(L"probe");
  return PutFile(path, "1") && SetFileAttributesW(path, FILE_ATTRIBUTE_READONLY) && PutFile(path, "2");
}

bool Exists(const wchar_t* path) {
  return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace qorgen::tests
