// Dates and times written as text.

#include "qorgen/afx/memory.h"
#include "qorgen/calendar/date_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

std::string Format(const QORDATE& date, unsigned style) {
  int length = -1;
  const std::string text = TakeUtf8(CQorDateUtil::FormatString(date, style, &length));
  if (date.day < 0) return text;  // the integer form keeps no negative day
  CString same(L"?");
  CQorDateUtil::FormatString(same, date.ToLongDate(), style, &length);
  EXPECT_EQ(Utf8(same), text) << std::hex << style;
  EXPECT_EQ(same.GetLength(), length) << std::hex << style;
  return text;
}

std::string FormatText(const wchar_t* text, unsigned style, int week = -1) {
  return TakeUtf8(CQorDateUtil::FormatString(text, style, nullptr, week));
}

TEST(DateFormat, EveryStyleOfADate) {
  const QORDATE day(5, 3, 2019), first_year(8, 1, 1989);
  // QORDATE(0, 3, 2019): Without day and month the digits left are read from the right.
  // QORDATE(-1, -1, -1): Fields that are no date: no more than their digits.
  using Row = std::tuple<QORDATE, unsigned, const char*>;
  for (const auto& [date, style, text] :
       Rows(Row(day, 0x702, "2019/03/05"), Row(day, 0x720, "2019.03.05"), Row(day, 0x710, "20190305"),
            Row(day, 0x740, "2019年03月05日"), Row(day, 0x760, "2019年03月05日"),
            Row(day, 0x1701, "平成31/03/05"), Row(day, 0x2711, "H310305"), Row(day, 0x4701, "H31/03/05"),
            Row(day, 0x7701, "H.31/03/05"), Row(day, 0x701, "31/03/05"), Row(day, 0x20700, "2019/03/05(TUE)"),
            Row(day, 0x30700, "2019/03/05(火)"), Row(day, 0x40700, "2019/03/05"),
            Row(day, 0x1070C, "(2019/03/05(火))"), Row(day, 0x100700, "2019/ 3/ 5"),
            Row(day, 0x340, "03月05日"), Row(day, 0x600, "2019/03"), Row(day, 0x500, "201905"),
            Row(day, 0x440, "2019年"), Row(day, 0x800, ""), Row(day, 0xC, "()"), Row(day, 0, "20190305"),
            Row(first_year, 0x1741, "平成元年01月08日"), Row(first_year, 0x1781, "平成元/01/08"),
            Row(first_year, 0x101701, "平成 1/ 1/ 8"), Row(QORDATE(7, 9, 1868), 0x1701, "UnFl1869/09/07"),
            Row(QORDATE(), 0x10700, ""), Row(QORDATE(31, 2, 2019), 0x700, "2019/02/31"),
            Row(QORDATE(0, 3, 2019), 0x600, "0020/19"), Row(QORDATE(0, 0, 2019), 0x400, ""),
            Row(QORDATE(0, 0, 2019), 0x700, "2019/00/00"), Row(QORDATE(5, 3, 0), 0x200, "03"),
            Row(QORDATE(5, 0, 0), 0x300, "00/05"), Row(QORDATE(-1, -1, -1), 0x700, "0000/01/11"),
            Row(QORDATE(-128, -128, -32768), 0x10700, "6812/81/28(土)"),
            Row(QORDATE(127, 127, 32767), 0x700, "6712/71/27"))) {
    EXPECT_EQ(Format(date, style), text) << std::hex << date.ToLongDate() << " " << style;
  }
  const int former = std::exchange(CQorDateUtil::GannenUse(), 0);
  EXPECT_EQ(Format(first_year, 0x1741), "平成01年01月08日");
  EXPECT_EQ(Format(first_year, 0x17C1), "平成元年01月08日");
  CQorDateUtil::GannenUse() = former;
}

TEST(DateFormat, DigitTexts) {
  // L"2019年3月5日": reduced to 201935 first
  // 0x10700: the caller's day of the week
  CString digits;
  for (int i = 0; i < 10000; ++i) digits.AppendChar(static_cast<wchar_t>(L'0' + i % 10));
  CString blanks(digits);
  blanks.Replace(L"0", L" ");
  const CString foreign = L"x" + digits;
  using Row = std::tuple<const wchar_t*, unsigned, const char*>;
  for (const auto& [text, style, result] :
       Rows(Row(nullptr, 0x700, "(null)"), Row(L"", 0x700, "(null)"), Row(L"20190305", 0, "(null)"),
            Row(L"abc", 0x700, "(null)"), Row(L"2019年3月5日", 0x700, "0020/19/35"),
            Row(L"2019 3 5", 0x100740, "2019年 3月 5日"), Row(L"99920190305", 0x700, "2019/03/05"),
            Row(L"0305", 0x300, "03/05"), Row(L"3/5", 0x700, "35"), Row(L" 5 ", 0x700, " 5 "),
            Row(L"0305", 0x700, "0305"), Row(L"10305", 0x700, "0001/03/05"),
            Row(L"20190305", 0x10700, "2019/03/05(水)"), Row(L"20199999", 0x1701, "令和01/99/99"),
            Row(digits, 0x72C, "(2345.67.89)"), Row(blanks, 0x740, "2345年67月89日"),
            Row(foreign, 0x700, "2345/67/89"))) {
    EXPECT_EQ(FormatText(text, style, 3), result) << Utf8(text).substr(0, 20) << std::hex << " " << style;
  }
  EXPECT_EQ(FormatText(CString(L' ', 10000) + L"5", 0x700).size(), 10001u);
  for (const int none : {-1, 7}) EXPECT_EQ(FormatText(L"20190305", 0x10700, none), "2019/03/05");
  int length = 77;
  EXPECT_EQ(CQorDateUtil::FormatString(L"x", 0x700, &length, 0), nullptr);
  EXPECT_EQ(length, 77);
}

TEST(DateFormat, EveryDayOfTheCalendar) {
  const wchar_t* const names[] = {L"明治", L"大正", L"昭和", L"平成", L"令和"};
  const QORDATE firsts[] = {QORDATE(8, 9, 1868), QORDATE(30, 7, 1912), QORDATE(25, 12, 1926),
                            QORDATE(8, 1, 1989), QORDATE(1, 5, 2019)};
  int era = 0;
  for (QORDATE day(firsts[0]); day < QORDATE(1, 1, 2088); day.IncDay()) {
    if (era < 4 && day == firsts[era + 1]) ++era;
    const int year = day.year - firsts[era].year + 1;
    CString expected;
    expected.Format(L"%s%02d/%02d/%02d", names[era], year, day.month, day.day);
    ASSERT_EQ(TakeUtf8(CQorDateUtil::FormatString(day, 0x1701, nullptr)), Utf8(expected));
    ASSERT_EQ(CQorDateUtil::ToWareki(day), year);
    // And back, by the era's name and by its letter.
    for (const unsigned style : {0x1701u, 0x2701u}) {
      CString text;
      CQorDateUtil::FormatString(text, day.ToLongDate(), style, nullptr);
      ASSERT_EQ(CQorDateUtil::ToDate(text, 0x701, QORDATE()).ToLongDate(), day.ToLongDate()) << Utf8(text);
    }
  }
}

TEST(DateFormat, DigitStringAndParts) {
  const std::pair<wchar_t*, const char*> rows[] = {
      {CQorDateUtil::ToString(QORDATE(), 0x700), ""},
      {CQorDateUtil::ToString(QORDATE(5, 3, 2019), 0), "20190305"},
      {CQorDateUtil::ToString(QORDATE(0, 3, 2019), 0x400), "201903"},
      {CQorDateUtil::ToString(QORDATE(0, 3, 2019), 0x700), "20190300"},
      {CQorDateUtil::ToYearString(19, 1), "0019"},
      {CQorDateUtil::ToYearString(-32768, 1), "-32768"},
      {CQorDateUtil::ToMonthString(3, 1), "03"},
      {CQorDateUtil::ToDayString(-1, 1), "-1"},
      {CQorDateUtil::ToDayString(3, 0), "3"},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(TakeUtf8(text), expected);
}

TEST(DateFormat, EraTitlesAndTheGuardRows) {
  const QORDATE first(1, 5, 2019);
  using Row = std::tuple<QORDATE, unsigned, const char*, const char*, int>;
  for (const auto& [date, style, title, text, year] :
       Rows(Row(first, 0x1080, "令和", "令和元", 1), Row(first, 0x2000, "R.", "R.01", 1),
            Row(first, 0x2010, "R", "R01", 1), Row(first, 0x5000, "R", "R01", 1), Row(first, 0, "", "01", 1),
            Row(QORDATE(1, 5, 2119), 0x4000, "R", "R101", 101),
            Row(QORDATE(1, 1, 32767), 0x1000, "OvFl", "OvFl01", 1),
            Row(QORDATE(31, 12, 32766), 0x4000, "R", "R30748", 30748),
            Row(QORDATE(), 0x1000, "UnFl", "UnFl01", 1), Row(QORDATE(1, 1, 100), 0x4000, "U", "U101", 101),
            Row(QORDATE(1, 1, -1), 0x1000, "(null)", "(null)", 0),
            Row(QORDATE(-1, 1, 2019), 0x1000, "(null)", "(null)", 0))) {
    EXPECT_EQ(Utf8(CQorDateUtil::GetWarekiTitle(date, style)), title) << date.ToLongDate();
    EXPECT_EQ(TakeUtf8(CQorDateUtil::ToWarekiString(date, style)), text) << date.ToLongDate();
    EXPECT_EQ(CQorDateUtil::ToWareki(date), year) << date.ToLongDate();
  }
}

TEST(DateFormat, WeekDaysAndDelimiters) {
  EXPECT_TEXT(L"(日)", CQorDateUtil::GetWeekString(0, 0x30000));
  EXPECT_TEXT(L"(SAT)", CQorDateUtil::GetWeekString(6, 0x20000));
  EXPECT_TEXT(L"", CQorDateUtil::GetWeekString(3, 0x700));
  for (int bad : {-1, 7, INT_MIN, INT_MAX}) EXPECT_TEXT(L"", CQorDateUtil::GetWeekString(bad, 0x10000));
  const std::tuple<unsigned, unsigned, const char*> rows[] = {
      {0x700, 0x400, "/"},      {0x700, 0x100, "(null)"}, {0x500, 0x400, "(null)"},
      {0x600, 0x200, "(null)"}, {0x720, 0x200, "."},      {0x740, 0x400, "年"},
      {0x740, 0x200, "月"},     {0x440, 0x100, "日"},     {0x750, 0x400, "(null)"}};
  for (const auto& [style, part, delimiter] : rows) {
    EXPECT_EQ(Utf8(CQorDateUtil::GetDelimiterString(style, part)), delimiter)
        << std::hex << style << " " << part;
  }
}

TEST(TimeFormat, EveryHourAndUnit) {
  const QORDATETIME evening(15, 4, 5), early(1, 2, 3);
  using Row = std::tuple<QORDATETIME, unsigned short, const char*>;
  for (const auto& [time, style, row_text] :
       Rows(Row(evening, 0x0E, "15:04:05"), Row(QORDATETIME(9, 4, 5), 0x06, " 9:04"),
            Row(QORDATETIME(9, 4, 5), 0x02, " 9"), Row(evening, 0x0F, "PM 3:04:05"),
            Row(evening, 0x1F, "午後 3時04分05秒"), Row(evening, 0x1E, "15時04分05秒"),
            Row(QORDATETIME(0, 0, 0), 0x05, "AM12:00"), Row(QORDATETIME(12, 0, 0), 0x05, "PM12:00"),
            Row(QORDATETIME(24, 0, 0), 0x05, "AM12:00"), Row(QORDATETIME(11, 0, 0), 0x11, "午前11時"),
            Row(early, 0x0C, "02:03"), Row(early, 0x04, "02"), Row(early, 0x08, "03"),
            Row(early, 0x14, "02分"), Row(early, 0x10, ""),
            Row(QORDATETIME(-128, -128, -32768), 0x0F, "AM-8:-128:-32768"),
            Row(QORDATETIME(127, 127, 32767), 0x0E, "127:127:32767"))) {
    CString text(L"before");
    CQorDateUtil::FormatString(text, time, style);
    EXPECT_EQ(Utf8(text), row_text) << style;
  }
}

TEST(TimeFormat, BehindADate) {
  QORDATETIME moment(9, 4, 5);
  CString text;
  CQorDateUtil::FormatString(text, moment, 0x700u, static_cast<unsigned short>(0x0E));
  EXPECT_TEXT(L"  9:04:05", text);
  moment.day = 5;
  moment.month = 3;
  moment.year = 2019;
  CQorDateUtil::FormatString(text, moment, 0x1701u, static_cast<unsigned short>(0x16));
  EXPECT_TEXT(L"平成31/03/05  9時04分", text);
}

}  // namespace
