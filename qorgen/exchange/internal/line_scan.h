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

  constexpr void Add(wchar_t unit) { units[count++] = unit; }
};

// A block in the form in which its units are compared, each with an ASCII character.
class UnitBlock {
 public:
#if defined(__SSE2__)
  // As bytes: a unit above 255 becomes 255 or 0, and neither is ever looked for.
  explicit UnitBlock(const wchar_t* text)
      : bytes_{Pack(text), Pack(text + 16), Pack(text + 32), Pack(text + 48)} {}

  // Bit i is set where unit i is `unit`, which is ASCII and not 0.
  std::uint64_t Mark(wchar_t unit) const {
    const __m128i wanted = _mm_set1_epi8(static_cast<char>(unit));
    return Mask(bytes_[0], wanted) | Mask(bytes_[1], wanted) << 16 | Mask(bytes_[2], wanted) << 32 |
           Mask(bytes_[3], wanted) << 48;
  }

 private:
  static __m128i Pack(const wchar_t* text) {
    return _mm_packus_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text)),
                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + 8)));
  }
  static std::uint64_t Mask(__m128i bytes, __m128i wanted) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)));
  }

  __m128i bytes_[4];
#else
  explicit UnitBlock(const wchar_t* text) : text_(text) {}

  std::uint64_t Mark(wchar_t unit) const {
    std::uint64_t marks = 0;
    for (std::size_t i = 0; i < kMarkBlock; ++i) marks |= std::uint64_t{text_[i] == unit} << i;
    return marks;
  }

 private:
  const wchar_t* text_;
#endif
};

inline constexpr std::size_t kCopyBlock = 8;

// Copies a text up to and with its first `quote`, or whole; gives how many units that were. Up to 7 units
// behind the end of `to` may be written.
inline std::size_t CopyToQuotePlain(wchar_t* to, const wchar_t* from, std::size_t length, wchar_t quote) {
  for (std::size_t i = 0; i < length; ++i) {
    to[i] = from[i];
    if (from[i] == quote) return i + 1;
  }
  return length;
}

#if defined(__SSE2__)
// The same for the first `whole` units, which are blocks of eight; with a part of the last one behind
// `length`.
inline std::size_t CopyBlocksToQuote(wchar_t* to, const wchar_t* from, std::size_t whole, std::size_t length,
                                     wchar_t quote) {
  const __m128i wanted = _mm_set1_epi16(static_cast<short>(quote));
  for (std::size_t i = 0; i < whole; i += kCopyBlock) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), block);
    const auto marks = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, wanted)));
    if (marks == 0) continue;
    const std::size_t end = i + static_cast<std::size_t>(std::countr_zero(marks)) / 2 + 1;
    return end < length ? end : length;
  }
  return whole < length ? whole : length;
}

// Reads whole blocks, the last one beyond the end of the text.
inline std::size_t CopyToQuote(wchar_t* to, const wchar_t* from, std::size_t length, wchar_t quote) {
  return CopyBlocksToQuote(to, from, (length + kCopyBlock - 1) / kCopyBlock * kCopyBlock, length, quote);
}

// Reads nothing beyond the end.
inline std::size_t CopyToQuoteWithin(wchar_t* to, const wchar_t* from, std::size_t length, wchar_t quote) {
  const std::size_t whole = length / kCopyBlock * kCopyBlock;
  const std::size_t count = CopyBlocksToQuote(to, from, whole, length, quote);
  if (count != whole || (count != 0 && from[count - 1] == quote)) return count;
  return count + CopyToQuotePlain(to + count, from + count, length - count, quote);
}
#else
inline std::size_t CopyToQuote(wchar_t* to, const wchar_t* from, std::size_t length, wchar_t quote) {
  return CopyToQuotePlain(to, from, length, quote);
}
inline std::size_t CopyToQuoteWithin(wchar_t* to, const wchar_t* from, std::size_t length, wchar_t quote) {
  return CopyToQuotePlain(to, from, length, quote);
}
#endif
inline constexpr std::size_t kCopySlack = 7;

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

  // Whether there is a delimiter at `place`, if that is known without looking at another block.
  bool IsKnownDelimiter(std::size_t place) const {
    return place / kMarkBlock == block_ / kMarkBlock && (delimiter_marks_ >> (place % kMarkBlock) & 1) != 0;
  }

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
    const UnitBlock units(text_ + block);
    delimiter_marks_ = 0;
    for (int i = 0; i < delimiters_.count; ++i) delimiter_marks_ |= units.Mark(delimiters_.units[i]);
    quote_marks_ = quote_ != 0 ? units.Mark(quote_) : 0;
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

// Bit i is the number of bits up to and with bit i, modulo 2: set from an opening quote up to the closing
// one.
constexpr std::uint64_t Parity(std::uint64_t bits) {
  bits ^= bits << 1;
  bits ^= bits << 2;
  bits ^= bits << 4;
  bits ^= bits << 8;
  bits ^= bits << 16;
  bits ^= bits << 32;
  return bits;
}
static_assert(Parity(0b100100010010) == 0b011100001110);

// The separators of a regular line, found without looking at its fields one by one.
//
// A line is regular when its quotes stand as a writer puts them: in front of a field and behind it, and in
// pairs between. Delimiters outside the quotes are then the separators, and a field is quoted if it begins
// with a quote. All other lines, and those of more than kUnits units, are for the loop that takes field after
// field.
class RegularLine {
 public:
  static constexpr std::size_t kUnits = 64 * kMarkBlock;

  // Looks at a line, under the conditions of LineMarks, and says whether it is regular.
  bool Read(const wchar_t* text, std::size_t length, const UnitSet& delimiters, wchar_t quote) {
    if (length > kUnits) return false;
    std::uint64_t inside_before = 0;  // all ones when the block begins inside quotes
    std::uint64_t may_open = 1;       // in bit 0: the unit before the block allows a quote to open here
    std::uint64_t must_end = 0;       // in bit 0: the unit before the block closed a quote
    std::uint64_t pairs = 0;
    std::uint64_t irregular = 0;
    blocks_ = 0;
    for (std::size_t at = 0; at < length; at += kMarkBlock) {
      const std::size_t left = length - at;
      const std::uint64_t valid = left < kMarkBlock ? (std::uint64_t{1} << left) - 1 : ~std::uint64_t{0};
      const UnitBlock units(text + at);
      std::uint64_t ends = 0;
      for (int i = 0; i < delimiters.count; ++i) ends |= units.Mark(delimiters.units[i]);
      const std::uint64_t quotes = quote != 0 ? units.Mark(quote) & valid : 0;
      const std::uint64_t inside = Parity(quotes) ^ inside_before;
      const std::uint64_t separators = ends & ~inside & valid;
      const std::uint64_t opening = quotes & inside;
      const std::uint64_t closing = quotes & ~inside;
      const std::uint64_t behind_closing = closing << 1 | must_end;
      irregular |= opening & ~((separators | closing) << 1 | may_open);
      irregular |= behind_closing & ~(separators | opening) & valid;
      pairs |= behind_closing & opening;
      separators_[blocks_++] = separators;
      inside_before = std::uint64_t{0} - (inside >> 63);
      may_open = (separators | closing) >> 63;
      must_end = closing >> 63;
      last_inside_ = inside >> ((left < kMarkBlock ? left : kMarkBlock) - 1) & 1;
    }
    has_pairs_ = pairs != 0;
    return irregular == 0 && last_inside_ == 0;
  }

  std::size_t Blocks() const { return blocks_; }
  // A bit per unit of a block, set at separators.
  std::uint64_t Separators(std::size_t block) const { return separators_[block]; }
  // Whether there are pairs of quotes inside quotes.
  bool HasPairs() const { return has_pairs_; }

 private:
  std::uint64_t separators_[kUnits / kMarkBlock];
  std::size_t blocks_ = 0;
  std::uint64_t last_inside_ = 0;
  bool has_pairs_ = false;
};

}  // namespace qorgen::exchange
