#include "utf8.h"

#include <cstdint>

namespace {

void Append(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// One character of `text` from `at`, which moves behind it; malformed bytes give U+FFFD, one at a time.
char32_t Next(const std::string& text, std::size_t& at) {
  const auto byte = [&](std::size_t i) -> std::uint32_t {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const std::uint32_t lead = byte(at++);
  if (lead < 0x80) return lead;
  const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
  if (more == 0 || lead > 0xF4) return 0xFFFD;
  char32_t c = lead & (0x3Fu >> more);
  for (int i = 0; i < more; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0xFFFD;
    c = (c << 6) | (byte(at + i) & 0x3F);
  }
  static constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
  if (c < smallest[more] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return 0xFFFD;
  at += more;
  return c;
}

int WidthOf(char32_t c) {
  struct Range {
    char32_t first, last;
  };
  static constexpr Range wide[] = {
      {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},  {0x4E00, 0xA4CF},
      {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
      {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1FAFF}, {0x20000, 0x3FFFD}};
  static constexpr Range none[] = {{0x300, 0x36F},   {0x200B, 0x200F}, {0x20D0, 0x20F0},  {0x3099, 0x309A},
                                   {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF}};
  for (const Range& range : none) {
    if (c >= range.first && c <= range.last) return 0;
  }
  for (const Range& range : wide) {
    if (c >= range.first && c <= range.last) return 2;
  }
  return 1;
}

// The longest head of `text` that takes at most `width` columns, and the columns it takes.
std::string Cut(const std::string& text, int width, int& taken) {
  std::size_t at = 0, end = 0;
  taken = 0;
  while (at < text.size()) {
    const int more = WidthOf(Next(text, at));
    if (taken + more > width) break;
    taken += more;
    end = at;
  }
  return text.substr(0, end);
}

std::string Shorten(const std::string& text, int width, int& taken) {
  taken = DisplayWidth(text);
  if (taken <= width) return text;
  std::string cut = Cut(text, width - 1, taken);
  ++taken;
  return cut + "…";
}

}  // namespace

std::string ToUtf8(const wchar_t* text) {
  std::string out;
  for (; text != nullptr && *text != 0; ++text) {
    const char32_t unit = static_cast<char16_t>(*text);
    const char32_t next = static_cast<char16_t>(text[1]);
    if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
      Append(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++text;
    } else {
      Append(out, unit >= 0xD800 && unit < 0xE000 ? 0xFFFD : unit);
    }
  }
  return out;
}

CString FromUtf8(const std::string& text) {
  CString out;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = Next(text, at);
    if (c < 0x10000) {
      out.AppendChar(static_cast<wchar_t>(c));
    } else {
      out.AppendChar(static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10)));
      out.AppendChar(static_cast<wchar_t>(0xDC00 + (c & 0x3FF)));
    }
  }
  return out;
}

std::string WithoutControls(const wchar_t* text) {
  CString out(text);
  for (int i = 0; i < out.GetLength(); ++i) {
    const wchar_t c = out[i];
    if (c < 0x20 || (c >= 0x7F && c < 0xA0)) out.SetAt(i, L' ');
  }
  return ToUtf8(out);
}

int DisplayWidth(const std::string& text) {
  int width = 0;
  for (std::size_t at = 0; at < text.size();) width += WidthOf(Next(text, at));
  return width;
}

std::string FitLeft(const std::string& text, int width) {
  int taken = 0;
  std::string fitted = Shorten(text, width, taken);
  return fitted.append(static_cast<std::size_t>(width > taken ? width - taken : 0), ' ');
}

std::string FitRight(const std::string& text, int width) {
  int taken = 0;
  const std::string fitted = Shorten(text, width, taken);
  return std::string(static_cast<std::size_t>(width > taken ? width - taken : 0), ' ') + fitted;
}
