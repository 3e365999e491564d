#include "qorgen/exchange/export_base.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "qorgen/afx/exception.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/internal/temporary_file.h"
#include "qorgen/files/split_path.h"
#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

namespace {

int CauseOf(const CException* exception) {
  const auto* file = dynamic_cast<const CFileException*>(exception);
  return file != nullptr ? file->m_cause : static_cast<int>(CFileException::genericException);
}

// A stream that was wrapped isn't closed by its file object. False when what was buffered could not be
// written.
bool Close(CQorCSVFile& file, int* cause = nullptr) {
  try {
    if (file.m_pStream != nullptr) file.Close();
    return true;
  } catch (CException* exception) {
    if (cause != nullptr) *cause = CauseOf(exception);
    exception->Delete();
    return false;
  }
}

// In fields: the list of quotes grows with every row up to here, and would grow with the whole file otherwise.
constexpr int kWidestLine = 0x10000;

void Remove(const wchar_t* path) {
  if (CQorFileUtil::IsExistFile(path) != 0) CQorFileUtil::DeleteFileW(path);
}

// Copies a finished table to where it was asked for.
bool HandOver(const wchar_t* from, const wchar_t* to) {
  // A new file would be as private as the one it is copied from; one that is there keeps its permissions.
  const HANDLE made = CreateFileW(to, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (made != INVALID_HANDLE_VALUE) CloseHandle(made);
  if (CQorFileUtil::ChangeCRLFToLF(from, to) != 0) return true;
  if (made != INVALID_HANDLE_VALUE) Remove(to);
  return false;
}

}  // namespace

// An export under way. It holds its manager and its file itself, whatever a hook does to the exporter.
struct CQorExportBase::Run {
  explicit Run(CQorExportBase& exporter) : base(exporter), manager(base.m_manager), file(base.m_file) {}
  ~Run() {
    ::Close(*file);
    try {
      manager->OwnTexts();
    } catch (...) {
      manager->Empty();
    }
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  void FillRow(bool heed_skip) {
    manager->Empty();
    // A hook may change the columns, also in the middle of a row.
    for (int i = 0; base.exportInfo != nullptr && i < base.exportInfoCount; ++i) {
      // A text of its own for each column keeps its block from row to row, whatever the other columns do.
      if (texts.size() == static_cast<std::size_t>(i)) texts.emplace_back();
      CString& text = texts[static_cast<std::size_t>(i)];
      if (qorgen::exchange::IsWastefulText(text, 0)) text.Empty();
      text.SetString(L"", 0);
      CSVMGR_QUOTES field_quotes = base.quotes;
      int output = 1;
      base.GetExportField(base.exportInfo[i], base.row, text, field_quotes, output);
      if (output != 0) {
        manager->BorrowText(text);
        // Entries go by the place of a field in its line, so those behind the widest line are never read.
        if (quote_entries < kWidestLine) {
          manager->AddQuate(field_quotes);
          ++quote_entries;
        }
      }
      if (heed_skip && base.skipOutput != 0) break;
    }
    if (base.row < LONG_MAX) ++base.row;
  }

  bool WriteRow() {
    try {
      const int line = static_cast<int>(std::min<long>(base.row, INT_MAX));
      if (file->WriteCSV(*manager, base.delimiterType, base.quotes, line) != 0) return true;
      base.m_cause = CFileException::genericException;
      return false;
    } catch (CException* exception) {
      base.m_cause = CauseOf(exception);
      exception->Delete();
      return false;
    }
  }

  CQorExportBase& base;
  const std::shared_ptr<CQorCSVManager> manager;
  const std::shared_ptr<CQorCSVFile> file;
  std::vector<CString> texts;
  int quote_entries = 0;
};

CQorExportBase::CQorExportBase() = default;
CQorExportBase::CQorExportBase(const CQorExportBase& other) = default;
CQorExportBase& CQorExportBase::operator=(const CQorExportBase& other) = default;

CQorExportBase::~CQorExportBase() {
  Finalize();
}

void CQorExportBase::InitCommentLine() {
  commentLineOn = 0;
  commentLineLimit = 0;
}

void CQorExportBase::StartProgress(long) {}

int CQorExportBase::IsAbort(long) {
  return 0;
}

void CQorExportBase::EndProgress() {}

int CQorExportBase::Initialize(unsigned int delimiterType_, CSVMGR_QUOTES quotes_) {
  Finalize();
  delimiterType = delimiterType_;
  quotes = quotes_;
  return 1;
}

void CQorExportBase::SetDelimiter(unsigned int delimiterType_) {
  delimiterType = delimiterType_;
}

void CQorExportBase::SetQuotes(CSVMGR_QUOTES quotes_) {
  quotes = quotes_;
}

void CQorExportBase::SetExportInfo(const CQorExportInfo* table, int count) {
  exportInfo = table;
  exportInfoCount = count;
}

int CQorExportBase::Finalize() {
  TakeFile(nullptr);
  m_manager.reset();
  csvManager = nullptr;
  row = 0;
  exportInfo = nullptr;
  exportInfoCount = 0;
  delimiterType = CSVMGR_DELIM_COMMA;
  quotes = CSVMGR_QUOTES_DOUBLE;
  skipOutput = 0;
  commentLineOn = 0;
  commentLineLimit = 0;
  return 1;
}

int CQorExportBase::InitCSVManager() {
  const auto manager = std::make_shared<CQorCSVManager>();
  m_manager = manager;
  csvManager = manager.get();
  InitCommentLine();
  // Also when the hook initialized anew or made an export of its own.
  m_manager = manager;
  csvManager = manager.get();
  if (commentLineOn != 0) csvManager->SetCommentLineInfo(commentLineOn, commentLineLimit);
  return 1;
}

void CQorExportBase::TakeFile(std::unique_ptr<CQorCSVFile> file) {
  m_file.reset();
  if (file != nullptr) {
    m_file = std::shared_ptr<CQorCSVFile>(file.release(), [](CQorCSVFile* last) {
      ::Close(*last);
      delete last;
    });
  }
  csvFile = m_file.get();
}

int CQorExportBase::OpenUtf8(const wchar_t* path, const wchar_t* mode) {
  TakeFile(nullptr);
  qorgen::platform::OwnedStream stream(CQorFileUtil::Open(path, mode, 0));
  if (stream == nullptr) {
    m_cause = CFileException::OsErrorToException(static_cast<LONG>(GetLastError()));
    return 0;
  }
  std::FILE* const opened = stream.get();
  auto file = std::make_unique<CQorUTF8CSVFile>(opened, delimiterType, quotes, 0);
  static_cast<void>(stream.release());
  TakeFile(std::move(file));
  rewind(opened);
  return 1;
}

int CQorExportBase::InitCSVFile(const wchar_t* path, int utf8) {
  try {
    if (utf8 != 0) {
      if (OpenUtf8(path, CQorFileUtil::_modeWtUTF8) == 0) return 0;
      // The first row takes the place of the mark, which a shorter row, or none, would leave behind.
      csvFile->SetLength(0);
      return 1;
    }
    TakeFile(nullptr);
    constexpr unsigned int kFlags = CFile::modeCreate | CFile::modeWrite | CFile::typeText;
    static_assert(kFlags == 0x5001);
    TakeFile(std::make_unique<CQorCSVFile>(path, kFlags, delimiterType, quotes, 0));
    return 1;
  } catch (CException* exception) {
    m_cause = CauseOf(exception);
    exception->Delete();
    TakeFile(nullptr);
    return 0;
  }
}

int CQorExportBase::InitTableauCSVFile(const wchar_t* path) {
  try {
    return OpenUtf8(path, CQorFileUtil::_modeAtUTF8);
  } catch (CException* exception) {
    m_cause = CauseOf(exception);
    exception->Delete();
    TakeFile(nullptr);
    return 0;
  }
}

int CQorExportBase::Write(const wchar_t* path, const wchar_t*, int olFile_) {
  olFile = olFile_;
  m_cause = CFileException::none;
  // Copied, since a hook may change the text that it lies in.
  const CString destination(path);
  CString target(destination);
  if (olFile_ != 0) {
    target = qorgen::files::MakeTemporaryFile(CQorSplitPath(destination).GetConnectFile());
    if (target.IsEmpty()) {
      m_cause = CFileException::OsErrorToException(static_cast<LONG>(GetLastError()));
      return 0;
    }
  }
  if (InitCSVManager() == 0 || InitCSVFile(target, olFile_) == 0) return 0;

  bool written = true;
  {
    Run run(*this);
    StartProgress(row);
    for (bool more = IsExportEnd(row) == 0; more; more = IsExportEnd(row) == 0) {
      run.FillRow(true);
      if (skipOutput != 0) {
        skipOutput = 0;
        continue;
      }
      written = run.WriteRow();
      if (IsAbort(row) != 0 || !written) break;
    }
    EndProgress();
    // The last rows leave their buffer only now.
    if (!::Close(*run.file, &m_cause)) written = false;
  }
  if (!written) {
    Remove(target);
    return 0;
  }
  if (olFile_ != 0 && HandOver(target, destination)) Remove(target);
  return 1;
}

int CQorExportBase::WriteTableau(const wchar_t* path) {
  olFile = 1;
  m_cause = CFileException::none;
  const CString target(path);
  if (InitCSVManager() == 0 || InitTableauCSVFile(target) == 0) return 0;

  bool written = true;
  {
    Run run(*this);
    while (written && IsExportEnd(row) == 0) {
      run.FillRow(false);
      written = run.WriteRow();
    }
    if (!::Close(*run.file, &m_cause)) written = false;
  }
  if (written) return 1;
  Remove(target);
  return 0;
}
