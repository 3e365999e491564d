#pragma once

// One file in a scratch folder of its own.

#include <string>

#include "tests/support/scratch_folder.h"

namespace qorgen::tests {

class TempFile {
 public:
  explicit TempFile(const std::string& bytes = {}) { PutFile(Path(), bytes); }

  // Valid until the eighth further call.
  const wchar_t* Path() const { return folder_.Path(L"表.csv"); }
  std::string Get() const { return GetFile(Path()); }

 private:
  mutable ScratchFolder folder_;
};

}  // namespace qorgen::tests
