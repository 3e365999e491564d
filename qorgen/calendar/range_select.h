#pragma once

// A run of months chosen on a strip of months, as a month selector on a screen shows it. A record or selector
// belongs to one thread at a time. Nothing throws.

#include <cstddef>

#include "qorgen/platform/export.h"

// Places of the strip are counted from 0. All fields 0 means that nothing is selected. Results are cut to
// their 16 bits.
struct QORGEN_API QorRangeSelectInfo {
  short year = 0;   // of the strip's first month
  short month = 0;  // of the strip's first month, 1 to 12
  short first = 0;  // place of the first selected month
  short last = 0;   // place of the last selected month

  QorRangeSelectInfo() = default;
  void Init();

  // 1 when all fields are 0.
  int IsNotSelect() const;
  // The number of selected months, 0 when all fields are 0.
  short GetSelectCount() const;

  // Year and month at a place of the strip; 0 and below are the first place. The steps are those of CQorDate:
  // where it doesn't take the strip's first month (a month above 12, a year before 1899, nothing selected),
  // every place answers as the first one. Years of 100 to 999 are to it short forms of later ones.
  short GetYear(short index) const;
  short GetMonth(short index) const;

  // Selects `count` months. With `around` 0 the strip begins with the month of `date` (integer form of
  // QORDATE), and so does the selection. Else the strip is a window of twelve months in which that month
  // stands sixth, and the selection is centred on it, with the greater part behind it for an even count.
  void SelectDay(int date, short count, int around);
  // The same for today by the local clock.
  void SelectToday(short count, int around);
};

static_assert(sizeof(QorRangeSelectInfo) == 8 && offsetof(QorRangeSelectInfo, month) == 2 &&
              offsetof(QorRangeSelectInfo, first) == 4 && offsetof(QorRangeSelectInfo, last) == 6);

// Derived selectors number their own types from 2 on.
enum QorRangeSelectorType : int {
  QorRangeSelectorType_Base = 1,
};

class QORGEN_API CRangeSelector {
 public:
  CRangeSelector() = default;
  CRangeSelector(const CRangeSelector&) = default;
  CRangeSelector& operator=(const CRangeSelector&) = default;
  virtual ~CRangeSelector();

  virtual QorRangeSelectorType GetType();

 protected:
  void SetType(QorRangeSelectorType type);

 private:
  QorRangeSelectorType m_type = QorRangeSelectorType_Base;
};
