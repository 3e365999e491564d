#include <random>

#include "qorgen/afx/array.h"
#include "qorgen/afx/list.h"
#include "qorgen/afx/map.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

// Counts its living objects, so that a leak or a second destruction shows.
struct Counted {
  static inline int living = 0;
  int value = 0;
  Counted(int v = 0) : value(v) { ++living; }
  Counted(const Counted& other) : value(other.value) { ++living; }
  Counted& operator=(const Counted&) = default;
  ~Counted() { --living; }
  bool operator==(const Counted& other) const { return value == other.value; }
};

template <typename Array>
std::vector<int> Values(const Array& array) {
  std::vector<int> values;
  for (const auto& element : array) values.push_back(element.value);
  return values;
}

// From head to tail, as the way back has it, too.
std::vector<int> Values(const CList<int, int>& list) {
  std::vector<int> values, back;
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) values.push_back(list.GetNext(at));
  for (POSITION at = list.GetTailPosition(); at != nullptr;) back.insert(back.begin(), list.GetPrev(at));
  EXPECT_EQ(values, back);
  return values;
}

using Ints = std::vector<int>;

}  // namespace

TEST(CArray, InsertsAndRemovesLikeAVector) {
  {
    CArray<Counted> array;
    std::vector<int> model;
    std::mt19937 random(1);
    for (int step = 0; step < 2000; ++step) {
      const int at = static_cast<int>(random() % (model.size() + 1));
      switch (random() % 5) {
        case 0:
          EXPECT_EQ(static_cast<std::intptr_t>(model.size()), array.Add(step));
          model.push_back(step);
          break;
        case 1:
          array.InsertAt(at, Counted(step), 2);
          model.insert(model.begin() + at, 2, step);
          break;
        case 2:
          if (at < static_cast<int>(model.size())) {
            array.RemoveAt(at);
            model.erase(model.begin() + at);
          }
          break;
        case 3:
          array.SetAtGrow(at + 1, step);
          if (model.size() < static_cast<std::size_t>(at) + 2) model.resize(static_cast<std::size_t>(at) + 2);
          model[static_cast<std::size_t>(at) + 1] = step;
          break;
        default:
          if (model.size() > 60) {
            array.SetSize(at, 3);
            model.resize(static_cast<std::size_t>(at));
          }
      }
      ASSERT_EQ(model, Values(array)) << "step " << step;
      ASSERT_EQ(static_cast<int>(model.size()), Counted::living);
    }
    array.FreeExtra();
    EXPECT_EQ(model, Values(array));
  }
  EXPECT_EQ(0, Counted::living);
}

TEST(CArray, TakesItsOwnElementsAndItselfAsSource) {
  CArray<Counted> array;
  for (int i = 0; i < 4; ++i) array.Add(i);
  array.Add(array[0]);  // no room left: the element moves while it is read
  array.InsertAt(0, array[3], 3);
  EXPECT_EQ((Ints{3, 3, 3, 0, 1, 2, 3, 0}), Values(array));
  array.RemoveAt(2, 6);
  EXPECT_EQ(2, array.Append(array));
  array.InsertAt(1, &array);
  EXPECT_EQ((Ints{3, 3, 3, 3, 3, 3, 3, 3}), Values(array));
  array.Copy(array);
  EXPECT_EQ(8, array.GetSize());
  array.SetAtGrow(20, array[0]);
  EXPECT_EQ(3, array[20].value);
  EXPECT_EQ(0, array[19].value);
}

TEST(CArray, RefusesWhatLiesOutside) {
  CArray<int, int> array;
  EXPECT_EQ(nullptr, array.GetData());
  EXPECT_EQ(-1, array.GetUpperBound());
  EXPECT_THROWS_POINTER(array.GetAt(0), CInvalidArgException);
  array.SetSize(3);
  EXPECT_EQ(0, array[2]);
  EXPECT_THROWS_POINTER(array[3], CInvalidArgException);
  EXPECT_THROWS_POINTER(array.ElementAt(-1), CInvalidArgException);
  EXPECT_THROWS_POINTER(array.SetAt(3, 1), CInvalidArgException);
  EXPECT_THROWS_POINTER(array.SetAtGrow(-1, 1), CInvalidArgException);
  EXPECT_THROWS_POINTER(array.SetSize(-1), CInvalidArgException);
  EXPECT_THROWS_POINTER(array.InsertAt(-1, 1), CInvalidArgException);
  EXPECT_THROWS_POINTER(array.RemoveAt(2, 2), CInvalidArgException);
  EXPECT_THROWS_POINTER(array.RemoveAt(1, INTPTR_MAX), CInvalidArgException);
  EXPECT_THROWS_POINTER(array.SetSize(INTPTR_MAX), CMemoryException);
  EXPECT_THROWS_POINTER(array.InsertAt(INTPTR_MAX, 1), CMemoryException);
  EXPECT_EQ(3, array.GetSize());
}

TEST(CStringArray, SharesOrReusesTexts) {
  CStringArray array;
  const CString shared(L"勘定科目");
  EXPECT_EQ(0, array.Add(shared));
  EXPECT_EQ(1, array.Add(L"摘要の長い文字列"));
  EXPECT_EQ(shared.GetString(), array[0].GetString());
  const wchar_t* block = array[1].GetString();
  array.SetAt(1, L"短い");
  EXPECT_EQ(block, array[1].GetString());
  array.SetAt(0, CString(L"x"));
  EXPECT_TEXT(L"勘定科目", shared);
  EXPECT_STREQ("CStringArray", array.GetRuntimeClass()->m_lpszClassName);
}

TEST(CList, KeepsBothDirectionsConsistent) {
  CList<int, int> list;
  const POSITION two = list.AddTail(2);
  list.AddHead(1);
  const POSITION four = list.AddTail(4);
  list.InsertBefore(four, 3);
  list.InsertAfter(four, 5);
  list.InsertBefore(nullptr, 0);
  list.InsertAfter(nullptr, 6);
  EXPECT_EQ((Ints{0, 1, 2, 3, 4, 5, 6}), Values(list));
  EXPECT_EQ(four, list.Find(4));
  EXPECT_EQ(nullptr, list.Find(4, four));
  EXPECT_EQ(two, list.FindIndex(2));
  EXPECT_EQ(nullptr, list.FindIndex(7));
  EXPECT_EQ(nullptr, list.FindIndex(-1));
  list.RemoveAt(two);
  EXPECT_EQ(0, list.RemoveHead());
  EXPECT_EQ(6, list.RemoveTail());
  list.SetAt(four, 40);
  EXPECT_EQ((Ints{1, 3, 40, 5}), Values(list));
  list.AddTail(&list);
  list.AddHead(&list);
  EXPECT_EQ(16, list.GetCount());
  list.RemoveAll();
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_THROWS_POINTER(list.GetHead(), CInvalidArgException);
  EXPECT_THROWS_POINTER(list.RemoveTail(), CInvalidArgException);
  POSITION none = nullptr;
  EXPECT_THROWS_POINTER(list.GetNext(none), CInvalidArgException);
}

TEST(CTypedPtrList, HandsOutItsOwnPointerType) {
  int values[] = {1, 2, 3};
  CTypedPtrList<CPtrList, int*> list;
  for (int& value : values) list.AddTail(&value);
  CTypedPtrList<CPtrList, int*> twice;
  twice.AddTail(&list);
  twice.AddHead(&list);
  EXPECT_EQ(6, twice.GetCount());
  POSITION position = twice.GetTailPosition();
  EXPECT_EQ(3, *twice.GetPrev(position));
  EXPECT_EQ(&values[0], twice.RemoveHead());
}

TEST(CMapStringToString, FindsWhatWasSetLast) {
  CMapStringToString map;
  CString value(L"kept");
  EXPECT_EQ(0, map.Lookup(L"x", value));
  constexpr int kCount = 3000;  // several times the first table
  for (int i = 0; i < kCount; ++i) {
    const wchar_t key[] = {static_cast<wchar_t>(0x4E00 + i), L'鍵', 0};
    map.SetAt(key, key + 1);
    map[key] = key;
  }
  EXPECT_EQ(kCount, map.GetCount());
  for (int i = 0; i < kCount; i += 2) {
    const wchar_t key[] = {static_cast<wchar_t>(0x4E00 + i), L'鍵', 0};
    EXPECT_EQ(1, map.RemoveKey(key));
  }
  int walked = 0;
  for (POSITION position = map.GetStartPosition(); position != nullptr; ++walked) {
    CString key;
    map.GetNextAssoc(position, key, value);
    const wchar_t expected[] = {static_cast<wchar_t>(0x4E00 + 2 * walked + 1), L'鍵', 0};
    ASSERT_TEXT(expected, key);
    ASSERT_TEXT(expected, value);
  }
  EXPECT_EQ(kCount / 2, walked);
  const wchar_t* own_key = nullptr;
  EXPECT_EQ(1, map.LookupKey(L"\x4E01鍵", own_key));
  EXPECT_TEXT(L"\x4E01鍵", own_key);
  map.InitHashTable(7);
  EXPECT_EQ(1, map.Lookup(L"\x4E03鍵", value));
  map.RemoveAll();
  EXPECT_EQ(0, map.RemoveKey(L"x"));
  map[nullptr] = L"of the empty key";
  EXPECT_EQ(1, map.Lookup(L"", value));
  EXPECT_THROWS_POINTER(map.InitHashTable(0), CInvalidArgException);
}

TEST(CMap, WorksWithNumbersAndPointers) {
  CMap<int, int, Counted, const Counted&> map;
  for (int i = -500; i < 500; ++i) map[i] = i * 2;
  EXPECT_EQ(-1000, map.PLookup(-500)->value.value);
  EXPECT_EQ(nullptr, map.PLookup(500));
  int sum = 0;
  for (const auto* pair = map.PGetFirstAssoc(); pair != nullptr; pair = map.PGetNextAssoc(pair))
    sum += pair->key;
  EXPECT_EQ(-500, sum);
  map.RemoveAll();
  EXPECT_EQ(0, Counted::living);
  CMap<void*, void*, int, int> pointers;
  pointers[&sum] = 3;
  EXPECT_EQ(0, pointers[nullptr]);
  EXPECT_EQ(3, pointers[&sum]);
}
