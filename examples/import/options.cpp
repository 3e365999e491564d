#include "options.h"

const char* const kUsage =
    "usage: FILE --columns COLUMNS [--utf8] [--delimiter comma|tab|semicolon|space|period|slash]...\n"
    "       [--quotes double|single|none] [--any-count]\n"
    "       [--export FILE [--ol] [--delimiter ...] [--quotes ...] | --fixed FILE]";

namespace {

template <typename Value>
struct Word {
  const char* name;
  Value value;
};

constexpr Word<unsigned int> kDelimiters[] = {
    {"comma", CSVMGR_DELIM_COMMA}, {"tab", CSVMGR_DELIM_TAB},       {"semicolon", CSVMGR_DELIM_SEMICOLON},
    {"space", CSVMGR_DELIM_SPACE}, {"period", CSVMGR_DELIM_PERIOD}, {"slash", CSVMGR_DELIM_SLASH},
};
constexpr Word<CSVMGR_QUOTES> kQuotes[] = {
    {"double", CSVMGR_QUOTES_DOUBLE},
    {"single", CSVMGR_QUOTES_SINGLE},
    {"none", CSVMGR_QUOTES_NONE},
};

template <typename Value, std::size_t count>
Value Choose(const Word<Value> (&words)[count], const std::string& option, const std::string& given) {
  for (const Word<Value>& word : words) {
    if (given == word.name) return word.value;
  }
  throw OptionsError("'" + given + "' is no value of " + option);
}

}  // namespace

Options ParseOptions(int argc, char** argv) {
  Options options;
  bool export_quotes_given = false;
  int at = 1;
  const auto value = [&](const std::string& option) -> std::string {
    if (at + 1 >= argc) throw OptionsError(option + " needs a value");
    return argv[++at];
  };
  for (; at < argc; ++at) {
    const std::string word = argv[at];
    if (word == "--columns") {
      options.columns = value(word);
    } else if (word == "--utf8") {
      options.utf8 = true;
    } else if (word == "--delimiter") {
      // Behind --export it is the written file's.
      (options.export_file.empty() ? options.delimiters : options.export_delimiters) |=
          Choose(kDelimiters, word, value(word));
    } else if (word == "--quotes") {
      export_quotes_given = !options.export_file.empty();
      (export_quotes_given ? options.export_quotes : options.quotes) = Choose(kQuotes, word, value(word));
    } else if (word == "--export") {
      options.export_file = value(word);
    } else if (word == "--ol") {
      options.ol = true;
    } else if (word == "--fixed") {
      options.fixed_file = value(word);
    } else if (word == "--any-count") {
      options.check_count = false;
    } else if (word.rfind("--", 0) == 0) {
      throw OptionsError("unknown option '" + word + "'");
    } else if (options.file.empty()) {
      options.file = word;
    } else {
      throw OptionsError("more than one file is named: '" + options.file + "' and '" + word + "'");
    }
  }
  if (options.file.empty()) throw OptionsError("no file is named");
  if (options.columns.empty()) throw OptionsError("--columns is missing");
  if (options.delimiters == 0) options.delimiters = CSVMGR_DELIM_COMMA;
  if (options.export_delimiters == 0) options.export_delimiters = options.delimiters;
  if (!export_quotes_given) options.export_quotes = options.quotes;
  if (!options.export_file.empty() && !options.fixed_file.empty()) {
    throw OptionsError("--export and --fixed are for one file each; give one of them");
  }
  if (options.ol && options.export_file.empty()) throw OptionsError("--ol is for --export");
  if (!options.export_file.empty() && (options.export_delimiters & CSVMGR_DELIM_SLASH) != 0) {
    throw OptionsError("a table can't be written with the slash between its fields");
  }
  return options;
}
