#pragma once

// The one engine of all conversions: tables of single-unit rules, the loops that run a text through them, and
// the forms (buffer, CString, new array) in which the results are delivered. Shared by the sources of this
// folder; pure functions over constant tables.

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>

#include "qorgen/afx/memory.h"
#include "qorgen/afx/string.h"
#include "qorgen/text/internal/kana_table.h"
#include "qorgen/text/internal/unit_map.h"

namespace qorgen::text {

// A text without its terminator.
using View = std::span<const wchar_t>;

inline View ViewOf(const wchar_t* text) {
  const wchar_t* end = text;
  while (*end != 0) ++end;
  return {text, static_cast<std::size_t>(end - text)};
}

// Room for a text that lives no longer than a call: names and keywords fit without an allocation.
class Scratch {
 public:
  explicit Scratch(std::size_t units) {
    if (units > inline_.size()) heap_ = std::unique_ptr<wchar_t[]>(new wchar_t[units]);
  }
  wchar_t* data() { return heap_ ? heap_.get() : inline_.data(); }

 private:
  std::array<wchar_t, 256> inline_;
  std::unique_ptr<wchar_t[]> heap_;
};

// --- Loops ---
// Each writes to `out`, without a terminator, and gives the number of units written. `out` may be the start
// of `text` itself, except for Narrow, whose result can be longer than its source.

template <const UnitMap& map>
std::size_t MapUnits(wchar_t* out, View text) {
  for (const wchar_t c : text) *out++ = static_cast<wchar_t>(map(static_cast<Unit>(c)));
  return text.size();
}

// Half width, each voiced kana followed by its mark: at most two units for one.
std::size_t Narrow(wchar_t* out, View text);

// Voiced kana to plain; half-width voicing marks are dropped.
std::size_t DropVoicing(wchar_t* out, View text);

inline constexpr bool IsHalfMark(Unit c) {
  return (c | 1) == kHalfSemiVoicedMark;
}

// The kana that a half-width mark makes of the full-width kana before it, or 0 if they don't fuse.
inline constexpr auto kFusedKana = [] {
  std::array<std::array<Unit, 256>, 2> table{};
  for (Unit low = 0; low < 256; ++low) {
    const auto c = static_cast<Unit>(0x3000 + low);
    if (CanTakeVoicedMark(c)) table[kHalfVoicedMark & 1][low] = ToVoicedKana(c);
    if (CanTakeSemiVoicedMark(c)) table[kHalfSemiVoicedMark & 1][low] = ToSemiVoicedKana(c);
  }
  return table;
}();

constexpr Unit FusedKana(Unit base, Unit mark) {
  return (base >> 8) == 0x30 ? kFusedKana[mark & 1][base & 0xFF] : Unit{0};
}

// A pipeline with widening in it, in one pass. `full` is what the whole pipeline makes of a unit, `widened`
// what has become of it when marks fuse, `after` what the pipeline then does with a fused kana. A mark that
// doesn't fuse goes through `full`. Nothing fuses with a mark, and a kana that has fused is voiced and takes
// no second mark, so the unit read before a mark decides alone.
template <const UnitMap& full, const UnitMap& widened, const UnitMap& after>
std::size_t Widen(wchar_t* const out, View text) {
  wchar_t* end = out;
  Unit previous = 0;
  for (const wchar_t unit : text) {
    const auto c = static_cast<Unit>(unit);
    if (IsHalfMark(c)) {
      if (const Unit fused = FusedKana(widened(previous), c); fused != 0) {
        end[-1] = static_cast<wchar_t>(after(fused));
        previous = c;
        continue;
      }
    }
    *end++ = static_cast<wchar_t>(full(c));
    previous = c;
  }
  return static_cast<std::size_t>(end - out);
}

// The length that Widen would give.
template <const UnitMap& widened>
std::size_t WidenedLength(View text) {
  std::size_t length = text.size();
  Unit previous = 0;
  for (const wchar_t unit : text) {
    const auto c = static_cast<Unit>(unit);
    if (IsHalfMark(c) && FusedKana(widened(previous), c) != 0) --length;
    previous = c;
  }
  return length;
}

inline constexpr UnitMap kUnchangedMap([](Unit c) { return c; });
inline constexpr UnitMap kWideMap(ToWide);

inline std::size_t WidenOnly(wchar_t* out, View text) {
  return Widen<kWideMap, kWideMap, kUnchangedMap>(out, text);
}

// --- Forms ---
// `convert(out, text)` writes a result of at most `growth` times the length of `text` and gives its length.

struct Lengths {
  std::size_t source = 0;
  std::size_t result = 0;
};

inline bool Overlap(const wchar_t* a, std::size_t a_units, const wchar_t* b, std::size_t b_units) {
  const std::less<const wchar_t*> before;
  return before(a, b + b_units) && before(b, a + a_units);
}

// A null or empty source makes the buffer empty. The two may overlap.
template <class Convert>
Lengths IntoBuffer(wchar_t* dest, const wchar_t* src, std::size_t growth, Convert convert) {
  if (dest == nullptr) return {};
  if (src == nullptr) {
    *dest = L'\0';
    return {};
  }
  View text = ViewOf(src);
  const bool reads_ahead = growth == 1 && !std::less<const wchar_t*>()(src, dest);
  const bool copied = !reads_ahead && Overlap(dest, growth * text.size() + 1, src, text.size() + 1);
  Scratch copy(copied ? text.size() : 0);
  if (copied) {
    std::copy(text.begin(), text.end(), copy.data());
    text = View(copy.data(), text.size());
  }
  const std::size_t length = convert(dest, text);
  dest[length] = L'\0';
  return {text.size(), length};
}

// A null source leaves the string as it was. The source may be the string's own text.
template <class Convert>
Lengths IntoString(CString& dest, const wchar_t* src, std::size_t growth, Convert convert) {
  if (src == nullptr) return {};
  const View text = ViewOf(src);
  // Holding on to the text makes the string take a new block instead of freeing or overwriting this one.
  CString held;
  const wchar_t* own = dest;
  if (Overlap(own, static_cast<std::size_t>(dest.GetLength()) + 1, src, text.size() + 1)) held = dest;
  wchar_t* const buffer = dest.GetBuffer(static_cast<int>(growth * text.size()));
  const std::size_t length = convert(buffer, text);
  dest.ReleaseBufferSetLength(static_cast<int>(length));
  return {text.size(), length};
}

// A new array; null for null.
template <class Convert>
wchar_t* IntoNewText(const wchar_t* src, std::size_t growth, Convert convert) {
  if (src == nullptr) return nullptr;
  const View text = ViewOf(src);
  wchar_t* const result = AllocateText(growth * text.size() + 1);
  result[convert(result, text)] = L'\0';
  return result;
}

}  // namespace qorgen::text
