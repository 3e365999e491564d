#include "qorgen/platform/automation.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace {

using qorgen::tests::AsPublished;
using qorgen::tests::Utf8;

struct NumberRow {
  const wchar_t* text;
  HRESULT result;
  double value;
  // Wine knows neither d for an exponent nor full-width characters, has another yen sign, and lets a huge
  // exponent pass.
  bool on_wine = true;
};

// What both conversions read alike; the integer is the rounded value.
constexpr NumberRow kNumbers[] = {
    {L"0", S_OK, 0},
    {L"-0", S_OK, 0},
    {L"12", S_OK, 12},
    {L"-12", S_OK, -12},
    {L"+12", S_OK, 12},
    {L"  12\t", S_OK, 12},
    {L" - 12 ", S_OK, -12},
    {L"12-", S_OK, -12},
    {L"12 +", S_OK, 12},
    {L"(12)", S_OK, -12},
    {L" ( 12 ) ", S_OK, -12},
    {L"000000000000000000012", S_OK, 12},
    {L"1.", S_OK, 1},
    {L"1e3", S_OK, 1000},
    {L"1E+3", S_OK, 1000},
    {L"5000e-3", S_OK, 5},
    {L"1d2", S_OK, 100, false},
    {L".00012e5", S_OK, 12},
    {L"1,234,567", S_OK, 1234567},
    {L"1,2,3", S_OK, 123},
    {L"\\1,000", S_OK, 1000, false},
    {L"-\\5", S_OK, -5, false},
    {L"\\-5", S_OK, -5, false},
    {L"１２３", S_OK, 123, false},
    {L"－１，２００．０", S_OK, -1200, false},
    {L"　７　", S_OK, 7, false},
    {L"&H1F", S_OK, 31},
    {L"&h7fffffff", S_OK, 2147483647},
    {L"&O17", S_OK, 15},
    {L"2147483647", S_OK, 2147483647},
    {L"-2147483648", S_OK, -2147483648.0},
    {L"123456789", S_OK, 123456789},
    {L"1234567890", S_OK, 1234567890},
    {L"1e-400", S_OK, 0},
    {L"0e999999999999999999999", S_OK, 0},
    {L"1e999999999999999999999", DISP_E_OVERFLOW, 0, false},
    {L"1e400", DISP_E_OVERFLOW, 0},
    {nullptr, DISP_E_TYPEMISMATCH, 0},
    {L"", DISP_E_TYPEMISMATCH, 0},
    {L"   ", DISP_E_TYPEMISMATCH, 0},
    {L"-", DISP_E_TYPEMISMATCH, 0},
    {L".", DISP_E_TYPEMISMATCH, 0},
    {L"-.", DISP_E_TYPEMISMATCH, 0},
    {L",5", DISP_E_TYPEMISMATCH, 0},
    {L"\\", DISP_E_TYPEMISMATCH, 0},
    {L"abc", DISP_E_TYPEMISMATCH, 0},
    {L"12abc", DISP_E_TYPEMISMATCH, 0},
    {L"1 2", DISP_E_TYPEMISMATCH, 0},
    {L"1.2.3", DISP_E_TYPEMISMATCH, 0},
    {L"--1", DISP_E_TYPEMISMATCH, 0},
    {L"-1-", DISP_E_TYPEMISMATCH, 0},
    {L"(1", DISP_E_TYPEMISMATCH, 0},
    {L"1)", DISP_E_TYPEMISMATCH, 0},
    {L"()", DISP_E_TYPEMISMATCH, 0},
    {L"1e", DISP_E_TYPEMISMATCH, 0},
    {L"1e+", DISP_E_TYPEMISMATCH, 0},
    {L"e5", DISP_E_TYPEMISMATCH, 0},
    {L"0x10", DISP_E_TYPEMISMATCH, 0},
    {L"&H", DISP_E_TYPEMISMATCH, 0},
    {L"&HG", DISP_E_TYPEMISMATCH, 0},
    {L"&O8", DISP_E_TYPEMISMATCH, 0},
    {L"true", DISP_E_TYPEMISMATCH, 0},
    {L"一二三", DISP_E_TYPEMISMATCH, 0},
};

TEST(NumberFromText, WhatIsANumber) {
  for (const NumberRow& row : kNumbers) {
    LONG integer = 77;
    double real = 77;
    const bool same_result = VarI4FromStr(row.text, LOCALE_USER_DEFAULT, 0, &integer) == row.result &&
                             VarR8FromStr(row.text, LOCALE_USER_DEFAULT, 0, &real) == row.result;
    const double expected = SUCCEEDED(row.result) ? row.value : 77;
    EXPECT_TRUE(AsPublished(same_result && integer == expected && std::round(real) == expected, row.on_wine))
        << Utf8(row.text) << ": " << integer << ", " << real;
  }
}

TEST(NumberFromText, AFractionGoesToTheNearestIntegerAndAHalfToTheEvenOne) {
  const struct {
    const wchar_t* text;
    HRESULT result;
    LONG value;
  } rows[] = {
      {L"0.5", S_OK, 0},
      {L"1.5", S_OK, 2},
      {L"2.5", S_OK, 2},
      {L"-0.5", S_OK, 0},
      {L"-1.5", S_OK, -2},
      {L"-2.5", S_OK, -2},
      {L"0.49999999999999999999999999999999", S_OK, 0},
      {L"2.50000000000000000000000000000001", S_OK, 3},
      {L"0.05", S_OK, 0},
      {L"0.95", S_OK, 1},
      {L".5e1", S_OK, 5},
      {L"25e-1", S_OK, 2},
      {L"2147483647.4", S_OK, 2147483647},
      {L"2147483647.5", DISP_E_OVERFLOW, 9},
      {L"-2147483648.5", S_OK, INT32_MIN},
      {L"-2147483648.51", DISP_E_OVERFLOW, 9},
      {L"2147483648", DISP_E_OVERFLOW, 9},
      {L"99999999999999999999999999", DISP_E_OVERFLOW, 9},
      {L"&HFFFFFFFF", S_OK, -1},
      {L"&H80000000", S_OK, INT32_MIN},
      {L"&H100000000", DISP_E_OVERFLOW, 9},
      {L"&H000000000000000000001", S_OK, 1},
  };
  for (const auto& row : rows) {
    LONG value = 9;
    EXPECT_EQ(row.result, VarI4FromStr(row.text, LOCALE_USER_DEFAULT, 0, &value)) << Utf8(row.text);
    EXPECT_EQ(row.value, value) << Utf8(row.text);
  }
}

TEST(NumberFromText, Doubles) {
  const std::pair<const wchar_t*, double> rows[] = {{L"0.1", 0.1},
                                                    {L"-123.456", -123.456},
                                                    {L"123456789012345", 123456789012345.0},
                                                    {L"0.000000000000001", 1e-15},
                                                    {L"1e-330", 0.0},
                                                    {L"1,234.5", 1234.5}};
  double value = 9;
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(S_OK, VarR8FromStr(text, LOCALE_USER_DEFAULT, 0, &value)) << Utf8(text);
    EXPECT_EQ(expected, value) << Utf8(text);
  }
  EXPECT_EQ(DISP_E_OVERFLOW, VarR8FromStr(L"1.8e308", LOCALE_USER_DEFAULT, 0, &value));
}

TEST(Bstr, CarriesItsLength) {
  BSTR text = SysAllocString(L"日本");
  EXPECT_EQ(2u, SysStringLen(text));
  EXPECT_EQ(4u, SysStringByteLen(text));
  EXPECT_TEXT(L"日本", text);
  SysFreeString(text);
  text = SysAllocStringLen(L"ab\0cd", 5);
  EXPECT_EQ(5u, SysStringLen(text));
  EXPECT_EQ(L'd', text[4]);
  EXPECT_EQ(0, text[5]);
  SysFreeString(text);
  text = SysAllocStringByteLen("abc", 3);
  EXPECT_EQ(3u, SysStringByteLen(text));
  EXPECT_EQ(1u, SysStringLen(text));
  EXPECT_EQ(0, std::memcmp(text, "abc\0\0", 5));
  SysFreeString(text);
  text = SysAllocStringLen(nullptr, 3);
  EXPECT_EQ(3u, SysStringLen(text));
  EXPECT_EQ(0, text[3]);
  SysFreeString(text);
  EXPECT_EQ(nullptr, SysAllocString(nullptr));
  SysFreeString(nullptr);
  EXPECT_EQ(0u, SysStringLen(nullptr));
}

VARIANT Text(const wchar_t* text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(text);
  return value;
}

VARIANT Integer(LONG integer) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = integer;
  return value;
}

VARIANT Real(double real, VARTYPE vt = VT_R8) {
  VARIANT value;
  VariantInit(&value);
  value.vt = vt;
  value.dblVal = real;
  return value;
}

VARIANT Boolean(bool truth) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BOOL;
  value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

// One text for any value, so that a table can name it.
std::string Shown(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
      return "empty";
    case VT_I2:
      return "I2 " + std::to_string(value.iVal);
    case VT_I4:
      return "I4 " + std::to_string(value.lVal);
    case VT_UI1:
      return "UI1 " + std::to_string(value.bVal);
    case VT_R8:
      return "R8 " + std::to_string(value.dblVal);
    case VT_DATE:
      return "DATE " + std::to_string(value.date);
    case VT_BOOL:
      return "BOOL " + std::to_string(value.boolVal);
    case VT_BSTR:
      return "BSTR " + Utf8(value.bstrVal);
    default:
      return "type " + std::to_string(value.vt);
  }
}

TEST(Variant, ChangesTypes) {
  VARIANT empty;
  VariantInit(&empty);
  VARIANT null = empty;
  null.vt = VT_NULL;
  const struct {
    VARIANT source;
    VARTYPE vt;
    HRESULT result;
    const char* shown;
    unsigned short flags = 0;
    bool on_wine = true;  // it makes an integer of what is no number, and drops zeros from Japanese dates
  } rows[] = {
      {Text(L" 1,234.5 "), VT_I4, S_OK, "I4 1234"},
      {Text(L"1.5e2"), VT_R8, S_OK, "R8 150.000000"},
      {Text(L"32768"), VT_I2, DISP_E_OVERFLOW, ""},
      {Text(L"&HFFFF"), VT_I2, S_OK, "I2 -1"},
      {Text(L"-1"), VT_UI1, DISP_E_OVERFLOW, ""},
      {Text(L"255.4"), VT_UI1, S_OK, "UI1 255"},
      {Text(L""), VT_I4, DISP_E_TYPEMISMATCH, ""},
      {Text(nullptr), VT_R8, DISP_E_TYPEMISMATCH, ""},
      {Text(L"tRuE"), VT_BOOL, S_OK, "BOOL -1"},
      {Text(L"#FALSE#"), VT_BOOL, S_OK, "BOOL 0"},
      {Text(L"0.1"), VT_BOOL, S_OK, "BOOL -1"},
      {Text(L"yes"), VT_BOOL, DISP_E_TYPEMISMATCH, ""},
      {Text(L"2024/3/5"), VT_DATE, S_OK, "DATE 45356.000000"},
      {Integer(65536), VT_I2, DISP_E_OVERFLOW, ""},
      {Integer(-7), VT_R8, S_OK, "R8 -7.000000"},
      {Integer(-7), VT_BSTR, S_OK, "BSTR -7"},
      {Integer(3), VT_BOOL, S_OK, "BOOL -1"},
      {Integer(3000000), VT_DATE, DISP_E_OVERFLOW, ""},
      {Real(2.5), VT_I4, S_OK, "I4 2"},
      {Real(-3.5), VT_I4, S_OK, "I4 -4"},
      {Real(2147483647.49), VT_I4, S_OK, "I4 2147483647"},
      {Real(2147483647.5), VT_I4, DISP_E_OVERFLOW, ""},
      {Real(std::nan("")), VT_I4, DISP_E_OVERFLOW, "", 0, false},
      {Real(0.1), VT_BSTR, S_OK, "BSTR 0.1"},
      {Real(1.0 / 3), VT_BSTR, S_OK, "BSTR 0.333333333333333"},
      {Real(1e20), VT_BSTR, S_OK, "BSTR 1E+20"},
      {Real(45356, VT_DATE), VT_BSTR, S_OK, "BSTR 2024/03/05", 0, false},
      {Real(45356.5, VT_DATE), VT_BSTR, S_OK, "BSTR 2024/03/05 12:00:00", 0, false},
      {Real(0.375, VT_DATE), VT_BSTR, S_OK, "BSTR 9:00:00"},
      {Boolean(true), VT_I4, S_OK, "I4 -1"},
      {Boolean(true), VT_UI1, S_OK, "UI1 255"},
      {Boolean(true), VT_BSTR, S_OK, "BSTR -1"},
      {Boolean(true), VT_BSTR, S_OK, "BSTR True", VARIANT_ALPHABOOL},
      {Boolean(false), VT_BSTR, S_OK, "BSTR False", VARIANT_ALPHABOOL},
      {empty, VT_I4, S_OK, "I4 0"},
      {empty, VT_BSTR, S_OK, "BSTR "},
      {null, VT_I4, DISP_E_TYPEMISMATCH, ""},
      {Integer(1), VT_UNKNOWN, DISP_E_TYPEMISMATCH, ""},
      {Integer(1), 0x123, DISP_E_BADVARTYPE, ""},
  };
  for (const auto& row : rows) {
    VARIANT target = Text(L"before");
    const HRESULT result = VariantChangeType(&target, &row.source, row.flags, row.vt);
    const std::string shown = SUCCEEDED(row.result) ? row.shown : std::string("BSTR before");
    EXPECT_TRUE(AsPublished(result == row.result && Shown(target) == shown, row.on_wine))
        << Shown(row.source) << " to " << row.vt << ": " << result << ", " << Shown(target);
    VariantClear(&target);
    VARIANT source = row.source;
    EXPECT_EQ(S_OK, VariantClear(&source));
  }
}

TEST(Variant, ChangesItselfAndThroughAReference) {
  VARIANT value = Text(L"12");
  EXPECT_EQ(S_OK, VariantChangeType(&value, &value, 0, VT_I4));
  EXPECT_EQ("I4 12", Shown(value));
  EXPECT_EQ(S_OK, VariantChangeType(&value, &value, 0, VT_BSTR));
  EXPECT_EQ("BSTR 12", Shown(value));
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = VT_BYREF | VT_BSTR;
  reference.pbstrVal = &value.bstrVal;
  VARIANT target;
  VariantInit(&target);
  EXPECT_EQ(S_OK, VariantChangeType(&target, &reference, 0, VT_R8));
  EXPECT_EQ("R8 12.000000", Shown(target));
  EXPECT_EQ(S_OK, VariantClear(&value));
  EXPECT_EQ("empty", Shown(value));
}

TEST(Variant, CopiesTheTextWhole) {
  VARIANT source;
  VariantInit(&source);
  source.vt = VT_BSTR;
  source.bstrVal = SysAllocStringLen(L"a\0b", 3);
  VARIANT target = Text(L"old");
  EXPECT_EQ(S_OK, VariantCopy(&target, &source));
  EXPECT_NE(source.bstrVal, target.bstrVal);
  EXPECT_EQ(3u, SysStringLen(target.bstrVal));
  EXPECT_EQ(L'b', target.bstrVal[2]);
  EXPECT_EQ(S_OK, VariantCopy(&target, &target));
  VariantClear(&source);
  VariantClear(&target);
}

}  // namespace
