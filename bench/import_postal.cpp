// The whole import of a postal code table as one process: read, decode, split, check, convert, store.
// Usage: qorgen_bench_import FILE. Prints the rows and a sum over the stored values, which the peers print
// too.

#include <cstdint>
#include <cstdio>

#include "qorgen/qorgen.h"

namespace {

struct Postal {
  wchar_t local_code[6];
  wchar_t old_code[6];
  wchar_t code[8];
  wchar_t prefecture_kana[32];
  wchar_t city_kana[64];
  wchar_t town_kana[128];
  wchar_t prefecture[32];
  wchar_t city[64];
  wchar_t town[128];
  unsigned char numbers[6];
};

constexpr unsigned int Offset(std::size_t bytes) {
  return static_cast<unsigned int>(bytes);
}

#define TEXT_COLUMN(field)                                                                             \
  {                                                                                                    \
    TYPECHECK_STRING, L"" #field, static_cast<int>(sizeof(Postal::field) / sizeof(wchar_t)) - 1, 0, 1, \
        Offset(offsetof(Postal, field)), 0                                                             \
  }
#define NUMBER_COLUMN(i) \
  { TYPECHECK_BYTE | TYPECHECK_UNSIGNED, L"number " #i, 1, 0, 1, Offset(offsetof(Postal, numbers) + i), 0 }

QorTypeCheckInfoTable columns[] = {
    TEXT_COLUMN(local_code), TEXT_COLUMN(old_code),  TEXT_COLUMN(code),       TEXT_COLUMN(prefecture_kana),
    TEXT_COLUMN(city_kana),  TEXT_COLUMN(town_kana), TEXT_COLUMN(prefecture), TEXT_COLUMN(city),
    TEXT_COLUMN(town),       NUMBER_COLUMN(0),       NUMBER_COLUMN(1),        NUMBER_COLUMN(2),
    NUMBER_COLUMN(3),        NUMBER_COLUMN(4),       NUMBER_COLUMN(5),
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  CString path;
  for (const char* c = argv[1]; *c != 0; ++c) path.AppendChar(static_cast<unsigned char>(*c));

  CQorTypeConverter converter;
  converter.Initialize(columns, sizeof columns / sizeof columns[0]);
  CQorImportManager manager;
  if (!manager.OpenText(path, &converter, CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE)) return 1;
  Postal record{};
  long rows = 0, bad = 0;
  std::uint64_t sum = 0;
  for (READSTATUS status; (status = manager.ReadRow(&record, 1)) != READSTATUS_EOF;) {
    if (status != READSTATUS_OK) {
      ++bad;
      continue;
    }
    ++rows;
    sum += static_cast<std::uint64_t>(record.town[0]);
    for (const unsigned char number : record.numbers) sum += number;
  }
  std::printf("rows=%ld bad=%ld sum=%llu\n", rows, bad, static_cast<unsigned long long>(sum));
  return 0;
}
