// Runs a fuzz entry point without a fuzzer: every seed of a folder as it is, cut at every length (long seeds
// at a few hundred), and with bytes changed by a fixed pseudo-random sequence. Usage: PROGRAM FOLDER

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Run(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  constexpr int changes = 300;
  constexpr char hurtful[] = {
      0,    '\n', '\r', '"', ',', 0x1A, static_cast<char>(0x81), static_cast<char>(0xEF),
      '\\', '-',  '.',  '/', '0', ' ',  static_cast<char>(0xFF), static_cast<char>(0xDE)};
  std::mt19937 random(932);
  int seeds = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string seed{std::istreambuf_iterator<char>(file), {}};
    ++seeds;
    Run(seed);
    const std::size_t step = seed.size() / 200 + 1;
    for (std::size_t cut = 0; cut < seed.size(); cut += step) Run(seed.substr(0, cut));
    for (int i = 0; i < changes && !seed.empty(); ++i) {
      std::string changed = seed;
      for (unsigned n = 1 + random() % 4; n > 0; --n) {
        char& place = changed[random() % changed.size()];
        place = random() % 2 == 0 ? hurtful[random() % sizeof hurtful] : static_cast<char>(random());
      }
      Run(changed);
    }
  }
  std::printf("%d seeds\n", seeds);
  return seeds > 0 ? 0 : 1;
}
