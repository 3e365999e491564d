#include "qorgen/exchange/space_file.h"

#include "qorgen/exchange/internal/legacy_text.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/platform/crt.h"

using qorgen::exchange::BorrowedText;
using qorgen::exchange::IsWastefulText;
using qorgen::exchange::LegacyLine;

CQorSpaceFile::CQorSpaceFile() {
  qorgen::exchange::SetJapaneseLocale();
}

CQorSpaceFile::CQorSpaceFile(const wchar_t* path, unsigned int openFlags) : CStdioFile(path, openFlags) {
  qorgen::exchange::SetJapaneseLocale();
}

int CQorSpaceFile::Write(CQorSpaceOneLine& line) {
  BorrowedText text(m_line);
  line.MakeString(*text);
  (*text).AppendChar(L'\n');
  WriteString(*text);
  if (IsWastefulText(*text, 0)) (*text).Empty();
  return 1;
}

void CQorSpaceFile::WriteString(const wchar_t* text) {
  if (text == nullptr || qorgen::exchange::PutLegacyText(m_pStream, text, wcslen(text), m_strFileName))
    return;
  BorrowedText converted(m_converted);
  if (qorgen::exchange::ThroughCodePage(text, *converted)) CStdioFile::WriteString(*converted);
  if (IsWastefulText(*converted, 0)) (*converted).Empty();
}

int CQorSpaceFile::ReadString(CString& line) {
  if (m_pStream == nullptr) return 0;
  const LegacyLine result = qorgen::exchange::ReadLegacyLine(m_pStream, line);
  if (result == LegacyLine::kFailed) ThrowReadError();
  return result != LegacyLine::kEnd;
}
