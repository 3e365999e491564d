#include "qorgen/exchange/space_one_line.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

class Line : public CQorSpaceOneLine {
 public:
  using CQorSpaceOneLine::AddLeft;
  using CQorSpaceOneLine::AddRight;
};

TEST(SpaceOneLine, FieldsAreCutAndFilled) {
  const std::tuple<const wchar_t*, int, const wchar_t*, const wchar_t*> rows[] = {
      {L"12", 5, L"12   ", L"00012"}, {L"123456", 3, L"123", L"123"}, {L"日本", 3, L"日本 ", L"0日本"},
      {L"日本", 1, L"日", L"日"},     {L"abc", 0, L"", L""},          {L"abc", -1, L"", L""},
      {L"abc", INT_MIN, L"", L""},    {nullptr, 2, L"  ", L"00"},     {L"", 2, L"  ", L"00"},
  };
  for (const auto& [text, width, blanks, zeros] : rows) {
    Line line;
    CString made(L"former");
    line.AddSpace(text, width);
    EXPECT_TEXT(blanks, line.MakeString(made));
    line.Empty();
    line.AddZero(text, width);
    EXPECT_TEXT(zeros, line.MakeString(made));
    EXPECT_EQ(1, line.GetCount());
  }
  // Fields wider than any line of a transfer file.
  for (const int width : {1023, 1024, 1025, 100000}) {
    Line line;
    CString text;
    line.AddSpace(CString(L'x', width + 1), width);
    line.AddZero(L"7", width);
    line.MakeString(text);
    EXPECT_TRUE(text == CString(L'x', width) + CString(L'0', width - 1) + L"7") << width;
  }
}

TEST(SpaceOneLine, FieldsJoinInOrder) {
  CQorSpaceOneLine line;
  CString text(L"former");
  EXPECT_TEXT(L"", line.MakeString(text));
  line.AddSpace(L"口座", 3);
  line.AddDate(2024 << 16 | 3 << 8 | 5);
  line.AddZero(L"1200", 6);
  line.AddDate(0);
  EXPECT_EQ(4, line.GetCount());
  EXPECT_EQ(text.GetString(), line.MakeString(text));
  EXPECT_TEXT(L"口座 03050012000000", text);
  CQorSpaceOneLine copy(line);
  line.Empty();
  EXPECT_EQ(0, line.GetCount());
  EXPECT_TEXT(L"口座 03050012000000", copy.MakeString(text));
  line.AddSpace(L"b", 1);
  copy = line;
  EXPECT_TEXT(L"b", copy.MakeString(text));
}

TEST(SpaceOneLine, PadsOfAnyKind) {
  Line line;
  EXPECT_TEXT(L"**ab", line.AddLeft(L"ab", L"*", 4));
  EXPECT_TEXT(L"ab＊＊", line.AddRight(L"ab", L"＊", 4));
  EXPECT_TEXT(L"ab-+-+", line.AddRight(L"ab", L"-+", 4));
  for (const long width : {2l, 0l, -1l, LONG_MIN}) EXPECT_TEXT(L"ab", line.AddLeft(L"ab", L"*", width));
  for (const wchar_t* pad : {L"", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_TEXT(L"ab", line.AddRight(L"ab", pad, 9));
  }
}

}  // namespace
