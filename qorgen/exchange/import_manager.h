#pragma once

// CQorImportManager and CQorUTF8ImportManager: the loop of an import. They open a file, read a row at a time
// into the application's record through a CQorTypeConverter, and say for each row what came of it. An object
// belongs to one thread at a time; opening a file sets the process-wide locale, see csv_file.h.
//
//   while ((status = manager.ReadRow(&record, 1)) != READSTATUS_EOF) {
//     if (status == READSTATUS_OK) take(record);
//     if (status == READSTATUS_ERROR) report(manager.GetReadString(), converter);
//   }
//
// The time grows linearly with the file, and the memory doesn't depend on its size.

#include <memory>
#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/exchange/csv_file.h"
#include "qorgen/exchange/csv_manager.h"
#include "qorgen/exchange/type_converter.h"
#include "qorgen/platform/export.h"

enum READSTATUS : int {
  READSTATUS_OK = 0,     // a row was read and converted
  READSTATUS_SKIP = 1,   // a comment (# in the very first place) or an empty line; the record wasn't touched
  READSTATUS_ERROR = 3,  // the row failed in conversion, or no file is open
  READSTATUS_EOF = 4,    // no more lines
};

class QORGEN_API CQorImportManager {
 public:
  CQorImportManager();
  // Field by field: a copy shares the open file and its read position. The file object lives until the last
  // of its managers lets go of it; Close closes it for all, and the others then answer as closed managers do.
  CQorImportManager(const CQorImportManager& other);
  CQorImportManager& operator=(const CQorImportManager& other);

  // Opens `path`, in code page 932, for rows of `converter`, which is borrowed. Returns 1, or 0 for a null
  // argument and a file that doesn't exist; throws CFileException* when it exists and can't be opened. After
  // a failure the manager is as it was. Opening again without Close replaces the file without closing it: it
  // stays open until Close or the end of the manager. An override hands its file over by setting `file`, and
  // never deletes it itself.
  virtual int OpenText(const wchar_t* path, CQorTypeConverter* converter, unsigned int delimiterType,
                       CSVMGR_QUOTES quotes);

  virtual ~CQorImportManager();

  // Reads the next line into `record`, which CQorTypeConverter::Convert fills under `checkCount`.
  // READSTATUS_ERROR without an open file or a converter.
  READSTATUS ReadRow(void* record, unsigned char checkCount);
  // The same, and the next read gives this line again.
  READSTATUS ReadRowOnly(void* record, unsigned char checkCount);
  // Back to the first line. Does nothing without an open file.
  void MoveFirst();
  // 1 if no file is open or its end is reached (the position is at the size the file had when it was opened),
  // else 0.
  int IsEOF();
  // Closes the file. The texts of the last row and the converter stay. A manager without an open file stays
  // as it is.
  void Close();
  // The raw text of the last line read, comments and empty lines included.
  CString GetReadString();

 protected:
  // Forgets file, converter, size and raw text; a file that nobody shares is closed by that. Returns 1. The
  // destructor does the same.
  int Finalize();
  // Makes `opened` the file of this manager, with its present length and `converter`.
  void TakeFile(std::unique_ptr<CQorCSVFile> opened, CQorTypeConverter* converter);

  unsigned long long fileSize = 0;
  CQorCSVFile* file = nullptr;  // owned
  CQorTypeConverter* converter = nullptr;
  CString readString;
  CQorCSVManager csvManager;

 private:
  struct OpenFile;
  bool IsOpen() const;
  void AdoptFile() const;

  mutable std::shared_ptr<OpenFile> m_owner;                  // of `file`
  mutable std::vector<std::shared_ptr<OpenFile>> m_replaced;  // of the files before it that were never closed
};

// The same for a file in UTF-8, with or without a byte order mark.
class QORGEN_API CQorUTF8ImportManager : public CQorImportManager {
 public:
  CQorUTF8ImportManager();
  int OpenText(const wchar_t* path, CQorTypeConverter* converter, unsigned int delimiterType,
               CSVMGR_QUOTES quotes) override;
};
