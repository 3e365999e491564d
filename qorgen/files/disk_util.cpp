#include "qorgen/files/disk_util.h"

#include <cstdint>

#include "qorgen/afx/memory.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/filesystem.h"

namespace {

constexpr DWORD kListLimit = 260;

}  // namespace

CQorDiskUtil::CQorDiskUtil() = default;

CQorDiskUtil::~CQorDiskUtil() = default;

int CQorDiskUtil::Initialize() {
  if (!m_roots.IsEmpty()) Finalize();
  // Two terminators stay behind whatever the call writes.
  wchar_t list[kListLimit + 2] = {};
  const DWORD length = GetLogicalDriveStringsW(kListLimit, list);
  if (length == 0) return 0;
  for (const wchar_t* root = list; *root != 0; root += wcslen(root) + 1) {
    // The place comes first, so that a text is never without an owner.
    const std::intptr_t index = m_roots.Add(nullptr);
    m_roots.SetAt(index, qorgen::CopyText(root, wcslen(root)));
  }
  return 1;
}

void CQorDiskUtil::Finalize() {
  for (std::intptr_t i = 0; i < m_roots.GetSize(); ++i) QorFree(const_cast<wchar_t*>(m_roots.GetAt(i)));
  m_roots.RemoveAll();
}

int CQorDiskUtil::GetCount() const {
  return static_cast<int>(m_roots.GetSize());
}

const wchar_t* CQorDiskUtil::GetString(int index) const {
  return m_roots.GetAt(index);
}

unsigned int CQorDiskUtil::GetType(int index) const {
  return GetDriveTypeW(m_roots.GetAt(index));
}

int CQorDiskUtil::GetBytes(int index, ULARGE_INTEGER* available, ULARGE_INTEGER* total,
                           ULARGE_INTEGER* free) {
  ULARGE_INTEGER to_user = {};
  ULARGE_INTEGER in_all = {};
  ULARGE_INTEGER free_in_all = {};
  if (!GetDiskFreeSpaceExW(m_roots.GetAt(index), &to_user, &in_all, &free_in_all)) return 0;
  if (available != nullptr) *available = to_user;
  if (total != nullptr) *total = in_all;
  if (free != nullptr) *free = free_in_all;
  return 1;
}
