#include "columns.h"

#include <charconv>
#include <cstdio>
#include <memory>
#include <sstream>

#include "utf8.h"

namespace {

constexpr int kLongestText = 1'000'000;  // characters of one column: a bound on the record, not on the file
constexpr std::size_t kLargestRecord = 64'000'000;  // bytes of a whole record

struct Type {
  const char* name;
  unsigned int code;
  std::size_t bytes;  // of the stored value; a text takes its size + 1 characters instead
};

constexpr Type kTypes[] = {
    {"string", TYPECHECK_STRING, 0}, {"long", TYPECHECK_LONG, 4}, {"short", TYPECHECK_SHORT, 2},
    {"byte", TYPECHECK_BYTE, 1},     {"char", TYPECHECK_CHAR, 1}, {"double", TYPECHECK_DOUBLE, 8},
    {"bool", TYPECHECK_BOOL, 1},     {"date", TYPECHECK_DATE, 4},
};

[[noreturn]] void Fail(const std::string& path, int line, const std::string& what) {
  throw ColumnsError(path + ", line " + std::to_string(line) + ": " + what);
}

bool ToNumber(const std::string& text, int& value) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end && !text.empty();
}

// The blank of Japanese keyboards (U+3000) parts words like any other.
std::string WithPlainBlanks(std::string line) {
  static constexpr char kWideBlank[] = "\xE3\x80\x80";
  for (std::size_t at = 0; (at = line.find(kWideBlank, at)) != std::string::npos;) line.replace(at, 3, " ");
  return line;
}

const Type* FindType(const std::string& name) {
  for (const Type& type : kTypes) {
    if (name == type.name) return &type;
  }
  return nullptr;
}

// One line of the description; false for a blank or comment line.
bool ParseLine(const std::string& path, int number, const std::string& line, std::string& name,
               QorTypeCheckInfoTable& column, const Type*& type, bool& bare) {
  std::istringstream words(WithPlainBlanks(line));
  std::string type_word, size_word, word;
  if (!(words >> name) || name[0] == '#') return false;
  if (!(words >> type_word) || type_word[0] == '#')
    Fail(path, number, "the type of '" + name + "' is missing");
  type = FindType(type_word);
  if (type == nullptr) {
    Fail(path, number,
         "unknown type '" + type_word + "' (one of string long short byte char double bool date)");
  }
  if (!(words >> size_word) || size_word[0] == '#')
    Fail(path, number, "the size of '" + name + "' is missing");

  column = {};
  column.typeFlags = type->code;
  const std::size_t point = size_word.find('.');
  int decimals = 0;
  if (!ToNumber(size_word.substr(0, point), column.size) || column.size < 1 || column.size > kLongestText) {
    Fail(path, number, "'" + size_word + "' is no size (a whole number from 1 on)");
  }
  if (point != std::string::npos) {
    if (type->code != TYPECHECK_DOUBLE) Fail(path, number, "only a double has decimals");
    if (!ToNumber(size_word.substr(point + 1), decimals) || decimals < 0 || decimals > 15) {
      Fail(path, number, "'" + size_word + "' has no number of decimals from 0 to 15 behind its point");
    }
  }
  column.decimals = static_cast<short>(decimals);

  while (words >> word && word[0] != '#') {
    if (word == "unsigned") {
      column.typeFlags |= TYPECHECK_UNSIGNED;
    } else if (word == "signdigit") {
      column.typeFlags |= TYPECHECK_SIGNDIGIT;
    } else if (word == "fixed") {
      column.typeFlags |= TYPECHECK_FIXEDDECIMALS;
    } else if (word == "check") {
      column.check = 1;
    } else if (word == "bare") {
      bare = true;
    } else if (word.rfind("default=", 0) == 0) {
      if (!ToNumber(word.substr(8), column.defaultValue))
        Fail(path, number, "'" + word + "' is no whole number");
    } else {
      Fail(path, number, "unknown word '" + word + "' (unsigned signdigit fixed check bare default=N)");
    }
  }
  return true;
}

}  // namespace

int Columns::Find(const wchar_t* name) const {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == name) return static_cast<int>(i);
  }
  return -1;
}

Columns ReadColumns(const std::string& path) {
  FILE* stream = CQorFileUtil::Open(FromUtf8(path), CQorFileUtil::_modeRtUTF8, 0);
  if (stream == nullptr) throw ColumnsError(path + ": the column description could not be opened");
  const std::unique_ptr<FILE, int (*)(FILE*)> closer(stream, std::fclose);
  CStdioFile file(stream);

  Columns columns;
  CString line;
  for (int number = 1; file.ReadString(line); ++number) {
    std::string name;
    QorTypeCheckInfoTable column{};
    const Type* type = nullptr;
    bool bare = false;
    if (!ParseLine(path, number, ToUtf8(line), name, column, type, bare)) continue;
    // Values stand aligned, as in a record that a compiler lays out.
    const bool text = type->code == TYPECHECK_STRING;
    const std::size_t align = text ? sizeof(wchar_t) : type->bytes;
    columns.record_size = (columns.record_size + align - 1) / align * align;
    column.offset = static_cast<unsigned int>(columns.record_size);
    columns.record_size += text ? (static_cast<std::size_t>(column.size) + 1) * sizeof(wchar_t) : type->bytes;
    if (columns.record_size > kLargestRecord)
      Fail(path, number, "the columns take more room than a record has");
    columns.names.push_back(FromUtf8(name));
    columns.table.push_back(column);
    columns.bare.push_back(bare);
  }
  if (columns.table.empty()) throw ColumnsError(path + ", line 1: no column is described");
  for (std::size_t i = 0; i < columns.table.size(); ++i) columns.table[i].name = columns.names[i];
  return columns;
}
