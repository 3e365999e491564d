#pragma once

// CString: an owned string of UTF-16 units, one pointer wide, reference-counted with copy-on-write.
//
// A copy shares the text; the first change of a shared text makes a private one. An assignment of text into a
// string that is the only owner of a large enough block reuses the block. The counts are atomic: copies of
// one text may live in different threads, one CString object belongs to one thread at a time.
//
// Rules for all operations: a null text counts as empty; positions and lengths are in UTF-16 units; a source
// may lie inside the string that is being changed; when there is no memory the memory exception is thrown and
// the string keeps its former text. "Throws the invalid-argument exception" means CInvalidArgException*, as
// every exception of the foundation classes by pointer.
//
// Text may hold U+0000. Operations between two CStrings and searches in the string itself see the whole text;
// an argument that is a plain pointer ends at its first U+0000.

#include <atomic>
#include <climits>
#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "qorgen/platform/export.h"

namespace qorgen::afx {

// What stands before the text of a CString. Capacity and length don't count the terminator. Capacity 0 marks
// the shared empty text, which is constant data and never counted.
struct TextHeader {
  mutable std::atomic<std::int32_t> owners;
  std::int32_t length;
  std::int32_t capacity;
};

struct alignas(8) EmptyText {
  TextHeader header;
  wchar_t text[2];
};
static_assert(offsetof(EmptyText, text) == sizeof(TextHeader));

QORGEN_API extern const EmptyText g_empty_text;

}  // namespace qorgen::afx

class QORGEN_API CString {
 public:
  using XCHAR = wchar_t;
  using PXSTR = wchar_t*;
  using PCXSTR = const wchar_t*;

  CString() noexcept : m_pszData(NoText()) {}
  CString(std::nullptr_t) noexcept : m_pszData(NoText()) {}
  CString(const CString& other) noexcept : m_pszData(Share(other.m_pszData)) {}
  CString(CString&& other) noexcept : m_pszData(other.m_pszData) { other.m_pszData = NoText(); }
  CString(const wchar_t* text) : m_pszData(NoText()) { AssignSlow(text, StringLength(text)); }
  // The first `length` units of `text`. A negative length throws the invalid-argument exception.
  CString(const wchar_t* text, int length) : m_pszData(NoText()) { AssignSlow(text, length); }
  // `repeat` times the character; 0 or less gives an empty string.
  explicit CString(wchar_t character, int repeat = 1);
  // Text in the ANSI code page. An undecodable byte becomes what MultiByteToWideChar makes of it.
  CString(const char* text);
  CString(const char* text, int length);
  explicit CString(char character, int repeat = 1);
  ~CString() { Release(m_pszData); }

  CString& operator=(const CString& other) {
    if (other.m_pszData == m_pszData) return *this;
    if (other.IsEmpty()) {
      SetString(nullptr, 0);
    } else {
      wchar_t* shared = Share(other.m_pszData);
      Release(m_pszData);
      m_pszData = shared;
    }
    return *this;
  }
  CString& operator=(CString&& other) noexcept {
    wchar_t* mine = m_pszData;
    m_pszData = other.m_pszData;
    other.m_pszData = mine;
    return *this;
  }
  CString& operator=(std::nullptr_t) {
    SetString(nullptr, 0);
    return *this;
  }
  CString& operator=(const wchar_t* text) {
    SetString(text);
    return *this;
  }
  CString& operator=(const char* text);
  CString& operator=(wchar_t character) {
    SetString(&character, 1);
    return *this;
  }
  CString& operator=(char character);

  // --- the text ---

  operator const wchar_t*() const noexcept { return m_pszData; }
  const wchar_t* GetString() const noexcept { return m_pszData; }
  int GetLength() const noexcept { return HeaderOf(m_pszData)->length; }
  bool IsEmpty() const noexcept { return GetLength() == 0; }
  // Number of units that fit without a new block.
  int GetAllocLength() const noexcept { return HeaderOf(m_pszData)->capacity; }

  // The unit at `index`; the index of the terminator gives 0, an index outside throws the invalid-argument
  // exception.
  wchar_t GetAt(int index) const { return At(index); }
  template <std::integral Index>
  wchar_t operator[](Index index) const {
    return At(static_cast<std::int64_t>(index));
  }
  // `index` from 0 to length - 1, else throws the invalid-argument exception.
  void SetAt(int index, wchar_t character);

  // --- assignment ---

  void SetString(const wchar_t* text) { SetString(text, StringLength(text)); }
  // A negative length throws the invalid-argument exception.
  void SetString(const wchar_t* text, int length) {
    qorgen::afx::TextHeader* header = HeaderOf(m_pszData);
    // The empty text that strings without a block share has no capacity.
    if (header->capacity != 0 && length >= 0 && length <= header->capacity && text != nullptr &&
        IsOnlyOwner(header)) {
      std::memmove(m_pszData, text, static_cast<std::size_t>(length) * sizeof(wchar_t));
      header->length = length;
      m_pszData[length] = 0;
    } else {
      AssignSlow(text, length);
    }
  }
  // Makes the string empty and gives its block back.
  void Empty() noexcept {
    Release(m_pszData);
    m_pszData = NoText();
  }
  void Swap(CString& other) noexcept {
    wchar_t* mine = m_pszData;
    m_pszData = other.m_pszData;
    other.m_pszData = mine;
  }

  void Append(const wchar_t* text) { Append(text, StringLength(text)); }
  void Append(const CString& text) { Append(text.m_pszData, text.GetLength()); }
  // A negative length throws the invalid-argument exception.
  void Append(const wchar_t* text, int length);
  void AppendChar(wchar_t character) {
    qorgen::afx::TextHeader* header = HeaderOf(m_pszData);
    if (header->length < header->capacity && IsOnlyOwner(header)) {
      m_pszData[header->length++] = character;
      m_pszData[header->length] = 0;
    } else {
      Append(&character, 1);
    }
  }
  CString& operator+=(const CString& text) {
    Append(text);
    return *this;
  }
  CString& operator+=(const wchar_t* text) {
    Append(text);
    return *this;
  }
  CString& operator+=(const char* text);
  CString& operator+=(wchar_t character) {
    AppendChar(character);
    return *this;
  }
  CString& operator+=(char character);

  // --- direct access ---

  // A private, writable text of at least `minimum` units and a terminator, the present text kept at its
  // start. Valid until the next change; ReleaseBuffer sets the new length. A negative minimum throws the
  // invalid-argument exception.
  wchar_t* GetBuffer(int minimum = 0);
  // The same, and the length is already `length`; units beyond the former text are uninitialised.
  wchar_t* GetBufferSetLength(int length);
  // Ends direct access: `length` is the new length, -1 means up to the first terminator. Another negative
  // length, or one beyond the buffer, throws the invalid-argument exception.
  void ReleaseBuffer(int length = -1);
  void ReleaseBufferSetLength(int length);
  // Makes room for `length` units, keeps the text.
  void Preallocate(int length);
  // Gives back the room beyond the text.
  void FreeExtra();
  // Cuts the text to `length` units; a length that is not shorter changes nothing.
  void Truncate(int length);

  // --- formatting: the platform's wide rules, so %s and %ls are wide and %S and %hs are narrow text ---

  // A CString may be given where the format asks for wide text, and the string's own text may be among the
  // arguments. A null format, or one that cannot be carried out, throws the invalid-argument exception and
  // leaves the text as it was.
  template <typename... Args>
  void Format(const wchar_t* format, Args... args) {
    FormatPlain(false, format, Plain(args)...);
  }
  template <typename... Args>
  void AppendFormat(const wchar_t* format, Args... args) {
    FormatPlain(true, format, Plain(args)...);
  }
  void FormatV(const wchar_t* format, va_list arguments);
  void AppendFormatV(const wchar_t* format, va_list arguments);

  // --- comparison by unit value: negative, 0 or positive ---

  int Compare(const wchar_t* text) const noexcept;
  // The same after simple lower-casing of each unit, without a locale; see MakeLower.
  int CompareNoCase(const wchar_t* text) const noexcept;

  // --- parts ---

  // The units from `first`, at most `count`; both are clamped to the text.
  CString Mid(int first) const { return Mid(first, INT_MAX); }
  CString Mid(int first, int count) const;
  CString Left(int count) const;
  CString Right(int count) const;
  // The longest start that holds only (or none of) the given characters.
  CString SpanIncluding(const wchar_t* characters) const;
  CString SpanExcluding(const wchar_t* characters) const;
  // The next piece between any of the given separators, from `start`, which moves behind it; empty pieces are
  // passed over. At the end the result is empty and `start` is -1. With no separators the rest of the text is
  // one piece. A negative start throws the invalid-argument exception.
  CString Tokenize(const wchar_t* separators, int& start) const;

  // --- search: the position, or -1 when there is none or when `start` lies outside the text ---

  int Find(wchar_t character, int start = 0) const noexcept;
  int Find(const wchar_t* text, int start = 0) const noexcept;
  int FindOneOf(const wchar_t* characters) const noexcept;
  int ReverseFind(wchar_t character) const noexcept;

  // --- changes in place ---

  // Each gives the new length. The position is clamped to the text.
  int Insert(int index, const wchar_t* text);
  int Insert(int index, wchar_t character);
  int Delete(int index, int count = 1);
  // Each gives the number of replacements or removals. An empty `from` replaces nothing.
  int Replace(wchar_t from, wchar_t to);
  int Replace(const wchar_t* from, const wchar_t* to);
  int Remove(wchar_t character);

  // White space is what Unicode calls so: the ideographic space (U+3000) and the no-break space are part of
  // it.
  CString& Trim();
  CString& Trim(wchar_t character);
  CString& Trim(const wchar_t* characters);
  CString& TrimLeft();
  CString& TrimLeft(wchar_t character);
  CString& TrimLeft(const wchar_t* characters);
  CString& TrimRight();
  CString& TrimRight(wchar_t character);
  CString& TrimRight(const wchar_t* characters);

  // Case by Unicode's one-to-one pairs, the same on every machine; a letter whose mapping doesn't lead back (ß, ı, ς)
  // stays.
  CString& MakeUpper();
  CString& MakeLower();
  // By unit: a surrogate pair comes out in the wrong order.
  CString& MakeReverse();

  // --- helpers of the published class ---

  // Units before the terminator; null gives 0. A text longer than INT_MAX throws the memory exception.
  static int StringLength(const wchar_t* text);
  static void CopyChars(wchar_t* destination, const wchar_t* source, int count) noexcept;

 private:
  static wchar_t* NoText() noexcept { return const_cast<wchar_t*>(qorgen::afx::g_empty_text.text); }
  static qorgen::afx::TextHeader* HeaderOf(wchar_t* text) noexcept {
    return reinterpret_cast<qorgen::afx::TextHeader*>(reinterpret_cast<char*>(text) -
                                                      sizeof(qorgen::afx::TextHeader));
  }
  static bool IsOnlyOwner(const qorgen::afx::TextHeader* header) noexcept {
    return header->owners.load(std::memory_order_acquire) == 1;
  }
  static wchar_t* Share(wchar_t* text) noexcept {
    const qorgen::afx::TextHeader* header = HeaderOf(text);
    if (header->capacity != 0) header->owners.fetch_add(1, std::memory_order_relaxed);
    return text;
  }
  static void Release(wchar_t* text) noexcept {
    qorgen::afx::TextHeader* header = HeaderOf(text);
    if (header->capacity == 0) return;
    // The only owner needs no read-modify-write: nobody else can come to own the block meanwhile.
    if (IsOnlyOwner(header) || header->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) FreeText(text);
  }

  wchar_t At(std::int64_t index) const {
    if (index < 0 || index > GetLength()) ThrowInvalidArgument();
    return m_pszData[index];
  }

  [[noreturn]] static void ThrowInvalidArgument();
  [[noreturn]] static void ThrowMemory();
  static wchar_t* NewText(std::int64_t capacity);
  static void FreeText(wchar_t* text) noexcept;

  void AssignSlow(const wchar_t* text, int length);
  // Makes the text private with room for `capacity` units, keeping the text.
  void Reserve(std::int64_t capacity, bool growing);
  void SetLength(int length) noexcept;
  void Cut(int first, int count);

  template <typename Arg>
  static Arg Plain(const Arg& arg) noexcept {
    return arg;
  }
  static const wchar_t* Plain(const CString& text) noexcept { return text.m_pszData; }
  void FormatPlain(bool append, const wchar_t* format, ...);

  wchar_t* m_pszData;
};

static_assert(sizeof(CString) == sizeof(void*), "a CString is one pointer to its text");

using CStringW = CString;

inline CString operator+(CString left, const CString& right) {
  if (left.IsEmpty()) return right;
  left.Append(right);
  return left;
}
inline CString operator+(CString left, const wchar_t* right) {
  left.Append(right);
  return left;
}
inline CString operator+(CString left, const char* right) {
  left += right;
  return left;
}
inline CString operator+(CString left, wchar_t right) {
  left.AppendChar(right);
  return left;
}
inline CString operator+(CString left, char right) {
  left += right;
  return left;
}
QORGEN_API CString operator+(const wchar_t* left, const CString& right);
QORGEN_API CString operator+(const char* left, const CString& right);
QORGEN_API CString operator+(wchar_t left, const CString& right);
QORGEN_API CString operator+(char left, const CString& right);

QORGEN_API bool operator==(const CString& left, const CString& right) noexcept;
QORGEN_API std::strong_ordering operator<=>(const CString& left, const CString& right) noexcept;
inline bool operator==(const CString& left, const wchar_t* right) noexcept {
  return left.Compare(right) == 0;
}
inline std::strong_ordering operator<=>(const CString& left, const wchar_t* right) noexcept {
  return left.Compare(right) <=> 0;
}
inline bool operator==(const CString& left, wchar_t right) noexcept {
  return left.GetLength() == 1 && *left.GetString() == right;
}
