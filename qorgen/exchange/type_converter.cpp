#include "qorgen/exchange/type_converter.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <typeinfo>
#include <utility>

#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/era_date.h"
#include "qorgen/core/exception.h"
#include "qorgen/exchange/internal/field_list.h"
#include "qorgen/exchange/internal/plain_number.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/platform/automation.h"
#include "qorgen/platform/common/white_space.h"
#include "qorgen/platform/crt.h"
#include "qorgen/text/string_util.h"

namespace {

using qorgen::exchange::BorrowedText;
using qorgen::exchange::IsWastefulText;
using qorgen::exchange::PlainDecimal;
using qorgen::exchange::ReadPlainDecimal;
using qorgen::exchange::ReadPlainInteger;
using qorgen::platform::IsBlank;
using qorgen::platform::IsWhiteSpace;

// Room of the work text: enough for nearly all fields.
constexpr int kWorkRoom = 64;

// Indexed by TypeError.
constexpr const wchar_t* kMessages[] = {
    L"",
    L"１行に指定されている項目数が異なっています。",
    L"文字列の長さが範囲を超えています。",
    L"不正な文字種が含まれています。",
    L"数字以外の文字が含まれています。",
    L"範囲外の数値が指定されています。",
    L"小数点以下の数値が指定されています。",
    L"小数点以下の桁数が多すぎます。",
    L"不正な値が指定されています。",
    L"日付として変換できません。",
    L"必須項目に値が設定されていません。",
};
static_assert(std::size(kMessages) == TYPEERROR_REQUIRED + 1);

const wchar_t* MessageOf(TypeError kind) {
  const auto index = static_cast<std::size_t>(kind);
  return index < std::size(kMessages) ? kMessages[index] : L"";
}

constexpr const wchar_t* kYes[] = {L"true", L"yes", L"on", L"○"};
constexpr const wchar_t* kNo[] = {L"false", L"no", L"off"};

bool IsOneOf(const CString& text, const wchar_t* const* words, std::size_t count) {
  return std::any_of(words, words + count,
                     [&](const wchar_t* word) { return text.CompareNoCase(word) == 0; });
}

// Records are packed as their owners like, so values go in byte by byte.
template <typename Value>
void Store(void* target, Value value) {
  if (target != nullptr) std::memcpy(target, &value, sizeof value);
}

// The text and zeros behind it, `room` characters in all; length < room.
void StoreChars(void* target, const wchar_t* text, std::size_t length, std::size_t room) {
  auto* const bytes = static_cast<unsigned char*>(target);
  std::memcpy(bytes, text, length * sizeof(wchar_t));
  std::memset(bytes + length * sizeof(wchar_t), 0, (room - length) * sizeof(wchar_t));
}

void* Target(void* record, const QorTypeCheckInfoTable& column) {
  return record == nullptr ? nullptr : static_cast<unsigned char*>(record) + column.offset;
}

// The bytes of an integer column, by its type code; every other code takes 32 bits.
constexpr std::size_t IntegerSize(unsigned int type_flags) {
  const unsigned int type = type_flags & TYPECHECK_TYPEMASK;
  return type == TYPECHECK_SHORT ? 2 : type == TYPECHECK_BYTE || type == TYPECHECK_CHAR ? 1 : 4;
}

void StoreInteger(unsigned int type_flags, void* target, std::int32_t value) {
  const std::size_t size = IntegerSize(type_flags);
  if (size == 1) return Store(target, static_cast<std::int8_t>(value));
  if (size == 2) return Store(target, static_cast<std::int16_t>(value));
  Store(target, value);
}

// The greatest number of `digits` places. From ten places on, every 32-bit value fits, so nothing is gained
// by going beyond what 64 bits hold.
std::int64_t GreatestOf(int digits) {
  std::int64_t power = 1;
  for (int i = 0; i < std::min(digits, 18); ++i) power *= 10;
  return power - 1;
}

struct Bounds {
  std::int64_t lower;
  std::int64_t upper;
};

Bounds BoundsOf(const QorTypeCheckInfoTable& column) {
  const std::int64_t upper = GreatestOf(column.size);
  std::int64_t lower = (column.typeFlags & TYPECHECK_UNSIGNED) != 0 ? 0 : -upper;
  if ((column.typeFlags & TYPECHECK_SIGNDIGIT) != 0) lower /= 10;
  return {lower, upper};
}

// Whether a plain number is in bounds for its digits alone.
bool HasFewDigits(const QorTypeCheckInfoTable& column, int length, std::int32_t value) {
  return length <= column.size &&
         (value >= 0 || (column.typeFlags & (TYPECHECK_UNSIGNED | TYPECHECK_SIGNDIGIT)) == 0);
}

// Memory is the one reason of a failed conversion that isn't the text's.
bool IsConverted(HRESULT result) {
  if (result == E_OUTOFMEMORY) CQorOsException::Throw(static_cast<DWORD>(result));
  return SUCCEEDED(result);
}

}  // namespace

CQorTypeConverter::CQorTypeConverter() = default;
CQorTypeConverter::~CQorTypeConverter() = default;

CQorTypeConverter::CQorTypeConverter(const CQorTypeConverter& other)
    : errors(other.errors), table(other.table), fieldCount(other.fieldCount) {}

CQorTypeConverter& CQorTypeConverter::operator=(const CQorTypeConverter& other) {
  if (this != &other) {
    errors = other.errors;
    table = other.table;
    fieldCount = other.fieldCount;
  }
  return *this;
}

int CQorTypeConverter::Initialize(QorTypeCheckInfoTable* table_, int count) {
  if (table_ == nullptr || count <= 0) return 0;
  Finalize();
  table = table_;
  fieldCount = count;
  return 1;
}

int CQorTypeConverter::Finalize() {
  ClearError();
  table = nullptr;
  fieldCount = 0;
  return 1;
}

int CQorTypeConverter::Convert(CQorCSVManager& manager, void* record, unsigned char checkCount) {
  ClearError();
  const qorgen::exchange::FieldList& fields = *manager.elements;
  const auto columns = static_cast<std::size_t>(fieldCount);
  if (checkCount != 0) {
    const std::size_t count = fields.Count();
    if (count != columns && !(count == columns + 1 && fields.Length(columns) == 0)) {
      SetError(TYPEERROR_FIELDCOUNT, nullptr);
      return 0;
    }
  }
  QorTypeCheckInfoTable* const first = table;
  if (typeid(*this) == typeid(CQorTypeConverter)) return ConvertInPlace(fields, record);
  // An override may come back here with another line, so the work text is out of the object meanwhile.
  BorrowedText text(m_work);
  if ((*text).GetAllocLength() < kWorkRoom) (*text).Preallocate(kWorkRoom);
  int result = 1;
  for (std::size_t i = 0; i < columns; ++i) {
    const bool present = i < fields.Count();
    (*text).SetString(present ? fields.Text(i) : nullptr, present ? static_cast<int>(fields.Length(i)) : 0);
    if (ConvertOneItem(&first[i], *text, Target(record, first[i])) == 0) result = 0;
  }
  if (IsWastefulText(*text, 0)) (*text).Empty();
  return result;
}

// There is no derived class, so nobody takes a column over or looks at the work text: fields are converted
// where they lie, and the two frequent cases, a text that fits and a plain number within its bounds, in the
// loop itself.
int CQorTypeConverter::ConvertInPlace(const qorgen::exchange::FieldList& fields, void* record) {
  const auto columns = static_cast<std::size_t>(fieldCount);
  const std::size_t count = fields.Count();
  int result = 1;
  for (std::size_t i = 0; i < columns; ++i) {
    QorTypeCheckInfoTable& column = table[i];
    const bool present = i < count;
    const wchar_t* const text = present ? fields.Text(i) : L"";
    const int length = present ? static_cast<int>(fields.Length(i)) : 0;
    void* const target = Target(record, column);
    int converted = 0;
    switch (column.typeFlags & TYPECHECK_TYPEMASK) {
      case TYPECHECK_STRING:
        if (length != 0 && length <= column.size && target != nullptr && !IsWhiteSpace(text[0])) {
          StoreChars(target, text, static_cast<std::size_t>(length),
                     static_cast<std::size_t>(column.size) + 1);
          continue;
        }
        converted = StoreText(column, text, length, target);
        break;
      case TYPECHECK_LONG:
      case TYPECHECK_SHORT:
      case TYPECHECK_BYTE:
      case TYPECHECK_CHAR: {
        std::int32_t value = 0;
        if (ReadPlainInteger(text, length, value) && HasFewDigits(column, length, value)) {
          StoreInteger(column.typeFlags, target, value);
          continue;
        }
        converted = StoreNumeral(column, text, length, target);
        break;
      }
      case TYPECHECK_DOUBLE:
        converted = StoreDouble(column, text, length, target);
        break;
      default:
        qorgen::exchange::RefillText(m_work, text, length);
        if (CQorTypeConverter::ConvertOneItem(&column, m_work, target) == 0) result = 0;
        continue;
    }
    if (converted == 0 && column.check != 0) result = 0;
  }
  return result;
}

int CQorTypeConverter::ConvertOneItem(QorTypeCheckInfoTable* column, CString& text, void* target) {
  if (column == nullptr) return 0;
  int converted = 0;
  switch (column->typeFlags & TYPECHECK_TYPEMASK) {
    case TYPECHECK_STRING:
      converted = ConvertString(column, text, target);
      break;
    case TYPECHECK_LONG:
    case TYPECHECK_SHORT:
    case TYPECHECK_BYTE:
    case TYPECHECK_CHAR:
      converted = ConvertNumeral(column, text, target);
      break;
    case TYPECHECK_DOUBLE:
      converted = ConvertDouble(column, text, target);
      break;
    case TYPECHECK_BOOL:
      converted = ConvertBool(column, text, target);
      break;
    case TYPECHECK_DATE:
      converted = ConvertDate(column, text, target);
      break;
    default:
      break;
  }
  return converted != 0 || column->check == 0 ? 1 : 0;
}

int CQorTypeConverter::ConvertString(QorTypeCheckInfoTable* column, CString& text, void* target) {
  if (column == nullptr) return 0;
  return StoreText(*column, text, text.GetLength(), target);
}

int CQorTypeConverter::ConvertNumeral(QorTypeCheckInfoTable* column, CString& text, void* target) {
  return column == nullptr ? 0 : StoreNumeral(*column, text, text.GetLength(), target);
}

int CQorTypeConverter::ConvertDouble(QorTypeCheckInfoTable* column, CString& text, void* target) {
  return column == nullptr ? 0 : StoreDouble(*column, text, text.GetLength(), target);
}

// The field as text for operations that need a terminator.
const wchar_t* CQorTypeConverter::Terminated(const wchar_t* text, int length) {
  if (text != m_work.GetString()) qorgen::exchange::RefillText(m_work, text, length);
  return m_work;
}

int CQorTypeConverter::StoreText(const QorTypeCheckInfoTable& column, const wchar_t* text, int length,
                                 void* target) {
  if (IsBlank(text, length)) length = 0;
  if (target != nullptr && column.size >= 0) {
    const auto room = static_cast<std::size_t>(column.size) + 1;
    StoreChars(target, text, std::min(static_cast<std::size_t>(length), room - 1), room);
  }
  if (length > column.size && column.check != 0) {
    SetError(column.name, TYPEERROR_LENGTH, nullptr);
    return 0;
  }
  return 1;
}

int CQorTypeConverter::StoreNumeral(const QorTypeCheckInfoTable& column, const wchar_t* text, int length,
                                    void* target) {
  const unsigned int flags = column.typeFlags;
  std::int32_t value = 0;
  if (!ReadPlainInteger(text, length, value)) {
    CQorStringUtil::ToHalfString(m_half, Terminated(text, length));
    m_half.Trim();
    if (m_half.IsEmpty()) {
      if (column.check == 0) {
        StoreInteger(flags, target, 0);
        return 1;
      }
      SetError(column.name, TYPEERROR_REQUIRED, nullptr);
      StoreInteger(flags, target, column.defaultValue);
      return 0;
    }
    LONG number = 0;
    if (NumCheck(m_half) == 0 || !IsConverted(VarI4FromStr(m_half, LOCALE_USER_DEFAULT, 0, &number))) {
      SetError(column.name, TYPEERROR_NOTNUMBER, nullptr);
      StoreInteger(flags, target, 0);
      return 0;
    }
    value = static_cast<std::int32_t>(number);
  }

  const Bounds bounds = BoundsOf(column);
  const std::int64_t stored = std::clamp<std::int64_t>(value, bounds.lower, bounds.upper);
  // A bound that is stored fits: it was passed by a 32-bit value.
  StoreInteger(flags, target, static_cast<std::int32_t>(stored));
  if (stored == value) return 1;
  SetError(column.name, TYPEERROR_RANGE, nullptr);
  return column.check == 1 ? 0 : 1;
}

int CQorTypeConverter::StoreDouble(const QorTypeCheckInfoTable& column, const wchar_t* text, int length,
                                   void* target) {
  if (length == 0) {
    Store(target, static_cast<double>(column.defaultValue));
    return 1;
  }
  PlainDecimal number;
  bool negative = false;
  if (ReadPlainDecimal(text, length, number)) {
    negative = number.value < 0;
  } else {
    CQorStringUtil::ToHalfString(m_half, Terminated(text, length));
    m_half.Trim();
    double value = 0;
    if (NumCheck(m_half) == 0 || !IsConverted(VarR8FromStr(m_half, LOCALE_USER_DEFAULT, 0, &value))) {
      SetError(column.name, TYPEERROR_NOTNUMBER, nullptr);
      Store(target, 0.0);
      return 0;
    }
    const int characters = m_half.GetLength();
    const int point = m_half.Find(L'.');
    negative = value < 0;
    number.integer_length = point < 0 ? characters : point;
    number.fraction_length = point < 0 ? 0 : characters - point - 1;
    number.value = _wtof(m_half);
  }

  std::int64_t total = column.size;
  if (negative && (column.typeFlags & TYPECHECK_SIGNDIGIT) != 0) --total;
  std::int64_t places = column.decimals;
  if ((column.typeFlags & TYPECHECK_FIXEDDECIMALS) != 0 && places > 0) {
    total -= places;
  } else {
    places = std::min(places, total - number.integer_length);
  }
  int result = 1;
  if (number.integer_length > total) {
    SetError(column.name, TYPEERROR_RANGE, nullptr);
    number.value = 0.0;
    if (column.check == 1) result = 0;
  }
  if (number.fraction_length != 0 && number.fraction_length > places) {
    SetError(column.name, TYPEERROR_FRACTIONDIGITS, nullptr);
    number.value = 0.0;
    result = 0;
  }
  Store(target, number.value);
  return result;
}

int CQorTypeConverter::ConvertBool(QorTypeCheckInfoTable* column, CString& text, void* target) {
  if (column == nullptr) return 0;
  text.Trim();
  if (IsOneOf(text, kYes, std::size(kYes))) {
    Store<std::uint8_t>(target, 1);
    return 1;
  }
  Store<std::uint8_t>(target, 0);
  if (IsOneOf(text, kNo, std::size(kNo))) return 1;
  SetError(column->name, TYPEERROR_VALUE, nullptr);
  return 0;
}

int CQorTypeConverter::ConvertDate(QorTypeCheckInfoTable* column, CString& text, void* target) {
  if (column == nullptr) return 0;
  text.Trim();
  // A new date reads the clock, a copy of one doesn't.
  static const CQorDate fresh;
  CQorDate date(fresh);
  int parsed = CQorDateUtil::GetDateFromImpStr(text, date);
  // A year that the date object passes but doesn't take leaves the day it began with: today, and not the day
  // of the first conversion.
  if (parsed != 0 && date.ToQORDATE() == fresh.ToQORDATE()) {
    date = CQorDate();
    parsed = CQorDateUtil::GetDateFromImpStr(text, date);
  }
  if (parsed == 0) {
    SetError(column->name, TYPEERROR_DATE, nullptr);
    return 0;
  }
  const QORDATE day = date;
  Store(target, static_cast<std::int32_t>(day.ToLongDate()));
  return parsed;
}

long CQorTypeConverter::GetFieldCount() {
  return fieldCount;
}

long CQorTypeConverter::GetErrorCount() {
  return static_cast<long>(errors.size());
}

TypeError CQorTypeConverter::GetErrorKind(int index) {
  const auto place = static_cast<std::size_t>(index);
  return index >= 0 && place < errors.size() ? errors[place].kind : TYPEERROR_NONE;
}

CString CQorTypeConverter::GetErrorMessage(int index) {
  const auto place = static_cast<std::size_t>(index);
  return index >= 0 && place < errors.size() ? errors[place].message : CString();
}

void CQorTypeConverter::ClearError() {
  errors.clear();
}

void CQorTypeConverter::SetError(const wchar_t* name, TypeError kind, const wchar_t* message) {
  CString text(name);
  if (name != nullptr) text.AppendChar(L':');
  text.Append(message != nullptr ? message : MessageOf(kind));
  errors.push_back({kind, std::move(text)});
}

void CQorTypeConverter::SetError(TypeError kind, const wchar_t* message) {
  SetError(nullptr, kind, message);
}

int CQorTypeConverter::NumCheck(const CString& text) {
  return text.FindOneOf(L"\\,") < 0 ? 1 : 0;
}
