// Search and sort keys.

#include "qorgen/text/internal/keys.h"

#include "qorgen/text/string_util.h"

namespace qorgen::text {
namespace {

constexpr Unit AfterSearchWidening(Unit c) {
  return FoldSearchSign(ToUpperLetter(ToKatakana(c)));
}
constexpr Unit AfterSortWidening(Unit c) {
  return FoldSortSign(ToUpperAll(ToKatakana(c)));
}

constexpr UnitMap kSearchMap([](Unit c) { return AfterSearchWidening(ToWide(c)); });
constexpr UnitMap kAfterSearchMap(AfterSearchWidening);
constexpr UnitMap kSortMap([](Unit c) { return AfterSortWidening(ToWide(c)); });
constexpr UnitMap kAfterSortMap(AfterSortWidening);
constexpr UnitMap kCompareMap([](Unit c) { return ToWide(ToUpperAll(c)); });

using Loop = std::size_t (*)(wchar_t*, View);

// The buffer form of a key. It tells the length of the whole key, counted to `capacity` and no further.
int KeyIntoBuffer(wchar_t* dest, const wchar_t* src, int capacity, Loop key) {
  if (src == nullptr) return 0;
  const View text = ViewOf(src);
  if (dest == nullptr) return static_cast<int>(WidenedLength<kWideMap>(text));
  if (capacity <= 0) return 0;
  const auto room = static_cast<std::size_t>(capacity);
  std::size_t length = 0;
  if (room > text.size()) {
    length = IntoBuffer(dest, src, 1, key).result;
  } else {
    Scratch whole(text.size());
    length = key(whole.data(), text);
    const std::size_t stored = std::min(length, room - 1);
    std::copy_n(whole.data(), stored, dest);
    dest[stored] = L'\0';
  }
  dest[room - 1] = L'\0';
  return static_cast<int>(std::min(length, room));
}

}  // namespace

std::size_t SearchKey(wchar_t* out, View text) {
  return Widen<kSearchMap, kWideMap, kAfterSearchMap>(out, text);
}

std::size_t SortKey(wchar_t* out, View text) {
  return Widen<kSortMap, kWideMap, kAfterSortMap>(out, text);
}

std::size_t CompareFold(wchar_t* out, View text) {
  return Widen<kCompareMap, kCompareMap, kUnchangedMap>(out, text);
}

}  // namespace qorgen::text

using namespace qorgen::text;

int CQorStringUtil::GetBaseStrForSearch(wchar_t* dest, const wchar_t* src, int capacity) {
  return KeyIntoBuffer(dest, src, capacity, SearchKey);
}

int CQorStringUtil::GetBaseStrForSearch(CString& dest, const wchar_t* src) {
  return static_cast<int>(IntoString(dest, src, 1, SearchKey).result);
}

wchar_t* CQorStringUtil::GetBaseStrForSearch(const wchar_t* src) {
  return IntoNewText(src, 1, SearchKey);
}

int CQorStringUtil::GetSearchStrForSearch(wchar_t* dest, const wchar_t* src, int capacity) {
  return GetBaseStrForSearch(dest, src, capacity);
}

int CQorStringUtil::GetSearchStrForSearch(CString& dest, const wchar_t* src) {
  return GetBaseStrForSearch(dest, src);
}

wchar_t* CQorStringUtil::GetSearchStrForSearch(const wchar_t* src) {
  return GetBaseStrForSearch(src);
}

int CQorStringUtil::GetStringForSort(wchar_t* dest, const wchar_t* src, int capacity) {
  return KeyIntoBuffer(dest, src, capacity, SortKey);
}

int CQorStringUtil::GetStringForSort(CString& dest, const wchar_t* src) {
  return static_cast<int>(IntoString(dest, src, 1, SortKey).result);
}

wchar_t* CQorStringUtil::GetStringForSort(const wchar_t* src) {
  return IntoNewText(src, 1, SortKey);
}
