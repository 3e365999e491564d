// The line splitter and the line builder, and the splitter against the plain loop over a shrinking remainder
// that says what it has to give.

#include "qorgen/exchange/csv_manager.h"

#include <cstdint>
#include <iterator>
#include <random>
#include <stdexcept>

#include "qorgen/exchange/internal/line_scan.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

constexpr unsigned int kComma = CSVMGR_DELIM_COMMA;

// The fields between bars, so that a row of a table reads as one text: "|a|b|". No field at all gives "".
std::string Fields(const CQorCSVManager& manager) {
  std::string out;
  for (int i = 0; i < manager.GetCount(); ++i) out += "|" + Utf8(manager.GetAt(i));
  return out.empty() ? out : out + "|";
}

std::string Split(const wchar_t* line, unsigned int delimiters, CSVMGR_QUOTES quotes, int some_as_one) {
  CQorCSVManager manager;
  const int count = manager.SetElements(line, delimiters, quotes, some_as_one);
  EXPECT_EQ(count, manager.GetCount());
  return Fields(manager);
}

TEST(CsvManager, SplitsLines) {
  constexpr auto kDouble = CSVMGR_QUOTES_DOUBLE;
  constexpr auto kSingle = CSVMGR_QUOTES_SINGLE;
  constexpr auto kNone = CSVMGR_QUOTES_NONE;
  const std::tuple<const wchar_t*, unsigned int, CSVMGR_QUOTES, int, const char*> rows[] = {
      {nullptr, kComma, kDouble, 0, ""},
      {L"a,b,", kComma, kDouble, 0, "|a|b||"},
      {L",", kComma, kDouble, 0, "|||"},
      {L"a,,b", kComma, kDouble, 1, "|a|b|"},
      {L"a,,b", kComma, kDouble, 2, "|a||b|"},
      {L",a", kComma, kDouble, 1, "||a|"},
      {L"a,,", kComma, kDouble, 1, "|a||"},
      {L"a,,\"b\",,,c", kComma, kDouble, 1, "|a|b|c|"},
      {L"\"a,\"\"b\",c", kComma, kDouble, 0, "|a,\"b|c|"},
      {L"\"\"\"\"\"\"", kComma, kDouble, 0, "|\"\"|"},
      {L"\"", kComma, kDouble, 0, "||"},
      {L"\"ab\"\"", kComma, kDouble, 0, "|ab\"|"},
      {L"\"ab,c", kComma, kDouble, 0, "|ab,c|"},
      {L"\"ab\"x\"y,c", kComma, kDouble, 0, "|ab|c|"},
      {L"  \"a\" ,b", kComma, kDouble, 0, "|a|b|"},
      {L"a\"b\",c", kComma, kDouble, 0, "|a\"b\"|c|"},
      {L" \"a b\" c", CSVMGR_DELIM_SPACE, kDouble, 0, "||a b|c|"},
      {L" \"a b\" c", CSVMGR_DELIM_SPACE, kNone, 0, "||\"a|b\"|c|"},
      {L"\t\"a\"\tb", CSVMGR_DELIM_TAB, kDouble, 0, "|a|b|"},
      {L"a,b;c", 0, kDouble, 0, "|a,b;c|"},
      {L"\"a,b\";c", 0, kDouble, 0, "|a,b|"},
      {L"1\t2;3,4 5.6/7", 0x3F, kDouble, 0, "|1|2|3|4|5|6|7|"},
      {L"1\t2;3,4 5.6/7", 0xFFFFFFC0u, kDouble, 0, "|1\t2;3,4 5.6/7|"},
      {L"'a,''b',\"c", kComma, kSingle, 0, "|a,'b|\"c|"},
      {L"'a,b'", kComma, static_cast<CSVMGR_QUOTES>(3), 0, "|'a|b'|"},
  };
  for (const auto& [line, delimiters, quotes, some_as_one, fields] : rows) {
    SCOPED_TRACE(Utf8(line));
    EXPECT_EQ(Split(line, delimiters, quotes, some_as_one), fields);
    CQorCSVManager constructed(line, delimiters, quotes, some_as_one);
    EXPECT_EQ(Fields(constructed), fields);
    EXPECT_TEXT(L"", constructed.GetReadString());
  }
}

// --- the plain loop ---

bool IsSpace(char16_t c) {
  return (c >= 9 && c <= 13) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x3000 || c == 0x2003;
}

std::vector<std::u16string> PlainSplit(std::u16string rest, unsigned int type, char16_t quote,
                                       bool some_as_one) {
  std::u16string delimiters;
  for (int i = 0; i < 6; ++i) {
    if ((type >> i) & 1) delimiters += u"\t;, ./"[i];
  }
  const auto is_delimiter = [&](char16_t c) { return delimiters.find(c) != std::u16string::npos; };
  const auto take = [&](std::u16string& from) {
    std::size_t n = 0;
    while (n < from.size() && !is_delimiter(from[n])) ++n;
    const std::u16string head = from.substr(0, n);
    from.erase(0, n);
    return head;
  };
  std::vector<std::u16string> fields;
  if (rest.empty()) return fields;
  for (;;) {
    std::u16string copy = rest;
    if ((type & CSVMGR_DELIM_SPACE) == 0) {
      while (!copy.empty() && IsSpace(copy[0])) copy.erase(0, 1);
    }
    if (quote == 0 || copy.empty() || copy[0] != quote) {
      fields.push_back(take(rest));
    } else {
      std::u16string field;
      std::size_t at = 1;
      while ((at = copy.find(quote, at)) != std::u16string::npos && at + 1 < copy.size() &&
             copy[at + 1] == quote)
        at += 2;
      if (at == std::u16string::npos) {
        field = copy.substr(1);
        copy.clear();
      } else {
        field = copy.substr(1, at - 1);
        copy.erase(0, at);
        take(copy);
      }
      const std::u16string pair(2, quote);
      for (std::size_t i = 0; (i = field.find(pair, i)) != std::u16string::npos; ++i) field.erase(i, 1);
      fields.push_back(field);
      rest = copy;
    }
    if (rest.empty()) return fields;
    do {
      rest.erase(0, 1);
    } while (some_as_one && !rest.empty() && is_delimiter(rest[0]));
  }
}

TEST(CsvManager, SplitsRandomLinesAsThePlainLoopDoes) {
  std::mt19937 random(20240501);
  constexpr char16_t kAlphabet[] = u"\t;, ./,,\"\"\"''a b\u3000\u2003あ漢ﾊ\u0085\u000b";
  constexpr std::size_t kLetters = sizeof kAlphabet / sizeof kAlphabet[0] - 1;
  CQorCSVManager manager;
  for (int round = 0; round < 20000; ++round) {
    std::u16string line;
    for (std::size_t n = random() % (round % 51 == 0 ? 400 : 24); n > 0; --n)
      line += kAlphabet[random() % kLetters];
    const unsigned int type = round % 3 == 0 ? kComma : random() % 64;
    const auto quotes = static_cast<CSVMGR_QUOTES>(random() % 3);
    const bool some_as_one = random() % 2 != 0;
    const auto expected = PlainSplit(line, type, u"\"'\0"[quotes], some_as_one);

    manager.SetElements(reinterpret_cast<const wchar_t*>(line.c_str()), type, quotes, some_as_one);
    ASSERT_EQ(manager.GetCount(), static_cast<int>(expected.size()))
        << Utf8(manager.GetReadString()) << " type " << type << " quotes " << quotes << " one "
        << some_as_one;
    for (int i = 0; i < manager.GetCount(); ++i) {
      ASSERT_TEXT(reinterpret_cast<const wchar_t*>(expected[static_cast<std::size_t>(i)].c_str()),
                  manager.GetAt(i))
          << Utf8(manager.GetReadString()) << " field " << i << " type " << type << " quotes " << quotes;
    }
  }
}

TEST(CsvManager, MarksAsciiUnitsAlone) {
  using namespace qorgen::exchange;
  std::mt19937 random(5);
  constexpr wchar_t kUnits[] = {L',',      L'"',      L'\x2C2C', L'\x2C00', L'\x012C',
                                L'\xFFFF', L'\x7F2C', L'\x80FF', 0};
  for (int round = 0; round < 2000; ++round) {
    wchar_t text[kMarkBlock];
    for (wchar_t& unit : text) unit = kUnits[random() % std::size(kUnits)];
    for (const wchar_t unit : {L',', L'"'}) {
      const std::uint64_t marks = UnitBlock(text).Mark(unit);
      for (std::size_t i = 0; i < kMarkBlock; ++i) ASSERT_EQ(marks >> i & 1, text[i] == unit ? 1 : 0) << i;
    }
  }
}

TEST(CsvManager, FindsMarksUpToTheEndOfTheLine) {
  using namespace qorgen::exchange;
  UnitSet set;
  for (const wchar_t unit : {L',', L'\t', L';'}) set.Add(unit);
  for (std::size_t length = 0; length <= 130; length += length % 64 < 2 || length % 64 > 61 ? 1 : 11) {
    for (std::size_t hit = 0; hit <= length + 2; ++hit) {
      wchar_t text[320] = {};
      text[hit] = hit % 2 == 0 ? L',' : L';';
      text[hit + 1] = L'"';
      for (std::size_t from = 0; from <= length; from += 1 + from % 5) {
        LineMarks marks(text, length, set, L'"');
        ASSERT_EQ(marks.NextDelimiter(from), hit >= from && hit < length ? hit : length)
            << length << " " << hit;
        ASSERT_EQ(marks.NextQuote(from), hit + 1 >= from && hit + 1 < length ? hit + 1 : length) << length;
      }
    }
  }
}

TEST(CsvManager, KeepsNothingOfAnEarlierLine) {
  CQorCSVManager manager;
  std::u16string huge;
  for (int i = 0; i < 200000; ++i) huge += u"\"ab\"\"c\",";
  const auto* const line = reinterpret_cast<const wchar_t*>(huge.c_str());
  EXPECT_EQ(manager.SetElements(line, kComma, CSVMGR_QUOTES_DOUBLE, 0), 200001);
  EXPECT_TEXT(L"ab\"c", manager.GetAt(199999));
  EXPECT_EQ(manager.SetElements(L"x,y", kComma, CSVMGR_QUOTES_DOUBLE, 0), 2);
  EXPECT_EQ(Fields(manager), "|x|y|");
  EXPECT_TEXT(L"x,y", manager.GetReadString());
}

TEST(CsvManager, SplitsItsOwnTexts) {
  CQorCSVManager manager(L"\"a,b,c\",d", kComma, CSVMGR_QUOTES_DOUBLE, 0);
  manager.SetElements(manager.GetAt(0), kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(Fields(manager), "|a|b|c|");
  manager.SetElements(manager.GetReadString(), kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(Fields(manager), "|a|b|c|");

  // Borrowed texts stay good while fields are added, however many.
  const wchar_t* const first = manager.GetAt(0);
  for (int i = 0; i < 2000; ++i) manager.AddElement(manager.GetAt(i));
  EXPECT_TEXT(L"a", first);
  EXPECT_EQ(manager.GetCount(), 2003);
  EXPECT_TEXT(L"b", manager.GetAt(2002));
}

TEST(CsvManager, SeparatesUnderItsSettings) {
  struct Opened : CQorCSVManager {
    using CQorCSVManager::separateString;
  };
  Opened manager;
  manager.SetDelimiterType(CSVMGR_DELIM_SEMICOLON);
  manager.SetQuatesType(CSVMGR_QUOTES_SINGLE);
  manager.SetSomeAsOne(1);
  manager.separateString(L"'a;b';;c");
  EXPECT_EQ(Fields(manager), "|a;b|c|");
  manager.separateString(nullptr);
  EXPECT_EQ(manager.GetCount(), 0);
}

TEST(CsvManager, GivesFieldsByIndex) {
  CQorCSVManager manager(L"a,b", kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(manager.GetAt(2), nullptr);
  EXPECT_EQ(manager.GetAt(2147483647), nullptr);
  for (const int index : {-1, -2147483647 - 1}) {
    try {
      manager.GetAt(index);
      FAIL() << "no exception";
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), "invalid vector subscript");
    }
  }
}

TEST(CsvManager, CopiesAllSettings) {
  CQorCSVManager source;
  source.SetElements(L"a,,'b'", kComma, CSVMGR_QUOTES_SINGLE, 1);
  source.AddQuate(CSVMGR_QUOTES_DOUBLE);
  source.SetCommentLineInfo(1, 5);
  const CQorCSVManager copy(source);
  CQorCSVManager assigned;
  assigned = copy;
  source.SetElements(L"changed", kComma, CSVMGR_QUOTES_NONE, 0);
  assigned = *&assigned;
  EXPECT_EQ(Fields(copy), "|a|b|");
  EXPECT_EQ(Fields(assigned), "|a|b|");
  EXPECT_TEXT(L"a,,'b'", assigned.GetReadString());
  CString line;
  EXPECT_TEXT(L"\"a\",'b'", assigned.MakeString(line));
  assigned.AdjustCommentLine(line, 5);
  EXPECT_TEXT(L"#\"a\",'b'", line);
}

TEST(CsvManager, MakesLines) {
  const std::tuple<unsigned int, const wchar_t*> rows[] = {
      {0x01, L"\"a\"\tb\t'c'"}, {0x03, L"\"a\";b;'c'"}, {0x07, L"\"a\",b,'c'"},
      {0x0F, L"\"a\" b 'c'"},   {0x1F, L"\"a\".b.'c'"}, {0x24, L"\"a\"b'c'"},
  };
  for (const auto& [type, expected] : rows) {
    CQorCSVManager manager;
    manager.SetQuatesType(CSVMGR_QUOTES_SINGLE);
    manager.SetDelimiterType(type);
    for (const wchar_t* field : {L"a", L"b", L"c"}) manager.AddElement(field);
    manager.AddQuate(CSVMGR_QUOTES_DOUBLE);
    manager.AddQuate(CSVMGR_QUOTES_NONE);
    CString line(L"before");
    const wchar_t* const made = manager.MakeString(line);
    EXPECT_EQ(made, line.GetString());
    EXPECT_TEXT(expected, line) << type;
    // The list of quotes outlasts the fields.
    manager.Empty();
    manager.AddElement(L"a");
    EXPECT_TEXT(L"\"a\"", manager.MakeString(line));
  }
}

TEST(CsvManager, MakesLinesOfOddFields) {
  CQorCSVManager manager;
  CString line(L"before");
  EXPECT_EQ(manager.MakeString(line), nullptr);
  EXPECT_TEXT(L"before", line);

  manager.SetDelimiterType(kComma);
  EXPECT_TEXT(L"", manager.MakeString(line));
  for (const wchar_t* field : {L"", L"\"", L"a\"\"b,", static_cast<const wchar_t*>(nullptr), L"あ\n"}) {
    manager.AddElement(field);
  }
  EXPECT_TEXT(L"\"\",\"\"\"\",\"a\"\"\"\"b,\",\"\",\"あ\n\"", manager.MakeString(line));
  manager.SetQuatesType(CSVMGR_QUOTES_NONE);
  EXPECT_TEXT(L",\",a\"\"b,,,あ\n", manager.MakeString(line));

  // What is written in quotes is read again.
  manager.SetQuatesType(CSVMGR_QUOTES_SINGLE);
  manager.Empty();
  for (const wchar_t* field : {L"it's", L"''", L" , "}) manager.AddElement(field);
  manager.MakeString(line);
  EXPECT_EQ(Split(line, kComma, CSVMGR_QUOTES_SINGLE, 0), "|it's|''| , |");
}

TEST(CsvManager, MarksComments) {
  const std::tuple<int, int, int, const wchar_t*> rows[] = {
      {0, 5, 1, L"a"}, {1, 0, 0, L"a"},    {1, 2, 2, L"#a"},
      {1, 2, 3, L"a"}, {-1, 2, -1, L"#a"}, {1, -1, -2, L"#a"},
  };
  for (const auto& [on, limit, number, expected] : rows) {
    CQorCSVManager manager;
    CString line(L"a");
    manager.AdjustCommentLine(line, 1);
    EXPECT_TEXT(L"a", line);
    manager.SetCommentLineInfo(on, limit);
    manager.AdjustCommentLine(line, number);
    EXPECT_TEXT(expected, line) << on << " " << limit << " " << number;
  }
}

// Fields of every short length with a quote at every place, against doubling them one by one.
TEST(CsvManager, DoublesQuotesWhereverTheyStand) {
  CString line;
  for (int length = 0; length <= 26; ++length) {
    for (int first = -1; first < length; ++first) {
      for (int second = first; second < length; second += 3) {
        CString text(L'x', length);
        for (const int place : {first, second}) {
          if (place >= 0) text.SetAt(place, L'\'');
        }
        CQorCSVManager manager;
        manager.SetDelimiterType(CSVMGR_DELIM_TAB);
        manager.SetQuatesType(CSVMGR_QUOTES_SINGLE);
        for (int field = 0; field < 2; ++field) manager.AddElement(text);
        CString doubled(text);
        doubled.Replace(L"'", L"''");
        ASSERT_EQ(Utf8(L"'" + doubled + L"'\t'" + doubled + L"'"), Utf8(manager.MakeString(line)));
      }
    }
  }
}

}  // namespace
