#pragma once

// A text file converted to another encoding in pieces of whole lines: a line feed ends a character in both
// encodings, so the pieces give what the whole would. One object is used by one thread.

#include <cstddef>
#include <memory>

#include "qorgen/afx/file.h"
#include "qorgen/platform/types.h"

namespace qorgen::files {

class PiecewiseText {
 public:
  // Opens the file; throws CFileException*.
  PiecewiseText(const wchar_t* path, UINT from, UINT to);

  // The next piece of the text, which ends at its first zero byte. False when there is none, and without
  // memory for it; reading throws CFileException*.
  bool Next();

  // Whether Next ended for want of memory.
  bool Failed() const { return failed_; }

  // The piece converted, until Next is called again.
  const char* Bytes() const { return result_.get(); }
  std::size_t Count() const { return count_; }

 private:
  using Block = std::unique_ptr<char[]>;

  bool Read();
  bool Convert();
  bool Grow();

  CFile file_;
  const UINT from_;
  const UINT to_;
  bool at_end_ = false;
  bool failed_ = false;
  Block source_;
  std::size_t capacity_ = 0;  // of the source; the result has room for all of it
  std::size_t filled_ = 0;
  std::size_t length_ = 0;  // of the whole lines; what follows up to `filled_` belongs to the next piece
  Block result_;
  std::size_t count_ = 0;
};

}  // namespace qorgen::files
