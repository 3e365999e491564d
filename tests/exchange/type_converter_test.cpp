// The table-driven converter: every type at and beyond its limits, the error list, and the short way of plain
// numbers against the automation conversion.

#include "qorgen/exchange/type_converter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>

#include "qorgen/afx/string.h"
#include "qorgen/calendar/date_record.h"
#include "qorgen/exchange/internal/plain_number.h"
#include "qorgen/platform/automation.h"
#include "qorgen/platform/crt.h"
#include "qorgen/text/string_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

// Converts one field with a one-column table and a record whose bytes behind the target are watched.
struct OneField {
  unsigned char record[64];
  CQorTypeConverter converter;
  int result = -1;

  OneField(QorTypeCheckInfoTable column, const wchar_t* text) {
    std::memset(record, 0xA5, sizeof record);
    column.offset = 1;  // on purpose an odd place
    converter.Initialize(&column, 1);
    CQorCSVManager manager;
    if (text != nullptr) manager.AddElement(text);
    result = converter.Convert(manager, record, 0);
    EXPECT_EQ(record[0], 0xA5);
  }

  template <typename Value>
  Value Stored() const {
    Value value;
    std::memcpy(&value, record + 1, sizeof value);
    return value;
  }
  bool IsUntouchedFrom(std::size_t offset) const {
    for (std::size_t i = offset; i < sizeof record; ++i) {
      if (record[i] != 0xA5) return false;
    }
    return true;
  }
  // The kinds in order, "4" or "5,7"; "" without errors.
  std::string Kinds() {
    std::string out;
    for (int i = 0; i < converter.GetErrorCount(); ++i) {
      out += (out.empty() ? "" : ",") + std::to_string(static_cast<int>(converter.GetErrorKind(i)));
    }
    return out;
  }
};

// A number of more digits than its column is cut to the largest that fits; a sign may need a digit or be refused.
TEST(TypeConverter, CutsNumbersToTheirColumn) {
  for (const unsigned int flags :
       {0u, TYPECHECK_SIGNDIGIT, TYPECHECK_UNSIGNED, TYPECHECK_SIGNDIGIT | TYPECHECK_UNSIGNED}) {
    for (const int size : {INT_MIN, -3, 0, 1, 3, 8, 9, 10, INT_MAX}) {
      for (const long long number : {0LL, 1LL, 9LL, 10LL, 99LL, 100LL, 999LL, 1000LL, 99'999'999LL,
                                     999'999'999LL, 1'000'000'000LL, 2'147'483'647LL, 2'147'483'648LL}) {
        for (const long long value : {number, -number}) {
          for (const int check : {0, 1, 2}) {
            if (value == 2'147'483'648LL) continue;  // no number of 32 bits, see below
            const bool sign_takes_a_digit = value < 0 && (flags & TYPECHECK_SIGNDIGIT) != 0;
            const int digits = std::clamp(std::clamp(size, -1, 11) - (sign_takes_a_digit ? 1 : 0), 0, 10);
            long long limit = digits == 10 ? 2'147'483'648LL : 1;
            for (int i = 0; i < digits && digits < 10; ++i) limit *= 10;
            if (digits < 10) --limit;
            if (value < 0 && (flags & TYPECHECK_UNSIGNED) != 0) limit = 0;
            const bool fits = number <= limit;
            const std::string text = std::to_string(value);
            OneField field({TYPECHECK_LONG | flags, L"n", size, 0, check, 0, 0}, CString(text.c_str()));
            EXPECT_EQ(field.Stored<std::int32_t>(), fits        ? value
                                                    : value < 0 ? -limit
                                                                : limit)
                << text << " size " << size << " flags " << flags;
            EXPECT_EQ(field.result, fits || check != 1 ? 1 : 0) << text << " size " << size;
            EXPECT_EQ(field.Kinds(), fits ? "" : "5") << text << " size " << size << " flags " << flags;
          }
        }
      }
    }
  }
}

TEST(TypeConverter, ConvertsNumerals) {
  const std::tuple<const wchar_t*, int, int, std::int32_t, int, const char*> rows[] = {
      {L"－１２", 1, 0, -12, 1, ""},    {L"\x3000 12 ", 1, 0, 12, 1, ""},
      {L"+12", 1, 0, 12, 1, ""},        {L"007", 1, 0, 7, 1, ""},
      {L"12.25", 1, 0, 12, 1, ""},      {L"1e2", 1, 0, 100, 1, ""},
      {L"1,000", 1, 0, 0, 0, "4"},      {L"1，000", 1, 0, 0, 0, "4"},
      {L"\\100", 1, 0, 0, 0, "4"},      {L"abc", 1, 5, 0, 0, "4"},
      {L"abc", 0, 5, 0, 1, "4"},        {L"-", 1, 0, 0, 0, "4"},
      {L"12a", 1, 0, 0, 0, "4"},        {L"", 0, 5, 0, 1, ""},
      {L"", 1, 5, 5, 0, "10"},          {L"", 2, 5, 5, 0, "10"},
      {L"  ", 1, 5, 5, 0, "10"},        {nullptr, 1, -7, -7, 0, "10"},
      {L"2147483648", 1, 0, 0, 0, "4"}, {L"99999999999999999999", 1, 0, 0, 0, "4"},
  };
  for (const auto& [text, check, default_value, stored, result, kinds] : rows) {
    SCOPED_TRACE(Utf8(text) + " check " + std::to_string(check));
    OneField field({TYPECHECK_LONG, L"n", 30, 0, check, 0, default_value}, text);
    EXPECT_EQ(field.Stored<std::int32_t>(), stored);
    EXPECT_EQ(field.result, result);
    EXPECT_EQ(field.Kinds(), kinds);
    EXPECT_TRUE(field.IsUntouchedFrom(1 + sizeof(std::int32_t)));
  }
}

TEST(TypeConverter, CutsNumeralsToTheTarget) {
  const std::tuple<unsigned int, const wchar_t*, std::int32_t, std::size_t> rows[] = {
      {TYPECHECK_SHORT, L"-12345", -12345, 2}, {TYPECHECK_SHORT, L"70000", 70000 - 65536, 2},
      {TYPECHECK_BYTE, L"255", -1, 1},         {TYPECHECK_BYTE, L"300", 300 - 256, 1},
      {TYPECHECK_CHAR, L"-128", -128, 1},      {TYPECHECK_CHAR, L"", 0, 1},
  };
  for (const auto& [type, text, expected, width] : rows) {
    SCOPED_TRACE(Utf8(text));
    OneField field({type, L"n", 9, 0, 0, 0, 0}, text);
    const std::int32_t stored = width == 2 ? field.Stored<std::int16_t>() : field.Stored<std::int8_t>();
    EXPECT_EQ(stored, expected);
    EXPECT_TRUE(field.IsUntouchedFrom(1 + width));
  }
}

TEST(TypeConverter, ConvertsDoubles) {
  constexpr unsigned int kFixed = TYPECHECK_FIXEDDECIMALS;
  const std::tuple<const wchar_t*, unsigned int, int, short, int, double, int, const char*> rows[] = {
      {L"12.5", 0, 5, 2, 1, 12.5, 1, ""},
      {L"１２．５", 0, 5, 2, 1, 12.5, 1, ""},
      {L"1e2", 0, 5, 2, 1, 100, 1, ""},
      {L"123456789.12345", 0, 15, 5, 1, 123456789.12345, 1, ""},
      {L".5", 0, 5, 2, 1, 0.5, 1, ""},
      {L"123456", 0, 5, 2, 0, 0, 1, "5"},
      {L"1.234", 0, 5, 2, 0, 0, 1, "7"},
      {L"1.234", 0, 5, 2, 2, 0, 0, "7"},
      {L"1234.56", 0, 5, 2, 1, 0, 0, "7"},
      {L"1234.5", 0, 5, 2, 1, 1234.5, 1, ""},
      {L"123456.5", 0, 5, 2, 1, 0, 0, "5,7"},
      {L"12345", 0, 5, 2, 1, 12345, 1, ""},
      {L"-1234", 0, 5, 2, 1, -1234, 1, ""},
      {L"-12345", 0, 5, 2, 1, 0, 0, "5"},
      {L"-1234", TYPECHECK_SIGNDIGIT, 5, 2, 1, 0, 0, "5"},
      {L"-123", TYPECHECK_SIGNDIGIT, 5, 2, 1, -123, 1, ""},
      {L"1234", kFixed, 5, 2, 1, 0, 0, "5"},
      {L"123.45", kFixed, 5, 2, 1, 123.45, 1, ""},
      {L"123.456", kFixed, 5, 2, 1, 0, 0, "7"},
      {L"1234", kFixed, 5, 0, 1, 1234, 1, ""},
      {L"1", 0, INT_MIN, SHRT_MIN, 1, 0, 0, "5"},
      {L"-1.5", TYPECHECK_SIGNDIGIT | kFixed, INT_MIN, SHRT_MAX, 1, 0, 0, "5"},
      {L"1.5", 0, INT_MAX, SHRT_MAX, 1, 1.5, 1, ""},
      {L"1,000", 0, 9, 2, 1, 0, 0, "4"},
      {L"x", 0, 9, 2, 0, 0, 1, "4"},
      {L"  ", 0, 9, 2, 1, 0, 0, "4"},
      {L"", 0, 9, 2, 1, 42, 1, ""},
      {nullptr, 0, 9, 2, 1, 42, 1, ""},
  };
  for (const auto& [text, flags, size, decimals, check, stored, result, kinds] : rows) {
    SCOPED_TRACE(Utf8(text) + " size " + std::to_string(size) + " flags " + std::to_string(flags));
    OneField field({TYPECHECK_DOUBLE | flags, L"d", size, decimals, check, 0, 42}, text);
    EXPECT_EQ(field.Stored<double>(), stored);
    EXPECT_EQ(field.result, result);
    EXPECT_EQ(field.Kinds(), kinds);
    EXPECT_TRUE(field.IsUntouchedFrom(1 + sizeof(double)));
  }
}

TEST(TypeConverter, ConvertsYesAndNo) {
  const std::tuple<const wchar_t*, std::uint8_t, int, const char*> rows[] = {
      {L"true", 1, 1, ""},  {L" YES ", 1, 1, ""}, {L"On", 1, 1, ""},  {L"○", 1, 1, ""},
      {L"False", 0, 1, ""}, {L"no", 0, 1, ""},    {L"OFF", 0, 1, ""}, {L"×", 0, 0, "8"},
      {L"1", 0, 0, "8"},    {L"0", 0, 0, "8"},    {L"", 0, 0, "8"},   {L"  ", 0, 0, "8"},
      {L"yess", 0, 0, "8"},
  };
  for (const auto& [text, stored, result, kinds] : rows) {
    SCOPED_TRACE(Utf8(text));
    OneField field({TYPECHECK_BOOL, L"b", 0, 0, 1, 0, 0}, text);
    EXPECT_EQ(field.Stored<std::uint8_t>(), stored);
    EXPECT_EQ(field.result, result);
    EXPECT_EQ(field.Kinds(), kinds);
    EXPECT_TRUE(field.IsUntouchedFrom(2));
  }
}

TEST(TypeConverter, ConvertsDates) {
  const std::tuple<const wchar_t*, int, int, int> good[] = {
      {L"01/02/R03", 1, 2, 2021},
      {L" 01/02/2021 ", 1, 2, 2021},
      {L"29/02/2024", 29, 2, 2024},
  };
  for (const auto& [text, day, month, year] : good) {
    SCOPED_TRACE(Utf8(text));
    OneField field({TYPECHECK_DATE, L"d", 0, 0, 1, 0, 0}, text);
    EXPECT_EQ(field.result, 1);
    EXPECT_EQ(field.Stored<std::int32_t>(), year * 65536 + month * 256 + day);
    EXPECT_EQ(field.converter.GetErrorCount(), 0);
    EXPECT_TRUE(field.IsUntouchedFrom(5));
  }
  for (const wchar_t* text : {L"", L"x", L"30/02/2024", L"01/13/2024", L"2024"}) {
    SCOPED_TRACE(Utf8(text));
    OneField field({TYPECHECK_DATE, L"d", 0, 0, 1, 0, 0}, text);
    EXPECT_EQ(field.result, 0);
    EXPECT_EQ(field.Kinds(), "9");
    EXPECT_TRUE(field.IsUntouchedFrom(0));
  }
}

TEST(TypeConverter, ConvertsText) {
  const std::tuple<const wchar_t*, int, int, const wchar_t*, int, const char*> rows[] = {
      {L"abc", 3, 1, L"abc", 1, ""},   {L"abcd", 3, 1, L"abc", 0, "2"},    {L"abcd", 3, 0, L"abc", 1, ""},
      {L" a ", 5, 1, L" a ", 1, ""},   {L"  \x3000\t ", 2, 1, L"", 1, ""}, {L"", 3, 1, L"", 1, ""},
      {nullptr, 3, 1, L"", 1, ""},     {L"a", 0, 1, L"", 0, "2"},          {L"a", 0, 0, L"", 1, ""},
      {L"摘要", 2, 1, L"摘要", 1, ""},
  };
  for (const auto& [text, size, check, start, result, kinds] : rows) {
    SCOPED_TRACE(Utf8(text));
    OneField field({TYPECHECK_STRING, L"t", size, 0, check, 0, 0}, text);
    wchar_t stored[8] = {};
    const std::size_t bytes = (static_cast<std::size_t>(size) + 1) * sizeof(wchar_t);
    std::memcpy(stored, field.record + 1, bytes);
    wchar_t expected[8] = {};
    std::memcpy(expected, start, (wcslen(start) + 1) * sizeof(wchar_t));
    EXPECT_EQ(std::memcmp(stored, expected, sizeof stored), 0) << Utf8(stored);  // zeros up to the end
    EXPECT_EQ(field.result, result);
    EXPECT_EQ(field.Kinds(), kinds);
    EXPECT_TRUE(field.IsUntouchedFrom(1 + bytes));
  }
  for (const wchar_t* text : {L"", L"abc"}) {
    OneField field({TYPECHECK_STRING, L"t", -1, 0, 1, 0, 0}, text);
    EXPECT_EQ(field.result, 0);
    EXPECT_EQ(field.Kinds(), "2");
    EXPECT_TRUE(field.IsUntouchedFrom(0));
  }
}

TEST(TypeConverter, TakesUnknownTypeAsFailure) {
  for (const unsigned int type : {0u, 0x9000u, 0x0FFFu, 0x07FFF000u, 0xF8000000u}) {
    OneField strict({type, L"?", 1, 0, 1, 0, 0}, L"1");
    EXPECT_EQ(strict.result, 0) << type;
    OneField lax({type, L"?", 1, 0, 0, 0, 0}, L"1");
    EXPECT_EQ(lax.result, 1) << type;
    EXPECT_TRUE(lax.IsUntouchedFrom(0));
    EXPECT_EQ(lax.converter.GetErrorCount(), 0);
  }
  // Bits outside the type mask and the flags mean nothing.
  OneField field({0xF8000FF8u | TYPECHECK_BYTE, L"n", 3, 0, 1, 0, 0}, L"7");
  EXPECT_EQ(field.Stored<std::int8_t>(), 7);
}

struct Row {
  wchar_t text[4];
  std::int32_t number;
  std::int32_t other;
};

QorTypeCheckInfoTable g_table[] = {
    {TYPECHECK_STRING, L"摘要", 3, 0, 1, offsetof(Row, text), 0},
    {TYPECHECK_LONG, nullptr, 3, 0, 1, offsetof(Row, number), 8},
    {TYPECHECK_LONG, L"", 3, 0, 0, offsetof(Row, other), 9},
};

TEST(TypeConverter, ComparesFieldCounts) {
  const std::tuple<const wchar_t*, unsigned char, int, long> rows[] = {
      {L"a,1,2,", 1, 1, 0}, {L"a,1,2,x", 1, 0, 1}, {L"a,1,2,,", 1, 0, 1},
      {L"a,1", 1, 0, 1},    {L"", 1, 0, 1},        {L"a,1,2,x", 0, 1, 0},
      {L"a,1", 0, 1, 0},    {L"a", 0, 0, 1},       {L"a,1,2", 255, 1, 0},
  };
  CQorTypeConverter converter;
  ASSERT_EQ(converter.Initialize(g_table, 3), 1);
  EXPECT_EQ(converter.GetFieldCount(), 3);
  for (const auto& [line, check_count, result, errors] : rows) {
    SCOPED_TRACE(Utf8(line));
    Row record = {L"zzz", -1, -1};
    CQorCSVManager manager(line, CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
    EXPECT_EQ(converter.Convert(manager, &record, check_count), result);
    EXPECT_EQ(converter.GetErrorCount(), errors);
    if (check_count != 0 && result == 0) {
      EXPECT_EQ(converter.GetErrorKind(0), TYPEERROR_FIELDCOUNT);
      EXPECT_TEXT(L"１行に指定されている項目数が異なっています。", converter.GetErrorMessage(0));
      EXPECT_TEXT(L"zzz", record.text);
    } else {
      EXPECT_TEXT(L"a", record.text);
      EXPECT_NE(record.other, -1);
    }
    CQorCSVManager same(line, CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
    EXPECT_EQ(converter.Convert(same, nullptr, check_count), result);
    EXPECT_EQ(converter.GetErrorCount(), errors);
  }
}

TEST(TypeConverter, CollectsAllErrorsOfALine) {
  CQorTypeConverter converter;
  converter.Initialize(g_table, 3);
  Row record = {};
  CQorCSVManager manager(L"too long,x,1000", CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(converter.Convert(manager, &record, 1), 0);
  ASSERT_EQ(converter.GetErrorCount(), 3);
  EXPECT_TEXT(L"摘要:文字列の長さが範囲を超えています。", converter.GetErrorMessage(0));
  EXPECT_TEXT(L"数字以外の文字が含まれています。", converter.GetErrorMessage(1));
  EXPECT_TEXT(L":範囲外の数値が指定されています。", converter.GetErrorMessage(2));
  EXPECT_TEXT(L"too", record.text);
  EXPECT_EQ(record.other, 999);
  for (const int index : {-1, 3, INT_MAX, INT_MIN}) {
    EXPECT_EQ(converter.GetErrorKind(index), TYPEERROR_NONE);
    EXPECT_TEXT(L"", converter.GetErrorMessage(index));
  }

  CQorTypeConverter copy(converter);
  CQorTypeConverter assigned;
  assigned = converter;
  converter.ClearError();
  EXPECT_EQ(converter.GetErrorCount(), 0);
  EXPECT_EQ(copy.GetErrorCount(), 3);
  EXPECT_EQ(assigned.GetFieldCount(), 3);
  EXPECT_EQ(assigned.Finalize(), 1);
  EXPECT_EQ(assigned.GetErrorCount() + assigned.GetFieldCount(), 0);

  // A line without errors forgets those of the line before.
  CQorCSVManager good(L"a,1,2", CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(copy.Convert(good, &record, 1), 1);
  EXPECT_EQ(copy.GetErrorCount(), 0);
}

TEST(TypeConverter, RefusesWrongTables) {
  CQorTypeConverter converter;
  converter.Initialize(g_table, 2);
  EXPECT_EQ(converter.Initialize(nullptr, 3), 0);
  EXPECT_EQ(converter.Initialize(g_table, 0), 0);
  EXPECT_EQ(converter.Initialize(g_table, INT_MIN), 0);
  EXPECT_EQ(converter.GetFieldCount(), 2);

  CQorTypeConverter empty;
  CQorCSVManager manager(L"a", CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(empty.Convert(manager, nullptr, 0), 1);
  EXPECT_EQ(empty.Convert(manager, nullptr, 1), 0);
  EXPECT_EQ(empty.GetErrorKind(0), TYPEERROR_FIELDCOUNT);
}

// An application's own rules: a column type of its own, other date forms, a fraction check, and a second line
// converted from inside the first.
class OwnConverter : public CQorTypeConverter {
 public:
  CQorCSVManager inner{L"7", CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0};
  QorTypeCheckInfoTable inner_table = {TYPECHECK_LONG, L"", 3, 0, 1, 0, 0};
  std::int32_t inner_record = 0;
  bool in_inner = false;

 protected:
  int ConvertOneItem(QorTypeCheckInfoTable* column, CString& text, void* target) override {
    if (column->typeFlags == 0x9000) {
      SetError(column->name, TYPEERROR_CHARTYPE, L"own message");
      SetError(static_cast<TypeError>(99), nullptr);
      SetError(static_cast<TypeError>(-1), nullptr);
      text += L" is longer than the field it came from, by far";
      return ConvertString(column, text, target);
    }
    if (!in_inner && column->typeFlags == TYPECHECK_LONG) {
      in_inner = true;
      QorTypeCheckInfoTable* const outer = table;
      const long outer_count = fieldCount;
      table = &inner_table;
      fieldCount = 1;
      Convert(inner, &inner_record, 1);
      table = outer;
      fieldCount = outer_count;
      in_inner = false;
    }
    return CQorTypeConverter::ConvertOneItem(column, text, target);
  }
  int ConvertDate(QorTypeCheckInfoTable*, CString& text, void* target) override {
    const std::int32_t value = text == L"today" ? 77 : 0;
    std::memcpy(target, &value, sizeof value);
    return 1;
  }
};

TEST(TypeConverter, CallsOverrides) {
  struct {
    wchar_t text[9];
    std::int32_t date;
    std::int32_t number;
    wchar_t last[4];
  } record = {};
  QorTypeCheckInfoTable table[] = {
      {TYPECHECK_LONG, L"n", 3, 0, 1, offsetof(decltype(record), number), 0},
      {0x9000, L"own", 8, 0, 0, offsetof(decltype(record), text), 0},
      {TYPECHECK_DATE, L"d", 0, 0, 1, offsetof(decltype(record), date), 0},
      {TYPECHECK_STRING, L"s", 3, 0, 1, offsetof(decltype(record), last), 0},
  };
  OwnConverter converter;
  converter.Initialize(table, 4);
  CQorCSVManager manager(L"12,ab,today,end", CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(converter.Convert(manager, &record, 1), 1);
  EXPECT_EQ(record.number, 12);
  EXPECT_EQ(converter.inner_record, 7);
  EXPECT_TEXT(L"ab is lo", record.text);
  EXPECT_EQ(record.date, 77);
  EXPECT_TEXT(L"end", record.last);
  EXPECT_TEXT(L"ab", manager.GetAt(1));
  ASSERT_EQ(converter.GetErrorCount(), 3);
  EXPECT_EQ(converter.GetErrorKind(0), TYPEERROR_CHARTYPE);
  EXPECT_TEXT(L"own:own message", converter.GetErrorMessage(0));
  EXPECT_TEXT(L"", converter.GetErrorMessage(1));
  EXPECT_TEXT(L"", converter.GetErrorMessage(2));
}

// A derived class gets every field through ConvertOneItem, the class itself takes a shorter way: with the
// same result.
TEST(TypeConverter, DerivedClassesConvertAlike) {
  struct Derived : CQorTypeConverter {};
  constexpr std::size_t kPlace = 32;
  std::vector<QorTypeCheckInfoTable> table;
  for (unsigned int type = TYPECHECK_STRING; type <= 0x9000; type += 0x1000) {
    for (const int size : {-1, 0, 1, 2, 7, 8, 9, 15}) {
      const unsigned int flags = static_cast<unsigned int>(size) % 8;
      if (type == TYPECHECK_STRING && size > 14) continue;
      table.push_back(
          {type | flags, L"c", size, 2, size % 2, static_cast<unsigned int>(table.size() * kPlace), 5});
    }
  }
  const wchar_t* const texts[] = {
      L"",    L" ",   L"a",   L"-1",       L"12.5",      L"１２",      L"1,2",
      L"yes", L"off", L" 12", L"12345678", L"123456789", L"01/02/R03", L"長い文字列です、はい。",
      L"1e1"};
  std::mt19937 random(11);
  for (int round = 0; round < 500; ++round) {
    CQorCSVManager manager;
    for (std::size_t i = random() % 3; i < table.size(); ++i)
      manager.AddElement(texts[random() % std::size(texts)]);
    CQorTypeConverter plain;
    Derived derived;
    plain.Initialize(table.data(), static_cast<int>(table.size()));
    derived.Initialize(table.data(), static_cast<int>(table.size()));
    std::vector<unsigned char> one(table.size() * kPlace + 1, 0xA5);
    std::vector<unsigned char> two = one;
    ASSERT_EQ(plain.Convert(manager, one.data() + 1, 0), derived.Convert(manager, two.data() + 1, 0));
    ASSERT_EQ(one, two);
    ASSERT_EQ(plain.GetErrorCount(), derived.GetErrorCount());
    for (int i = 0; i < plain.GetErrorCount(); ++i) {
      ASSERT_EQ(plain.GetErrorKind(i), derived.GetErrorKind(i));
      ASSERT_TEXT(plain.GetErrorMessage(i), derived.GetErrorMessage(i));
    }
  }
}

// --- the short way of plain numbers takes nothing that the long way sees differently ---

void ExpectSameAsLongWay(const wchar_t* text) {
  SCOPED_TRACE("'" + Utf8(text) + "'");
  CString half;
  CQorStringUtil::ToHalfString(half, text);
  half.Trim();
  const int length = CString::StringLength(text);

  std::int32_t integer = 0;
  if (qorgen::exchange::ReadPlainInteger(text, length, integer)) {
    LONG expected = 0;
    EXPECT_GE(VarI4FromStr(half, LOCALE_USER_DEFAULT, 0, &expected), 0);
    EXPECT_EQ(integer, static_cast<std::int32_t>(expected));
  }
  qorgen::exchange::PlainDecimal decimal;
  if (qorgen::exchange::ReadPlainDecimal(text, length, decimal)) {
    double expected = 0;
    EXPECT_GE(VarR8FromStr(half, LOCALE_USER_DEFAULT, 0, &expected), 0);
    EXPECT_EQ(decimal.value, _wtof(half));
    EXPECT_EQ(decimal.value < 0, expected < 0);
    const int point = half.Find(L'.');
    EXPECT_EQ(decimal.integer_length, point < 0 ? half.GetLength() : point);
    EXPECT_EQ(decimal.fraction_length, point < 0 ? 0 : half.GetLength() - point - 1);
  }
}

TEST(TypeConverter, PlainNumbersReadAsTheAutomationConversionReadsThem) {
  const wchar_t* const texts[] = {L"",
                                  L"-",
                                  L"-0",
                                  L"1.",
                                  L".1",
                                  L"-.1",
                                  L"-1.50",
                                  L"1..2",
                                  L"--1",
                                  L"1-",
                                  L"+1",
                                  L"1e5",
                                  L"123456789",
                                  L"1234567890",
                                  L"000000001",
                                  L"0000000001",
                                  L"999999999999999",
                                  L"9999999999999999",
                                  L"0.00000000000001",
                                  L"0.000000000000001",
                                  L"-99999999.9999999",
                                  L"１",
                                  L"1 ",
                                  L" 1",
                                  L"4.35",
                                  L"1.005",
                                  L"123.456789012345",
                                  L"&H10",
                                  L"(1)",
                                  L"1%"};
  for (const wchar_t* text : texts) ExpectSameAsLongWay(text);
  std::mt19937 random(77);
  int plain = 0;
  for (int round = 0; round < 20000; ++round) {
    CString text;
    for (std::size_t n = 1 + random() % 17; n > 0; --n)
      text += L"0123456789012345678901234567890123456789.-"[random() % 42];
    ExpectSameAsLongWay(text);
    qorgen::exchange::PlainDecimal decimal;
    if (qorgen::exchange::ReadPlainDecimal(text, text.GetLength(), decimal)) ++plain;
  }
  EXPECT_GT(plain, 5000);
}

}  // namespace
