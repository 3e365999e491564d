#pragma once

// The file of one value: its bytes read and replaced, and what they say. May be called from any thread; of two that
// write one file at the same time the last one stays, whole.

#include <cstddef>
#include <string>

#include "qorgen/afx/string.h"
#include "qorgen/platform/types.h"

namespace qorgen::settings {

// A value's file open for reading; in nobody's way.
class ValueReader {
 public:
  explicit ValueReader(const wchar_t* path);
  ~ValueReader();
  ValueReader(const ValueReader&) = delete;
  ValueReader& operator=(const ValueReader&) = delete;

  [[nodiscard]] bool IsOpen() const;
  // Both false when the file can't be read. `read` is less than `count` only at the end of the file.
  [[nodiscard]] bool Size(unsigned long long& bytes) const;
  [[nodiscard]] bool Read(void* buffer, std::size_t count, std::size_t& read);

 private:
  HANDLE file_;
};

// The first line of a text, without its line end: UTF-16LE with its mark or without, or UTF-8 with its mark; a Ctrl-Z
// ends it, too. Reads little more than that line. False for a file that can't be read, and for the mark of the other
// byte order.
[[nodiscard]] bool ReadFirstLine(const wchar_t* path, CString& line);

// A text as it is stored: behind the mark of UTF-16LE, each line feed as CR LF. Null counts as empty.
[[nodiscard]] std::string StoredText(const wchar_t* text);

// A number as text; of a long the low 32 bits count.
[[nodiscard]] CString NumberText(long value);

enum class Store {
  kReplace,
  kIfMissing,  // leaves a value that is there by now, which is no failure
};

// Stores the bytes as the file's content, in one step, and makes missing folders. False when that fails, with what was
// there left as it was.
[[nodiscard]] bool WriteValue(const wchar_t* path, const void* bytes, std::size_t count,
                              Store how = Store::kReplace);

}  // namespace qorgen::settings
