#pragma once

// A rule for single units as a table: two look-ups and an addition for each unit of a text, whatever the rule
// is and however many rules were put together. Constant data, built while compiling.

#include <array>
#include <cstddef>
#include <cstdint>

#include "qorgen/text/internal/width_table.h"

namespace qorgen::text {

class UnitMap {
 public:
  using Rule = Unit (*)(Unit);

  // The rule may only change units of the blocks listed in kBlocks.
  constexpr explicit UnitMap(Rule rule) {
    for (std::size_t i = 0; i < kBlocks.size(); ++i) {
      block_[kBlocks[i]] = static_cast<std::uint8_t>(i + 1);
      for (std::size_t low = 0; low < 256; ++low) {
        const auto c = static_cast<Unit>(kBlocks[i] * 256u + low);
        offset_[i + 1][low] = static_cast<Unit>(rule(c) - c);
      }
    }
  }

  constexpr Unit operator()(Unit c) const { return static_cast<Unit>(c + offset_[block_[c >> 8]][c & 0xFF]); }

  // The high bytes of the blocks that a rule may change: Latin, punctuation, signs, kana, width forms.
  static constexpr std::array<std::uint8_t, 5> kBlocks = {0x00, 0x20, 0x22, 0x30, 0xFF};

 private:
  std::array<std::uint8_t, 256> block_{};
  std::array<std::array<Unit, 256>, kBlocks.size() + 1> offset_{};  // row 0 changes nothing
};

}  // namespace qorgen::text
