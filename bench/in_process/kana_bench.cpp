// Kana: half to full width beside NFKC, hiragana to katakana beside ICU's transliterator, search and sort
// keys beside ICU's primary collation keys. One string a step, the result ready to use.

#include <benchmark/benchmark.h>
#include <vector>

#include "qorgen/qorgen.h"

#include "sample.h"
#ifdef QORGEN_BENCH_ICU
#include <unicode/ucol.h>
#include <unicode/unorm2.h>
#include <unicode/utrans.h>
#endif

namespace {

using qorgen::bench::Kind;
using qorgen::bench::Texts;
using qorgen::bench::Units;

// Runs `work(text, length)` over the texts, one a step.
template <typename Work>
void Each(benchmark::State& state, Kind kind, Work work) {
  const auto& texts = Texts(kind);
  std::size_t at = 0;
  for (auto _ : state) {
    const auto& text = texts[at];
    if (++at == texts.size()) at = 0;
    work(text.data(), static_cast<int>(text.size()) - 1);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

void WideQorgen(benchmark::State& state) {
  CString result;
  Each(state, Kind::kHalfKana, [&](const wchar_t* text, int) {
    CQorStringUtil::ToWideString(result, text);
    benchmark::DoNotOptimize(result.GetLength());
  });
}
BENCHMARK(WideQorgen)->Name("half_to_full/qorgen");

void KatakanaQorgen(benchmark::State& state) {
  CString result;
  Each(state, Kind::kHiragana, [&](const wchar_t* text, int) {
    CQorStringUtil::GanaToKana(result, text);
    benchmark::DoNotOptimize(result.GetLength());
  });
}
BENCHMARK(KatakanaQorgen)->Name("hiragana_to_katakana/qorgen");

void SearchKeyQorgen(benchmark::State& state) {
  CString result;
  Each(state, Kind::kMixed, [&](const wchar_t* text, int) {
    CQorStringUtil::GetBaseStrForSearch(result, text);
    benchmark::DoNotOptimize(result.GetLength());
  });
}
BENCHMARK(SearchKeyQorgen)->Name("search_key/qorgen");

void SortKeyQorgen(benchmark::State& state) {
  CString result;
  Each(state, Kind::kMixed, [&](const wchar_t* text, int) {
    CQorStringUtil::GetStringForSort(result, text);
    benchmark::DoNotOptimize(result.GetLength());
  });
}
BENCHMARK(SortKeyQorgen)->Name("sort_key/qorgen");

#ifdef QORGEN_BENCH_ICU
void WideIcu(benchmark::State& state) {
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2* nfkc = unorm2_getNFKCInstance(&error);
  UChar out[1024];
  Each(state, Kind::kHalfKana, [&](const wchar_t* text, int length) {
    error = U_ZERO_ERROR;
    benchmark::DoNotOptimize(unorm2_normalize(nfkc, Units(text), length, out, 1024, &error));
  });
}
BENCHMARK(WideIcu)->Name("half_to_full/icu_nfkc");

void KatakanaIcu(benchmark::State& state) {
  UErrorCode error = U_ZERO_ERROR;
  UTransliterator* transliterator =
      utrans_openU(u"Hiragana-Katakana", -1, UTRANS_FORWARD, nullptr, 0, nullptr, &error);
  if (U_FAILURE(error)) state.SkipWithError("no transliterator");
  UChar out[1024];
  Each(state, Kind::kHiragana, [&](const wchar_t* text, int length) {
    error = U_ZERO_ERROR;
    std::copy(Units(text), Units(text) + length, out);
    int32_t size = length, limit = length;
    utrans_transUChars(transliterator, out, &size, 1024, 0, &limit, &error);
    benchmark::DoNotOptimize(size);
  });
  utrans_close(transliterator);
}
BENCHMARK(KatakanaIcu)->Name("hiragana_to_katakana/icu_transliterator");

void KeyIcu(benchmark::State& state) {
  UErrorCode error = U_ZERO_ERROR;
  UCollator* collator = ucol_open("ja", &error);
  ucol_setStrength(collator, UCOL_PRIMARY);
  uint8_t key[4096];
  Each(state, Kind::kMixed, [&](const wchar_t* text, int length) {
    benchmark::DoNotOptimize(ucol_getSortKey(collator, Units(text), length, key, sizeof key));
  });
  ucol_close(collator);
}
BENCHMARK(KeyIcu)->Name("search_key/icu_primary_key");
BENCHMARK(KeyIcu)->Name("sort_key/icu_primary_key");
#endif

}  // namespace
