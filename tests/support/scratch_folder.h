#pragma once

// A folder of a test's own in the temporary folder, removed with everything in it at the end of the test.

#include <filesystem>
#include <string>

#include "qorgen/platform/filesystem.h"

namespace qorgen::tests {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  // The path of `name` in the folder, backslashes throughout; an empty name gives the folder itself. Valid
  // until the eighth further call.
  const wchar_t* Path(const wchar_t* name);

 private:
  std::u16string root_;
  wchar_t texts_[8][512];
  int next_ = 0;
};

// Moves the process into a folder as long as it lives.
class InFolder {
 public:
  explicit InFolder(const wchar_t* path);
  ~InFolder();
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;

 private:
  std::filesystem::path former_;
};

// Makes or replaces a file with these bytes; false when that isn't possible.
bool PutFile(const wchar_t* path, const std::string& bytes);
// The bytes of a file; "(missing)" when it can't be read.
std::string GetFile(const wchar_t* path);
// Whether a file marked read-only can be written nevertheless: Wine leaves the refusal to the host's
// permissions, which do not bind the host's root.
bool ReadOnlyFilesAreWritable();
// Whether anything has this name.
bool Exists(const wchar_t* path);

}  // namespace qorgen::tests
