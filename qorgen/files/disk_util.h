#pragma once

// CQorDiskUtil: the roots of the machine's drives. An object belongs to one thread at a time.

#include "qorgen/afx/array.h"
#include "qorgen/platform/export.h"
#include "qorgen/platform/types.h"

class QORGEN_API CQorDiskUtil {
 public:
  CQorDiskUtil();
  CQorDiskUtil(const CQorDiskUtil&) = delete;
  CQorDiskUtil& operator=(const CQorDiskUtil&) = delete;
  // Frees the list but not its texts: call Finalize first, or they are lost.
  ~CQorDiskUtil();

  // Reads the roots, in place of those of an earlier call; 0 if the system could not name them. On Linux:
  // "C:\", the root of the file system, and the mount points of further disks and network volumes.
  int Initialize();

  // Gives the texts and the list back; the count is 0 then.
  void Finalize();

  int GetCount() const;

  // The root, for instance "C:\", valid until Finalize or the next Initialize. An index outside the list
  // throws the invalid-argument exception, here and below.
  const wchar_t* GetString(int index) const;

  // The kind of drive, a DRIVE_... number.
  unsigned int GetType(int index) const;

  // Bytes free to the user, in all, and free in all; null outputs are left out. 0, and nothing written, if
  // the drive does not answer.
  int GetBytes(int index, ULARGE_INTEGER* available, ULARGE_INTEGER* total, ULARGE_INTEGER* free);

 private:
  CArray<const wchar_t*, const wchar_t* const&> m_roots;
};
