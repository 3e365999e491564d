#include <cstring>
#include <random>

#include "qorgen/afx/memory.h"
#include "qorgen/numeric/num_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST(NumberFormat, OfTexts) {
  // L"12 34": a blank alone keeps the text as it is
  // 0x100002: the output stops where the digit would stand
  // L"1-2": the first character goes, whatever it is
  using Row = std::tuple<const wchar_t*, unsigned int, int, int, wchar_t, const char*>;
  for (const auto& [text, flags, width, decimals, pad, expected] :
       Rows(Row(L"1234567", 0x01, 0, 0, L' ', "1,234,567"), Row(L"-1234", 0x71, 0, 0, L' ', "△1,234"),
            Row(L"-1234", 0x41, 0, 0, L' ', "▲1,234"), Row(L"-1234", 0x0D, 0, 0, L' ', "(-1,234)"),
            Row(L"1,2a34", 0x01, 0, 0, L' ', "1,234"), Row(L"12 34", 0x10, 0, 0, L' ', "12 34"),
            Row(L"1, 234", 0x10, 0, 0, L' ', "1234"), Row(L"-12", 0x02, 6, 0, L'*', "-****12"),
            Row(L"1234.5", 0x03, 8, 2, L' ', "1,234.5 "), Row(L"", 0x02, 3, 0, L' ', "  0"),
            Row(L"0", 0x100002, 4, 0, L'*', "***"), Row(L"abc", 0x0D, 0, 0, L' ', "()"),
            Row(L"1-2", 0x10, 0, 0, L' ', "-2"))) {
    int length = -1;
    EXPECT_EQ(expected, TakeUtf8(CQorNumUtil::FormatString(text, flags, &length, width, decimals, pad)))
        << Utf8(text) << " flags " << flags;
  }
  int length = -1;
  EXPECT_EQ(nullptr, CQorNumUtil::FormatString(L"12", 0, &length, 0, 0, L' '));
  EXPECT_EQ(nullptr, CQorNumUtil::FormatString(L"", 1, &length, 0, 0, L' '));
  EXPECT_EQ(nullptr, CQorNumUtil::FormatString(static_cast<const wchar_t*>(nullptr), 2, &length, 0, 0, L' '));
  EXPECT_EQ(-1, length);
}

// The layout as its steps tell it, on a generous row of cells.
std::string Stepwise(const std::wstring_view source, unsigned flags, int width, int decimals, wchar_t pad) {
  const bool fixed = (flags & 2) != 0;
  wchar_t text[64] = {};
  int length = 0, number_characters = 0;
  for (wchar_t c : source) number_characters += (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ' ';
  for (wchar_t c : source) {
    if (number_characters == static_cast<int>(source.size()) || (c != ' ' && c < 0x3A)) text[length++] = c;
  }
  const int int_width = fixed && decimals > 0 && width > 0 ? 2 : width;
  int dot = 0;
  while (dot < length && text[dot] != '.') ++dot;
  const int frac = dot < length ? length - dot - 1 : 0;
  bool minus = false, blank = (flags & 0x100000) != 0;
  for (int i = 0; i < length; ++i) {
    minus |= text[i] == '-';
    if (text[i] >= '1' && text[i] <= '9') blank = false;
  }
  const int digits = minus ? dot - 1 : dot;
  int groups = (flags & 1) != 0 ? digits / 3 : 0;
  if ((flags & 1) != 0 && digits > 0 && digits % 3 == 0) --groups;
  wchar_t cells[400];
  for (wchar_t& cell : cells) cell = pad;
  int at = 0;
  if (!blank && (flags & 4) != 0) cells[at++] = '(';
  if (minus && (flags & 0x20) != 0) {
    cells[at++] = L'△';
  } else if (minus && (flags & 0x40) != 0) {
    cells[at++] = L'▲';
  } else if (minus && (flags & 0x10) == 0) {
    cells[at++] = '-';
  }
  if (fixed && int_width - digits - decimals > 0) at += int_width - digits - decimals;
  int remaining = digits;
  for (int i = minus ? 1 : 0; i < length; ++i) {
    cells[at++] = blank ? L'\0' : text[i];
    if (remaining >= 3 && groups >= 1 && remaining % 3 == 1) cells[at++] = ',';
    --remaining;
    if (remaining == 0 && fixed && decimals >= 1 && dot == length) cells[at++] = '.';
  }
  if (fixed && decimals - frac > 0) at += decimals - frac;
  if (!blank && (flags & 8) != 0) cells[at++] = ')';
  cells[at] = 0;
  return Utf8(cells);
}

TEST(NumberFormat, FollowsTheStepsOnAnyText) {
  std::mt19937 random(12);
  const wchar_t alphabet[] = L"0012345-. a";
  for (int i = 0; i < 60000; ++i) {
    wchar_t text[16] = {};
    const std::size_t length = 1 + random() % 14;
    for (std::size_t k = 0; k < length; ++k) text[k] = alphabet[random() % 11];
    const unsigned flags = (random() % 0x80) | (random() % 4 == 0 ? 0x100000u : 0u);
    if (flags == 0) continue;
    const int width = static_cast<int>(random() % 24) - 2;
    const int decimals = static_cast<int>(random() % 8) - 2;
    const wchar_t pad = L"* "[random() % 2];
    int reported = -1;
    wchar_t* const got = CQorNumUtil::FormatString(text, flags, &reported, width, decimals, pad);
    EXPECT_EQ(CString::StringLength(got), reported);
    ASSERT_EQ(Stepwise({text, length}, flags, width, decimals, pad), TakeUtf8(got))
        << Utf8(text) << " flags " << std::hex << flags << " width " << std::dec << width << " decimals "
        << decimals;
  }
}

TEST(NumberFormat, OfIntegersAndDoubles) {
  const std::pair<wchar_t*, const char*> rows[] = {
      {CQorNumUtil::FormatString(12345, 0, nullptr, 0, L' '), "12345"},
      {CQorNumUtil::FormatString(INT_MIN, 0x21, nullptr, 0, L' '), "△2,147,483,648"},
      {CQorNumUtil::FormatString(static_cast<short>(-32768), 0x41, nullptr, 0, L' '), "▲32,768"},
      {CQorNumUtil::FormatString(static_cast<unsigned short>(65535), 0x03, nullptr, 7, L' '), "  65,535"},
      {CQorNumUtil::FormatString(-1L, 0x01, nullptr, 0, L' '), "-1"},
      {CQorNumUtil::FormatString(UINT_MAX, 0x01, nullptr, 0, L' '), "4,294,967,295"},
      {CQorNumUtil::FormatString(ULONG_MAX, 0x01, nullptr, 0, L' '), "4,294,967,295"},
      {CQorNumUtil::FormatString(0, 0x100001, nullptr, 0, L' '), ""},
      {CQorNumUtil::FormatString(1234.5, 0x03, nullptr, 2, 3, 8, L' '), "1,234.50"},
      {CQorNumUtil::FormatString(1234.5, 0, nullptr, 2, 3, 0, L' '), "1234.5"},
      {CQorNumUtil::FormatString(-0.5, 0x20, nullptr, 0, 3, 0, L' '), "△1"},
      {CQorNumUtil::FormatString(0.0, 0x100000, nullptr, 2, 3, 0, L' '), ""},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(expected, TakeUtf8(text));
}

// Integers have a way of their own through the common layouts; the text form is the plain one.
TEST(NumberFormat, OfIntegersIsThatOfTheirText) {
  std::mt19937 random(13);
  for (int i = 0; i < 20000; ++i) {
    const int value = static_cast<int>(random()) >> random() % 32;
    const unsigned int flags = 1 + (random() % 0x7F) + (random() % 4 == 0 ? 0x100000u : 0u);
    const int width = static_cast<int>(random() % 16);
    wchar_t* const plain = CQorNumUtil::ToString(value, nullptr);
    int expected_length = -1, length = -2;
    const std::string expected =
        TakeUtf8(CQorNumUtil::FormatString(plain, flags, &expected_length, width, 0, L'*'));
    ASSERT_EQ(expected, TakeUtf8(CQorNumUtil::FormatString(value, flags, &length, width, L'*'))) << flags;
    ASSERT_EQ(expected_length, length);
    QorFree(plain);
  }
}

TEST(NumberFormat, StaysInBoundsWithAnyField) {
  const double values[] = {0, -1, 1e308, -1e308, std::numeric_limits<double>::infinity(), std::nan("")};
  for (double value : values) {
    for (int size : {INT_MIN, -1, 0, 1, 100}) {
      for (wchar_t pad : {L'\0', L' '}) {
        QorFree(CQorNumUtil::FormatString(value, 0x7F, nullptr, size, 3, size, pad));
        QorFree(CQorNumUtil::FormatString(L"--..()5", 0x7F, nullptr, size, size / 2, pad));
      }
    }
  }
  int length = 0;
  EXPECT_EQ("", TakeUtf8(CQorNumUtil::FormatString(L"5", 0x02, &length, 4, 0, L'\0')));
  EXPECT_EQ(0, length);
  QorFree(CQorNumUtil::FormatString(L"5", 0x02, &length, INT_MAX, 0, L' '));
  EXPECT_EQ(1000000, length);
}

}  // namespace
