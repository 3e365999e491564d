#pragma once

// CQorTemplateDoc: a text whose few changing values stand as keys between "$$" marks, "Dear $$NAME$$,". It is
// loaded from a UTF-8 file, takes values for its keys and writes the filled text as UTF-8. A document belongs
// to one thread at a time.

#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"

// One piece of a document.
class QORGEN_API CQorTemplateItem {
 public:
  CQorTemplateItem();
  CQorTemplateItem(const CQorTemplateItem& other);
  CQorTemplateItem& operator=(const CQorTemplateItem& other);
  virtual ~CQorTemplateItem();

  // An empty piece of text.
  void Init();
  // Copy at most 128 and 4,096 characters; null leaves the field as it is.
  void SetKey(const wchar_t* text);
  void SetStr(const wchar_t* text);

  int kind = 0;  // 0 plain text, 1 key
  CString key;   // with its two marks
  CString str;   // what is written: the text itself, or the value of the key
};

class QORGEN_API CQorTemplateDoc {
 public:
  CQorTemplateDoc();
  CQorTemplateDoc(const CQorTemplateDoc& other);
  CQorTemplateDoc& operator=(const CQorTemplateDoc& other);
  virtual ~CQorTemplateDoc();

  // Replaces the document by a file's, read line by line; a byte-order mark counts for nothing. 0 if the file
  // doesn't exist, which keeps the document, else 1: a file that can't be opened gives an empty document, one
  // that can't be read to its end what was read. Time and memory grow linearly with the file.
  //   - Text between two keys of one line is dropped: "$$A$$ and $$B$$" is the two keys. Text in front of the
  //     first key and behind the last one stays.
  //   - An opening mark without a closing one gives up the rest of its line and the line break with it.
  //   - A piece of text is cut to 4,096 characters, a key with its marks to 128.
  int LoadTemplateFile(const wchar_t* path);

  // Sets the value, cut to 4,096 characters, of every place of a key (given without marks). 1 if the document
  // has it, else 0.
  int SetString(CString key, CString value);

  // Writes the document in place of the file at `path`, line breaks as CR LF, with a byte-order mark. Keys
  // without a value write nothing. 0 for a null path, a file that can't be opened, and one that couldn't be
  // written to its end; what was written then stays. A document may be written many times.
  int WriteFile(const wchar_t* path);

  // The number of pieces; each line break is one.
  long GetCount() const;

 protected:
  void Clear();

 private:
  void AddText(const wchar_t* text);
  void AddLine(const CString& line);

  std::vector<CQorTemplateItem> items;
};
