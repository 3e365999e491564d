// The values of a key, by type.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "qorgen/afx/memory.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/shell.h"
#include "qorgen/settings/folder_key.h"
#include "qorgen/settings/internal/folder_listing.h"
#include "qorgen/settings/internal/padded_copy.h"
#include "qorgen/settings/internal/value_file.h"

namespace {

// A `long` carries 32 bits.
long Narrow(long value) {
  return static_cast<std::int32_t>(value);
}

// A default for a value that is missing. Whether it can be stored makes no difference, and a value that somebody else
// has stored meanwhile stays.
void StoreDefault(const wchar_t* path, const wchar_t* text) {
  const std::string bytes = qorgen::settings::StoredText(text);
  static_cast<void>(
      qorgen::settings::WriteValue(path, bytes.data(), bytes.size(), qorgen::settings::Store::kIfMissing));
}

unsigned char* CopyBytes(const void* bytes, std::size_t count) {
  auto* block = static_cast<unsigned char*>(qorgen::AllocateBlock(count));
  if (count > 0) std::memcpy(block, bytes, count);
  return block;
}

// Wide text at any address.
CString TextAt(const unsigned char* data) {
  if (data == nullptr) return CString();
  int length = 0;
  for (const unsigned char* at = data; at[0] != 0 || at[1] != 0; at += sizeof(wchar_t)) ++length;
  CString text;
  std::memcpy(text.GetBuffer(length), data, static_cast<std::size_t>(length) * sizeof(wchar_t));
  text.ReleaseBufferSetLength(length);
  return text;
}

}  // namespace

int CQorRegFileKey::GetInt(const wchar_t* name, int defaultValue) {
  return static_cast<int>(GetLong(name, defaultValue));
}

long CQorRegFileKey::GetLong(const wchar_t* name, long defaultValue) {
  const CString path = GetValuePath(name, REG_DWORD, nullptr);
  if (PathFileExistsW(path)) return GetLongFile(path);
  StoreDefault(path, qorgen::settings::NumberText(defaultValue));
  return Narrow(defaultValue);
}

int CQorRegFileKey::SetInt(const wchar_t* name, int value) {
  return SetLong(name, value);
}

int CQorRegFileKey::SetLong(const wchar_t* name, long value) {
  return SetLongFile(GetValuePath(name, REG_DWORD, nullptr), value);
}

int CQorRegFileKey::GetString(const wchar_t* name, wchar_t* buffer, int bufferSize,
                              const wchar_t* defaultValue) {
  if (buffer == nullptr) return 0;
  const wchar_t* path = GetValuePath(name, REG_SZ, nullptr);
  if (PathFileExistsW(path)) return GetStringFile(path, buffer, bufferSize);
  if (defaultValue == nullptr) return 0;
  qorgen::settings::CopyPadded(buffer, bufferSize, defaultValue);
  return 1;
}

const wchar_t* CQorRegFileKey::GetString(const wchar_t* name, const wchar_t* defaultValue) {
  const wchar_t* path = GetValuePath(name, REG_SZ, nullptr);
  if (PathFileExistsW(path)) return GetStringFile(path);
  if (defaultValue == nullptr) {
    m_string.Empty();
    return nullptr;
  }
  m_string = defaultValue;
  StoreDefault(path, m_string);
  return m_string;
}

int CQorRegFileKey::SetString(const wchar_t* name, const wchar_t* value) {
  return SetStringFile(GetValuePath(name, REG_SZ, nullptr), value);
}

int CQorRegFileKey::GetBinary(const wchar_t* name, void* buffer, int bufferSize) {
  if (buffer == nullptr) return 0;
  const wchar_t* path = GetValuePath(name, REG_BINARY, nullptr);
  return PathFileExistsW(path) ? GetBinaryFile(path, buffer, bufferSize) : 0;
}

void* CQorRegFileKey::GetBinary(const wchar_t* name, int* size) {
  const wchar_t* path = GetValuePath(name, REG_BINARY, nullptr);
  if (!PathFileExistsW(path)) return nullptr;
  void* data = GetBinaryFile(path);
  if (size != nullptr) *size = data != nullptr ? m_binarySize : 0;
  return data;
}

int CQorRegFileKey::SetBinary(const wchar_t* name, void* const data, int size) {
  return SetBinaryFile(GetValuePath(name, REG_BINARY, nullptr), data, size);
}

int CQorRegFileKey::GetValue(const wchar_t* name, unsigned long* type, unsigned char** data, int* size) {
  const CString path = CQorFileUtil::ConnectPath(GetKeyName(), name != nullptr ? name : L"_ROOT");
  const unsigned long found = qorgen::settings::LeavesFolder(name) ? 0 : GetValueType(name, nullptr);
  if (type != nullptr) *type = found;
  if (found == REG_DWORD) {
    const auto value = static_cast<std::int32_t>(GetLongFile(path));
    if (size != nullptr) *size = sizeof value;
    if (data != nullptr) *data = CopyBytes(&value, sizeof value);
  } else if (found == REG_SZ) {
    const wchar_t* text = GetStringFile(path);
    const std::size_t bytes = (wcslen(text) + 1) * sizeof(wchar_t);
    // Twice the bytes: callers have always been given that.
    if (size != nullptr) *size = static_cast<int>(bytes * 2);
    if (data != nullptr) *data = CopyBytes(text, bytes);
  } else if (found == REG_BINARY) {
    const void* bytes = GetBinaryFile(path);
    if (bytes == nullptr) return 0;
    if (size != nullptr) *size = m_binarySize;
    if (data != nullptr) *data = CopyBytes(bytes, static_cast<std::size_t>(m_binarySize));
  }
  return 0;
}

int CQorRegFileKey::SetValue(const wchar_t* name, unsigned long type, unsigned char* data, int size) {
  switch (type) {
    case REG_DWORD: {
      if (data == nullptr) return 0;
      std::int32_t value = 0;
      std::memcpy(&value, data, sizeof value);
      return SetLong(name, value);
    }
    case REG_SZ:
      return SetString(name, TextAt(data));
    case REG_BINARY:
      return SetBinary(name, data, size);
    default:
      return 0;
  }
}
