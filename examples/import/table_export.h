#pragma once

// The good rows of an import as a delimited text file: the library's export frame over a reader, so that rows
// are written as they are read and none is kept.

#include <string>
#include <vector>

#include "qorgen/qorgen.h"

#include "columns.h"
#include "interrupt.h"
#include "options.h"
#include "reader.h"
#include "target_file.h"

class TableExport : public CQorExportBase {
 public:
  TableExport(RowReader& reader, const Columns& columns, const Options& options);

  // Writes the rows; what is wrong in one sentence, or the empty text. Ctrl-C ends the work, which isn't wrong. Throws
  // CFileException* when they can't be written.
  std::string Run(TargetFile& target);

  long Rows() const { return row; }
  bool WasStopped() const { return interrupt_.IsRequested(); }

 protected:
  void GetExportField(CQorExportInfo column, long at, CString& text, CSVMGR_QUOTES& field_quotes,
                      int& output) override;
  // Reads the next row that can be written.
  int IsExportEnd(long at) override;
  int IsAbort(long at) override;
  void EndProgress() override;

 private:
  // The column that wouldn't be read again as it is written, or -1.
  int FindUnreadable() const;

  RowReader& reader_;
  const Columns& columns_;
  const Options& options_;
  const Interrupt interrupt_;
  std::vector<CQorExportInfo> places_;
  std::vector<CString> texts_;  // the fields of the row at hand
};
