// Substring search: plain for short patterns, where it can't degrade, and the two-way method of Crochemore
// and Perrin
// ("Two-way string-matching", Journal of the ACM 38, 1991) for long ones.

#include "qorgen/text/internal/find_text.h"

namespace qorgen::text {
namespace {

constexpr std::size_t kPlainSearchLimit = 16;

bool ContainsShort(View text, View pattern) {
  const std::size_t last = text.size() - pattern.size();
  for (std::size_t i = 0; i <= last; ++i) {
    if (text[i] == pattern[0] && std::equal(pattern.begin() + 1, pattern.end(), text.begin() + i + 1))
      return true;
  }
  return false;
}

// Where the greatest suffix of the pattern begins, under the order of units or its reverse, and its period.
struct Suffix {
  std::size_t start;
  std::size_t period;
};

Suffix GreatestSuffix(View pattern, bool reversed) {
  // `start` stands one before the suffix, so it begins at "-1"; the sums below wrap back.
  std::size_t start = static_cast<std::size_t>(-1);
  std::size_t candidate = 0;
  std::size_t matched = 1;
  std::size_t period = 1;
  while (candidate + matched < pattern.size()) {
    const auto a = static_cast<Unit>(pattern[candidate + matched]);
    const auto b = static_cast<Unit>(pattern[start + matched]);
    if (a == b) {
      if (matched == period) {
        candidate += period;
        matched = 1;
      } else {
        ++matched;
      }
    } else if ((a < b) != reversed) {
      candidate += matched;
      matched = 1;
      period = candidate - start;
    } else {
      start = candidate++;
      matched = period = 1;
    }
  }
  return {start + 1, period};
}

bool ContainsLong(View text, View pattern) {
  const Suffix forward = GreatestSuffix(pattern, false);
  const Suffix backward = GreatestSuffix(pattern, true);
  const auto [split, found_period] = forward.start > backward.start ? forward : backward;
  const bool periodic = std::equal(pattern.begin(), pattern.begin() + split, pattern.begin() + found_period);
  const std::size_t period = periodic ? found_period : std::max(split, pattern.size() - split) + 1;

  std::size_t known = 0;  // how much of the pattern's start is known to match after a shift by the period
  for (std::size_t at = 0; at + pattern.size() <= text.size();) {
    std::size_t i = std::max(split, known);
    while (i < pattern.size() && pattern[i] == text[at + i]) ++i;
    if (i < pattern.size()) {
      at += i - split + 1;
      known = 0;
      continue;
    }
    i = split;
    while (i > known && pattern[i - 1] == text[at + i - 1]) --i;
    if (i <= known) return true;
    at += period;
    known = periodic ? pattern.size() - period : 0;
  }
  return false;
}

}  // namespace

bool Contains(View text, View pattern) {
  if (pattern.size() > text.size()) return false;
  return pattern.size() <= kPlainSearchLimit ? ContainsShort(text, pattern) : ContainsLong(text, pattern);
}

}  // namespace qorgen::text
