#include "qorgen/platform/linux/filesystem/name_pattern.h"

#include "qorgen/platform/common/letter_case.h"

namespace qorgen::platform {

namespace {

char16_t UpperUnit(char16_t unit) {
  return static_cast<char16_t>(ToUpperUnit(static_cast<wchar_t>(unit)));
}

}  // namespace

std::u16string UpperName(std::u16string_view name) {
  std::u16string upper(name);
  for (char16_t& unit : upper) unit = UpperUnit(unit);
  return upper;
}

bool HasWildcard(std::u16string_view text) {
  return text.find_first_of(u"*?") != text.npos;
}

NamePattern::NamePattern(std::u16string_view pattern) {
  if (pattern == u"*.*") pattern = u"*";
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char16_t unit = pattern[i];
    const char16_t next = i + 1 < pattern.size() ? pattern[i + 1] : u'\0';
    if (unit == u'*' && next == u'.' && i + 2 == pattern.size()) {
      steps_.push_back({Kind::kStarToLastDot, 0});
      ++i;
    } else if (unit == u'*') {
      steps_.push_back({Kind::kStar, 0});
    } else if (unit == u'?') {
      steps_.push_back({Kind::kOneOrNone, 0});
    } else if (unit == u'.' && (next == u'*' || next == u'?')) {
      steps_.push_back({Kind::kDotOrEnd, 0});
    } else {
      steps_.push_back({Kind::kUnit, UpperUnit(unit)});
    }
  }
}

// Adds the places of the pattern that are reached without using up a character of the name.
void NamePattern::Reach(std::vector<bool>& states, bool atDot, bool atEnd) const {
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    if (!states[i]) continue;
    const Kind kind = steps_[i].kind;
    const bool skips = kind == Kind::kStar || kind == Kind::kStarToLastDot ||
                       (kind == Kind::kOneOrNone && (atDot || atEnd)) || (kind == Kind::kDotOrEnd && atEnd);
    if (skips) states[i + 1] = true;
  }
}

bool NamePattern::Matches(std::u16string_view name) const {
  const std::size_t lastDot = name.rfind(u'.');
  std::vector<bool> states(steps_.size() + 1);
  std::vector<bool> next(states.size());
  states[0] = true;
  for (std::size_t at = 0; at < name.size(); ++at) {
    const bool dot = name[at] == u'.';
    const char16_t unit = UpperUnit(name[at]);
    Reach(states, dot, false);
    next.assign(next.size(), false);
    bool any = false;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
      if (!states[i]) continue;
      switch (steps_[i].kind) {
        case Kind::kStar:
          next[i] = any = true;
          break;
        case Kind::kStarToLastDot:
          next[at == lastDot ? i + 1 : i] = any = true;
          break;
        case Kind::kOneOrNone:
          if (!dot) next[i + 1] = any = true;
          break;
        case Kind::kDotOrEnd:
          if (dot) next[i + 1] = any = true;
          break;
        case Kind::kUnit:
          if (unit == steps_[i].unit) next[i + 1] = any = true;
          break;
      }
    }
    if (!any) return false;
    states.swap(next);
  }
  Reach(states, false, true);
  return states[steps_.size()];
}

}  // namespace qorgen::platform
