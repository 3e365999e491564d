#pragma once

// CFileFind: a search in a folder. An object belongs to one thread at a time.
//
//   CFileFind finder;
//   int more = finder.FindFile(L"C:\\data\\*.csv");
//   while (more) {
//     more = finder.FindNextFile();  // steps to a file, and says whether another follows
//     use(finder.GetFilePath());
//   }

#include "qorgen/afx/object.h"
#include "qorgen/afx/string.h"
#include "qorgen/afx/time.h"
#include "qorgen/platform/types.h"

class QORGEN_API CFileFind : public CObject {
  DECLARE_DYNAMIC(CFileFind)

 public:
  CFileFind();
  // Ends the search.
  ~CFileFind() override;

  // What the question is about: the file that the last FindNextFile stepped to. Before the first step numbers
  // are 0, texts are empty and questions answered with 0.
  virtual unsigned long long GetLength() const;
  virtual CString GetFileName() const;
  // Folder and name; the path is full, whatever the search was given.
  virtual CString GetFilePath() const;
  // The name without its extension.
  virtual CString GetFileTitle() const;
  // "file://" and the path.
  virtual CString GetFileURL() const;
  // The folder that is searched, full, without a separator at its end unless it is a root.
  virtual CString GetRoot() const;

  // 1 and the time; 0 with the target as it was.
  virtual int GetLastWriteTime(FILETIME* pTimeStamp) const;
  virtual int GetLastAccessTime(FILETIME* pTimeStamp) const;
  virtual int GetCreationTime(FILETIME* pTimeStamp) const;
  virtual int GetLastWriteTime(CTime& refTime) const;
  virtual int GetLastAccessTime(CTime& refTime) const;
  virtual int GetCreationTime(CTime& refTime) const;

  // 1 when the file has any of the FILE_ATTRIBUTE_* bits.
  virtual int MatchesMask(DWORD dwMask) const;
  // 1 for the entries "." and "..".
  virtual int IsDots() const;

  int IsReadOnly() const;
  int IsDirectory() const;
  int IsCompressed() const;
  int IsSystem() const;
  int IsHidden() const;
  int IsTemporary() const;
  int IsNormal() const;
  int IsArchived() const;

  // Ends the search; the object can begin another.
  void Close();
  // Begins a search; null means every file of the working folder. 1 when there is something to step to;
  // otherwise 0 with the reason as the system's last error. `dwUnused` is not looked at.
  virtual int FindFile(const wchar_t* pstrName = nullptr, DWORD dwUnused = 0);
  // Steps to the next file. 0 when it is the last one, or when there is none to step to. After the last file
  // a further step changes nothing.
  virtual int FindNextFile();

 protected:
  virtual void CloseContext();

  // Two records of the system, made with the first search: the file that the questions are about and the one
  // after it.
  void* m_pFoundInfo;
  void* m_pNextInfo;
  HANDLE m_hContext;
  int m_bGotLast;
  int m_bFound;  // whether m_pFoundInfo holds a file
  CString m_strRoot;
};
