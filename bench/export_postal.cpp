// The export of a postal code table as one process: fields, quotes, encoding, file. The rows are read into
// memory first, which isn't timed.
// Usage: qorgen_bench_export SOURCE TARGET TIMES. Writes the table TIMES times over into one file, the same
// bytes as the source's, and prints the rows and the seconds that this took.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "qorgen/qorgen.h"

namespace {

constexpr CQorExportInfo kColumns[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};
constexpr std::size_t kWidth = std::size(kColumns);

CString PathOf(const char* text) {
  CString path;
  for (; *text != 0; ++text) path.AppendChar(static_cast<unsigned char>(*text));
  return path;
}

struct Table {
  std::vector<wchar_t> texts;
  std::vector<std::size_t> ends;  // of the fields in `texts`, row after row; the first one is 0
  long rows = 0;
};

Table Read(const wchar_t* path) {
  Table table;
  table.ends.push_back(0);
  CQorCSVFile file(path, CFile::modeRead, CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
  CQorCSVManager line;
  while (file.ReadCSV(line)) {
    for (int i = 0; i < static_cast<int>(kWidth); ++i) {
      for (const wchar_t* unit = line.GetAt(i); *unit != 0; ++unit) table.texts.push_back(*unit);
      table.ends.push_back(table.texts.size());
    }
    ++table.rows;
  }
  return table;
}

class TableExport : public CQorExportBase {
 public:
  TableExport(const Table& table, long times) : table_(table), end_(table.rows * times) {
    Initialize(CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE);
    SetExportInfo(kColumns, kWidth);
  }
  long Rows() const { return end_; }

 protected:
  void GetExportField(CQorExportInfo column, long, CString& text, CSVMGR_QUOTES& field_quotes,
                      int&) override {
    const std::size_t* const bounds = now_ + column;
    text.SetString(table_.texts.data() + bounds[0], static_cast<int>(bounds[1] - bounds[0]));
    if (column == 0 || column >= 9) field_quotes = CSVMGR_QUOTES_NONE;
  }
  int IsExportEnd(long at) override {
    now_ = table_.ends.data() + static_cast<std::size_t>(at % table_.rows) * kWidth;
    return at == end_ ? 1 : 0;
  }

 private:
  const Table& table_;
  long end_;
  const std::size_t* now_ = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const Table table = Read(PathOf(argv[1]));
  TableExport writer(table, std::atol(argv[3]));
  const auto started = std::chrono::steady_clock::now();
  if (!writer.Write(PathOf(argv[2]), nullptr, 0)) return 1;
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - started;
  std::printf("rows=%ld seconds=%.4f\n", writer.Rows(), seconds.count());
  return 0;
}
