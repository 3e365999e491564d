// Writing to streams: text in the stream's encoding and with its line ends.

#include <algorithm>
#include <array>
#include <utility>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/linux/codepage/codec.h"
#include "qorgen/platform/linux/crt/stream.h"
#include "qorgen/platform/text_stream.h"

using namespace qorgen::platform;

namespace {

bool PutRaw(FILE* stream, const char* bytes, size_t count) {
  return count == 0 || fwrite_unlocked(bytes, 1, count, stream) == count;
}

constexpr size_t kPiece = 1024;

bool PutAnsi(FILE* stream, const wchar_t* text, size_t units) {
  std::array<char, 2 * kPiece> bytes;
  Encoding932 encoding;
  Progress progress = Encode932(text, units, bytes.data(), bytes.size(), encoding);
  if (encoding.replaced) {
    // What stands before the first character without a code is still written.
    size_t good = 0;
    for (encoding.replaced = false; good < units; ++good) {
      Encode932(text + good, 1, nullptr, 0, encoding);
      if (encoding.replaced) break;
    }
    progress = Encode932(text, good, bytes.data(), bytes.size(), encoding);
    PutRaw(stream, bytes.data(), progress.written);
    errno = EILSEQ;
    return false;
  }
  return PutRaw(stream, bytes.data(), progress.written);
}

// Bytes with line ends as a text stream has them on disk. A line goes out in one call: the byte behind the end of the
// bytes may be overwritten.
bool PutLines(FILE* stream, char* from, char* end) {
  // No character of two bytes has a line feed for its second.
  while (void* const found =
             from == end ? nullptr : std::memchr(from, '\n', static_cast<size_t>(end - from))) {
    char* const feed = static_cast<char*>(found);
    if (feed + 1 == end) {
      feed[0] = '\r';
      feed[1] = '\n';
      ++end;
      break;
    }
    if (!PutRaw(stream, from, static_cast<size_t>(feed - from)) || !PutRaw(stream, "\r\n", 2)) return false;
    from = feed + 1;
  }
  return PutRaw(stream, from, static_cast<size_t>(end - from));
}

bool PutUtf8(StreamState& state, FILE* stream, const wchar_t* text, size_t units) {
  std::array<char, 3 * (kPiece + 1)> bytes;
  std::array<wchar_t, kPiece + 1> joined;
  if (state.high_surrogate != 0) {
    joined[0] = std::exchange(state.high_surrogate, wchar_t{0});
    if (state.high_position == ftell(stream)) {
      std::copy_n(text, units, joined.data() + 1);
      text = joined.data();
      ++units;
    }
  }
  const bool cut = (text[units - 1] & 0xFC00) == 0xD800;
  bool invalid = false;
  const Progress progress = EncodeUtf8(text, units - (cut ? 1 : 0), bytes.data(), bytes.size(), invalid);
  if (!PutRaw(stream, bytes.data(), progress.written)) return false;
  if (cut) {
    state.high_surrogate = text[units - 1];
    state.high_position = ftell(stream);
  }
  return true;
}

bool PutRun(StreamState& state, FILE* stream, const wchar_t* text, size_t units) {
  if (state.text.code_page == kUtf16Text) {
    return PutRaw(stream, reinterpret_cast<const char*>(text), units * sizeof(wchar_t));
  }
  for (size_t done = 0; done < units; done += kPiece) {
    const size_t piece = std::min(kPiece, units - done);
    const bool good = state.text.code_page == CP_UTF8 ? PutUtf8(state, stream, text + done, piece)
                                                      : PutAnsi(stream, text + done, piece);
    if (!good) return false;
  }
  return true;
}

bool Put(StreamState& state, FILE* stream, const wchar_t* text, size_t units) {
  if (!state.text.translate) return PutRun(state, stream, text, units);
  const wchar_t* const end = text + units;
  while (text != end) {
    const wchar_t* feed = wmemchr(text, L'\n', static_cast<size_t>(end - text));
    const wchar_t* stop = feed == nullptr ? end : feed;
    if (!PutRun(state, stream, text, static_cast<size_t>(stop - text))) return false;
    if (feed == nullptr) break;
    if (!PutRun(state, stream, L"\r\n", 2)) return false;
    text = feed + 1;
  }
  return true;
}

bool IsAnsiText(const StreamState* state) {
  return state != nullptr && state->text.translate && state->text.code_page == kAnsiText;
}

}  // namespace

namespace qorgen::platform {

AnsiPut PutAnsiText(FILE* stream, const wchar_t* text, size_t units) {
  if (!IsAnsiText(FindStream(stream))) return AnsiPut::kNotHere;
  std::array<char, 2 * kPiece + 1> bytes;
  Encoding932 encoding;
  for (size_t done = 0; done < units; done += kPiece) {
    const size_t piece = std::min(kPiece, units - done);
    const size_t length = Encode932(text + done, piece, bytes.data(), 2 * kPiece, encoding).written;
    if (!PutLines(stream, bytes.data(), bytes.data() + length)) return AnsiPut::kFailed;
  }
  return AnsiPut::kDone;
}

bool PutBytes(const void* bytes, size_t count, FILE* stream) {
  const auto* from = static_cast<const char*>(bytes);
  if (!IsAnsiText(FindStream(stream))) return PutRaw(stream, from, count);
  std::array<char, kPiece + 1> piece;
  for (size_t done = 0; done < count; done += kPiece) {
    const size_t length = std::min(kPiece, count - done);
    std::copy_n(from + done, length, piece.data());
    if (!PutLines(stream, piece.data(), piece.data() + length)) return false;
  }
  return true;
}

}  // namespace qorgen::platform

int qorgen_fputws(const wchar_t* text, FILE* stream) {
  if (text == nullptr || stream == nullptr) {
    errno = EINVAL;
    return EOF;
  }
  StreamState foreign;
  foreign.text.code_page = CP_UTF8;
  foreign.text.translate = false;
  StreamState* const state = FindStream(stream);
  const size_t units = wcslen(text);
  if (!Put(state != nullptr ? *state : foreign, stream, text, units)) return EOF;
  // Nobody would write the waiting half of a pair later.
  return foreign.high_surrogate == 0 || PutRaw(stream, "\xEF\xBF\xBD", 3) ? 0 : EOF;
}
