#include "qorgen/exchange/template_doc.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

const std::string kMark = "\xEF\xBB\xBF";

class TemplateDoc : public testing::Test {
 protected:
  // What a template of this text writes, with A as 1 and B as 2.
  std::string Filled(const std::string& text, long pieces) {
    EXPECT_TRUE(PutFile(folder_.Path(L"in"), text));
    CQorTemplateDoc document;
    EXPECT_EQ(1, document.LoadTemplateFile(folder_.Path(L"in")));
    EXPECT_EQ(pieces, document.GetCount()) << text.substr(0, 40);
    document.SetString(L"A", L"1");
    document.SetString(L"B", L"2");
    EXPECT_EQ(1, document.WriteFile(folder_.Path(L"out")));
    const std::string bytes = GetFile(folder_.Path(L"out"));
    EXPECT_EQ(kMark, bytes.substr(0, 3));
    return bytes.substr(3);
  }

  ScratchFolder folder_;
};

TEST_F(TemplateDoc, LinesAndKeys) {
  const std::tuple<const char*, long, const char*> rows[] = {
      {"", 0, ""},
      {"\n\n", 4, "\r\n\r\n"},
      {"様 $$A$$\r\n$$B$$", 7, "様 1\r\n2\r\n"},
      {"$$A$$ and $$B$$.", 4, "12.\r\n"},
      {"$$A$$$$A$$", 4, "11\r\n"},
      {"$$unset$$.", 3, ".\r\n"},
      {"cost: $$A\nnext", 3, "cost: next\r\n"},
      {"$$A$$ lost $$B\nx", 3, "1x\r\n"},
      {"a$b$", 2, "a$b$\r\n"},
      {"$$$", 0, ""},
      {"$$$$.", 3, ".\r\n"},
      {"$$$A$$", 3, "\r\n"},
      {"\xEF\xBB\xBF$$A$$", 3, "1\r\n"},
  };
  for (const auto& [text, pieces, filled] : rows) EXPECT_EQ(filled, Filled(text, pieces)) << text;
}

TEST_F(TemplateDoc, LongPiecesAreCut) {
  const std::string kanji = "漢";
  std::string longest, longer;
  for (int i = 0; i < 5000; ++i) (i < 4096 ? longest : longer) += kanji;
  EXPECT_EQ(longest + "1\r\n", Filled(longest + longer + "$$A$$", 4));
  // A key that is cut has no name that could be set.
  EXPECT_EQ(".\r\n", Filled("$$" + std::string(127, 'A') + "$$.", 3));
  const std::string fits(124, 'k');
  ASSERT_TRUE(PutFile(folder_.Path(L"in"), "$$" + fits + "$$"));
  CQorTemplateDoc document;
  ASSERT_EQ(1, document.LoadTemplateFile(folder_.Path(L"in")));
  EXPECT_EQ(1, document.SetString(CString(L'k', 124), CString(L'v', 5000)));
  ASSERT_EQ(1, document.WriteFile(folder_.Path(L"out")));
  EXPECT_EQ(kMark + std::string(4096, 'v') + "\r\n", GetFile(folder_.Path(L"out")));
}

TEST_F(TemplateDoc, HugeLines) {
  constexpr int kKeys = 200000;
  std::string text;
  for (int i = 0; i < kKeys; ++i) text += "$$A$$ what is lost in a line of ten megabytes";
  EXPECT_TRUE(Filled(text + "$$A$$.", kKeys + 3) == std::string(kKeys + 1, '1') + ".\r\n");
  EXPECT_TRUE(Filled(std::string(10 << 20, '$') + "x", (10 << 20) / 4 + 2) == "x\r\n");
  EXPECT_TRUE(Filled("y$$" + std::string(10 << 20, 'x') + "\nz", 3) == "yz\r\n");
}

TEST_F(TemplateDoc, CallsInAnyOrder) {
  CQorTemplateDoc document;
  EXPECT_EQ(0, document.SetString(L"A", L"1"));
  EXPECT_EQ(1, document.WriteFile(folder_.Path(L"empty")));
  EXPECT_EQ(kMark, GetFile(folder_.Path(L"empty")));
  ASSERT_TRUE(PutFile(folder_.Path(L"in"), "$$A$$-\n$$A$$"));
  ASSERT_EQ(1, document.LoadTemplateFile(folder_.Path(L"in")));
  EXPECT_EQ(0, document.LoadTemplateFile(folder_.Path(L"missing")));
  EXPECT_EQ(0, document.LoadTemplateFile(nullptr));
  EXPECT_EQ(6, document.GetCount());
  EXPECT_EQ(0, document.SetString(L"$$A$$", L"1"));
  EXPECT_EQ(1, document.SetString(L"A", L"first"));
  CQorTemplateDoc copy(document);
  EXPECT_EQ(1, document.SetString(L"A", L""));
  EXPECT_EQ(1, document.WriteFile(folder_.Path(L"out")));
  EXPECT_EQ(kMark + "-\r\n\r\n", GetFile(folder_.Path(L"out")));
  EXPECT_EQ(1, copy.WriteFile(folder_.Path(L"out")));
  EXPECT_EQ(kMark + "first-\r\nfirst\r\n", GetFile(folder_.Path(L"out")));
  // A folder is neither read nor written.
  EXPECT_EQ(0, document.WriteFile(nullptr));
  EXPECT_EQ(0, document.WriteFile(folder_.Path(L"")));
  EXPECT_EQ(0, document.WriteFile(folder_.Path(L"none\\out")));
  EXPECT_EQ(1, document.LoadTemplateFile(folder_.Path(L".")));
  EXPECT_EQ(0, document.GetCount());
}

TEST(TemplateItem, KeepsWhatNullWouldSet) {
  CQorTemplateItem item;
  item.kind = 1;
  item.SetKey(L"$$k$$");
  item.SetStr(L"value");
  item.SetKey(nullptr);
  item.SetStr(nullptr);
  EXPECT_TEXT(L"$$k$$", item.key);
  EXPECT_TEXT(L"value", item.str);
  item.Init();
  EXPECT_EQ(0, item.kind);
  EXPECT_TEXT(L"", item.key + item.str);
}

}  // namespace
