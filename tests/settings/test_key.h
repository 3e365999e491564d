#pragma once

// A key on a folder of the test's own, whose protected operations can be called.

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "qorgen/files/file_util.h"
#include "qorgen/settings/folder_key.h"

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"

namespace qorgen::tests {

struct TestKey : CQorRegFileKey {
  explicit TestKey(const wchar_t* folder) : CQorRegFileKey(HKEY_CURRENT_USER) { Construct(folder); }

  using CQorRegFileKey::CloseFile;
  using CQorRegFileKey::Construct;
  using CQorRegFileKey::CopySubKeys;
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

// The key lies below a folder that isn't there: nothing exists before the first write.
class KeyTest : public testing::Test {
 protected:
  CString In(const wchar_t* name) { return CQorFileUtil::ConnectPath(m_key.GetKeyName(), name); }
  std::string Get(const wchar_t* name) { return GetFile(In(name)); }
  void PutFolder(const wchar_t* name) { ASSERT_EQ(1, CQorFileUtil::CreateDirectories(In(name))); }
  void Put(const wchar_t* name, const std::string& bytes) {
    ASSERT_EQ(1, CQorFileUtil::CreateDirIfNotExists(In(name), 1)) << Utf8(name);
    ASSERT_TRUE(PutFile(In(name), bytes)) << Utf8(name);
  }

  ScratchFolder m_folder;
  TestKey m_key{CString(m_folder.Path(L"")) + L"\\会計\\CU"};
};

// The bytes of a text in UTF-16LE with its byte-order mark.
inline std::string Wide(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) (bytes += c) += '\0';
  return bytes;
}

}  // namespace qorgen::tests
