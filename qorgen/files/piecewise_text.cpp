#include "qorgen/files/internal/piecewise_text.h"

#include <cstring>
#include <new>

#include "qorgen/platform/codepage.h"

namespace qorgen::files {
namespace {

// The system's calls cost more than the caches hold.
constexpr std::size_t kPiece = std::size_t{512} * 1024;
constexpr std::size_t kLargestPiece = std::size_t{1} << 29;

}  // namespace

PiecewiseText::PiecewiseText(const wchar_t* path, UINT from, UINT to)
    : file_(path, CFile::modeRead), from_(from), to_(to) {}

bool PiecewiseText::Next() {
  failed_ = !Read() || (length_ != 0 && !Convert());
  return !failed_ && length_ != 0;
}

// Up to and with the last line feed that is in reach: at least one line, or all that is left.
bool PiecewiseText::Read() {
  filled_ -= length_;
  if (filled_ != 0) std::memmove(source_.get(), source_.get() + length_, filled_);
  length_ = 0;
  while (!at_end_ && length_ == 0) {
    if (filled_ == capacity_ && !Grow()) return false;
    char* const space = source_.get() + filled_;
    const std::size_t got = file_.Read(space, static_cast<unsigned int>(capacity_ - filled_));
    const auto* const zero = static_cast<const char*>(std::memchr(space, 0, got));
    at_end_ = got == 0 || zero != nullptr;
    const char* end = zero != nullptr ? zero : space + got;
    filled_ = static_cast<std::size_t>(end - source_.get());
    while (!at_end_ && end != space && end[-1] != '\n') --end;
    if (at_end_ || end != space) length_ = static_cast<std::size_t>(end - source_.get());
  }
  return true;
}

bool PiecewiseText::Convert() {
  count_ = qorgen_recode(from_, to_, source_.get(), length_, result_.get());
  return count_ != 0;
}

bool PiecewiseText::Grow() {
  const std::size_t capacity = capacity_ == 0 ? kPiece : capacity_ * 2;
  if (capacity > kLargestPiece) return false;
  Block source(new (std::nothrow) char[capacity]);
  Block result(new (std::nothrow) char[qorgen_recode_room(capacity)]);
  if (source == nullptr || result == nullptr) return false;
  if (filled_ != 0) std::memcpy(source.get(), source_.get(), filled_);
  source_ = std::move(source);
  result_ = std::move(result);
  capacity_ = capacity;
  return true;
}

}  // namespace qorgen::files
