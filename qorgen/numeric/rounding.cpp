// Rounding to a decimal place, and integers scaled by a power of ten.

#include "qorgen/numeric/internal/rounding.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <system_error>

#include "qorgen/numeric/num_util.h"

namespace qorgen::numeric {
namespace {

constexpr int kRoundUp = 2;
constexpr int kRoundHalfUp = 3;

constexpr std::array<double, 23> kNegativePowersOfTen = {
    1e-0,  1e-1,  1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,  1e-8,  1e-9,  1e-10, 1e-11,
    1e-12, 1e-13, 1e-14, 1e-15, 1e-16, 1e-17, 1e-18, 1e-19, 1e-20, 1e-21, 1e-22};

// DivisionsToOne compares where its contract speaks of repeated division. Division rounds, but it keeps the
// order of its operands, so both agree everywhere if they agree at each power of ten and at the double next
// above it.
constexpr bool ComparingEqualsDividing() {
  for (std::size_t power = 0; power < 16; ++power) {
    const double exact = kPowersOfTen[power];
    const double above = std::bit_cast<double>(std::bit_cast<std::uint64_t>(exact) + 1);
    for (double start : {exact, above}) {
      int divisions = 0;
      for (double left = start; left > 1; left /= 10.0) ++divisions;
      if (divisions != DivisionsToOne(start)) return false;
    }
  }
  return true;
}
static_assert(ComparingEqualsDividing());

// Amounts have to round as the decimal text that the user sees: 1.005 is stored a little below itself. The
// tolerance stands at the fifteenth significant digit.
double Tolerance(double magnitude) {
  if (magnitude < 1) return kNegativePowersOfTen[15];
  const int digits = IntegerDigits(magnitude);
  return digits < 15 ? kNegativePowersOfTen[static_cast<std::size_t>(14 - digits)] : 0.0;
}

}  // namespace

double PowerOfTen(long power) {
  if (power >= 0 && power <= 22) return kPowersOfTen[static_cast<std::size_t>(power)];
  if (power < 0 && power >= -22) return kNegativePowersOfTen[static_cast<std::size_t>(-power)];
  // Correctly rounded on every host, which a runtime's pow isn't.
  char text[24] = "1e";
  const auto written = std::to_chars(text + 2, std::end(text), power);
  double value = 0;
  const auto read = std::from_chars(text, written.ptr, value);
  if (read.ec == std::errc::result_out_of_range)
    return power > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  return value;
}

double RoundMagnitude(double magnitude, int mode) {
  if (magnitude == 0) return 0;
  const double tolerance = Tolerance(magnitude);
  const double correction = mode == kRoundUp       ? 1 - tolerance
                            : mode == kRoundHalfUp ? 0.5 + tolerance
                                                   : tolerance;
  return std::floor(magnitude + correction);
}

}  // namespace qorgen::numeric

using qorgen::numeric::PowerOfTen;
using qorgen::numeric::RoundMagnitude;

void CQorNumUtil::Round(double& value, int place, int mode) {
  if (!std::isfinite(value)) return;
  const int power = std::clamp(place, -308, 308);
  const double magnitude = std::fabs(value);
  // A fraction is scaled by the positive power, so that the scaled amount carries one rounding error and not
  // two.
  const double scaled = power < 0 ? magnitude * PowerOfTen(-power) : magnitude / PowerOfTen(power);
  if (!std::isfinite(scaled)) return;
  double rounded = RoundMagnitude(scaled, mode);
  if (power != 0) rounded *= PowerOfTen(power);
  value = value < 0 && rounded != 0 ? rounded * -1.0 : rounded;
}

CQorStateDouble CQorNumUtil::Ratio(double numerator, double denominator, int place, int mode) {
  CQorStateDouble ratio;
  if (denominator == 0) return ratio;
  double percentage = numerator * 100.0 / denominator;
  Round(percentage, place, mode);
  ratio = percentage;
  ratio.SetNull(0);  // assigning 0 alone would leave it null
  return ratio;
}

long CQorNumUtil::DoubleToLong(double value, long place, int mode) {
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  if (value == 0) return 0;  // no digits at any place, where 0 times infinity would be no number
  const double scaled = value * PowerOfTen(-std::clamp(place, -400L, 400L));
  if (std::isnan(scaled)) return 0;
  const double units = RoundMagnitude(std::fabs(scaled), mode);
  return static_cast<long>(std::clamp(scaled < 0 ? -units : units, kLowest, kHighest));
}

double CQorNumUtil::LongToDouble(long value, long place) {
  const auto number = static_cast<std::int32_t>(value);
  return number == 0 ? 0.0 : number * PowerOfTen(std::clamp(place, -400L, 400L));
}
