#pragma once

// The fields of one line of delimited text.
//
// A field of a line that was read is a stretch of that line, which isn't copied: the list shares the block of the
// line's CString. Texts of their own (appended fields, those with quotes folded, and terminated copies once somebody asks
// for one) lie in a block that is kept from line to line, so that nothing is allocated while lines are about as long as
// the ones before. One thread at a time. Part of CQorCSVManager.

#include <cstddef>
#include <memory>
#include <vector>

#include "qorgen/afx/string.h"

namespace qorgen::exchange {

class FieldList {
 public:
  FieldList() = default;
  // The copy has terminated texts of its own.
  FieldList(const FieldList& other);
  FieldList& operator=(const FieldList& other);
  ~FieldList() = default;

  std::size_t Count() const noexcept { return count_; }
  // REQUIRES: index < Count(). The text needn't be terminated; whole blocks of kReadBlock units from its start on may be
  // read up to the one with its end. Good until the list changes.
  const wchar_t* Text(std::size_t index) const noexcept { return fields_[index].text; }
  std::size_t Length(std::size_t index) const noexcept { return fields_[index].length; }

  // The text with a terminator, good until the fields are next replaced or removed, also while more are appended.
  const wchar_t* Terminated(std::size_t index) {
    if (open_ != 0) TerminateAll();
    return fields_[index].text;
  }

  // Removes the fields; the block stays for the next line.
  void Clear() noexcept;

  // Appends a copy of `length` characters of `text`, which may be a field of this list.
  void Append(const wchar_t* text, std::size_t length);

  // Appends a field that lies elsewhere, in the block of a CString from its start on, and stays there until Own or the
  // next Clear or BeginLine.
  void Borrow(const wchar_t* text, std::size_t length) { Add(text, length); }
  // Makes copies of what was borrowed.
  void Own() {
    FieldList copy(*this);
    *this = copy;
  }

  // Removes the fields and takes a line, to be cut with AddSpan; the text of `line` mustn't change while the list has
  // it. Gives its text, behind which kPadding characters may be read.
  const wchar_t* BeginLine(const CString& line);
  // Lets go of the line, so that its block can be used again: the fields that lie in it go, too.
  void EndLine() noexcept;

  // Makes a field of a stretch of the line.
  void AddSpan(const wchar_t* text, std::size_t length) {
    Add(text, length);
    open_ = count_;
  }
  // Makes fields, at most `most`, of the stretches of the line that `write` puts behind its argument; it gives the end
  // of what it wrote.
  struct Span {
    const wchar_t* text;
    std::size_t length;
  };
  template <typename Write>
  void AddSpans(std::size_t most, Write write) {
    while (room_ - count_ < most) Grow();
    open_ = count_ = static_cast<std::size_t>(write(fields_.get() + count_) - fields_.get());
  }
  // Makes each pair of quotes one, from the left, in the fields from `first` on.
  void Fold(std::size_t first, wchar_t quote);

  // Characters that can be read behind the end of a line: one block of the scanner.
  static constexpr std::size_t kPadding = 64;
  // The block of a CString is whole blocks of this many units.
  static constexpr std::size_t kReadBlock = 8;

 private:
  using Block = std::unique_ptr<wchar_t[]>;

  void Add(const wchar_t* text, std::size_t length) {
    if (count_ == room_) Grow();
    fields_[count_++] = {text, length};
  }
  void Grow();
  void TerminateAll();
  wchar_t* Store(const wchar_t* text, std::size_t length);

  CString line_;
  std::unique_ptr<Span[]> fields_;
  std::size_t room_ = 0;
  std::size_t count_ = 0;
  std::size_t open_ = 0;  // only the first open_ fields may lack a terminator
  Block block_;
  std::size_t capacity_ = 0;
  std::size_t used_ = 0;
  std::vector<Block> outgrown_;  // earlier blocks that fields still point into
};

}  // namespace qorgen::exchange
