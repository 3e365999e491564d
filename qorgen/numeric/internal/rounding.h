#pragma once

// Powers of ten and the scale of a magnitude, shared by rounding and by number text. Pure functions.

#include <array>

namespace qorgen::numeric {

// 10 to the powers 0 to 22, the ones that a double holds exactly.
inline constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// 10 to any power: infinity above 308, 0 or a denormal below -307. The same bits on every host for the powers
// -22 to 22 that amounts use.
double PowerOfTen(long power);

// How many powers of ten, beginning with 10 to the power 0, are at most `magnitude` (which is 1 or more): the
// number of its integer digits. Counts to 16 and no further: beyond fifteen digits nobody asks.
constexpr int IntegerDigits(double magnitude) {
  int digits = 0;
  while (digits < 16 && magnitude >= kPowersOfTen[static_cast<std::size_t>(digits)]) ++digits;
  return digits;
}

// How many divisions by 10.0 bring `magnitude` to 1 or less, counted to 16 and no further.
constexpr int DivisionsToOne(double magnitude) {
  int count = 0;
  while (count < 16 && magnitude > kPowersOfTen[static_cast<std::size_t>(count)]) ++count;
  return count;
}

// `magnitude`, already counted in units and not negative, as a whole number of units under rounding rule
// `mode`.
double RoundMagnitude(double magnitude, int mode);

}  // namespace qorgen::numeric
