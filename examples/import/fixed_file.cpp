#include "fixed_file.h"

#include <cmath>
#include <cstdio>

#include "interrupt.h"
#include "utf8.h"

namespace {

bool IsSigned(const QorTypeCheckInfoTable& column) {
  return (column.typeFlags & TYPECHECK_UNSIGNED) == 0;
}

int WidthOf(const QorTypeCheckInfoTable& column) {
  switch (TypeOf(column)) {
    case TYPECHECK_BOOL:
      return 1;
    case TYPECHECK_DATE:
      return 8;
    case TYPECHECK_STRING:
      return column.size;
    case TYPECHECK_DOUBLE: {
      // With the decimals kept apart from the size, both stand side by side.
      const int decimals = column.decimals;
      return column.size + (decimals > 0 ? decimals + 1 : 0) + (IsSigned(column) ? 1 : 0);
    }
    default:
      return column.size + (IsSigned(column) ? 1 : 0);
  }
}

void Add(CQorSpaceOneLine& line, const QorTypeCheckInfoTable& column, const unsigned char* record, bool empty,
         CString& text) {
  const int width = WidthOf(column);
  if (TypeOf(column) == TYPECHECK_STRING) return line.AddSpace(TextOf(column, record), width);
  if (empty) return line.AddSpace(L"", width);
  switch (TypeOf(column)) {
    case TYPECHECK_BOOL:
      return line.AddZero(BoolOf(column, record) ? L"1" : L"0", width);
    case TYPECHECK_DATE: {
      const QORDATE date = DateOf(column, record);
      if (date.IsEmpty()) return line.AddSpace(L"", width);
      text.Format(L"%04d%02d%02d", date.year, date.month, date.day);
      return line.AddSpace(text, width);
    }
    default: {
      const double value = NumberOf(column, record);
      const int decimals = TypeOf(column) == TYPECHECK_DOUBLE ? column.decimals : 0;
      text.Format(L"%.*f", decimals, std::fabs(value));
      if (value < 0) line.AddSpace(L"-", 1);
      return line.AddZero(text, value < 0 ? width - 1 : width);
    }
  }
}

}  // namespace

long WriteFixed(RowReader& reader, const Columns& columns, const TargetFile& target, bool& stopped) {
  const Interrupt interrupt;
  CQorSpaceFile file(FromUtf8(target.Path()), CFile::modeCreate | CFile::modeWrite | CFile::typeText);
  const CString path = file.GetFilePath();
  CQorSpaceOneLine line;
  CString text;
  long rows = 0;
  try {
    while (reader.Next([&] { return interrupt.IsRequested(); })) {
      if (const int outside = reader.FindOutside932(); outside >= 0) {
        reader.NotWritten(outside, kOutside932);
        continue;
      }
      line.Empty();
      for (std::size_t i = 0; i < columns.table.size(); ++i) {
        Add(line, columns.table[i], reader.Record(), reader.IsEmpty(static_cast<int>(i)), text);
      }
      file.Write(line);
      ++rows;
      reader.ShowProgress();
    }
    file.Close();
  } catch (CFileException* failure) {
    file.Abort();
    // The user knows the file by the name that he gave.
    if (failure->m_strFileName == path) failure->m_strFileName = FromUtf8(target.Name());
    throw;
  }
  stopped = interrupt.IsRequested();
  return rows;
}
