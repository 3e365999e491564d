// The mode texts of streams and the table of descriptors.

#include <map>
#include <mutex>
#include <utility>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/crt/dos_error.h"
#include "qorgen/platform/linux/crt/stream.h"

namespace qorgen::platform {
namespace {

// ",ccs=NAME" with blanks anywhere between, up to the end of the text.
bool ParseEncoding(const wchar_t* at, StreamMode& mode) {
  const auto skipBlanks = [&at] {
    while (*at == L' ') ++at;
  };
  skipBlanks();
  if (_wcsnicmp(at, L"ccs", 3) != 0) return false;
  at += 3;
  skipBlanks();
  if (*at != L'=') return false;
  ++at;
  skipBlanks();
  struct Name {
    const wchar_t* text;
    Encoding encoding;
    bool byMark;
  };
  constexpr Name kNames[] = {{L"UTF-8", Encoding::kUtf8, false},
                             {L"UTF-16LE", Encoding::kUtf16, false},
                             {L"UNICODE", Encoding::kUtf16, true}};
  for (const Name& name : kNames) {
    const size_t length = wcslen(name.text);
    if (_wcsnicmp(at, name.text, length) != 0) continue;
    at += length;
    skipBlanks();
    mode.encoding = name.encoding;
    mode.byMark = name.byMark;
    return *at == 0;
  }
  return false;
}

}  // namespace

bool ParseMode(const wchar_t* text, StreamMode& mode) {
  if (text == nullptr) return false;
  const wchar_t* at = text;
  while (*at == L' ') ++at;
  if (*at != L'r' && *at != L'w' && *at != L'a') return false;
  mode.kind = static_cast<char>(*at++);
  bool binary = false;
  // One of each group at most.
  bool translation = false, commit = false, access = false, brief = false, closed = false;
  const auto once = [](bool& seen) { return !std::exchange(seen, true); };
  for (;; ++at) {
    bool good = true;
    switch (*at) {
      case 0:
        mode.encoding = binary ? Encoding::kBinary : Encoding::kAnsi;
        return true;
      case L',':
        return !binary && ParseEncoding(at + 1, mode);
      case L' ':
        break;
      case L'+':
        good = once(mode.update);
        break;
      case L'b':
        good = once(translation);
        binary = true;
        break;
      case L't':
        good = once(translation);
        break;
      case L'c':
      case L'n':
        good = once(commit);
        break;
      case L'S':
      case L'R':
        good = once(access);
        break;
      case L'T':
        good = once(brief);
        break;
      case L'D':
        good = once(mode.temporary);
        break;
      case L'N':
        good = once(closed);
        break;
      case L'x':
        good = mode.kind == 'w' && once(mode.exclusive);
        break;
      default:
        return false;
    }
    if (!good) return false;
  }
}

namespace {

std::mutex g_descriptorMutex;

std::map<int, HANDLE>& Descriptors() {
  // Never destroyed: streams that are still open at exit are flushed after the destructors have run.
  static auto* descriptors = new std::map<int, HANDLE>;
  return *descriptors;
}

}  // namespace

int AddDescriptor(HANDLE handle) {
  const std::lock_guard lock(g_descriptorMutex);
  int number = 3;
  for (const auto& [used, unused] : Descriptors()) {
    if (used != number) break;
    ++number;
  }
  Descriptors().emplace(number, handle);
  return number;
}

HANDLE HandleOfDescriptor(int descriptor) {
  const std::lock_guard lock(g_descriptorMutex);
  const auto found = Descriptors().find(descriptor);
  return found == Descriptors().end() ? nullptr : found->second;
}

HANDLE RemoveDescriptor(int descriptor) {
  const std::lock_guard lock(g_descriptorMutex);
  const auto found = Descriptors().find(descriptor);
  if (found == Descriptors().end()) return nullptr;
  const HANDLE handle = found->second;
  Descriptors().erase(found);
  return handle;
}

}  // namespace qorgen::platform

int _open_osfhandle(intptr_t handle, int) {
  const auto object = reinterpret_cast<HANDLE>(handle);
  if (object == nullptr || object == INVALID_HANDLE_VALUE) {
    errno = EBADF;
    return -1;
  }
  return qorgen::platform::AddDescriptor(object);
}

intptr_t _get_osfhandle(int descriptor) {
  const HANDLE handle = qorgen::platform::HandleOfDescriptor(descriptor);
  if (handle == nullptr) {
    errno = EBADF;
    return -1;
  }
  return reinterpret_cast<intptr_t>(handle);
}

int _close(int descriptor) {
  const HANDLE handle = qorgen::platform::RemoveDescriptor(descriptor);
  if (handle == nullptr) {
    errno = EBADF;
    return -1;
  }
  return CloseHandle(handle) ? 0 : qorgen::platform::FailFromLastError();
}

int _fileno(FILE* stream) {
  if (stream == nullptr) {
    errno = EINVAL;
    return -1;
  }
  const auto* state = qorgen::platform::FindStream(stream);
  return state != nullptr ? state->descriptor : fileno(stream);
}

int _waccess(const wchar_t* path, int mode) {
  if (path == nullptr || (mode & ~6) != 0) {
    errno = EINVAL;
    return -1;
  }
  const DWORD attributes = GetFileAttributesW(path);
  if (attributes == 0xFFFFFFFF) return qorgen::platform::FailFromLastError();
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && (attributes & FILE_ATTRIBUTE_READONLY) != 0 &&
      (mode & 2) != 0) {
    errno = EACCES;
    return -1;
  }
  return 0;
}
