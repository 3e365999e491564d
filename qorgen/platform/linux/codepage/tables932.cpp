// The tables of code page 932: iconv's table, corrected to the platform's published one (best-fit table of
// code page 932, WindowsBestFit collection of the Unicode Consortium).

#include <iconv.h>
#include <iterator>
#include <memory>

#include "qorgen/platform/linux/codepage/codec.h"

namespace qorgen::platform {
namespace {

struct Pair {
  std::uint16_t code;
  wchar_t unit;
};

// Where converters disagree with each other: the platform's choices.
constexpr Pair kPlatformChoices[] = {
    {0x815C, 0x2015}, {0x815F, 0xFF3C}, {0x8160, 0xFF5E}, {0x8161, 0x2225}, {0x817C, 0xFF0D},
    {0x818F, 0xFFE5}, {0x8150, 0xFFE3}, {0x8191, 0xFFE0}, {0x8192, 0xFFE1}, {0x81CA, 0xFFE2},
    {0xEEF9, 0xFFE2}, {0xEEFA, 0xFFE4}, {0xFA54, 0xFFE2}, {0xFA55, 0xFFE4},
};

// Characters that code page 932 lacks and the platform writes as a likeness.
constexpr Pair kBestFits[] = {
    {'!', 0x00A1}, {0x8191, 0x00A2}, {0x8192, 0x00A3}, {'\\', 0x00A5},   {'|', 0x00A6},    {'c', 0x00A9},
    {'a', 0x00AA}, {0x81E1, 0x00AB}, {0x81CA, 0x00AC}, {'-', 0x00AD},    {'R', 0x00AE},    {0x8150, 0x00AF},
    {'2', 0x00B2}, {'3', 0x00B3},    {0x83CA, 0x00B5}, {0x8145, 0x00B7}, {0x8143, 0x00B8}, {'1', 0x00B9},
    {'o', 0x00BA}, {0x81E2, 0x00BB}, {'?', 0x00BF},    {'A', 0x00C0},    {'A', 0x00C1},    {'A', 0x00C2},
    {'A', 0x00C3}, {'A', 0x00C4},    {'A', 0x00C5},    {'A', 0x00C6},    {'C', 0x00C7},    {'E', 0x00C8},
    {'E', 0x00C9}, {'E', 0x00CA},    {'E', 0x00CB},    {'I', 0x00CC},    {'I', 0x00CD},    {'I', 0x00CE},
    {'I', 0x00CF}, {'D', 0x00D0},    {'N', 0x00D1},    {'O', 0x00D2},    {'O', 0x00D3},    {'O', 0x00D4},
    {'O', 0x00D5}, {'O', 0x00D6},    {'O', 0x00D8},    {'U', 0x00D9},    {'U', 0x00DA},    {'U', 0x00DB},
    {'U', 0x00DC}, {'Y', 0x00DD},    {'T', 0x00DE},    {'s', 0x00DF},    {'a', 0x00E0},    {'a', 0x00E1},
    {'a', 0x00E2}, {'a', 0x00E3},    {'a', 0x00E4},    {'a', 0x00E5},    {'a', 0x00E6},    {'c', 0x00E7},
    {'e', 0x00E8}, {'e', 0x00E9},    {'e', 0x00EA},    {'e', 0x00EB},    {'i', 0x00EC},    {'i', 0x00ED},
    {'i', 0x00EE}, {'i', 0x00EF},    {'d', 0x00F0},    {'n', 0x00F1},    {'o', 0x00F2},    {'o', 0x00F3},
    {'o', 0x00F4}, {'o', 0x00F5},    {'o', 0x00F6},    {'o', 0x00F8},    {'u', 0x00F9},    {'u', 0x00FA},
    {'u', 0x00FB}, {'u', 0x00FC},    {'y', 0x00FD},    {'t', 0x00FE},    {'y', 0x00FF},    {0x8394, 0x3094},
};
static_assert(std::size(kBestFits) == 84);

// The user-defined area: 188 trail bytes for each lead byte from 0xF0 to 0xF9, in order from U+E000.
wchar_t UserDefined(unsigned lead, unsigned trail) {
  return static_cast<wchar_t>(0xE000 + (lead - 0xF0) * 188 + (trail - 0x40) - (trail > 0x7F ? 1 : 0));
}

wchar_t ConvertPair(iconv_t converter, unsigned lead, unsigned trail) {
  char source[2] = {static_cast<char>(lead), static_cast<char>(trail)};
  unsigned char result[4] = {};
  char* in = source;
  char* out = reinterpret_cast<char*>(result);
  size_t inLeft = sizeof source;
  size_t outLeft = sizeof result;
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  if (iconv(converter, &in, &inLeft, &out, &outLeft) != 0 || outLeft != 2) return kUnassigned932;
  return static_cast<wchar_t>(result[0] | result[1] << 8);
}

void FillPairs(Tables932& tables) {
  tables.pair.fill(kUnassigned932);
  for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
    // The mark of a lead byte before a zero byte, which stands for itself.
    if (IsLead932(static_cast<unsigned char>(lead))) tables.pair[lead] = 0;
  }
  const iconv_t converter = iconv_open("UTF-16LE", "CP932");
  for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
    if (!IsLead932(static_cast<unsigned char>(lead))) continue;
    for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
      if (trail == 0x7F) continue;
      wchar_t& unit = tables.pair[lead | trail << 8];
      if (lead >= 0xF0 && lead <= 0xF9) {
        unit = UserDefined(lead, trail);
      } else if (converter != iconv_t(-1)) {
        unit = ConvertPair(converter, lead, trail);
      }
    }
  }
  if (converter != iconv_t(-1)) iconv_close(converter);
  for (const Pair& choice : kPlatformChoices)
    tables.pair[(choice.code >> 8) | (choice.code & 0xFF) << 8] = choice.unit;
}

void FillSingles(Tables932& tables) {
  for (unsigned byte = 0; byte <= 0x80; ++byte) tables.single[byte] = static_cast<wchar_t>(byte);
  for (unsigned byte = 0xA1; byte <= 0xDF; ++byte) tables.single[byte] = static_cast<wchar_t>(byte + 0xFEC0);
  tables.single[0xA0] = 0xF8F0;
  for (unsigned byte = 0xFD; byte <= 0xFF; ++byte)
    tables.single[byte] = static_cast<wchar_t>(byte - 0xFD + 0xF8F1);
}

// Several codes may decode to one character: the standard's own rows come first, then NEC's row 13 (0x87),
// IBM's extensions (0xFA to 0xFC), and NEC's selection of those (0xED, 0xEE) last.
int Rank(unsigned lead) {
  if (lead == 0xED || lead == 0xEE) return 3;
  if (lead >= 0xFA) return 2;
  return lead == 0x87 ? 1 : 0;
}

void FillCodes(Tables932& tables) {
  for (int rank = 0; rank <= 3; ++rank) {
    for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
      if (!IsLead932(static_cast<unsigned char>(lead)) || Rank(lead) != rank) continue;
      for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
        const wchar_t unit = tables.pair[lead | trail << 8];
        const auto code = static_cast<std::uint16_t>(lead | trail << 8);
        if (unit == kUnassigned932 && (lead != 0x81 || trail != 0x45)) continue;
        if (tables.code[unit] == 0) tables.code[unit] = code;
      }
    }
  }
  for (unsigned byte = 0; byte <= 0xFF; ++byte) {
    if (!IsLead932(static_cast<unsigned char>(byte)))
      tables.code[tables.single[byte]] = static_cast<std::uint16_t>(byte);
  }
  for (const Pair& fit : kBestFits) {
    const unsigned lead = fit.code >> 8;
    tables.code[fit.unit] = lead != 0 ? static_cast<std::uint16_t>(lead | (fit.code & 0xFF) << 8) : fit.code;
  }
}

}  // namespace

const Tables932& GetTables932() {
  static const std::unique_ptr<const Tables932> tables = [] {
    auto filled = std::make_unique<Tables932>();
    FillPairs(*filled);
    FillSingles(*filled);
    FillCodes(*filled);
    return filled;
  }();
  return *tables;
}

}  // namespace qorgen::platform
