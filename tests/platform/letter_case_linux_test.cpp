// The case of letters against the C library's own table, which has it from the same database by another way.

#include <clocale>
#include <cwctype>
#include <gtest/gtest.h>

#include "qorgen/platform/common/letter_case.h"

namespace {

// Paired by Unicode 16, which a later C library knows.
bool IsLater(wint_t unit) {
  return unit == 0x019B || unit == 0x0264 || (unit >= 0xA7CB && unit <= 0xA7CD) ||
         (unit >= 0xA7DA && unit <= 0xA7DC);
}

TEST(LetterCase, IsThatOfTheCLibraryWhereItLeadsThereAndBack) {
  const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(unicode, nullptr);
  for (wint_t unit = 0; unit <= 0xFFFF; ++unit) {
    if (IsLater(unit)) continue;
    const wint_t upper = towupper_l(unit, unicode);
    const wint_t lower = towlower_l(unit, unicode);
    const bool capital = lower <= 0xFFFF && towupper_l(lower, unicode) == unit;
    const bool small = upper <= 0xFFFF && towlower_l(upper, unicode) == unit;
    EXPECT_EQ(qorgen::platform::ToUpperUnit(static_cast<wchar_t>(unit)), small ? upper : unit) << unit;
    EXPECT_EQ(qorgen::platform::ToLowerUnit(static_cast<wchar_t>(unit)), capital ? lower : unit) << unit;
  }
  freelocale(unicode);
}

}  // namespace
