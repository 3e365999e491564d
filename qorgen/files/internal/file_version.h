#pragma once

// CQorFileVerInfo: the version block of one file. Not exported; an object belongs to one thread at a time.

#include <cstdint>

#include "qorgen/platform/types.h"
#include "qorgen/platform/version.h"

class CQorFileVerInfo {
 public:
  CQorFileVerInfo() = default;
  CQorFileVerInfo(const CQorFileVerInfo&) = delete;
  CQorFileVerInfo& operator=(const CQorFileVerInfo&) = delete;
  virtual ~CQorFileVerInfo();

  // Loads the block of a file in place of the present one. 1 only if it lists at least one language: a file
  // with a version number but without that list counts as having none.
  int Load(const wchar_t* path);

  // The numbers of the loaded block, valid until the next Load; null if there are none.
  const VS_FIXEDFILEINFO* GetFixedInfo() const;

 private:
  void Drop();

  BYTE* m_block = nullptr;
  DWORD m_blockSize = 0;
  void* m_translation = nullptr;  // in the block
  UINT m_translationLength = 0;   // bytes
};
