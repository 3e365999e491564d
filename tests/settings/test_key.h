#pragma once

// A key on a folder of the test's own, whose protected operations can be called.

#include <memory>
#include <string>

#include "qorgen/settings/reg_file_key.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"

namespace qorgen::tests {

class TestKey : public CQorRegFileKey {
 public:
  explicit TestKey(const wchar_t* folder) : CQorRegFileKey(HKEY_CURRENT_USER) { Construct(folder); }

  using CQorRegFileKey::CloseFile;
  using CQorRegFileKey::Construct;
  using CQorRegFileKey::CopySubKeys;
  using CQorRegFileKey::CopyValues;
  using CQorRegFileKey::DeleteBinary;
  using CQorRegFileKey::Destruct;
  using CQorRegFileKey::GetBinaryFile;
  using CQorRegFileKey::GetLongFile;
  using CQorRegFileKey::GetStringFile;
  using CQorRegFileKey::GetValuePath;
  using CQorRegFileKey::m_binary;
  using CQorRegFileKey::m_binarySize;
  using CQorRegFileKey::m_openFile;
  using CQorRegFileKey::OpenFile;
  using CQorRegFileKey::SetBinaryFile;
  using CQorRegFileKey::SetLongFile;
  using CQorRegFileKey::SetStringFile;
};

// The bytes of a text in UTF-16LE with its byte-order mark.
inline std::string Wide(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) (bytes += c) += '\0';
  return bytes;
}

}  // namespace qorgen::tests
