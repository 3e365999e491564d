// Where a key and its values lie.

#include "qorgen/settings/folder_key.h"

#include <array>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/file_find.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/split_path.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/shell.h"
#include "qorgen/platform/stored_file.h"
#include "qorgen/settings/internal/folder_listing.h"

namespace {

struct ValueType {
  unsigned long type;
  const wchar_t* extension;
};

constexpr std::array kValueTypes = {
    ValueType{REG_DWORD, L".dw"},
    ValueType{REG_SZ, L".sz"},
    ValueType{REG_BINARY, L".dat"},
};

constexpr const wchar_t* kDefaultValue = L"_ROOT";

const wchar_t* ExtensionOf(unsigned long type) {
  for (const ValueType& row : kValueTypes) {
    if (row.type == type) return row.extension;
  }
  return L"";
}

CString StemOf(const wchar_t* name) {
  if (name == nullptr) return kDefaultValue;
  const CQorSplitPath parts(name);
  if (parts.GetFileName() == nullptr) AfxThrowMemoryException();
  return parts.GetFileName();
}

CString RootPath(HKEY root) {
  CString sub;
  if (root == HKEY_LOCAL_MACHINE) sub = CQorFileUtil::ConnectPath(L"KeyVault", L"LM");
  if (root == HKEY_CURRENT_USER) sub = CQorFileUtil::ConnectPath(L"KeyVault", L"CU");
  return CQorFileUtil::ConnectPath(CQorFileUtil::GetCommonDocumentPath(), sub);
}

}  // namespace

CQorRegFileKey::CQorRegFileKey() = default;

CQorRegFileKey::CQorRegFileKey(HKEY root) {
  Construct(RootPath(root));
}

CQorRegFileKey::CQorRegFileKey(const CQorRegFileKey& other) = default;

CQorRegFileKey& CQorRegFileKey::operator=(const CQorRegFileKey& other) = default;

CQorRegFileKey::~CQorRegFileKey() {
  Destruct(1);
}

void CQorRegFileKey::Construct(const wchar_t* path) {
  auto taken = std::make_shared<const CString>(path);  // before its owner goes: it may be the key's own
  Destruct(1);
  m_keyPath = std::move(taken);
}

void CQorRegFileKey::Destruct(int /*close*/) {
  m_keyPath.reset();
  m_subKeyNames.reset();
  m_valueNames.reset();
  m_subKeyCount = 0;
  m_valueCount = 0;
  m_openFile.reset();
  m_string.Empty();
  DeleteBinary();
}

const wchar_t* CQorRegFileKey::GetKeyName() const {
  return m_keyPath != nullptr ? m_keyPath->GetString() : L"";
}

int CQorRegFileKey::Close() {
  return 1;
}

CQorRegFileKey* CQorRegFileKey::OpenSubKey(const wchar_t* name, int create) {
  if (!qorgen::settings::IsKeyName(name)) return nullptr;
  const CString path = CQorFileUtil::ConnectPath(GetKeyName(), name);
  if (create != 0 ? !qorgen::settings::EnsureFolder(path) : !PathIsDirectoryW(path)) return nullptr;
  std::unique_ptr<CQorRegFileKey> key(new CQorRegFileKey);
  key->Construct(path);
  return key.release();
}

int CQorRegFileKey::DeleteSubKey(const wchar_t* name) {
  if (name == nullptr || !qorgen::settings::IsKeyName(name)) return 0;
  return CQorFileUtil::DeleteDirectory(CQorFileUtil::ConnectPath(GetKeyName(), name));
}

int CQorRegFileKey::DeleteValue(const wchar_t* name) {
  if (qorgen::settings::LeavesFolder(name)) return 0;
  CString path = CQorFileUtil::ConnectPath(GetKeyName(), name != nullptr ? name : kDefaultValue);
  path += ExtensionOf(GetValueType(name, nullptr));
  return PathFileExistsW(path) ? CQorFileUtil::DeleteFileW(path) : 1;
}

int CQorRegFileKey::IsExistValue(const wchar_t* name) {
  return GetValueType(name, nullptr) != 0 ? 1 : 0;
}

unsigned long CQorRegFileKey::GetValueType(const wchar_t* name, const wchar_t* baseFolder) {
  if (qorgen::settings::IsDotsOnly(name)) return 0;
  const wchar_t* folder = baseFolder != nullptr ? baseFolder : GetKeyName();
  CFileFind finder;
  int more = finder.FindFile(CQorFileUtil::ConnectPath(folder, StemOf(name) + L".*"));
  while (more) {
    more = finder.FindNextFile();
    if (finder.IsDots() || finder.IsDirectory()) continue;
    const CString found = finder.GetFileName();
    if (qorgen::platform::IsReplacementName(found)) continue;
    for (const ValueType& row : kValueTypes) {
      if (_wcsicmp(PathFindExtensionW(found), row.extension) == 0) return row.type;
    }
    return 0;
  }
  return 0;
}

const wchar_t* CQorRegFileKey::GetValuePath(const wchar_t* name, unsigned long type,
                                            const wchar_t* baseFolder) {
  if (qorgen::settings::IsDotsOnly(name)) {
    m_valuePath.Empty();  // a file that is never there and can't be made
    return m_valuePath;
  }
  // A name or folder may be the former result.
  const CString file = StemOf(name) + ExtensionOf(type);
  m_valuePath = CQorFileUtil::ConnectPath(baseFolder != nullptr ? baseFolder : GetKeyName(), file);
  return m_valuePath;
}
