#include "qorgen/afx/rect.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

TEST(CRect, MeasuresAndMoves) {
  CRect rect(1, 2, 11, 22);
  EXPECT_EQ(10, rect.Width());
  EXPECT_EQ(20, rect.Height());
  rect.OffsetRect(-1, 3);
  EXPECT_TRUE(rect == CRect(0, 5, 10, 25));
  rect.InflateRect(1, 2);
  EXPECT_TRUE(rect == CRect(-1, 3, 11, 27));
  rect.DeflateRect(1, 2, 3, 4);
  EXPECT_TRUE(rect == CRect(0, 5, 8, 23));
  rect.MoveToXY(100, 200);
  EXPECT_TRUE(rect.EqualRect(CRect(100, 200, 108, 218)));
  rect.SetRect(9, 8, 1, 2);
  EXPECT_TRUE(rect.IsRectEmpty());
  rect.NormalizeRect();
  EXPECT_TRUE(rect == CRect(1, 2, 9, 8));
  rect.SetRectEmpty();
  EXPECT_TRUE(rect.IsRectNull());
  EXPECT_TRUE(CRect(static_cast<const RECT*>(nullptr)).IsRectNull());
  EXPECT_FALSE(rect.EqualRect(nullptr));
  EXPECT_EQ(-1, CRect(INT_MIN, 0, INT_MAX, 0).Width());
}

TEST(CRect, CutsAndJoins) {
  const CRect page(0, 0, 10, 10);
  const std::tuple<CRect, CRect, CRect> rows[] = {
      {CRect(5, 5, 20, 20), CRect(5, 5, 10, 10), CRect(0, 0, 20, 20)},
      {CRect(2, 3, 4, 5), CRect(2, 3, 4, 5), CRect(0, 0, 10, 10)},
      {CRect(10, 0, 20, 10), CRect(), CRect(0, 0, 20, 10)},
      {CRect(5, 5, 5, 9), CRect(), CRect(0, 0, 10, 10)}};
  for (const auto& [other, both, around] : rows) {
    EXPECT_TRUE((page & other) == both) << other.left;
    EXPECT_TRUE((page | other) == around) << other.left;
    EXPECT_TRUE((other | page) == around) << other.left;
  }
  CRect result;
  EXPECT_FALSE(result.UnionRect(nullptr, CRect(3, 3, 3, 3)));
  EXPECT_TRUE(result.IsRectNull());
}
