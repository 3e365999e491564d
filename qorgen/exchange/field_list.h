#pragma once

// The fields of one line of delimited text, held in one block.
//
// A line is copied into the block once and cut in place: a field is a stretch of the block that ends in a
// terminator. So a line costs one copy however many fields it has, and nothing is allocated while lines are
// about as long as the ones before. One thread at a time. Part of CQorCSVManager; callers use that class.

#include <cstddef>
#include <memory>
#include <vector>

namespace qorgen::exchange {

class FieldList {
 public:
  FieldList() = default;
  FieldList(const FieldList& other);
  FieldList& operator=(const FieldList& other);
  ~FieldList() = default;

  std::size_t Count() const noexcept { return count_; }
  // REQUIRES: index < Count(). Whole blocks of kReadBlock units from the start of the text on may be read up
  // to the one with its end. The text stays where it is until the next Clear or BeginLine, also while more
  // fields are appended.
  const wchar_t* Text(std::size_t index) const noexcept { return fields_[index].text; }
  std::size_t Length(std::size_t index) const noexcept { return fields_[index].length; }

  // Removes the fields; the block stays for the next line.
  void Clear() noexcept;

  // Appends a copy of `length` characters of `text`, which may be a field of this list.
  void Append(const wchar_t* text, std::size_t length);

  // Appends a field that lies elsewhere, in the block of a CString from its start on, and stays there until
  // Own or the next Clear or BeginLine.
  void Borrow(const wchar_t* text, std::size_t length) {
    if (count_ == fields_.size()) Grow();
    fields_[count_++] = {const_cast<wchar_t*>(text), length};
  }
  // Makes copies of what was borrowed.
  void Own() {
    FieldList copy(*this);
    *this = copy;
  }

  // Removes the fields and takes a copy of a line, to be cut with AddSpan. Returns the copy. At least
  // kPadding characters behind its end may be read, and hold no particular text. `line` may lie inside this
  // list.
  wchar_t* BeginLine(const wchar_t* line, std::size_t length);

  // Makes a field of a stretch of the line of BeginLine. The character behind the stretch is overwritten.
  void AddSpan(wchar_t* text, std::size_t length) {
    text[length] = L'\0';
    if (count_ == fields_.size()) Grow();
    fields_[count_++] = {text, length};
  }

  // Characters that can be read behind the end of a line: one block of the scanner.
  static constexpr std::size_t kPadding = 64;
  // The block of a CString is whole blocks of this many units.
  static constexpr std::size_t kReadBlock = 8;

 private:
  struct Field {
    wchar_t* text;
    std::size_t length;
  };
  using Block = std::unique_ptr<wchar_t[]>;

  void Grow();

  std::vector<Field> fields_;  // the first count_ are in use
  std::size_t count_ = 0;
  Block block_;
  std::size_t capacity_ = 0;
  std::size_t used_ = 0;
  std::vector<Block> outgrown_;  // earlier blocks that fields still point into
};

}  // namespace qorgen::exchange
