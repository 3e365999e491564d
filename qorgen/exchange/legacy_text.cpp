#include "qorgen/exchange/internal/legacy_text.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

#include "qorgen/afx/exception.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/platform/ansi_text.h"
#include "qorgen/platform/codepage.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/locale.h"

namespace qorgen::exchange {
namespace {

constexpr std::size_t kMaxWrittenText = 0x3FFFFFFF;

// Decodes a line up to its first NUL byte. Throws CMemoryException* and leaves `line` as it was.
void Decode(const char* bytes, std::size_t length, CString& line) {
  if (const void* nul = std::memchr(bytes, 0, length)) {
    length = static_cast<std::size_t>(static_cast<const char*>(nul) - bytes);
  }
  const int size = static_cast<int>(length);
  if (IsWastefulText(line, size)) {
    CString fresh;
    fresh.Preallocate(size);
    line.Swap(fresh);
  }
  wchar_t* const text = line.GetBuffer(size);
  // No encoding here has more characters than bytes, so a sizing call would only repeat the work.
  const int units = MultiByteToWideChar(CP_ACP, 0, bytes, size + 1, text, size + 1);
  line.ReleaseBufferSetLength(units > 0 ? units - 1 : 0);
}

// False when a conversion fails.
bool Convert(const wchar_t* text, CString& result) {
  const std::size_t size = wcslen(text) + 1;
  if (size > kMaxWrittenText) return false;
  const int units = static_cast<int>(size);
  const int room = units * 2;
  char on_stack[1024];
  std::unique_ptr<char[]> large;
  if (static_cast<std::size_t>(room) > sizeof on_stack) {
    large.reset(new (std::nothrow) char[static_cast<std::size_t>(room)]);
    if (large == nullptr) return false;
  }
  char* const bytes = large != nullptr ? large.get() : on_stack;
  const int count = WideCharToMultiByte(CP_THREAD_ACP, 0, text, units, bytes, room, nullptr, nullptr);
  if (count <= 0) return false;
  wchar_t* const back = result.GetBuffer(count);
  const int length = MultiByteToWideChar(CP_THREAD_ACP, 0, bytes, count, back, count + 1);
  result.ReleaseBufferSetLength(length > 0 ? length - 1 : 0);
  return length > 0;
}

}  // namespace

void SetJapaneseLocale() {
  _wsetlocale(LC_ALL, L"japanese");
}

LegacyLine ReadLegacyLine(LineReader& reader, std::FILE* stream, const CString& path, CString& line) {
  switch (reader.Read(stream)) {
    case LineReader::Result::kEnd:
      return LegacyLine::kEnd;
    case LineReader::Result::kFailed: {
      const int error = errno;
      clearerr(stream);
      CFileException::ThrowErrno(error != 0 ? error : EIO, path);
      return LegacyLine::kEnd;
    }
    case LineReader::Result::kNoMemory:
      return LegacyLine::kPassedOver;
    case LineReader::Result::kLine:
      break;
  }
  try {
    Decode(reader.Text(), reader.Length(), line);
    return LegacyLine::kRead;
  } catch (CMemoryException* exception) {
    exception->Delete();
    return LegacyLine::kPassedOver;
  }
}

bool PutLegacyText(std::FILE* stream, const wchar_t* text, std::size_t length, const CString& path) {
  using platform::AnsiPut;
  if (stream == nullptr || length >= kMaxWrittenText) return false;
  const AnsiPut put = platform::PutAnsiText(stream, text, length);
  if (put == AnsiPut::kFailed) CFileException::ThrowErrno(errno != 0 ? errno : EIO, path);
  return put != AnsiPut::kNotHere;
}

bool ThroughCodePage(const wchar_t* text, CString& result) {
  try {
    return Convert(text, result);
  } catch (CMemoryException* exception) {
    exception->Delete();
    return false;
  }
}

}  // namespace qorgen::exchange
