#include "qorgen/files/internal/piecewise_text.h"

#include <cstring>
#include <new>
#include <system_error>
#include <thread>

#include "qorgen/afx/exception.h"
#include "qorgen/platform/codepage.h"

namespace qorgen::files {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;
constexpr std::size_t kLargestPiece = std::size_t{1} << 29;

// An exception that comes second has nobody to go to.
void Drop(const std::exception_ptr& exception) {
  if (exception == nullptr) return;
  try {
    std::rethrow_exception(exception);
  } catch (CException* dropped) {
    dropped->Delete();
  } catch (...) {
  }
}

}  // namespace

PiecewiseText::PiecewiseText(const wchar_t* path, UINT from, UINT to)
    : file_(path, CFile::modeRead | CFile::typeBinary), from_(from), to_(to) {}

bool PiecewiseText::Start() {
  return Read(first_) && Convert(first_);
}

bool PiecewiseText::Run(const std::function<bool(const char* bytes, std::size_t count)>& put) {
  put_ = &put;
  Piece second;
  std::thread helper;
  if (!at_end_ && std::thread::hardware_concurrency() != 1) {
    try {
      helper = std::thread([this, &second] { Work(second, false); });
    } catch (const std::system_error&) {
      // This thread does it alone.
    }
  }
  Work(first_, true);
  if (helper.joinable()) helper.join();
  if (exception_ != nullptr) std::rethrow_exception(exception_);
  return !source_failed_;
}

// Takes pieces in turn with the other thread until the text ends or stops.
void PiecewiseText::Work(Piece& piece, bool prepared) {
  while (prepared || Prepare(piece)) {
    prepared = false;
    if (!AwaitTurn(piece)) {
      Drop(piece.exception);
      return;
    }
    HandOn(piece);
  }
}

// Reads and converts the next piece; false when there is none. A failure waits for its turn like a piece, so
// that what comes before it counts first.
bool PiecewiseText::Prepare(Piece& piece) {
  {
    const std::lock_guard<std::mutex> lock(reading_);
    if (at_end_) return false;
    piece.number = ++read_;
    try {
      piece.failed = !Read(piece);
    } catch (...) {
      piece.failed = true;
      piece.exception = std::current_exception();
    }
    if (piece.failed) at_end_ = true;
  }
  if (!piece.failed) piece.failed = !Convert(piece);
  return true;
}

// False when the text has stopped before this piece.
bool PiecewiseText::AwaitTurn(const Piece& piece) {
  std::unique_lock<std::mutex> lock(turns_);
  turn_changed_.wait(lock, [&] { return stopped_ || turn_ == piece.number; });
  return !stopped_;
}

void PiecewiseText::HandOn(Piece& piece) {
  bool stop = piece.failed;
  std::exception_ptr exception = std::move(piece.exception);
  piece.exception = nullptr;
  if (!piece.failed) {
    try {
      stop = piece.count != 0 && !(*put_)(piece.result.get(), piece.count);
    } catch (...) {
      stop = true;
      exception = std::current_exception();
    }
  }
  {
    const std::lock_guard<std::mutex> lock(turns_);
    ++turn_;
    stopped_ = stop;
    source_failed_ = piece.failed;
    exception_ = std::move(exception);
  }
  turn_changed_.notify_all();
  if (!stop) return;
  const std::lock_guard<std::mutex> lock(reading_);
  at_end_ = true;
}

// Up to and with the last line feed that is in reach: at least one line, or all that is left.
bool PiecewiseText::Read(Piece& piece) {
  const std::size_t carried = last_ != nullptr ? last_->filled - last_->length : 0;
  if (carried != 0) {
    if (last_ != &piece) piece.filled = 0;
    while (piece.capacity < carried) {
      if (!Grow(piece)) return false;
    }
    // The other piece may be in work: nobody writes to it.
    std::memmove(piece.bytes.get(), last_->bytes.get() + last_->length, carried);
  }
  last_ = &piece;
  piece.filled = carried;
  piece.length = 0;
  for (std::size_t looked = carried; !at_end_;) {
    if (piece.filled == piece.capacity && !Grow(piece)) return false;
    char* const space = piece.bytes.get() + piece.filled;
    const std::size_t got = file_.Read(space, static_cast<unsigned int>(piece.capacity - piece.filled));
    const auto* const zero = static_cast<const char*>(std::memchr(space, 0, got));
    piece.filled += zero != nullptr ? static_cast<std::size_t>(zero - space) : got;
    piece.length = piece.filled;
    at_end_ = got == 0 || zero != nullptr;
    if (at_end_) break;
    while (piece.length > looked && piece.bytes[piece.length - 1] != '\n') --piece.length;
    if (piece.length > looked) break;
    piece.length = 0;
    looked = piece.filled;
  }
  return true;
}

bool PiecewiseText::Convert(Piece& piece) {
  piece.count = 0;
  if (piece.length == 0) return true;
  const std::size_t room = qorgen_recode_room(piece.length);
  if (room > piece.room) {
    piece.result.reset(new (std::nothrow) char[room]);
    piece.room = piece.result != nullptr ? room : 0;
  }
  if (piece.result == nullptr) return false;
  piece.count = qorgen_recode(from_, to_, piece.bytes.get(), piece.length, piece.result.get());
  return piece.count != 0;
}

bool PiecewiseText::Grow(Piece& piece) {
  const std::size_t capacity = piece.capacity == 0 ? kPiece : piece.capacity * 2;
  if (capacity > kLargestPiece) return false;
  Block bytes(new (std::nothrow) char[capacity]);
  if (bytes == nullptr) return false;
  if (piece.filled != 0) std::memcpy(bytes.get(), piece.bytes.get(), piece.filled);
  piece.bytes = std::move(bytes);
  piece.capacity = capacity;
  return true;
}

}  // namespace qorgen::files
