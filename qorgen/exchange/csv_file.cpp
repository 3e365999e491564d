#include "qorgen/exchange/csv_file.h"

#include <typeinfo>

#include "qorgen/exchange/internal/legacy_text.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/text_stream.h"

namespace {

using qorgen::exchange::BorrowedText;
using qorgen::exchange::IsWastefulText;
using qorgen::exchange::LegacyLine;
using qorgen::exchange::PutLegacyText;
using qorgen::exchange::ReadLegacyLine;
using qorgen::exchange::SetJapaneseLocale;
using qorgen::exchange::ThroughCodePage;

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
  const LegacyLine result = ReadLegacyLine(m_pStream, line);
  if (result == LegacyLine::kFailed) ThrowReadError();
  return result != LegacyLine::kEnd;
}

void CQorCSVFile::WriteString(const wchar_t* text) {
  if (text == nullptr || PutLegacyText(m_pStream, text, wcslen(text), m_strFileName)) return;
  BorrowedText converted(m_converted);
  if (ThroughCodePage(text, *converted)) CStdioFile::WriteString(*converted);
  if (IsWastefulText(*converted, 0)) (*converted).Empty();
}

int CQorCSVFile::ReadCSV(CQorCSVManager& manager, unsigned int delimiterType_, CSVMGR_QUOTES quotes,
                         int someAsOne_) {
  if (delimiterType_ == 0) return 0;
  BorrowedText line(m_line);
  // The block still holds an earlier line, which a reader that gives up half-way would leave to be read
  // again.
  (*line).SetString(nullptr, 0);
  if (ReadString(*line) == 0) return 0;
  // The reader of this class has cut the line at its first U+0000; another one needn't have.
  if (typeid(*this) != typeid(CQorCSVFile)) (*line).Truncate(static_cast<int>(wcslen(*line)));
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
  if (wcslen(*line) != static_cast<std::size_t>((*line).GetLength())) {
    manager.CutAtZeros();
    manager.MakeString(*line);
  }
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
  return CStdioFile::ReadString(line);
}

void CQorUTF8CSVFile::WriteString(const wchar_t* text) {
  CStdioFile::WriteString(text);
}
