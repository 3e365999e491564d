// Case and white space of every unit of the basic plane.

#include "qorgen/platform/common/letter_case.h"

#include <gtest/gtest.h>

#include "qorgen/platform/common/white_space.h"

namespace qorgen::platform {
namespace {

TEST(LetterCase, EveryPairLeadsThereAndBack) {
  int pairs = 0;
  for (int i = 0; i <= 0xFFFF; ++i) {
    const auto unit = static_cast<wchar_t>(i);
    const wchar_t upper = ToUpperUnit(unit);
    const wchar_t lower = ToLowerUnit(unit);
    ASSERT_EQ(ToUpperUnit(upper), upper) << i;
    ASSERT_TRUE(upper == unit || lower == unit) << i;
    ASSERT_EQ(ToLowerUnit(upper), lower) << i;  // partners and nobody else are equal without case
    pairs += upper != unit ? 1 : 0;
  }
  EXPECT_EQ(pairs, 1163);  // of Unicode 14
}

// The platform's class, spelled as a list.
TEST(WhiteSpace, IsTheseUnitsAndNoOthers) {
  constexpr wchar_t kSpaces[] =
      L"\t\n\v\f\r \x85\xA0\x1680\x2000\x2001\x2002\x2003\x2004\x2005\x2006\x2007\x2008\x2009\x200A"
      L"\x2028\x2029\x202F\x205F\x3000";
  int found = 0;
  for (const wchar_t space : kSpaces) found += space != 0 && IsWhiteSpace(space) ? 1 : 0;
  for (int i = 0; i <= 0xFFFF; ++i) found -= IsWhiteSpace(static_cast<wchar_t>(i)) ? 1 : 0;
  EXPECT_EQ(found, 0);
}

}  // namespace
}  // namespace qorgen::platform
