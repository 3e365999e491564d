// Byte counts in KB, MB and GB.

#include <cstdint>
#include <cstring>

#include "qorgen/numeric/internal/number_text.h"
#include "qorgen/numeric/num_util.h"

using qorgen::numeric::NumberText;

namespace {

constexpr unsigned long kKilobyte = 1024;
constexpr unsigned long kMegabyte = 1048576;
constexpr unsigned long kGigabyte = 1073741824;

const char* UnitName(unsigned long unit) {
  switch (unit) {
    case kKilobyte:
      return " KB";
    case kMegabyte:
      return " MB";
    case kGigabyte:
      return " GB";
    default:
      return "";
  }
}

}  // namespace

const wchar_t* CQorNumUtil::GetUnitString(unsigned long unit) {
  switch (unit) {
    case kKilobyte:
      return L" KB";
    case kMegabyte:
      return L" MB";
    case kGigabyte:
      return L" GB";
    default:
      return L"";
  }
}

double CQorNumUtil::ToUnitDouble(unsigned long bytes, unsigned long& unit) {
  const auto count = static_cast<std::uint32_t>(bytes);
  if (count >= kMegabyte) {
    unit = kMegabyte;
    return count / 1048576.0;
  }
  if (count < kKilobyte) {
    unit = 0;
    return count;
  }
  unit = kKilobyte;
  return count / 1024.0;
}

double CQorNumUtil::ToUnitDouble(const unsigned long long& bytes, unsigned long& unit) {
  if (bytes <= kGigabyte) return ToUnitDouble(static_cast<unsigned long>(bytes), unit);
  unit = kGigabyte;
  return static_cast<std::uint32_t>(bytes >> 16) * 6.103515625e-5;  // 2 to the power 16 - 30
}

double CQorNumUtil::ToUnitDouble(const ULARGE_INTEGER& bytes, unsigned long& unit) {
  const unsigned long long count = bytes.QuadPart;
  return ToUnitDouble(count, unit);
}

wchar_t* CQorNumUtil::ToUnitString(const unsigned long long& bytes) {
  unsigned long unit = 0;
  const double value = ToUnitDouble(bytes, unit);
  return ToUnitString(value, unit);
}

wchar_t* CQorNumUtil::ToUnitString(const ULARGE_INTEGER& bytes) {
  const unsigned long long count = bytes.QuadPart;
  return ToUnitString(count);
}

wchar_t* CQorNumUtil::ToUnitString(double value, unsigned long unit) {
  NumberText text = qorgen::numeric::DecimalText(value, 2, 0);
  text.length = qorgen::numeric::TrimmedLength(text.View(), true);
  const char* const name = UnitName(unit);
  const std::size_t name_length = std::strlen(name);
  std::memcpy(text.characters + text.length, name, name_length);
  return qorgen::numeric::Widened(text.characters, text.length + static_cast<int>(name_length), nullptr);
}
