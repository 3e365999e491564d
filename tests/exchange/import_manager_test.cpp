// The import loop over whole files, in both encodings: comments, blank lines, bad rows, positions, shared
// files.

#include "qorgen/exchange/import_manager.h"

#include <cstddef>
#include <cstdint>
#include <deque>

#include "qorgen/afx/exception.h"

#include "tests/exchange/temp_file.h"
#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

constexpr unsigned int kComma = CSVMGR_DELIM_COMMA;

struct Entry {
  std::int32_t date;
  std::int32_t amount;
  wchar_t note[6];
  std::uint8_t paid;
};

QorTypeCheckInfoTable g_columns[] = {
    {TYPECHECK_DATE, L"日付", 0, 0, 1, offsetof(Entry, date), 0},
    {TYPECHECK_LONG, L"金額", 6, 0, 1, offsetof(Entry, amount), 0},
    {TYPECHECK_STRING, L"摘要", 5, 0, 1, offsetof(Entry, note), 0},
    {TYPECHECK_BOOL, L"済", 0, 0, 0, offsetof(Entry, paid), 0},
};

struct Case {
  const char* name;
  bool utf8;
  std::string note;  // 日本, in the encoding
  std::string yes;   // ○
};

const Case kCases[] = {
    {"legacy", false, "\x93\xFA\x96\x7B", "\x81\x9B"},
    {"utf8", true, "\xE6\x97\xA5\xE6\x9C\xAC", "\xE2\x97\x8B"},
    {"utf8 with mark", true, "\xE6\x97\xA5\xE6\x9C\xAC", "\xE2\x97\x8B"},
};

class ImportTest : public testing::TestWithParam<Case> {
 protected:
  ImportTest() { converter_.Initialize(g_columns, 4); }

  CQorImportManager& Manager() { return GetParam().utf8 ? static_cast<CQorImportManager&>(utf8_) : legacy_; }
  // Lasts longer than the managers, which may have it open at the end.
  const TempFile& File(const std::string& bytes) { return files_.emplace_back(bytes); }
  int Open(const TempFile& temp) {
    return Manager().OpenText(temp.Path(), &converter_, kComma, CSVMGR_QUOTES_DOUBLE);
  }
  std::string Bytes(const std::string& text) const {
    return (GetParam().name == std::string("utf8 with mark") ? "\xEF\xBB\xBF" : "") + text;
  }

  std::deque<TempFile> files_;
  CQorTypeConverter converter_;
  CQorImportManager legacy_;
  CQorUTF8ImportManager utf8_;
};

TEST_P(ImportTest, ReadsAFileToItsEnd) {
  const std::string& note = GetParam().note;
  const TempFile& temp = File(Bytes("# " + note + "\r\n" +                                          //
                                    "01/04/R06,1000,\"" + note + "\"," + GetParam().yes + "\r\n" +  //
                                    "\r\n" +                                                        //
                                    "31/02/2024,12x,too long,?\r\n" +                               //
                                    " #,1,a,no\n" +                                                 //
                                    "02/04/2024,-5," + note + ",no,\n" +                            //
                                    "02/04/2024,1\n" +                                              //
                                    "#\n" +                                                         //
                                    "03/04/2024,7,\"x,\"\"y\",off"));
  const std::tuple<READSTATUS, const wchar_t*, std::int32_t, const wchar_t*, std::vector<TypeError>> rows[] =
      {
          {READSTATUS_SKIP, L"# 日本", -1, L"", {}},
          {READSTATUS_OK, L"01/04/R06,1000,\"日本\",○", 1000, L"日本", {}},
          {READSTATUS_SKIP, L"", -1, L"", {}},
          {READSTATUS_ERROR,
           L"31/02/2024,12x,too long,?",
           0,
           L"too l",
           {TYPEERROR_DATE, TYPEERROR_NOTNUMBER, TYPEERROR_LENGTH, TYPEERROR_VALUE}},
          {READSTATUS_ERROR, L" #,1,a,no", 1, L"a", {TYPEERROR_DATE}},
          {READSTATUS_OK, L"02/04/2024,-5,日本,no,", -5, L"日本", {}},
          {READSTATUS_ERROR, L"02/04/2024,1", -1, L"", {TYPEERROR_FIELDCOUNT}},
          {READSTATUS_SKIP, L"#", -1, L"", {}},
          {READSTATUS_OK, L"03/04/2024,7,\"x,\"\"y\",off", 7, L"x,\"y", {}},
      };
  ASSERT_EQ(Open(temp), 1);
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(Manager().IsEOF(), 0);
    int number = 0;
    for (const auto& [expected, line, amount, text, errors] : rows) {
      SCOPED_TRACE(std::to_string(++number));
      for (int look = 0; look < 3; ++look) {
        Entry entry = {-1, -1, L"", 9};
        // Twice without moving on, then for good.
        EXPECT_EQ(Manager().IsEOF(), 0);
        const READSTATUS status = look < 2 ? Manager().ReadRowOnly(&entry, 1) : Manager().ReadRow(&entry, 1);
        EXPECT_EQ(status, expected);
        EXPECT_TEXT(line, Manager().GetReadString());
        EXPECT_EQ(entry.amount, amount);
        EXPECT_TEXT(text, entry.note);
        if (status == READSTATUS_SKIP) continue;
        std::vector<TypeError> found;
        for (int i = 0; i < converter_.GetErrorCount(); ++i) found.push_back(converter_.GetErrorKind(i));
        EXPECT_EQ(found, errors);
      }
    }
    EXPECT_EQ(Manager().IsEOF(), 1);
    EXPECT_EQ(Manager().ReadRow(nullptr, 1), READSTATUS_EOF);
    EXPECT_EQ(Manager().ReadRowOnly(nullptr, 1), READSTATUS_EOF);
    Manager().MoveFirst();
  }
  EXPECT_EQ(Manager().ReadRow(nullptr, 1), READSTATUS_SKIP);
  EXPECT_TEXT(L"# 日本", Manager().GetReadString());
  Manager().Close();
  EXPECT_TEXT(L"# 日本", Manager().GetReadString());
  EXPECT_EQ(Manager().ReadRow(nullptr, 1), READSTATUS_ERROR);
  EXPECT_EQ(Manager().IsEOF(), 1);
}

TEST_P(ImportTest, ReadsEmptyFiles) {
  const TempFile& temp = File(Bytes(""));
  ASSERT_EQ(Open(temp), 1);
  EXPECT_EQ(Manager().ReadRow(nullptr, 1), READSTATUS_EOF);
  EXPECT_EQ(Manager().IsEOF(), 1);
}

TEST_P(ImportTest, IsTheSameForRowsAfterBrokenOnes) {
  // A NUL byte, a byte of no character, and a line far beyond the usual: the rows behind them stand.
  const TempFile& temp = File(Bytes(std::string("01/04/2024,1,a\0b,no\n", 20) + "01/04/2024,2,\xFF,no\n" +
                                    std::string(3000000, 'x') + "\n" + "01/04/2024,4,d,no\n"));
  const READSTATUS expected[] = {READSTATUS_ERROR, READSTATUS_OK, READSTATUS_ERROR, READSTATUS_OK,
                                 READSTATUS_EOF};
  ASSERT_EQ(Open(temp), 1);
  Entry entry = {};
  for (const READSTATUS status : expected) EXPECT_EQ(Manager().ReadRow(&entry, 1), status);
  EXPECT_EQ(entry.amount, 4);
  EXPECT_EQ(Manager().IsEOF(), 1);
}

TEST_P(ImportTest, RefusesWhatItCannotOpen) {
  const TempFile& temp = File("a");
  EXPECT_EQ(Manager().OpenText(nullptr, &converter_, kComma, CSVMGR_QUOTES_DOUBLE), 0);
  EXPECT_EQ(Manager().OpenText(temp.Path(), nullptr, kComma, CSVMGR_QUOTES_DOUBLE), 0);
  EXPECT_EQ(Manager().OpenText(L"C:\\no such folder\\x.csv", &converter_, kComma, CSVMGR_QUOTES_DOUBLE), 0);
  EXPECT_EQ(Manager().ReadRow(nullptr, 1), READSTATUS_ERROR);
  EXPECT_EQ(Manager().ReadRowOnly(nullptr, 1), READSTATUS_ERROR);
  EXPECT_EQ(Manager().IsEOF(), 1);
  Manager().MoveFirst();
  Manager().Close();

  // A folder exists, but can't be opened; the file that was open stays.
  ASSERT_EQ(Open(temp), 1);
  ScratchFolder folder;
  EXPECT_THROWS_POINTER(Manager().OpenText(folder.Path(L""), &converter_, kComma, CSVMGR_QUOTES_DOUBLE),
                        CFileException);
  EXPECT_EQ(Manager().ReadRow(nullptr, 0), READSTATUS_ERROR);
  EXPECT_TEXT(L"a", Manager().GetReadString());
}

TEST_P(ImportTest, OpensAnotherFileOverTheFirst) {
  const TempFile& first = File(Bytes("01/04/2024,1,a,no\n"));
  const TempFile& second = File(Bytes("01/04/2024,2,b,no\n"));
  Entry entry = {};
  ASSERT_EQ(Open(first), 1);
  ASSERT_EQ(Open(second), 1);
  EXPECT_EQ(Manager().ReadRow(&entry, 1), READSTATUS_OK);
  EXPECT_EQ(entry.amount, 2);
}

TEST_P(ImportTest, SharesItsFileWithCopies) {
  const TempFile& temp = File(Bytes("01/04/2024,1,a,no\n01/04/2024,2,b,no\n01/04/2024,3,c,no\n"));
  Entry entry = {};
  ASSERT_EQ(Open(temp), 1);
  CQorImportManager assigned;
  {
    CQorImportManager copy(Manager());
    EXPECT_EQ(copy.ReadRow(&entry, 1), READSTATUS_OK);
    assigned = copy;
  }
  EXPECT_TEXT(L"01/04/2024,1,a,no", assigned.GetReadString());
  EXPECT_EQ(Manager().ReadRow(&entry, 1), READSTATUS_OK);
  EXPECT_EQ(entry.amount, 2);
  EXPECT_EQ(assigned.ReadRow(&entry, 1), READSTATUS_OK);
  EXPECT_EQ(entry.amount, 3);
  EXPECT_EQ(assigned.IsEOF(), 1);
  Manager().Close();
  EXPECT_EQ(assigned.ReadRow(&entry, 1), READSTATUS_ERROR);
}

INSTANTIATE_TEST_SUITE_P(Encodings, ImportTest, testing::ValuesIn(kCases), [](const auto& row) {
  return row.index == 0 ? "Legacy" : row.index == 1 ? "Utf8" : "Utf8WithMark";
});

// An application's own source of lines, handed over by an OpenText of its own.
class MemoryFile : public CQorCSVFile {
 public:
  explicit MemoryFile(int* alive) : CQorCSVFile(kComma, CSVMGR_QUOTES_DOUBLE, 0), alive_(alive) { ++*alive_; }
  ~MemoryFile() override { --*alive_; }

 protected:
  int ReadString(CString& line) override {
    line = ++lines_ <= 2 ? L"01/04/2024,8,m,yes" : L"total";
    return lines_ <= 3 ? 1 : 0;
  }
  // Passes over the last line.
  int ReadCSV(CQorCSVManager& manager) override {
    int read = 0;
    do {
      read = CQorCSVFile::ReadCSV(manager);
    } while (read != 0 && manager.GetReadString() == L"total");
    return read;
  }

 private:
  int* alive_;
  int lines_ = 0;
};

class MemoryImport : public CQorImportManager {
 public:
  int alive = 0;
  ~MemoryImport() override { Finalize(); }  // before `alive` goes

  int OpenText(const wchar_t*, CQorTypeConverter* rows, unsigned int, CSVMGR_QUOTES) override {
    file = new MemoryFile(&alive);
    converter = rows;
    return 1;
  }
};

TEST(ImportManager, TakesFilesOfAnOverride) {
  CQorTypeConverter converter;
  converter.Initialize(g_columns, 4);
  MemoryImport manager;
  Entry entry = {};
  for (int round = 0; round < 2; ++round) {
    manager.OpenText(nullptr, &converter, 0, CSVMGR_QUOTES_NONE);
    EXPECT_EQ(manager.ReadRow(&entry, 1), READSTATUS_OK);
    manager.OpenText(nullptr, &converter, 0, CSVMGR_QUOTES_NONE);
    EXPECT_EQ(manager.ReadRow(&entry, 1), READSTATUS_OK);
    EXPECT_EQ(manager.ReadRow(&entry, 1), READSTATUS_OK);
    EXPECT_EQ(entry.amount, 8);
    EXPECT_EQ(manager.ReadRow(&entry, 1), READSTATUS_EOF);
    EXPECT_TEXT(L"01/04/2024,8,m,yes", manager.GetReadString());
    EXPECT_EQ(manager.alive, 2);
    manager.Close();
    EXPECT_EQ(manager.alive, 0);
  }
}

}  // namespace
