// Comparison and matching.

#include "qorgen/afx/array.h"
#include "qorgen/text/internal/find_text.h"
#include "qorgen/text/internal/keys.h"
#include "qorgen/text/string_util.h"

namespace qorgen::text {
namespace {

// The test of a mode on two texts that are not null.
bool Compare(View text, View pattern, unsigned char mode) {
  if (mode >= STRCOMPARE_CONTAINS && mode <= STRCOMPARE_NOTCONTAINS && pattern.empty()) return false;
  const auto same = [](View a, View b) { return std::equal(a.begin(), a.end(), b.begin(), b.end()); };
  const bool fits = text.size() >= pattern.size();
  switch (mode) {
    case STRCOMPARE_CONTAINS:
      return Contains(text, pattern);
    case STRCOMPARE_STARTSWITH:
      return fits && same(text.first(pattern.size()), pattern);
    case STRCOMPARE_ENDSWITH:
      return fits && same(text.last(pattern.size()), pattern);
    case STRCOMPARE_NOTCONTAINS:
      return !Contains(text, pattern);
    case STRCOMPARE_NOTEQUAL:
      return !same(text, pattern);
    default:
      return same(text, pattern);
  }
}

View ViewOrEmpty(const wchar_t* text) {
  return text != nullptr ? ViewOf(text) : View();
}

// A text that has gone through a pipeline, for the length of a comparison.
class Folded {
 public:
  Folded(View text, std::size_t (*fold)(wchar_t*, View))
      : room_(text.size()), text_(room_.data(), fold(room_.data(), text)) {}

  View Get() const { return text_; }
  std::span<wchar_t> Change() { return text_; }

 private:
  Scratch room_;
  std::span<wchar_t> text_;
};

}  // namespace
}  // namespace qorgen::text

using namespace qorgen::text;

int CQorStringUtil::StrCompare(const wchar_t* text, const wchar_t* pattern, unsigned char mode) {
  if (text == nullptr || pattern == nullptr) return 0;
  return Compare(ViewOf(text), ViewOf(pattern), mode) ? 1 : 0;
}

int CQorStringUtil::StrCompare(const wchar_t* text, const wchar_t* pattern, unsigned char mode, int fold) {
  if (fold == 0) return StrCompare(text, pattern, mode);
  const Folded folded_text(ViewOrEmpty(text), CompareFold);
  const Folded folded_pattern(ViewOrEmpty(pattern), CompareFold);
  return Compare(folded_text.Get(), folded_pattern.Get(), mode) ? 1 : 0;
}

int CQorStringUtil::StrCompareForSearch(const wchar_t* text, const wchar_t* pattern, unsigned char mode) {
  if (text == nullptr || pattern == nullptr) return 0;
  const Folded text_key(ViewOf(text), SearchKey);
  Folded pattern_key(ViewOf(pattern), SearchKey);
  if (Compare(text_key.Get(), pattern_key.Get(), mode)) return 1;
  const std::span<wchar_t> typed = pattern_key.Change();
  if (typed.empty()) return 0;
  // The last character typed may still be waiting for its mark.
  const auto last = static_cast<Unit>(typed.back());
  if (CanTakeVoicedMark(last)) {
    typed.back() = static_cast<wchar_t>(ToVoicedKana(last));
    if (Compare(text_key.Get(), typed, mode)) return 1;
  }
  if (CanTakeSemiVoicedMark(last)) {
    typed.back() = static_cast<wchar_t>(ToSemiVoicedKana(last));
    if (Compare(text_key.Get(), typed, mode)) return 1;
  }
  return 0;
}

int CQorStringUtil::CompareStringW(const wchar_t* a, const wchar_t* b) {
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
  const auto left = static_cast<Unit>(*a);
  const auto right = static_cast<Unit>(*b);
  return left < right ? -1 : left > right ? 1 : 0;
}

int CQorStringUtil::IsMatch(const wchar_t* text, CStringArray& patterns, int fold) {
  if (text == nullptr || IsSpace(text) != 0 || patterns.IsEmpty()) return 0;
  const auto matches = [&](const auto& every) {
    for (std::intptr_t i = 0; i < patterns.GetSize(); ++i) {
      if (!every(patterns[i])) return 0;
    }
    return 1;
  };
  if (fold == 0) {
    return matches(
        [&](const wchar_t* pattern) { return StrCompare(text, pattern, STRCOMPARE_CONTAINS) != 0; });
  }
  const Folded folded_text(ViewOf(text), CompareFold);
  return matches([&](const wchar_t* pattern) {
    return Compare(folded_text.Get(), Folded(ViewOf(pattern), CompareFold).Get(), STRCOMPARE_CONTAINS);
  });
}
