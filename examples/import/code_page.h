#pragma once

// The characters of code page 932, for text that came from elsewhere.

#include <bitset>

class CodePage932 {
 public:
  CodePage932();

  // Whether a text comes back as it is from a file in this code page.
  bool Holds(const wchar_t* text) const;

 private:
  std::bitset<0x10000> has_;  // by UTF-16 unit
};
