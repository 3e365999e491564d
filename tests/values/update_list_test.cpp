#include "qorgen/values/update_list.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

TEST(UpdateItem, KindsAndNumbers) {
  CQorUpdateItem item;
  const auto holds = [&item](int type, int id, int no, int end) {
    const int kinds[] = {item.IsID(), item.IsNo(), item.IsRangeNo(), item.IsCount(), item.IsAll()};
    for (int kind = 1; kind <= 5; ++kind) {
      if (kinds[kind - 1] != (kind == type)) return false;
    }
    return item.GetType() == type && item.GetID() == id && item.GetNo() == no && item.GetStartNo() == no &&
           item.GetCount() == no && item.GetEndNo() == end;
  };
  EXPECT_TRUE(holds(0, 0, 0, 0));
  item.SetID(1, 2);
  EXPECT_TRUE(holds(1, 1, 2, 0));
  item.SetRangeNo(7, 10, 20);
  EXPECT_TRUE(holds(3, 7, 10, 20));
  item.SetNo(3, 4);
  EXPECT_TRUE(holds(2, 3, 4, 20));
  item.SetCount(5, 6);
  EXPECT_TRUE(holds(4, 5, 6, 20));
  item.SetAll(9);
  EXPECT_TRUE(holds(5, 9, 6, 20));
}

TEST(UpdateList, OwnsCopiesInOrder) {
  class List : public CQorUpdateList {
   public:
    using CQorUpdateList::FindIndex;
  };
  List list;
  CQorUpdateItem item;
  for (int i = 0; i < 25; ++i) {
    item.SetNo(i, i * 2);
    list.Add(item);
  }
  item.SetAll(99);
  ASSERT_EQ(25, list.GetCount());
  for (int i = 0; i < 25; ++i) EXPECT_EQ(i * 2, list.Get(i).GetNo());
  EXPECT_EQ(0, list.IsAll());
  POSITION position = nullptr;
  CQorUpdateItem* const found = list.FindIndex(24, &position);
  ASSERT_NE(nullptr, found);
  EXPECT_NE(nullptr, position);
  found->SetID(24, 1);
  EXPECT_EQ(1, list.Get(24).IsID());
  for (const int outside : {-1, 25, INT_MAX, INT_MIN}) {
    EXPECT_EQ(nullptr, list.FindIndex(outside, &position));
    EXPECT_EQ(nullptr, position);
    EXPECT_EQ(0, list.Get(outside).GetType());
  }
  list.All(3);
  EXPECT_EQ(3, list.IsAll());
  list.Initialize();
  EXPECT_EQ(0, list.IsAll());
  EXPECT_EQ(0, list.GetCount());
  list.Add(item);
  EXPECT_EQ(1, list.Get(0).IsAll());
}
