#include "rows.h"

#include <cstdint>
#include <cstring>

#include "utf8.h"

namespace {

constexpr unsigned int kTypeMask = 0x07FFF000;
constexpr unsigned int kGrouped = 0x01, kWhiteTriangle = 0x20;  // number format flags
constexpr unsigned int kEraDate = 0x2701;                       // year, month, day; "R." and the era year

template <typename Value>
Value Stored(const QorTypeCheckInfoTable& column, const unsigned char* record) {
  Value value;
  std::memcpy(&value, record + column.offset, sizeof value);
  return value;
}

// UTF-8 of a text that the library handed out, which goes back to it.
std::string Take(wchar_t* text) {
  std::string out = ToUtf8(text);
  QorFree(text);
  return out;
}

}  // namespace

RowConverter::RowConverter(Columns& columns) : first_(columns.table.data()), empty_(columns.table.size()) {
  Initialize(columns.table.data(), static_cast<int>(columns.table.size()));
}

int RowConverter::ConvertOneItem(QorTypeCheckInfoTable* column, CString& text, void* target) {
  empty_[static_cast<std::size_t>(column - first_)] = text.IsEmpty() ? 1 : 0;
  return CQorTypeConverter::ConvertOneItem(column, text, target);
}

unsigned int TypeOf(const QorTypeCheckInfoTable& column) {
  return column.typeFlags & kTypeMask;
}

bool IsNumber(const QorTypeCheckInfoTable& column) {
  const unsigned int type = TypeOf(column);
  return type == TYPECHECK_LONG || type == TYPECHECK_SHORT || type == TYPECHECK_BYTE ||
         type == TYPECHECK_CHAR || type == TYPECHECK_DOUBLE;
}

double NumberOf(const QorTypeCheckInfoTable& column, const unsigned char* record) {
  switch (TypeOf(column)) {
    case TYPECHECK_LONG:
      return Stored<std::int32_t>(column, record);
    case TYPECHECK_SHORT:
      return Stored<std::int16_t>(column, record);
    case TYPECHECK_BYTE:
      return Stored<std::uint8_t>(column, record);
    case TYPECHECK_CHAR:
      return Stored<std::int8_t>(column, record);
    case TYPECHECK_DOUBLE:
      return Stored<double>(column, record);
    default:
      return 0;
  }
}

const wchar_t* TextOf(const QorTypeCheckInfoTable& column, const unsigned char* record) {
  if (TypeOf(column) != TYPECHECK_STRING) return L"";
  return reinterpret_cast<const wchar_t*>(record + column.offset);
}

std::string ShownAmount(double value, int decimals) {
  constexpr int half_up = 3;
  return Take(
      CQorNumUtil::FormatString(value, kGrouped | kWhiteTriangle, nullptr, decimals, half_up, 0, L' '));
}

std::string Shown(const QorTypeCheckInfoTable& column, const unsigned char* record, bool empty) {
  if (empty && TypeOf(column) != TYPECHECK_STRING) return "";
  switch (TypeOf(column)) {
    case TYPECHECK_STRING:
      return WithoutControls(TextOf(column, record));
    case TYPECHECK_DOUBLE:
      return ShownAmount(NumberOf(column, record), column.decimals);
    case TYPECHECK_BOOL:
      return Stored<unsigned char>(column, record) != 0 ? "○" : "";
    case TYPECHECK_DATE:
      return Take(
          CQorDateUtil::FormatString(QORDATE(Stored<std::int32_t>(column, record)), kEraDate, nullptr));
    default:
      return Take(CQorNumUtil::ToString(static_cast<int>(NumberOf(column, record)), nullptr));
  }
}
