// Imports a delimited text file: describe the record, open, read row by row, tell the user what is wrong.

#include <cstdio>
#include <string>
#include <vector>

#include "qorgen/qorgen.h"

#include "columns.h"
#include "options.h"
#include "progress.h"
#include "report.h"
#include "rows.h"
#include "utf8.h"

namespace {

struct Counts {
  long rows = 0, ok = 0, error = 0, skip = 0;
};

// Bytes that the rows up to now take in the file, reckoned from every so many rows: exact enough for a bar.
class ByteEstimate {
 public:
  explicit ByteEstimate(bool utf8) : utf8_(utf8) {}

  std::uint64_t At(long rows, CQorImportManager& manager) {
    const CString text = manager.GetReadString();
    ++samples_;
    sampled_ += 2;  // the line end
    for (int i = 0; i < text.GetLength(); ++i) {
      const bool half = CQorStringUtil::GetCharType(text[i]) == CHARTYPE_HALFKANA;
      sampled_ += text[i] < 0x80 ? 1 : utf8_ ? 3 : half ? 1 : 2;
    }
    return sampled_ * static_cast<std::uint64_t>(rows) / samples_;
  }

 private:
  bool utf8_;
  std::uint64_t samples_ = 0, sampled_ = 0;
};

Counts Import(CQorImportManager& manager, const Options& options, Columns& columns, RowConverter& converter) {
  constexpr long kRowsBetweenLooks = 1024;
  RowReport report(columns, stdout);
  AccountTotals totals(columns);
  Progress progress(static_cast<std::uint64_t>(CQorFileUtil::GetFileStatus(FromUtf8(options.file)).m_size));
  ByteEstimate bytes(options.utf8);
  std::vector<unsigned char> record(columns.record_size);
  Counts counts;

  for (;;) {
    const READSTATUS status = manager.ReadRow(record.data(), options.check_count ? 1 : 0);
    if (status == READSTATUS_EOF) break;
    ++counts.rows;
    if (status == READSTATUS_OK) {
      ++counts.ok;
      report.Good(counts.rows, converter, record.data());
      totals.Add(converter, record.data());
    } else if (status == READSTATUS_SKIP) {
      ++counts.skip;
    } else {
      ++counts.error;
      progress.Hide();
      report.Bad(counts.rows, manager.GetReadString(), converter);
    }
    if (progress.IsOn() && counts.rows % kRowsBetweenLooks == 0)
      progress.Show(bytes.At(counts.rows, manager));
  }
  progress.Hide();
  report.Finish();
  totals.Print(stdout);
  return counts;
}

int Fail(const std::string& sentence) {
  std::fprintf(stderr, "%s\n", sentence.c_str());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = ParseOptions(argc, argv);
    Columns columns = ReadColumns(options.columns);
    RowConverter converter(columns);

    CQorImportManager legacy;
    CQorUTF8ImportManager utf8;
    CQorImportManager& manager = options.utf8 ? utf8 : legacy;
    if (!manager.OpenText(FromUtf8(options.file), &converter, options.delimiters, options.quotes)) {
      return Fail(options.file + ": the file does not exist or could not be opened.");
    }
    const Counts counts = Import(manager, options, columns, converter);
    manager.Close();
    std::printf("rows=%ld ok=%ld error=%ld skip=%ld\n", counts.rows, counts.ok, counts.error, counts.skip);
    // A report that nobody could get is no success, a full disk for one.
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) return Fail("The output could not be written.");
    return 0;
  } catch (const OptionsError& error) {
    return Fail(std::string(error.what()) + ".\n" + kUsage);
  } catch (const ColumnsError& error) {
    return Fail(std::string(error.what()) + ".");
  } catch (CException* error) {
    wchar_t text[1024];
    const bool told = error->GetErrorMessage(text, 1024, nullptr) != 0;
    error->Delete();
    CString sentence(told ? text : L"The file could not be read.");
    sentence.TrimRight();
    return Fail(ToUtf8(sentence));
  }
}
