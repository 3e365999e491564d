#include "qorgen/settings/internal/value_file.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "qorgen/files/file_util.h"
#include "qorgen/platform/codepage.h"
#include "qorgen/platform/common/text_reader.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/stored_file.h"

namespace qorgen::settings {
namespace {

struct Mark {
  const char* bytes;
  std::size_t count;
};
constexpr Mark kMark16 = {"\xFF\xFE", 2};
constexpr Mark kMark16Big = {"\xFE\xFF", 2};
constexpr Mark kMark8 = {"\xEF\xBB\xBF", 3};

// The bytes of a value's file for the reader of texts.
class FileWindow final : public platform::ByteWindow {
 public:
  explicit FileWindow(ValueReader& file) : file_(file) {
    at = end = bytes_;
    padded = true;
  }
  [[nodiscard]] bool Failed() const override { return failed_; }
  [[nodiscard]] long long Place() const override { return -1; }
  void End() override {
    at = end;
    ended_ = true;
  }
  [[nodiscard]] bool BeginsWith(const Mark& mark) {
    return Ensure(mark.count) && std::memcmp(at, mark.bytes, mark.count) == 0;
  }

 private:
  bool Read(std::size_t count) override {
    if (ended_) return false;
    const std::size_t kept = Available();
    std::memmove(bytes_, at, kept);
    std::size_t got = 0;
    failed_ = !file_.Read(bytes_ + kept, kRoom - kept, got);
    ended_ = failed_ || got < kRoom - kept;
    at = bytes_;
    end = bytes_ + kept + got;
    return Available() >= count;
  }

  static constexpr std::size_t kRoom = 4096;
  ValueReader& file_;
  bool failed_ = false;
  bool ended_ = false;
  unsigned char bytes_[kRoom + platform::kLinePadding];
};

}  // namespace

ValueReader::ValueReader(const wchar_t* path) : file_(platform::OpenStoredFile(path)) {}

ValueReader::~ValueReader() {
  if (IsOpen()) CloseHandle(file_);
}

bool ValueReader::IsOpen() const {
  return file_ != INVALID_HANDLE_VALUE;
}

bool ValueReader::Size(unsigned long long& bytes) const {
  LARGE_INTEGER size;
  if (!IsOpen() || !GetFileSizeEx(file_, &size)) return false;
  bytes = static_cast<unsigned long long>(size.QuadPart);
  return true;
}

bool ValueReader::Read(void* buffer, std::size_t count, std::size_t& read) {
  char* at = static_cast<char*>(buffer);
  for (read = 0; read < count;) {
    DWORD got = 0;
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(count - read, 1u << 30));
    if (!IsOpen() || !ReadFile(file_, at + read, piece, &got, nullptr)) return false;
    if (got == 0) return true;
    read += got;
  }
  return IsOpen();
}

bool ReadFirstLine(const wchar_t* path, CString& line) {
  ValueReader file(path);
  if (!file.IsOpen()) return false;
  FileWindow window(file);
  if (window.BeginsWith(kMark16Big)) return false;
  platform::StreamText text;
  text.code_page = platform::kUtf16Text;
  if (window.BeginsWith(kMark16)) {
    window.at += kMark16.count;
  } else if (window.BeginsWith(kMark8)) {
    window.at += kMark8.count;
    text.code_page = CP_UTF8;
  }
  platform::LineBlock block;
  platform::LineBytes found;
  switch (ReadLine(window, text, block, INT_MAX, found)) {
    case platform::LineResult::kLine:
      break;
    case platform::LineResult::kEnd:
      line.Empty();
      return !window.Failed();
    default:
      return false;
  }
  const std::size_t room = found.length + static_cast<std::size_t>(found.before_count);
  wchar_t* const units = line.GetBuffer(static_cast<int>(room));
  line.ReleaseBufferSetLength(static_cast<int>(platform::DecodeLine(text.code_page, found, units)));
  return true;
}

std::string StoredText(const wchar_t* text) {
  std::string bytes(kMark16.bytes, kMark16.count);
  const auto add = [&bytes](const wchar_t* units, std::size_t count) {
    bytes.append(reinterpret_cast<const char*>(units), count * sizeof(wchar_t));
  };
  while (text != nullptr && *text != 0) {
    const wchar_t* const feed = wcschr(text, L'\n');
    if (feed == nullptr) {
      add(text, wcslen(text));
      break;
    }
    add(text, static_cast<std::size_t>(feed - text));
    add(L"\r\n", 2);
    text = feed + 1;
  }
  return bytes;
}

CString NumberText(long value) {
  CString text;
  text.Format(L"%d", static_cast<int>(value));
  return text;
}

bool WriteValue(const wchar_t* path, const void* bytes, std::size_t count, Store how) {
  // A folder that isn't there is made, and once more when it is removed meanwhile.
  for (int attempt = 0; attempt < 3; ++attempt) {
    platform::FileReplacement file;
    if (file.Begin(path)) {
      if (!file.Write(bytes, count)) return false;
      if (file.Commit(how == Store::kReplace)) return true;
      const DWORD error = GetLastError();
      if (how == Store::kIfMissing && (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS))
        return true;
      if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) return false;
    } else if (GetLastError() != ERROR_PATH_NOT_FOUND) {
      return false;
    }
    if (!CQorFileUtil::CreateDirIfNotExists(path, 1)) return false;
  }
  return false;
}

}  // namespace qorgen::settings
