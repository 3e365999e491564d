#include "qorgen/platform/message_box.h"

#include <array>
#include <cstdio>
#include <string>

#include "qorgen/platform/common/text_length.h"
#include "qorgen/platform/common/utf8.h"

using namespace qorgen::platform;

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

// CR LF becomes LF; a lone surrogate becomes U+FFFD.
void AppendLine(std::string& out, const wchar_t* text) {
  if (text == nullptr || *text == 0) return;
  ForEachCharacter(text, TextLength(text), [&out](char32_t c) {
    if (c == '\n' && !out.empty() && out.back() == '\r') out.pop_back();
    AppendUtf8(out, IsSurrogate(c) ? 0xFFFD : c);
  });
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
