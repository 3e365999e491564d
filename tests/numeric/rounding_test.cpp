#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

#include "qorgen/numeric/num_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double Rounded(double value, int place, int mode) {
  CQorNumUtil::Round(value, place, mode);
  return value;
}

TEST(Round, FollowsTheDecimalText) {
  // 1e-20: below the tolerance
  using Row = std::tuple<double, int, int, double>;
  for (const auto& [value, place, mode, expected] :
       Rows(Row(1.005, -2, 3, 1.01), Row(1.00000000000001, 0, 2, 1), Row(1.000001, 0, 2, 2),
            Row(2.9999999999999996, 0, 1, 3), Row(2.9999, 0, 1, 2), Row(-2.5, 0, 3, -3), Row(-2.5, 0, 0, -2),
            Row(1250, 2, 3, 1300), Row(1201, 2, 2, 1300), Row(1299, 2, 7, 1200), Row(0.5, 0, 3, 1),
            Row(0.49, 0, 3, 0), Row(1e-20, 0, 2, 0), Row(0.01, 0, 2, 1), Row(1e300, -10, 3, 1e300),
            Row(1.5, -400, 3, 1.5), Row(5e300, 308, 1, 0))) {
    EXPECT_DOUBLE_EQ(expected, Rounded(value, place, mode)) << value << " at " << place << " mode " << mode;
  }
}

TEST(Round, SurvivesEveryPlaceAndValue) {
  for (double value : {0.0, -0.0, -0.4, 1.0, -1.0, 0.1, 1e308, -1e308, 5e-324, kInfinity, -kInfinity}) {
    for (int place : {INT_MIN, -309, -308, -16, -2, 0, 16, 308, 309, INT_MAX}) {
      for (int mode : {0, 2, 3}) {
        const double rounded = Rounded(value, place, mode);
        EXPECT_FALSE(std::isnan(rounded)) << value << ' ' << place;
        EXPECT_FALSE(rounded == 0 && std::signbit(rounded)) << value << ' ' << place << ": a negative zero";
      }
    }
  }
  EXPECT_TRUE(std::isnan(Rounded(std::nan(""), -2, 3)));
}

// Half-up rounding of amounts with a known decimal text agrees with rounding that text by hand.
TEST(Round, AgreesWithDecimalArithmeticOnAmounts) {
  std::mt19937 random(4711);
  for (int i = 0; i < 20000; ++i) {
    const int thousandths = static_cast<int>(random() % 2000000000) - 1000000000;
    const int magnitude = std::abs(thousandths);
    const int sign = thousandths < 0 ? -1 : 1;
    const double value = thousandths / 1000.0;
    EXPECT_NEAR(sign * ((magnitude + 5) / 10) / 100.0, Rounded(value, -2, 3), 1e-9) << value;
    EXPECT_NEAR(sign * ((magnitude + 9) / 10) / 100.0, Rounded(value, -2, 2), 1e-9) << value;
    EXPECT_NEAR(sign * (magnitude / 10) / 100.0, Rounded(value, -2, 1), 1e-9) << value;
  }
}

TEST(Ratio, KeepsNullApartFromZero) {
  EXPECT_NE(0, CQorNumUtil::Ratio(1, 0, 0, 3).IsNull());
  const CQorStateDouble zero = CQorNumUtil::Ratio(0, 5, 0, 3);
  EXPECT_EQ(0, zero.IsNull());
  EXPECT_EQ(0, zero.value);
  EXPECT_DOUBLE_EQ(33.3, CQorNumUtil::Ratio(1, 3, -1, 3).value);
  EXPECT_DOUBLE_EQ(-67, CQorNumUtil::Ratio(-2, 3, 0, 2).value);
}

TEST(ScaledInteger, RoundsAndClamps) {
  using Row = std::tuple<double, long, int, int>;
  for (const auto& [value, place, mode, expected] :
       Rows(Row(123.456, -2, 3, 12346), Row(123.456, -2, 1, 12345), Row(-123.456, 0, 2, -124),
            Row(1250, 2, 3, 13), Row(-0.4, 0, 3, 0), Row(1e300, 0, 3, 2147483647),
            Row(-kInfinity, 0, 3, -2147483647 - 1), Row(1, -2147483647L - 1, 3, 2147483647),
            Row(1e300, 2147483647L, 1, 0), Row(std::nan(""), 0, 3, 0), Row(kInfinity, 400, 3, 0))) {
    EXPECT_EQ(expected, CQorNumUtil::DoubleToLong(value, place, mode)) << value << " at " << place;
  }
  EXPECT_DOUBLE_EQ(123.45, CQorNumUtil::LongToDouble(12345, -2));
  EXPECT_DOUBLE_EQ(-1200, CQorNumUtil::LongToDouble(-12, 2));
  EXPECT_EQ(0, CQorNumUtil::LongToDouble(0, 2147483647L));
}

}  // namespace
