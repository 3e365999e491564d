#include "reader.h"

#include <algorithm>
#include <cstdio>

#include "utf8.h"

RowReader::RowReader(CQorImportManager& manager, const Options& options, Columns& columns,
                     RowConverter& converter)
    : manager_(manager),
      options_(options),
      columns_(columns),
      converter_(converter),
      report_(columns, stdout),
      totals_(columns),
      progress_(static_cast<std::uint64_t>(CQorFileUtil::GetFileStatus(FromUtf8(options.file)).m_size)),
      record_(columns.record_size) {}

bool RowReader::Next(const std::function<bool()>& stop) {
  while (!stop()) {
    // A date that is refused leaves the record as it was: with the day of an earlier row, if nobody cared.
    for (const QorTypeCheckInfoTable& column : columns_.table) {
      if (TypeOf(column) == TYPECHECK_DATE) std::fill_n(record_.begin() + column.offset, 4, 0);
    }
    const READSTATUS status = manager_.ReadRow(record_.data(), options_.check_count ? 1 : 0);
    if (status == READSTATUS_EOF) return false;
    ++counts_.rows;
    if (status == READSTATUS_OK) {
      ++counts_.ok;
      report_.Good(counts_.rows, converter_, record_.data());
      totals_.Add(converter_, record_.data());
      return true;
    }
    if (status == READSTATUS_SKIP) {
      ++counts_.skip;
    } else {
      ++counts_.error;
      progress_.Hide();
      report_.Bad(counts_.rows, manager_.GetReadString(), converter_);
    }
  }
  return false;
}

void RowReader::NotWritten(int column, const char* why) {
  progress_.Hide();
  const CString& name = columns_.names[static_cast<std::size_t>(column)];
  report_.NotWritten(counts_.rows, manager_.GetReadString(), ToUtf8(name) + ":" + why);
}

int RowReader::FindOutside932() {
  if (!options_.utf8) return -1;  // all text came from there
  if (!code_page_) code_page_.emplace();
  const auto& table = columns_.table;
  const auto lacks = [this](const auto& column) { return !code_page_->Holds(TextOf(column, Record())); };
  const auto found = std::find_if(table.begin(), table.end(), lacks);
  return found == table.end() ? -1 : static_cast<int>(found - table.begin());
}

void RowReader::ShowProgress() {
  constexpr long kRowsBetweenLooks = 1024;
  if (progress_.IsOn() && counts_.rows % kRowsBetweenLooks == 0) progress_.Show(BytesUpToNow());
}

std::uint64_t RowReader::BytesUpToNow() {
  const CString text = manager_.GetReadString();
  ++samples_;
  sampled_ += 2;  // the line end
  for (int i = 0; i < text.GetLength(); ++i) {
    const bool half = CQorStringUtil::GetCharType(text[i]) == CHARTYPE_HALFKANA;
    sampled_ += text[i] < 0x80 ? 1 : options_.utf8 ? 3 : half ? 1 : 2;
  }
  return sampled_ * static_cast<std::uint64_t>(counts_.rows) / samples_;
}

RowReader::Counts RowReader::Finish() {
  progress_.Hide();
  report_.Finish();
  totals_.Print(stdout);
  return counts_;
}
