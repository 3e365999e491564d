#include "qorgen/values/status.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

TEST(Status, EachFlagIsSetTestedAndClearedAlone) {
  const struct {
    unsigned int flag;
    void (*set)(CQorStatus&, int);
    int (*test)(const CQorStatus&);
  } rows[] = {
#define FLAG(value, name)                                            \
  {                                                                  \
    value, [](CQorStatus& status, int on) { status.Set##name(on); }, \
        [](const CQorStatus& status) { return status.Is##name(); }   \
  }
      FLAG(0x1, Disable),    FLAG(0x2, ReadOnly),   FLAG(0x4, Deselect),
      FLAG(0x8, Blank),      FLAG(0x10, Emphasis),  FLAG(0x20, Hottable),
      FLAG(0x40, Hoverable), FLAG(0x400, Triangle), FLAG(0x800, TriangleRev)};
#undef FLAG
  for (const auto& row : rows) {
    CQorStatus status(0u);
    row.set(status, -1);
    EXPECT_EQ(row.flag, static_cast<unsigned int>(status));
    EXPECT_EQ(static_cast<int>(row.flag), row.test(status));
    EXPECT_EQ(0, row.test(~row.flag));
    status = 0xFFFFFFFFu;
    row.set(status, 0);
    EXPECT_TRUE(status == ~row.flag);
  }
}

TEST(Status, Pairs) {
  const std::tuple<int, int, unsigned int, unsigned int> rows[] = {
      {0, 0, 0, 0}, {1, 0, 0x100, 0x10000}, {0, 2, 0x200, 0x20000}, {1, 1, 0x300, 0x30000}};
  for (const auto& [left, right, parentheses, comments] : rows) {
    CQorStatus status(0x30300u);
    status.SetParenthesis(left, right);
    status.SetComment(left, right);
    EXPECT_EQ(parentheses | comments, static_cast<unsigned int>(status));
    EXPECT_EQ(left != 0, status.IsParenthesisL() != 0);
    EXPECT_EQ(left != 0, status.IsParenthesisR() != 0);  // the same test on purpose
    EXPECT_EQ(left != 0, status.IsCommentL() != 0);
    EXPECT_EQ(right != 0, status.IsCommentR() != 0);
  }
}

TEST(Status, WholeWord) {
  CQorStatus status;
  EXPECT_EQ(1, status.IsEmpty());
  status.SetBlank(1);
  const CQorStatus copy(status);
  EXPECT_EQ(1, status.IsEqual(8u));
  EXPECT_TRUE(status == copy);
  EXPECT_FALSE(status != copy);
  EXPECT_TRUE(status == 8u);
  EXPECT_TRUE(8 == status);
  EXPECT_TRUE(status != 9);
  EXPECT_TRUE(CQorStatus(~0u) == -1);
  EXPECT_EQ(0, status.IsEmpty());
  status.SetEmpty();
  EXPECT_EQ(1, status.IsEmpty());
}
