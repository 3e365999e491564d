#pragma once

// Lines and texts in the system's legacy Japanese encoding, for the files of this folder that are in it. One
// text belongs to one thread at a time.

#include <cstddef>
#include <cstdio>

#include "qorgen/afx/string.h"

namespace qorgen::exchange {

// The conversion of text that is written follows the locale of the process.
void SetJapaneseLocale();

enum class LegacyLine {
  kEnd,         // there is no further line
  kRead,        // the line
  kFailed,      // the stream reports an error, with errno
  kPassedOver,  // there was no memory for it; `line` is as it was
};

// Reads the next line, without its line ending and up to its first NUL byte, decoded whole by the ANSI code page; a line
// that ends in a line feed loses all carriage returns in front of it. `line` has room for kLinePadding more units
// afterwards.
LegacyLine ReadLegacyLine(std::FILE* stream, CString& line);

// Writes the text as it comes back from the code page in a single pass, where the host can do that to this
// stream; false where it can't, and ThroughCodePage comes before the stream's own writer. A write error
// throws CFileException* for `path`.
bool PutLegacyText(std::FILE* stream, const wchar_t* text, std::size_t length, const CString& path);

// The text as it comes back from the code page, with the default character for what that lacks, so that a
// text stream can't stop at it. False for a text of 0x3FFFFFFF characters or more, one that can't be
// converted, and without memory.
bool ThroughCodePage(const wchar_t* text, CString& result);

}  // namespace qorgen::exchange
