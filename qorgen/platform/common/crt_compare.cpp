// Comparison without case under the names of the runtime, on both hosts: that of Windows folds ASCII alone until a
// locale is set. Callable from any thread.

#include "qorgen/platform/common/letter_case.h"
#include "qorgen/platform/crt.h"

int qorgen_wcsnicmp(const wchar_t* left, const wchar_t* right, size_t count) {
  for (; count != 0; --count, ++left, ++right) {
    const wchar_t a = qorgen::platform::ToLowerUnit(*left);
    const wchar_t b = qorgen::platform::ToLowerUnit(*right);
    if (a != b) return a < b ? -1 : 1;
    if (a == 0) return 0;
  }
  return 0;
}

int qorgen_wcsicmp(const wchar_t* left, const wchar_t* right) {
  return qorgen_wcsnicmp(left, right, static_cast<size_t>(-1));
}
