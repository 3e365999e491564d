#include "qorgen/files/internal/file_version.h"

#include <new>

#include "qorgen/files/file_util.h"
#include "qorgen/platform/shell.h"

namespace {

constexpr UINT kTranslationEntry = 4;  // a language and a code page

bool LoadFixedInfo(CQorFileVerInfo& info, const wchar_t* path, const VS_FIXEDFILEINFO*& fixed) {
  CString file(path);
  if (file.IsEmpty()) file = CQorFileUtil::GetModuleFileNameW(nullptr);
  if (file.IsEmpty() || !CQorFileUtil::IsExistFile(file) || !info.Load(file)) return false;
  fixed = info.GetFixedInfo();
  return fixed != nullptr;
}

}  // namespace

CQorFileVerInfo::~CQorFileVerInfo() {
  Drop();
}

void CQorFileVerInfo::Drop() {
  ::operator delete(m_block);
  m_block = nullptr;
  m_blockSize = 0;
  m_translation = nullptr;
  m_translationLength = 0;
}

int CQorFileVerInfo::Load(const wchar_t* path) {
  Drop();
  if (!PathFileExistsW(path)) return 0;
  DWORD handle = 0;
  m_blockSize = GetFileVersionInfoSizeW(path, &handle);
  if (m_blockSize == 0) return 0;
  m_block = static_cast<BYTE*>(::operator new(m_blockSize, std::nothrow));
  if (m_block == nullptr || !GetFileVersionInfoW(path, 0, m_blockSize, m_block)) {
    Drop();
    return 0;
  }
  const bool listed =
      VerQueryValueW(m_block, L"\\VarFileInfo\\Translation", &m_translation, &m_translationLength) &&
      m_translationLength >= kTranslationEntry;
  if (!listed) Drop();
  return listed ? 1 : 0;
}

const VS_FIXEDFILEINFO* CQorFileVerInfo::GetFixedInfo() const {
  void* value = nullptr;
  UINT length = 0;
  if (m_block == nullptr || !VerQueryValueW(m_block, L"\\", &value, &length)) return nullptr;
  return length >= sizeof(VS_FIXEDFILEINFO) ? static_cast<const VS_FIXEDFILEINFO*>(value) : nullptr;
}

int CQorFileUtil::GetFileVer(unsigned long& versionMS, unsigned long& versionLS, const wchar_t* path) {
  versionMS = 0;
  versionLS = 0;
  CQorFileVerInfo info;
  const VS_FIXEDFILEINFO* fixed = nullptr;
  if (!LoadFixedInfo(info, path, fixed)) return 0;
  versionMS = fixed->dwFileVersionMS;
  versionLS = fixed->dwFileVersionLS;
  return 1;
}

int CQorFileUtil::GetProductVer(unsigned long& versionMS, unsigned long& versionLS, const wchar_t* path) {
  versionMS = 0;
  versionLS = 0;
  CQorFileVerInfo info;
  const VS_FIXEDFILEINFO* fixed = nullptr;
  if (!LoadFixedInfo(info, path, fixed)) return 0;
  versionMS = fixed->dwProductVersionMS;
  versionLS = fixed->dwProductVersionLS;
  return 1;
}
