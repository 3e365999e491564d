#include "code_page.h"

#include "qorgen/qorgen.h"

CodePage932::CodePage932() {
  const auto note = [this](char first, char second) {
    const char bytes[] = {first, second, 0};
    const CString text(bytes);
    for (int i = 0; i < text.GetLength(); ++i) has_.set(static_cast<char16_t>(text[i]));
  };
  for (int first = 1; first < 0x100; ++first) {
    note(static_cast<char>(first), 0);
    if (first < 0x81) continue;
    for (int second = 0x40; second < 0xFD; ++second)
      note(static_cast<char>(first), static_cast<char>(second));
  }
}

bool CodePage932::Holds(const wchar_t* text) const {
  for (; *text != 0; ++text) {
    if (!has_[static_cast<char16_t>(*text)]) return false;
  }
  return true;
}
