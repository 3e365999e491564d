#include "target_file.h"

#include <filesystem>
#include <system_error>

#include "utf8.h"

namespace {

namespace fs = std::filesystem;

fs::path PathOf(const std::string& text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

std::string TextOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

// A name beside the target that is still free: an interrupted export's file is its user's, too.
std::string FreeName(const std::string& target) {
  std::error_code error;
  for (int number = 1;; ++number) {
    std::string name = target + (number == 1 ? "" : "." + std::to_string(number)) + ".part";
    if (fs::symlink_status(PathOf(name), error).type() == fs::file_type::not_found || number == 1000)
      return name;
  }
}

// Opens the file for writing, as the flags say; the cause when that isn't possible.
int TryOpen(const std::string& path, unsigned int flags) {
  CFileException failure;
  CFile file;
  return file.Open(FromUtf8(path), CFile::modeWrite | flags, &failure) ? CFileException::none
                                                                       : failure.m_cause;
}

}  // namespace

TargetFile::TargetFile(const std::string& path) : name_(path), target_(path), path_(path) {
  std::error_code error;
  const fs::file_status there = fs::status(PathOf(path), error);
  if (fs::exists(there)) {
    // A folder, a file that is locked or marked read-only.
    if (const int cause = TryOpen(path, CFile::shareDenyNone); cause != CFileException::none) Fail(cause);
    if (!fs::is_regular_file(there)) {
      kept_ = true;
      return;
    }
    if (const fs::path real = fs::canonical(PathOf(path), error); !error) target_ = TextOf(real);
  }
  path_ = FreeName(target_);
  if (const int cause = TryOpen(path_, CFile::modeCreate); cause != CFileException::none) {
    kept_ = true;
    Fail(cause);
  }
  // Nobody is to read in the new file what he can't read in the earlier one.
  if (fs::exists(there)) fs::permissions(PathOf(path_), there.permissions(), error);
}

TargetFile::~TargetFile() {
  if (!kept_) CQorFileUtil::DeleteFileW(FromUtf8(path_));
}

bool TargetFile::Replace() {
  kept_ = true;
  std::error_code error;
  if (path_ != target_) fs::rename(PathOf(path_), PathOf(target_), error);
  return !error;
}

void TargetFile::Fail(int cause) const {
  AfxThrowFileException(cause, -1, FromUtf8(name_));
}
