// The short ways give what the published calls give: decoding with padding behind the source, and converting
// from one code page to the other in one pass.

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/linux/codepage/codec.h"

namespace {

std::string InTwoCalls(UINT from, UINT to, const std::string& source) {
  const int size = static_cast<int>(source.size());
  std::vector<wchar_t> text(source.size());
  const int units = MultiByteToWideChar(from, 0, source.data(), size, text.data(), size);
  std::string result(3 * source.size(), '\0');
  result.resize(static_cast<std::size_t>(WideCharToMultiByte(
      to, 0, text.data(), units, result.data(), static_cast<int>(result.size()), nullptr, nullptr)));
  return result;
}

std::string InOne(UINT from, UINT to, const std::string& source) {
  // To the byte, so that a sanitizer sees a step outside.
  const std::vector<char> bytes(source.begin(), source.end());
  std::vector<char> result(qorgen_recode_room(source.size()));
  return {result.data(), qorgen_recode(from, to, bytes.data(), bytes.size(), result.data())};
}

// What lies in the padding, which begins a character or ends one, is no text.
void ComparePadded(const std::string& source, char padding) {
  using namespace qorgen::platform;
  std::vector<wchar_t> expected(source.size());
  const auto* const bytes = reinterpret_cast<const unsigned char*>(source.data());
  expected.resize(Decode932(bytes, source.size(), expected.data(), expected.size()).written);
  std::vector<unsigned char> padded(bytes, bytes + source.size());
  padded.resize(source.size() + kDecodePadding, static_cast<unsigned char>(padding));
  std::vector<wchar_t> text(padded.size());
  text.resize(DecodePadded932(padded.data(), source.size(), text.data()).written);
  ASSERT_EQ(expected, text) << source;
}

TEST(Recode, EveryUnitAndEveryPairOfBytes) {
  std::string utf8, ansi;
  for (unsigned unit = 1; unit < 0x10000; ++unit) {
    const wchar_t text[] = {static_cast<wchar_t>(unit), L'x'};
    char bytes[8];
    utf8.append(bytes, static_cast<std::size_t>(
                           WideCharToMultiByte(CP_UTF8, 0, text, 2, bytes, 8, nullptr, nullptr)));
  }
  for (unsigned lead = 0; lead < 0x100; ++lead) {
    for (unsigned trail = 0; trail < 0x100; ++trail) {
      ansi += static_cast<char>(lead);
      ansi += static_cast<char>(trail);
      ansi += 'x';
    }
  }
  EXPECT_EQ(InTwoCalls(CP_UTF8, CP_ACP, utf8), InOne(CP_UTF8, CP_ACP, utf8));
  EXPECT_EQ(InTwoCalls(CP_ACP, CP_UTF8, ansi), InOne(CP_ACP, CP_UTF8, ansi));
  // What has been written is read as the same bytes again: a text stream may go over it.
  const std::string once = InOne(CP_UTF8, CP_ACP, utf8);
  EXPECT_EQ(once, InOne(CP_UTF8, CP_ACP, InOne(CP_ACP, CP_UTF8, once)));
  EXPECT_EQ(0u, qorgen_recode(CP_UTF8, 1252, "x", 1, ansi.data()));
}

TEST(Recode, RandomRunsOfAnyLength) {
  const std::string pieces[] = {
      "a",        "\",\"",     "\xB1\xDE\xC0\xBF", "\x88\x9F",     "\x93\xFA\x96\x7B",
      "\x81",     "\xFD\xA0",  "\xE3\x81\x82",     "\xEF\xBD\xB1", "\xC3\x97",
      "\xED\xA0", "\xE0\x80x", "\xF0\xA0\xAE\xB7", "\xF4\x90",     "\xEF\xBB\xBF",
      "\x80",     "\r\n",      "0123456789abcdef", "\xE7\xA5\x9E"};
  std::mt19937 random(6);
  for (int round = 0; round < 3000; ++round) {
    std::string source;
    for (unsigned left = random() % 24; left != 0; --left) {
      const std::string& piece = pieces[random() % std::size(pieces)];
      for (unsigned times = random() % 3 == 0 ? random() % 9 : 1; times != 0; --times) source += piece;
    }
    if (source.empty()) continue;
    ASSERT_EQ(InTwoCalls(CP_UTF8, CP_ACP, source), InOne(CP_UTF8, CP_ACP, source)) << source;
    ASSERT_EQ(InTwoCalls(CP_ACP, CP_UTF8, source), InOne(CP_ACP, CP_UTF8, source)) << source;
    ComparePadded(source, "a\xB1\x93\0"[round % 4]);
  }
}

}  // namespace
