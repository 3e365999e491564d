#pragma once

// CQorSplitPath: one path taken apart into drive, machine, folder, name and extension. An object belongs to
// one thread at a time.

#include <atomic>

#include "qorgen/platform/export.h"

// Backslash and forward slash both separate. A path of up to 260 characters is taken whole; of a longer one
// the first 260. A folder, name or extension of more than 255 characters leaves drive, folder, name and
// extension empty.
//
//   path                        drive   computer  directory        file name  extension
//   C:\a\b.txt                  C:                \a\              b          .txt
//   C:                          C:
//   a/b.tar.gz                                    a/               b.tar      .gz
//   \\srv\share\dir\a.txt       \\srv   srv       \share\dir\      a          .txt
//   \\srv\                      \\srv   srv
//   \\srv                                                          srv
//
// The share of a network path belongs to the directory. Two forward slashes do not begin a network path.
class QORGEN_API CQorSplitPath {
 public:
  // Splits `path` unless it is null; all parts are empty then.
  explicit CQorSplitPath(const wchar_t* path);

  // Shallow: source and copy share one set of texts, so a Split of one shows in the other, and by contract at
  // most one of the two is destroyed. Destroying both does no harm here: the texts go with the last object
  // that shares them.
  CQorSplitPath(const CQorSplitPath& other);
  CQorSplitPath& operator=(const CQorSplitPath& other);
  virtual ~CQorSplitPath();

  // Takes `path` apart; 1, or 0 with nothing touched when `path` is null or there was no memory for the
  // texts. The computer name is written by network paths only: after a local path it still names the machine
  // of an earlier one. `path` may be one of the object's own texts.
  int Split(const wchar_t* path);

  // The parts, valid as long as an object that shares them; an empty text where there is nothing. All
  // null without memory.
  const wchar_t* GetPath() const { return m_path; }
  const wchar_t* GetDrive() const { return m_drive; }                 // "C:" or "\\srv"
  const wchar_t* GetComputerNameW() const { return m_computerName; }  // "srv"
  const wchar_t* GetDirectory() const { return m_directory; }         // with its separators
  const wchar_t* GetFileName() const { return m_fileName; }           // without extension
  const wchar_t* GetExtension() const { return m_extension; }         // with its dot
  const wchar_t* GetConnectPath() const { return m_connectPath; }     // drive and directory
  const wchar_t* GetConnectFile() const { return m_connectFile; }     // name and extension

 private:
  void Share(const CQorSplitPath& other);
  void Release();
  [[nodiscard]] bool HasTexts() const;
  void SplitNetworkPath();

  wchar_t* m_path = nullptr;
  wchar_t* m_drive = nullptr;
  wchar_t* m_computerName = nullptr;
  wchar_t* m_directory = nullptr;
  wchar_t* m_fileName = nullptr;
  wchar_t* m_extension = nullptr;
  wchar_t* m_connectPath = nullptr;
  wchar_t* m_connectFile = nullptr;
  std::atomic<long>* m_owners = nullptr;  // how many objects share the texts; null when there are none
};
