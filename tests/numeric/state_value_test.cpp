#include "qorgen/numeric/state_value.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

static_assert(!std::is_polymorphic_v<CQorStateLong> && !std::is_polymorphic_v<CQorStateDouble>);
static_assert(sizeof(CQorStateDouble) == 16);

template <class T>
class NullableValues : public testing::Test {};
using Amounts = testing::Types<CQorStateLong, CQorStateDouble>;
TYPED_TEST_SUITE(NullableValues, Amounts);

TYPED_TEST(NullableValues, BeginNullAndEqualEachOther) {
  const TypeParam x, y;
  EXPECT_EQ(1, x.IsNull());
  EXPECT_EQ(0, x.value);
  EXPECT_TRUE(x == y);
  EXPECT_FALSE(x != y);
  EXPECT_TRUE(x != TypeParam(0, 0)) << "null is not zero";
  TypeParam used(7, 0);
  TypeParam& same = used;
  used += same;
  used -= same;
  EXPECT_EQ(7, used.value) << "what is added to itself stays";
  used.Init();
  EXPECT_TRUE(used == x);
}

TYPED_TEST(NullableValues, AssigningZeroKeepsTheNullState) {
  TypeParam x;
  x = 0;
  EXPECT_EQ(1, x.IsNull());
  x = 5;
  EXPECT_EQ(0, x.IsNull());
  x = 0;
  EXPECT_EQ(0, x.IsNull());
  EXPECT_EQ(0, x.value);
}

TYPED_TEST(NullableValues, SumsSkipNullColumns) {
  const TypeParam null(9, 1), five(5, 0), two(2, 0);
  struct Row {
    TypeParam left, right, sum, difference;
  } rows[] = {
      {TypeParam(), null, TypeParam(), TypeParam()},
      {null, five, TypeParam(5, 0), TypeParam(-5, 0)},
      {five, null, five, five},
      {five, two, TypeParam(7, 0), TypeParam(3, 0)},
      {TypeParam(0, 1), TypeParam(0, 0), TypeParam(0, 0), TypeParam(0, 0)},
  };
  for (const Row& row : rows) {
    TypeParam sum = row.left, difference = row.left;
    sum += row.right;
    difference -= row.right;
    EXPECT_TRUE(sum == row.sum) << &row - rows;
    EXPECT_TRUE(difference == row.difference) << &row - rows;
  }
}

TYPED_TEST(NullableValues, ReadAsZeroWhileNull) {
  TypeParam x(-7, 0);
  EXPECT_EQ(-7, static_cast<decltype(x.value)>(x));
  x.SetNull(2);
  EXPECT_EQ(2, x.IsNull());
  EXPECT_EQ(0, static_cast<decltype(x.value)>(x));
  x.ABS();  // leaves the null state
  decltype(x.value) value = 0;
  long null = 0;
  x.GetDbValue(value, null);
  EXPECT_EQ(7, value);
  EXPECT_EQ(1, null);
  for (long indicator : {-4L, 0L}) {
    x.SetDbValue(8, indicator);
    EXPECT_EQ(indicator != 0 ? 1 : 0, x.IsNull());
    EXPECT_EQ(8, x.value);
  }
}

TEST(StateLong, WrapsAt32Bits) {
  CQorStateLong x(INT_MAX, 0);
  x += CQorStateLong(1, 0);
  EXPECT_EQ(INT_MIN, x.value);
  x.ABS();
  EXPECT_EQ(INT_MIN, x.value);
  x -= CQorStateLong(INT_MIN, 0);
  EXPECT_EQ(0, x.value);
}

TEST(StateDouble, HoldingANanEqualsItselfAlone) {
  const CQorStateDouble x(std::nan(""), 0), y(std::nan(""), 0);
  const CQorStateDouble& same = x;
  EXPECT_TRUE(x == same);
  EXPECT_TRUE(x != y);
}

}  // namespace
