#pragma once

// The good rows of an import as text in columns of fixed width.

#include "columns.h"
#include "reader.h"
#include "target_file.h"

// Writes the rows and gives how many they were; `stopped` tells that Ctrl-C ended the work. Throws CFileException* when
// the file can't be written.
//
// A text takes the column's size; a number is filled with zeros, and has a place for its sign unless it is
// unsigned, and one for the point if it has decimals; a date is year, month, day in eight digits, a yes 1 and
// a no 0. An empty field is blank.
long WriteFixed(RowReader& reader, const Columns& columns, const TargetFile& target, bool& stopped);
