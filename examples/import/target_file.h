#pragma once

// A file that is written beside the one whose place it takes when it is whole: an earlier file of that name stays until
// then, whatever happens.

#include <string>

#include "qorgen/qorgen.h"

class TargetFile {
 public:
  // Makes the new file, empty. Throws CFileException* with the name of the target, which says why nothing can be
  // written there. A link is followed; a device is written to itself.
  explicit TargetFile(const std::string& path);
  // Removes the new file, unless one of the two below was called.
  ~TargetFile();
  TargetFile(const TargetFile&) = delete;
  TargetFile& operator=(const TargetFile&) = delete;

  // The target as it was asked for, and the file to write.
  const std::string& Name() const { return name_; }
  const std::string& Path() const { return path_; }

  // Puts the new file in the place of the target. False when that isn't possible; it stays where it is then.
  bool Replace();
  // Leaves the new file where it is.
  void Keep() { kept_ = true; }
  // Throws CFileException* with the name of the target.
  [[noreturn]] void Fail(int cause) const;

 private:
  std::string name_;
  std::string target_;
  std::string path_;
  bool kept_ = false;
};
