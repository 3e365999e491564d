#include <limits>

#include "qorgen/platform/automation.h"

#include "tests/support/testing.h"

using qorgen::tests::Utf8;

// Text becomes the nearest double here, however many digits it has. The other host keeps thirty digits.
TEST(NumberFromText, DoublesAreTheNearestOnes) {
  const std::pair<const wchar_t*, double> rows[] = {
      {L"9007199254740993", 9007199254740992.0},
      {L"9007199254740993.00000000000000000000000000000001", 9007199254740994.0},
      {L"1.7976931348623157e308", std::numeric_limits<double>::max()},
      {L"2.2250738585072014e-308", std::numeric_limits<double>::min()},
      {L"4.9e-324", std::numeric_limits<double>::denorm_min()},
      {L"&HFFFFFFFF", 4294967295.0},
      {L"(１．５)", -1.5},
  };
  double value = 9;
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(S_OK, VarR8FromStr(text, LOCALE_USER_DEFAULT, 0, &value)) << Utf8(text);
    EXPECT_EQ(expected, value) << Utf8(text);
  }
  // Half way between two doubles, and a last digit far behind that decides.
  CString text = L"9007199254740993." + CString(L'0', 5000);
  EXPECT_EQ(S_OK, VarR8FromStr(text, LOCALE_USER_DEFAULT, 0, &value));
  EXPECT_EQ(9007199254740992.0, value);
  text.AppendChar(L'1');
  EXPECT_EQ(S_OK, VarR8FromStr(text, LOCALE_USER_DEFAULT, 0, &value));
  EXPECT_EQ(9007199254740994.0, value);
}
