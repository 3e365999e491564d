// The path functions of the shell interface that work on text alone.

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "qorgen/platform/common/text_length.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/shell.h"

namespace {

using qorgen::platform::IsSeparator;
using qorgen::platform::TextLength;

bool IsLetter(wchar_t c) {
  return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

bool HasDrive(const wchar_t* path) {
  return IsLetter(path[0]) && path[1] == L':';
}

// The first backslash from `path` on, or the end of the text.
const wchar_t* FindBackslash(const wchar_t* path) {
  while (*path != 0 && *path != L'\\') ++path;
  return path;
}

const wchar_t* SkipMachineAndShare(const wchar_t* path) {
  for (int part = 0; part < 2 && *path != 0; ++part) {
    path = FindBackslash(path);
    if (*path == L'\\') ++path;
  }
  return path;
}

bool StartsWith(const wchar_t* text, const wchar_t* start) {
  while (*start != 0 && *text == *start) {
    ++text;
    ++start;
  }
  return *start == 0;
}

const wchar_t* SkipRoot(const wchar_t* path) {
  if (StartsWith(path, L"\\\\?\\UNC\\")) return SkipMachineAndShare(path + 8);
  if (StartsWith(path, L"\\\\?\\")) return SkipRoot(path + 4);
  if (StartsWith(path, L"\\\\")) return SkipMachineAndShare(path + 2);
  if (path[0] == L'\\') return path + 1;
  if (HasDrive(path) && path[2] == L'\\') return path + 3;
  return nullptr;
}

// The length of what PathRemoveFileSpecW never cuts.
std::size_t KeptLength(const wchar_t* path) {
  if (path[0] == L'\\') return path[1] == L'\\' ? 2 : 1;
  if (HasDrive(path)) return path[2] == L'\\' ? 3 : 2;
  return 0;
}

// Where the last component begins, its separator included: the length of the text before it.
std::size_t ComponentStart(std::wstring_view path) {
  for (std::size_t i = path.size(); i-- > 0;) {
    if (IsSeparator(path[i]) && i + 1 < path.size() && !IsSeparator(path[i + 1])) return i;
  }
  return 0;
}

// Appends at most what fits in `room` and takes it off.
wchar_t* Put(wchar_t* out, std::wstring_view text, std::size_t& room) {
  const std::size_t count = std::min(room, text.size());
  room -= count;
  return std::copy_n(text.data(), count, out);
}

constexpr std::wstring_view kDots = L"...";

}  // namespace

BOOL PathRemoveFileSpecW(LPWSTR path) {
  if (path == nullptr) return FALSE;
  const bool host_form = path[0] == L'/' && path[1] != L'/';
  const std::size_t kept = host_form ? 1 : KeptLength(path);
  std::size_t end = TextLength(path);
  if (end <= kept) return FALSE;
  do {
    --end;
  } while (end > kept && path[end] != L'\\' && !(host_form && path[end] == L'/'));
  path[end] = 0;
  return TRUE;
}

LPWSTR PathSkipRootW(LPCWSTR path) {
  return path == nullptr ? nullptr : const_cast<wchar_t*>(SkipRoot(path));
}

LPWSTR PathFindExtensionW(LPCWSTR path) {
  if (path == nullptr) return nullptr;
  const wchar_t* dot = nullptr;
  for (; *path != 0; ++path) {
    if (*path == L'.') dot = path;
    if (*path == L'\\' || *path == L' ') dot = nullptr;
  }
  return const_cast<wchar_t*>(dot != nullptr ? dot : path);
}

BOOL PathCompactPathExW(LPWSTR out, LPCWSTR source, UINT maxCharacters, DWORD /*flags*/) {
  if (out == nullptr || source == nullptr || maxCharacters == 0) return FALSE;
  const std::wstring_view path(source, TextLength(source));
  std::size_t room = maxCharacters - 1;
  if (path.size() <= room) {
    *std::copy(path.begin(), path.end(), out) = 0;
    return TRUE;
  }
  const std::size_t start = ComponentStart(path);
  const bool has_folder = start > 0 || (!path.empty() && IsSeparator(path[0]));
  std::wstring_view component = path.substr(start);
  if (has_folder && kDots.size() + component.size() <= room) {
    out = Put(out, path.substr(0, room - kDots.size() - component.size()), room);
    out = Put(out, kDots, room);
    out = Put(out, component, room);
  } else {
    if (has_folder) {
      out = Put(out, kDots, room);
      out = Put(out, component.substr(0, 1), room);
      component.remove_prefix(1);
    }
    out = Put(out, component.substr(0, room > kDots.size() ? room - kDots.size() : 0), room);
    out = Put(out, kDots, room);
  }
  *out = 0;
  return TRUE;
}
