// The wide runtime in memory: text, numbers, formats, times, paths.

#include <cmath>
#include <cstdint>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/locale.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace qorgen::tests {
namespace {

TEST(WideText, SearchFindsFirstAndNone) {
  const wchar_t* text = L"ab日本ab日";
  EXPECT_EQ(text + 2, wcschr(text, L'日'));
  EXPECT_EQ(text + 7, wcschr(text, L'\0'));
  EXPECT_EQ(nullptr, wcschr(text, L'z'));
  EXPECT_EQ(text + 2, wcspbrk(text, L"本日"));
  EXPECT_EQ(nullptr, wcspbrk(text, L"xyz"));
  EXPECT_EQ(2u, wcscspn(text, L"本日"));
  EXPECT_EQ(7u, wcsnlen(text, 9));
  EXPECT_EQ(1u, wcsnlen(text, 1));
  for (size_t length = 0; length < 40; ++length) {
    std::vector<wchar_t> many(length + 1, L'a');
    many[length] = L'b';
    EXPECT_EQ(many.data() + length, wmemchr(many.data(), L'b', length + 1));
    EXPECT_EQ(nullptr, wmemchr(many.data(), L'b', length));
  }
}

TEST(WideText, ComparisonFoldsCaseWithoutALocale) {
  const struct {
    const wchar_t* left;
    const wchar_t* right;
    int folded;
  } rows[] = {{L"", L"", 0},    {L"a", L"", 1},        {L"ABC", L"abd", -1}, {L"abc", L"ABC", 0},
              {L"é", L"É", 0},  {L"ａ", L"Ａ", 0},     {L"ω", L"Ω", 0},      {L"ж", L"Ж", 0},
              {L"_", L"a", -1}, {L"\xFFFF", L"\x1", 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.folded, _wcsicmp(row.left, row.right)) << Utf8(row.left);
  }
  EXPECT_EQ(0, wcsncmp(L"abc", L"abd", 2));
  EXPECT_EQ(0, _wcsnicmp(L"ABc", L"abd", 2));
}

TEST(WideNumbers, IntegersStopAtThirtyTwoBits) {
  const long low = std::numeric_limits<std::int32_t>::min();
  const struct {
    const wchar_t* text;
    long value;
    int error = 0;
  } rows[] = {
      {L"12x", 12},
      {L" \x3000-12", -12},
      {L"+12", 12},
      {L"0x1F", 0},
      {L"017", 17},
      {L"１２", 12},  // digits of other scripts
      {L"", 0},
      {L"-", 0},
      {L"--1", 0},
      {L"2147483647", 2147483647},
      {L"2147483648", 2147483647, ERANGE},
      {L"-2147483648", low},
      {L"-2147483649", low, ERANGE},
      {L"99999999999999999999999", 2147483647, ERANGE},
  };
  for (const auto& row : rows) {
    errno = 0;
    EXPECT_EQ(row.value, _wtol(row.text)) << Utf8(row.text);
    EXPECT_EQ(row.error, errno) << Utf8(row.text);
  }
}

TEST(WideNumbers, FloatingPointIgnoresEveryLocale) {
  const struct {
    const wchar_t* text;
    double value;
  } rows[] = {{L"1.5", 1.5}, {L"  -2e3x", -2000},   {L".5", 0.5}, {L"5.", 5},    {L"1e", 1},
              {L"1e+", 1},   {L"1,5", 1},           {L"", 0},     {L".", 0},     {L"-", 0},
              {L"abc", 0},   {L"-abc", 0},          {L"+7", 7},   {L"0.1", 0.1}, {L"1e400", HUGE_VAL},
              {L"+-1", 0},   {L"-1e400", -HUGE_VAL}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.value, _wtof(row.text)) << Utf8(row.text);
    EXPECT_EQ(row.value < 0, std::signbit(_wtof(row.text))) << Utf8(row.text);
  }
  std::vector<wchar_t> digits(100000, L'1');
  digits.push_back(0);
  errno = 0;
  EXPECT_EQ(HUGE_VAL, _wtof(digits.data()));
  EXPECT_EQ(ERANGE, errno);
}

TEST(WideNumbers, DigitsOfAnInteger) {
  wchar_t text[34];
  EXPECT_TEXT(L"-2147483648", _itow(std::numeric_limits<int>::min(), text, 10));
  EXPECT_TEXT(L"ffffffff", _itow(-1, text, 16));
  EXPECT_EQ(32u, wcslen(_itow(-1, text, 2)));
}

int Print(wchar_t* text, size_t capacity, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = _vsnwprintf(text, capacity, format, arguments);
  va_end(arguments);
  return length;
}

int Length(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = _vscwprintf(format, arguments);
  va_end(arguments);
  return length;
}

template <typename... Arguments>
std::string Format(const wchar_t* format, Arguments... arguments) {
  wchar_t text[512];
  const int length = Print(text, 512, format, arguments...);
  EXPECT_EQ(length, Length(format, arguments...));
  return Utf8(text);
}

TEST(WideFormat, EachConversionByThePlatformsRules) {
  EXPECT_EQ("日本|日|  日本|日本  |", Format(L"%s|%.1s|%4s|%-4s|", L"日本", L"日本", L"日本", L"日本"));
  EXPECT_EQ("ab|ab|ab|あ", Format(L"%S|%hs|%ls|%c", "ab", "ab", L"ab", L'あ'));
  EXPECT_EQ("100% (null)", Format(L"%d%% %s", 100, static_cast<const wchar_t*>(nullptr)));
  EXPECT_EQ("   42|42   |00042|+42| 42|  042",
            Format(L"%5d|%-5d|%05d|%+d|% d|%5.3d", 42, 42, 42, 42, 42, 42));
  EXPECT_EQ("-42|-0042|ffffffd6|0xff|0XFF|0377",
            Format(L"%d|%05d|%x|%#x|%#X|%#o", -42, -42, -42, 255, 255, 255));
  EXPECT_EQ("9223372036854775807|-1|7", Format(L"%I64d|%lld|%I32u", 0x7FFFFFFFFFFFFFFFll, -1ll, 7u));
  EXPECT_EQ("   7|7   |abc|-5", Format(L"%*d|%*d|%.*s|%ld", 4, 7, -4, 7, 3, L"abcdef", -5L));
  EXPECT_EQ("3.14|+3.1|3.14159|0003.1| 3|3.", Format(L"%.2f|%+.1f|%g|%06.1f|%2.0f|%#.0f", 3.14159, 3.14159,
                                                     3.14159, 3.14159, 3.14159, 3.14159));
  // Two digits of exponent, or three in the older of the platform's runtimes.
  const std::string exponent = Format(L"%e", 3.14159);
  EXPECT_TRUE(exponent == "3.141590e+00" || exponent == "3.141590e+000") << exponent;
  EXPECT_EQ("|0", Format(L"%.0d|%d", 0, 0));
  EXPECT_EQ("000000000000ABCD", Format(L"%p", reinterpret_cast<void*>(0xABCD)));
  EXPECT_EQ(302u, Format(L"%.300f", 1.0).size());
}

TEST(WideFormat, ResultWhenTheBufferIsTooSmall) {
  const struct {
    size_t capacity;
    int number;
    int result;
    const wchar_t* text;
  } rows[] = {{3, 123, 3, L"123#####"},     // no room for the terminator
              {3, 12345, -1, L"123#####"},  // cut
              {4, 123, 3, L"123\0####"}};
  for (const auto& row : rows) {
    wchar_t text[] = L"########";
    EXPECT_EQ(row.result, Print(text, row.capacity, L"%d", row.number)) << row.capacity;
    EXPECT_EQ(0, std::memcmp(row.text, text, sizeof text)) << row.capacity;
  }
}

TEST(WideTime, LettersAndTheFlag) {
  tm time = {};
  time.tm_year = 124;
  time.tm_mon = 0;
  time.tm_mday = 2;
  time.tm_hour = 3;
  time.tm_min = 4;
  time.tm_sec = 5;
  time.tm_wday = 2;
  time.tm_yday = 1;
  const auto format = [&time](const wchar_t* text) {
    wchar_t buffer[128];
    wcsftime(buffer, 128, text, &time);
    return Utf8(buffer);
  };
  _wsetlocale(LC_ALL, L"C");
  EXPECT_EQ("2024/01/02 03:04:05", format(L"%Y/%m/%d %H:%M:%S"));
  EXPECT_EQ("24/1/2 3:4:5", format(L"%#y/%#m/%#d %#H:%#M:%#S"));
  EXPECT_EQ("03:/04K:05", format(L"%H:/%MK:%S"));
  EXPECT_EQ("Tue Tuesday Jan January AM 03 002 00 01 2", format(L"%a %A %b %B %p %I %j %U %W %w"));
  EXPECT_EQ("01/02/24", format(L"%x"));
  EXPECT_EQ("年2024月", format(L"年%Y月"));
  EXPECT_EQ("2024 01 2024-01-02", format(L"%G %V %F"));
  _wsetlocale(LC_ALL, L"japanese");
  EXPECT_EQ("火曜日 1月 午前", format(L"%A %B %p"));
  _wsetlocale(LC_ALL, L"C");
  wchar_t small[5];
  EXPECT_EQ(4u, wcsftime(small, 5, L"%Y", &time));
  EXPECT_EQ(0u, wcsftime(small, 4, L"%Y", &time));
}

TEST(WideTime, IsoWeeksAtTheTurnOfTheYear) {
  struct Row {
    int year, month, day, weekday, yearDay;
    const wchar_t* week;
  };
  const Row rows[] = {{2021, 1, 3, 0, 2, L"2020 53"},
                      {2021, 1, 4, 1, 3, L"2021 01"},
                      {2024, 12, 30, 1, 364, L"2025 01"},
                      {2020, 12, 31, 4, 365, L"2020 53"},
                      {2023, 1, 1, 0, 0, L"2022 52"}};
  for (const Row& row : rows) {
    tm time = {};
    time.tm_year = row.year - 1900;
    time.tm_mon = row.month - 1;
    time.tm_mday = row.day;
    time.tm_wday = row.weekday;
    time.tm_yday = row.yearDay;
    wchar_t buffer[16];
    wcsftime(buffer, 16, L"%G %V", &time);
    EXPECT_TEXT(row.week, buffer);
  }
}

TEST(WidePath, SplitAndMake) {
  struct Row {
    const wchar_t* path;
    const wchar_t* drive;
    const wchar_t* folder;
    const wchar_t* name;
    const wchar_t* extension;
  };
  const Row rows[] = {{L"C:\\a\\b.c.txt", L"C:", L"\\a\\", L"b.c", L".txt"},
                      {L"a/b\\c", L"", L"a/b\\", L"c", L""},
                      {L"\\\\server\\share\\x.y", L"", L"\\\\server\\share\\", L"x", L".y"},
                      {L"C:x", L"C:", L"", L"x", L""},
                      {L"a.b\\c", L"", L"a.b\\", L"c", L""},
                      {L"..", L"", L"", L".", L"."},
                      {L".profile", L"", L"", L"", L".profile"},
                      {L"", L"", L"", L"", L""}};
  for (const Row& row : rows) {
    wchar_t drive[_MAX_DRIVE], folder[_MAX_DIR], name[_MAX_FNAME], extension[_MAX_EXT], path[_MAX_PATH];
    _wsplitpath(row.path, drive, folder, name, extension);
    EXPECT_TEXT(row.drive, drive);
    EXPECT_TEXT(row.folder, folder);
    EXPECT_TEXT(row.name, name);
    EXPECT_TEXT(row.extension, extension);
    _wmakepath(path, drive, folder, name, extension);
    EXPECT_TEXT(row.path, path);
  }
  wchar_t path[_MAX_PATH];
  _wmakepath(path, L"Cx", L"a", L"b", L"txt");
  EXPECT_TEXT(L"C:a\\b.txt", path);
  _wmakepath(path, nullptr, L"a/", nullptr, L"");
  EXPECT_TEXT(L"a/", path);
}

TEST(Locale, NamesAreRememberedAndUnknownOnesRefused) {
  EXPECT_TEXT(L"Japanese_Japan.932", _wsetlocale(LC_ALL, L"japanese"));
  EXPECT_TEXT(L"Japanese_Japan.932", _wsetlocale(LC_ALL, nullptr));
  EXPECT_EQ(nullptr, _wsetlocale(LC_ALL, L"klingon"));
  EXPECT_EQ(nullptr, _wsetlocale(99, L"C"));
  EXPECT_TEXT(L"C", _wsetlocale(LC_TIME, L"C"));
  const wchar_t* mixed = _wsetlocale(LC_ALL, nullptr);
  EXPECT_TEXT(
      L"LC_COLLATE=Japanese_Japan.932;LC_CTYPE=Japanese_Japan.932;LC_MONETARY=Japanese_Japan.932;"
      L"LC_NUMERIC=Japanese_Japan.932;LC_TIME=C",
      mixed);
  EXPECT_TEXT(L"C", _wsetlocale(LC_ALL, L"C"));
  EXPECT_NE(nullptr, _wsetlocale(LC_ALL, mixed));
  // Wine takes the list and sets nothing by it.
  EXPECT_TRUE(HoldsExceptOnWine(Utf8(_wsetlocale(LC_CTYPE, nullptr)) == "Japanese_Japan.932"));
  _wsetlocale(LC_ALL, L"C");
}

}  // namespace
}  // namespace qorgen::tests
