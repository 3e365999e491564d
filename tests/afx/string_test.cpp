#include "qorgen/afx/string.h"

#include <thread>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/memory.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

const wchar_t* const kNull = nullptr;

// A text with U+0000 inside, L"ab\0cd".
CString WithTerminatorInside() {
  return CString(L"ab\0cd", 5);
}

int Sign(int value) {
  return (value > 0) - (value < 0);
}

}  // namespace

TEST(CString, IsBuiltFromAnything) {
  EXPECT_TEXT(L"", CString());
  EXPECT_TEXT(L"", CString(nullptr));
  EXPECT_TEXT(L"", CString(kNull));
  EXPECT_TEXT(L"", CString(kNull, 3));
  EXPECT_TEXT(L"帳", CString(L"帳簿", 1));
  EXPECT_TEXT(L"ああ", CString(L'あ', 2));
  EXPECT_TEXT(L"", CString(L'あ', -1));
  EXPECT_EQ(5, WithTerminatorInside().GetLength());
  EXPECT_THROWS_POINTER(CString(L"abc", -1), CInvalidArgException);
  CString source(L"moved");
  const CString target(std::move(source));
  EXPECT_TEXT(L"moved", target);
  EXPECT_TRUE(source.IsEmpty());
}

TEST(CString, CopiesShareTheTextUntilOneChanges) {
  const CString first(L"帳簿の名前");
  struct Change {
    const char* name;
    void (*apply)(CString&);
    const wchar_t* result;
  };
  const Change changes[] = {
      {"AppendChar", [](CString& s) { s.AppendChar(L'A'); }, L"帳簿の名前A"},
      {"SetAt", [](CString& s) { s.SetAt(0, L'x'); }, L"x簿の名前"},
      {"assignment", [](CString& s) { s = L"z"; }, L"z"},
      {"assignment of nothing", [](CString& s) { s = kNull; }, L""},
      {"Insert", [](CString& s) { s.Insert(1, L"--"); }, L"帳--簿の名前"},
      {"Delete", [](CString& s) { s.Delete(0, 2); }, L"の名前"},
      {"Replace unit", [](CString& s) { s.Replace(L'の', L'/'); }, L"帳簿/名前"},
      {"Replace text", [](CString& s) { s.Replace(L"の", L"<>"); }, L"帳簿<>名前"},
      {"Remove", [](CString& s) { s.Remove(L'の'); }, L"帳簿名前"},
      {"TrimLeft", [](CString& s) { s.TrimLeft(L'帳'); }, L"簿の名前"},
      {"TrimRight", [](CString& s) { s.TrimRight(L'前'); }, L"帳簿の名"},
      {"MakeReverse", [](CString& s) { s.MakeReverse(); }, L"前名の簿帳"},
      {"Truncate", [](CString& s) { s.Truncate(1); }, L"帳"},
      {"GetBuffer", [](CString& s) { *s.GetBuffer() = L'w'; }, L"w簿の名前"},
      {"ReleaseBuffer", [](CString& s) { s.ReleaseBuffer(2); }, L"帳簿"},
      {"Empty", [](CString& s) { s.Empty(); }, L""},
  };
  for (const Change& change : changes) {
    CString copy(first);
    EXPECT_EQ(first.GetString(), copy.GetString());
    change.apply(copy);
    EXPECT_TEXT(change.result, copy) << change.name;
    EXPECT_TEXT(L"帳簿の名前", first) << change.name;
  }
  CString copy;
  copy = first;
  EXPECT_EQ(first.GetString(), copy.GetString());
  copy = copy.GetString();
  EXPECT_TEXT(L"帳簿の名前", copy);
}

TEST(CString, AssignmentReusesTheBlockOfItsOnlyOwner) {
  CString text(L"a text of some length");
  const wchar_t* block = text.GetString();
  for (const wchar_t* value : {L"short", L"", L"another text", L"a text of some length"}) {
    text = value;
    EXPECT_TEXT(value, text);
    text.SetString(value, CString::StringLength(value));
    EXPECT_EQ(block, text.GetString());
  }
  text = CString();
  text = L"again";
  EXPECT_TEXT(L"again", text);
  CString empty;
  text = empty;
  EXPECT_TRUE(text.IsEmpty());
}

TEST(CString, ASourceMayLieInTheStringItself) {
  CString text(L"0123456789");
  text = text.GetString() + 2;
  EXPECT_TEXT(L"23456789", text);
  text.SetString(text.GetString() + 1, 3);
  EXPECT_TEXT(L"345", text);
  text += text;
  text += text.GetString();
  EXPECT_TEXT(L"345345345345", text);
  for (int i = 0; i < 8; ++i) text.Append(text.GetString() + 1, 2);  // crosses a growth of the block
  EXPECT_TEXT(L"3453453453454545454545454545", text);
  text = L"abcab";
  EXPECT_EQ(1, text.Replace(text.GetString() + 2, text.GetString()));
  EXPECT_TEXT(L"ababcab", text);
  text.Insert(1, text.GetString() + 4);
  EXPECT_TEXT(L"acabbabcab", text);
  text.Preallocate(100);
  text.Insert(3, text);
  EXPECT_TEXT(L"acaacabbabcabbbabcab", text);
  text = L"..x..";
  text.Trim(text.GetString() + 3);
  EXPECT_TEXT(L"x", text);
  const CString& same = text;
  text = same;
  EXPECT_TEXT(L"x", text);
}

TEST(CString, BuffersAreWritableAndReleased) {
  CString text(L"abc");
  wchar_t* buffer = text.GetBuffer(50);
  EXPECT_TEXT(L"abc", buffer);
  buffer[3] = L'd';
  buffer[4] = 0;
  text.ReleaseBuffer();
  EXPECT_TEXT(L"abcd", text);
  EXPECT_EQ(4, text.GetLength());
  text.GetBufferSetLength(6)[4] = 0;
  EXPECT_EQ(6, text.GetLength());
  text.ReleaseBuffer();
  EXPECT_EQ(4, text.GetLength());
  text.GetBuffer(10);
  text.ReleaseBufferSetLength(2);
  EXPECT_TEXT(L"ab", text);
  // Every place of the capacity may be used, the terminator's place comes on top.
  const int capacity = text.GetAllocLength();
  buffer = text.GetBuffer(capacity);
  for (int i = 0; i < capacity; ++i) buffer[i] = L'x';
  text.ReleaseBuffer();
  EXPECT_EQ(capacity, text.GetLength());
  text.Truncate(3);
  text.Preallocate(100);
  EXPECT_LE(100, text.GetAllocLength());
  text.FreeExtra();
  EXPECT_GT(100, text.GetAllocLength());
  EXPECT_TEXT(L"xxx", text);
  // An empty string's buffer is its own too.
  CString empty;
  *empty.GetBuffer() = L'?';
  empty.ReleaseBuffer(1);
  EXPECT_TEXT(L"?", empty);
  EXPECT_TEXT(L"", CString());
  // A copy made before the release keeps its length, a longer text still arrives.
  CString shared(L"abc");
  buffer = shared.GetBuffer(20);
  const CString copy(shared);
  buffer[2] = L'C';
  buffer[3] = L'D';
  shared.ReleaseBuffer(4);
  EXPECT_TEXT(L"abCD", shared);
  EXPECT_EQ(3, copy.GetLength());
}

TEST(CString, RefusesWhatLiesOutside) {
  CString text(L"abc");
  EXPECT_EQ(L'c', text[2]);
  EXPECT_EQ(L'\0', text[3]);
  EXPECT_EQ(L'a', text.GetAt(0));
  EXPECT_THROWS_POINTER(text[4], CInvalidArgException);
  EXPECT_THROWS_POINTER(text[-1], CInvalidArgException);
  EXPECT_THROWS_POINTER(text[std::size_t{1} << 40], CInvalidArgException);
  EXPECT_THROWS_POINTER(text.GetAt(4), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.SetAt(3, L'x'), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.SetString(L"x", -1), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.Append(L"x", -1), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.GetBuffer(-1), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.GetBufferSetLength(-1), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.ReleaseBuffer(-2), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.ReleaseBuffer(text.GetAllocLength() + 1), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.ReleaseBufferSetLength(-1), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.Preallocate(-1), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.Truncate(-1), CInvalidArgException);
  int start = -1;
  EXPECT_THROWS_POINTER(text.Tokenize(L",", start), CInvalidArgException);
  EXPECT_THROWS_POINTER(text.Preallocate(INT_MAX), CMemoryException);
  EXPECT_TEXT(L"abc", text);
}

TEST(CString, PartsAreClampedToTheText) {
  const CString text(L"abcdef");
  const std::tuple<int, int, const wchar_t*> rows[] = {
      {0, 6, L"abcdef"}, {2, 2, L"cd"},  {4, 9, L"ef"}, {4, INT_MAX, L"ef"},     {6, 1, L""},
      {7, 1, L""},       {-3, 2, L"ab"}, {1, -1, L""},  {INT_MAX, INT_MAX, L""}, {INT_MIN, INT_MIN, L""}};
  for (const auto& [first, count, mid] : rows) {
    EXPECT_TEXT(mid, text.Mid(first, count)) << first << ", " << count;
  }
  EXPECT_TEXT(L"cdef", text.Mid(2));
  EXPECT_TEXT(L"ab", text.Left(2));
  EXPECT_TEXT(L"", text.Left(-1));
  EXPECT_TEXT(L"ef", text.Right(2));
  EXPECT_TEXT(L"abcdef", text.Right(99));
  EXPECT_TEXT(L"", text.Right(INT_MIN));
  EXPECT_EQ(text.GetString(), text.Left(6).GetString());
  EXPECT_TEXT(L"abc", text.SpanIncluding(L"cba"));
  EXPECT_TEXT(L"", text.SpanIncluding(kNull));
  EXPECT_TEXT(L"ab", text.SpanExcluding(L"xc"));
  EXPECT_TEXT(L"abcdef", text.SpanExcluding(kNull));
}

TEST(CString, TokenizePassesOverEmptyPieces) {
  using Row = std::tuple<const wchar_t*, const wchar_t*, std::vector<const wchar_t*>>;
  for (const auto& [row_text, separators, row_pieces] :
       Rows(Row(L"a,b;;c", L",;", {L"a", L"b", L"c"}), Row(L",,a", L",", {L"a"}), Row(L"a,", L",", {L"a"}),
            Row(L"", L",", {}), Row(L",,", L",", {}), Row(L"a b", kNull, {L"a b"}),
            Row(L"一、二", L"、", {L"一", L"二"}))) {
    const CString text(row_text);
    int start = 0;
    std::vector<std::string> pieces;
    for (CString piece = text.Tokenize(separators, start); start != -1;
         piece = text.Tokenize(separators, start)) {
      pieces.push_back(Utf8(piece));
    }
    std::vector<std::string> expected;
    for (const wchar_t* piece : row_pieces) expected.push_back(Utf8(piece));
    EXPECT_EQ(expected, pieces) << Utf8(row_text);
  }
}

TEST(CString, SearchesFromAPosition) {
  const CString text(L"金額と金種と金");
  const std::tuple<const wchar_t*, int, int> rows[] = {
      {L"金", 0, 0},   {L"金", 1, 3},    {L"金", 4, 6},      {L"金", 7, -1}, {L"金", 8, -1}, {L"金", -1, -1},
      {L"金種", 0, 3}, {L"金銭", 0, -1}, {L"と金と", 0, -1}, {L"", 3, 3},    {L"", 7, 7},    {kNull, 0, -1}};
  for (const auto& [wanted, start, found] : rows) {
    EXPECT_EQ(found, text.Find(wanted, start)) << start;
    if (wanted != nullptr && CString::StringLength(wanted) == 1) {
      EXPECT_EQ(found, text.Find(wanted[0], start)) << start;
    }
  }
  EXPECT_EQ(6, text.ReverseFind(L'金'));
  EXPECT_EQ(-1, text.ReverseFind(L'円'));
  EXPECT_EQ(1, text.FindOneOf(L"種額"));
  EXPECT_EQ(-1, text.FindOneOf(kNull));
  EXPECT_EQ(3, WithTerminatorInside().Find(L"cd"));
  EXPECT_EQ(3, WithTerminatorInside().Find(L'c'));
}

TEST(CString, ComparesUnitsByValue) {
  using Row = std::tuple<const wchar_t*, const wchar_t*, int>;
  for (const auto& [row_left, row_right, order] :
       Rows(Row(L"", L"", 0), Row(L"a", L"", 1), Row(L"", L"a", -1), Row(L"ab", L"abc", -1),
            Row(L"abd", L"abc", 1), Row(L"\xFFFF", L"a", 1), Row(L"\xD840\xDC0B", L"\xFF01", -1),
            Row(L"", kNull, 0), Row(L"a", kNull, 1))) {
    const CString left(row_left);
    const CString right(row_right);
    EXPECT_EQ(order, Sign(left.Compare(row_right)));
    EXPECT_EQ(order < 0, left < right);
    EXPECT_EQ(order == 0, left == right);
    EXPECT_EQ(order != 0, left != row_right);
    EXPECT_EQ(order > 0, row_right < left);
    EXPECT_EQ(order >= 0, left >= row_right);
  }
  EXPECT_FALSE(WithTerminatorInside() == CString(L"ab"));
  EXPECT_GT(WithTerminatorInside(), CString(L"ab"));
  EXPECT_GT(WithTerminatorInside().Compare(L"ab"), 0);
  EXPECT_TRUE(CString(L"x") == L'x');
  EXPECT_FALSE(CString(L"xy") == L'x');
}

TEST(CString, CaseNeedsNoLocale) {
  const std::tuple<const wchar_t*, const wchar_t*> rows[] = {
      {L"AZ09[`", L"az09[`"}, {L"ＡＺ", L"ａｚ"},
      {L"ΑΩΣ", L"αωσ"},       {L"АЯЁ", L"аяё"},
      {L"ÀÞŸ", L"àþÿ"},       {L"ĀŽ", L"āž"},
      {L"ⅠⅫ", L"ⅰⅻ"},         {L"ⒶⓏ", L"ⓐⓩ"},
      {L"ɃꞍ", L"ƀɥ"},         {L"漢字かなカナ×÷ß", L"漢字かなカナ×÷ß"}};
  for (const auto& [row_upper, lower] : rows) {
    EXPECT_TEXT(row_upper, CString(lower).MakeUpper());
    EXPECT_TEXT(lower, CString(row_upper).MakeLower());
    EXPECT_EQ(0, CString(row_upper).CompareNoCase(lower));
    EXPECT_GT(CString(row_upper).CompareNoCase(kNull), 0);
  }
  EXPECT_LT(CString(L"B").CompareNoCase(L"c"), 0);
  EXPECT_GT(CString(L"_").CompareNoCase(L"A"), -3);
  EXPECT_EQ(-1, Sign(CString(L"a").CompareNoCase(L"AB")));
  EXPECT_EQ(1, Sign(CString(L"AB").CompareNoCase(L"a")));
}

TEST(CString, EditsInPlace) {
  CString text(L"cdef");
  EXPECT_EQ(6, text.Insert(0, L"ab"));
  EXPECT_EQ(7, text.Insert(99, L'g'));
  EXPECT_EQ(8, text.Insert(-5, L'>'));
  EXPECT_EQ(8, text.Insert(3, kNull));
  EXPECT_TEXT(L">abcdefg", text);
  EXPECT_EQ(7, text.Delete(0));
  EXPECT_EQ(5, text.Delete(5, INT_MAX));
  EXPECT_EQ(5, text.Delete(9, 1));
  EXPECT_EQ(5, text.Delete(0, -1));
  EXPECT_EQ(4, text.Delete(INT_MIN, 1));
  EXPECT_TEXT(L"bcde", text);
  EXPECT_TEXT(L"edcb", text.MakeReverse());
  text += L"e";
  EXPECT_EQ(2, text.Remove(L'e'));
  EXPECT_EQ(0, text.Remove(L'e'));
  EXPECT_TEXT(L"dcb", text);

  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, int, const wchar_t*> rows[] = {
      {L"aXbX", L"X", L"--", 2, L"a--b--"},      {L"aaa", L"aa", L"b", 1, L"ba"},
      {L"a,b", L",", kNull, 1, L"ab"},           {L"abc", L"", L"x", 0, L"abc"},
      {L"abc", kNull, L"x", 0, L"abc"},          {L"abc", L"abcd", L"x", 0, L"abc"},
      {L"\r\n\r\n", L"\r\n", L"\n", 2, L"\n\n"}, {L"xx", L"x", L"", 2, L""}};
  for (const auto& [row_text, from, to, count, result] : rows) {
    CString edited(row_text);
    EXPECT_EQ(count, edited.Replace(from, to));
    EXPECT_TEXT(result, edited);
  }
  text = L"a/b/c";
  EXPECT_EQ(2, text.Replace(L'/', L'\\'));
  EXPECT_TEXT(L"a\\b\\c", text);
  CString whole = WithTerminatorInside();
  EXPECT_EQ(1, whole.Replace(L"c", L"CC"));
  EXPECT_EQ(6, whole.GetLength());
}

TEST(CString, TrimsSpacesUnitsAndSets) {
  EXPECT_TEXT(L"a b", CString(L" \t\r\n　\xA0"
                              L"a b　 ")
                          .Trim());
  EXPECT_TEXT(L"a ", CString(L" a ").TrimLeft());
  EXPECT_TEXT(L" a", CString(L" a ").TrimRight());
  EXPECT_TEXT(L"", CString(L"　 　").Trim());
  EXPECT_TEXT(L"a0", CString(L"00a0").TrimLeft(L'0'));
  EXPECT_TEXT(L"00a", CString(L"00a0").TrimRight(L'0'));
  EXPECT_TEXT(L"a", CString(L"00a0").Trim(L'0'));
  EXPECT_TEXT(L"text", CString(L"\"'text'\"").Trim(L"'\""));
  EXPECT_TEXT(L"text'", CString(L"'text'").TrimLeft(L"'"));
  EXPECT_TEXT(L"'text", CString(L"'text'").TrimRight(L"'"));
  EXPECT_TEXT(L" a ", CString(L" a ").Trim(kNull));
}

TEST(CString, SumsTakeEveryKindOfText) {
  const CString a(L"甲");
  const CString b(L"乙");
  EXPECT_TEXT(L"甲乙", a + b);
  EXPECT_TEXT(L"甲と乙", a + L"と" + b);
  EXPECT_TEXT(L"「甲」", L'「' + a + L'」');
  EXPECT_TEXT(L"<甲", L"<" + a);
  EXPECT_TEXT(L"甲", a + kNull);
  EXPECT_TEXT(L"甲", kNull + a);
  EXPECT_TEXT(L"甲", CString() + a);
  EXPECT_TEXT(L"甲", a);
  CString sum;
  sum += a;
  sum += L"・";
  sum += L'乙';
  EXPECT_TEXT(L"甲・乙", sum);
}

TEST(CString, CountsOwnersAcrossThreads) {
  const CString shared(L"ひとつの文字列を分け合う");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&shared] {
      for (int round = 0; round < 2000; ++round) {
        CString mine(shared);
        CString other;
        other = mine;
        other.AppendChar(L'!');
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  // The only owner again: an assignment of the same length stays in the block.
  CString& text = const_cast<CString&>(shared);
  const wchar_t* block = text.GetString();
  text = L"x";
  EXPECT_EQ(block, text.GetString());
}

TEST(Memory, HandsOutBlocksThatQorFreeTakes) {
  QorFree(nullptr);
  QorFree(qorgen::AllocateBlock(0));
  wchar_t* copy = qorgen::CopyText(L"abcdef", 3);
  EXPECT_EQ("abc", TakeUtf8(copy));
  EXPECT_EQ("", TakeUtf8(qorgen::CopyText(nullptr, 0)));
  EXPECT_THROWS_POINTER(qorgen::AllocateText(SIZE_MAX), CMemoryException);
  EXPECT_THROWS_POINTER(qorgen::CopyText(L"", SIZE_MAX), CMemoryException);
}
