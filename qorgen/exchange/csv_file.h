#pragma once

// CQorCSVFile and CQorUTF8CSVFile: text files that are read and written one CQorCSVManager line at a time, in
// the system's legacy Japanese encoding and in UTF-8. Opening, closing, seeking and open flags are those of
// CStdioFile.
//
// A physical line is a record: a quoted field that spans two lines is not rejoined. A line ends at its first
// NUL byte for the splitter; the bytes behind it, up to the line feed, are passed over and the next line
// stands by itself. Lines may be of any length up to 2 GiB; nothing is allocated per line once warm, and the
// memory of an unusually long line is given back soon after it.
//
// A file object belongs to one thread at a time. Every public constructor sets the process-wide locale to
// "japanese", which the conversion of written text follows; in a program with several threads, make the first
// file early.

#include <cstdio>

#include "qorgen/afx/stdio_file.h"
#include "qorgen/afx/string.h"
#include "qorgen/exchange/csv_manager.h"
#include "qorgen/platform/export.h"

class QORGEN_API CQorCSVFile : public CStdioFile {
 public:
  // No file open. The settings are 0, so that there is no delimiter, or as given.
  CQorCSVFile();
  CQorCSVFile(unsigned int delimiterType, CSVMGR_QUOTES quotes, int someAsOne);
  // Opens `path` with CFile's open flags; throws CFileException* on failure.
  CQorCSVFile(const wchar_t* path, unsigned int openFlags);
  CQorCSVFile(const wchar_t* path, unsigned int openFlags, unsigned int delimiterType, CSVMGR_QUOTES quotes,
              int someAsOne);

 protected:
  // Wraps an open stream; leaves the locale alone.
  explicit CQorCSVFile(std::FILE* stream);

  // Writes text as it is, "\n" as CR LF. What the code page lacks becomes its default character, so the rest
  // of the line is never lost. Null, a text of 0x3FFFFFFF characters or more, and one that can't be converted
  // write nothing. A write error throws CFileException*.
  void WriteString(const wchar_t* text) override;

  // Reads the next line, without its line ending, up to its first NUL byte: 1, or 0 at the end of the file
  // and without an open file, with `line` as it was. A last line without a line ending counts. If there is no
  // memory for the line, it is passed over: the result is 1 and `line` stays as it was. Bytes that aren't
  // text become what MultiByteToWideChar makes of them; a character cut off at the end of a line shows as
  // U+30FB. A failing read throws CFileException*, so that an import can't end early unnoticed.
  int ReadString(CString& line) override;

 public:
  // Reads one line into `manager` with the given settings, which are not stored, or with this file's: 1, or 0
  // at the end of the file, and 0 without reading when the delimiter type is 0. A line that ReadString passed
  // over is an empty one here.
  virtual int ReadCSV(CQorCSVManager& manager, unsigned int delimiterType, CSVMGR_QUOTES quotes,
                      int someAsOne);
  virtual int ReadCSV(CQorCSVManager& manager);

  // Writes the line that `manager` makes and a line feed: 1, or 0 without writing when the delimiter type is
  // 0. The delimiter and quote type in force are stored in the manager. The first form marks the line as a
  // comment when the manager's comment marking says so for `lineNumber`; the second never does.
  virtual int WriteCSV(CQorCSVManager& manager, unsigned int delimiterType, CSVMGR_QUOTES quotes,
                       int lineNumber);
  virtual int WriteCSV(CQorCSVManager& manager);

 protected:
  unsigned int delimiterType = 0;
  CSVMGR_QUOTES quotesType = CSVMGR_QUOTES_DOUBLE;
  int someAsOne = 0;

 private:
  int WriteLine(CQorCSVManager& manager, unsigned int delimiterType, CSVMGR_QUOTES quotes,
                const int* lineNumber);

  CString m_line;       // the line in work, kept for its block
  CString m_converted;  // the text that WriteString hands on, likewise
};

class QORGEN_API CQorUTF8CSVFile : public CQorCSVFile {
 public:
  // Wraps a stream that the runtime decodes as UTF-8 ("rt,ccs=UTF-8" and its kin) and rewinds it, so the
  // caller's position doesn't matter. A null stream gives a file that isn't open. Who closes the stream is as
  // for CStdioFile.
  CQorUTF8CSVFile(std::FILE* stream, unsigned int delimiterType, CSVMGR_QUOTES quotes, int someAsOne);

 protected:
  // The base stream's own writer and line reader, the line without its line ending. A byte-order mark at the
  // start of the file is no text; anywhere else it is.
  void WriteString(const wchar_t* text) override;
  int ReadString(CString& line) override;
};
