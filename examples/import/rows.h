#pragma once

// Converted rows: a converter that also remembers which fields were empty, and the values of a record as
// text.

#include <string>
#include <vector>

#include "qorgen/qorgen.h"

#include "columns.h"

// The library's converter, overridden at the place that is meant for it: an amount that nobody filled in
// stays apart from an amount of zero.
class RowConverter : public CQorTypeConverter {
 public:
  explicit RowConverter(Columns& columns);

  // Whether the column's field was empty in the row converted last.
  bool IsEmpty(int column) const { return empty_[static_cast<std::size_t>(column)] != 0; }

 protected:
  int ConvertOneItem(QorTypeCheckInfoTable* column, CString& text, void* target) override;

 private:
  const QorTypeCheckInfoTable* first_;
  std::vector<unsigned char> empty_;
};

// A stored number, whatever its width; 0 for columns of other types.
double NumberOf(const QorTypeCheckInfoTable& column, const unsigned char* record);

QORDATE DateOf(const QorTypeCheckInfoTable& column, const unsigned char* record);
bool BoolOf(const QorTypeCheckInfoTable& column, const unsigned char* record);

// The stored text; the empty text for columns of other types.
const wchar_t* TextOf(const QorTypeCheckInfoTable& column, const unsigned char* record);

// A stored value as a person reads it, UTF-8: amounts grouped with △ for negatives, dates with their era, ○
// for yes.
std::string Shown(const QorTypeCheckInfoTable& column, const unsigned char* record, bool empty);

// An amount as above; `decimals` at most, trailing zeros dropped.
std::string ShownAmount(double value, int decimals);

// A stored value as a file holds it: the import gives the same value again. `text` becomes it.
void PutValue(const QorTypeCheckInfoTable& column, const unsigned char* record, bool empty, CString& text);

bool IsNumber(const QorTypeCheckInfoTable& column);
unsigned int TypeOf(const QorTypeCheckInfoTable& column);
