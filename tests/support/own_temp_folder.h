#pragma once

// Makes a scratch folder the temporary folder of this process while an object lives; for operations that use
// a fixed name there. One at a time.

#include <cstdlib>
#include <string>

#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"

namespace qorgen::tests {

class OwnTempFolder {
 public:
  OwnTempFolder() {
    const std::string path = Utf8(folder_.Path(L""));
    Set(0, "TMP=" + path);
    // The host's form of the path, for the host that looks there.
    std::string host = path.substr(2);
    for (char& c : host) c = c == '\\' ? '/' : c;
    Set(1, "TMPDIR=" + host);
  }
  ~OwnTempFolder() {
    Set(0, former_[0]);
    Set(1, former_[1]);
  }
  OwnTempFolder(const OwnTempFolder&) = delete;
  OwnTempFolder& operator=(const OwnTempFolder&) = delete;

  // Valid until the eighth further call.
  const wchar_t* Path(const wchar_t* name) { return folder_.Path(name); }

 private:
  static std::string Get(const char* name) {
    const char* value = std::getenv(name);
    return std::string(name) + "=" + (value != nullptr ? value : "");
  }
  // putenv keeps the text that it is given.
  static void Set(int which, const std::string& text) {
    static std::string kept[2][2];
    static int turn[2];
    std::string& place = kept[which][turn[which] ^= 1];
    place = text;
    putenv(place.data());
  }

  ScratchFolder folder_;
  const std::string former_[2] = {Get("TMP"), Get("TMPDIR")};
};

}  // namespace qorgen::tests
