#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "qorgen/platform/automation.h"
#include "qorgen/platform/linux/automation/number_text.h"
#include "qorgen/platform/linux/automation/width.h"

using namespace qorgen::platform;

namespace {

// What a source holds, one step before the target type is known.
struct Scalar {
  enum Kind { kInteger, kReal, kDate, kBoolean, kText, kNothing } kind;
  std::int64_t integer;
  double real;
  const wchar_t* text;
};

bool IsHeld(VARTYPE vt) {
  switch (vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_ERROR:
    case VT_BOOL:
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
      return true;
    default:
      // What a reference points at belongs to someone else, whatever its type is.
      return (vt & VT_BYREF) != 0;
  }
}

HRESULT ReadScalar(const VARIANT& source, Scalar* scalar) {
  const VARIANT* value = &source;
  if (value->vt == (VT_BYREF | VT_VARIANT)) {
    value = value->pvarVal;
    if (value == nullptr) return E_INVALIDARG;
    if (value->vt == (VT_BYREF | VT_VARIANT)) return E_INVALIDARG;
  }
  const bool indirect = (value->vt & VT_BYREF) != 0;
  if (indirect && value->byref == nullptr) return E_INVALIDARG;
  *scalar = Scalar{Scalar::kInteger, 0, 0, nullptr};
  switch (value->vt & ~VT_BYREF) {
    case VT_EMPTY:
      scalar->kind = Scalar::kNothing;
      return indirect ? DISP_E_BADVARTYPE : S_OK;
    case VT_I2:
      scalar->integer = indirect ? *value->piVal : value->iVal;
      return S_OK;
    case VT_I4:
    case VT_INT:
      scalar->integer = indirect ? *value->plVal : value->lVal;
      return S_OK;
    case VT_UI1:
      scalar->integer = indirect ? *value->pbVal : value->bVal;
      return S_OK;
    case VT_R8:
      scalar->kind = Scalar::kReal;
      scalar->real = indirect ? *value->pdblVal : value->dblVal;
      return S_OK;
    case VT_DATE:
      scalar->kind = Scalar::kDate;
      scalar->real = indirect ? *value->pdate : value->date;
      return S_OK;
    case VT_BOOL:
      scalar->kind = Scalar::kBoolean;
      scalar->integer = (indirect ? *value->pboolVal : value->boolVal) != 0 ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    case VT_BSTR:
      scalar->kind = Scalar::kText;
      scalar->text = indirect ? *value->pbstrVal : value->bstrVal;
      if (scalar->text == nullptr) scalar->text = L"";
      return S_OK;
    default:
      return IsHeld(static_cast<VARTYPE>(value->vt & ~VT_BYREF)) ? DISP_E_TYPEMISMATCH : DISP_E_BADVARTYPE;
  }
}

HRESULT RoundReal(double real, std::int64_t low, std::int64_t high, std::int64_t* value) {
  // Bounds that the comparison with a double holds for exactly; what is no number fails too.
  if (!(real > static_cast<double>(low) - 1 && real < static_cast<double>(high) + 1)) return DISP_E_OVERFLOW;
  const double floor = std::floor(real);
  const double rest = real - floor;
  std::int64_t rounded = static_cast<std::int64_t>(floor);
  if (rest > 0.5 || (rest == 0.5 && rounded % 2 != 0)) ++rounded;
  if (rounded < low || rounded > high) return DISP_E_OVERFLOW;
  *value = rounded;
  return S_OK;
}

HRESULT ToInteger(const Scalar& scalar, int width, std::int64_t low, std::int64_t high, std::int64_t* value) {
  if (scalar.kind == Scalar::kReal || scalar.kind == Scalar::kDate)
    return RoundReal(scalar.real, low, high, value);
  if (scalar.kind == Scalar::kText) {
    if (width == 32) {
      LONG plain = 0;
      const HRESULT result = VarI4FromStr(scalar.text, LOCALE_USER_DEFAULT, 0, &plain);
      if (SUCCEEDED(result)) *value = plain;
      return result;
    }
    NumberText number;
    if (!ReadNumber(scalar.text, &number)) return DISP_E_TYPEMISMATCH;
    return RoundNumber(number, width, low, high, value);
  }
  // True is every bit set, in a type without sign too.
  const std::int64_t integer =
      scalar.kind == Scalar::kBoolean && low == 0 ? scalar.integer & high : scalar.integer;
  if (integer < low || integer > high) return DISP_E_OVERFLOW;
  *value = integer;
  return S_OK;
}

HRESULT ToReal(const Scalar& scalar, double* value) {
  if (scalar.kind == Scalar::kText) return VarR8FromStr(scalar.text, LOCALE_USER_DEFAULT, 0, value);
  const bool real = scalar.kind == Scalar::kReal || scalar.kind == Scalar::kDate;
  *value = real ? scalar.real : static_cast<double>(scalar.integer);
  return S_OK;
}

HRESULT ToDate(const Scalar& scalar, double* value) {
  if (scalar.kind == Scalar::kText) return VarDateFromStr(scalar.text, LOCALE_USER_DEFAULT, 0, value);
  double date = 0;
  ToReal(scalar, &date);
  SYSTEMTIME parts{};
  if (VariantTimeToSystemTime(date, &parts) == 0) return DISP_E_OVERFLOW;
  *value = date;
  return S_OK;
}

bool EqualsNoCase(const wchar_t* text, const char* lower) {
  for (; *lower != 0; ++text, ++lower) {
    const wchar_t unit = *text >= L'A' && *text <= L'Z' ? static_cast<wchar_t>(*text + 32) : *text;
    if (unit != static_cast<wchar_t>(*lower)) return false;
  }
  return *text == 0;
}

HRESULT ToBoolean(const Scalar& scalar, VARIANT_BOOL* value) {
  double number = 0;
  if (scalar.kind == Scalar::kText &&
      (EqualsNoCase(scalar.text, "true") || EqualsNoCase(scalar.text, "#true#"))) {
    number = 1;
  } else if (scalar.kind == Scalar::kText &&
             (EqualsNoCase(scalar.text, "false") || EqualsNoCase(scalar.text, "#false#"))) {
    number = 0;
  } else {
    const HRESULT result = ToReal(scalar, &number);
    if (FAILED(result)) return result;
  }
  *value = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

HRESULT DateToAscii(double date, char* text, std::size_t capacity) {
  SYSTEMTIME parts{};
  if (VariantTimeToSystemTime(date, &parts) == 0) return DISP_E_OVERFLOW;
  const bool midnight = parts.wHour == 0 && parts.wMinute == 0 && parts.wSecond == 0;
  const bool day_zero = parts.wYear == 1899 && parts.wMonth == 12 && parts.wDay == 30;
  int length = 0;
  if (!day_zero || midnight) {
    length = std::snprintf(text, capacity, "%04d/%02d/%02d%s", parts.wYear, parts.wMonth, parts.wDay,
                           midnight ? "" : " ");
  }
  if (!midnight) {
    std::snprintf(text + length, capacity - static_cast<std::size_t>(length), "%d:%02d:%02d", parts.wHour,
                  parts.wMinute, parts.wSecond);
  }
  return S_OK;
}

HRESULT ToText(const Scalar& scalar, unsigned short flags, BSTR* value) {
  char ascii[64] = "";
  switch (scalar.kind) {
    case Scalar::kText:
    case Scalar::kNothing:
      break;
    case Scalar::kInteger:
      std::snprintf(ascii, sizeof ascii, "%lld", static_cast<long long>(scalar.integer));
      break;
    case Scalar::kBoolean:
      if ((flags & VARIANT_ALPHABOOL) != 0) {
        std::strcpy(ascii, scalar.integer != 0 ? "True" : "False");
      } else {
        std::strcpy(ascii, scalar.integer != 0 ? "-1" : "0");
      }
      break;
    case Scalar::kDate: {
      const HRESULT result = DateToAscii(scalar.real, ascii, sizeof ascii);
      if (FAILED(result)) return result;
      break;
    }
    case Scalar::kReal: {
      if (!std::isfinite(scalar.real)) return DISP_E_OVERFLOW;
      char* const end =
          std::to_chars(ascii, ascii + sizeof ascii, scalar.real + 0.0, std::chars_format::general, 15).ptr;
      *end = 0;
      if (char* exponent = std::strchr(ascii, 'e')) *exponent = 'E';
      break;
    }
  }
  wchar_t wide[64];
  const wchar_t* from = scalar.text;
  if (scalar.kind != Scalar::kText) {
    for (std::size_t i = 0; i < sizeof ascii; ++i) wide[i] = static_cast<wchar_t>(ascii[i]);
    from = wide;
  }
  *value = SysAllocString(from);
  return *value != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT Convert(const Scalar& scalar, unsigned short flags, VARTYPE vt, VARIANT* result) {
  VariantInit(result);
  std::int64_t integer = 0;
  HRESULT code = S_OK;
  switch (vt) {
    case VT_I2:
      code = ToInteger(scalar, 16, INT16_MIN, INT16_MAX, &integer);
      result->iVal = static_cast<short>(integer);
      break;
    case VT_I4:
    case VT_INT:
      code = ToInteger(scalar, 32, INT32_MIN, INT32_MAX, &integer);
      result->lVal = static_cast<LONG>(integer);
      break;
    case VT_UI1:
      code = ToInteger(scalar, 8, 0, 255, &integer);
      result->bVal = static_cast<BYTE>(integer);
      break;
    case VT_R8:
      code = ToReal(scalar, &result->dblVal);
      break;
    case VT_DATE:
      code = ToDate(scalar, &result->date);
      break;
    case VT_BOOL:
      code = ToBoolean(scalar, &result->boolVal);
      break;
    case VT_BSTR:
      code = ToText(scalar, flags, &result->bstrVal);
      break;
    default:
      return DISP_E_TYPEMISMATCH;
  }
  result->vt = vt;
  return code;
}

}  // namespace

void VariantInit(VARIANT* value) {
  std::memset(value, 0, sizeof *value);
}

HRESULT VariantClear(VARIANT* value) {
  if (value == nullptr) return E_INVALIDARG;
  if (!IsHeld(value->vt)) return DISP_E_BADVARTYPE;
  if (value->vt == VT_BSTR) SysFreeString(value->bstrVal);
  VariantInit(value);
  return S_OK;
}

HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
  if (target == nullptr || source == nullptr) return E_INVALIDARG;
  if (target == source) return S_OK;
  if (!IsHeld(source->vt)) return DISP_E_BADVARTYPE;
  const HRESULT cleared = VariantClear(target);
  if (FAILED(cleared)) return cleared;
  if (source->vt == VT_BSTR && source->bstrVal != nullptr) {
    BSTR text = SysAllocStringByteLen(reinterpret_cast<const char*>(source->bstrVal),
                                      SysStringByteLen(source->bstrVal));
    if (text == nullptr) return E_OUTOFMEMORY;
    target->bstrVal = text;
    target->vt = VT_BSTR;
  } else {
    *target = *source;
  }
  return S_OK;
}

HRESULT VariantChangeTypeEx(VARIANT* target, const VARIANT* source, LCID, unsigned short flags, VARTYPE vt) {
  if (target == nullptr || source == nullptr) return E_INVALIDARG;
  if ((vt & ~VT_TYPEMASK) != 0 || vt > VT_UINT || vt == 15) return DISP_E_BADVARTYPE;
  if (!IsHeld(target->vt)) return DISP_E_BADVARTYPE;
  if (source->vt == vt && IsHeld(vt)) return VariantCopy(target, source);
  Scalar scalar{};
  HRESULT code = ReadScalar(*source, &scalar);
  if (FAILED(code)) return code;
  VARIANT result;
  code = Convert(scalar, flags, vt, &result);
  if (FAILED(code)) return code;
  VariantClear(target);
  *target = result;
  return S_OK;
}

HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, unsigned short flags, VARTYPE vt) {
  return VariantChangeTypeEx(target, source, LOCALE_USER_DEFAULT, flags, vt);
}
