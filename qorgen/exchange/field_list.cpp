#include "qorgen/exchange/field_list.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qorgen::exchange {
namespace {

// A block or a field table above these sizes is given back as soon as a line needs less than an eighth of it,
// so that one monstrous line doesn't hold its memory for the rest of the file.
constexpr std::size_t kKeptCharacters = 64 * 1024;
constexpr std::size_t kKeptFields = 4096;
constexpr std::size_t kFirstCapacity = 512;

constexpr bool IsWasteful(std::size_t capacity, std::size_t needed, std::size_t kept) {
  return capacity > kept && needed < capacity / 8;
}

}  // namespace

FieldList::FieldList(const FieldList& other) {
  std::size_t total = 0;
  for (std::size_t i = 0; i < other.count_; ++i) total += other.fields_[i].length + 1;
  if (total == 0) return;
  capacity_ = total + kPadding;
  block_ = std::make_unique<wchar_t[]>(capacity_);
  fields_.reserve(other.count_);
  for (std::size_t i = 0; i < other.count_; ++i) Append(other.fields_[i].text, other.fields_[i].length);
}

FieldList& FieldList::operator=(const FieldList& other) {
  if (this == &other) return *this;
  FieldList copy(other);
  fields_.swap(copy.fields_);
  std::swap(count_, copy.count_);
  block_.swap(copy.block_);
  std::swap(capacity_, copy.capacity_);
  std::swap(used_, copy.used_);
  outgrown_.swap(copy.outgrown_);
  return *this;
}

void FieldList::Grow() {
  fields_.resize(std::max<std::size_t>(16, fields_.size() * 2));
}

void FieldList::Clear() noexcept {
  count_ = 0;
  outgrown_.clear();
  used_ = 0;
}

void FieldList::Append(const wchar_t* text, std::size_t length) {
  const std::size_t needed = used_ + length + 1;
  if (needed + kPadding > capacity_) {
    // The fields so far keep their places: callers may hold their texts.
    const std::size_t capacity = std::max(kFirstCapacity, std::max(capacity_ * 2, length + 1 + kPadding));
    Block block = std::make_unique<wchar_t[]>(capacity);
    if (block_ != nullptr) outgrown_.push_back(std::move(block_));
    block_ = std::move(block);
    capacity_ = capacity;
    used_ = 0;
  }
  wchar_t* place = block_.get() + used_;
  if (length != 0) std::memcpy(place, text, length * sizeof(wchar_t));
  AddSpan(place, length);
  used_ += length + 1;
}

wchar_t* FieldList::BeginLine(const wchar_t* line, std::size_t length) {
  if (IsWasteful(fields_.size(), count_, kKeptFields)) fields_ = std::vector<Field>(kKeptFields);
  count_ = 0;
  const std::size_t needed = length + 1 + kPadding;
  if (needed > capacity_ || IsWasteful(capacity_, needed, kKeptCharacters)) {
    const std::size_t capacity = std::max(kFirstCapacity, needed + needed / 4);
    Block block = std::make_unique<wchar_t[]>(capacity);
    if (length != 0) std::memcpy(block.get(), line, length * sizeof(wchar_t));
    block_ = std::move(block);
    capacity_ = capacity;
  } else if (length != 0) {
    std::memmove(block_.get(), line, length * sizeof(wchar_t));
  }
  block_[length] = L'\0';
  used_ = length + 1;
  outgrown_.clear();
  return block_.get();
}

}  // namespace qorgen::exchange
