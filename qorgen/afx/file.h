#pragma once

// CFile: an open file, unbuffered, with 64-bit positions. Failures of an open file are CFileException
// objects, thrown by pointer, with the cause, the system's error number and the file's name. An object
// belongs to one thread at a time.

#include "qorgen/afx/exception.h"
#include "qorgen/afx/object.h"
#include "qorgen/afx/string.h"
#include "qorgen/afx/time.h"
#include "qorgen/platform/types.h"

// Facts of a file. A time of 0 isn't known or, for SetStatus, not to be changed.
struct CFileStatus {
  CTime m_ctime;  // of its creation
  CTime m_mtime;  // of its last change
  CTime m_atime;  // of its last reading
  unsigned long long m_size = 0;
  DWORD m_attribute = 0;  // CFile::Attribute bits as the system has them; a plain file has none
  BYTE _m_padding = 0;
  wchar_t m_szFullName[MAX_PATH] = {};
};

// The C library has a function of the name `system`, which clang takes for shadowed by the published name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"

class QORGEN_API CFile : public CObject {
  DECLARE_DYNAMIC(CFile)

 public:
  // One of each of the first two groups, and any of the rest. The text and binary types mean something to
  // streams only.
  enum OpenFlags {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareCompat = 0x0000,  // the same as shareExclusive
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyRead = 0x0030,
    shareDenyNone = 0x0040,
    modeNoInherit = 0x0080,   // files are never inherited on Linux
    modeCreate = 0x1000,      // makes the file, or empties the one that is there
    modeNoTruncate = 0x2000,  // with modeCreate: leaves the content of one that is there
    typeText = 0x4000,
    typeBinary = 0x8000,
    osNoBuffer = 0x10000,  // a hint that Linux doesn't take, like the two access patterns
    osWriteThrough = 0x20000,
    osRandomAccess = 0x40000,
    osSequentialScan = 0x80000
  };

  enum Attribute {
    normal = 0x00,
    readOnly = 0x01,
    hidden = 0x02,
    system = 0x04,
    volume = 0x08,
    directory = 0x10,
    archive = 0x20
  };

  enum SeekPosition { begin = 0, current = 1, end = 2 };

  // What m_hFile holds while no file is open.
  static const HANDLE hFileNull;

  CFile();
  // Over a handle that stays the caller's: the destructor doesn't close it, Close does.
  explicit CFile(HANDLE hFile);
  // Opens the file and throws CFileException* when that fails.
  CFile(const wchar_t* lpszFileName, unsigned int nOpenFlags);
  // Closes the file if this object opened it; a failure is not reported.
  ~CFile() override;

  operator HANDLE() const { return m_hFile; }

  // The position in bytes from the start.
  virtual unsigned long long GetPosition() const;
  // The facts of the open file; 0, with `status` as it was, when there is no file or the system doesn't say.
  int GetStatus(CFileStatus& status) const;
  // Of the full path: the last part, that without its extension, all of it. Empty while no path is known.
  virtual CString GetFileName() const;
  virtual CString GetFileTitle() const;
  virtual CString GetFilePath() const;
  // Changes only the text that these answer with.
  virtual void SetFilePath(const wchar_t* lpszNewName);

  // 1 on success. Otherwise 0, and pError, if not null, is filled with cause, number and `lpszFileName` as
  // given. A file that is open already is closed first. A null or empty name fails like one with a missing
  // folder.
  virtual int Open(const wchar_t* lpszFileName, unsigned int nOpenFlags, CFileException* pError = nullptr);

  // These throw CFileException* when the system refuses. Rename doesn't replace an existing file.
  static void Rename(const wchar_t* lpszOldName, const wchar_t* lpszNewName);
  static void Remove(const wchar_t* lpszFileName);
  // 1, or 0 with `status` as it was. Folders have a status too; patterns don't.
  static int GetStatus(const wchar_t* lpszFileName, CFileStatus& status);
  // Sets the attributes, and those times that aren't 0. The creation time can't be set on Linux and is
  // ignored.
  static void SetStatus(const wchar_t* lpszFileName, const CFileStatus& status);

  // The new position: the file's length, or 0.
  unsigned long long SeekToEnd() { return Seek(0, end); }
  void SeekToBegin() { Seek(0, begin); }

  // A second object for the same file, sharing its position; the caller deletes it.
  virtual CFile* Duplicate() const;
  // The new position. It may lie behind the end, but not before the start.
  virtual unsigned long long Seek(long long lOff, unsigned int nFrom);
  // Cuts or extends (with zero bytes) the file and leaves the position at its new end.
  virtual void SetLength(unsigned long long dwNewLen);
  virtual unsigned long long GetLength() const;
  // The number of bytes read, less than `nCount` only at the end of the file.
  virtual unsigned int Read(void* lpBuf, unsigned int nCount);
  // Writes all bytes, or throws; a full disk has the cause diskFull.
  virtual void Write(const void* lpBuf, unsigned int nCount);
  // Bars other handles from a range of bytes, at once or not at all; ranges are unlocked as they were locked.
  virtual void LockRange(unsigned long long dwPos, unsigned long long dwCount);
  virtual void UnlockRange(unsigned long long dwPos, unsigned long long dwCount);
  // Closes without regard to failures.
  virtual void Abort();
  // Brings what was written to the disk. Nothing happens without a file; one open for reading only refuses.
  virtual void Flush();
  // Closes; nothing happens without a file.
  virtual void Close();

  HANDLE m_hFile;

 protected:
  // Throws for the system's last error, with the file's name.
  [[noreturn]] void ThrowLastError() const;

  int m_bCloseOnDelete;
  CString m_strFileName;  // the full path
};

#pragma GCC diagnostic pop
