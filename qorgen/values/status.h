#pragma once

// CQorStatus: the display state of one cell or item of a table or form, a word of flags. A status belongs to
// one thread at a time. Nothing throws.

class CQorStatus {
 public:
  constexpr CQorStatus() = default;
  constexpr CQorStatus(const unsigned int& word) : m_word(word) {}
  constexpr CQorStatus& operator=(const unsigned int& word) {
    m_word = word;
    return *this;
  }
  constexpr operator unsigned int() const { return m_word; }

  // Each gives the flag itself, so not 1 as a rule, and 0 when it isn't set.
  constexpr int IsDisable() const { return Masked(kDisable); }
  constexpr int IsReadOnly() const { return Masked(kReadOnly); }
  constexpr int IsDeselect() const { return Masked(kDeselect); }
  constexpr int IsBlank() const { return Masked(kBlank); }
  constexpr int IsEmphasis() const { return Masked(kEmphasis); }
  constexpr int IsHottable() const { return Masked(kHottable); }
  constexpr int IsHoverable() const { return Masked(kHoverable); }
  // Both answer for the left parenthesis: a pair is shown or none.
  constexpr int IsParenthesisL() const { return Masked(kParenthesisLeft); }
  constexpr int IsParenthesisR() const { return Masked(kParenthesisLeft); }
  constexpr int IsTriangle() const { return Masked(kTriangle); }
  constexpr int IsTriangleRev() const { return Masked(kTriangleReversed); }
  constexpr int IsCommentL() const { return Masked(kCommentLeft); }
  constexpr int IsCommentR() const { return Masked(kCommentRight); }

  // Each sets its flag, or clears it for 0.
  constexpr void SetDisable(int on) { ModifyFlag(kDisable, on); }
  constexpr void SetReadOnly(int on) { ModifyFlag(kReadOnly, on); }
  constexpr void SetDeselect(int on) { ModifyFlag(kDeselect, on); }
  constexpr void SetBlank(int on) { ModifyFlag(kBlank, on); }
  constexpr void SetEmphasis(int on) { ModifyFlag(kEmphasis, on); }
  constexpr void SetHottable(int on) { ModifyFlag(kHottable, on); }
  constexpr void SetHoverable(int on) { ModifyFlag(kHoverable, on); }
  constexpr void SetParenthesis(int left, int right) {
    ModifyFlag(kParenthesisLeft, left);
    ModifyFlag(kParenthesisRight, right);
  }
  constexpr void SetTriangle(int on) { ModifyFlag(kTriangle, on); }
  constexpr void SetTriangleRev(int on) { ModifyFlag(kTriangleReversed, on); }
  constexpr void SetComment(int left, int right) {
    ModifyFlag(kCommentLeft, left);
    ModifyFlag(kCommentRight, right);
  }

  constexpr int IsEmpty() const { return m_word == 0; }
  constexpr void SetEmpty() { m_word = 0; }

  // Whole words.
  constexpr int IsEqual(const unsigned int& word) const { return m_word == word; }
  constexpr bool operator==(const unsigned int& word) const { return m_word == word; }
  constexpr bool operator!=(const unsigned int& word) const { return m_word != word; }
  // For plain literals, which are signed: without these the conversion to the word would be as good a match.
  constexpr bool operator==(const int& word) const { return *this == static_cast<unsigned int>(word); }
  constexpr bool operator!=(const int& word) const { return *this != static_cast<unsigned int>(word); }
  constexpr bool operator==(const CQorStatus& status) const { return m_word == status.m_word; }
  constexpr bool operator!=(const CQorStatus& status) const { return m_word != status.m_word; }

 protected:
  // Sets the bits of `flags`, or clears them when `on` is 0.
  constexpr void ModifyFlag(const unsigned int& flags, int on) {
    m_word = on != 0 ? m_word | flags : m_word & ~flags;
  }

 private:
  static constexpr unsigned int kDisable = 0x00001;
  static constexpr unsigned int kReadOnly = 0x00002;
  static constexpr unsigned int kDeselect = 0x00004;
  static constexpr unsigned int kBlank = 0x00008;
  static constexpr unsigned int kEmphasis = 0x00010;
  static constexpr unsigned int kHottable = 0x00020;
  static constexpr unsigned int kHoverable = 0x00040;
  static constexpr unsigned int kParenthesisLeft = 0x00100;
  static constexpr unsigned int kParenthesisRight = 0x00200;
  static constexpr unsigned int kTriangle = 0x00400;
  static constexpr unsigned int kTriangleReversed = 0x00800;
  static constexpr unsigned int kCommentLeft = 0x10000;
  static constexpr unsigned int kCommentRight = 0x20000;

  constexpr int Masked(unsigned int flag) const { return static_cast<int>(m_word & flag); }

  unsigned int m_word = 0;
};

static_assert(sizeof(CQorStatus) == sizeof(unsigned int));
