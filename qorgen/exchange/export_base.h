#pragma once

// CQorExportBase: the frame of an export of a table to a delimited text file. The library owns the loop
// (creating the file, rows and columns, quotes, progress and abort, cleaning up after a failure); a class
// derived from it gives the text of one column of one row and says where the data end.
//
//   class Journal : public CQorExportBase {
//     void GetExportField(CQorExportInfo column, long row, CString& text, CSVMGR_QUOTES& quotes,
//                         int& output) override { text = entries[row].Text(column); }
//     int IsExportEnd(long row) override { return row == count ? 1 : 0; }
//   };
//   journal.Initialize(CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE);
//   journal.SetExportInfo(columns, 8);
//   if (!journal.Write(path, nullptr, 0)) ...
//
// The time grows linearly with the table; memory doesn't depend on the number of rows, and once the fields
// have had their usual lengths nothing is allocated for a row. An object belongs to one thread at a time and
// calls its hooks there; making a file sets the process-wide locale, see csv_file.h.

#include <cstdint>
#include <memory>
#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/exchange/csv_file.h"
#include "qorgen/exchange/csv_manager.h"
#include "qorgen/platform/export.h"

// What describes a column: 32 bits of the application's own, handed on to GetExportField and not looked into.
using CQorExportInfo = std::uint32_t;

class QORGEN_API CQorExportBase {
 public:
  // No columns, CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, row 0.
  CQorExportBase();
  // Field by field, of use between exports. A copy shares the manager and the closed file of the last export,
  // which go with the last object that has them.
  CQorExportBase(const CQorExportBase& other);
  CQorExportBase& operator=(const CQorExportBase& other);

  // --- hooks, in the order of their slots ---

 protected:
  // Called once an export. A class that wants comment lines sets commentLineOn and commentLineLimit here:
  // then rows number 1 to commentLineLimit begin with "#". By default neither is on.
  virtual void InitCommentLine();
  // Once at the start of Write, and once at its end however it ends, unless the file could not be made or
  // another hook throws.
  virtual void StartProgress(long row);
  // Asked after each row that was written: nonzero ends the export, which keeps what it has written. `row` is
  // the number of rows passed so far.
  virtual int IsAbort(long row);
  virtual void EndProgress();
  // The text of one column. `text` comes empty, `quotes` as the export's quote type, `output` as 1; clearing
  // `output` leaves the column out of the line. The quote types of the first row stay in force for the whole
  // file, by the position of the field in the line: what later rows set has no effect.
  virtual void GetExportField(CQorExportInfo info, long row, CString& text, CSVMGR_QUOTES& quotes,
                              int& output) = 0;
  // Nonzero when there is no row number `row`. Asked once before each row, so that it may fetch the row.
  virtual int IsExportEnd(long row) = 0;

 public:
  // Forgets everything but the mode of the last export, stores both, and returns 1.
  int Initialize(unsigned int delimiterType, CSVMGR_QUOTES quotes);
  void SetDelimiter(unsigned int delimiterType);
  void SetQuotes(CSVMGR_QUOTES quotes);
  // The columns; the table is borrowed.
  void SetExportInfo(const CQorExportInfo* table, int count);

  // Writes all rows, in the system's multibyte code page with CR LF, or with `olFile` nonzero as an OL file:
  // UTF-8 without a byte-order mark, made under the same name in the temporary folder and copied to `path`.
  // `reserved` isn't read. Rows count on from an earlier export unless Initialize came between.
  //
  // 1 on success, after an abort too. 0 when the file can't be made, and after a failed write, be it one that
  // shows only as the file is closed: then no file is left. (Devices stay where they are.) The delimiter type
  // 0 fails like a write. If an OL file can't be copied to `path`, the result is still 1 and the file stays
  // in the temporary folder. What a hook throws passes through; the file is closed as far as it was written.
  int Write(const wchar_t* path, const wchar_t* reserved, int olFile);

  // Appends all rows to `path` in UTF-8 with CR LF; a new or empty file gets a byte-order mark first. Asks
  // neither for progress nor for abort, and writes skipped rows as far as they were filled. 1 on success. 0
  // when the file can't be opened, and after a failed write: then the whole file is removed, earlier content
  // included.
  int WriteTableau(const wchar_t* path);

  // Why the last Write or WriteTableau gave 0, as the cause of a CFileException: CFileException::diskFull, for one;
  // genericException where that isn't known, CFileException::none after success.
  int GetFailureCause() const { return m_cause; }

  // The mode of the last export: what Write was given, or 1 for WriteTableau.
  int IsOLFile() const { return olFile; }

 protected:
  // Not virtual: an exporter is destroyed as what it is.
  ~CQorExportBase();

  // Deletes manager and file object and sets all other fields but olFile back to their defaults. Returns 1.
  int Finalize();
  // Makes a new manager, without fields and quote types, and calls InitCommentLine. Returns 1.
  int InitCSVManager();
  // Makes the file object, for a multibyte file or with `utf8` nonzero for a UTF-8 file without a byte-order
  // mark: 1, or 0 with no file object. An existing file is replaced.
  int InitCSVFile(const wchar_t* path, int utf8);
  // The same for a UTF-8 file that is appended to.
  int InitTableauCSVFile(const wchar_t* path);

  // Drops the row at hand: set while GetExportField is asked for it, the rest of its columns is passed over
  // and IsAbort isn't asked.
  void SetSkipOutputOn() { skipOutput = 1; }
  void SetSkipOutputOff() { skipOutput = 0; }
  int IsSkipOutput() const { return skipOutput; }

  CQorCSVManager* csvManager = nullptr;  // owned, made anew for every export
  CQorCSVFile* csvFile = nullptr;        // owned; stays, closed, until the next export
  long row = 0;                          // rows passed so far
  const CQorExportInfo* exportInfo = nullptr;
  int exportInfoCount = 0;
  unsigned int delimiterType = CSVMGR_DELIM_COMMA;
  CSVMGR_QUOTES quotes = CSVMGR_QUOTES_DOUBLE;
  int olFile = 0;
  int skipOutput = 0;
  int commentLineOn = 0;
  int commentLineLimit = 0;

 private:
  struct Run;
  void TakeFile(std::unique_ptr<CQorCSVFile> file);
  int OpenUtf8(const wchar_t* path, const wchar_t* mode);

  std::shared_ptr<CQorCSVManager> m_manager;  // of csvManager
  std::shared_ptr<CQorCSVFile> m_file;        // of csvFile
  int m_cause = 0;                            // CFileException::none
};
