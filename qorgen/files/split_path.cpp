#include "qorgen/files/split_path.h"

#include <cstddef>
#include <new>

#include "qorgen/platform/crt.h"

namespace {

constexpr std::size_t kPathRoom = 261;
constexpr std::size_t kPartRoom = 257;

wchar_t* MakeText(std::size_t room) {
  return new (std::nothrow) wchar_t[room]();
}

// Copies at most `room` - 1 characters, and terminates.
void Copy(wchar_t* target, std::size_t room, const wchar_t* source) {
  const std::size_t length = wcsnlen(source, room - 1);
  wmemmove(target, source, length);
  target[length] = 0;
}

void Join(wchar_t* target, const wchar_t* first, const wchar_t* second) {
  Copy(target, kPathRoom, first);
  const std::size_t length = wcslen(target);
  Copy(target + length, kPathRoom - length, second);
}

}  // namespace

CQorSplitPath::CQorSplitPath(const wchar_t* path) : m_owners(new (std::nothrow) std::atomic<long>(1)) {
  // Without the count the texts could not be shared safely; then there are none, and Split refuses.
  if (m_owners != nullptr) {
    m_path = MakeText(kPathRoom);
    m_drive = MakeText(kPartRoom);
    m_computerName = MakeText(kPartRoom);
    m_directory = MakeText(kPartRoom);
    m_fileName = MakeText(kPartRoom);
    m_extension = MakeText(kPartRoom);
    m_connectPath = MakeText(kPathRoom);
    m_connectFile = MakeText(kPathRoom);
    // All or none, so that a look at one of them tells.
    if (!HasTexts()) {
      Release();
      m_path = m_drive = m_computerName = m_directory = nullptr;
      m_fileName = m_extension = m_connectPath = m_connectFile = nullptr;
      m_owners = nullptr;
    }
  }
  if (path != nullptr) Split(path);
}

CQorSplitPath::CQorSplitPath(const CQorSplitPath& other) {
  Share(other);
}

CQorSplitPath& CQorSplitPath::operator=(const CQorSplitPath& other) {
  if (this != &other && m_owners != other.m_owners) {
    Release();
    Share(other);
  }
  return *this;
}

CQorSplitPath::~CQorSplitPath() {
  Release();
}

void CQorSplitPath::Share(const CQorSplitPath& other) {
  m_path = other.m_path;
  m_drive = other.m_drive;
  m_computerName = other.m_computerName;
  m_directory = other.m_directory;
  m_fileName = other.m_fileName;
  m_extension = other.m_extension;
  m_connectPath = other.m_connectPath;
  m_connectFile = other.m_connectFile;
  m_owners = other.m_owners;
  if (m_owners != nullptr) m_owners->fetch_add(1, std::memory_order_relaxed);
}

void CQorSplitPath::Release() {
  if (m_owners == nullptr || m_owners->fetch_sub(1, std::memory_order_acq_rel) > 1) return;
  for (const wchar_t* text : {m_path, m_drive, m_computerName, m_directory, m_fileName, m_extension,
                              m_connectPath, m_connectFile}) {
    delete[] text;
  }
  delete m_owners;
}

bool CQorSplitPath::HasTexts() const {
  for (const wchar_t* text : {m_path, m_drive, m_computerName, m_directory, m_fileName, m_extension,
                              m_connectPath, m_connectFile}) {
    if (text == nullptr) return false;
  }
  return true;
}

int CQorSplitPath::Split(const wchar_t* path) {
  if (path == nullptr || m_path == nullptr) return 0;
  Copy(m_path, kPathRoom, path);
  _wsplitpath(m_path, m_drive, m_directory, m_fileName, m_extension);
  if (m_drive[0] == 0 && m_directory[0] == L'\\' && m_directory[1] == L'\\') SplitNetworkPath();
  Join(m_connectPath, m_drive, m_directory);
  Join(m_connectFile, m_fileName, m_extension);
  return 1;
}

void CQorSplitPath::SplitNetworkPath() {
  wchar_t whole[kPartRoom];
  Copy(whole, kPartRoom, m_directory);
  m_directory[0] = 0;
  if (whole[2] == 0) return;

  const wchar_t* machine_end = wcschr(whole + 2, L'\\');
  Copy(m_drive, kPartRoom, whole);
  Copy(m_computerName, kPartRoom, whole + 2);
  if (machine_end == nullptr) return;
  m_drive[machine_end - whole] = 0;
  m_computerName[machine_end - whole - 2] = 0;
  // A path that ends right behind the machine has no directory.
  const bool ends_here = machine_end[1] == 0 && m_fileName[0] == 0 && m_extension[0] == 0;
  if (!ends_here) Copy(m_directory, kPartRoom, machine_end);
}
