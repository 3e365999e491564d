// Lines, white space, canonical numbers, buffers and characters.

#include "qorgen/afx/array.h"
#include "qorgen/text/string_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

TEST(LineMarks, EncodeAndDecode) {
  // "a&nb\\nc": a mark of the text itself counts. "&\nn": what removing a break joins is a mark.
  using Row = std::tuple<const wchar_t*, int, int, const wchar_t*, const wchar_t*>;
  for (const auto& [text, last_line, ampersand, encoded, decoded] :
       Rows(Row(L"a\r\nb\rc\nd", 9, 1, L"a&nb&nc&nd", L"abcd"), Row(L"a\r\nb\r\nc", 0, 0, L"a", L"abc"),
            Row(L"a\r\nb\r\nc", 1, 0, L"a\\nb", L"abc"), Row(L"a\r\nb\r\nc", 5, 0, L"a\\nb\\nc", L"abc"),
            Row(L"a\r\n", 0, 1, L"a", L"a"), Row(L"\n\r", 1, 1, L"&n", L""),
            Row(L"a&nb\\nc", 0, 1, L"a", L"a"), Row(L"a&nb\\nc", 1, 1, L"a&nb\\nc", L"a\r\nb\\nc"),
            Row(L"a&nb\\nc", 1, 0, L"a&nb\\nc", L"a&nb\r\nc"), Row(L"&&n\n&", 3, 1, L"&&n&n&", L"&\r\n&"),
            Row(L"&\nn", 3, 1, L"&&nn", L"\r\n"), Row(L"a\nb", -1, 1, L"", L""),
            Row(L"a\nb", INT_MAX, 1, L"a&nb", L"ab"), Row(L"", 0, 1, L"", L""),
            Row(nullptr, 0, 1, L"", L""))) {
    CString dest(L"before"), own(text);
    CQorStringUtil::GetEncodeString(text, dest, last_line, ampersand);
    EXPECT_TEXT(encoded, dest) << Utf8(text) << last_line;
    CQorStringUtil::GetDecodeString(text, dest, last_line, ampersand);
    EXPECT_TEXT(decoded, dest) << Utf8(text) << last_line;
    CQorStringUtil::GetEncodeString(own, own, last_line, ampersand);
    EXPECT_TEXT(encoded, own);
  }
}

TEST(WhiteSpace, SplitsAsATokenIterator) {
  // The parts are joined with "|", "-" stands for none. The element is the array's own.
  using Row = std::tuple<const wchar_t*, const char*>;
  for (const auto& [text, expected] :
       Rows(Row(L"a b", "|a|b"), Row(L"  a \t\r\n b\x3000かな", "||a|b|かな"), Row(L"a  ", "|a"),
            Row(L"a", "|a"), Row(L"", ""), Row(L" \x3000\t", ""))) {
    CStringArray parts;
    parts.Add(text);
    const int result = CQorStringUtil::SplitSpace(parts[0], parts);
    std::string joined;
    for (std::intptr_t i = 0; i < parts.GetSize(); ++i) joined += "|" + Utf8(parts[i]);
    EXPECT_EQ(expected, joined);
    EXPECT_EQ(joined.empty() ? 0 : 1, result);
    EXPECT_EQ(1 - result, CQorStringUtil::IsSpace(text));
  }
  CStringArray parts;
  parts.Add(L"old");
  EXPECT_EQ(0, CQorStringUtil::SplitSpace(nullptr, parts));
  EXPECT_TRUE(parts.IsEmpty());
  EXPECT_EQ(1, CQorStringUtil::IsSpace(nullptr));
}

TEST(Lines, BreaksToSpaces) {
  CString text(L"a\r\nb\rc\nd\r\r\n");
  CQorStringUtil::ReturnToSpace(text, text);
  EXPECT_TEXT(L"a b\rc\nd\r ", text);
  CQorStringUtil::ReturnToSpace(nullptr, text);
  EXPECT_TEXT(L"", text);
}

TEST(Lines, AppendedWithASeparator) {
  using Row = std::tuple<const wchar_t*, const wchar_t*, int, const wchar_t*>;
  for (const auto& [before, line, always, after] :
       Rows(Row(L"", L"x", 0, L"x"), Row(L"", L"x", 1, L" \nx"), Row(L"a", L"x", 0, L"a \nx"),
            Row(L"a", L"x", 1, L"a \nx"), Row(L"a", L"", 0, L"a"), Row(L"a", L"", 1, L"a \n"),
            Row(L"a", nullptr, 1, L"a \n"), Row(L"", nullptr, 1, L" \n"), Row(L"", nullptr, 0, L""),
            Row(L"a", L"%s", 0, L"a \n%s"))) {
    CString text(before);
    CQorStringUtil::AddStringNewLine(text, line, always);
    EXPECT_TEXT(after, text);
  }
  CString text(L"ab");
  CQorStringUtil::AddStringNewLine(text, text, 0);
  EXPECT_TEXT(L"ab \nab", text);
}

TEST(IsNumber, WantsTheCanonicalForm) {
  for (const wchar_t* text : {L" 12 ", L"-5", L"0", L"2147483647", L"-2147483648", L"　7"}) {
    EXPECT_EQ(1, CQorStringUtil::IsNumber(text)) << Utf8(text);
  }
  for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), L"", L"012", L"+5", L"-0", L"1.0", L"1 2",
                              L"１２", L"2147483648", L"-2147483649", L"99999999999999999999", L"-"}) {
    EXPECT_EQ(0, CQorStringUtil::IsNumber(text)) << Utf8(text);
  }
}

// A buffer as text, "#" where it was left alone and "." for a terminator.
std::string Seen(const wchar_t (&buffer)[10]) {
  std::string seen;
  for (wchar_t c : buffer) seen += c == 0 ? '.' : static_cast<char>(c);
  return seen;
}

TEST(Buffers, CopiesAreCutAndFilled) {
  using Row = std::tuple<const wchar_t*, unsigned int, const char*>;
  for (const auto& [source, capacity, expected] : Rows(
           Row(L"abcdefgh", 4, "abc.######"), Row(L"x", 6, "x.....####"), Row(L"y", 0, "##########"),
           Row(L"yz", 1, ".#########"), Row(nullptr, 6, "......####"), Row(L"abcdefghi", 10, "abcdefghi."))) {
    wchar_t buffer[] = {'#', '#', '#', '#', '#', '#', '#', '#', '#', '#'};
    EXPECT_EQ(buffer, CQorStringUtil::CopyString(buffer, source, capacity));
    EXPECT_EQ(expected, Seen(buffer));
  }
  wchar_t buffer[10] = L"abcde";
  CQorStringUtil::CopyString(buffer + 1, buffer, 5);
  EXPECT_EQ("aabcd.....", Seen(buffer));
}

TEST(Buffers, NumberInsideAWidth) {
  using Row = std::tuple<const wchar_t*, long, long, int, const char*>;
  for (const auto& [text, value, width, result, expected] :
       Rows(Row(L"ABCDEFGH#", 12, 8, 1, "ABCDEF12.."), Row(L"ABCDEFGH", 123456789, 8, 0, "ABCDEFGH.."),
            Row(L"ABCDEFGH", 12345678, 8, 1, "12345678.."), Row(L"AB", 12, 8, 1, "AB12......"),
            Row(L"AB", -12, 4, 1, "A-12......"), Row(L"ABCDEFGH", 1, 4, 1, "ABC1.FGH.."),
            Row(L"AB", 1, 0, 0, "AB........"), Row(L"AB", 1, -5, 0, "AB........"),
            Row(L"", 7, 1, 1, "7........."))) {
    wchar_t buffer[10];
    CQorStringUtil::CopyString(buffer, text, 10);
    EXPECT_EQ(result, CQorStringUtil::AttachToStr(buffer, value, width));
    EXPECT_EQ(expected, Seen(buffer));
  }
}

TEST(Buffers, PrefixRemoved) {
  using Row = std::tuple<const wchar_t*, const wchar_t*, const wchar_t*>;
  for (const auto& [text, prefix, expected] : Rows(
           Row(L"abcdefg", L"ab", L"cdef"), Row(L"abcdefg", L"b", L"abcd"), Row(L"ab", L"ab", L""),
           Row(L"a", L"ab", L"a"), Row(L"a", L"", L"a"), Row(L"a", nullptr, L"a"), Row(nullptr, L"a", L""))) {
    wchar_t buffer[5];
    CQorStringUtil::RemovePrefixStr(buffer, text, prefix, 5);
    EXPECT_TEXT(expected, buffer);
  }
}

TEST(Characters, DeletedFoundAndTaken) {
  CString text(L"abcdef");
  for (const auto& [index, count, left] : {std::tuple(1L, 2L, L"adef"),
                                           {9L, 2L, L"adef"},
                                           {1L, -1L, L"adef"},
                                           {1L, LONG_MAX, L"a"},
                                           {LONG_MIN, 1L, L""}}) {
    EXPECT_EQ(CString::StringLength(left), CQorStringUtil::Delete(text, index, count));
    EXPECT_TEXT(left, text);
  }
  for (const auto& [where, c, index] :
       {std::tuple(L"abcabc", L'c', 2), {L"abc", L'x', -1}, {L"abc", L'\0', -1}, {nullptr, L'x', -1}}) {
    EXPECT_EQ(index, CQorStringUtil::FindChar(where, c));
  }
  const char* const taken[] = {"", "あ", "か", "", ""};
  for (int i = -1; i <= 3; ++i) EXPECT_EQ(taken[i + 1], TakeUtf8(CQorStringUtil::GetChar(L"あか", i)));
  EXPECT_EQ(nullptr, CQorStringUtil::GetChar(nullptr, 0));
  EXPECT_EQ(3, CQorStringUtil::GetStringCount(L"あ\xD83D\xDE00"));
  EXPECT_EQ(0, CQorStringUtil::GetStringLen(nullptr));
}

}  // namespace
