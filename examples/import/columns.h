#pragma once

// The description of a record: a text file with one column a line, and the table that the type converter
// takes.

#include <stdexcept>
#include <string>
#include <vector>

#include "qorgen/qorgen.h"

// What is wrong with a description, in one sentence that names the line.
class ColumnsError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A record as the converter stores it: plain bytes, each column at the offset that its table row gives.
struct Columns {
  std::vector<CString> names;                // keeps the texts that the table rows point to
  std::vector<QorTypeCheckInfoTable> table;  // one row a column
  std::vector<bool> bare;                    // written without quotes, one a column
  std::size_t record_size = 0;               // bytes of one record

  // The place of the column with this name, or -1.
  int Find(const wchar_t* name) const;
};

// Reads a description: `name type size[.decimals] [unsigned] [signdigit] [fixed] [check] [bare] [default=N]`
// a line, UTF-8, blank lines skipped, "#" at the start of a word begins a comment. Types: string long short
// byte char double bool date. Throws ColumnsError.
Columns ReadColumns(const std::string& path);
