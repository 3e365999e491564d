// Grouped number text, era date text, era dates read: this library, glibc with ja_JP, ICU.

#include <benchmark/benchmark.h>
#include <clocale>
#include <cstdio>
#include <ctime>
#include <vector>

#include "qorgen/qorgen.h"
#ifdef QORGEN_BENCH_ICU
#include <unicode/ucal.h>
#include <unicode/udat.h>
#include <unicode/unum.h>
#endif

namespace {

// Amounts of every length and both signs.
const std::vector<int>& Amounts() {
  static const std::vector<int> amounts = [] {
    std::vector<int> list;
    unsigned state = 20240401;
    for (int i = 0; i < 4096; ++i) {
      state = state * 1664525u + 1013904223u;
      list.push_back(static_cast<int>(state) >> (i % 28));
    }
    return list;
  }();
  return amounts;
}

// Days of all five eras.
const std::vector<QORDATE>& Days() {
  static const std::vector<QORDATE> days = [] {
    std::vector<QORDATE> list;
    for (int i = 0; i < 4096; ++i) {
      list.emplace_back(static_cast<char>(1 + i % 28), static_cast<char>(1 + i % 12),
                        static_cast<short>(1874 + i % 160));
    }
    return list;
  }();
  return days;
}

template <typename Values, typename Work>
void Each(benchmark::State& state, const Values& values, Work work) {
  std::size_t at = 0;
  for (auto _ : state) {
    work(values[at]);
    if (++at == values.size()) at = 0;
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

tm ToTm(const QORDATE& day) {
  tm parts{};
  parts.tm_year = day.year - 1900;
  parts.tm_mon = day.month - 1;
  parts.tm_mday = day.day;
  return parts;
}

bool UseJapanese(benchmark::State& state) {
  if (std::setlocale(LC_ALL, "ja_JP.UTF-8") != nullptr) return true;
  state.SkipWithError("the locale ja_JP.UTF-8 is not installed");
  return false;
}

void GroupedQorgen(benchmark::State& state) {
  Each(state, Amounts(), [](int amount) {
    wchar_t* text = CQorNumUtil::FormatString(amount, 0x01u, nullptr, 0, L' ');
    benchmark::DoNotOptimize(text);
    QorFree(text);
  });
}
BENCHMARK(GroupedQorgen)->Name("grouped_number/qorgen");

void GroupedGlibc(benchmark::State& state) {
  if (!UseJapanese(state)) return;
  char text[64];
  Each(state, Amounts(),
       [&](int amount) { benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%'d", amount)); });
}
BENCHMARK(GroupedGlibc)->Name("grouped_number/glibc");

void EraTextQorgen(benchmark::State& state) {
  Each(state, Days(), [](const QORDATE& day) {
    wchar_t* text = CQorDateUtil::FormatString(
        day, DATEFORMAT_DATE | DATEFORMAT_KANJI | DATEFORMAT_ERAYEAR | DATEFORMAT_ERANAME, nullptr);
    benchmark::DoNotOptimize(text);
    QorFree(text);
  });
}
BENCHMARK(EraTextQorgen)->Name("era_date_text/qorgen");

void EraTextGlibc(benchmark::State& state) {
  if (!UseJapanese(state)) return;
  std::vector<tm> days;
  for (const QORDATE& day : Days()) days.push_back(ToTm(day));
  char text[64];
  Each(state, days, [&](const tm& day) {
    benchmark::DoNotOptimize(std::strftime(text, sizeof text, "%EY%m月%d日", &day));
  });
}
BENCHMARK(EraTextGlibc)->Name("era_date_text/glibc");

void EraReadQorgen(benchmark::State& state) {
  std::vector<CString> texts;
  for (const QORDATE& day : Days()) {
    const int index = [&] {
      CQorDate date;
      date = day;
      return date.GetGengo();
    }();
    CQorDate date;
    date = day;
    CString text;
    if (index < 0) {
      text.Format(L"%02d/%02d/%04d", day.day, day.month, day.year);
    } else {
      text.Format(L"%02d/%02d/%s%02d", day.day, day.month, CQorDate::GetGengoRomaString(index),
                  date.GetWareki());
    }
    texts.push_back(text);
  }
  Each(state, texts, [](const CString& text) {
    static CQorDate date;
    benchmark::DoNotOptimize(CQorDateUtil::GetDateFromImpStr(text, date));
  });
}
BENCHMARK(EraReadQorgen)->Name("era_date_read/qorgen");

void EraReadGlibc(benchmark::State& state) {
  if (!UseJapanese(state)) return;
  std::vector<std::string> texts;
  for (const QORDATE& day : Days()) {
    char text[64];
    const tm parts = ToTm(day);
    std::strftime(text, sizeof text, "%EY%m月%d日", &parts);
    texts.emplace_back(text);
  }
  Each(state, texts, [](const std::string& text) {
    tm parts{};
    benchmark::DoNotOptimize(strptime(text.c_str(), "%EY%m月%d日", &parts));
  });
}
BENCHMARK(EraReadGlibc)->Name("era_date_read/glibc");

#ifdef QORGEN_BENCH_ICU
void GroupedIcu(benchmark::State& state) {
  UErrorCode error = U_ZERO_ERROR;
  UNumberFormat* format = unum_open(UNUM_DECIMAL, nullptr, 0, "ja_JP", nullptr, &error);
  UChar text[64];
  Each(state, Amounts(), [&](int amount) {
    error = U_ZERO_ERROR;
    benchmark::DoNotOptimize(unum_format(format, amount, text, 64, nullptr, &error));
  });
  unum_close(format);
}
BENCHMARK(GroupedIcu)->Name("grouped_number/icu");

UDateFormat* EraFormat(UErrorCode* error) {
  return udat_open(UDAT_PATTERN, UDAT_PATTERN, "ja_JP@calendar=japanese", u"Asia/Tokyo", -1, u"Gy年MM月dd日",
                   -1, error);
}

std::vector<UDate> IcuDays() {
  UErrorCode error = U_ZERO_ERROR;
  UCalendar* calendar = ucal_open(u"Asia/Tokyo", -1, "ja_JP", UCAL_GREGORIAN, &error);
  std::vector<UDate> days;
  for (const QORDATE& day : Days()) {
    ucal_setDateTime(calendar, day.year, day.month - 1, day.day, 12, 0, 0, &error);
    days.push_back(ucal_getMillis(calendar, &error));
  }
  ucal_close(calendar);
  return days;
}

void EraTextIcu(benchmark::State& state) {
  UErrorCode error = U_ZERO_ERROR;
  UDateFormat* format = EraFormat(&error);
  if (U_FAILURE(error)) state.SkipWithError("no format");
  UChar text[64];
  Each(state, IcuDays(), [&](UDate day) {
    error = U_ZERO_ERROR;
    benchmark::DoNotOptimize(udat_format(format, day, text, 64, nullptr, &error));
  });
  udat_close(format);
}
BENCHMARK(EraTextIcu)->Name("era_date_text/icu");

void EraReadIcu(benchmark::State& state) {
  UErrorCode error = U_ZERO_ERROR;
  UDateFormat* format = EraFormat(&error);
  if (U_FAILURE(error)) state.SkipWithError("no format");
  std::vector<std::u16string> texts;
  for (const UDate day : IcuDays()) {
    UChar text[64];
    error = U_ZERO_ERROR;
    const int32_t length = udat_format(format, day, text, 64, nullptr, &error);
    texts.emplace_back(text, static_cast<std::size_t>(length));
  }
  Each(state, texts, [&](const std::u16string& text) {
    error = U_ZERO_ERROR;
    int32_t at = 0;
    benchmark::DoNotOptimize(udat_parse(format, text.data(), static_cast<int32_t>(text.size()), &at, &error));
  });
  udat_close(format);
}
BENCHMARK(EraReadIcu)->Name("era_date_read/icu");
#endif

}  // namespace
