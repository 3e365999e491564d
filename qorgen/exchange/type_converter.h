#pragma once

// CQorTypeConverter: checks the fields of a line against a table of columns and stores the values in the
// caller's record. The record is opaque to the library; the table alone says what lies where. Bad fields
// become errors with a Japanese message; they never throw and never stop the line. An object belongs to one
// thread at a time.

#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/exchange/csv_manager.h"
#include "qorgen/platform/export.h"

// One column of an import. The record must have room for the column's target at `offset`; the library can't
// check that. Targets may stand at any address, aligned or not.
struct QorTypeCheckInfoTable {
  unsigned int typeFlags;  // a type code below, and flags
  const wchar_t* name;     // prefix of the column's messages, owned by the caller; null gives bare messages
  int size;                // text: greatest length in characters; numbers: digit places
  short decimals;          // TYPECHECK_DOUBLE: places behind the point
  int check;               // 0 or 1: whether an error of the column fails the line
  unsigned int offset;     // byte offset of the target in the record
  int defaultValue;        // value of an empty number, see the converters
};

// Type codes, the bits of TYPECHECK_TYPEMASK of `typeFlags`. Any other code converts nothing and counts as a
// failure of the column.
inline constexpr unsigned int TYPECHECK_TYPEMASK = 0x07FFF000;
inline constexpr unsigned int TYPECHECK_STRING = 0x1000;  // wchar_t[size + 1]
inline constexpr unsigned int TYPECHECK_LONG = 0x2000;    // 32-bit signed, on every host
inline constexpr unsigned int TYPECHECK_SHORT = 0x3000;   // 16-bit signed
inline constexpr unsigned int TYPECHECK_BYTE = 0x4000;    // 8-bit
inline constexpr unsigned int TYPECHECK_DOUBLE = 0x5000;  // 64-bit floating point
inline constexpr unsigned int TYPECHECK_CHAR = 0x6000;    // 8-bit
inline constexpr unsigned int TYPECHECK_BOOL = 0x7000;    // 8-bit, 0 or 1
inline constexpr unsigned int TYPECHECK_DATE = 0x8000;    // 32-bit, the integer form of QORDATE

// Flags of `typeFlags`.
inline constexpr unsigned int TYPECHECK_UNSIGNED = 0x1;       // a number may not be negative
inline constexpr unsigned int TYPECHECK_SIGNDIGIT = 0x2;      // a minus sign takes one of the digit places
inline constexpr unsigned int TYPECHECK_FIXEDDECIMALS = 0x4;  // `decimals` places are reserved out of `size`

enum TypeError : int {
  TYPEERROR_NONE = 0,
  TYPEERROR_FIELDCOUNT = 1,      // the line has another number of fields than the table
  TYPEERROR_LENGTH = 2,          // a text is longer than `size`
  TYPEERROR_CHARTYPE = 3,        // for overrides; not raised here
  TYPEERROR_NOTNUMBER = 4,       // a number column holds something else, or a comma or backslash
  TYPEERROR_RANGE = 5,           // more digits than the column has, or negative where that is not allowed
  TYPEERROR_FRACTION = 6,        // for overrides; not raised here
  TYPEERROR_FRACTIONDIGITS = 7,  // more places behind the point than the column has
  TYPEERROR_VALUE = 8,           // not a yes or no
  TYPEERROR_DATE = 9,            // not a date
  TYPEERROR_REQUIRED = 10,       // a number column with `check` is empty
};

class QORGEN_API CQorTypeConverter {
 public:
  // No table, no errors. Copies take the errors and the table pointer; the table itself stays the caller's.
  CQorTypeConverter();
  CQorTypeConverter(const CQorTypeConverter& other);
  CQorTypeConverter& operator=(const CQorTypeConverter& other);

  // Takes `count` columns, which must live as long as they are used here, and clears the errors. Returns 1; a
  // null table or a count of 0 or less returns 0 and changes nothing.
  int Initialize(QorTypeCheckInfoTable* table, int count);
  // Clears the errors and forgets the table. Returns 1.
  int Finalize();

 protected:
  // Converts one column: 1 if the line may stand, 0 if the column fails it. A failure counts only when
  // `check` is nonzero; its error stays in the list either way. `text` is a work copy of the field;
  // converters may change it. A null column gives 0; a null target stores nothing, here and in the converters
  // below.
  virtual int ConvertOneItem(QorTypeCheckInfoTable* column, CString& text, void* target);

  // A date as CQorDateUtil::GetDateFromImpStr reads it, day first. Stores the integer form of QORDATE and
  // returns the parser's result; otherwise raises TYPEERROR_DATE, leaves the target as it was and returns 0.
  // Virtual so that an application can accept other forms.
  virtual int ConvertDate(QorTypeCheckInfoTable* column, CString& text, void* target);

 public:
  // Converts one line into `record` and returns nonzero if the line is acceptable. The errors of the line
  // before are dropped first. With `checkCount` nonzero the line must have as many fields as the table has
  // columns (one more is forgiven if it is empty: a trailing delimiter); otherwise TYPEERROR_FIELDCOUNT is
  // raised, nothing is stored and the result is 0. With 0, surplus fields are ignored and missing ones are
  // empty. All columns are visited whatever happened to earlier ones, in table order, each through
  // ConvertOneItem. A null record takes no values: the line is only checked. Without a table there are no
  // columns. Nothing is allocated per line once warm, unless a field is in error.
  virtual int Convert(CQorCSVManager& manager, void* record, unsigned char checkCount);

  virtual ~CQorTypeConverter();

  long GetFieldCount();
  // The errors of the last Convert.
  long GetErrorCount();
  // TYPEERROR_NONE for an index outside the list.
  TypeError GetErrorKind(int index);
  // "name:message"; the empty string for an index outside the list.
  CString GetErrorMessage(int index);
  void ClearError();

 protected:
  // true, yes, on and ○ store 1; false, no and off store 0, without regard to case and surrounding white
  // space. Anything else, empty text too, raises TYPEERROR_VALUE, stores 0 and returns 0.
  int ConvertBool(QorTypeCheckInfoTable* column, CString& text, void* target);

  // A number with a fraction; full-width digits count. A zero-length text stores `defaultValue`. What the
  // platform's automation conversion doesn't take as a number, and any text with a comma or backslash, raises
  // TYPEERROR_NOTNUMBER, stores 0 and returns 0. More characters in front of the point than the column has
  // places raise TYPEERROR_RANGE (a failure only if `check` is 1), too many behind it
  // TYPEERROR_FRACTIONDIGITS (always a failure); both can be raised, and store 0. The stored value is that of
  // _wtof, so a form that only the automation conversion knows, such as
  // "(5)", stores what _wtof makes of it.
  int ConvertDouble(QorTypeCheckInfoTable* column, CString& text, void* target);

  // A 32-bit integer; full-width digits count, a fraction is rounded as the automation conversion rounds. An
  // empty text stores 0 when `check` is 0; otherwise it raises TYPEERROR_REQUIRED, stores `defaultValue` and
  // returns 0. Anything but a number raises TYPEERROR_NOTNUMBER, stores 0 and returns 0. A number with more
  // digits than `size` (a `size` of 0 or less holds only 0) raises TYPEERROR_RANGE and stores the nearest
  // bound, a failure only if `check` is 1. The value is cut to the width of the target. Any type code other
  // than SHORT, BYTE and CHAR stores 32 bits.
  int ConvertNumeral(QorTypeCheckInfoTable* column, CString& text, void* target);

  // Text as it stands; a blank one counts as empty. A text longer than `size` is stored cut, and with `check`
  // nonzero raises TYPEERROR_LENGTH and returns 0. All size + 1 characters of the target are written, zeros
  // behind the text. A `size` of 0 stores the terminator alone; with a negative one nothing is stored and
  // every text is too long.
  int ConvertString(QorTypeCheckInfoTable* column, CString& text, void* target);

  // Appends an error with the text "name:message". A null message takes the text of the kind, a null name
  // gives the bare message, a kind outside the list has an empty text.
  void SetError(const wchar_t* name, TypeError kind, const wchar_t* message);
  void SetError(TypeError kind, const wchar_t* message);

  struct Error {
    TypeError kind;
    CString message;
  };
  std::vector<Error> errors;
  QorTypeCheckInfoTable* table = nullptr;
  long fieldCount = 0;

 private:
  // 1 if `text` holds neither a backslash nor a comma, which the automation conversion would take as currency
  // and thousands marks; else 0.
  int NumCheck(const CString& text);

  int ConvertInPlace(const qorgen::exchange::FieldList& fields, void* record);
  const wchar_t* Terminated(const wchar_t* text, int length);
  // The converters over a text that isn't theirs to change and needn't be terminated.
  int StoreText(const QorTypeCheckInfoTable& column, const wchar_t* text, int length, void* target);
  int StoreNumeral(const QorTypeCheckInfoTable& column, const wchar_t* text, int length, void* target);
  int StoreDouble(const QorTypeCheckInfoTable& column, const wchar_t* text, int length, void* target);

  CString m_work;  // the field in work, kept for its block
  CString m_half;  // its half-width form
};
