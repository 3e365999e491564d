#include "qorgen/exchange/internal/legacy_text.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

#include "qorgen/afx/exception.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/platform/codepage.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/locale.h"
#include "qorgen/platform/text_stream.h"

namespace qorgen::exchange {
namespace {

constexpr std::size_t kMaxWrittenText = 0x3FFFFFFF;

// Decodes up to the first U+0000. Throws CMemoryException* and leaves `line` as it was.
void Decode(const platform::StreamLine& source, CString& line) {
  const int room = static_cast<int>(source.Bytes().length + platform::kLinePadding);
  if (IsWastefulText(line, room)) {
    CString fresh;
    fresh.Preallocate(room);
    line.Swap(fresh);
  }
  wchar_t* const text = line.GetBuffer(room);
  std::size_t length = source.Decode(text);
  if (source.Bytes().ended) {
    while (length != 0 && text[length - 1] == L'\r') --length;
  }
  if (source.Bytes().may_hold_control) length = wcsnlen(text, length);
  line.ReleaseBufferSetLength(static_cast<int>(length));
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

LegacyLine ReadLegacyLine(std::FILE* stream, CString& line) {
  platform::StreamLine source;
  switch (source.Read(stream, true)) {
    case platform::LineResult::kEnd:
      return LegacyLine::kEnd;
    case platform::LineResult::kFailed:
      return LegacyLine::kFailed;
    case platform::LineResult::kNoMemory:
      return LegacyLine::kPassedOver;
    case platform::LineResult::kLine:
      break;
  }
  try {
    Decode(source, line);
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
