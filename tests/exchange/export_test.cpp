// The frame of an export: what it writes, when it asks its hooks, and what a failure leaves behind.

#include <type_traits>

#include "qorgen/exchange/export_base.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/codepage.h"

#include "tests/support/own_temp_folder.h"
#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

static_assert(sizeof(CQorExportInfo) == 4);
static_assert(std::is_abstract_v<CQorExportBase> && std::is_polymorphic_v<CQorExportBase>);

constexpr CQorExportInfo kColumns[] = {10, 20, 30};

CString Wide(const std::string& utf8) {
  CString text;
  const int size = static_cast<int>(utf8.size());
  wchar_t* const units = text.GetBuffer(size + 1);
  text.ReleaseBuffer(size == 0 ? 0 : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, units, size));
  return text;
}

// Rows of three fields parted by "|", and a note of every call of a hook. A field "-" is left out, "!" drops
// its row, "'" in front asks for single quotes and "=" for none.
class Exporter : public CQorExportBase {
 public:
  explicit Exporter(std::vector<std::string> rows) : rows_(std::move(rows)) {
    Initialize(CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE);
    SetExportInfo(kColumns, 3);
  }

  std::string Calls() { return std::exchange(calls_, ""); }
  using CQorExportBase::csvFile;
  using CQorExportBase::csvManager;
  using CQorExportBase::Finalize;
  using CQorExportBase::row;

  long first = 0;  // the row that is rows_[0]
  long abort_at = -1;
  long throw_at = -1;
  int comment_on = 0;
  int comment_limit = 0;

 protected:
  void InitCommentLine() override {
    CQorExportBase::InitCommentLine();
    EXPECT_EQ(0, commentLineOn + commentLineLimit);
    commentLineOn = comment_on;
    commentLineLimit = comment_limit;
  }
  void StartProgress(long at) override { calls_ += "start" + std::to_string(at) + " "; }
  int IsAbort(long at) override {
    calls_ += "abort" + std::to_string(at) + " ";
    return at == abort_at ? 1 : 0;
  }
  void EndProgress() override { calls_ += "done"; }
  int IsExportEnd(long at) override {
    calls_ += "end" + std::to_string(at) + " ";
    return at - first == static_cast<long>(rows_.size()) ? 1 : 0;
  }
  void GetExportField(CQorExportInfo info, long at, CString& text, CSVMGR_QUOTES& field_quotes,
                      int& output) override {
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(1, output);
    EXPECT_EQ(quotes, field_quotes);
    if (at == throw_at) throw 7;
    const std::string& fields = rows_[static_cast<std::size_t>(at - first)];
    std::size_t begin = 0;
    for (CQorExportInfo i = 10; i < info; i += 10) begin = fields.find('|', begin) + 1;
    std::string field = fields.substr(begin, fields.find('|', begin) - begin);
    if (field == "-") output = 0;
    if (field == "!") SetSkipOutputOn();
    if (field[0] == '\'' || field[0] == '=') {
      field_quotes = field[0] == '=' ? CSVMGR_QUOTES_NONE : CSVMGR_QUOTES_SINGLE;
      field.erase(0, 1);
    }
    text = Wide(field);
  }

 private:
  std::vector<std::string> rows_;
  std::string calls_;
};

class ExportTest : public testing::Test {
 protected:
  void SetUp() override { CreateDirectoryW(folder_.Path(L"表"), nullptr); }
  const wchar_t* Path() { return folder_.Path(L"表\\out.csv"); }
  // Where an OL file is made.
  static CString TempPath() { return CQorFileUtil::ConnectPath(CQorFileUtil::GetTempPathW(), L"out.csv"); }

  OwnTempFolder folder_;
};

TEST_F(ExportTest, RowsColumnsQuotesAndCalls) {
  struct Row {
    std::vector<std::string> rows;
    std::string expected;  // UTF-8
    std::string calls;
  };
  const Row cases[] = {
      {{}, "", "start0 end0 done"},
      {{"a|b\"c|", "日|ｱ,|髙"},
       "\"a\",\"b\"\"c\",\"\"\r\n\"日\",\"ｱ,\",\"髙\"\r\n",
       "start0 end0 abort1 end1 abort2 end2 done"},
      // A column left out. Quotes go by the place in the line and stay those of the first row; the third
      // entry is the second row's first.
      {{"=a|-|'c", "'x|y|-", "p|q|=r"},
       "a,'c'\r\nx,'y'\r\np,'q','r'\r\n",
       "start0 end0 abort1 end1 abort2 end2 abort3 end3 done"},
      {{"-|-|-"}, "\r\n", "start0 end0 abort1 end1 done"},
      // A dropped row leaves its quotes as far as it came.
      {{"=a|!|'c", "b|=c|d", "!||"}, "b,\"c\",\"d\"\r\n", "start0 end0 end1 abort2 end2 end3 done"},
  };
  for (const Row& row : cases) {
    Exporter exporter(row.rows);
    PutFile(Path(), "earlier content that is longer than what comes now ...........................");
    ASSERT_EQ(1, exporter.Write(Path(), nullptr, 0));
    EXPECT_EQ(row.calls, exporter.Calls());
    EXPECT_EQ(0, exporter.IsOLFile());
    ASSERT_EQ(1, CQorFileUtil::SJisToUtf8(Path(), folder_.Path(L"utf8")));
    EXPECT_EQ(row.expected, GetFile(folder_.Path(L"utf8")));

    exporter.first = exporter.row;
    ASSERT_EQ(1, exporter.Write(Path(), nullptr, 1));
    EXPECT_EQ(1, exporter.IsOLFile());
    EXPECT_EQ(row.expected, GetFile(Path()));
    EXPECT_FALSE(Exists(TempPath()));
  }
}

TEST_F(ExportTest, DelimitersDefaultsAndWhatTheCodePageLacks) {
  struct Row {
    unsigned int delimiter;
    CSVMGR_QUOTES quotes;
    std::string expected;
  };
  for (const Row& row :
       {Row{CSVMGR_DELIM_TAB, CSVMGR_QUOTES_NONE, "a\t?\tc\r\n"},
        Row{CSVMGR_DELIM_TAB | CSVMGR_DELIM_SEMICOLON, CSVMGR_QUOTES_SINGLE, "'a';'?';'c'\r\n"},
        Row{CSVMGR_DELIM_SLASH, CSVMGR_QUOTES_NONE, "a?c\r\n"}}) {
    Exporter exporter({"a|☃|c"});
    exporter.SetDelimiter(row.delimiter);
    exporter.SetQuotes(row.quotes);
    EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
    EXPECT_EQ(row.expected, GetFile(Path()));
  }
  Exporter exporter({"a|b|c"});
  exporter.Finalize();
  EXPECT_EQ(nullptr, exporter.csvFile);
  EXPECT_EQ(nullptr, exporter.csvManager);
  EXPECT_EQ(0, exporter.row);
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  EXPECT_EQ("\r\n", GetFile(Path()));  // no columns
}

TEST_F(ExportTest, AbortKeepsWhatWasWritten) {
  Exporter exporter({"=a|=b|=c", "d|e|f", "g|h|i", "j|k|l"});
  exporter.abort_at = 3;
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  EXPECT_EQ("a,b,c\r\nd,e,f\r\ng,h,i\r\n", GetFile(Path()));
  EXPECT_EQ("start0 end0 abort1 end1 abort2 end2 abort3 done", exporter.Calls());
}

TEST_F(ExportTest, CommentLines) {
  Exporter exporter({"=a|=b|=c", "d|e|f", "!||", "g|h|i"});
  exporter.comment_on = 1;
  exporter.comment_limit = 3;
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  EXPECT_EQ("#a,b,c\r\n#d,e,f\r\ng,h,i\r\n", GetFile(Path()));  // the dropped row counts
  exporter.comment_on = 0;
  exporter.first = exporter.row;
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  EXPECT_EQ("a,b,c\r\nd,e,f\r\ng,h,i\r\n", GetFile(Path()));
}

TEST_F(ExportTest, ASecondExportCountsOn) {
  Exporter exporter({"a|b|c"});
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  const Exporter copy = exporter;  // shares what the first export leaves
  EXPECT_EQ(exporter.csvManager, copy.csvManager);
  exporter.first = 1;
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  EXPECT_EQ("\"a\",\"b\",\"c\"\r\n", GetFile(Path()));
  exporter.Calls();
  exporter.Initialize(CSVMGR_DELIM_TAB, CSVMGR_QUOTES_NONE);
  EXPECT_EQ(0, exporter.row);
  exporter.SetExportInfo(kColumns, 1);
  exporter.first = 0;
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  EXPECT_EQ("a\r\n", GetFile(Path()));
  EXPECT_EQ("start0 end0 abort1 end1 done", exporter.Calls());
  exporter = copy;
  EXPECT_EQ(1, exporter.row);
  EXPECT_TEXT(L"a", exporter.csvManager->GetAt(0));
}

TEST_F(ExportTest, OlFileThatCannotBeHandedOverStays) {
  Exporter exporter({"=a|=b|=c"});
  CreateDirectoryW(Path(), nullptr);
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 1));
  EXPECT_EQ("a,b,c\r\n", GetFile(TempPath()));
  // A target in the temporary folder is the file itself.
  exporter.first = exporter.row;
  EXPECT_EQ(1, exporter.Write(TempPath(), nullptr, 1));
  EXPECT_EQ("a,b,c\r\n", GetFile(TempPath()));
}

TEST_F(ExportTest, TableauAppends) {
  Exporter exporter({"=a|=☃|=c", "d|!|f"});
  exporter.comment_on = exporter.comment_limit = 1;
  EXPECT_EQ(1, exporter.WriteTableau(Path()));
  EXPECT_EQ(1, exporter.IsOLFile());
  EXPECT_EQ("\xEF\xBB\xBF#a,☃,c\r\nd,!,f\r\n", GetFile(Path()));
  EXPECT_EQ("end0 end1 end2 ", exporter.Calls());
  exporter.first = exporter.row;
  EXPECT_EQ(1, exporter.WriteTableau(Path()));
  EXPECT_EQ("\xEF\xBB\xBF#a,☃,c\r\nd,!,f\r\na,☃,c\r\nd,!,f\r\n", GetFile(Path()));
  EXPECT_EQ(1, Exporter({}).WriteTableau(Path()));
  EXPECT_EQ(0, exporter.WriteTableau(folder_.Path(L"表")));
  EXPECT_EQ(0, exporter.WriteTableau(nullptr));
  // The whole file goes with a failed write.
  exporter.SetDelimiter(0);
  exporter.first = exporter.row;
  EXPECT_EQ(0, exporter.WriteTableau(Path()));
  EXPECT_FALSE(Exists(Path()));
}

TEST_F(ExportTest, FailuresLeaveNoTarget) {
  Exporter exporter({"a|b|c"});
  for (const wchar_t* path :
       {folder_.Path(L"表"), folder_.Path(L"none\\out.csv"), L"", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(0, exporter.Write(path, nullptr, 0));
    EXPECT_EQ(nullptr, exporter.csvFile);
  }
  EXPECT_EQ(0, exporter.Write(L"", nullptr, 1));
  EXPECT_EQ("", exporter.Calls());
  for (const int ol : {0, 1}) {
    PutFile(Path(), "earlier");
    exporter.SetDelimiter(0);
    exporter.first = exporter.row;
    EXPECT_EQ(0, exporter.Write(Path(), nullptr, ol));
    EXPECT_EQ(ol == 0 ? "(missing)" : "earlier", GetFile(Path()));
    EXPECT_FALSE(Exists(TempPath()));
    const std::string at = std::to_string(exporter.first), next = std::to_string(exporter.row);
    EXPECT_EQ("start" + at + " end" + at + " abort" + next + " done", exporter.Calls());
  }
}

TEST_F(ExportTest, WhatAHookThrowsPassesThrough) {
  Exporter exporter({"=a|=b|=c", "d|e|f"});
  exporter.throw_at = 1;
  EXPECT_THROW(exporter.Write(Path(), nullptr, 0), int);
  EXPECT_EQ("start0 end0 abort1 end1 ", exporter.Calls());
  // Closed, as far as it was written.
  EXPECT_EQ("a,b,c\r\n", GetFile(Path()));
  EXPECT_EQ(1, CQorFileUtil::DeleteFileW(Path()));
}

// Starts over as it is asked for comment lines, gains columns in the middle of a row, and changes the path.
class Restless : public CQorExportBase {
 public:
  CString path;

 protected:
  void InitCommentLine() override {
    Initialize(CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_NONE);
    SetExportInfo(kColumns, 1);
    commentLineOn = commentLineLimit = 1;
  }
  void GetExportField(CQorExportInfo, long, CString& text, CSVMGR_QUOTES&, int&) override {
    SetExportInfo(kColumns, 3);
    path = CString(L'z', 500);
    text = L"x";
  }
  int IsExportEnd(long at) override { return at == 2 ? 1 : 0; }
};

TEST_F(ExportTest, HooksThatChangeTheExporter) {
  Restless exporter;
  exporter.path = Path();
  EXPECT_EQ(1, exporter.Write(exporter.path, nullptr, 1));
  EXPECT_EQ("#x,x,x\r\nx,x,x\r\n", GetFile(Path()));
}

// Asks for no quotes, single ones, and then double ones in a row that has become wider.
class Widening : public CQorExportBase {
 public:
  Widening() {
    Initialize(CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE);
    SetExportInfo(kColumns, 1);
  }

 protected:
  void GetExportField(CQorExportInfo, long at, CString& text, CSVMGR_QUOTES& type, int&) override {
    text = L"x";
    if (at < 2) type = at == 0 ? CSVMGR_QUOTES_NONE : CSVMGR_QUOTES_SINGLE;
  }
  int IsExportEnd(long at) override {
    if (at == 2) SetExportInfo(kColumns, 2);
    return at == 3 ? 1 : 0;
  }
};

TEST_F(ExportTest, AWiderRowTakesTheQuotesInTheirOrder) {
  Widening exporter;
  EXPECT_EQ(1, exporter.Write(Path(), nullptr, 0));
  EXPECT_EQ("x\r\nx\r\nx,'x'\r\n", GetFile(Path()));
}

}  // namespace
}  // namespace qorgen::tests
