// Date text read back, and the dates of import files.

#include "qorgen/afx/memory.h"
#include "qorgen/calendar/date_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

int Fields(const QORDATE& date) {
  return date.year * 10000 + date.month * 100 + date.day;
}

// The five results of cutting a text, "-" where a part was not found.
std::string Cut(const wchar_t* text, unsigned style, const QORDATE& date) {
  wchar_t* parts[4] = {};
  const int found =
      CQorDateUtil::ExtractPlainString(text, &parts[0], &parts[1], &parts[2], &parts[3], style, date);
  EXPECT_EQ(CQorDateUtil::ExtractPlainString(text, nullptr, nullptr, nullptr, nullptr, style, date), found);
  std::string result = std::to_string(found);
  for (wchar_t* part : parts) {
    result += '|';
    result += part == nullptr ? "-" : TakeUtf8(part);
  }
  return result;
}

TEST(DateParse, CuttingFromTheRight) {
  const QORDATE none;
  const QORDATE day(6, 5, 2024);
  // L"昭和R": the first row of the table, not of the text
  using Row = std::tuple<const wchar_t*, unsigned, QORDATE, const char*>;
  for (const auto& [text, style, date, parts] :
       Rows(Row(nullptr, 0x700, day, "0|-|-|-|-"), Row(L"//", 0x700, day, "0|-|-|-|-"),
            Row(L"20190305", 0x700, none, "3|-|2019|03|05"),
            Row(L"2019年3月5日(火)", 0x700, none, "3|-|2019|03|05"),
            Row(L"2019 3 5", 0x100700, none, "3|-|2019| 3| 5"),
            Row(L"20190300", 0x100700, none, "3|-|2019| 3|  "), Row(L"19/3/5", 0x700, none, "3|-|0019|03|05"),
            Row(L"19/3/5", 0x700, day, "3|-|2019|03|05"),
            Row(L"9/3/5", 0x700, QORDATE(1, 1, 32767), "3|-|2769|03|05"),
            Row(L"9/3/5", 0x700, QORDATE(1, 1, -5), "3|-|0009|03|05"), Row(L" 9", 0x400, day, "1|-|2009|-|-"),
            Row(L"1 9", 0x400, none, "1|-|0109|-|-"), Row(L"h31/3/5", 0x700, day, "4|H|0031|03|05"),
            Row(L"31年3月5日 令和", 0x700, day, "4|R|0031|03|05"), Row(L"昭和R", 0x700, day, "1|S|-|-|-"),
            Row(L"unfl", 0x700, day, "1|U|-|-|-"), Row(L"平 成1", 0x700, day, "1|-|-|-|01"),
            Row(L"Ｒ1", 0x700, day, "1|-|-|-|01"), Row(L"3/5", 0x300, day, "2|-|-|03|05"),
            Row(L"3/5", 0x100, day, "1|-|-|-|05"), Row(L"3/5", 0, day, "0|-|-|-|-"))) {
    EXPECT_EQ(Cut(text, style, date), parts) << Utf8(text) << std::hex << " " << style;
  }
}

TEST(DateParse, CompletedDigits) {
  const QORDATE none;
  const QORDATE day(6, 5, 2024), earlier(6, 5, 2010);
  // L"3" in 2010: tens of Heisei 22
  using Row = std::tuple<const wchar_t*, unsigned, QORDATE, const char*>;
  for (const auto& [text, style, date, row_digits] :
       Rows(Row(nullptr, 0x700, day, "(null)"), Row(L"x", 0x700, day, "(null)"),
            Row(L"1/2", 0x700, day, "20240102"), Row(L"7", 0x100, day, "20240507"),
            Row(L"7", 0x200, day, "20240706"), Row(L"19", 0x400, day, "20190506"),
            Row(L"1/2", 0x300, none, "00000102"), Row(L"H31/3/5", 0x700, day, "20190305"),
            Row(L"昭和64.1.7", 0x700, none, "19890107"), Row(L"T15", 0x400, day, "19260506"),
            Row(L"3", 0x401, day, "20210506"), Row(L"3", 0x401, earlier, "20110506"),
            Row(L"30/1/2", 0x701, earlier, "20180102"), Row(L"2019/1/2", 0x701, none, "20190102"),
            Row(L"119/1/2", 0x701, none, "00000102"), Row(L"O99/1/2", 0x700, none, "327670102"),
            Row(L"1/2", 0x100300, day, "2024 1 2"))) {
    int length = 77;
    const std::string digits = TakeUtf8(CQorDateUtil::ParseString(text, style, date, &length));
    EXPECT_EQ(digits, row_digits) << Utf8(text) << std::hex << " " << style;
    EXPECT_EQ(length, digits == "(null)" ? 77 : static_cast<int>(digits.size()));
  }
}

TEST(DateParse, DigitsOnly) {
  int length = 77;
  for (const wchar_t* text : {L"", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(CQorDateUtil::ParseString(text, &length), nullptr);
  }
  EXPECT_EQ(length, 77);
  EXPECT_EQ(TakeUtf8(CQorDateUtil::ParseString(L" 2019年3-5１", &length)), "201935");
  EXPECT_EQ(length, 6);
  EXPECT_EQ(CQorDateUtil::ParseStringLength(nullptr), 0);
  EXPECT_EQ(CQorDateUtil::ParseStringLength(L" 20-19/"), 5);
}

TEST(DateParse, ToDate) {
  using Row = std::tuple<const wchar_t*, int>;
  for (const auto& [text, fields] :
       Rows(Row(nullptr, 0), Row(L"abc", 0), Row(L"2019/03/05", 20190305), Row(L"2019 3 5", 20190305),
            Row(L"5", 5), Row(L"12345678901234", 78901234), Row(L"99999999", 99999999)))
    EXPECT_EQ(Fields(CQorDateUtil::ToDate(text)), fields) << Utf8(text);
  for (const wchar_t* text : {L"", static_cast<const wchar_t*>(nullptr)})
    EXPECT_EQ(CQorDateUtil::ToDate(text, 0x700, QORDATE(1, 1, 2000)).IsEmpty(), 1);
  EXPECT_EQ(CQorDateUtil::ToMonth(L"12"), 12);
  EXPECT_EQ(CQorDateUtil::ToDay(L"-3"), -3);
  EXPECT_EQ(CQorDateUtil::ToDay(nullptr), 0);
  EXPECT_EQ(CQorDateUtil::ToYear(L"2019"), static_cast<char>(2019 & 0xFF));
}

TEST(DateParse, YearsTyped) {
  const QORDATE none, heisei(8, 1, 1989);
  // L"5" on the first day of 1989, Showa 64: 65.
  // L"5" with 0x400: without month and day the first of January
  using Row = std::tuple<const wchar_t*, unsigned, QORDATE, int>;
  for (const auto& [text, style, date, year] :
       Rows(Row(L"R2", 0x700, none, 2020), Row(L"H31", 0x401, none, 2019), Row(L"1999", 0x700, none, 1999),
            Row(L"1999", 0x600, QORDATE(5, 3, 2024), 1999), Row(L"19990305", 0x700, none, 1999),
            Row(L"200", 0x400, none, 0), Row(L"200", 0x500, none, 0), Row(L"100", 0x400, none, 0),
            Row(L"99", 0x400, none, 2087), Row(L"5", 0x400, none, 1993),
            Row(L"令和3年2月1日", 0x700, none, 2021), Row(L"R3/2/1", 0x600, none, 2020),
            Row(L"3/5", 0x700, none, 0), Row(nullptr, 0x400, none, 0), Row(L"R", 0x400, none, 0),
            Row(L"5", 0x400, QORDATE(1, 1, 1980), 1980), Row(L"5", 0x700, QORDATE(1, 1, 1989), 1990),
            Row(L"5", 0x700, heisei, 1993), Row(L"5", 0x400, heisei, 1990), Row(L"15", 0x700, heisei, 2003),
            Row(L"5", 0x400, QORDATE(1, 1, -1), 0), Row(L"U5", 0x400, none, 4),
            Row(L"O99", 0x400, none, 32767))) {
    EXPECT_EQ(CQorDateUtil::ToSeireki(text, date, style), year)
        << Utf8(text) << std::hex << " " << style << " " << date.ToLongDate();
  }
}

TEST(DateParse, OutOfLength) {
  const std::tuple<const wchar_t*, unsigned, int> rows[] = {
      {nullptr, 0x700, 0},    {L"", 0x700, 0},      {L"12345678", 0x700, -1},  {L"x12345678", 0x700, 0},
      {L"x123456", 0x701, 0}, {L"x1234", 0x601, 0}, {L"1234567890", 0x700, 1}, {L"x123456", 0x600, 0},
      {L"x1234", 0x400, 0},   {L"x12", 0x401, 0},   {L"x1234", 0x300, 0},      {L"x1234", 0x301, 0},
      {L"x12", 0x200, 0},     {L"x12", 0x201, 0},   {L"x12", 0x100, 0},        {L"x12", 0x101, 0},
      {L"x1", 0x500, 1},      {L"x", 0x500, 0},     {L"x12", 0xF00, 1}};
  for (const auto& [text, style, result] : rows) {
    EXPECT_EQ(CQorDateUtil::OutOfLength(text, style), result) << Utf8(text) << " " << style;
  }
}

TEST(ImportDate, Texts) {
  constexpr int kRefused = -1;
  // L"1日2月R.3年": the day's sign goes, and leaves the day 12
  // L"01/02/M31": 1898: before what the object completes
  using Row = std::tuple<const wchar_t*, int>;
  for (const auto& [text, fields] :
       Rows(Row(L"01/02/R03", 20210201), Row(L"01/02/03", 20210201), Row(L"01/02/00", 20000201),
            Row(L"01022021", 20210201), Row(L"1/2/2021", 20210201), Row(L"1/2/r.3", 20210201),
            Row(L"1日2月R.3年", kRefused), Row(L"01日02月令和03年", 20210201),
            Row(L"01日02月令和.3", 20210201), Row(L"08/01/平成1", 19890108), Row(L"07/01/H01", kRefused),
            Row(L"07/01/S64", 19890107), Row(L"08/01/S64", kRefused), Row(L"01/05/31", 20490501),
            Row(L"01/06/H31", kRefused), Row(L"01/02/M45", 19120201), Row(L"01/02/M31", kRefused),
            Row(L"01/02/R0", kRefused), Row(L"01/02/950", 19500201), Row(L"01/02/123", 21230201),
            Row(L"01/02/0099", kRefused), Row(L"01/02/0100", 21000201), Row(L"01/02/99", 21170201),
            Row(L"01/02/20219", 20210201), Row(L"01/02/2021 10:00", 20210201),
            Row(L" \t　01/02/2021　\r\n", 20210201), Row(L" 1/ 2/2021", 20210201),
            Row(L"1 /02/2021", 20210210), Row(L"01/ 2/2021", 20210201), Row(L"01/02/ 21", 20390201),
            Row(L"29/02/2024", 20240229), Row(L"29/02/2023", kRefused), Row(L"01/13/2021", kRefused),
            Row(L"00/01/2021", 0), Row(L"00/00/0000", 0), Row(L"01//02/2021", kRefused), Row(L"", kRefused),
            Row(nullptr, kRefused), Row(L"   ", kRefused), Row(L"日", kRefused), Row(L"0", kRefused),
            Row(L"01/", kRefused), Row(L"01/02", kRefused), Row(L"01/02/", kRefused),
            Row(L"01/02/x", kRefused), Row(L"01/02/R", kRefused), Row(L"01/02/令", kRefused),
            Row(L"01/02/令和元年", kRefused), Row(L"x1/02/2021", kRefused), Row(L"０１/02/2021", kRefused),
            Row(L"2021/02/01", kRefused))) {
    CQorDate date(QORDATE(5, 3, 2019));
    const int result = CQorDateUtil::GetDateFromImpStr(text, date);
    EXPECT_EQ(result, fields == kRefused ? 0 : 1) << Utf8(text);
    EXPECT_EQ(Fields(date.ToQORDATE()), fields == kRefused ? 20190305 : fields) << Utf8(text);
  }
  // A Gregorian year that the object doesn't complete passes its check, and the object stays as it was.
  CQorDate early(QORDATE(5, 3, 2019));
  EXPECT_EQ(CQorDateUtil::GetDateFromImpStr(L"01/02/1868", early), 1);
  EXPECT_EQ(Fields(early.ToQORDATE()), 20190305);
}

TEST(ImportDate, RangeOfTheObjectDecides) {
  CQorDate date(QORDATE(5, 3, 2019));
  date.SetMinMax(QORDATE(1, 1, 2019), QORDATE(31, 12, 2020));
  EXPECT_EQ(CQorDateUtil::GetDateFromImpStr(L"31/12/2018", date), 0);
  EXPECT_EQ(CQorDateUtil::GetDateFromImpStr(L"31/12/2020", date), 1);
  date.SetStyle(0);
  EXPECT_EQ(CQorDateUtil::GetDateFromImpStr(L"00/12/2020", date), 0);
  EXPECT_EQ(Fields(date.ToQORDATE()), 20201231);
}

TEST(ImportDate, EveryDayOfTheCalendar) {
  CQorDate date;
  for (QORDATE day(1, 1, 1899); day < QORDATE(1, 1, 2088); day.IncDay()) {
    CString texts[2];
    texts[0].Format(L"%02d/%02d/%04d", day.day, day.month, day.year);
    int era = 0;
    date = day;
    const int year = date.GetWareki(&era);
    texts[1].Format(L"%02d%02d月%c%02d年", day.day, day.month, L"MTSHR"[era], year);
    for (const CString& text : texts) {
      date = QORDATE(5, 3, 2019);
      ASSERT_EQ(CQorDateUtil::GetDateFromImpStr(text, date), 1) << Utf8(text);
      ASSERT_EQ(date.ToQORDATE().ToLongDate(), day.ToLongDate()) << Utf8(text);
    }
  }
}

TEST(ImportDateTime, ReversedOrder) {
  using Row = std::tuple<const wchar_t*, int, int>;
  for (const auto& [text, date, time] :
       Rows(Row(L"30:20:10|05-03-2019", 20190305, 102030), Row(L"30/20/10/05/03/H31", 20190305, 102030),
            Row(L"302010050319", 20370305, 102030), Row(L" 30:20:10/05/03/r.1 ", 20190305, 102030),
            Row(L"99:99:99/99/99/9999", 99999999, 999999), Row(L"30:20:10|05-03-", -1, 0),
            Row(L"30:20:10|05", -1, 0), Row(L"30:20", -1, 0), Row(L"30:20:10|05月03月2019", -1, 0),
            Row(L"", -1, 0), Row(nullptr, -1, 0), Row(L"x", -1, 0))) {
    QORDATETIME value(1, 2, 3);
    EXPECT_EQ(CQorDateUtil::GetDateTimeFromImpStr(text, value), date < 0 ? 0 : 1) << Utf8(text);
    EXPECT_EQ(value.year * 10000 + value.month * 100 + value.day, date < 0 ? 0 : date) << Utf8(text);
    EXPECT_EQ(value.hour * 10000 + value.minute * 100 + value.second, date < 0 ? 10203 : time) << Utf8(text);
  }
}

}  // namespace
