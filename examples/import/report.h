#pragma once

// What the example prints: the first rows as a table, every bad row with its complaints, and totals per
// account.

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "columns.h"
#include "rows.h"

// The first good rows as a table, then the bad rows as they come. Bad rows that are met before the table is
// full wait for it, but only so many: then the table is printed with the rows that it has.
class RowReport {
 public:
  RowReport(const Columns& columns, std::FILE* out) : columns_(columns), out_(out) {}

  void Good(long line, const RowConverter& converter, const unsigned char* record);
  void Bad(long line, const CString& text, RowConverter& converter);
  // A good row that was not written, and why.
  void NotWritten(long line, const CString& text, const std::string& message);

  // Prints what still waits.
  void Finish();

 private:
  struct Complaint {
    long line;
    std::string text;
    std::vector<std::string> messages;
  };

  void Take(Complaint complaint);
  void PrintTable();
  void Print(const Complaint& complaint);

  const Columns& columns_;
  std::FILE* out_;
  bool table_printed_ = false;
  bool complaints_begun_ = false;
  std::vector<std::vector<std::string>> rows_;
  std::vector<Complaint> waiting_;
};

// Debit, credit and balance per account of a journal. It is at work only where the record has the columns
// 借方科目, 借方金額, 貸方科目 and 貸方金額; amounts that are empty leave an account's sum as it was.
class AccountTotals {
 public:
  explicit AccountTotals(const Columns& columns);

  void Add(const RowConverter& converter, const unsigned char* record);
  void Print(std::FILE* out) const;

 private:
  struct Side {
    int account = -1;
    int amount = -1;
  };
  struct Sums {
    CQorStateDouble debit, credit;
  };

  const Columns& columns_;
  Side debit_, credit_;
  bool on_;
  std::map<std::string, Sums> sums_;
};
