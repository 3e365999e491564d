#pragma once

// Amounts that may be null, like a database column with its indicator: a column that nobody filled stays
// apart from a column that holds zero, and sums over such columns don't turn an empty column into a zero one.
// Plain values without virtual operations; an object belongs to one thread at a time.

#include <cstdint>

#include "qorgen/platform/types.h"

namespace qorgen::numeric {

constexpr double Sum(double a, double b) {
  return a + b;
}
constexpr double Negated(double a) {
  return a * -1.0;
}

// A `long` of the public surface carries 32 bits on every host, and sums wrap there as the applications' own
// host wraps them; worked out without signed overflow.
constexpr long Sum(long a, long b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr long Negated(long a) {
  return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(a));
}

// What the two amounts have in common. `Derived` is the amount itself, `Value` what it holds and `Plain` the
// type in which constructors and assignment take it.
template <class Derived, class Value, class Plain>
class StateValue {
 public:
  Value value = 0;
  int isNull = 1;  // nonzero: null; kept as it was set

  // A null amount that holds 0.
  constexpr StateValue() = default;
  // Stores both as given.
  constexpr StateValue(Plain amount, int null) : value(amount), isNull(null) {}

  // Back to a null amount that holds 0.
  constexpr void Init() {
    value = 0;
    isNull = 1;
  }

  // Stores the amount. Anything but 0 makes the object not null; 0 leaves the null state as it is, so a real
  // zero is stored by SetNull(0) beside the assignment.
  constexpr Derived& operator=(Plain amount) {
    value = amount;
    if (amount != 0) isNull = 0;
    return Self();
  }

  // Value and null state are both the same, as stored: a null amount that holds 0 differs from the value 0.
  // An object equals itself, also while it holds a NaN.
  friend constexpr bool operator==(const Derived& left, const Derived& right) {
    return &left == &right || (left.value == right.value && left.isNull == right.isNull);
  }
  friend constexpr bool operator!=(const Derived& left, const Derived& right) { return !(left == right); }

  // The amount, or 0 while null.
  constexpr operator Value() const { return isNull != 0 ? Value{0} : value; }

  // Adds or subtracts a column's amount. A null right side changes nothing; a null left side starts from
  // zero. `x += x` and `x -= x` change nothing.
  constexpr Derived& operator+=(const Derived& other) { return Add(other, other.value); }
  constexpr Derived& operator-=(const Derived& other) { return Add(other, Negated(other.value)); }

  // Makes the stored amount non-negative, also while null. (The smallest 32-bit integer has no counterpart
  // and stays.)
  constexpr void ABS() {
    if (value < 0) value = Negated(value);
  }

  // The null state as it was stored: any nonzero number means null.
  constexpr int IsNull() const { return isNull; }
  // Stores the null state; the amount stays.
  constexpr void SetNull(int null) { isNull = null; }

  // Hands out the amount as stored, also while null, and the null state as 1 or 0.
  constexpr void GetDbValue(Value& amount, long& null) const {
    amount = value;
    null = isNull != 0 ? 1 : 0;
  }
  // Stores the amount, and the null state as 1 or 0.
  constexpr void SetDbValue(Value amount, long null) {
    value = amount;
    isNull = null != 0 ? 1 : 0;
  }

 private:
  constexpr Derived& Self() { return static_cast<Derived&>(*this); }

  constexpr Derived& Add(const Derived& other, Value amount) {
    if (&other != this && other.isNull == 0) {
      value = isNull != 0 ? amount : Sum(value, amount);
      isNull = 0;
    }
    return Self();
  }
};

}  // namespace qorgen::numeric

// A nullable integer amount. The value carries 32 bits: sums wrap there.
class CQorStateLong : public qorgen::numeric::StateValue<CQorStateLong, long, int> {
 public:
  using StateValue::StateValue;
  using StateValue::operator=;
};

// A nullable floating-point amount.
class CQorStateDouble : public qorgen::numeric::StateValue<CQorStateDouble, double, double> {
 public:
  using StateValue::StateValue;
  using StateValue::operator=;
};
