// CSV files: every way a line can end or be broken, in both encodings, and what is written.

#include "qorgen/exchange/csv_file.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "qorgen/afx/exception.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/locale.h"

#include "tests/exchange/temp_file.h"
#include "tests/support/text.h"
#include "tests/support/throws.h"

namespace {

using qorgen::tests::TempFile;
using qorgen::tests::Utf8;
using std::string_literals::operator""s;

constexpr unsigned int kComma = CSVMGR_DELIM_COMMA;
using Lines = std::vector<std::string>;

std::string Repeat(const std::string& text, int times) {
  std::string out;
  while (times-- > 0) out += text;
  return out;
}

// The raw lines that ReadCSV finds, in UTF-8, and a check that the end is the end for good.
Lines ReadAll(CQorCSVFile& file) {
  Lines lines;
  CQorCSVManager manager;
  while (file.ReadCSV(manager) != 0) lines.push_back(Utf8(manager.GetReadString()));
  EXPECT_EQ(file.ReadCSV(manager), 0);
  return lines;
}

Lines ReadLegacy(const std::string& bytes) {
  const TempFile temp(bytes);
  CQorCSVFile file(temp.Path(), 0, kComma, CSVMGR_QUOTES_DOUBLE, 0);
  return ReadAll(file);
}

Lines ReadUtf8(const std::string& bytes) {
  const TempFile temp(bytes);
  CQorUTF8CSVFile file(_wfopen(temp.Path(), L"rt,ccs=UTF-8"), kComma, CSVMGR_QUOTES_DOUBLE, 0);
  const Lines lines = ReadAll(file);
  file.Close();
  return lines;
}

TEST(CsvFile, ReadsLinesHoweverTheyEnd) {
  const struct {
    std::string bytes;
    Lines lines;
  } rows[] = {
      {"", {}},
      {"\n", {""}},
      {"a,b\r\nc\n\nd", {"a,b", "c", "", "d"}},
      {"a\rb\nc", {"a\rb", "c"}},
      {"a\r", {"a\r"}},  // a last line stays as it is
      {"a\0b\nc\n"s, {"a", "c"}},
      {"\0\nc\0"s, {"", "c"}},
      {"a\n\x1A"
       "b\n",
       {"a"}},
      {Repeat("x", 3000) + "\ny\n", {Repeat("x", 3000), "y"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.bytes.substr(0, 60)));
    EXPECT_EQ(ReadLegacy(row.bytes), row.lines);
    EXPECT_EQ(ReadUtf8(row.bytes), row.lines);
    EXPECT_EQ(ReadUtf8("\xEF\xBB\xBF" + row.bytes), row.lines);
  }
}

TEST(CsvFile, DecodesBytes) {
  const struct {
    Lines (*read)(const std::string&);
    std::string bytes;
    Lines lines;
  } rows[] = {
      {ReadLegacy, "\x93\xFA\x96\x7B,\xB1\xDE\n", {"日本,ｱﾞ"}},
      {ReadLegacy, "\x81\x5C\x83\x5C,\x5C\n", {"―ソ,\\"}},  // trail bytes that look like a backslash
      {ReadLegacy, "a\r\r\nb\n", {"a", "b"}},  // all carriage returns in front of the line feed go
      {ReadLegacy, "a\r\0\r\nb\n"s, {"a\r", "b"}},
      {ReadLegacy, "a\x93\nb\x93", {"a・", "b・"}},  // half a character at the end of a line shows
      {ReadLegacy, "a\x81\x20,b\n", {"a・,b"}},      // not a pair
      {ReadLegacy, Repeat("\x93\xFA", 50000) + "x", {Repeat("日", 50000) + "x"}},
      {ReadUtf8, "\xEF\xBB\xBF日本,ｱﾞ\r\n𠮷\n", {"日本,ｱﾞ", "𠮷"}},
      // A mark is one at the start of the file only, and once.
      {ReadUtf8,
       "\xEF\xBB\xBF\xEF\xBB\xBF"
       "a\n\xEF\xBB\xBF"
       "b\n",
       {"\xEF\xBB\xBF"
        "a",
        "\xEF\xBB\xBF"
        "b"}},
      {ReadUtf8, "\xFF\xFE,\0\xE5\x65\r\0\n\0x\0"s, {",日", "x"}},  // the file's own mark decides
      {ReadUtf8, Repeat("日", 50000) + "x\ny", {Repeat("日", 50000) + "x", "y"}},
      // Bytes that aren't UTF-8 spoil their own place only.
      {ReadUtf8, "a\nb\xFF\nc\xE3\x81\nd\n", {"a", "b\xEF\xBF\xBD", "c\xEF\xBF\xBD", "d"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.bytes.substr(0, 60)));
    EXPECT_EQ(row.read(row.bytes), row.lines);
  }
}

class Wrapped : public CQorCSVFile {
 public:
  explicit Wrapped(std::FILE* stream) : CQorCSVFile(stream) { delimiterType = kComma; }
};

TEST(CsvFile, DecodesWrappedStreamsWhateverTheLocale) {
  const TempFile temp("\x93\xFA\r\n\x93\r\nb\x93");
  for (const wchar_t* locale : {L"C", L"japanese"}) {
    _wsetlocale(LC_ALL, locale);
    Wrapped file(_wfopen(temp.Path(), L"rt"));
    EXPECT_EQ(ReadAll(file), (Lines{"日", "・", "b・"})) << Utf8(locale);
    file.Close();
  }
}

TEST(CsvFile, GoesBackToEveryLine) {
  for (const bool utf8 : {false, true}) {
    const std::string word = utf8 ? "日" : "\x93\xFA";
    std::string bytes = utf8 ? "\xEF\xBB\xBF" : "";
    struct Place {
      std::size_t position;
      std::string line;
    };
    std::vector<Place> places;
    // Several times what any buffer holds.
    for (int i = 0; bytes.size() < 300000; ++i) {
      places.push_back({bytes.size(), Repeat("日", i * 7 % 90) + std::to_string(i)});
      bytes += Repeat(word, i * 7 % 90) + std::to_string(i) + (i % 3 == 0 ? "\n" : "\r\n");
    }
    const TempFile temp(bytes);
    std::FILE* const stream = utf8 ? _wfopen(temp.Path(), L"rt,ccs=UTF-8") : nullptr;
    CQorUTF8CSVFile unicode(stream, kComma, CSVMGR_QUOTES_NONE, 0);
    CQorCSVFile legacy(kComma, CSVMGR_QUOTES_NONE, 0);
    ASSERT_TRUE(utf8 || legacy.Open(temp.Path(), CFile::modeRead));
    CQorCSVFile& file = utf8 ? unicode : legacy;
    CQorCSVManager manager;
    for (std::size_t i = 0; i < places.size(); ++i) {
      // Before the first line the mark may still be ahead.
      ASSERT_EQ(file.GetPosition(), i == 0 ? 0 : places[i].position) << utf8;
      ASSERT_EQ(file.ReadCSV(manager), 1);
      ASSERT_EQ(Utf8(manager.GetReadString()), places[i].line) << utf8 << " " << i;
      // Back and forth, near and far.
      const Place& other = places[i % 10 == 0 ? i * 7919 % places.size() : i - i % 3];
      file.Seek(static_cast<long long>(other.position), CFile::begin);
      ASSERT_EQ(file.ReadCSV(manager), 1);
      ASSERT_EQ(Utf8(manager.GetReadString()), other.line) << utf8 << " " << i;
      const std::size_t next = i + 1 < places.size() ? places[i + 1].position : bytes.size();
      ASSERT_EQ(file.Seek(static_cast<long long>(next), CFile::begin), next);
    }
    EXPECT_EQ(file.ReadCSV(manager), 0);
    EXPECT_EQ(file.GetPosition(), file.GetLength());
    file.Close();
  }
}

TEST(CsvFile, UsesSettingsOfTheCallOrItsOwn) {
  const TempFile temp("a;'b;c',d\na;'b;c',d\n");
  CQorCSVFile file(temp.Path(), 0);
  CQorCSVManager manager;
  EXPECT_EQ(file.ReadCSV(manager), 0);
  EXPECT_EQ(file.ReadCSV(manager, 0, CSVMGR_QUOTES_SINGLE, 0), 0);
  EXPECT_EQ(file.GetPosition(), 0u);
  EXPECT_EQ(file.ReadCSV(manager, CSVMGR_DELIM_SEMICOLON, CSVMGR_QUOTES_SINGLE, 0), 1);
  EXPECT_EQ(manager.GetCount(), 2);
  EXPECT_EQ(file.ReadCSV(manager), 0);
  EXPECT_EQ(file.ReadCSV(manager, kComma, CSVMGR_QUOTES_NONE, 0), 1);
  EXPECT_TEXT(L"a;'b;c'", manager.GetAt(0));
  file.Close();

  CQorCSVFile runs(temp.Path(), 0, CSVMGR_DELIM_SEMICOLON | kComma, CSVMGR_QUOTES_NONE, 1);
  EXPECT_EQ(runs.ReadCSV(manager), 1);
  EXPECT_EQ(manager.GetCount(), 4);
}

TEST(CsvFile, AnswersWithoutAnOpenFile) {
  CQorCSVManager manager;
  CQorCSVFile closed;
  EXPECT_EQ(closed.ReadCSV(manager), 0);
  CQorCSVFile set(kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(set.ReadCSV(manager), 0);
  CQorUTF8CSVFile none(nullptr, kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(none.ReadCSV(manager), 0);
  EXPECT_THROWS_POINTER(CQorCSVFile(L"C:\\no such folder\\x.csv", 0), CFileException);

  const TempFile temp("a,b\n");
  EXPECT_NE(set.Open(temp.Path(), CFile::modeRead), 0);
  EXPECT_EQ(set.ReadCSV(manager), 1);
  EXPECT_TEXT(L"b", manager.GetAt(1));
  set.Close();
}

TEST(CsvFile, ReportsReadsThatFail) {
  const TempFile temp;
  CQorCSVFile file(temp.Path(), CFile::modeCreate | CFile::modeWrite, kComma, CSVMGR_QUOTES_DOUBLE, 0);
  CQorCSVManager manager(L"a", kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_THROWS_POINTER(file.ReadCSV(manager), CFileException);
  EXPECT_EQ(manager.GetCount(), 1);
}

TEST(CsvFile, WritesLegacyLines) {
  const TempFile temp;
  {
    CQorCSVFile file(temp.Path(), CFile::modeCreate | CFile::modeWrite, kComma, CSVMGR_QUOTES_DOUBLE, 0);
    CQorCSVManager manager;
    manager.SetCommentLineInfo(1, 2);
    for (const wchar_t* field : {L"日本\"", L"𠮷x"}) manager.AddElement(field);
    for (int number = 1; number <= 3; ++number) {
      EXPECT_EQ(file.WriteCSV(manager, CSVMGR_DELIM_TAB, CSVMGR_QUOTES_SINGLE, number), 1);
    }
    EXPECT_EQ(file.WriteCSV(manager), 1);
    EXPECT_EQ(file.WriteCSV(manager, 0, CSVMGR_QUOTES_SINGLE, 1), 0);
    // A write leaves its settings in the manager.
    CString line;
    EXPECT_TEXT(L"\"日本\"\"\",\"𠮷x\"", manager.MakeString(line));
    file.Close();
  }
  EXPECT_EQ(temp.Get(),
            "#'\x93\xFA\x96\x7B\"'\t'??x'\r\n#'\x93\xFA\x96\x7B\"'\t'??x'\r\n'\x93\xFA\x96\x7B\"'\t'??x'\r\n"
            "\"\x93\xFA\x96\x7B\"\"\",\"??x\"\r\n");

  CQorCSVFile unset(temp.Path(), CFile::modeCreate | CFile::modeWrite);
  CQorCSVManager manager(L"a,b", kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(unset.WriteCSV(manager), 0);
  unset.Close();
  EXPECT_EQ(temp.Get(), "");
}

TEST(CsvFile, WritesLongLegacyLines) {
  const TempFile temp;
  CQorCSVFile file(temp.Path(), CFile::modeCreate | CFile::modeWrite, kComma, CSVMGR_QUOTES_NONE, 0);
  // What the program makes of its locale meanwhile doesn't matter.
  _wsetlocale(LC_ALL, L"C");
  CQorCSVManager manager;
  CString field;
  for (int i = 0; i < 300000; ++i) field.AppendChar(i % 2 == 0 ? L'日' : L'x');
  manager.AddElement(field);
  manager.AddElement(L"y");
  EXPECT_EQ(file.WriteCSV(manager), 1);
  file.Close();
  EXPECT_EQ(temp.Get(), Repeat("\x93\xFAx", 150000) + ",y\r\n");
}

TEST(CsvFile, WritesUtf8Lines) {
  const TempFile temp;
  CQorUTF8CSVFile file(_wfopen(temp.Path(), L"wt,ccs=UTF-8"), kComma, CSVMGR_QUOTES_NONE, 0);
  CQorCSVManager manager;
  for (const wchar_t* field : {L"日本", L"𠮷"}) manager.AddElement(field);
  EXPECT_EQ(file.WriteCSV(manager), 1);
  EXPECT_EQ(file.WriteCSV(manager, CSVMGR_DELIM_TAB, CSVMGR_QUOTES_DOUBLE, 1), 1);
  file.Close();
  // The stream is rewound over the mark that opening it wrote, so the first line takes its place.
  EXPECT_EQ(temp.Get(), "日本,𠮷\r\n\"日本\"\t\"𠮷\"\r\n");
}

// Lines come and go through the virtual pair, whatever it does.
class OwnLines : public CQorCSVFile {
 public:
  OwnLines() : CQorCSVFile(kComma, CSVMGR_QUOTES_DOUBLE, 0) {}
  std::vector<std::string> written;
  int left = 2;

 protected:
  int ReadString(CString& line) override {
    if (left-- == 0) return 0;
    line = CString(L"from,memory\0,and,more", 20);
    return 1;
  }
  void WriteString(const wchar_t* text) override {
    written.push_back(Utf8(text));
    CQorCSVManager inner(L"inner", kComma, CSVMGR_QUOTES_DOUBLE, 0);
    if (written.size() == 1) WriteCSV(inner);
    written.push_back(Utf8(text));
  }
};

TEST(CsvFile, CallsOverrides) {
  OwnLines file;
  CQorCSVManager manager;
  EXPECT_EQ(file.ReadCSV(manager), 1);
  EXPECT_EQ(manager.GetCount(), 2);
  EXPECT_TEXT(L"memory", manager.GetAt(1));
  EXPECT_EQ(manager.GetReadString().GetLength(), 11);
  EXPECT_EQ(file.ReadCSV(manager, CSVMGR_DELIM_TAB, CSVMGR_QUOTES_NONE, 0), 1);
  EXPECT_EQ(file.ReadCSV(manager), 0);
  manager.SetElements(L"a", kComma, CSVMGR_QUOTES_DOUBLE, 0);
  EXPECT_EQ(file.WriteCSV(manager), 1);
  EXPECT_EQ(file.written, (Lines{"\"a\"\n", "\"inner\"\n", "\"inner\"\n", "\"a\"\n"}));
}

// A reader that gives up on every second line without a word about it.
class TiredFile : public CQorCSVFile {
 public:
  int count = 0;

 protected:
  int ReadString(CString& line) override {
    if (++count % 2 != 0) line = L"a,b";
    return count < 7 ? 1 : 0;
  }
};

TEST(CsvFile, LineThatWasPassedOverIsEmptyAndNotAnEarlierOne) {
  TiredFile file;
  CQorCSVManager manager;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(file.ReadCSV(manager, kComma, CSVMGR_QUOTES_DOUBLE, 0), 1);
    EXPECT_EQ(manager.GetCount(), 2) << i;
    EXPECT_EQ(file.ReadCSV(manager, kComma, CSVMGR_QUOTES_DOUBLE, 0), 1);
    EXPECT_EQ(manager.GetCount(), 0) << i;
    EXPECT_TEXT(L"", manager.GetReadString());
  }
  EXPECT_EQ(file.ReadCSV(manager, kComma, CSVMGR_QUOTES_DOUBLE, 0), 0);
}

}  // namespace
