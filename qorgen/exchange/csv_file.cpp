#include "qorgen/exchange/csv_file.h"

#include <cerrno>
#include <memory>
#include <new>

#include "qorgen/afx/exception.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/platform/codepage.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/held_stream.h"
#include "qorgen/platform/locale.h"

namespace {

using qorgen::exchange::BorrowedText;
using qorgen::exchange::IsWastefulText;
using qorgen::exchange::LineReader;

constexpr std::size_t kMaxWrittenText = 0x3FFFFFFF;

void SetJapaneseLocale() {
  _wsetlocale(LC_ALL, L"japanese");
}

// Decodes a line up to its first NUL byte. Throws CMemoryException* and leaves `line` as it was.
void Decode(const char* bytes, std::size_t length, CString& line) {
  if (const void* nul = std::memchr(bytes, 0, length)) {
    length = static_cast<std::size_t>(static_cast<const char*>(nul) - bytes);
  }
  const int size = static_cast<int>(length);
  if (IsWastefulText(line, size)) {
    CString fresh;
    fresh.Preallocate(size);
    line.Swap(fresh);
  }
  wchar_t* const text = line.GetBuffer(size);
  // No encoding here has more characters than bytes, so a sizing call would only repeat the work.
  const int units = MultiByteToWideChar(CP_ACP, 0, bytes, size + 1, text, size + 1);
  line.ReleaseBufferSetLength(units > 0 ? units - 1 : 0);
}

// The text as it comes back from the thread's code page; false when a conversion fails.
bool ThroughCodePage(const wchar_t* text, CString& result) {
  const std::size_t size = wcslen(text) + 1;
  if (size > kMaxWrittenText) return false;
  const int units = static_cast<int>(size);
  const int room = units * 2;
  char on_stack[1024];
  std::unique_ptr<char[]> large;
  if (static_cast<std::size_t>(room) > sizeof on_stack) {
    large.reset(new (std::nothrow) char[static_cast<std::size_t>(room)]);
    if (large == nullptr) return false;
  }
  char* const bytes = large != nullptr ? large.get() : on_stack;
  const int count = WideCharToMultiByte(CP_THREAD_ACP, 0, text, units, bytes, room, nullptr, nullptr);
  if (count <= 0) return false;
  wchar_t* const back = result.GetBuffer(count);
  const int length = MultiByteToWideChar(CP_THREAD_ACP, 0, bytes, count, back, count + 1);
  result.ReleaseBufferSetLength(length > 0 ? length - 1 : 0);
  return length > 0;
}

}  // namespace

CQorCSVFile::CQorCSVFile() {
  SetJapaneseLocale();
}

CQorCSVFile::CQorCSVFile(unsigned int delimiterType_, CSVMGR_QUOTES quotes, int someAsOne_)
    : delimiterType(delimiterType_), quotesType(quotes), someAsOne(someAsOne_) {
  SetJapaneseLocale();
}

CQorCSVFile::CQorCSVFile(const wchar_t* path, unsigned int openFlags) : CStdioFile(path, openFlags) {
  SetJapaneseLocale();
}

CQorCSVFile::CQorCSVFile(const wchar_t* path, unsigned int openFlags, unsigned int delimiterType_,
                         CSVMGR_QUOTES quotes, int someAsOne_)
    : CStdioFile(path, openFlags), delimiterType(delimiterType_), quotesType(quotes), someAsOne(someAsOne_) {
  SetJapaneseLocale();
}

CQorCSVFile::CQorCSVFile(std::FILE* stream) : CStdioFile(stream) {}

int CQorCSVFile::ReadString(CString& line) {
  if (m_pStream == nullptr) return 0;
  switch (m_reader.Read(m_pStream)) {
    case LineReader::Result::kEnd:
      return 0;
    case LineReader::Result::kFailed: {
      const int error = errno;
      clearerr(m_pStream);
      CFileException::ThrowErrno(error != 0 ? error : EIO, GetFilePath());
      return 0;
    }
    case LineReader::Result::kNoMemory:
      return 1;
    case LineReader::Result::kLine:
      break;
  }
  try {
    Decode(m_reader.Text(), m_reader.Length(), line);
    m_readLength = line.GetLength();
  } catch (CMemoryException* exception) {
    exception->Delete();
  }
  return 1;
}

void CQorCSVFile::WriteString(const wchar_t* text) {
  if (text == nullptr) return;
  BorrowedText converted(m_converted);
  bool complete = false;
  try {
    complete = ThroughCodePage(text, *converted);
  } catch (CMemoryException* exception) {
    exception->Delete();
  }
  if (complete) CStdioFile::WriteString(*converted);
  if (IsWastefulText(*converted, 0)) (*converted).Empty();
}

int CQorCSVFile::ReadCSV(CQorCSVManager& manager, unsigned int delimiterType_, CSVMGR_QUOTES quotes,
                         int someAsOne_) {
  if (delimiterType_ == 0) return 0;
  BorrowedText line(m_line);
  // The block still holds an earlier line, which a reader that gives up half-way would leave to be read
  // again.
  (*line).SetString(nullptr, 0);
  m_readLength = -1;
  if (ReadString(*line) == 0) return 0;
  // Lines of an override may hold anything.
  if (m_readLength != (*line).GetLength()) {
    const int length = static_cast<int>(wcslen(*line));
    if (length != (*line).GetLength()) (*line).Truncate(length);
  }
  manager.SwapElements(*line, delimiterType_, quotes, someAsOne_);
  return 1;
}

int CQorCSVFile::ReadCSV(CQorCSVManager& manager) {
  return ReadCSV(manager, delimiterType, quotesType, someAsOne);
}

int CQorCSVFile::WriteLine(CQorCSVManager& manager, unsigned int delimiterType_, CSVMGR_QUOTES quotes,
                           const int* lineNumber) {
  if (delimiterType_ == 0) return 0;
  manager.SetDelimiterType(delimiterType_);
  manager.SetQuatesType(quotes);
  BorrowedText line(m_line);
  manager.MakeString(*line);
  if (lineNumber != nullptr) manager.AdjustCommentLine(*line, *lineNumber);
  (*line).AppendChar(L'\n');
  WriteString(*line);
  if (IsWastefulText(*line, 0)) (*line).Empty();
  return 1;
}

int CQorCSVFile::WriteCSV(CQorCSVManager& manager, unsigned int delimiterType_, CSVMGR_QUOTES quotes,
                          int lineNumber) {
  return WriteLine(manager, delimiterType_, quotes, &lineNumber);
}

int CQorCSVFile::WriteCSV(CQorCSVManager& manager) {
  return WriteLine(manager, delimiterType, quotesType, nullptr);
}

CQorUTF8CSVFile::CQorUTF8CSVFile(std::FILE* stream, unsigned int delimiterType_, CSVMGR_QUOTES quotes,
                                 int someAsOne_)
    : CQorCSVFile(stream) {
  delimiterType = delimiterType_;
  quotesType = quotes;
  someAsOne = someAsOne_;
  if (stream != nullptr) {
    qorgen::platform::HoldStream(stream, qorgen::platform::HeldText::kUnicode);
    qorgen::platform::SettleStream(stream);
    rewind(stream);
  }
  SetJapaneseLocale();
}

int CQorUTF8CSVFile::ReadString(CString& line) {
  if (m_pStream == nullptr) return 0;
  if (IsWastefulText(line, line.GetLength())) line.Empty();
  const int result = CStdioFile::ReadString(line);
  int length = line.GetLength();
  const wchar_t* const text = line;
  // A line feed can only be its last character.
  if (result != 0 && length != 0 && text[length - 1] == L'\n') {
    while (length != 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) --length;
    line.Truncate(length);
  }
  return result;
}

void CQorUTF8CSVFile::WriteString(const wchar_t* text) {
  CStdioFile::WriteString(text);
}
