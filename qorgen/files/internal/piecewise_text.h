#pragma once

// A text file converted to another encoding in pieces of whole lines. A line feed ends a character in both
// encodings, so the pieces give what the whole would, and several can be in work at once: the calling thread
// and, for more than one piece, a second one take turns in reading, converting and handing on. One object is
// used by one caller.

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

#include "qorgen/afx/stdio_file.h"
#include "qorgen/platform/types.h"

namespace qorgen::files {

class PiecewiseText {
 public:
  // Opens the file; throws CFileException*.
  PiecewiseText(const wchar_t* path, UINT from, UINT to);

  // Reads and converts the first piece. False without memory for it; reading throws CFileException*.
  bool Start();

  // Hands on the pieces in their order up to the text's first zero byte, one call at a time, on either
  // thread. Ends early when `put` gives false. False when there was no memory for a piece. What reading or
  // `put` throws is thrown again here, when nothing of this object is in work any more.
  bool Run(const std::function<bool(const char* bytes, std::size_t count)>& put);

  // Whether Run ended because the source could not be read or converted to its end.
  bool SourceFailed() const { return source_failed_; }

 private:
  using Block = std::unique_ptr<char[]>;

  struct Piece {
    Block bytes;
    std::size_t capacity = 0;
    std::size_t filled = 0;
    std::size_t length = 0;  // of the whole lines; what follows up to `filled` belongs to the next piece
    Block result;
    std::size_t room = 0;
    std::size_t count = 0;
    unsigned long long number = 0;
    bool failed = false;
    std::exception_ptr exception;  // of reading, where that failed
  };

  // Each false where the piece has failed, without memory or with an exception.
  bool Read(Piece& piece);
  bool Convert(Piece& piece);
  static bool Grow(Piece& piece);

  void Work(Piece& piece, bool prepared);
  bool Prepare(Piece& piece);
  bool AwaitTurn(const Piece& piece);
  void HandOn(Piece& piece);

  CStdioFile file_;
  const UINT from_;
  const UINT to_;
  Piece first_;
  const std::function<bool(const char*, std::size_t)>* put_ = nullptr;

  std::mutex reading_;  // guards the file and the next three
  const Piece* last_ = nullptr;
  unsigned long long read_ = 0;
  bool at_end_ = false;

  std::mutex turns_;  // guards the next five
  std::condition_variable turn_changed_;
  unsigned long long turn_ = 0;
  bool stopped_ = false;
  bool source_failed_ = false;
  std::exception_ptr exception_;
};

}  // namespace qorgen::files
