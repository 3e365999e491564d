// Text files in another encoding.

#include <cstring>
#include <string>

#include "qorgen/afx/file.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/internal/piecewise_text.h"
#include "qorgen/files/internal/temporary_file.h"
#include "qorgen/platform/codepage.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

namespace {

using qorgen::files::PiecewiseText;

class TargetText {
 public:
  explicit TargetText(const wchar_t* path)
      : path_(path), file_(path, CFile::modeCreate | CFile::modeReadWrite) {}

  bool Put(const char* bytes, std::size_t count) {
    file_.Write(bytes, static_cast<unsigned int>(count));
    return true;
  }

  // As a text stream that is read line by line and written again: every line ends in CR LF, a CR of its own
  // stays, and a Ctrl-Z ends the text. False when it has.
  bool PutLines(const char* bytes, std::size_t count) {
    const void* const stop = std::memchr(bytes, kTextEnd, count);
    if (stop != nullptr) count = static_cast<std::size_t>(static_cast<const char*>(stop) - bytes);
    const char* const end = bytes + count;
    const char* from = bytes;
    lines_.clear();
    for (const char* at = bytes; at != end;) {
      const auto* const feed =
          static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
      if (feed == nullptr) break;
      if (feed == bytes || feed[-1] != '\r') {
        lines_.append(from, feed).push_back('\r');
        from = feed;
      }
      at = feed + 1;
    }
    if (from == bytes) {
      Put(bytes, count);
    } else {
      lines_.append(from, end);
      Put(lines_.data(), lines_.size());
    }
    if (end != bytes) open_line_ = end[-1] != '\n';
    return stop == nullptr;
  }

  void Close() {
    if (open_line_) Put("\r\n", 2);
    file_.Close();
  }
  void Discard() {
    file_.Abort();
    CQorFileUtil::DeleteFileW(path_);
  }

 private:
  static constexpr char kTextEnd = 0x1A;

  CString path_;
  CFile file_;
  std::string lines_;  // a piece in which a CR was missing
  bool open_line_ = false;
};

// False when there was no memory. A source that can't be read to its end leaves no part of a text behind.
bool Convert(PiecewiseText& text, const wchar_t* destination,
             bool (TargetText::*put)(const char*, std::size_t)) {
  bool more = text.Next();
  if (text.Failed()) return false;
  TargetText target(destination);
  while (more && (target.*put)(text.Bytes(), text.Count())) {
    try {
      more = text.Next();
    } catch (CFileException*) {
      target.Discard();
      throw;
    }
  }
  if (text.Failed()) {
    target.Discard();
    return false;
  }
  target.Close();
  return true;
}

}  // namespace

int CQorFileUtil::SJisToUtf8(const wchar_t* source, const wchar_t* destination) {
  PiecewiseText text(source, CP_ACP, CP_UTF8);
  return Convert(text, destination, &TargetText::Put) ? 1 : 0;
}

int CQorFileUtil::Utf8ToSJis(const wchar_t* source, const wchar_t* destination) {
  PiecewiseText text(source, CP_UTF8, CP_ACP);
  // This file marks the running call; the second pass, over the lines, is made in memory.
  const CString mark_path = qorgen::files::MakeTemporaryFile(L"uts.qor");
  if (mark_path.IsEmpty()) CFileException::ThrowOsError(static_cast<LONG>(GetLastError()), L"uts.qor");
  CFile mark(mark_path, CFile::modeCreate | CFile::modeReadWrite);
  const bool complete = Convert(text, destination, &TargetText::PutLines);
  mark.Close();
  DeleteFileW(mark_path);
  return complete ? 1 : 0;
}

int CQorFileUtil::ChangeCRLFToLF(const wchar_t* source, const wchar_t* destination) {
  return CopyFileW(source, destination, FALSE) ? 1 : 0;
}
