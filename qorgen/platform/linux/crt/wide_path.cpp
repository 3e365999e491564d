// Paths cut into parts and joined, and the byte classes of code page 932. Pure; no shared state.

#include <algorithm>

#include "qorgen/platform/crt.h"

namespace {

struct Part {
  const wchar_t* begin;
  const wchar_t* end;
  wchar_t* target;
  std::ptrdiff_t capacity;

  [[nodiscard]] bool Fits() const { return target == nullptr || end - begin < capacity; }
  void Store() const {
    if (target != nullptr) *std::copy(begin, end, target) = 0;
  }
};

bool IsSeparator(wchar_t unit) {
  return unit == L'\\' || unit == L'/';
}

// Appends to a path of _MAX_PATH units; once it is full nothing more is taken.
class Joiner {
 public:
  explicit Joiner(wchar_t* path) : path_(path) {}

  void Append(wchar_t unit) {
    if (length_ + 1 < _MAX_PATH) {
      path_[length_++] = unit;
    } else {
      full_ = true;
    }
  }
  void Append(const wchar_t* text) {
    for (; *text != 0 && !full_; ++text) Append(*text);
  }
  void Finish() {
    if (full_) {
      errno = ERANGE;
      length_ = 0;
    }
    path_[length_] = 0;
  }

 private:
  wchar_t* path_;
  size_t length_ = 0;
  bool full_ = false;
};

bool IsGiven(const wchar_t* part) {
  return part != nullptr && *part != 0;
}

}  // namespace

void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* folder, wchar_t* name, wchar_t* extension) {
  const wchar_t* const begin = path == nullptr ? L"" : path;
  if (path == nullptr) errno = EINVAL;
  const wchar_t* const driveEnd = begin[0] != 0 && begin[1] == L':' ? begin + 2 : begin;
  const wchar_t* nameBegin = driveEnd;
  const wchar_t* dot = nullptr;
  const wchar_t* end = driveEnd;
  for (; *end != 0; ++end) {
    if (IsSeparator(*end)) {
      nameBegin = end + 1;
      dot = nullptr;
    } else if (*end == L'.') {
      dot = end;
    }
  }
  if (dot == nullptr) dot = end;
  Part parts[] = {{begin, driveEnd, drive, _MAX_DRIVE},
                  {driveEnd, nameBegin, folder, _MAX_DIR},
                  {nameBegin, dot, name, _MAX_FNAME},
                  {dot, end, extension, _MAX_EXT}};
  if (!std::all_of(std::begin(parts), std::end(parts), [](const Part& part) { return part.Fits(); })) {
    errno = ERANGE;
    for (Part& part : parts) part.end = part.begin;
  }
  for (const Part& part : parts) part.Store();
}

void _wmakepath(wchar_t* path, const wchar_t* drive, const wchar_t* folder, const wchar_t* name,
                const wchar_t* extension) {
  if (path == nullptr) {
    errno = EINVAL;
    return;
  }
  Joiner joiner(path);
  if (IsGiven(drive)) {
    joiner.Append(*drive);
    joiner.Append(L':');
  }
  if (IsGiven(folder)) {
    joiner.Append(folder);
    if (!IsSeparator(folder[wcslen(folder) - 1])) joiner.Append(L'\\');
  }
  if (name != nullptr) joiner.Append(name);
  if (IsGiven(extension)) {
    if (*extension != L'.') joiner.Append(L'.');
    joiner.Append(extension);
  }
  joiner.Finish();
}
