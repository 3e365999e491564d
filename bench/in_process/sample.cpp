#include "sample.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "qorgen/platform/codepage.h"
#include "qorgen/qorgen.h"

namespace qorgen::bench {
namespace {

std::string ReadFile() {
  const char* path = std::getenv("QORGEN_BENCH_FILE");
  std::FILE* file = path == nullptr ? nullptr : std::fopen(path, "rb");
  if (file == nullptr) {
    std::fprintf(stderr, "QORGEN_BENCH_FILE names no readable file; start this through bench/run\n");
    std::exit(1);
  }
  std::string bytes;
  char block[65536];
  for (std::size_t got; (got = std::fread(block, 1, sizeof block, file)) > 0;) bytes.append(block, got);
  std::fclose(file);
  return bytes;
}

// Every 31st line's field `column`, without its quotes.
std::vector<std::vector<wchar_t>> Column(int column) {
  std::vector<std::vector<wchar_t>> texts;
  CQorCSVManager manager;
  int line_number = 0;
  const std::vector<wchar_t>& all = FileText();
  for (auto at = all.begin(); at != all.end() - 1;) {
    const auto end = std::find(at, all.end() - 1, L'\n');
    if (++line_number % 31 == 0) {
      std::vector<wchar_t> line(at, end);
      line.push_back(0);
      manager.SetElements(line.data(), CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
      if (const wchar_t* field = manager.GetAt(column)) {
        std::size_t length = 0;
        while (field[length] != 0) ++length;
        texts.emplace_back(field, field + length + 1);
      }
    }
    at = end == all.end() - 1 ? end : end + 1;
  }
  return texts;
}

}  // namespace

const std::string& FileBytes() {
  static const std::string bytes = ReadFile();
  return bytes;
}

const std::vector<wchar_t>& FileText() {
  static const std::vector<wchar_t> text = [] {
    const std::string& bytes = FileBytes();
    std::vector<wchar_t> wide(bytes.size() + 1);
    const int made = MultiByteToWideChar(932, 0, bytes.data(), static_cast<int>(bytes.size()), wide.data(),
                                         static_cast<int>(bytes.size()));
    wide.resize(static_cast<std::size_t>(made) + 1);
    wide.back() = 0;
    return wide;
  }();
  return text;
}

const std::vector<std::vector<wchar_t>>& Texts(Kind kind) {
  static const std::vector<std::vector<wchar_t>> half_kana = Column(4);
  static const std::vector<std::vector<wchar_t>> hiragana = [] {
    std::vector<std::vector<wchar_t>> texts;
    for (const auto& half : half_kana) {
      CString wide;
      CQorStringUtil::ToWideString(wide, half.data());
      std::vector<wchar_t> text;
      for (int i = 0; i < wide.GetLength(); ++i) {
        const wchar_t c = wide[i];
        text.push_back(c >= 0x30A1 && c <= 0x30F6 ? static_cast<wchar_t>(c - 0x60) : c);
      }
      text.push_back(0);
      texts.push_back(std::move(text));
    }
    return texts;
  }();
  static const std::vector<std::vector<wchar_t>> mixed = [] {
    std::vector<std::vector<wchar_t>> texts = Column(7);
    const std::vector<std::vector<wchar_t>> towns = Column(5);
    for (std::size_t i = 0; i < texts.size() && i < towns.size(); ++i) {
      texts[i].back() = L' ';
      texts[i].insert(texts[i].end(), towns[i].begin(), towns[i].end());
    }
    return texts;
  }();
  return kind == Kind::kHalfKana ? half_kana : kind == Kind::kHiragana ? hiragana : mixed;
}

}  // namespace qorgen::bench
