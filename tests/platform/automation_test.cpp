#include "qorgen/platform/automation.h"

#include <cmath>
#include <cstring>

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

// A text, its double, and the integer next to that, a half going to the even one.
using NumberRow = std::tuple<const wchar_t*, LONG, double>;

void ExpectNumber(const NumberRow& row, bool on_wine) {
  const auto& [text, expected_integer, expected_real] = row;
  LONG integer = 77;
  double real = 77;
  const HRESULT of_integer = VarI4FromStr(text, LOCALE_USER_DEFAULT, 0, &integer);
  const HRESULT of_real = VarR8FromStr(text, LOCALE_USER_DEFAULT, 0, &real);
  EXPECT_TRUE(AsPublished(of_integer == S_OK && integer == expected_integer, on_wine))
      << Utf8(text) << ": " << integer;
  EXPECT_TRUE(AsPublished(of_real == S_OK && real == expected_real, on_wine)) << Utf8(text) << ": " << real;
}

TEST(NumberFromText, WhatIsANumber) {
  const NumberRow rows[] = {
      {L"0", 0, 0},
      {L"-0", 0, 0},
      {L" 12\t", 12, 12},
      {L" - 12 ", -12, -12},
      {L"12-", -12, -12},
      {L"12 +", 12, 12},
      {L" ( 12 ) ", -12, -12},
      {L"000000000000000000012", 12, 12},
      {L"1.", 1, 1},
      {L"1e3", 1000, 1000},
      {L"1E+3", 1000, 1000},
      {L"5000e-3", 5, 5},
      {L".00012e5", 12, 12},
      {L"1e-400", 0, 0},
      {L"0e999999999999999999999", 0, 0},
      {L"1,234.5", 1234, 1234.5},
      {L"1,2,3", 123, 123},
      {L"&H1F", 31, 31},
      {L"&h7fffffff", 2147483647, 2147483647},
      {L"&H000000000000000000001", 1, 1},
      {L"&O17", 15, 15},
      {L"2147483647.4", 2147483647, 2147483647.4},
      {L"-2147483648.5", INT32_MIN, -2147483648.5},
      {L"-123.456", -123, -123.456},
      {L"0.1", 0, 0.1},
      {L"0.000000000000001", 0, 1e-15},
      {L"0.5", 0, 0.5},
      {L"1.5", 2, 1.5},
      {L"2.5", 2, 2.5},
      {L"-1.5", -2, -1.5},
      {L"-2.5", -2, -2.5},
      {L"25e-1", 2, 2.5},
      {L"2.50000000000000000000000000000001", 3, 2.5},
  };
  for (const NumberRow& row : rows) ExpectNumber(row, true);
  // Wine knows neither d for an exponent nor full-width characters, and has another yen sign.
  const NumberRow published[] = {
      {L"1d2", 100, 100}, {L"\\1,000", 1000, 1000}, {L"-\\5", -5, -5},
      {L"\\-5", -5, -5},  {L"　７　", 7, 7},        {L"－１，２００．０", -1200, -1200},
  };
  for (const NumberRow& row : published) ExpectNumber(row, false);
}

TEST(NumberFromText, WhatIsNone) {
  const wchar_t* const texts[] = {nullptr, L"",      L"   ",  L"-",     L".",   L"-.",   L",5",
                                  L"\\",   L"12abc", L"1 2",  L"1.2.3", L"--1", L"-1-",  L"(1",
                                  L"1)",   L"()",    L"1e",   L"1e+",   L"e5",  L"0x10", L"&H",
                                  L"&HG",  L"&O8",   L"true", L"一二三"};
  for (const wchar_t* text : texts) {
    LONG integer = 77;
    double real = 77;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, VarI4FromStr(text, LOCALE_USER_DEFAULT, 0, &integer)) << Utf8(text);
    EXPECT_EQ(DISP_E_TYPEMISMATCH, VarR8FromStr(text, LOCALE_USER_DEFAULT, 0, &real)) << Utf8(text);
    EXPECT_EQ(77, integer) << Utf8(text);
    EXPECT_EQ(77, real) << Utf8(text);
  }
}

TEST(NumberFromText, WhatDoesNotFit) {
  LONG integer = 9;
  for (const wchar_t* text :
       {L"2147483647.5", L"-2147483648.51", L"99999999999999999999999999", L"&H100000000", L"1e400"}) {
    EXPECT_EQ(DISP_E_OVERFLOW, VarI4FromStr(text, LOCALE_USER_DEFAULT, 0, &integer)) << Utf8(text);
    EXPECT_EQ(9, integer);
  }
  double real = 9;
  for (const wchar_t* text : {L"1e400", L"1.8e308"}) {
    EXPECT_EQ(DISP_E_OVERFLOW, VarR8FromStr(text, LOCALE_USER_DEFAULT, 0, &real)) << Utf8(text);
  }
  // Wine lets a huge exponent pass.
  constexpr const wchar_t* kHuge = L"1e999999999999999999999";
  EXPECT_TRUE(HoldsExceptOnWine(VarI4FromStr(kHuge, LOCALE_USER_DEFAULT, 0, &integer) == DISP_E_OVERFLOW &&
                                VarR8FromStr(kHuge, LOCALE_USER_DEFAULT, 0, &real) == DISP_E_OVERFLOW));
  // Hexadecimal digits are those of the integer, sign and all.
  EXPECT_EQ(S_OK, VarI4FromStr(L"&HFFFFFFFE", LOCALE_USER_DEFAULT, 0, &integer));
  EXPECT_EQ(-2, integer);
}

TEST(Bstr, CarriesItsLength) {
  const struct {
    BSTR text;
    UINT bytes;
    const char* content;  // with the terminator
  } rows[] = {
      {SysAllocString(L"ab"), 4, "a\0b\0\0"},
      {SysAllocStringLen(L"a\0b", 3), 6, "a\0\0\0b\0\0"},
      {SysAllocStringByteLen("abc", 3), 3, "abc\0"},
      {SysAllocStringLen(nullptr, 0), 0, "\0"},
  };
  for (const auto& [text, bytes, content] : rows) {
    EXPECT_EQ(bytes, SysStringByteLen(text));
    EXPECT_EQ(bytes / 2, SysStringLen(text));
    EXPECT_EQ(0, std::memcmp(text, content, bytes + 2)) << bytes;
    SysFreeString(text);
  }
  EXPECT_EQ(nullptr, SysAllocString(nullptr));
  SysFreeString(nullptr);
  EXPECT_EQ(0u, SysStringLen(nullptr));
}

VARIANT Real(double real, VARTYPE vt = VT_R8) {
  VARIANT value;
  VariantInit(&value);
  value.vt = vt;
  value.dblVal = real;
  return value;
}

VARIANT Integer(LONG integer) {
  VARIANT value = Real(0, VT_I4);
  value.lVal = integer;
  return value;
}

VARIANT Boolean(VARIANT_BOOL truth) {
  VARIANT value = Real(0, VT_BOOL);
  value.boolVal = truth;
  return value;
}

VARIANT Text(const wchar_t* text) {
  VARIANT value = Real(0, VT_BSTR);
  value.bstrVal = SysAllocString(text);
  return value;
}

// One text for any value, so that a table can name it.
std::string Shown(const VARIANT& value) {
  switch (value.vt) {
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
      {Boolean(VARIANT_TRUE), VT_I4, S_OK, "I4 -1"},
      {Boolean(VARIANT_TRUE), VT_UI1, S_OK, "UI1 255"},
      {Boolean(VARIANT_TRUE), VT_BSTR, S_OK, "BSTR -1"},
      {Boolean(VARIANT_TRUE), VT_BSTR, S_OK, "BSTR True", VARIANT_ALPHABOOL},
      {Boolean(VARIANT_FALSE), VT_BSTR, S_OK, "BSTR False", VARIANT_ALPHABOOL},
      {Real(0, VT_EMPTY), VT_I4, S_OK, "I4 0"},
      {Real(0, VT_EMPTY), VT_BSTR, S_OK, "BSTR "},
      {Real(0, VT_NULL), VT_I4, DISP_E_TYPEMISMATCH, ""},
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
  VARIANT reference = Real(0, VT_BYREF | VT_BSTR);
  reference.pbstrVal = &value.bstrVal;
  VARIANT target = Real(0, VT_EMPTY);
  EXPECT_EQ(S_OK, VariantChangeType(&target, &reference, 0, VT_R8));
  EXPECT_EQ("R8 12.000000", Shown(target));
  EXPECT_EQ(S_OK, VariantClear(&value));
  EXPECT_EQ(VT_EMPTY, value.vt);
}

TEST(Variant, CopiesTheTextWhole) {
  VARIANT source = Real(0, VT_BSTR);
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
