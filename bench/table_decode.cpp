// The yardstick of the import: reading a file and decoding code page 932 through a plain table of 64K
// entries, and nothing else. Usage: qorgen_bench_table_decode FILE. Prints the characters and their sum.

#include <cstdint>
#include <cstdio>
#include <iconv.h>
#include <vector>

namespace {

// Indexed by lead byte and trail byte; by the byte itself for a single one.
std::vector<std::uint16_t> BuildTable() {
  std::vector<std::uint16_t> table(65536, 0x30FB);
  const iconv_t converter = iconv_open("UTF-16LE", "CP932");
  for (unsigned code = 0; code < 65536; ++code) {
    char in[2] = {static_cast<char>(code >> 8), static_cast<char>(code)};
    char* from = code < 256 ? in + 1 : in;
    std::size_t left = code < 256 ? 1 : 2, room = 2;
    std::uint16_t unit = 0;
    char* to = reinterpret_cast<char*>(&unit);
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter, &from, &left, &to, &room) == 0 && room == 0) table[code] = unit;
  }
  iconv_close(converter);
  return table;
}

bool IsLead(unsigned char c) {
  return (c >= 0x81 && c <= 0x9F) || (c >= 0xE0 && c <= 0xFC);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::FILE* file = std::fopen(argv[1], "rb");
  if (file == nullptr) return 1;
  const std::vector<std::uint16_t> table = BuildTable();
  std::vector<unsigned char> in(65536);
  std::vector<std::uint16_t> out(65536);
  std::uint64_t characters = 0, sum = 0;
  std::size_t kept = 0;
  for (std::size_t got; (got = std::fread(in.data() + kept, 1, in.size() - kept, file)) > 0;) {
    const std::size_t size = kept + got;
    std::size_t at = 0, made = 0;
    while (at < size) {
      const unsigned char c = in[at];
      if (!IsLead(c)) {
        out[made++] = table[c];
        ++at;
      } else if (at + 1 < size) {
        out[made++] = table[c << 8 | in[at + 1]];
        at += 2;
      } else {
        break;
      }
    }
    kept = size - at;
    if (kept != 0) in[0] = in[at];
    characters += made;
    sum += out[made / 2];
  }
  std::fclose(file);
  std::printf("characters=%llu sum=%llu\n", static_cast<unsigned long long>(characters),
              static_cast<unsigned long long>(sum));
  return 0;
}
