// The text form of numbers: grouping, marks for negatives, fields.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <vector>

#include "qorgen/afx/memory.h"
#include "qorgen/numeric/internal/number_parse.h"
#include "qorgen/numeric/internal/number_text.h"
#include "qorgen/numeric/num_util.h"

using qorgen::AllocateText;
using qorgen::numeric::DecimalText;
using qorgen::numeric::IntegerText;
using qorgen::numeric::IsKeptCharacter;
using qorgen::numeric::IsNumberCharacter;
using qorgen::numeric::NumberText;
using qorgen::numeric::TrimmedLength;
using qorgen::numeric::Widened;

namespace {

constexpr int kWidestField = 1'000'000;

struct Field {
  unsigned int flags;
  long long width;
  long long decimals;
  wchar_t pad;

  bool Has(unsigned int flag) const { return (flags & flag) != 0; }
};

Field MakeField(unsigned int flags, int width, int decimals, wchar_t pad) {
  return {flags, std::clamp(width, -kWidestField, kWidestField),
          std::clamp(decimals, -kWidestField, kWidestField), pad};
}

// What the layout has to know of the text.
struct Shape {
  long long integer_length = 0;  // characters before the first point
  long long fraction_length = 0;
  bool has_point = false;
  bool has_minus = false;
  bool has_value = false;  // a digit from 1 to 9
};

template <class Char>
Shape Measure(std::span<const Char> text) {
  Shape shape;
  std::size_t point = text.size();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const Char c = text[i];
    if (c == '.' && point == text.size()) point = i;
    shape.has_minus |= c == '-';
    shape.has_value |= c >= '1' && c <= '9';
  }
  shape.has_point = point < text.size();
  shape.integer_length = static_cast<long long>(point);
  if (shape.has_point) shape.fraction_length = static_cast<long long>(text.size() - point - 1);
  return shape;
}

wchar_t NegativeMark(const Field& field) {
  if (field.Has(NUMFORMAT_WHITETRIANGLE)) return L'\u25B3';
  if (field.Has(NUMFORMAT_BLACKTRIANGLE)) return L'\u25B2';
  return field.Has(NUMFORMAT_NOMINUS) ? L'\0' : L'-';
}

// The digits with their separators. `remaining` counts the integer digits down and goes on below zero behind
// the point.
template <class Char>
wchar_t* CopyDigits(std::span<const Char> text, long long digits, bool group, bool add_point, wchar_t* out) {
  if (!group && !add_point) return std::copy(text.begin(), text.end(), out);
  long long remaining = digits;
  for (const Char c : text) {
    *out++ = static_cast<wchar_t>(c);
    if (group && remaining >= 3 && remaining % 3 == 1) *out++ = L',';
    if (--remaining == 0 && add_point) *out++ = L'.';
  }
  return out;
}

// Lays out a text of number characters only.
template <class Char>
wchar_t* LayOut(std::span<const Char> text, const Field& field, int* length) {
  const Shape shape = Measure(text);
  const bool fixed = field.Has(NUMFORMAT_FIXED);
  const long long digits = shape.integer_length - (shape.has_minus ? 1 : 0);
  const long long groups = field.Has(NUMFORMAT_GROUP) && digits > 0 ? (digits - 1) / 3 : 0;
  // A field that has decimals counts two integer places; see the header.
  const long long integer_width = fixed && field.decimals > 0 && field.width > 0 ? 2 : field.width;
  const long long left = fixed ? std::max(integer_width - digits - field.decimals, 0LL) : 0;
  const long long right = fixed ? std::max(field.decimals - shape.fraction_length, 0LL) : 0;
  const bool blank = field.Has(NUMFORMAT_BLANKZERO) && !shape.has_value;
  const auto body = text.subspan(shape.has_minus ? 1 : 0);  // the minus sign is taken to lead

  // Two parentheses, the mark, an added point and the terminator come on top of digits, separators and
  // places.
  constexpr long long kMarks = 5;
  const long long room = kMarks + left + static_cast<long long>(body.size()) + groups + right;
  wchar_t* const result = AllocateText(static_cast<std::size_t>(room));
  wchar_t* out = result;
  if (!blank && field.Has(NUMFORMAT_OPEN)) *out++ = L'(';
  if (shape.has_minus) {
    if (const wchar_t mark = NegativeMark(field); mark != 0) *out++ = mark;
  }
  out = std::fill_n(out, left, field.pad);
  // A blank text ends where its first digit would stand; the padded places before it stay.
  if (!blank || body.empty()) {
    const bool add_point = fixed && field.decimals >= 1 && !shape.has_point;
    out = CopyDigits(body, digits, groups > 0, add_point, out);
    out = std::fill_n(out, right, field.pad);
    if (!blank && field.Has(NUMFORMAT_CLOSE)) *out++ = L')';
  }
  *out = L'\0';
  if (field.pad == 0) out = std::find(result, out, L'\0');
  if (length != nullptr) *length = static_cast<int>(out - result);
  return result;
}

wchar_t* Digits3(std::uint32_t group, wchar_t* end) {
  *--end = static_cast<wchar_t>(L'0' + group % 10);
  *--end = static_cast<wchar_t>(L'0' + group / 10 % 10);
  *--end = static_cast<wchar_t>(L'0' + group / 100);
  return end;
}

// What LayOut makes of an integer of 32 bits, with or without a sign, under a grouping without a field:
// amounts on screen and paper are all of this kind. Written from the end, a group at a time.
wchar_t* FormatGrouped(long long value, const Field& field, int* length) {
  wchar_t buffer[20];  // thirteen digits and commas, two parentheses, the mark, the terminator
  wchar_t* const end = std::end(buffer);
  wchar_t* at = end;
  *--at = L'\0';
  if (field.Has(NUMFORMAT_CLOSE)) *--at = L')';
  auto rest = static_cast<std::uint32_t>(value < 0 ? -value : value);
  while (rest >= 1000) {
    at = Digits3(rest % 1000, at);
    *--at = L',';
    rest /= 1000;
  }
  do {
    *--at = static_cast<wchar_t>(L'0' + rest % 10);
    rest /= 10;
  } while (rest > 0);
  if (value < 0) {
    if (const wchar_t mark = NegativeMark(field); mark != 0) *--at = mark;
  }
  if (field.Has(NUMFORMAT_OPEN)) *--at = L'(';
  const auto units = static_cast<std::size_t>(end - at);
  if (length != nullptr) *length = static_cast<int>(units - 1);
  wchar_t* const result = AllocateText(units);
  std::copy(at, end, result);
  return result;
}

wchar_t* FormatInteger(long long value, const Field& field, int* length) {
  const bool blank = value == 0 && field.Has(NUMFORMAT_BLANKZERO);
  if (field.Has(NUMFORMAT_GROUP) && !field.Has(NUMFORMAT_FIXED) && !blank) {
    return FormatGrouped(value, field, length);
  }
  const NumberText text = IntegerText(value);
  if (field.flags == 0) return Widened(text.characters, text.length, length);
  return LayOut(text.View(), field, length);
}

}  // namespace

wchar_t* CQorNumUtil::FormatString(const wchar_t* text, unsigned int flags, int* length, int width,
                                   int decimals, wchar_t pad) {
  if (text == nullptr || flags == 0) return nullptr;
  const Field field = MakeField(flags, width, decimals, pad);
  if (*text == 0) {
    if (!field.Has(NUMFORMAT_FIXED)) return nullptr;
    text = L"0";
  }
  std::size_t size = 0;
  bool foreign = false;
  for (; text[size] != 0; ++size) foreign |= !IsNumberCharacter(text[size]);
  const std::span<const wchar_t> whole(text, size);
  if (!foreign) return LayOut(whole, field, length);
  std::vector<char> cleaned;
  cleaned.reserve(size);
  for (const wchar_t c : whole) {
    if (IsKeptCharacter(c)) cleaned.push_back(static_cast<char>(c));
  }
  return LayOut(std::span<const char>(cleaned), field, length);
}

wchar_t* CQorNumUtil::FormatString(short value, unsigned int flags, int* length, int width, wchar_t pad) {
  return FormatInteger(value, MakeField(flags, width, 0, pad), length);
}

wchar_t* CQorNumUtil::FormatString(unsigned short value, unsigned int flags, int* length, int width,
                                   wchar_t pad) {
  return FormatInteger(value, MakeField(flags, width, 0, pad), length);
}

wchar_t* CQorNumUtil::FormatString(int value, unsigned int flags, int* length, int width, wchar_t pad) {
  return FormatInteger(value, MakeField(flags, width, 0, pad), length);
}

wchar_t* CQorNumUtil::FormatString(long value, unsigned int flags, int* length, int width, wchar_t pad) {
  return FormatInteger(static_cast<std::int32_t>(value), MakeField(flags, width, 0, pad), length);
}

wchar_t* CQorNumUtil::FormatString(unsigned int value, unsigned int flags, int* length, int width,
                                   wchar_t pad) {
  return FormatInteger(value, MakeField(flags, width, 0, pad), length);
}

wchar_t* CQorNumUtil::FormatString(unsigned long value, unsigned int flags, int* length, int width,
                                   wchar_t pad) {
  return FormatInteger(static_cast<std::uint32_t>(value), MakeField(flags, width, 0, pad), length);
}

wchar_t* CQorNumUtil::FormatString(double value, unsigned int flags, int* length, int decimals, int mode,
                                   int width, wchar_t pad) {
  const Field field = MakeField(flags, width, decimals, pad);
  NumberText text = DecimalText(value, decimals, mode);
  text.length = TrimmedLength(text.View(), !field.Has(NUMFORMAT_FIXED));
  if (flags == 0) return Widened(text.characters, text.length, length);
  // "inf" and "nan" hold nothing that a formatted number may show, and leave an empty text.
  const auto kept = std::remove_if(text.characters, text.characters + text.length,
                                   [](char c) { return !IsKeptCharacter(static_cast<wchar_t>(c)); });
  text.length = static_cast<int>(kept - text.characters);
  return LayOut(text.View(), field, length);
}
