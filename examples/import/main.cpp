// Imports a delimited text file: describe the record, open, read row by row, tell the user what is wrong; and
// writes the good rows to another file, if asked.

#include <cstdio>
#include <optional>
#include <string>

#include "qorgen/qorgen.h"

#include "columns.h"
#include "fixed_file.h"
#include "options.h"
#include "reader.h"
#include "rows.h"
#include "table_export.h"
#include "target_file.h"
#include "utf8.h"

namespace {

bool IsSameFile(const std::string& a, const std::string& b) {
  CFileStatus first, second;
  return CFile::GetStatus(FromUtf8(a), first) && CFile::GetStatus(FromUtf8(b), second) &&
         CQorFileUtil::IsEqualFile(first.m_szFullName, second.m_szFullName);
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
    RowReader reader(manager, options, columns, converter);
    const std::string& target = options.fixed_file.empty() ? options.export_file : options.fixed_file;
    if (!target.empty() && IsSameFile(options.file, target)) {
      return Fail(target + ": a table can't be written over the file that it comes from.");
    }
    std::optional<TargetFile> file;
    if (!target.empty()) file.emplace(target);
    long written = 0;
    bool stopped = false;
    std::string wrong;
    if (!options.export_file.empty()) {
      TableExport writer(reader, columns, options);
      wrong = writer.Run(*file);
      written = writer.Rows();
      stopped = writer.WasStopped();
    } else if (!options.fixed_file.empty()) {
      written = WriteFixed(reader, columns, *file, stopped);
    } else {
      while (reader.Next([] { return false; })) reader.ShowProgress();
    }
    const RowReader::Counts counts = reader.Finish();
    manager.Close();
    if (file && wrong.empty()) {
      if (stopped) {
        file->Keep();
      } else if (!file->Replace()) {
        wrong = target + ": the table could not take the place of that file; it is in " + file->Path() + ".";
      }
    }
    if (file && wrong.empty()) {
      std::printf("written=%ld file=%s\n", written, (stopped ? file->Path() : target).c_str());
    }
    std::printf("rows=%ld ok=%ld error=%ld skip=%ld\n", counts.rows, counts.ok, counts.error, counts.skip);
    // A report that nobody could get is no success, a full disk for one.
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) return Fail("The output could not be written.");
    if (!wrong.empty()) return Fail(wrong);
    if (stopped)
      return Fail("Stopped: " + file->Path() + " holds the first " + std::to_string(written) + " rows.");
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
