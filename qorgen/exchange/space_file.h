#pragma once

// CQorSpaceFile: a text file of fixed-width lines in the system's legacy Japanese encoding. Opening, closing,
// seeking and open flags are those of CStdioFile. A file object belongs to one thread at a time; both
// constructors set the process-wide locale to "japanese", which the conversion of written text follows.

#include "qorgen/afx/stdio_file.h"
#include "qorgen/afx/string.h"
#include "qorgen/exchange/space_one_line.h"
#include "qorgen/platform/export.h"

class QORGEN_API CQorSpaceFile : public CStdioFile {
 public:
  // No file open, or `path` opened with CFile's open flags; throws CFileException* on failure.
  CQorSpaceFile();
  CQorSpaceFile(const wchar_t* path, unsigned int openFlags);

 private:
  // As those of CQorCSVFile: characters that the code page lacks become its default character, a line comes
  // without its ending.
  void WriteString(const wchar_t* text) override;
  int ReadString(CString& line) override;

 public:
  // Writes the line, with CR LF behind it, and gives 1. A write error throws CFileException*. Nothing is
  // allocated per line once warm.
  virtual int Write(CQorSpaceOneLine& line);
  using CStdioFile::Write;

 private:
  CString m_line;       // the line in work, kept for its block
  CString m_converted;  // the text that is written, likewise
};
