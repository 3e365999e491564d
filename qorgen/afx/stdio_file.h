#pragma once

// CStdioFile: a CFile that reads and writes through a stream of the C runtime, buffered, and line by line.
//
// A stream is a text stream unless it was opened with typeBinary: line ends are CR LF on disk and LF in
// memory, and wide text is stored in the ANSI code page or as the stream's own encoding says. Positions are
// byte offsets in the file, whatever its line ends. (On Windows that holds for the files that this class
// opens and those of CQorUTF8CSVFile; the runtime's own answers, which in a text stream can be off, stand for
// a stream that was opened elsewhere. Let functions of the runtime read such a file's m_pStream only after
// Flush.) Failures are CFileException objects, thrown by pointer. An object belongs to one thread at a time.

#include <cstdio>

#include "qorgen/afx/file.h"

class QORGEN_API CStdioFile : public CFile {
  DECLARE_DYNAMIC(CStdioFile)

 public:
  CStdioFile();
  // Over an open stream that stays the caller's: the destructor doesn't close it, Close and Abort do. No path
  // is known. Null counts as no file.
  explicit CStdioFile(FILE* pOpenStream);
  // Opens the file and throws CFileException* when that fails.
  CStdioFile(const wchar_t* lpszFileName, unsigned int nOpenFlags);
  // Closes the stream if this object opened it; a failure is not reported.
  ~CStdioFile() override;

  unsigned long long GetPosition() const override;
  int Open(const wchar_t* lpszFileName, unsigned int nOpenFlags, CFileException* pError = nullptr) override;

  // A stream has one owner and no locks: these three throw the not-supported exception.
  CFile* Duplicate() const override;
  void LockRange(unsigned long long dwPos, unsigned long long dwCount) override;
  void UnlockRange(unsigned long long dwPos, unsigned long long dwCount) override;

  unsigned long long Seek(long long lOff, unsigned int nFrom) override;
  // For a stream without a file behind it the not-supported exception.
  void SetLength(unsigned long long dwNewLen) override;
  // Counts what is still in the buffer.
  unsigned long long GetLength() const override;
  // Bytes; in a text stream LF is CR LF in the file.
  unsigned int Read(void* lpBuf, unsigned int nCount) override;
  void Write(const void* lpBuf, unsigned int nCount) override;
  void Abort() override;
  // Hands what was written to the system. A stream that is being read keeps its place.
  void Flush() override;
  // A failure to write what is buffered is thrown after the stream has been closed.
  void Close() override;

  // Writes the text as it is, without a line end. Null writes nothing.
  virtual void WriteString(const wchar_t* lpsz);
  // At most `nMax` - 1 units up to and with the next line feed, and a terminator; null at the end of the
  // file, with the buffer as it was, and for a null buffer or no room.
  virtual wchar_t* ReadString(wchar_t* lpsz, unsigned int nMax);
  // A line of any length without its line feed, zero characters included; 1. 0 and an empty text at the end
  // of the file; a last line without a line feed is a line. Takes time in proportion to the line and reuses
  // the string's block.
  virtual int ReadString(CString& rString);

  FILE* m_pStream;

 protected:
  // Throws CFileException* for errno and clears the stream's error: it can be read again where the cause has gone.
  [[noreturn]] void ThrowReadError() const;

 private:
  [[noreturn]] void ThrowErrno() const;
  FILE* OpenStream() const;
  FILE* SettledStream() const;
};
