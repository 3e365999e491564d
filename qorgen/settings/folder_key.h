#pragma once

// CQorRegFileKey: the operations of a registry key over a tree of folders and small files, so that settings
// live under the common documents folder, without the registry. An object belongs to one thread at a time.
//
//   CQorRegFileKey root(HKEY_CURRENT_USER);
//   std::unique_ptr<CQorRegFileKey> key(root.OpenSubKey(L"会計\\印刷", 1));
//   const long copies = key->GetLong(L"部数", 1);
//
// A key is a folder, a sub-key a sub-folder, and a value one file in the key's folder whose extension tells
// its type, one value a file and nothing else in it:
//
//   type            extension  bytes
//   REG_DWORD (4)   .dw        FF FE, then the decimal text of a signed 32-bit value in UTF-16LE
//   REG_SZ (1)      .sz        FF FE, then the text in UTF-16LE, each line feed as CR LF
//   REG_BINARY (3)  .dat       the bytes themselves
//
// Only the first line of a text is read back: a text with line ends is stored whole and comes back cut. A
// number is read from the first line, white space around it aside; it stops at the bounds of 32 bits, and 0
// stands for an empty line and for what is no number. A file without a byte-order mark is read as UTF-16LE,
// one with the mark of UTF-8 as that; an odd byte at the end counts for nothing.
//
// Names of values: folder part and last extension are dropped, so that the names of GetValueNames, which
// carry their extensions, can be passed straight back: "a.b" and "x\a" both address "a". Null addresses the
// default value, stored as "_ROOT"; an empty name, and one of over 255 characters, has an empty stem: ".dw".
// On Linux names that differ in case are two values, while the search behind GetValueType ignores case.
// DeleteValue and GetValue take their names otherwise, see there. Names of sub-keys: backslashes make deeper
// folders; null and empty text mean the key itself, unless said otherwise, and one of over 255 characters is
// refused.
//
// A name of dots ("." and "..", on Windows with blanks among them) is refused, for a sub-key also as a part of
// a deeper one: no operation leaves the key's folder. Such a value reads as one that is missing.
//
// Processes share the tree: a value is replaced in one step, so that a reader, in this process or another,
// finds the old value or the new one, whole, also after a writer was killed; the last writer wins, and no
// writer fails because of a reader. A write that fails leaves the old value. The new one is written beside it
// (stored_file.h); what a killed writer leaves behind is no value and goes with a later write in the folder.
// A power failure may lose the last values. Writing makes the missing folders of the key, and reading a
// missing number or text with a default stores the default.
//
// A value is a plain file: a link, device or pipe in its place can't be read, and makes way for the value that
// is stored.
//
// An int result is 1 for success or yes, else 0. A read that fails looks like 0, an empty text or null, and
// there is no record of the error. Nothing is thrown but for exhausted memory outside the reading and writing
// of a file. Pointer results stay the key's own until its next call of the same kind or its end; only what
// OpenSubKey and GetValue hand out belongs to the caller. Paths over 260 characters aren't guarded: the
// operation fails as the file system does.

#include <memory>

#include "qorgen/afx/stdio_file.h"
#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"
#include "qorgen/platform/registry.h"

class QORGEN_API CQorRegFileKey {
 public:
  // The key "KeyVault\LM" for HKEY_LOCAL_MACHINE and "KeyVault\CU" for HKEY_CURRENT_USER in the folder of
  // CQorFileUtil::GetCommonDocumentPath, and for any other root that folder itself. None of it is made. On
  // Linux see file_util.h for where the folder lies; should it be impossible to make, the path is relative
  // to the working folder. A value keeps its permissions when it is replaced; what is new has the process's own,
  // and in the machine-wide place of Linux what the administrator has decided, see shell.h.
  explicit CQorRegFileKey(HKEY root);

  // Shallow: source and copy share path, name lists, open file and binary value, and have the two texts each
  // of their own; by contract only one of the two is destroyed. Destroying both does no harm here: each part
  // lives until the last key lets go of it, and a part that one of them replaces stays the other's.
  CQorRegFileKey(const CQorRegFileKey& other);
  CQorRegFileKey& operator=(const CQorRegFileKey& other);
  virtual ~CQorRegFileKey();

  // The key's folder; for a root other than the two, with a backslash at its end.
  const wchar_t* GetKeyName() const;

  // Does nothing, since no handle is kept, and gives 1.
  int Close();

  // A new key, which the caller deletes. With `create` 0 the folder must exist, else it is made; null when
  // there is no such folder then.
  CQorRegFileKey* OpenSubKey(const wchar_t* name, int create);

  // Removes the folder with all it holds, as CQorFileUtil::DeleteDirectory does. 0 if it is neither a folder
  // nor a link, and for null. Empty text means this key's own folder.
  int DeleteSubKey(const wchar_t* name);

  // Takes the name whole, not its stem: a bare name is what it wants. Removes the file of the type that
  // GetValueType gives; 1 also when there is none. With a name that carries its extension the extension is
  // doubled, so nothing is found and the result is 1. 0 for a name with a part of dots.
  int DeleteValue(const wchar_t* name);

  // Whether there is a value of one of the three types.
  int IsExistValue(const wchar_t* name);

  // The type by the extension of the first file, in the order of the search, that has the name's stem: 4, 1,
  // 3, or 0 for another extension and when there is no file. The folder is `baseFolder`, or the key's for
  // null. Of two files with one stem the second stays unread here.
  unsigned long GetValueType(const wchar_t* name, const wchar_t* baseFolder);

  // A number. If the file is missing, the default is written to it and given back. Of a long the low 32 bits
  // count, with their sign.
  int GetInt(const wchar_t* name, int defaultValue);
  long GetLong(const wchar_t* name, long defaultValue);
  int SetInt(const wchar_t* name, int value);
  int SetLong(const wchar_t* name, long value);

  // Copies at most `bufferSize` characters of a text and fills the rest of the buffer with zeros; a text that
  // fills the buffer gets no terminator. If the file is missing the default is copied likewise, and not
  // stored. 0 for a null buffer, for a missing file without a default, and for a file that can't be read;
  // the buffer is untouched then. A size of 0 or less copies nothing.
  int GetString(const wchar_t* name, wchar_t* buffer, int bufferSize, const wchar_t* defaultValue);

  // A text. If the file is missing, the default is written to it and given back; null without a default.
  // Empty if the file can't be read.
  const wchar_t* GetString(const wchar_t* name, const wchar_t* defaultValue);

  // Null counts as empty text. Line ends are stored, but see above.
  int SetString(const wchar_t* name, const wchar_t* value);

  // Reads up to `bufferSize` bytes from the beginning; bytes of the buffer behind the file's end stay. 0 if
  // the file is missing or can't be read, and for a null buffer. A size of 0 or less reads nothing.
  int GetBinary(const wchar_t* name, void* buffer, int bufferSize);

  // The whole value; `size`, if not null, receives its bytes. An empty file gives a pointer and size 0. Null
  // if the file is missing, which leaves `size` alone, and with size 0 if it can't be read or has over 2 GB.
  void* GetBinary(const wchar_t* name, int* size);

  // 0 with nothing done for a negative size and for null with a size; null with size 0 stores an empty file.
  int SetBinary(const wchar_t* name, void* const data, int size);

  // Type, size and a copy of the data of a value; always 0. The file is that of `name` as it stands, so the
  // name must carry its extension, while the type is found by its stem: a bare name gives the type, and 0 or
  // an empty text. Each of `type`, `data` and `size` may be null. `data` receives a new block, which goes
  // back through QorFree:
  //   REG_DWORD   size 4; the number, 4 bytes
  //   REG_SZ      size (2n + 2) * 2 for a text of n characters; n characters and a terminator, 2n + 2 bytes.
  //               The size is twice that of the block, so read up to the terminator
  //   REG_BINARY  the size, and a copy of the bytes
  // `data` and `size` are left alone for any other type, and for a binary value that can't be read.
  int GetValue(const wchar_t* name, unsigned long* type, unsigned char** data, int* size);

  // Stores by type: 4 the signed 32-bit value at `data`, whatever the size says; 1 the wide text at `data` up
  // to its terminator, whatever the size says; 3 `size` bytes. No alignment is asked for. 0 for any other
  // type, and for null with type 4; null with type 1 or 3 as in SetString and SetBinary.
  int SetValue(const wchar_t* name, unsigned long type, unsigned char* data, int size);

  // The names of the values, with their extensions, and of the sub-keys, in the order of the search: the
  // folder as it stands at the call, whatever else lies in it. Null with `count` and the former list left
  // alone when there is none. Asking for sub-keys sets the attributes of the key's folder to normal; null,
  // too, when that is refused. `count` may be null.
  const wchar_t** GetValueNames(int* count);
  const wchar_t** GetSubKeyNames(int* count);

  // Copying reads and writes value by value, so texts with line ends come out cut, and of two files with one
  // stem only the first in the order of the search is copied. Its counts are peculiar and kept so:
  //  - CopyValues takes as many values as the source has sub-folders. 0 if it has none, or fewer values than
  //    sub-folders. A file of no type takes its turn and is left out.
  //  - CopySubKeys takes as many sub-keys of the source as this key has sub-folders. 0 if this key has none,
  //    if the source has fewer, and when the copy of one fails.
  //  - With `copySubKeys` nonzero the sub-keys of a copied sub-key follow, whatever becomes of them; 0 for a
  //    sub-key without sub-folders. With `copyValues` nonzero CopyValues of each key comes first, and its
  //    failure is the failure of the copy.
  // Folders of the destination are made, and whatever was copied before a failure stays. A copy into the
  // source's own tree ends where paths get too long.
  //
  // CopySubKey copies the source itself to the sub-key `name`; for null, to one named as the source's path
  // is, without drive. Its values first, and then its sub-keys as CopySubKeys does, counting this key's.
  int CopySubKey(const CQorRegFileKey& source, const wchar_t* name, int copySubKeys, int copyValues);
  int CopySubKeys(const CQorRegFileKey& source, int copySubKeys, int copyValues);
  int CopyValues(const CQorRegFileKey& source);

 protected:
  // Takes `path`, or empty text for null, as the key's folder, and lets go of everything held so far.
  void Construct(const wchar_t* path);
  // Lets go of everything; an open file is closed, a failure of that stays unseen. The argument means nothing
  // to this class. GetKeyName gives empty text until the next Construct.
  void Destruct(int close);

  // The path of a value's file, valid until the next call; a type that is none of the three adds no
  // extension. Null for `baseFolder` means the key's folder.
  const wchar_t* GetValuePath(const wchar_t* name, unsigned long type, const wchar_t* baseFolder);

  // Closes a file that is still open and opens another as m_openFile; 1. Throws CFileException* when either
  // fails. `mode` and `createFolder` as for CQorFileUtil::Open.
  int OpenFile(const wchar_t* path, const wchar_t* mode, int createFolder);
  // Closes the open file, if any; throws CFileException* when what is buffered can't be written, and the file
  // is closed then, too.
  void CloseFile();
  void DeleteBinary();

  // One file each, opened and closed within the call; nothing is thrown. Reads give 0, empty text or null on
  // failure, writes 0. Writes make missing folders.
  int SetLongFile(const wchar_t* path, long value);
  int SetStringFile(const wchar_t* path, const wchar_t* value);
  // The data may be this key's own binary value. A copy of them stays as the binary value, with size 0.
  int SetBinaryFile(const wchar_t* path, void* const data, int size);
  long GetLongFile(const wchar_t* path);
  int GetStringFile(const wchar_t* path, wchar_t* buffer, int size);
  const wchar_t* GetStringFile(const wchar_t* path);
  int GetBinaryFile(const wchar_t* path, void* buffer, int size);
  void* GetBinaryFile(const wchar_t* path);

  // The copies between folders; the first counts the sub-folders of this key. The second copies the sub-key
  // `name` of `srcBase` to `newName`, or `name` for null, in `dstBase`; `depth` is that of the recursion and
  // serves nothing else.
  int CopySubKeys(const wchar_t* srcPath, const wchar_t* dstPath, int copySubKeys, int copyValues);
  int CopySubKeys(const wchar_t* srcBase, const wchar_t* dstBase, const wchar_t* name, const wchar_t* newName,
                  int copySubKeys, int copyValues, int depth);
  int CopyValues(const wchar_t* srcPath, const wchar_t* dstPath);

  struct NameList;

  std::shared_ptr<const CString> m_keyPath;  // null only after Destruct
  std::shared_ptr<NameList> m_subKeyNames;   // of the last GetSubKeyNames that found any
  std::shared_ptr<NameList> m_valueNames;    // of the last GetValueNames that found any
  int m_subKeyCount = 0;
  int m_valueCount = 0;
  std::shared_ptr<CStdioFile> m_openFile;  // null between operations
  CString m_string;                        // the last text read or taken as a default
  std::shared_ptr<unsigned char[]> m_binary;
  int m_binarySize = 0;
  CString m_valuePath;

 private:
  CQorRegFileKey();  // for Construct
};
