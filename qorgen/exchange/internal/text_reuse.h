#pragma once

// Texts that are refilled for every line of a file: they keep their block from line to line, and give it back
// once lines are much shorter again, so that one monstrous line doesn't hold its memory for the rest of the
// file.

#include "qorgen/afx/string.h"

namespace qorgen::exchange {

inline constexpr int kKeptTextLength = 64 * 1024;

inline bool IsWastefulText(const CString& text, int needed) {
  return text.GetAllocLength() > kKeptTextLength && needed < text.GetAllocLength() / 8;
}

// Copies into the block that `text` has, without sharing another string's. The source may lie inside `text`.
inline void RefillText(CString& text, const wchar_t* source, int length) {
  if (IsWastefulText(text, length)) {
    CString fresh(source, length);
    text.Swap(fresh);
  } else {
    text.SetString(source, length);
  }
}

// Takes a kept text out of its owner while it is in use, so that a virtual operation called meanwhile may
// come back to the same owner without touching it.
class BorrowedText {
 public:
  explicit BorrowedText(CString& owner) : owner_(owner) { text_.Swap(owner_); }
  ~BorrowedText() { text_.Swap(owner_); }
  BorrowedText(const BorrowedText&) = delete;
  BorrowedText& operator=(const BorrowedText&) = delete;

  CString& operator*() { return text_; }

 private:
  CString text_;
  CString& owner_;
};

}  // namespace qorgen::exchange
