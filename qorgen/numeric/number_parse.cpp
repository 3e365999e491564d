// Text to numbers.

#include "qorgen/numeric/internal/number_parse.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>

#include "qorgen/afx/memory.h"
#include "qorgen/numeric/num_util.h"

using qorgen::numeric::IsKeptCharacter;
using qorgen::numeric::IsNumberCharacter;

namespace {

// Walks the characters that a conversion sees: the text as it stands while all of it is number characters,
// otherwise only those that cleaning keeps. Saves making the cleaned copy.
class NumberReader {
 public:
  explicit NumberReader(const wchar_t* text) : next_(text) {
    const wchar_t* c = text;
    while (*c != 0 && IsNumberCharacter(*c)) ++c;
    cleaning_ = *c != 0;
    SkipRemoved();
    while (*next_ == L' ') ++next_;  // conversions skip leading white space
  }

  wchar_t Peek() const { return *next_; }

  void Advance() {
    ++next_;
    SkipRemoved();
  }

  bool Take(wchar_t wanted) {
    if (*next_ != wanted) return false;
    Advance();
    return true;
  }

 private:
  void SkipRemoved() {
    if (!cleaning_) return;
    while (*next_ != 0 && !IsKeptCharacter(*next_)) ++next_;
  }

  const wchar_t* next_;
  bool cleaning_ = false;
};

struct Integer {
  bool negative = false;
  std::uint64_t magnitude = 0;  // counts no further than kBeyond
};

constexpr std::uint64_t kBeyond = std::uint64_t{1} << 33;

Integer ReadInteger(const wchar_t* text) {
  Integer number;
  if (text == nullptr) return number;
  NumberReader reader(text);
  number.negative = reader.Take(L'-');
  for (; reader.Peek() >= L'0' && reader.Peek() <= L'9'; reader.Advance()) {
    const auto digit = static_cast<std::uint64_t>(reader.Peek() - L'0');
    number.magnitude = std::min(number.magnitude * 10 + digit, kBeyond);
  }
  return number;
}

std::int32_t ReadSigned(const wchar_t* text) {
  const Integer number = ReadInteger(text);
  const auto magnitude = static_cast<std::int64_t>(number.magnitude);
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(number.negative ? -magnitude : magnitude,
                                                            std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::max()));
}

std::uint32_t ReadUnsigned(const wchar_t* text) {
  const Integer number = ReadInteger(text);
  constexpr std::uint32_t kHighest = std::numeric_limits<std::uint32_t>::max();
  if (number.magnitude > kHighest) return kHighest;
  const auto magnitude = static_cast<std::uint32_t>(number.magnitude);
  return number.negative ? 0u - magnitude : magnitude;
}

}  // namespace

int CQorNumUtil::ParseStringLength(const wchar_t* text) {
  if (text == nullptr) return 0;
  int count = 0;
  for (; *text != 0; ++text) count += IsNumberCharacter(*text) ? 1 : 0;
  return count;
}

wchar_t* CQorNumUtil::ParseString(const wchar_t* text, int* length) {
  if (text == nullptr) return nullptr;
  bool foreign = false;
  std::size_t kept = 0;
  for (const wchar_t* c = text; *c != 0; ++c) {
    foreign |= !IsNumberCharacter(*c);
    kept += IsKeptCharacter(*c) ? 1 : 0;
  }
  if (!foreign) return nullptr;
  wchar_t* const cleaned = qorgen::AllocateText(kept + 1);
  wchar_t* out = cleaned;
  for (; *text != 0; ++text) {
    if (IsKeptCharacter(*text)) *out++ = *text;
  }
  *out = L'\0';
  if (length != nullptr) *length = static_cast<int>(kept);
  return cleaned;
}

double CQorNumUtil::ToDouble(const wchar_t* text) {
  if (text == nullptr) return 0;
  std::string digits;
  for (NumberReader reader(text); IsKeptCharacter(reader.Peek()); reader.Advance()) {
    digits.push_back(static_cast<char>(reader.Peek()));
  }
  double value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
  if (error != std::errc::result_out_of_range) return value;
  const bool negative = digits.front() == '-';
  const std::size_t first = digits.find_first_of("123456789.");
  const double limit = digits[first] == '.' ? 0.0 : std::numeric_limits<double>::infinity();
  return negative ? -limit : limit;
}

int CQorNumUtil::ToInt(const wchar_t* text) {
  return ReadSigned(text);
}
long CQorNumUtil::ToLong(const wchar_t* text) {
  return ReadSigned(text);
}
unsigned int CQorNumUtil::ToUInt(const wchar_t* text) {
  return ReadUnsigned(text);
}
unsigned long CQorNumUtil::ToULong(const wchar_t* text) {
  return ReadUnsigned(text);
}

short CQorNumUtil::ToShort(const wchar_t* text) {
  return static_cast<short>(std::clamp(ReadSigned(text), -32768, 32767));
}

unsigned char CQorNumUtil::ToUChar(const wchar_t* text) {
  return static_cast<unsigned char>(std::min(ReadUnsigned(text), 255u));
}

unsigned short CQorNumUtil::ToUShort(const wchar_t* text) {
  return static_cast<unsigned short>(std::min(ReadUnsigned(text), 65535u));
}
