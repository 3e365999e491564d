#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>

#include "qorgen/afx/memory.h"
#include "qorgen/numeric/num_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

std::string Text(double value, int decimals, int mode = 0, int trim = 0) {
  return TakeUtf8(CQorNumUtil::ToString(value, decimals, nullptr, mode, trim));
}

TEST(NumberText, OfIntegers) {
  int length = -1;
  EXPECT_EQ("255", TakeUtf8(CQorNumUtil::ToString(static_cast<unsigned char>(255), &length)));
  EXPECT_EQ(3, length);
  EXPECT_EQ("-32768", TakeUtf8(CQorNumUtil::ToString(static_cast<short>(-32768), nullptr)));
  EXPECT_EQ("65535", TakeUtf8(CQorNumUtil::ToString(static_cast<unsigned short>(65535), nullptr)));
  EXPECT_EQ("-2147483648", TakeUtf8(CQorNumUtil::ToString(INT_MIN, nullptr)));
  EXPECT_EQ("-1", TakeUtf8(CQorNumUtil::ToString(-1L, nullptr)));
  EXPECT_EQ("4294967295", TakeUtf8(CQorNumUtil::ToString(UINT_MAX, nullptr)));
  EXPECT_EQ("4294967295", TakeUtf8(CQorNumUtil::ToString(ULONG_MAX, nullptr))) << "32 bits on every host";
}

TEST(NumberText, OfDoubles) {
  // 2.5 in mode 0: ties go to the even digit where no rounding step runs
  // 100 with 0 decimals, trimmed: zeros of the integer part stay
  // -1234.5: the size of `decimals` counts
  // 10.5: one division brings 10.5 to more than 1, a second below
  using Row = std::tuple<double, int, int, int, const char*>;
  for (const auto& [value, decimals, mode, trim, expected] :
       Rows(Row(-0.0, 2, 0, 0, "0.00"), Row(2.5, 0, 0, 0, "2"), Row(2.5, 0, 3, 0, "3"),
            Row(1.005, 2, 3, 0, "1.01"), Row(1.5, 2, 0, 1, "1.5"), Row(100, 2, 0, 1, "100"),
            Row(100, 0, 0, 1, "100"), Row(-1234.5, -2, 0, 0, "-1234.50"),
            Row(0.1, 100, 0, 0, "0.100000000000000"), Row(0.1, INT_MIN, 0, 1, "0.1"),
            Row(0.1, INT_MIN, 3, 1, "0"), Row(10.5, 15, 0, 0, "10.5000000000000"),
            Row(std::numeric_limits<double>::infinity(), 2, 3, 0, "inf"),
            Row(-std::numeric_limits<double>::infinity(), 2, 0, 0, "-inf"))) {
    EXPECT_EQ(expected, Text(value, decimals, mode, trim))
        << value << ' ' << decimals << ' ' << mode << ' ' << trim;
  }
  EXPECT_EQ("nan", Text(-std::nan(""), 2));
  EXPECT_EQ(309u, Text(std::numeric_limits<double>::max(), 2).size());
  int length = 0;
  EXPECT_EQ("12", TakeUtf8(CQorNumUtil::ToString(12.0, &length)));
  EXPECT_EQ(2, length);
}

TEST(NumberText, WithinALength) {
  const std::tuple<double, int, int, int, const char*, int> rows[] = {
      {12.345, 3, 0, 1, "12.345", 0},  {12.345, 3, 6, 1, "12.345", 0}, {12.345, 3, 5, 1, "12.34", 1},
      {12.304, 3, 5, 1, "12.3", 0},    {12.345, 3, 3, 0, "12", 0},     {123456, 0, 3, 1, "123", 1},
      {12.345, 3, -1, 1, "12.345", 0},
  };
  for (const auto& [row_value, row_decimals, max, trim, expected, row_over] : rows) {
    int over = -1, length = -1;
    const std::string text =
        TakeUtf8(CQorNumUtil::ToString(row_value, row_decimals, max, &length, 0, trim, &over));
    EXPECT_EQ(expected, text);
    EXPECT_EQ(row_over, over) << text;
    EXPECT_EQ(text.size(), static_cast<std::size_t>(length));
  }
  EXPECT_EQ("1", TakeUtf8(CQorNumUtil::ToString(1.0, 0, 1, nullptr, 0, 0, nullptr)));
}

// The rule of the printed precision, as it is told: by dividing.
std::string Printed(double value, int decimals) {
  int n = 0;
  if (std::isfinite(value)) {
    for (double left = std::fabs(value); left > 1; left /= 10.0) ++n;
  }
  int precision = std::min(std::abs(decimals), 15);
  if (n + precision > 15) precision = 15 - n;
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", std::max(precision, 0), value == 0 ? 0.0 : value);
  std::string result(text);
  if (result.back() == '.') result.pop_back();
  return result;
}

TEST(NumberText, IsWhatTheRuntimePrints) {
  std::mt19937_64 random(20240531);
  for (int i = 0; i < 40000; ++i) {
    const int decimals = static_cast<int>(random() % 17);
    double value = 0;
    switch (i % 4) {
      case 0:  // any bits
        value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        break;
      case 1:  // amounts
        value = static_cast<double>(static_cast<std::int64_t>(random() % 20000000000ull) - 10000000000) / 100;
        break;
      case 2:  // exact ties
        value = std::ldexp(static_cast<double>(random() % 1000000 | 1), -static_cast<int>(random() % 12));
        break;
      default:  // about fifteen digits
        value = static_cast<double>(random() % 2000000000000000ull) / std::pow(10.0, random() % 16);
        break;
    }
    ASSERT_EQ(Printed(value, decimals), Text(value, decimals)) << i;
  }
  for (int power = 0; power < 20; ++power) {  // both sides of each step of the precision
    const double exact = std::pow(10.0, power);
    for (double value : {std::nextafter(exact, 0), exact, std::nextafter(exact, 1e300)}) {
      ASSERT_EQ(Printed(value, 15), Text(value, 15)) << power;
      ASSERT_EQ(Printed(value, 2), Text(value, 2)) << power;
    }
  }
}

TEST(UnitSize, ScalesToTheLargestUnit) {
  // 0x40000001: the lowest sixteen bits don't count in gigabytes
  // 0xFFFF000000000000: nor does anything above bit 47
  using Row = std::tuple<unsigned long long, const char*>;
  for (const auto& [bytes, expected] : Rows(
           Row(0, "0"), Row(1023, "1023"), Row(1024, "1 KB"), Row(1536, "1.5 KB"), Row(1048575, "1024 KB"),
           Row(1048576, "1 MB"), Row(0x40000000, "1024 MB"), Row(0x40000001, "1 GB"), Row(0x4000FFFF, "1 GB"),
           Row(0x100000000, "4 GB"), Row(0xFFFF000000000000, "0 GB"), Row(1649267441664, "1536 GB"))) {
    EXPECT_EQ(expected, TakeUtf8(CQorNumUtil::ToUnitString(bytes))) << bytes;
    ULARGE_INTEGER large;
    large.QuadPart = bytes;
    EXPECT_EQ(expected, TakeUtf8(CQorNumUtil::ToUnitString(large))) << bytes;
  }
  unsigned long unit = 7;
  EXPECT_EQ(500, CQorNumUtil::ToUnitDouble(500UL, unit));
  EXPECT_EQ(0u, unit);
  EXPECT_DOUBLE_EQ(4095.999999046325684, CQorNumUtil::ToUnitDouble(0xFFFFFFFFUL, unit));
  EXPECT_EQ(1048576u, unit);
  EXPECT_EQ("2.35 KB", TakeUtf8(CQorNumUtil::ToUnitString(2.345678, 1024)));
}

}  // namespace
