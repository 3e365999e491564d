// The remembered locale names and the user's language. Names are constant texts behind atomic pointers, so no
// lock is needed; a change of several categories at once is not seen as one step by other threads.

#include "qorgen/platform/locale.h"

#include <atomic>
#include <mutex>
#include <set>
#include <string_view>
#include <vector>

#include "qorgen/platform/common/time_locale.h"
#include "qorgen/platform/crt.h"

namespace {

constexpr const wchar_t* kC = L"C";
constexpr const wchar_t* kJapanese = L"Japanese_Japan.932";
constexpr const wchar_t* kEnglish = L"English_United States.932";

struct Alias {
  const wchar_t* name;
  const wchar_t* locale;
};

// Compared without case, after the code page behind "." was cut off.
constexpr Alias kAliases[] = {
    {L"c", kC},
    {L"posix", kC},
    {L"japanese", kJapanese},
    {L"japanese_japan", kJapanese},
    {L"japan", kJapanese},
    {L"jpn", kJapanese},
    {L"ja", kJapanese},
    {L"ja-jp", kJapanese},
    {L"ja_jp", kJapanese},
    {L"english", kEnglish},
    {L"english_united states", kEnglish},
    {L"american", kEnglish},
    {L"american english", kEnglish},
    {L"us", kEnglish},
    {L"usa", kEnglish},
    {L"enu", kEnglish},
    {L"en", kEnglish},
    {L"en-us", kEnglish},
    {L"en_us", kEnglish},
};

// The categories in the order of the combined name.
struct Category {
  int id;
  const wchar_t* name;
};
constexpr Category kCategories[] = {{LC_COLLATE, L"LC_COLLATE"},
                                    {LC_CTYPE, L"LC_CTYPE"},
                                    {LC_MONETARY, L"LC_MONETARY"},
                                    {LC_NUMERIC, L"LC_NUMERIC"},
                                    {LC_TIME, L"LC_TIME"}};
constexpr size_t kCount = std::size(kCategories);

std::atomic<const wchar_t*> g_names[kCount] = {kC, kC, kC, kC, kC};

bool IsEnglishUser() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value == 0) continue;
    const std::string_view name = value;
    return name.substr(0, 2) == "en" &&
           (name.size() == 2 || name[2] == '_' || name[2] == '.' || name[2] == '@');
  }
  return false;
}

const wchar_t* Resolve(const wchar_t* name) {
  if (*name == 0) return IsEnglishUser() ? kEnglish : kJapanese;
  const wchar_t* point = wcschr(name, L'.');
  const size_t length = point == nullptr ? wcslen(name) : static_cast<size_t>(point - name);
  if (point != nullptr) {
    bool known = false;
    for (const wchar_t* codePage : {L".932", L".ACP", L".OCP", L".UTF-8", L".UTF8", L".65001"}) {
      known |= _wcsicmp(point, codePage) == 0;
    }
    if (!known) return nullptr;
    if (length == 0) return Resolve(L"");
  }
  for (const Alias& alias : kAliases) {
    if (wcslen(alias.name) == length && _wcsnicmp(alias.name, name, length) == 0) return alias.locale;
  }
  return nullptr;
}

// "LC_COLLATE=...;LC_CTYPE=..." kept for good, so that results stay constant text; there are few different
// ones.
const wchar_t* Combined() {
  static std::mutex mutex;
  static std::set<std::vector<wchar_t>> names;
  std::vector<wchar_t> name;
  const auto append = [&name](const wchar_t* text) { name.insert(name.end(), text, text + wcslen(text)); };
  for (size_t i = 0; i < kCount; ++i) {
    if (i != 0) append(L";");
    append(kCategories[i].name);
    append(L"=");
    append(g_names[i]);
  }
  name.push_back(0);
  const std::lock_guard lock(mutex);
  return names.insert(std::move(name)).first->data();
}

// Several categories from their combined name; null and no change when anything in it is unknown.
bool SetCombined(const wchar_t* name) {
  const wchar_t* found[kCount] = {};
  const wchar_t* at = name;
  while (*at != 0) {
    const wchar_t* end = at + wcscspn(at, L";");
    const wchar_t* equals = wmemchr(at, L'=', static_cast<size_t>(end - at));
    if (equals == nullptr || end - equals > 64) return false;
    wchar_t value[64];
    wmemcpy(value, equals + 1, static_cast<size_t>(end - equals - 1));
    value[end - equals - 1] = 0;
    const wchar_t* locale = Resolve(value);
    bool known = false;
    for (size_t i = 0; i < kCount; ++i) {
      const size_t length = wcslen(kCategories[i].name);
      if (length != static_cast<size_t>(equals - at) || wcsncmp(at, kCategories[i].name, length) != 0)
        continue;
      found[i] = locale;
      known = locale != nullptr;
    }
    if (!known) return false;
    at = *end == 0 ? end : end + 1;
  }
  for (size_t i = 0; i < kCount; ++i) {
    if (found[i] != nullptr) g_names[i] = found[i];
  }
  return true;
}

const wchar_t* CurrentAll() {
  const wchar_t* first = g_names[0];
  for (const auto& name : g_names) {
    if (name != first) return Combined();
  }
  return first;
}

}  // namespace

namespace qorgen::platform {

bool IsTimeJapanese() {
  return g_names[kCount - 1] == kJapanese;
}

TimeZone LocalZone(bool summer) {
  tzset();
  TimeZone zone{};
  zone.minutes = static_cast<int>(-timezone / 60) + (summer ? 60 : 0);
  const char* const name = tzname[summer ? 1 : 0];
  for (std::size_t i = 0; name[i] != 0 && i + 1 < std::size(zone.name); ++i) {
    zone.name[i] = static_cast<unsigned char>(name[i]);
  }
  return zone;
}

}  // namespace qorgen::platform

wchar_t* _wsetlocale(int category, const wchar_t* name) {
  // The published type isn't const; the text is.
  const auto give = [](const wchar_t* text) { return const_cast<wchar_t*>(text); };
  if (category == LC_ALL) {
    if (name == nullptr) return give(CurrentAll());
    if (wcschr(name, L'=') != nullptr) return SetCombined(name) ? give(CurrentAll()) : nullptr;
    const wchar_t* locale = Resolve(name);
    if (locale == nullptr) return nullptr;
    for (auto& current : g_names) current = locale;
    return give(locale);
  }
  for (size_t i = 0; i < kCount; ++i) {
    if (kCategories[i].id != category) continue;
    if (name == nullptr) return give(g_names[i]);
    const wchar_t* locale = Resolve(name);
    if (locale != nullptr) g_names[i] = locale;
    return give(locale);
  }
  return nullptr;
}

LANGID GetUserDefaultUILanguage() {
  return MAKELANGID(IsEnglishUser() ? LANG_ENGLISH : LANG_JAPANESE, SUBLANG_DEFAULT);
}
