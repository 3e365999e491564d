// Formatted wide text by the platform's rules. One pass over the format; each conversion is built in a small
// piece of its own and put out with its padding. Pure, but for the C library's floating-point conversion,
// which runs under a private "C" locale.

#include <algorithm>
#include <charconv>
#include <climits>
#include <clocale>
#include <cstdint>
#include <string>
#include <vector>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/crt.h"

namespace {

enum class Size { kNone, kChar, kShort, kLong, kLongLong, kMax, kPointer, kInt32, kWide };

struct Conversion {
  bool left = false, plus = false, space = false, alternate = false, zero = false;
  int width = 0;
  int precision = -1;
  Size size = Size::kNone;
  wchar_t letter = 0;
};

// The target: counts everything, keeps what fits.
class Output {
 public:
  Output(wchar_t* buffer, size_t capacity) : buffer_(buffer), capacity_(capacity) {}

  void Fill(wchar_t unit, size_t count) {
    if (length_ < capacity_) std::fill_n(buffer_ + length_, std::min(count, capacity_ - length_), unit);
    length_ += count;
  }

  template <typename Unit>
  void Append(const Unit* text, size_t count) {
    if (length_ < capacity_) std::copy_n(text, std::min(count, capacity_ - length_), buffer_ + length_);
    length_ += count;
  }

  [[nodiscard]] size_t length() const { return length_; }

 private:
  wchar_t* buffer_;
  size_t capacity_;
  size_t length_ = 0;
};

// A number in the format's text; false when it is larger than an int.
bool ReadNumber(const wchar_t*& at, int& number) {
  long long value = 0;
  for (; *at >= L'0' && *at <= L'9'; ++at) {
    value = value * 10 + (*at - L'0');
    if (value > INT_MAX) return false;
  }
  number = static_cast<int>(value);
  return true;
}

Size ReadSize(const wchar_t*& at) {
  const auto accept = [&at](const wchar_t* text) {
    const size_t length = wcslen(text);
    if (wcsncmp(at, text, length) != 0) return false;
    at += length;
    return true;
  };
  if (accept(L"hh")) return Size::kChar;
  if (accept(L"h")) return Size::kShort;
  if (accept(L"ll") || accept(L"I64")) return Size::kLongLong;
  if (accept(L"l")) return Size::kLong;
  if (accept(L"I32")) return Size::kInt32;
  if (accept(L"I") || accept(L"z") || accept(L"t")) return Size::kPointer;
  if (accept(L"j")) return Size::kMax;
  if (accept(L"w")) return Size::kWide;
  accept(L"L");  // a long double is a double on the platform; here the argument is told apart by the caller
  return Size::kNone;
}

class Formatter {
 public:
  Formatter(Output& output, va_list arguments) : output_(output) { va_copy(arguments_, arguments); }
  ~Formatter() { va_end(arguments_); }
  Formatter(const Formatter&) = delete;
  Formatter& operator=(const Formatter&) = delete;

  bool Run(const wchar_t* format) {
    while (*format != 0) {
      const wchar_t* start = format;
      while (*format != 0 && *format != L'%') ++format;
      output_.Append(start, static_cast<size_t>(format - start));
      if (*format == 0) break;
      ++format;
      if (*format == L'%') {
        output_.Fill(L'%', 1);
        ++format;
        continue;
      }
      Conversion conversion;
      if (!Read(format, conversion) || !Write(conversion)) return false;
    }
    return true;
  }

 private:
  bool Read(const wchar_t*& at, Conversion& conversion) {
    for (;; ++at) {
      if (*at == L'-') {
        conversion.left = true;
      } else if (*at == L'+') {
        conversion.plus = true;
      } else if (*at == L' ') {
        conversion.space = true;
      } else if (*at == L'#') {
        conversion.alternate = true;
      } else if (*at == L'0') {
        conversion.zero = true;
      } else {
        break;
      }
    }
    if (*at == L'*') {
      ++at;
      conversion.width = va_arg(arguments_, int);
      if (conversion.width < 0) {
        conversion.left = true;
        if (conversion.width == INT_MIN) return false;
        conversion.width = -conversion.width;
      }
    } else if (!ReadNumber(at, conversion.width)) {
      return false;
    }
    if (*at == L'.') {
      ++at;
      if (*at == L'*') {
        ++at;
        conversion.precision = std::max(va_arg(arguments_, int), -1);
      } else if (!ReadNumber(at, conversion.precision)) {
        return false;
      }
    }
    longDouble_ = *at == L'L';
    conversion.size = ReadSize(at);
    conversion.letter = *at;
    if (*at != 0) ++at;
    return conversion.letter != 0;
  }

  bool Write(const Conversion& conversion) {
    switch (conversion.letter) {
      case L'd':
      case L'i':
        WriteSigned(conversion, ReadSigned(conversion.size));
        return true;
      case L'u':
        WriteUnsigned(conversion, ReadUnsigned(conversion.size), 10, "");
        return true;
      case L'o':
        WriteUnsigned(conversion, ReadUnsigned(conversion.size), 8, "");
        return true;
      case L'x':
      case L'X': {
        const std::uint64_t value = ReadUnsigned(conversion.size);
        const char* prefix = conversion.letter == L'x' ? "0x" : "0X";
        WriteUnsigned(conversion, value, 16, conversion.alternate && value != 0 ? prefix : "");
        return true;
      }
      case L'p': {
        Conversion pointer = conversion;
        pointer.letter = L'X';
        pointer.precision = 2 * static_cast<int>(sizeof(void*));
        WriteUnsigned(pointer, reinterpret_cast<std::uintptr_t>(va_arg(arguments_, void*)), 16,
                      conversion.alternate ? "0X" : "");
        return true;
      }
      case L'e':
      case L'E':
      case L'f':
      case L'F':
      case L'g':
      case L'G':
      case L'a':
      case L'A':
        WriteFloating(conversion);
        return true;
      case L'c':
      case L'C':
        WriteCharacter(conversion);
        return true;
      case L's':
      case L'S':
        WriteText(conversion);
        return true;
      default:
        return false;
    }
  }

  std::int64_t ReadSigned(Size size) {
    switch (size) {
      case Size::kChar:
        return static_cast<signed char>(va_arg(arguments_, int));
      case Size::kShort:
        return static_cast<short>(va_arg(arguments_, int));
      case Size::kLong:
        return va_arg(arguments_, long);
      case Size::kLongLong:
        return va_arg(arguments_, long long);
      case Size::kMax:
        return va_arg(arguments_, std::intmax_t);
      case Size::kPointer:
        return va_arg(arguments_, std::ptrdiff_t);
      default:
        return va_arg(arguments_, int);
    }
  }

  std::uint64_t ReadUnsigned(Size size) {
    switch (size) {
      case Size::kChar:
        return static_cast<unsigned char>(va_arg(arguments_, int));
      case Size::kShort:
        return static_cast<unsigned short>(va_arg(arguments_, int));
      case Size::kLong:
        return va_arg(arguments_, unsigned long);
      case Size::kLongLong:
        return va_arg(arguments_, unsigned long long);
      case Size::kMax:
        return va_arg(arguments_, std::uintmax_t);
      case Size::kPointer:
        return va_arg(arguments_, size_t);
      default:
        return va_arg(arguments_, unsigned);
    }
  }

  // Narrow for the letter in its own meaning or a size prefix that says so.
  static bool IsWide(const Conversion& conversion) {
    if (conversion.size == Size::kShort || conversion.size == Size::kChar) return false;
    if (conversion.size == Size::kLong || conversion.size == Size::kWide) return true;
    return conversion.letter == L's' || conversion.letter == L'c';
  }

  static size_t Missing(const Conversion& conversion, size_t length) {
    const auto width = static_cast<size_t>(conversion.width);
    return width > length ? width - length : 0;
  }

  template <typename Unit>
  void WritePadded(const Conversion& conversion, const Unit* text, size_t length) {
    const size_t missing = Missing(conversion, length);
    if (!conversion.left) output_.Fill(conversion.zero ? L'0' : L' ', missing);
    output_.Append(text, length);
    if (conversion.left) output_.Fill(L' ', missing);
  }

  // Sign or base in front, zeros by precision or the flag, digits.
  void WriteDigits(const Conversion& conversion, const char* prefix, const char* digits, size_t count) {
    const size_t prefixLength = std::strlen(prefix);
    size_t zeros = 0;
    if (conversion.precision > 0 && static_cast<size_t>(conversion.precision) > count) {
      zeros = static_cast<size_t>(conversion.precision) - count;
    }
    size_t missing = Missing(conversion, prefixLength + zeros + count);
    if (conversion.zero && !conversion.left && conversion.precision < 0) {
      zeros = missing;
      missing = 0;
    }
    if (!conversion.left) output_.Fill(L' ', missing);
    output_.Append(prefix, prefixLength);
    output_.Fill(L'0', zeros);
    output_.Append(digits, count);
    if (conversion.left) output_.Fill(L' ', missing);
  }

  void WriteMagnitude(const Conversion& conversion, const char* prefix, std::uint64_t value, int base) {
    char digits[66];
    size_t count = 0;
    if (value != 0 || conversion.precision != 0) {
      count = static_cast<size_t>(std::to_chars(digits + 1, digits + sizeof digits, value, base).ptr -
                                  digits - 1);
    }
    char* first = digits + 1;
    if (conversion.letter == L'X') std::transform(first, first + count, first, ToUpperAscii);
    // "#" with octal asks for a leading zero, which counts as a digit.
    if (conversion.letter == L'o' && conversion.alternate && (count == 0 || *first != '0')) {
      *--first = '0';
      ++count;
    }
    WriteDigits(conversion, prefix, first, count);
  }

  static char ToUpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

  void WriteSigned(const Conversion& conversion, std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    const char* sign = value < 0 ? "-" : (conversion.plus ? "+" : (conversion.space ? " " : ""));
    WriteMagnitude(conversion, sign, value < 0 ? 0 - bits : bits, 10);
  }

  void WriteUnsigned(const Conversion& conversion, std::uint64_t value, int base, const char* prefix) {
    WriteMagnitude(conversion, prefix, value, base);
  }

  void WriteFloating(const Conversion& conversion) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const double value =
        longDouble_ ? static_cast<double>(va_arg(arguments_, long double)) : va_arg(arguments_, double);
    char format[12];
    char* at = format;
    *at++ = '%';
    if (conversion.alternate) *at++ = '#';
    if (conversion.plus) *at++ = '+';
    if (conversion.space) *at++ = ' ';
    if (conversion.precision >= 0) {
      *at++ = '.';
      *at++ = '*';
    }
    *at++ = static_cast<char>(conversion.letter);
    *at = 0;
    const bool finite = value - value == 0;
    const auto print = [&](char* buffer, size_t capacity) {
      return conversion.precision >= 0 ? snprintf(buffer, capacity, format, conversion.precision, value)
                                       : snprintf(buffer, capacity, format, value);
    };
    const locale_t previous = uselocale(cLocale);
    char small[128];
    std::string large;
    const char* text = small;
    const int length = print(small, sizeof small);
    if (length >= static_cast<int>(sizeof small)) {
      large.resize(static_cast<size_t>(length) + 1);
      print(large.data(), large.size());
      text = large.c_str();
    }
    uselocale(previous);
    if (length < 0) return;
    // Sign and "0x" stand before the zeros that fill the width.
    char prefix[4] = "";
    size_t prefixLength = 0;
    if (*text == '-' || *text == '+' || *text == ' ') prefix[prefixLength++] = text[0];
    if (finite && (conversion.letter == L'a' || conversion.letter == L'A')) {
      prefix[prefixLength] = text[prefixLength];
      prefix[prefixLength + 1] = text[prefixLength + 1];
      prefixLength += 2;
    }
    prefix[prefixLength] = 0;
    Conversion padding = conversion;
    padding.precision = -1;
    if (!finite) padding.zero = false;
    WriteDigits(padding, prefix, text + prefixLength, static_cast<size_t>(length) - prefixLength);
  }

  void WriteCharacter(const Conversion& conversion) {
    const int argument = va_arg(arguments_, int);
    wchar_t unit = static_cast<wchar_t>(argument);
    if (!IsWide(conversion)) {
      const char narrow = static_cast<char>(argument);
      MultiByteToWideChar(CP_ACP, 0, &narrow, 1, &unit, 1);
    }
    WritePadded(conversion, &unit, 1);
  }

  void WriteText(const Conversion& conversion) {
    const void* argument = va_arg(arguments_, const void*);
    const size_t limit = conversion.precision < 0 ? SIZE_MAX : static_cast<size_t>(conversion.precision);
    if (argument == nullptr || IsWide(conversion)) {
      const auto* text = argument == nullptr ? L"(null)" : static_cast<const wchar_t*>(argument);
      WritePadded(conversion, text, limit == SIZE_MAX ? wcslen(text) : wcsnlen(text, limit));
      return;
    }
    // The precision counts characters; each takes one byte or two, so no more bytes than that may be looked
    // at.
    const auto* text = static_cast<const char*>(argument);
    const size_t bytes =
        limit == SIZE_MAX ? std::strlen(text) : strnlen(text, limit > SIZE_MAX / 2 ? limit : 2 * limit);
    if (bytes > INT_MAX) return;
    std::vector<wchar_t> wide(bytes);
    const int units = bytes == 0 ? 0
                                 : MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(bytes), wide.data(),
                                                       static_cast<int>(bytes));
    WritePadded(conversion, wide.data(), std::min(static_cast<size_t>(units), limit));
  }

  Output& output_;
  va_list arguments_;
  bool longDouble_ = false;
};

// The length of the whole text, or -1.
long long Format(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list arguments) {
  if (format == nullptr) {
    errno = EINVAL;
    return -1;
  }
  Output output(buffer, capacity);
  Formatter formatter(output, arguments);
  if (!formatter.Run(format) || output.length() > INT_MAX) {
    errno = EINVAL;
    return -1;
  }
  return static_cast<long long>(output.length());
}

}  // namespace

int _vsnwprintf(wchar_t* buffer, size_t capacity, const wchar_t* format, va_list arguments) {
  if (buffer == nullptr && capacity != 0) {
    errno = EINVAL;
    return -1;
  }
  const long long length = Format(buffer, capacity, format, arguments);
  if (length < 0) {
    if (capacity != 0) buffer[0] = 0;
    return -1;
  }
  if (buffer == nullptr) return static_cast<int>(length);
  if (static_cast<size_t>(length) > capacity) return -1;
  if (static_cast<size_t>(length) < capacity) buffer[length] = 0;
  return static_cast<int>(length);
}

int _vscwprintf(const wchar_t* format, va_list arguments) {
  return _vsnwprintf(nullptr, 0, format, arguments);
}
