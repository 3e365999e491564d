#pragma once

// CQorSpaceOneLine: one line of a file that is laid out in columns of fixed width, such as the transfer files
// of banks and public offices. Widths count wchar_t units, not columns of the screen: a full-width character
// is one cell. A line belongs to one thread at a time.

#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"

class QORGEN_API CQorSpaceOneLine {
 public:
  CQorSpaceOneLine();
  CQorSpaceOneLine(const CQorSpaceOneLine& other);
  CQorSpaceOneLine& operator=(const CQorSpaceOneLine& other);
  virtual ~CQorSpaceOneLine();

  // Appends a field of `width` units that holds `text`: its head where it is longer, filled with blanks on
  // the right or with "0" on the left where it is shorter. The head stays also of a number: "123456" in 3
  // gives "123". A null text counts as an empty one, a negative width as 0. Any width holds; one that there
  // is no memory for throws CMemoryException*.
  void AddSpace(const wchar_t* text, int width);
  void AddZero(const wchar_t* text, int width);

  // Appends month and day of a date (integer form of QORDATE), "0305"; the year isn't written. Numbers that
  // are no month or day take the digits and the sign they need.
  void AddDate(int date);

  // Makes the line from all fields with nothing between them, into `line`, and returns its text. No
  // allocation once `line` has seen a line of this length.
  const wchar_t* MakeString(CString& line);

  // Removes the fields; their memory is kept for the next line.
  void Empty();
  int GetCount() const;

 protected:
  // `text` with `pad`, one character, inserted in front or appended until it is `width` units long. A longer
  // pad counts as one unit too, so the result is longer then; a null or empty one adds nothing.
  CString AddLeft(CString text, const wchar_t* pad, long width);
  CString AddRight(CString text, const wchar_t* pad, long width);

 private:
  CString& NextItem();

  std::vector<CString> items;  // the fields, and behind them blocks kept from earlier lines
  std::size_t m_count = 0;
};
