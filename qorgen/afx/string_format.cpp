// Formatting of a CString by the platform's wide rules.

#include "qorgen/afx/string.h"
#include "qorgen/platform/crt.h"

void CString::FormatV(const wchar_t* format, va_list arguments) {
  // Built apart: the own text may be among the arguments, and it stays when the format is wrong.
  CString formatted;
  formatted.AppendFormatV(format, arguments);
  Swap(formatted);
}

void CString::AppendFormatV(const wchar_t* format, va_list arguments) {
  if (format == nullptr) ThrowInvalidArgument();
  va_list counted;
  va_copy(counted, arguments);
  const int added = _vscwprintf(format, counted);
  va_end(counted);
  if (added < 0) ThrowInvalidArgument();
  if (added == 0) return;
  const int length = GetLength();
  // A second owner keeps the present block, from which arguments may be read, as it is.
  const CString keep(*this);
  Reserve(std::int64_t{length} + added, true);
  // The terminator's place is part of the capacity handed over; a text of exactly `added` units leaves it
  // alone.
  _vsnwprintf(m_pszData + length, static_cast<std::size_t>(added) + 1, format, arguments);
  SetLength(length + added);
}

void CString::FormatPlain(bool append, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  try {
    if (append) {
      AppendFormatV(format, arguments);
    } else {
      FormatV(format, arguments);
    }
  } catch (...) {
    va_end(arguments);
    throw;
  }
  va_end(arguments);
}
