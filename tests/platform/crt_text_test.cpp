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

TEST(WideText, CopyAndJoinStayInsideTheirCount) {
  wchar_t buffer[8];
  wmemset(buffer, L'#', 8);
  EXPECT_TEXT(L"ab", wcsncpy(buffer, L"ab", 4));
  EXPECT_EQ(0, wmemcmp(buffer, L"ab\0\0####", 8));
  wcsncpy(buffer, L"日本国", 2);
  EXPECT_EQ(0, wmemcmp(buffer, L"日本\0\0####", 8));
  EXPECT_TEXT(L"日本ab", wcsncat(buffer, L"abc", 2));
  EXPECT_TEXT(L"日本abz", wcscat(buffer, L"z"));
  EXPECT_TEXT(L"zba本日", _wcsrev(buffer));
  EXPECT_TEXT(L"zb", lstrcpynW(buffer, L"zba", 3));
  EXPECT_EQ(2u, wcsnlen(L"ab", 9));
  EXPECT_EQ(1u, wcsnlen(L"ab", 1));
}

TEST(WideText, SearchFindsFirstLastAndNone) {
  const wchar_t* text = L"ab日本ab日";
  EXPECT_EQ(text + 2, wcschr(text, L'日'));
  EXPECT_EQ(text + 6, wcsrchr(text, L'日'));
  EXPECT_EQ(text + 7, wcschr(text, L'\0'));
  EXPECT_EQ(text + 7, wcsrchr(text, L'\0'));
  EXPECT_EQ(nullptr, wcschr(text, L'z'));
  EXPECT_EQ(text + 3, wcsstr(text, L"本a"));
  EXPECT_EQ(text, wcsstr(text, L""));
  EXPECT_EQ(nullptr, wcsstr(text, L"日本b"));
  EXPECT_EQ(text + 2, wcspbrk(text, L"本日"));
  EXPECT_EQ(nullptr, wcspbrk(text, L"xyz"));
  EXPECT_EQ(2u, wcsspn(text, L"ba"));
  EXPECT_EQ(2u, wcscspn(text, L"本日"));
  for (size_t length = 0; length < 40; ++length) {
    std::vector<wchar_t> many(length + 1, L'a');
    many[length] = L'b';
    EXPECT_EQ(many.data() + length, wmemchr(many.data(), L'b', length + 1));
    EXPECT_EQ(nullptr, wmemchr(many.data(), L'b', length));
  }
}

TEST(WideText, ComparisonIsByUnitAndFoldsCaseWithoutALocale) {
  struct Row {
    const wchar_t* left;
    const wchar_t* right;
    int exact;
    int folded;
  };
  const Row rows[] = {{L"", L"", 0, 0},         {L"a", L"", 1, 1},  {L"ABC", L"abd", -1, -1},
                      {L"abc", L"ABC", 1, 0},   {L"é", L"É", 1, 0}, {L"ａ", L"Ａ", 1, 0},
                      {L"ω", L"Ω", 1, 0},       {L"ж", L"Ж", 1, 0}, {L"_", L"a", -1, -1},
                      {L"\xFFFF", L"\x1", 1, 1}};
  const auto sign = [](int value) { return (value > 0) - (value < 0); };
  for (const Row& row : rows) {
    EXPECT_EQ(row.exact, sign(wcscmp(row.left, row.right))) << Utf8(row.left);
    EXPECT_EQ(row.folded, sign(_wcsicmp(row.left, row.right))) << Utf8(row.left);
  }
  EXPECT_EQ(0, wcsncmp(L"abc", L"abd", 2));
  EXPECT_EQ(0, _wcsnicmp(L"ABc", L"abd", 2));
}

TEST(WideNumbers, IntegersStopAtThirtyTwoBits) {
  struct Row {
    const wchar_t* text;
    int base;
    long value;
    unsigned long plain;
    int used;
    bool range;
  };
  const long low = std::numeric_limits<std::int32_t>::min();
  const Row rows[] = {
      {L"12x", 10, 12, 12, 2, false},
      {L" \x3000-12", 10, -12, 0xFFFFFFF4, 5, false},
      {L"+0x1F", 16, 31, 31, 5, false},
      {L"0x", 16, 0, 0, 1, false},
      {L"0x1f", 0, 31, 31, 4, false},
      {L"017", 0, 15, 15, 3, false},
      {L"zz", 36, 1295, 1295, 2, false},
      {L"１２", 10, 12, 12, 2, false},
      {L"", 10, 0, 0, 0, false},
      {L"-", 10, 0, 0, 0, false},
      {L"2147483647", 10, 2147483647, 2147483647, 10, false},
      {L"-2147483648", 10, low, 0x80000000, 11, false},
  };
  for (const Row& row : rows) {
    wchar_t* end = nullptr;
    errno = 0;
    EXPECT_EQ(row.value, wcstol(row.text, &end, row.base)) << Utf8(row.text);
    // Wine reads nothing at all of a prefix without digits.
    const bool lone_prefix = wcscmp(row.text, L"0x") == 0;
    EXPECT_TRUE(AsPublished(end - row.text == row.used, !lone_prefix)) << Utf8(row.text);
    EXPECT_EQ(row.plain, wcstoul(row.text, &end, row.base)) << Utf8(row.text);
    EXPECT_EQ(0, errno) << Utf8(row.text);
  }
  const auto ranged = [](auto call) {
    errno = 0;
    const auto value = call();
    EXPECT_EQ(ERANGE, errno);
    return value;
  };
  EXPECT_EQ(2147483647, ranged([] { return wcstol(L"2147483648", nullptr, 10); }));
  EXPECT_EQ(low, ranged([] { return _wtol(L"-2147483649"); }));
  EXPECT_EQ(2147483647, ranged([] { return _wtoi(L"99999999999999999999999"); }));
  EXPECT_EQ(0xFFFFFFFFul, ranged([] { return wcstoul(L"4294967296", nullptr, 10); }));
  EXPECT_EQ(std::numeric_limits<long long>::max(),
            ranged([] { return wcstoll(L"9223372036854775808", nullptr, 10); }));
  EXPECT_EQ(std::numeric_limits<unsigned long long>::max(), wcstoull(L"18446744073709551615", nullptr, 10));
  EXPECT_EQ(std::numeric_limits<long long>::min(), _wtoi64(L"-9223372036854775808"));
}

TEST(WideNumbers, FloatingPointIgnoresEveryLocale) {
  struct Row {
    const wchar_t* text;
    double value;
    int used;
  };
  const Row rows[] = {{L"1.5", 1.5, 3},
                      {L"  -2e3x", -2000, 6},
                      {L".5", 0.5, 2},
                      {L"5.", 5, 2},
                      {L"1e", 1, 1},
                      {L"1e+", 1, 1},
                      {L"1,5", 1, 1},
                      {L"", 0, 0},
                      {L".", 0, 0},
                      {L"-", 0, 0},
                      {L"abc", 0, 0},
                      {L"+7", 7, 2},
                      {L"0.1", 0.1, 3},
                      {L"1e400", HUGE_VAL, 5},
                      {L"-1e400", -HUGE_VAL, 6},
                      {L"+-1", 0, 0}};
  for (const Row& row : rows) {
    wchar_t* end = nullptr;
    EXPECT_EQ(row.value, wcstod(row.text, &end)) << Utf8(row.text);
    EXPECT_EQ(row.used, end - row.text) << Utf8(row.text);
  }
  std::vector<wchar_t> digits(100000, L'1');
  digits.push_back(0);
  errno = 0;
  EXPECT_EQ(HUGE_VAL, _wtof(digits.data()));
  EXPECT_EQ(ERANGE, errno);
}

TEST(WideNumbers, DigitsInEveryRadix) {
  wchar_t text[70];
  EXPECT_TEXT(L"-2147483648", _itow(std::numeric_limits<int>::min(), text, 10));
  EXPECT_TEXT(L"ffffffff", _itow(-1, text, 16));
  EXPECT_TEXT(L"-1", _ltow(-1, text, 10));
  EXPECT_TEXT(L"zz", _ultow(1295, text, 36));
  EXPECT_TEXT(L"-9223372036854775808", _i64tow(std::numeric_limits<long long>::min(), text, 10));
  EXPECT_EQ(64u, wcslen(_ui64tow(~0ull, text, 2)));
}

template <typename... Arguments>
std::string Format(const wchar_t* format, Arguments... arguments) {
  wchar_t text[512];
  const int length = _snwprintf(text, 512, format, arguments...);
  EXPECT_EQ(length, _scwprintf(format, arguments...));
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
  wchar_t text[8];
  wmemset(text, L'#', 8);
  EXPECT_EQ(3, _snwprintf(text, 3, L"%s", L"abc"));
  EXPECT_EQ(0, wmemcmp(text, L"abc#####", 8));
  EXPECT_EQ(-1, _snwprintf(text, 3, L"%d", 12345));
  EXPECT_EQ(0, wmemcmp(text, L"123#####", 8));
  EXPECT_EQ(3, _snwprintf(text, 4, L"%s", L"xyz"));
  EXPECT_TEXT(L"xyz", text);
  EXPECT_EQ(7, swprintf(text, 8, L"%07d", 1));
  EXPECT_EQ(5, _scwprintf(L"%d", 12345));
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
