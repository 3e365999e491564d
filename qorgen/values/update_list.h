#pragma once

// Which parts of a table are to be updated: CQorUpdateItem names one part, CQorUpdateList holds many. Objects
// belong to one thread at a time.

#include <cstddef>

#include "qorgen/afx/list.h"
#include "qorgen/platform/export.h"

// A plain record. `id` is the caller's own, a table's for instance.
class CQorUpdateItem {
 public:
  constexpr void SetID(int id_, int no_) { Set(kID, id_, no_); }
  constexpr void SetNo(int id_, int no_) { Set(kNo, id_, no_); }
  constexpr void SetRangeNo(int id_, int start, int end) {
    Set(kRangeNo, id_, start);
    endNo = end;
  }
  constexpr void SetCount(int id_, int count) { Set(kCount, id_, count); }
  // The numbers stay as they are.
  constexpr void SetAll(int id_) { Set(kAll, id_, no); }

  // 0 new, 1 identifier, 2 number, 3 range of numbers, 4 count, 5 all.
  constexpr int GetType() const { return type; }
  constexpr int GetID() const { return id; }
  // One field under three names.
  constexpr int GetNo() const { return no; }
  constexpr int GetStartNo() const { return no; }
  constexpr int GetCount() const { return no; }
  // Of a range; other kinds leave it alone.
  constexpr int GetEndNo() const { return endNo; }

  constexpr int IsID() const { return type == kID; }
  constexpr int IsNo() const { return type == kNo; }
  constexpr int IsRangeNo() const { return type == kRangeNo; }
  constexpr int IsCount() const { return type == kCount; }
  constexpr int IsAll() const { return type == kAll; }

  int type = 0;
  int id = 0;
  int no = 0;  // or the start of a range, or a count
  int endNo = 0;

 private:
  enum { kID = 1, kNo, kRangeNo, kCount, kAll };

  constexpr void Set(int type_, int id_, int no_) {
    type = type_;
    id = id_;
    no = no_;
  }
};

static_assert(sizeof(CQorUpdateItem) == 16 && offsetof(CQorUpdateItem, id) == 4 &&
              offsetof(CQorUpdateItem, no) == 8 && offsetof(CQorUpdateItem, endNo) == 12);

// Owns copies of its items, in the order in which they were added. A list isn't copied.
class QORGEN_API CQorUpdateList {
 public:
  CQorUpdateList();
  virtual ~CQorUpdateList();
  CQorUpdateList(const CQorUpdateList&) = delete;
  CQorUpdateList& operator=(const CQorUpdateList&) = delete;

  void Add(const CQorUpdateItem& item);
  // The item at `index`, counted from 0. An index out of range is the caller's mistake; it gives an item of
  // type 0 that belongs to no list. Takes time in proportion to the index.
  const CQorUpdateItem& Get(int index) const;
  int GetCount() const;

  // A flag of the list as a whole, which has nothing to do with items of type 5.
  void All(int on);
  int IsAll() const;

  // Releases all items and clears the flag.
  void Initialize();

 protected:
  // The item at `index` and, where `pos` isn't null, its position; both null for an index out of range.
  CQorUpdateItem* FindIndex(int index, POSITION* pos) const;

 private:
  int m_all = 0;
  CTypedPtrList<CPtrList, CQorUpdateItem*> m_items;
};
