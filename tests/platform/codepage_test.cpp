// Code page 932 and UTF-8 against the platform's published tables and the rules of Unicode.

#include "qorgen/platform/codepage.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "qorgen/platform/error.h"

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace qorgen::tests {
namespace {

constexpr DWORD kNoTranslation = 1113;

// Code page 932 by number: on a Windows machine the ANSI code page may be another one.
constexpr UINT kJapanese = 932;

std::vector<wchar_t> Decode(UINT codePage, const std::string& bytes) {
  const int size = static_cast<int>(bytes.size());
  std::vector<wchar_t> text(bytes.size());
  const int units = MultiByteToWideChar(codePage, 0, bytes.data(), size, text.data(), size);
  EXPECT_EQ(units, MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0));
  text.resize(static_cast<size_t>(units));
  return text;
}

std::string Encode(UINT codePage, const std::vector<wchar_t>& text) {
  const int size = static_cast<int>(text.size());
  std::string bytes(3 * text.size(), '\0');
  const int count =
      WideCharToMultiByte(codePage, 0, text.data(), size, bytes.data(), 3 * size, nullptr, nullptr);
  EXPECT_EQ(count, WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr));
  bytes.resize(static_cast<size_t>(count));
  return bytes;
}

using Units = std::vector<wchar_t>;

TEST(CodePage932, WhereConvertersDisagreeThePlatformsChoiceStands) {
  struct Row {
    std::string bytes;
    Units text;
  };
  const Row rows[] = {
      {"\x81\x60", {0xFF5E}}, {"\x81\x61", {0x2225}}, {"\x81\x7C", {0xFF0D}}, {"\x81\x5C", {0x2015}},
      {"\x81\x91", {0xFFE0}}, {"\x81\x92", {0xFFE1}}, {"\x81\xCA", {0xFFE2}}, {"\x81\x5F", {0xFF3C}},
      {"\x5C", {0x5C}},       {"\x7E", {0x7E}},       {"\x80", {0x80}},       {"\xA1", {0xFF61}},
      {"\xDF", {0xFF9F}},     {"\x87\x40", {0x2460}}, {"\x87\x8A", {0x3231}}, {"\xFA\x40", {0x2170}},
      {"\xFC\x4B", {0x9ED1}}, {"\xF0\x40", {0xE000}}, {"\xF0\x80", {0xE03F}}, {"\xF9\xFC", {0xE757}},
      {"\x88\x9F", {0x4E9C}}, {"\xEA\xA4", {0x7199}}, {"\x83\x5C", {0x30BD}}, {"\x87\x90", {0x2252}},
      {"\xED\x40", {0x7E8A}}, {"\xEE\xEF", {0x2170}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.text, Decode(kJapanese, row.bytes));
    // The last three have a preferred code elsewhere.
    if (&row < std::end(rows) - 3) {
      EXPECT_EQ(row.bytes, Encode(kJapanese, row.text));
    }
  }
  EXPECT_EQ("\x81\xE0", Encode(kJapanese, {0x2252}));
  EXPECT_EQ("\xFA\x5C", Encode(kJapanese, {0x7E8A}));
  EXPECT_EQ("\xFA\x40", Encode(kJapanese, {0x2170}));
}

TEST(CodePage932, EveryCharacterComesBack) {
  int codes = 0;
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const wchar_t text = static_cast<wchar_t>(unit);
    char bytes[2];
    BOOL replaced = FALSE;
    const int count =
        WideCharToMultiByte(kJapanese, WC_NO_BEST_FIT_CHARS, &text, 1, bytes, 2, nullptr, &replaced);
    if (replaced) continue;
    ++codes;
    wchar_t back = 0;
    // Wine has the four single bytes behind these among the invalid ones when it is asked to refuse those.
    const DWORD flags = UnderWine() && unit >= 0xF8F0 && unit <= 0xF8F3 ? 0 : MB_ERR_INVALID_CHARS;
    ASSERT_EQ(1, MultiByteToWideChar(kJapanese, flags, bytes, count, &back, 1)) << unit;
    ASSERT_EQ(text, back);
  }
  // The published table has 9,486 entries, 84 of them best fits.
  EXPECT_EQ(9486 - 84, codes);
}

TEST(CodePage932, CharactersWithoutACode) {
  EXPECT_EQ(
      "\\|c\x83\x94"
      "AeoU",
      Encode(kJapanese, {0xA5, 0xA6, 0xA9, 0x3094, 0xC0, 0xE9, 0xF6, 0xDC}));
  EXPECT_EQ("a?b??", Encode(kJapanese, {L'a', 0xAC00, L'b', 0xD842, 0xDFB7}));
  const wchar_t text[] = {L'a', 0xAC00, 0};
  char bytes[8];
  BOOL used = FALSE;
  EXPECT_EQ(4, WideCharToMultiByte(kJapanese, 0, text, -1, bytes, 8, "\x81\xAC", &used));
  EXPECT_STREQ("a\x81\xAC", bytes);
  EXPECT_TRUE(used);
  EXPECT_EQ(2, WideCharToMultiByte(kJapanese, 0, L"?", -1, bytes, 8, "\x81\xAC", &used));
  EXPECT_FALSE(used);
  const wchar_t yen[] = {0xA5};
  EXPECT_EQ(1, WideCharToMultiByte(kJapanese, WC_NO_BEST_FIT_CHARS, yen, 1, bytes, 8, nullptr, &used));
  EXPECT_TRUE(used && bytes[0] == '?');
}

TEST(CodePage932, BytesThatAreNoCharacter) {
  const std::pair<std::string, Units> rows[] = {
      {"\x81\x20z", {0x30FB, L'z'}},
      {"\x85\x40z", {0x30FB, L'z'}},
      {"a\x81", {L'a', 0x30FB}},
      {std::string("a\x81\0", 3), {L'a', 0x30FB, 0}},
  };
  wchar_t text[8];
  for (const auto& [bytes, units] : rows) {
    EXPECT_EQ(units, Decode(kJapanese, bytes)) << bytes;
    EXPECT_EQ(0, MultiByteToWideChar(kJapanese, MB_ERR_INVALID_CHARS, bytes.c_str(), -1, text, 8)) << bytes;
    EXPECT_EQ(kNoTranslation, GetLastError()) << bytes;
  }
  EXPECT_EQ(2, MultiByteToWideChar(kJapanese, MB_ERR_INVALID_CHARS, "\x81\x45", -1, text, 8));
}

// Runs of one-byte characters and pairs at every offset of the decoder's blocks, against one character at a
// time.
TEST(CodePage932, MixedRunsDecodeAsTheirCharactersDo) {
  const std::pair<std::string, wchar_t> characters[] = {{"a", L'a'},          {"\xB1", 0xFF71},
                                                        {"\x93\xFA", 0x65E5}, {"\x83\x5C", 0x30BD},
                                                        {"\x80", 0x80},       {"\xFD", 0xF8F1}};
  std::mt19937 random(1);
  for (int round = 0; round < 400; ++round) {
    std::string bytes;
    Units expected;
    for (int run = 0; run <= round % 8; ++run) {
      const auto& [character, unit] = characters[random() % std::size(characters)];
      for (unsigned times = random() % 20 + 1; times != 0; --times) {
        bytes += character;
        expected.push_back(unit);
      }
    }
    ASSERT_EQ(expected, Decode(kJapanese, bytes)) << round;
    Units exact(expected.size());
    ASSERT_EQ(static_cast<int>(exact.size()),
              MultiByteToWideChar(kJapanese, 0, bytes.data(), static_cast<int>(bytes.size()), exact.data(),
                                  static_cast<int>(exact.size())));
    ASSERT_EQ(expected, exact);
  }
}

TEST(CodePageUtf8, ValidTextGoesThereAndBack) {
  for (char32_t value = 1; value <= 0x10FFFF; value += value < 0x3000 ? 1 : 97) {
    if (value >= 0xD800 && value <= 0xDFFF) continue;
    Units text;
    if (value < 0x10000) {
      text = {static_cast<wchar_t>(value)};
    } else {
      text = {static_cast<wchar_t>(0xD7C0 + (value >> 10)), static_cast<wchar_t>(0xDC00 + (value & 0x3FF))};
    }
    const std::string bytes = Encode(CP_UTF8, text);
    ASSERT_EQ(text, Decode(CP_UTF8, bytes)) << static_cast<unsigned>(value);
    ASSERT_EQ(value < 0x80 ? 1u : value < 0x800 ? 2u : value < 0x10000 ? 3u : 4u, bytes.size());
  }
  EXPECT_EQ("日本 0123456789 abcdefghij 漢字",
            Encode(CP_UTF8, Decode(CP_UTF8, "日本 0123456789 abcdefghij 漢字")));
}

TEST(CodePageUtf8, EachLongestPrefixBecomesOneReplacement) {
  struct Row {
    const char* bytes;
    size_t replacements;
    bool on_wine = true;  // it replaces by another count where a second byte is out of its range
  };
  const Row rows[] = {{"\x80", 1},
                      {"\xC0\x80", 2},
                      {"\xE3\x81", 1},
                      {"\xE0\x80\x80", 3, false},
                      {"\xED\xA0\x80", 3, false},
                      {"\xF0\x9F\x98", 1},
                      {"\xF4\x90\x80\x80", 4, false},
                      {"\xF8\x88\x80\x80", 4},
                      {"\xFF\xFE", 2},
                      {"\xE3\xE3\x81", 2},
                      {"\xF0\x80", 2, false},
                      {"\xC3", 1}};
  for (const Row& row : rows) {
    const std::string bytes = std::string("a") + row.bytes + "z";
    Units expected(row.replacements + 2, 0xFFFD);
    expected.front() = L'a';
    expected.back() = L'z';
    EXPECT_TRUE(AsPublished(Decode(CP_UTF8, bytes) == expected, row.on_wine)) << bytes;
    wchar_t text[16];
    EXPECT_EQ(0, MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.c_str(), -1, text, 16));
    EXPECT_EQ(kNoTranslation, GetLastError());
  }
  EXPECT_EQ(
      "\xEF\xBF\xBD"
      "a\xEF\xBF\xBD",
      Encode(CP_UTF8, {0xDC00, L'a', 0xD800}));
}

TEST(CodePage, ArgumentsAndSmallBuffers) {
  wchar_t text[4];
  char bytes[4];
  const auto error = [](int result) {
    EXPECT_EQ(0, result);
    return GetLastError();
  };
  EXPECT_EQ(ERROR_INVALID_PARAMETER, error(MultiByteToWideChar(932, 0, nullptr, 1, text, 4)));
  EXPECT_EQ(ERROR_INVALID_PARAMETER, error(MultiByteToWideChar(932, 0, "a", 0, text, 4)));
  EXPECT_EQ(ERROR_INVALID_PARAMETER, error(MultiByteToWideChar(4711, 0, "a", 1, text, 4)));
  EXPECT_EQ(ERROR_INVALID_PARAMETER, error(MultiByteToWideChar(932, 0, "a", 1, nullptr, 4)));
  EXPECT_EQ(ERROR_INVALID_FLAGS, error(MultiByteToWideChar(CP_UTF8, 0x100, "a", 1, text, 4)));
  // Wine passes over a default character that UTF-8 has no use for.
  SetLastError(0);
  EXPECT_TRUE(HoldsExceptOnWine(WideCharToMultiByte(CP_UTF8, 0, L"a", 1, bytes, 4, "?", nullptr) == 0 &&
                                GetLastError() == ERROR_INVALID_PARAMETER));
  EXPECT_EQ(ERROR_INVALID_PARAMETER, error(WideCharToMultiByte(932, 0, L"a", 0, bytes, 4, nullptr, nullptr)));
  EXPECT_EQ(ERROR_INSUFFICIENT_BUFFER, error(MultiByteToWideChar(932, 0, "abcd\x93\xFA", 6, text, 4)));
  EXPECT_EQ(ERROR_INSUFFICIENT_BUFFER, error(MultiByteToWideChar(CP_UTF8, 0, "abcde", 5, text, 4)));
  EXPECT_EQ(ERROR_INSUFFICIENT_BUFFER,
            error(WideCharToMultiByte(932, 0, L"abc日", 4, bytes, 4, nullptr, nullptr)));
  EXPECT_EQ(ERROR_INSUFFICIENT_BUFFER,
            error(WideCharToMultiByte(CP_UTF8, 0, L"ab日", 3, bytes, 4, nullptr, nullptr)));
  EXPECT_EQ(4, MultiByteToWideChar(932, 0, "abc\x93\xFA", 5, text, 4));
}

}  // namespace
}  // namespace qorgen::tests
