// Decoding code page 932: this library, glibc's iconv, ICU's converter, a plain table of 64K entries.

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <vector>

#include "qorgen/platform/codepage.h"

#include "sample.h"
#ifdef QORGEN_BENCH_ICU
#include <unicode/ucnv.h>
#endif

namespace {

using qorgen::bench::FileBytes;

void SetBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(FileBytes().size()));
}

void DecodeQorgen(benchmark::State& state) {
  const std::string& bytes = FileBytes();
  std::vector<wchar_t> out(bytes.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(MultiByteToWideChar(932, 0, bytes.data(), static_cast<int>(bytes.size()),
                                                 out.data(), static_cast<int>(out.size())));
  }
  SetBytes(state);
}
BENCHMARK(DecodeQorgen)->Name("decode932/qorgen");

void DecodeIconv(benchmark::State& state) {
  const std::string& bytes = FileBytes();
  std::vector<char> out(bytes.size() * 2);
  const iconv_t converter = iconv_open("UTF-16LE", "CP932");
  for (auto _ : state) {
    char* from = const_cast<char*>(bytes.data());
    std::size_t left = bytes.size(), room = out.size();
    char* to = out.data();
    benchmark::DoNotOptimize(iconv(converter, &from, &left, &to, &room));
  }
  iconv_close(converter);
  SetBytes(state);
}
BENCHMARK(DecodeIconv)->Name("decode932/iconv");

#ifdef QORGEN_BENCH_ICU
void DecodeIcu(benchmark::State& state) {
  const std::string& bytes = FileBytes();
  std::vector<UChar> out(bytes.size() + 1);
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = ucnv_open("windows-932", &error);
  if (U_FAILURE(error)) state.SkipWithError("no converter");
  for (auto _ : state) {
    error = U_ZERO_ERROR;
    benchmark::DoNotOptimize(ucnv_toUChars(converter, out.data(), static_cast<int32_t>(out.size()),
                                           bytes.data(), static_cast<int32_t>(bytes.size()), &error));
  }
  ucnv_close(converter);
  SetBytes(state);
}
BENCHMARK(DecodeIcu)->Name("decode932/icu");
#endif

void DecodeTable(benchmark::State& state) {
  const std::string& bytes = FileBytes();
  std::vector<wchar_t> table(65536), out(bytes.size());
  for (unsigned code = 0; code < 65536; ++code) {
    const char in[2] = {static_cast<char>(code >> 8), static_cast<char>(code)};
    MultiByteToWideChar(932, 0, code < 256 ? in + 1 : in, code < 256 ? 1 : 2, &table[code], 1);
  }
  for (auto _ : state) {
    std::size_t made = 0;
    for (std::size_t at = 0; at < bytes.size();) {
      const unsigned char c = static_cast<unsigned char>(bytes[at]);
      if (((c ^ 0x20u) - 0xA1u) < 0x3Cu && at + 1 < bytes.size()) {
        out[made++] = table[c << 8 | static_cast<unsigned char>(bytes[at + 1])];
        at += 2;
      } else {
        out[made++] = table[c];
        ++at;
      }
    }
    benchmark::DoNotOptimize(made);
  }
  SetBytes(state);
}
BENCHMARK(DecodeTable)->Name("decode932/table64k");

}  // namespace

BENCHMARK_MAIN();
