// Splitting a line into fields: this library and libcsv, and the cost of a character over the length of the
// line.

#include <benchmark/benchmark.h>
#include <string>
#include <vector>

#include "qorgen/qorgen.h"

#include "sample.h"
#ifdef QORGEN_BENCH_LIBCSV
#include <csv.h>
#endif

namespace {

std::vector<wchar_t> Line(std::size_t characters) {
  const std::vector<wchar_t>& all = qorgen::bench::FileText();
  std::vector<wchar_t> line;
  line.reserve(characters + 1);
  for (std::size_t i = 0; line.size() < characters; i = i + 2 < all.size() ? i + 1 : 0) {
    line.push_back(all[i] == L'\r' || all[i] == L'\n' ? L',' : all[i]);
  }
  line.push_back(0);
  return line;
}

void SplitQorgen(benchmark::State& state) {
  const std::vector<wchar_t> line = Line(static_cast<std::size_t>(state.range(0)));
  CQorCSVManager manager;
  for (auto _ : state) {
    benchmark::DoNotOptimize(manager.SetElements(line.data(), CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0));
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}
BENCHMARK(SplitQorgen)->Name("split/qorgen")->Arg(1 << 10)->Arg(100 << 10)->Arg(1 << 20)->Arg(10 << 20);

#ifdef QORGEN_BENCH_LIBCSV
void SplitLibcsv(benchmark::State& state) {
  const std::vector<wchar_t> wide = Line(static_cast<std::size_t>(state.range(0)));
  // libcsv works on bytes: give it one a character, so that both see as many.
  std::string line;
  for (std::size_t i = 0; i + 1 < wide.size(); ++i) line += wide[i] < 0x80 ? static_cast<char>(wide[i]) : 'x';
  line += '\n';
  csv_parser parser;
  csv_init(&parser, CSV_APPEND_NULL);
  std::vector<std::string> fields;
  std::size_t count = 0;
  struct Sink {
    std::vector<std::string>& fields;
    std::size_t& count;
  } sink{fields, count};
  for (auto _ : state) {
    count = 0;
    csv_parse(
        &parser, line.data(), line.size(),
        [](void* field, size_t size, void* to) {
          Sink& out = *static_cast<Sink*>(to);
          if (out.count == out.fields.size()) out.fields.emplace_back();
          out.fields[out.count++].assign(static_cast<const char*>(field), size);
        },
        nullptr, &sink);
    benchmark::DoNotOptimize(count);
  }
  csv_free(&parser);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}
BENCHMARK(SplitLibcsv)->Name("split/libcsv")->Arg(1 << 10)->Arg(100 << 10)->Arg(1 << 20)->Arg(10 << 20);
#endif

}  // namespace
