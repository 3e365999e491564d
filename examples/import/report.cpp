#include "report.h"

#include <algorithm>
#include <utility>

#include "utf8.h"

namespace {

constexpr std::size_t kTableRows = 10;
constexpr std::size_t kWaitingComplaints = 200;
constexpr int kWidestColumn = 28;

// One line of cells, numbers to the right.
void PrintCells(std::FILE* out, const std::vector<std::string>& cells, const std::vector<int>& widths,
                const std::vector<bool>& right) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += "  ";
    line += right[i] ? FitRight(cells[i], widths[i]) : FitLeft(cells[i], widths[i]);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  std::fprintf(out, "%s\n", line.c_str());
}

void PrintGrid(std::FILE* out, const std::vector<std::string>& heads,
               const std::vector<std::vector<std::string>>& rows, const std::vector<bool>& right) {
  std::vector<int> widths;
  for (std::size_t i = 0; i < heads.size(); ++i) {
    int width = DisplayWidth(heads[i]);
    for (const auto& row : rows) width = std::max(width, DisplayWidth(row[i]));
    widths.push_back(std::min(width, kWidestColumn));
  }
  PrintCells(out, heads, widths, right);
  std::vector<std::string> rule;
  for (const int width : widths) rule.emplace_back(static_cast<std::size_t>(width), '-');
  PrintCells(out, rule, widths, right);
  for (const auto& row : rows) PrintCells(out, row, widths, right);
}

}  // namespace

void RowReport::Good(long line, const RowConverter& converter, const unsigned char* record) {
  if (table_printed_) return;
  std::vector<std::string> cells{std::to_string(line)};
  for (std::size_t i = 0; i < columns_.table.size(); ++i) {
    cells.push_back(Shown(columns_.table[i], record, converter.IsEmpty(static_cast<int>(i))));
  }
  rows_.push_back(std::move(cells));
  if (rows_.size() == kTableRows) PrintTable();
}

void RowReport::Bad(long line, const CString& text, RowConverter& converter) {
  Complaint complaint{line, WithoutControls(text), {}};
  for (int i = 0; i < converter.GetErrorCount(); ++i) {
    complaint.messages.push_back(ToUtf8(converter.GetErrorMessage(i)));
  }
  Take(std::move(complaint));
}

void RowReport::NotWritten(long line, const CString& text, const std::string& message) {
  Take({line, WithoutControls(text), {message}});
}

void RowReport::Take(Complaint complaint) {
  if (table_printed_) {
    Print(complaint);
    return;
  }
  waiting_.push_back(std::move(complaint));
  if (waiting_.size() == kWaitingComplaints) PrintTable();
}

void RowReport::Finish() {
  if (!table_printed_) PrintTable();
  if (complaints_begun_) std::fprintf(out_, "\n");
}

void RowReport::PrintTable() {
  table_printed_ = true;
  std::vector<std::string> heads{"line"};
  std::vector<bool> right{true};
  for (const QorTypeCheckInfoTable& column : columns_.table) {
    heads.push_back(ToUtf8(column.name));
    right.push_back(IsNumber(column));
  }
  if (!rows_.empty()) {
    PrintGrid(out_, heads, rows_, right);
    std::fprintf(out_, "\n");
  }
  for (const Complaint& complaint : waiting_) Print(complaint);
  rows_.clear();
  waiting_.clear();
}

void RowReport::Print(const Complaint& complaint) {
  complaints_begun_ = true;
  std::fprintf(out_, "line %ld: %s\n", complaint.line, complaint.text.c_str());
  for (const std::string& message : complaint.messages) std::fprintf(out_, "    %s\n", message.c_str());
}

AccountTotals::AccountTotals(const Columns& columns) : columns_(columns) {
  debit_ = {columns.Find(L"借方科目"), columns.Find(L"借方金額")};
  credit_ = {columns.Find(L"貸方科目"), columns.Find(L"貸方金額")};
  on_ = true;
  for (const Side& side : {debit_, credit_}) {
    on_ = on_ && side.account >= 0 && side.amount >= 0 &&
          TypeOf(columns.table[static_cast<std::size_t>(side.account)]) == TYPECHECK_STRING &&
          IsNumber(columns.table[static_cast<std::size_t>(side.amount)]);
  }
}

void AccountTotals::Add(const RowConverter& converter, const unsigned char* record) {
  if (!on_) return;
  const auto amount = [&](const Side& side) {
    return CQorStateDouble(NumberOf(columns_.table[static_cast<std::size_t>(side.amount)], record),
                           converter.IsEmpty(side.amount) ? 1 : 0);
  };
  const auto sums = [&](const Side& side) -> Sums* {
    const wchar_t* account = TextOf(columns_.table[static_cast<std::size_t>(side.account)], record);
    return *account == 0 ? nullptr : &sums_[ToUtf8(account)];
  };
  if (Sums* found = sums(debit_)) found->debit += amount(debit_);
  if (Sums* found = sums(credit_)) found->credit += amount(credit_);
}

void AccountTotals::Print(std::FILE* out) const {
  if (!on_ || sums_.empty()) return;
  std::vector<std::vector<std::string>> rows;
  Sums all;
  const auto shown = [](const CQorStateDouble& sum) { return sum.IsNull() ? "" : ShownAmount(sum, 2); };
  const auto balance = [](const Sums& sums) {
    CQorStateDouble left = sums.debit;
    left -= sums.credit;
    return left;
  };
  for (const auto& [account, sums] : sums_) {
    rows.push_back({account, shown(sums.debit), shown(sums.credit), shown(balance(sums))});
    all.debit += sums.debit;
    all.credit += sums.credit;
  }
  rows.push_back({"合計", shown(all.debit), shown(all.credit), shown(balance(all))});
  PrintGrid(out, {"科目", "借方", "貸方", "残高"}, rows, {false, true, true, true});
  std::fprintf(out, "\n");
}
