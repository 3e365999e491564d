// Text of several lines in a field that holds one.

#include <algorithm>
#include <array>

#include "qorgen/text/internal/convert.h"
#include "qorgen/text/string_util.h"

namespace qorgen::text {
namespace {

using Mark = std::array<wchar_t, 2>;

Mark MarkFor(int ampersand) {
  return {ampersand != 0 ? L'&' : L'\\', L'n'};
}

bool IsMarkAt(View text, std::size_t at, const Mark& mark) {
  return at + 1 < text.size() && text[at] == mark[0] && text[at + 1] == mark[1];
}

// The lines from the first to the one numbered `last_line`, without the mark behind it.
View CutLines(View text, long long last_line, const Mark& mark) {
  if (last_line < 0) return text.first(0);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!IsMarkAt(text, at, mark)) continue;
    if (last_line-- == 0) return text.first(at);
    ++at;  // behind the mark
  }
  return text;
}

std::size_t EncodeBreaks(wchar_t* const out, View text, const Mark& mark) {
  wchar_t* end = out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != L'\r' && text[i] != L'\n') {
      *end++ = text[i];
      continue;
    }
    if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') ++i;
    end = std::copy(mark.begin(), mark.end(), end);
  }
  return static_cast<std::size_t>(end - out);
}

std::size_t DecodeBreaks(wchar_t* const out, View text, const Mark& mark) {
  wchar_t* end = out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsMarkAt(text, i, mark)) {
      *end++ = L'\r';
      *end++ = L'\n';
      ++i;
    } else {
      *end++ = text[i];
    }
  }
  return static_cast<std::size_t>(end - out);
}

}  // namespace
}  // namespace qorgen::text

using namespace qorgen::text;

void CQorStringUtil::GetEncodeString(const wchar_t* text, CString& dest, int lastLine, int ampersand) {
  if (text == nullptr) {
    dest.Empty();
    return;
  }
  const Mark mark = MarkFor(ampersand);
  IntoString(dest, text, 2, [&](wchar_t* out, View source) {
    const View encoded(out, EncodeBreaks(out, source, mark));
    return CutLines(encoded, lastLine, mark).size();
  });
}

void CQorStringUtil::GetDecodeString(const wchar_t* text, CString& dest, int lastLine, int ampersand) {
  if (text == nullptr) {
    dest.Empty();
    return;
  }
  const Mark mark = MarkFor(ampersand);
  IntoString(dest, text, 1, [&](wchar_t* out, View source) {
    const auto is_break = [](wchar_t c) { return c == L'\r' || c == L'\n'; };
    const wchar_t* const end = std::remove_copy_if(source.begin(), source.end(), out, is_break);
    const View line(out, static_cast<std::size_t>(end - out));
    return DecodeBreaks(out, CutLines(line, lastLine, mark), mark);
  });
}
