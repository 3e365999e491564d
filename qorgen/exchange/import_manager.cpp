#include "qorgen/exchange/import_manager.h"

#include <cerrno>
#include <utility>

#include "qorgen/afx/exception.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/crt.h"

namespace {

void CloseQuietly(CQorCSVFile& file) noexcept {
  try {
    if (file.m_pStream != nullptr) file.Close();
  } catch (CException* exception) {
    exception->Delete();
  }
}

}  // namespace

// What the copies of a manager share. A stream that was wrapped isn't closed by its file object, so this
// closes it.
struct CQorImportManager::OpenFile {
  CQorCSVFile* file = nullptr;
  bool closed = false;

  OpenFile() = default;
  ~OpenFile() {
    if (file != nullptr) CloseQuietly(*file);
    delete file;
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
};

CQorImportManager::CQorImportManager() = default;

CQorImportManager::CQorImportManager(const CQorImportManager& other) {
  *this = other;
}

CQorImportManager& CQorImportManager::operator=(const CQorImportManager& other) {
  if (this == &other) return *this;
  AdoptFile();
  other.AdoptFile();
  if (m_owner != nullptr && m_owner != other.m_owner) m_replaced.push_back(m_owner);
  m_owner = other.m_owner;
  fileSize = other.fileSize;
  file = other.file;
  converter = other.converter;
  readString = other.readString;
  csvManager = other.csvManager;
  return *this;
}

CQorImportManager::~CQorImportManager() {
  Finalize();
}

int CQorImportManager::OpenText(const wchar_t* path, CQorTypeConverter* converter_,
                                unsigned int delimiterType, CSVMGR_QUOTES quotes) {
  if (path == nullptr || converter_ == nullptr || CQorFileUtil::IsExistFile(path) == 0) return 0;
  TakeFile(std::make_unique<CQorCSVFile>(path, 0, delimiterType, quotes, 0), converter_);
  return 1;
}

READSTATUS CQorImportManager::ReadRow(void* record, unsigned char checkCount) {
  if (!IsOpen() || converter == nullptr) return READSTATUS_ERROR;
  if (file->ReadCSV(csvManager) == 0) return READSTATUS_EOF;
  const CString& line = csvManager.readString;
  // The file fills the block of the line before the last one, which has no other owner any more.
  readString = line;
  if (!line.IsEmpty() && line[0] == L'#') return READSTATUS_SKIP;
  if (csvManager.GetCount() == 0) return READSTATUS_SKIP;
  return converter->Convert(csvManager, record, checkCount) != 0 ? READSTATUS_OK : READSTATUS_ERROR;
}

READSTATUS CQorImportManager::ReadRowOnly(void* record, unsigned char checkCount) {
  if (!IsOpen()) return READSTATUS_ERROR;
  const auto position = file->GetPosition();
  const READSTATUS status = ReadRow(record, checkCount);
  if (IsOpen()) file->Seek(static_cast<long long>(position), CFile::begin);
  return status;
}

void CQorImportManager::MoveFirst() {
  if (IsOpen()) file->SeekToBegin();
}

int CQorImportManager::IsEOF() {
  return !IsOpen() || file->GetPosition() == fileSize ? 1 : 0;
}

void CQorImportManager::Close() {
  AdoptFile();
  m_replaced.clear();
  if (m_owner == nullptr) return;
  const std::shared_ptr<OpenFile> owner = std::move(m_owner);
  m_owner = nullptr;
  file = nullptr;
  if (std::exchange(owner->closed, true)) return;
  if (owner->file->m_pStream != nullptr) owner->file->Close();
}

CString CQorImportManager::GetReadString() {
  return readString;
}

int CQorImportManager::Finalize() {
  AdoptFile();
  readString.Empty();
  converter = nullptr;
  fileSize = 0;
  file = nullptr;
  m_owner = nullptr;
  m_replaced.clear();
  return 1;
}

void CQorImportManager::TakeFile(std::unique_ptr<CQorCSVFile> opened, CQorTypeConverter* converter_) {
  AdoptFile();
  const unsigned long long size = opened->GetLength();
  file = opened.release();
  AdoptFile();
  fileSize = size;
  converter = converter_;
}

bool CQorImportManager::IsOpen() const {
  AdoptFile();
  return file != nullptr && !m_owner->closed;
}

// `file` is open to derived classes, so a change of it is noticed here and the new object taken over.
void CQorImportManager::AdoptFile() const {
  if (file == (m_owner != nullptr ? m_owner->file : nullptr)) return;
  std::shared_ptr<OpenFile> owner;
  if (file != nullptr) {
    owner = std::make_shared<OpenFile>();
    m_replaced.reserve(m_replaced.size() + 1);
    owner->file = file;
  }
  if (m_owner != nullptr) m_replaced.push_back(std::move(m_owner));
  m_owner = std::move(owner);
}

CQorUTF8ImportManager::CQorUTF8ImportManager() = default;

int CQorUTF8ImportManager::OpenText(const wchar_t* path, CQorTypeConverter* converter_,
                                    unsigned int delimiterType, CSVMGR_QUOTES quotes) {
  if (path == nullptr || converter_ == nullptr || CQorFileUtil::IsExistFile(path) == 0) return 0;
  qorgen::platform::OwnedStream stream(CQorFileUtil::Open(path, CQorFileUtil::_modeRtUTF8, 0));
  if (stream == nullptr) CFileException::ThrowErrno(errno, path);
  auto opened = std::make_unique<CQorUTF8CSVFile>(stream.get(), delimiterType, quotes, 0);
  stream.release();
  TakeFile(std::move(opened), converter_);
  return 1;
}
