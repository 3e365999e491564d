#include "qorgen/exchange/internal/field_list.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "qorgen/platform/crt.h"

namespace qorgen::exchange {
namespace {

// A block or a field table above these sizes is given back as soon as a line needs less than an eighth of it, so that
// one monstrous line doesn't hold its memory for the rest of the file.
constexpr std::size_t kKeptCharacters = 64 * 1024;
constexpr std::size_t kKeptFields = 8192;  // what is set aside for a line of 4096 units
constexpr std::size_t kFirstCapacity = 512;

constexpr bool IsWasteful(std::size_t capacity, std::size_t needed, std::size_t kept) {
  return capacity > kept && needed < capacity / 8;
}

}  // namespace

FieldList::FieldList(const FieldList& other) {
  for (std::size_t i = 0; i < other.count_; ++i) Append(other.Text(i), other.Length(i));
}

FieldList& FieldList::operator=(const FieldList& other) {
  if (this == &other) return *this;
  FieldList copy(other);
  line_.Swap(copy.line_);
  fields_.swap(copy.fields_);
  std::swap(room_, copy.room_);
  std::swap(count_, copy.count_);
  std::swap(open_, copy.open_);
  block_.swap(copy.block_);
  std::swap(capacity_, copy.capacity_);
  std::swap(used_, copy.used_);
  outgrown_.swap(copy.outgrown_);
  return *this;
}

void FieldList::Grow() {
  const std::size_t room = std::max<std::size_t>(16, room_ * 2);
  auto fields = std::make_unique_for_overwrite<Span[]>(room);
  std::copy_n(fields_.get(), count_, fields.get());
  fields_ = std::move(fields);
  room_ = room;
}

void FieldList::Clear() noexcept {
  EndLine();
  outgrown_.clear();
  used_ = 0;
}

void FieldList::EndLine() noexcept {
  if (count_ != 0 && IsWasteful(room_, count_, kKeptFields)) {
    fields_ = nullptr;
    room_ = 0;
  }
  count_ = 0;
  open_ = 0;
  line_.Empty();
}

// A terminated copy in the block. What lies there already keeps its place: callers may hold it.
wchar_t* FieldList::Store(const wchar_t* text, std::size_t length) {
  const std::size_t needed = used_ + length + 1;
  if (needed + kReadBlock > capacity_) {
    const std::size_t capacity = std::max(kFirstCapacity, std::max(capacity_ * 2, length + 1 + kReadBlock));
    Block block = std::make_unique<wchar_t[]>(capacity);
    if (block_ != nullptr) outgrown_.push_back(std::move(block_));
    block_ = std::move(block);
    capacity_ = capacity;
    used_ = 0;
  }
  wchar_t* const place = block_.get() + used_;
  if (length != 0) std::memcpy(place, text, length * sizeof(wchar_t));
  place[length] = L'\0';
  used_ += length + 1;
  return place;
}

void FieldList::Append(const wchar_t* text, std::size_t length) {
  Add(Store(text, length), length);
}

void FieldList::Fold(std::size_t first, wchar_t quote) {
  for (std::size_t i = first; i < count_; ++i) {
    Span& field = fields_[i];
    if (wmemchr(field.text, quote, field.length) == nullptr) continue;
    wchar_t* const folded = Store(field.text, field.length);
    wchar_t* out = folded;
    for (std::size_t at = 0; at < field.length; ++at) {
      const wchar_t unit = folded[at];
      *out++ = unit;
      if (unit == quote && at + 1 < field.length && folded[at + 1] == quote) ++at;
    }
    *out = L'\0';
    field = {folded, static_cast<std::size_t>(out - folded)};
  }
}

void FieldList::TerminateAll() {
  for (std::size_t i = 0; i < open_; ++i) fields_[i].text = Store(fields_[i].text, fields_[i].length);
  open_ = 0;
}

const wchar_t* FieldList::BeginLine(const CString& line) {
  if (IsWasteful(capacity_, used_, kKeptCharacters)) {
    block_ = nullptr;
    capacity_ = 0;
  }
  Clear();
  line_ = line;
  const auto length = static_cast<std::size_t>(line.GetLength());
  if (static_cast<std::size_t>(line.GetAllocLength()) < length + kPadding) {
    line_.Preallocate(line.GetLength() + static_cast<int>(kPadding));
  }
  return line_;
}

}  // namespace qorgen::exchange
