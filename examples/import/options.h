#pragma once

// The command line of the example.

#include <stdexcept>
#include <string>

#include "qorgen/qorgen.h"

class OptionsError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Options {
  std::string file;
  std::string columns;
  bool utf8 = false;            // the file is UTF-8, not code page 932
  unsigned int delimiters = 0;  // CSVMGR_DELIM_ flags
  CSVMGR_QUOTES quotes = CSVMGR_QUOTES_DOUBLE;
  bool check_count = true;  // a row must have as many fields as there are columns

  std::string export_file;  // where the good rows are written as delimited text; empty for nowhere
  bool ol = false;          // in UTF-8
  // As the file is read, unless they are given behind --export.
  unsigned int export_delimiters = 0;
  CSVMGR_QUOTES export_quotes = CSVMGR_QUOTES_DOUBLE;
  std::string fixed_file;  // where they are written in columns of fixed width; empty for nowhere
};

extern const char* const kUsage;

// Throws OptionsError with one sentence that says what is wrong.
Options ParseOptions(int argc, char** argv);
