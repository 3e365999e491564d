#include "qorgen/files/create_path.h"

#include <cstddef>

#include "qorgen/platform/crt.h"

namespace {

constexpr std::size_t kRoom = 1041;

std::size_t LengthOf(const wchar_t* part) {
  return part != nullptr ? wcslen(part) : 0;
}

}  // namespace

CQorCreatePath::CQorCreatePath(const wchar_t* drive, const wchar_t* directory, const wchar_t* fileName,
                               const wchar_t* extension) {
  // Each of the four parts may get one character added to it. _wmakepath itself knows no limit on every host.
  const std::size_t length =
      LengthOf(drive) + LengthOf(directory) + LengthOf(fileName) + LengthOf(extension) + 4;
  if (length >= kRoom) return;

  wchar_t path[kRoom] = {};
  if (drive != nullptr && drive[0] == L'\\' && drive[1] == L'\\') {
    wchar_t folder[kRoom] = {};
    _wmakepath(folder, nullptr, drive, directory, nullptr);
    // A folder that was refused for its length must not turn into the bare name.
    if (folder[0] == 0) return;
    _wmakepath(path, nullptr, folder, fileName, extension);
  } else {
    _wmakepath(path, drive, directory, fileName, extension);
  }
  m_path = path;
}
