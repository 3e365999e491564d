#pragma once

// The texts that the measurements run over: the file that `bench/run` names in QORGEN_BENCH_FILE, as bytes,
// as wide text, and as the short strings that its columns hold.

#include <string>
#include <vector>

namespace qorgen::bench {

// The file's bytes, code page 932.
const std::string& FileBytes();

// All of it decoded; NUL-terminated.
const std::vector<wchar_t>& FileText();

// Some thousand different texts, NUL-terminated, of one kind.
enum class Kind { kHalfKana, kHiragana, kMixed };
const std::vector<std::vector<wchar_t>>& Texts(Kind kind);

inline const char16_t* Units(const wchar_t* text) {
  return reinterpret_cast<const char16_t*>(text);
}
inline char16_t* Units(wchar_t* text) {
  return reinterpret_cast<char16_t*>(text);
}

}  // namespace qorgen::bench
