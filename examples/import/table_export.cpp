#include "table_export.h"

#include "utf8.h"

namespace {

bool Holds(const CString& text, unsigned int delimiters) {
  static constexpr wchar_t kCharacters[] = {L'\t', L';', L',', L' ', L'.', L'/'};  // by bit
  for (unsigned int i = 0; i < std::size(kCharacters); ++i) {
    if ((delimiters >> i & 1) != 0 && text.Find(kCharacters[i]) >= 0) return true;
  }
  return false;
}

}  // namespace

TableExport::TableExport(RowReader& reader, const Columns& columns, const Options& options)
    : reader_(reader), columns_(columns), options_(options), texts_(columns.table.size()) {
  for (std::size_t i = 0; i < columns.table.size(); ++i) places_.push_back(static_cast<CQorExportInfo>(i));
  Initialize(options.export_delimiters, options.export_quotes);
  SetExportInfo(places_.data(), static_cast<int>(places_.size()));
}

std::string TableExport::Run(TargetFile& target) {
  const CString path = FromUtf8(target.Path());
  if (!Write(path, nullptr, options_.ol ? 1 : 0)) target.Fail(GetFailureCause());
  if (!options_.ol) return "";
  // A table that could not be handed over is still where it was made.
  const CString made =
      CQorFileUtil::ConnectPath(CQorFileUtil::GetTempPathW(), CQorSplitPath(path).GetConnectFile());
  if (!CQorFileUtil::IsExistFile(made) || CQorFileUtil::IsEqualFile(made, path)) return "";
  return target.Name() + ": the table could not be written there; it is in " + ToUtf8(made) + ".";
}

void TableExport::GetExportField(CQorExportInfo column, long, CString& text, CSVMGR_QUOTES& field_quotes,
                                 int&) {
  text = texts_[column];
  if (columns_.bare[column]) field_quotes = CSVMGR_QUOTES_NONE;
}

int TableExport::IsExportEnd(long) {
  while (reader_.Next([this] { return interrupt_.IsRequested(); })) {
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      PutValue(columns_.table[i], reader_.Record(), reader_.IsEmpty(static_cast<int>(i)), texts_[i]);
    }
    const int outside = options_.ol ? -1 : reader_.FindOutside932();
    if (outside >= 0) {
      reader_.NotWritten(outside, kOutside932);
      continue;
    }
    const int unquoted = FindUnreadable();
    if (unquoted < 0) return 0;
    reader_.NotWritten(unquoted, "引用符なしでは書き出せません。");
  }
  return 1;
}

int TableExport::IsAbort(long) {
  reader_.ShowProgress();
  return interrupt_.IsRequested() ? 1 : 0;
}

void TableExport::EndProgress() {
  reader_.HideProgress();
}

int TableExport::FindUnreadable() const {
  const std::size_t count = texts_.size();
  const auto is_quoted = [this](std::size_t i) { return !columns_.bare[i] && quotes != CSVMGR_QUOTES_NONE; };
  for (std::size_t i = 0; i < count; ++i) {
    if (is_quoted(i)) continue;
    const CString& text = texts_[i];
    if (Holds(text, delimiterType)) return static_cast<int>(i);
    const wchar_t quote = quotes == CSVMGR_QUOTES_DOUBLE ? L'"' : quotes == CSVMGR_QUOTES_SINGLE ? L'\'' : 0;
    if (quote != 0 && text.Find(quote) >= 0) return static_cast<int>(i);
    // White space in front of a quote isn't read, and a tab is that even where it parts fields.
    if ((delimiterType & CSVMGR_DELIM_TAB) != 0 && i + 1 < count && is_quoted(i + 1) &&
        CString(text).Trim().IsEmpty()) {
      return static_cast<int>(i);
    }
    // These would be a comment, no row, and a part of the line end.
    if (i == 0 && !text.IsEmpty() && text[0] == L'#') return 0;
    if (count == 1 && text.IsEmpty()) return 0;
    if (i + 1 == count && !text.IsEmpty() && text[text.GetLength() - 1] == L'\r') return static_cast<int>(i);
  }
  return -1;
}
