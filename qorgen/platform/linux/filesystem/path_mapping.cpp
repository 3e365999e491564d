#include "qorgen/platform/linux/filesystem/path_mapping.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <unistd.h>
#include <vector>

#include "qorgen/platform/common/text_length.h"
#include "qorgen/platform/common/utf8.h"

namespace qorgen::platform {
namespace {

constexpr DWORD kFileNotFound = 2;  // ERROR_FILE_NOT_FOUND
constexpr DWORD kPathNotFound = 3;  // ERROR_PATH_NOT_FOUND
constexpr DWORD kBadNetPath = 53;   // ERROR_BAD_NETPATH
constexpr char16_t kBackslashInName = 0xF05C;

constexpr bool IsLetter(wchar_t c) {
  return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

// Units from `text` to `text + length`, any of which may be a lone surrogate.
template <class Unit>
void AppendName(std::string& out, const Unit* text, std::size_t length) {
  ForEachCharacter(text, length, [&out](char32_t c) {
    if (c >= 0xDC80 && c <= 0xDCFF) {
      out += static_cast<char>(c & 0xFF);
    } else if (c == kBackslashInName) {
      out += '\\';
    } else {
      AppendUtf8(out, c);
    }
  });
}

// The length of the well-formed sequence at `bytes` (surrogates in three bytes let through), 0 if there is
// none.
std::size_t DecodeOne(std::string_view bytes, std::uint32_t& c) {
  const auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const std::uint32_t lead = at(0);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || length > bytes.size()) return 0;
  c = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return 0;
    c = (c << 6) | (at(i) & 0x3Fu);
  }
  constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  return c < kSmallest[length] || c > 0x10FFFF ? 0 : length;
}

// Every byte above 7F on its own: the form for names that the ordinary reading would not give back unchanged.
std::u16string EscapeBytes(std::string_view host) {
  std::u16string name;
  for (const char c : host) {
    const auto byte = static_cast<std::uint8_t>(c);
    name += byte >= 0x80 ? static_cast<char16_t>(0xDC00 + byte)
            : c == '\\'  ? kBackslashInName
                         : static_cast<char16_t>(c);
  }
  return name;
}

// Empty with errno when the working folder has been removed or can't be reached.
std::string WorkingFolder() {
  char* folder = getcwd(nullptr, 0);
  if (folder == nullptr) return {};
  std::string path = folder;
  free(folder);
  return path;
}

}  // namespace

std::u16string TextOf(const wchar_t* text) {
  std::u16string copy(TextLength(text), u'\0');
  if (!copy.empty()) std::memcpy(copy.data(), text, copy.size() * sizeof(char16_t));
  return copy;
}

std::string HostPath(const wchar_t* path, DWORD* error) {
  DWORD ignored;
  DWORD& reason = error != nullptr ? *error : ignored;
  reason = kPathNotFound;
  if (path == nullptr || path[0] == 0) return {};

  if (IsSeparator(path[0]) && IsSeparator(path[1])) {
    const bool device = (path[2] == L'?' || path[2] == L'.') && IsSeparator(path[3]);
    if (!device || ((path[4] | 0x20) == 'u' && (path[5] | 0x20) == 'n' && (path[6] | 0x20) == 'c')) {
      reason = kBadNetPath;
      return {};
    }
    path += 4;
    if (!IsLetter(path[0]) || path[1] != L':') {
      reason = kFileNotFound;
      return {};
    }
  }
  if (IsLetter(path[0]) && path[1] == L':') {
    if ((path[0] | 0x20) != 'c') return {};
    path += 2;
  }
  reason = 0;

  const bool absolute = IsSeparator(path[0]);
  std::string host(absolute ? 1 : 0, '/');
  std::vector<std::size_t> starts;  // of the components in `host` that a ".." can take back
  bool folder = false;
  while (*path != 0) {
    if (IsSeparator(*path)) {
      folder = true;
      ++path;
      continue;
    }
    std::size_t length = 0;
    while (path[length] != 0 && !IsSeparator(path[length])) ++length;
    const bool up = length == 2 && path[0] == L'.' && path[1] == L'.';
    folder = false;
    if (up && !starts.empty()) {
      host.resize(starts.back());
      starts.pop_back();
    } else if ((up && !absolute) || !(up || (length == 1 && path[0] == L'.'))) {
      const std::size_t before = host.size();
      if (before > 0 && host.back() != '/') host += '/';
      if (!up) starts.push_back(before);
      AppendName(host, path, length);
    }
    path += length;
  }
  if (host.empty()) host.push_back('.');
  if (folder && host.back() != '/') host += '/';
  return host;
}

std::string HostName(std::u16string_view name) {
  std::string host;
  AppendName(host, name.data(), name.size());
  return host;
}

std::u16string LibraryName(std::string_view host) {
  std::u16string name;
  bool odd = false;
  for (std::size_t i = 0; i < host.size();) {
    std::uint32_t c = 0;
    const std::size_t length = DecodeOne(host.substr(i), c);
    if (length == 0) {
      name += static_cast<char16_t>(0xDC00 + static_cast<std::uint8_t>(host[i]));
      odd = true;
    } else if (c >= 0x10000) {
      name += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      name += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      odd = odd || (c >= 0xD800 && c < 0xE000) || c == kBackslashInName;
      name += c == '\\' ? kBackslashInName : static_cast<char16_t>(c);
    }
    i += length == 0 ? 1 : length;
  }
  // Neighbouring odd units can form a pair, and then they would not go back to the same bytes.
  if (odd && HostName(name) != host) return EscapeBytes(host);
  return name;
}

std::u16string LibraryPath(std::string_view host) {
  std::u16string path;
  if (!host.empty() && host.front() == '/') path.append(u"C:");
  while (!host.empty()) {
    const std::size_t end = host.find('/');
    path += LibraryName(host.substr(0, end));
    if (end == std::string_view::npos) break;
    path += u'\\';
    host.remove_prefix(end + 1);
  }
  return path;
}

std::string HostLeaf(std::string_view host) {
  while (host.size() > 1 && host.back() == '/') host.remove_suffix(1);
  const std::size_t slash = host.rfind('/');
  return std::string(host.size() > 1 && slash != std::string_view::npos ? host.substr(slash + 1) : host);
}

std::string HostFolder(std::string_view host) {
  while (host.size() > 1 && host.back() == '/') host.remove_suffix(1);
  std::size_t slash = host.rfind('/');
  if (slash == std::string_view::npos) return ".";
  while (slash > 0 && host[slash - 1] == '/') --slash;
  return std::string(host.substr(0, slash == 0 ? 1 : slash));
}

std::string WithoutSeparators(std::string host) {
  while (host.size() > 1 && host.back() == '/') host.pop_back();
  return host;
}

std::string AbsoluteHostPath(const std::string& host) {
  if (!host.empty() && host.front() == '/') return host;
  std::string path = WorkingFolder();
  if (path.empty()) return path;
  std::string_view rest = host;
  while (rest == ".." || rest.starts_with("../")) {
    path = HostFolder(path);
    rest.remove_prefix(rest.size() > 2 ? 3 : 2);
  }
  if (rest == "." || rest.empty()) return path;
  if (rest.starts_with("./")) rest.remove_prefix(2);
  if (path.back() != '/') path += '/';
  return path.append(rest);
}

bool IsCreatable(std::string_view host) {
  for (const char c : HostLeaf(host)) {
    if (static_cast<std::uint8_t>(c) < 0x20 || std::strchr("<>:\"|?*", c) != nullptr) return false;
  }
  return true;
}

DWORD StoreText(std::u16string_view text, wchar_t* buffer, DWORD capacity) {
  if (buffer == nullptr || text.size() >= capacity) return static_cast<DWORD>(text.size() + 1);
  if (!text.empty()) std::memcpy(buffer, text.data(), text.size() * sizeof(wchar_t));
  buffer[text.size()] = 0;
  return static_cast<DWORD>(text.size());
}

}  // namespace qorgen::platform
