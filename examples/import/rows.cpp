#include "rows.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "utf8.h"

namespace {

constexpr unsigned int kTypeMask = 0x07FFF000;
constexpr unsigned int kEraDate = DATEFORMAT_DATE | DATEFORMAT_ERAYEAR | DATEFORMAT_ERAPOINT;

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

QORDATE DateOf(const QorTypeCheckInfoTable& column, const unsigned char* record) {
  return QORDATE(Stored<std::int32_t>(column, record));
}

bool BoolOf(const QorTypeCheckInfoTable& column, const unsigned char* record) {
  return Stored<unsigned char>(column, record) != 0;
}

const wchar_t* TextOf(const QorTypeCheckInfoTable& column, const unsigned char* record) {
  if (TypeOf(column) != TYPECHECK_STRING) return L"";
  return reinterpret_cast<const wchar_t*>(record + column.offset);
}

std::string ShownAmount(double value, int decimals) {
  constexpr int half_up = 3;
  return Take(CQorNumUtil::FormatString(value, NUMFORMAT_GROUP | NUMFORMAT_WHITETRIANGLE, nullptr, decimals,
                                        half_up, 0, L' '));
}

std::string Shown(const QorTypeCheckInfoTable& column, const unsigned char* record, bool empty) {
  if (empty && TypeOf(column) != TYPECHECK_STRING) return "";
  switch (TypeOf(column)) {
    case TYPECHECK_STRING:
      return WithoutControls(TextOf(column, record));
    case TYPECHECK_DOUBLE:
      return ShownAmount(NumberOf(column, record), column.decimals);
    case TYPECHECK_BOOL:
      return BoolOf(column, record) ? "○" : "";
    case TYPECHECK_DATE:
      return Take(CQorDateUtil::FormatString(DateOf(column, record), kEraDate, nullptr));
    default:
      return Take(CQorNumUtil::ToString(static_cast<int>(NumberOf(column, record)), nullptr));
  }
}

void PutValue(const QorTypeCheckInfoTable& column, const unsigned char* record, bool empty, CString& text) {
  if (TypeOf(column) == TYPECHECK_STRING) {
    text = TextOf(column, record);
    return;
  }
  text.SetString(L"", 0);
  if (empty) return;
  char digits[400];  // a double has up to 309 places in front of its point
  char* end = digits;
  switch (TypeOf(column)) {
    case TYPECHECK_BOOL:
      text = BoolOf(column, record) ? L"yes" : L"no";
      return;
    case TYPECHECK_DATE: {
      const QORDATE date = DateOf(column, record);
      // A field that was refused, and stands for no day.
      if (!date.IsEmpty()) {
        end += std::snprintf(digits, sizeof digits, "%02d/%02d/%04d", date.day, date.month, date.year);
      }
      break;
    }
    case TYPECHECK_DOUBLE:
      // The fewest digits that give this number.
      end = std::to_chars(digits, digits + sizeof digits, NumberOf(column, record), std::chars_format::fixed)
                .ptr;
      break;
    default:
      end = std::to_chars(digits, digits + sizeof digits, static_cast<int>(NumberOf(column, record))).ptr;
      break;
  }
  for (const char* c = digits; c != end; ++c) text.AppendChar(static_cast<unsigned char>(*c));
}
