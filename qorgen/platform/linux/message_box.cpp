#include "qorgen/platform/message_box.h"

#include <array>
#include <cstdio>
#include <string>

namespace {

struct ButtonSet {
  int count;
  std::array<int, 3> answers;
};

// By the low four bits of the type.
constexpr std::array kButtonSets = {
    ButtonSet{1, {IDOK}},
    ButtonSet{2, {IDOK, IDCANCEL}},
    ButtonSet{3, {IDABORT, IDRETRY, IDIGNORE}},
    ButtonSet{3, {IDYES, IDNO, IDCANCEL}},
    ButtonSet{2, {IDYES, IDNO}},
    ButtonSet{2, {IDRETRY, IDCANCEL}},
    ButtonSet{3, {IDCANCEL, IDTRYAGAIN, IDCONTINUE}},
};
static_assert(kButtonSets.size() == MB_CANCELTRYCONTINUE + 1);

void AppendCodePoint(std::string& out, std::uint32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
    return;
  }
  if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
  } else {
    if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    }
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
  }
  out += static_cast<char>(0x80 | (c & 0x3F));
}

// CR LF becomes LF; a lone surrogate becomes U+FFFD.
void AppendLine(std::string& out, const wchar_t* text) {
  if (text == nullptr || *text == 0) return;
  for (; *text != 0; ++text) {
    const std::uint32_t unit = *text;
    const std::uint32_t next = text[1];
    if (unit == '\r' && next == '\n') continue;
    if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
      AppendCodePoint(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++text;
    } else {
      AppendCodePoint(out, unit >= 0xD800 && unit < 0xE000 ? 0xFFFD : unit);
    }
  }
  if (out.back() != '\n') out += '\n';
}

}  // namespace

int MessageBoxW(HWND, LPCWSTR text, LPCWSTR caption, UINT type) {
  const UINT buttons = type & 0xF;
  if (buttons >= kButtonSets.size()) return 0;
  std::string shown;
  AppendLine(shown, caption);
  AppendLine(shown, text);
  // One call, so that boxes of several threads don't mix.
  std::fwrite(shown.data(), 1, shown.size(), stderr);
  std::fflush(stderr);
  const ButtonSet& set = kButtonSets[buttons];
  const int chosen = static_cast<int>((type >> 8) & 0xF);
  return set.answers[static_cast<std::size_t>(chosen < set.count ? chosen : 0)];
}
