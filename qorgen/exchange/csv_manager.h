#pragma once

// CQorCSVManager: one line of delimited text in memory. It splits a line into fields on the way in and builds
// a line from fields on the way out. It knows nothing of files, has no error state and never rejects a line.
// An object belongs to one thread at a time.

#include <memory>
#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"

// The quote character. A value outside the list counts as CSVMGR_QUOTES_NONE.
enum CSVMGR_QUOTES : int {
  CSVMGR_QUOTES_DOUBLE = 0,  // "
  CSVMGR_QUOTES_SINGLE = 1,  // '
  CSVMGR_QUOTES_NONE = 2,
};

// Delimiter type, a set of flags. When reading, each set flag adds its character to the delimiters, and 0
// means that nothing separates. When writing, the highest set flag of the five lower ones gives the one
// delimiter; the slash is never written: with CSVMGR_DELIM_SLASH alone, and with any type above it, fields
// are joined with nothing. Bits above these six are ignored when reading.
inline constexpr unsigned int CSVMGR_DELIM_TAB = 0x01;
inline constexpr unsigned int CSVMGR_DELIM_SEMICOLON = 0x02;
inline constexpr unsigned int CSVMGR_DELIM_COMMA = 0x04;
inline constexpr unsigned int CSVMGR_DELIM_SPACE = 0x08;
inline constexpr unsigned int CSVMGR_DELIM_PERIOD = 0x10;
inline constexpr unsigned int CSVMGR_DELIM_SLASH = 0x20;

namespace qorgen::exchange {
class FieldList;
}

class QORGEN_API CQorCSVManager {
 public:
  // No fields, delimiter type 0, CSVMGR_QUOTES_DOUBLE, someAsOne 0, comment marking off.
  CQorCSVManager();
  // Stores the three settings and splits `line`; GetReadString stays empty. A null line counts as an empty
  // one.
  CQorCSVManager(const wchar_t* line, unsigned int delimiterType, CSVMGR_QUOTES quotes, int someAsOne);
  CQorCSVManager(const CQorCSVManager& other);
  CQorCSVManager& operator=(const CQorCSVManager& other);
  virtual ~CQorCSVManager();

  // Stores the three settings, keeps `line` for GetReadString, splits it, and returns the number of fields.
  // With someAsOne 1 (no other value) a run of delimiters counts as one. A null line counts as an empty one.
  // `line` may be a text of this manager. The time grows linearly with the line; nothing is allocated once
  // the manager has seen a line of this size.
  //
  // With commas and CSVMGR_QUOTES_DOUBLE:
  //   (empty)    no field            a,b,        a | b | (empty)
  //   ,          two empty fields    "a,""b"xy,c a,"b | c
  //    "a" ,b    a | b                a , b       a  |  b (spaces outside quotes are text)
  //   "ab        ab                  a"b"        a"b"
  // White space in front of a quote is dropped unless the space is a delimiter; a tab counts as white space
  // there even when it is a delimiter itself.
  int SetElements(const wchar_t* line, unsigned int delimiterType, CSVMGR_QUOTES quotes, int someAsOne);

  // Appends a field; null appends an empty one.
  void AddElement(const wchar_t* text);
  // Appends the quote type of a field, for writing. Entries go by the position of the field.
  void AddQuate(CSVMGR_QUOTES quotes);
  void SetQuatesType(CSVMGR_QUOTES quotes);
  void SetDelimiterType(unsigned int delimiterType);
  void SetSomeAsOne(int someAsOne);

  // Comment marking: `on` nonzero turns it on, `limit` is the highest line number that is marked.
  void SetCommentLineInfo(int on, int limit);
  // Puts a # in front of `line` if marking is on, the limit is nonzero and `lineNumber` isn't above it. The
  // splitter itself has no idea of comments.
  void AdjustCommentLine(CString& line, int lineNumber);

  // Builds a line from the fields, into `line`, and returns its text. Every field is quoted by its entry of
  // AddQuate, or by the type of SetQuatesType when it has none, whether it needs it or not; quotes inside are
  // doubled. A field without quotes is written as it is, delimiters and line breaks included. With delimiter
  // type 0 the result is null and `line` stays as it was.
  const wchar_t* MakeString(CString& line);

  int GetCount() const;
  // The text of a field, owned by the manager and good until the fields are next replaced or emptied. Null
  // for an index at or past the count; a negative one throws std::out_of_range ("invalid vector subscript").
  const wchar_t* GetAt(int index) const;

  // Removes the fields. The quote list of AddQuate stays on purpose: a writer sets it up once and refills the
  // fields for every line.
  void Empty();

  // The line of the last SetElements.
  CString GetReadString() const;

 protected:
  // Replaces the fields by those of `line`, under the settings as they are; null counts as an empty line.
  void separateString(const wchar_t* line);

  std::unique_ptr<qorgen::exchange::FieldList> elements;  // never null
  std::vector<CSVMGR_QUOTES> quotes;
  unsigned int delimiterType = 0;
  CSVMGR_QUOTES quotesType = CSVMGR_QUOTES_DOUBLE;
  int someAsOne = 0;
  CString readString;
  int commentLineOn = 0;
  int commentLineLimit = 0;

 private:
  friend class CQorTypeConverter;  // reads fields with their lengths
  friend class CQorImportManager;  // reads the raw line without sharing its block
  friend class CQorCSVFile;        // hands over lines
  friend class CQorExportBase;     // hands over fields with their lengths

  // SetElements of a line without a U+0000, which becomes the raw line without a copy: `line` has the block of the raw
  // line before it afterwards.
  void SwapElements(CString& line, unsigned int delimiterType, CSVMGR_QUOTES quotes, int someAsOne);
  void Split(const CString& line);
  // AddElement without a copy, and without a look for a U+0000 in the text: the text must stay as it is until the fields
  // are emptied or OwnTexts is called. CutAtZeros, which copies, has to be called before the fields are used if there is
  // such a character.
  void BorrowText(const CString& text);
  void OwnTexts();
  void CutAtZeros();
};
