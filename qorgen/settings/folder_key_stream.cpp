// One value file: opened, read or written, and closed.

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>

#include "qorgen/afx/exception.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/crt.h"
#include "qorgen/settings/folder_key.h"
#include "qorgen/settings/internal/padded_copy.h"

namespace {

// Takes the steps; false if one of them failed.
template <class Steps>
int Succeeds(Steps steps) {
  try {
    steps();
    return 1;
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
    OpenFile(path, CQorFileUtil::_modeRtUTF16LE, 0);
    CString line;
    m_openFile->ReadString(line);
    CloseFile();
    line.Trim();
    if (!line.IsEmpty()) value = _wtol(line);
  });
  m_openFile.reset();
  return value;
}

int CQorRegFileKey::SetLongFile(const wchar_t* path, long value) {
  const int written = Succeeds([&] {
    OpenFile(path, CQorFileUtil::_modeWtUTF16LE, 1);
    CString text;
    text.Format(L"%d", static_cast<int>(value));
    m_openFile->WriteString(text);
    CloseFile();
  });
  m_openFile.reset();
  return written;
}

int CQorRegFileKey::GetStringFile(const wchar_t* path, wchar_t* buffer, int size) {
  const CString former = std::move(m_string);  // the path may lie in it
  const int read = Succeeds([&] {
    OpenFile(path, CQorFileUtil::_modeRtUTF16LE, 0);
    CString line;
    m_openFile->ReadString(line);
    CloseFile();
    qorgen::settings::CopyPadded(buffer, size, line);
  });
  m_openFile.reset();
  return read;
}

const wchar_t* CQorRegFileKey::GetStringFile(const wchar_t* path) {
  const CString former = std::move(m_string);
  Succeeds([&] {
    OpenFile(path, CQorFileUtil::_modeRtUTF16LE, 0);
    CString line;
    m_openFile->ReadString(line);
    CloseFile();
    m_string = line;
  });
  m_openFile.reset();
  return m_string;
}

int CQorRegFileKey::SetStringFile(const wchar_t* path, const wchar_t* value) {
  const int written = Succeeds([&] {
    OpenFile(path, CQorFileUtil::_modeWtUTF16LE, 1);
    m_openFile->WriteString(value);
    CloseFile();
    m_string = value;
  });
  m_openFile.reset();
  return written;
}

int CQorRegFileKey::GetBinaryFile(const wchar_t* path, void* buffer, int size) {
  const std::shared_ptr<unsigned char[]> former = m_binary;  // the buffer may be it
  DeleteBinary();
  const int read = Succeeds([&] {
    OpenFile(path, CQorFileUtil::_modeRb, 0);
    m_openFile->Seek(0, CFile::begin);
    if (buffer != nullptr && size > 0) m_openFile->Read(buffer, static_cast<unsigned int>(size));
    CloseFile();
  });
  m_openFile.reset();
  return read;
}

void* CQorRegFileKey::GetBinaryFile(const wchar_t* path) {
  DeleteBinary();
  Succeeds([&] {
    OpenFile(path, CQorFileUtil::_modeRb, 0);
    const unsigned long long length = m_openFile->Seek(0, CFile::end);
    if (length > INT_MAX) AfxThrowMemoryException();
    const auto block = NewBlock(length);
    m_openFile->Seek(0, CFile::begin);
    const unsigned int read = m_openFile->Read(block.get(), static_cast<unsigned int>(length));
    CloseFile();
    m_binary = block;
    m_binarySize = static_cast<int>(read);
  });
  m_openFile.reset();
  return m_binary.get();
}

int CQorRegFileKey::SetBinaryFile(const wchar_t* path, void* const data, int size) {
  if (size < 0 || (data == nullptr && size > 0)) return 0;
  const std::shared_ptr<unsigned char[]> former = m_binary;  // the data may be it
  DeleteBinary();
  const int written = Succeeds([&] {
    OpenFile(path, CQorFileUtil::_modeWb, 1);
    m_binary = NewBlock(static_cast<std::size_t>(size));
    if (size > 0) std::memcpy(m_binary.get(), data, static_cast<std::size_t>(size));
    m_openFile->Write(m_binary.get(), static_cast<unsigned int>(size));
    CloseFile();
  });
  m_openFile.reset();
  return written;
}
