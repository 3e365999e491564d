#pragma once

// Search patterns of the platform. A pattern is prepared once and then asked about many names; it holds no
// reference to its text. Any thread may ask.

#include <string>
#include <string_view>
#include <vector>

namespace qorgen::platform {

// In upper case, unit by unit and in every language the same (see letter_case.h).
[[nodiscard]] std::u16string UpperName(std::u16string_view name);

// Whether a text has a * or a ?.
[[nodiscard]] bool HasWildcard(std::u16string_view text);

// The rules: case doesn't count; * is any number of characters and ? one; but
//   *.*      is every name, also one without a dot
//   *.       at the end of a pattern leaves only names without an extension
//   ?        also is none, at the end of a name and before a dot (so ??.txt finds a.txt)
//   .* .?    after the name's end the dot is none either (a*.* finds abc)
class NamePattern {
 public:
  explicit NamePattern(std::u16string_view pattern);
  // Takes time in proportion to the product of the two lengths at most.
  [[nodiscard]] bool Matches(std::u16string_view name) const;

 private:
  enum class Kind : unsigned char { kUnit, kStar, kStarToLastDot, kOneOrNone, kDotOrEnd };
  struct Step {
    Kind kind;
    char16_t unit;  // in upper case, for kUnit
  };
  void Reach(std::vector<bool>& states, bool atDot, bool atEnd) const;

  std::vector<Step> steps_;
};

}  // namespace qorgen::platform
