// One value file: read, or written in one step.

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "qorgen/afx/exception.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/crt.h"
#include "qorgen/settings/folder_key.h"
#include "qorgen/settings/internal/padded_copy.h"
#include "qorgen/settings/internal/value_file.h"

namespace {

using qorgen::settings::ReadFirstLine;
using qorgen::settings::ValueReader;

// Takes the steps; 0 if one of them failed.
template <class Steps>
int Succeeds(Steps steps) {
  try {
    return steps() ? 1 : 0;
  } catch (CException* failure) {
    failure->Delete();
  } catch (const std::exception&) {
    // no memory
  }
  return 0;
}

std::shared_ptr<unsigned char[]> NewBlock(std::size_t bytes) {
  return std::shared_ptr<unsigned char[]>(new unsigned char[std::max<std::size_t>(bytes, 1)]);
}

bool StoreText(const wchar_t* path, const wchar_t* text) {
  const std::string bytes = qorgen::settings::StoredText(text);
  return qorgen::settings::WriteValue(path, bytes.data(), bytes.size());
}

// A CStdioFile made over a stream doesn't close it by itself.
void End(CStdioFile* file) {
  file->Abort();
  delete file;
}

}  // namespace

int CQorRegFileKey::OpenFile(const wchar_t* path, const wchar_t* mode, int createFolder) {
  CloseFile();
  errno = 0;
  qorgen::platform::OwnedStream stream(CQorFileUtil::Open(path, mode, createFolder));
  if (stream == nullptr) {
    const int error = errno;
    CFileException::ThrowErrno(error, path);
    // A folder that can't be made isn't always a matter of the runtime.
    AfxThrowFileException(CFileException::genericException, 0, path);
  }
  auto* file = new CStdioFile(stream.get());
  static_cast<void>(stream.release());
  m_openFile.reset(file, End);
  return 1;
}

void CQorRegFileKey::CloseFile() {
  const std::shared_ptr<CStdioFile> file = std::move(m_openFile);
  if (file == nullptr) return;
  file->Flush();
  file->Close();
}

void CQorRegFileKey::DeleteBinary() {
  m_binary.reset();
  m_binarySize = 0;
}

long CQorRegFileKey::GetLongFile(const wchar_t* path) {
  long value = 0;
  Succeeds([&] {
    CloseFile();
    CString line;
    if (!ReadFirstLine(path, line)) return false;
    line.Trim();
    if (!line.IsEmpty()) value = _wtol(line);
    return true;
  });
  return value;
}

int CQorRegFileKey::SetLongFile(const wchar_t* path, long value) {
  return Succeeds([&] {
    CloseFile();
    return StoreText(path, qorgen::settings::NumberText(value));
  });
}

int CQorRegFileKey::GetStringFile(const wchar_t* path, wchar_t* buffer, int size) {
  const CString former = std::move(m_string);  // the path may lie in it
  return Succeeds([&] {
    CloseFile();
    CString line;
    if (!ReadFirstLine(path, line)) return false;
    qorgen::settings::CopyPadded(buffer, size, line);
    return true;
  });
}

const wchar_t* CQorRegFileKey::GetStringFile(const wchar_t* path) {
  const CString former = std::move(m_string);
  Succeeds([&] {
    CloseFile();
    CString line;
    if (!ReadFirstLine(path, line)) return false;
    m_string = line;
    return true;
  });
  return m_string;
}

int CQorRegFileKey::SetStringFile(const wchar_t* path, const wchar_t* value) {
  return Succeeds([&] {
    CloseFile();
    if (!StoreText(path, value)) return false;
    m_string = value;
    return true;
  });
}

int CQorRegFileKey::GetBinaryFile(const wchar_t* path, void* buffer, int size) {
  const std::shared_ptr<unsigned char[]> former = m_binary;  // the buffer may be it
  DeleteBinary();
  return Succeeds([&] {
    CloseFile();
    ValueReader file(path);
    std::size_t read = 0;
    return file.IsOpen() &&
           (buffer == nullptr || size <= 0 || file.Read(buffer, static_cast<std::size_t>(size), read));
  });
}

void* CQorRegFileKey::GetBinaryFile(const wchar_t* path) {
  DeleteBinary();
  Succeeds([&] {
    CloseFile();
    ValueReader file(path);
    unsigned long long length = 0;
    if (!file.Size(length) || length > INT_MAX) return false;
    const auto block = NewBlock(length);
    std::size_t read = 0;
    if (!file.Read(block.get(), length, read)) return false;
    m_binary = block;
    m_binarySize = static_cast<int>(read);
    return true;
  });
  return m_binary.get();
}

int CQorRegFileKey::SetBinaryFile(const wchar_t* path, void* const data, int size) {
  if (size < 0 || (data == nullptr && size > 0)) return 0;
  const std::shared_ptr<unsigned char[]> former = m_binary;  // the data may be it
  DeleteBinary();
  return Succeeds([&] {
    CloseFile();
    m_binary = NewBlock(static_cast<std::size_t>(size));
    if (size > 0) std::memcpy(m_binary.get(), data, static_cast<std::size_t>(size));
    return qorgen::settings::WriteValue(path, m_binary.get(), static_cast<std::size_t>(size));
  });
}
