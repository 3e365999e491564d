#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "qorgen/afx/array.h"
#include "qorgen/afx/memory.h"
#include "qorgen/text/string_util.h"

#include "tests/support/text.h"

namespace {

using namespace qorgen::tests;

std::vector<std::string> Parts(const CStringArray& parts) {
  std::vector<std::string> result;
  for (std::intptr_t i = 0; i < parts.GetSize(); ++i) result.push_back(Utf8(parts[i]));
  return result;
}

TEST(IsMatch, wants_every_pattern) {
  CStringArray patterns;
  EXPECT_EQ(0, CQorStringUtil::IsMatch(L"abc", patterns, 0)) << "no patterns";
  patterns.Add(L"b");
  patterns.Add(L"c");
  EXPECT_EQ(1, CQorStringUtil::IsMatch(L"abc", patterns, 0));
  EXPECT_EQ(0, CQorStringUtil::IsMatch(L"ＡＢＣ", patterns, 0));
  EXPECT_EQ(1, CQorStringUtil::IsMatch(L"ＡＢＣ", patterns, 1));
  EXPECT_EQ(0, CQorStringUtil::IsMatch(L"ab", patterns, 1));
  patterns.Add(L"");
  EXPECT_EQ(0, CQorStringUtil::IsMatch(L"abc", patterns, 0)) << "an empty pattern fails the match";
  patterns.RemoveAll();
  patterns.Add(L" ");
  EXPECT_EQ(0, CQorStringUtil::IsMatch(L"  \x3000", patterns, 0)) << "blank text";
  EXPECT_EQ(0, CQorStringUtil::IsMatch(nullptr, patterns, 0));
  EXPECT_EQ(1, CQorStringUtil::IsMatch(L" a", patterns, 0)) << "searched untrimmed";
}

TEST(VerticalNumerals, examples) {
  struct {
    const wchar_t *source, *chinese, *wide;
  } const rows[] = {
      {L"12-3", L"一二ー三", L"１２―３"},
      {L"０９‐－−", L"〇九ーー−", L"０９――−"},
      {L"ｶﾞa", L"ガａ", L"ガａ"},
      {L"", L"", L""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Utf8(row.chinese), TakeUtf8(CQorStringUtil::ToColumnarWritingChineseNumerals(row.source)));
    EXPECT_EQ(Utf8(row.wide), TakeUtf8(CQorStringUtil::ToColumnarWritingWideNumerals(row.source)));
    wchar_t buffer[8] = L"#";
    EXPECT_EQ(CString::StringLength(row.chinese),
              CQorStringUtil::ToColumnarWritingChineseNumerals(buffer, row.source));
    EXPECT_TEXT(row.chinese, buffer);
    EXPECT_EQ(CString::StringLength(row.wide),
              CQorStringUtil::ToColumnarWritingWideNumerals(buffer, row.source));
    EXPECT_TEXT(row.wide, buffer);
  }
  EXPECT_EQ(nullptr, CQorStringUtil::ToColumnarWritingChineseNumerals(nullptr));
  EXPECT_EQ(nullptr, CQorStringUtil::ToColumnarWritingWideNumerals(nullptr));
  wchar_t buffer[] = L"x";
  EXPECT_EQ(0, CQorStringUtil::ToColumnarWritingWideNumerals(buffer, nullptr));
}

TEST(LineMarks, encode_and_decode) {
  struct {
    const wchar_t* text;
    int last_line, ampersand;
    const wchar_t *encoded, *decoded;
  } const rows[] = {
      {L"a\r\nb\rc\nd", 9, 1, L"a&nb&nc&nd", L"abcd"},
      {L"a\r\nb\r\nc", 0, 0, L"a", L"abc"},
      {L"a\r\nb\r\nc", 1, 0, L"a\\nb", L"abc"},
      {L"a\r\nb\r\nc", 5, 0, L"a\\nb\\nc", L"abc"},
      {L"a\r\n", 0, 1, L"a", L"a"},
      {L"\n\r", 1, 1, L"&n", L""},
      {L"a&nb\\nc", 0, 1, L"a", L"a"},  // a mark of the text itself counts
      {L"a&nb\\nc", 1, 1, L"a&nb\\nc", L"a\r\nb\\nc"},
      {L"a&nb\\nc", 1, 0, L"a&nb\\nc", L"a&nb\r\nc"},
      {L"&&n\n&", 3, 1, L"&&n&n&", L"&\r\n&"},
      {L"&\nn", 3, 1, L"&&nn", L"\r\n"},  // what removing a break joins is a mark
      {L"a\nb", -1, 1, L"", L""},
      {L"a\nb", INT_MAX, 1, L"a&nb", L"ab"},
      {L"", 0, 1, L"", L""},
      {nullptr, 0, 1, L"", L""},
  };
  for (const auto& row : rows) {
    CString dest(L"before");
    CQorStringUtil::GetEncodeString(row.text, dest, row.last_line, row.ampersand);
    EXPECT_TEXT(row.encoded, dest) << Utf8(row.text) << row.last_line;
    CQorStringUtil::GetDecodeString(row.text, dest, row.last_line, row.ampersand);
    EXPECT_TEXT(row.decoded, dest) << Utf8(row.text) << row.last_line;
  }
  CString text(L"one\r\ntwo");
  CQorStringUtil::GetEncodeString(text, text, 9, 0);
  EXPECT_TEXT(L"one\\ntwo", text);
  CQorStringUtil::GetDecodeString(text, text, 9, 0);
  EXPECT_TEXT(L"one\r\ntwo", text);
}

TEST(WhiteSpace, splits_as_a_token_iterator) {
  struct {
    const wchar_t* text;
    int result;
    std::vector<std::string> parts;
  } const rows[] = {
      {L"a b", 1, {"a", "b"}},
      {L"  a \t\r\n b\x3000かな", 1, {"", "a", "b", "かな"}},
      {L"a  ", 1, {"a"}},
      {L"a", 1, {"a"}},
      {L"", 0, {}},
      {L" \x3000\t", 0, {}},
      {nullptr, 0, {}},
  };
  for (const auto& row : rows) {
    CStringArray parts;
    parts.Add(L"old");
    EXPECT_EQ(row.result, CQorStringUtil::SplitSpace(row.text, parts));
    EXPECT_EQ(row.parts, Parts(parts)) << Utf8(row.text);
    EXPECT_EQ(1 - row.result, CQorStringUtil::IsSpace(row.text)) << Utf8(row.text);
  }
  CStringArray parts;
  parts.Add(L"x y");
  EXPECT_EQ(1, CQorStringUtil::SplitSpace(parts[0], parts)) << "an element of the array itself";
  EXPECT_EQ((std::vector<std::string>{"x", "y"}), Parts(parts));
}

TEST(Lines, breaks_to_spaces) {
  CString text(L"a\r\nb\rc\nd\r\r\n");
  CQorStringUtil::ReturnToSpace(text, text);
  EXPECT_TEXT(L"a b\rc\nd\r ", text);
  CQorStringUtil::ReturnToSpace(nullptr, text);
  EXPECT_TEXT(L"", text);
}

TEST(Lines, appended_with_a_separator) {
  struct {
    const wchar_t *before, *line;
    int always;
    const wchar_t* after;
  } const rows[] = {
      {L"", L"x", 0, L"x"},        {L"", L"x", 1, L" \nx"},   {L"a", L"x", 0, L"a \nx"},
      {L"a", L"x", 1, L"a \nx"},   {L"a", L"", 0, L"a"},      {L"a", L"", 1, L"a \n"},
      {L"a", nullptr, 1, L"a \n"}, {L"", nullptr, 1, L" \n"}, {L"", nullptr, 0, L""},
      {L"a", L"%s", 0, L"a \n%s"},
  };
  for (const auto& row : rows) {
    CString text(row.before);
    CQorStringUtil::AddStringNewLine(text, row.line, row.always);
    EXPECT_TEXT(row.after, text);
  }
  CString text(L"ab");
  CQorStringUtil::AddStringNewLine(text, text, 0);
  EXPECT_TEXT(L"ab \nab", text);
}

TEST(IsNumber, wants_the_canonical_form) {
  struct {
    const wchar_t* text;
    int expected;
  } const rows[] = {
      {L" 12 ", 1},
      {L"012", 0},
      {L"-5", 1},
      {L"+5", 0},
      {L"-0", 0},
      {L"0", 1},
      {L"", 0},
      {nullptr, 0},
      {L"1.0", 0},
      {L"1 2", 0},
      {L"１２", 0},
      {L"2147483647", 1},
      {L"2147483648", 0},
      {L"-2147483648", 1},
      {L"-2147483649", 0},
      {L"\x3000"
       L"7",
       1},
      {L"99999999999999999999", 0},
      {L"-", 0},
  };
  for (const auto& row : rows) EXPECT_EQ(row.expected, CQorStringUtil::IsNumber(row.text)) << Utf8(row.text);
}

TEST(Buffers, copies_are_cut_and_filled) {
  wchar_t buffer[6] = L"#####";
  EXPECT_EQ(buffer, CQorStringUtil::CopyString(buffer, L"abcdefgh", 4));
  EXPECT_TEXT(L"abc", buffer);
  EXPECT_EQ(L'#', buffer[4]);
  CQorStringUtil::CopyString(buffer, L"x", 6);
  for (int i = 1; i < 6; ++i) EXPECT_EQ(0, buffer[i]) << i;
  CQorStringUtil::CopyString(buffer, L"y", 0);
  EXPECT_TEXT(L"x", buffer);
  CQorStringUtil::CopyString(buffer, nullptr, 6);
  EXPECT_TEXT(L"", buffer);
  CQorStringUtil::CopyString(buffer, L"abcde", 6);
  CQorStringUtil::CopyString(buffer + 1, buffer, 5);
  EXPECT_TEXT(L"aabcd", buffer);
}

TEST(Buffers, number_inside_a_width) {
  struct {
    const wchar_t* text;
    long value, width;
    int result;
    const wchar_t* after;
  } const rows[] = {
      {L"ABCDEFGH", 12, 8, 1, L"ABCDEF12"},
      {L"ABCDEFGH", 123456789, 8, 0, L"ABCDEFGH"},
      {L"ABCDEFGH", 12345678, 8, 1, L"12345678"},
      {L"AB", 12, 8, 1, L"AB12"},
      {L"AB", -12, 4, 1, L"A-12"},
      {L"ABCDEFGH", 1, 4, 1, L"ABC1"},
      {L"AB", 1, 0, 0, L"AB"},
      {L"AB", 1, -5, 0, L"AB"},
      {L"", 7, 1, 1, L"7"},
  };
  for (const auto& row : rows) {
    wchar_t buffer[9];
    CQorStringUtil::CopyString(buffer, row.text, 9);
    EXPECT_EQ(row.result, CQorStringUtil::AttachToStr(buffer, row.value, row.width));
    EXPECT_TEXT(row.after, buffer);
  }
}

TEST(Buffers, prefix_removed) {
  wchar_t buffer[5];
  const auto removed = [&](const wchar_t* text, const wchar_t* prefix) {
    CQorStringUtil::RemovePrefixStr(buffer, text, prefix, 5);
    return Utf8(buffer);
  };
  EXPECT_EQ("cdef", removed(L"abcdefg", L"ab"));
  EXPECT_EQ("abcd", removed(L"abcdefg", L"b"));
  EXPECT_EQ("", removed(L"ab", L"ab"));
  EXPECT_EQ("a", removed(L"a", L"ab"));
  EXPECT_EQ("a", removed(L"a", L""));
  EXPECT_EQ("a", removed(L"a", nullptr));
  EXPECT_EQ("", removed(nullptr, L"a"));
}

TEST(Characters, deleted_found_and_taken) {
  CString text(L"abcdef");
  EXPECT_EQ(4, CQorStringUtil::Delete(text, 1, 2));
  EXPECT_TEXT(L"adef", text);
  EXPECT_EQ(4, CQorStringUtil::Delete(text, 9, 2));
  EXPECT_EQ(1, CQorStringUtil::Delete(text, 1, LONG_MAX));
  EXPECT_TEXT(L"a", text);
  EXPECT_EQ(2, CQorStringUtil::FindChar(L"abcabc", L'c'));
  EXPECT_EQ(-1, CQorStringUtil::FindChar(L"abc", L'x'));
  EXPECT_EQ(-1, CQorStringUtil::FindChar(L"", L'x'));
  EXPECT_EQ(-1, CQorStringUtil::FindChar(nullptr, L'x'));
  EXPECT_EQ("か", TakeUtf8(CQorStringUtil::GetChar(L"あか", 1)));
  EXPECT_EQ("", TakeUtf8(CQorStringUtil::GetChar(L"あか", 2)));
  EXPECT_EQ("", TakeUtf8(CQorStringUtil::GetChar(L"あか", 3)));
  EXPECT_EQ("", TakeUtf8(CQorStringUtil::GetChar(L"あか", -1)));
  EXPECT_EQ(nullptr, CQorStringUtil::GetChar(nullptr, 0));
  EXPECT_EQ(3, CQorStringUtil::GetStringCount(L"あ\xD83D\xDE00"));
  EXPECT_EQ(0, CQorStringUtil::GetStringLen(L""));
}

}  // namespace
