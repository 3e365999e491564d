#pragma once

// One pass over the file: good rows are handed out one after another, bad ones are reported, and all are
// counted.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "code_page.h"
#include "columns.h"
#include "options.h"
#include "progress.h"
#include "report.h"
#include "rows.h"

// Why a row isn't written into a file of code page 932.
inline constexpr char kOutside932[] = "コードページ932にない文字があります。";

class RowReader {
 public:
  struct Counts {
    long rows = 0, ok = 0, error = 0, skip = 0;
  };

  RowReader(CQorImportManager& manager, const Options& options, Columns& columns, RowConverter& converter);

  // The next good row; false at the end of the file, and once `stop` says so.
  bool Next(const std::function<bool()>& stop);

  // The row at hand.
  const unsigned char* Record() const { return record_.data(); }
  bool IsEmpty(int column) const { return converter_.IsEmpty(column); }
  // Reports that the row at hand isn't written, for its value in a column.
  void NotWritten(int column, const char* why);
  // The column of the row at hand whose text code page 932 lacks a character of, or -1.
  int FindOutside932();

  // Draws the progress bar anew when it is time, and takes it away.
  void ShowProgress();
  void HideProgress() { progress_.Hide(); }

  // Prints what the report still holds, and the totals.
  Counts Finish();

 private:
  std::uint64_t BytesUpToNow();

  CQorImportManager& manager_;
  const Options& options_;
  const Columns& columns_;
  RowConverter& converter_;
  RowReport report_;
  AccountTotals totals_;
  Progress progress_;
  std::vector<unsigned char> record_;
  Counts counts_;
  std::optional<CodePage932> code_page_;  // once it was asked for
  // The bytes of the file are reckoned from a row now and then: exact enough for a bar.
  std::uint64_t samples_ = 0, sampled_ = 0;
};
