#pragma once

// Where the delimiters and quotes of a line are: the inner loop of the line splitter. One thread at a time.
//
// A line is looked at in blocks of 64 units. A block is turned into two words with a bit per unit, one for
// the delimiters and one for the quotes, and the next one of either is then the lowest bit from a place on.
// So each unit is compared once, however short the fields are.

#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qorgen::exchange {

inline constexpr std::size_t kMarkBlock = 64;

// Up to six characters that end a field; an empty set ends nothing.
struct UnitSet {
  wchar_t units[6] = {};
  int count = 0;

  void Add(wchar_t unit) { units[count++] = unit; }
};

// Bit i is set where text[i] is `unit`, for 64 units.
inline std::uint64_t MarkUnitPlain(const wchar_t* text, wchar_t unit) {
  std::uint64_t marks = 0;
  for (std::size_t i = 0; i < kMarkBlock; ++i) {
    if (text[i] == unit) marks |= std::uint64_t{1} << i;
  }
  return marks;
}

#if defined(__SSE2__)
inline std::uint64_t MarkUnit(const wchar_t* text, wchar_t unit) {
  const __m128i wanted = _mm_set1_epi16(static_cast<short>(unit));
  std::uint64_t marks = 0;
  for (unsigned int i = 0; i < kMarkBlock; i += 16) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i + 8));
    // The comparison gives 0 or -1 per unit, which a byte holds as well.
    const __m128i equal = _mm_packs_epi16(_mm_cmpeq_epi16(low, wanted), _mm_cmpeq_epi16(high, wanted));
    marks |= std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(equal))} << i;
  }
  return marks;
}
#else
inline std::uint64_t MarkUnit(const wchar_t* text, wchar_t unit) {
  return MarkUnitPlain(text, unit);
}
#endif

// The marks of one line. Up to 63 units behind the line are read, and not looked at; the line may be changed
// at places that have been passed. Positions are asked for in rising order, except that a step back costs no
// more than one block.
class LineMarks {
 public:
  // A quote of 0 marks nothing.
  LineMarks(const wchar_t* text, std::size_t length, const UnitSet& delimiters, wchar_t quote)
      : text_(text), length_(length), delimiters_(delimiters), quote_(quote) {
    if (length != 0) Load(0);
  }

  // The first delimiter or quote at `from` or behind it, or the length of the line.
  std::size_t NextDelimiter(std::size_t from) { return Next(from, delimiter_marks_); }
  std::size_t NextQuote(std::size_t from) { return Next(from, quote_marks_); }

 private:
  std::size_t Next(std::size_t from, const std::uint64_t& marks) {
    if (from / kMarkBlock == block_ / kMarkBlock) {
      const std::uint64_t rest = marks >> (from % kMarkBlock);
      if (rest != 0) return from + static_cast<std::size_t>(std::countr_zero(rest));
    }
    return NextBlock(from, marks);
  }

  // The same, not from the block at hand, and kept out of the callers' loops.
  [[gnu::noinline]] std::size_t NextBlock(std::size_t from, const std::uint64_t& marks) {
    while (from < length_) {
      const std::size_t block = from / kMarkBlock * kMarkBlock;
      if (block != block_) Load(block);
      const std::uint64_t rest = marks >> (from % kMarkBlock);
      if (rest != 0) return from + static_cast<std::size_t>(std::countr_zero(rest));
      from = block + kMarkBlock;
    }
    return length_;
  }

  void Load(std::size_t block) {
    const wchar_t* const text = text_ + block;
    delimiter_marks_ = 0;
    for (int i = 0; i < delimiters_.count; ++i) delimiter_marks_ |= MarkUnit(text, delimiters_.units[i]);
    quote_marks_ = quote_ != 0 ? MarkUnit(text, quote_) : 0;
    if (length_ - block < kMarkBlock) {
      const std::uint64_t inside = (std::uint64_t{1} << (length_ - block)) - 1;
      delimiter_marks_ &= inside;
      quote_marks_ &= inside;
    }
    block_ = block;
  }

  const wchar_t* text_;
  std::size_t length_;
  const UnitSet& delimiters_;
  wchar_t quote_;
  std::size_t block_ = 0;
  std::uint64_t delimiter_marks_ = 0;
  std::uint64_t quote_marks_ = 0;
};

}  // namespace qorgen::exchange
