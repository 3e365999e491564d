// Text files in another encoding.

#include <cstring>

#include "qorgen/afx/stdio_file.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/internal/piecewise_text.h"
#include "qorgen/platform/codepage.h"
#include "qorgen/platform/filesystem.h"

namespace {

using qorgen::files::PiecewiseText;

class TargetText {
 public:
  explicit TargetText(const wchar_t* path)
      : path_(path), file_(path, CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary) {}

  void Put(const char* bytes, std::size_t count) { file_.Write(bytes, static_cast<unsigned int>(count)); }

  // As a text stream that is read line by line and written again: every line ends in CR LF, a CR of its own
  // stays, and a Ctrl-Z ends the text. False when it has.
  bool PutLines(const char* bytes, std::size_t count) {
    const void* const stop = std::memchr(bytes, kTextEnd, count);
    if (stop != nullptr) count = static_cast<std::size_t>(static_cast<const char*>(stop) - bytes);
    const char* const end = bytes + count;
    const char* from = bytes;
    for (const char* at = bytes; at != end;) {
      const auto* const feed =
          static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
      if (feed == nullptr) break;
      if (feed == bytes || feed[-1] != '\r') {
        Put(from, static_cast<std::size_t>(feed - from));
        Put("\r", 1);
        from = feed;
      }
      at = feed + 1;
    }
    Put(from, static_cast<std::size_t>(end - from));
    if (end != bytes) open_line_ = end[-1] != '\n';
    return stop == nullptr;
  }

  void EndLastLine() {
    if (open_line_) Put("\r\n", 2);
  }

  void Close() { file_.Close(); }
  void Discard() {
    file_.Abort();
    CQorFileUtil::DeleteFileW(path_);
  }

 private:
  static constexpr char kTextEnd = 0x1A;

  CString path_;
  CStdioFile file_;
  bool open_line_ = false;
};

// A source that can't be read to its end leaves no part of a text behind.
template <typename Put>
bool WriteAll(PiecewiseText& text, TargetText& target, Put put) {
  bool complete = false;
  try {
    complete = text.Run(put);
  } catch (CFileException*) {
    if (text.SourceFailed()) target.Discard();
    throw;
  }
  if (!complete) target.Discard();
  return complete;
}

}  // namespace

int CQorFileUtil::SJisToUtf8(const wchar_t* source, const wchar_t* destination) {
  PiecewiseText text(source, CP_ACP, CP_UTF8);
  if (!text.Start()) return 0;
  TargetText target(destination);
  const auto put = [&target](const char* bytes, std::size_t count) {
    target.Put(bytes, count);
    return true;
  };
  if (!WriteAll(text, target, put)) return 0;
  target.Close();
  return 1;
}

int CQorFileUtil::Utf8ToSJis(const wchar_t* source, const wchar_t* destination) {
  PiecewiseText text(source, CP_UTF8, CP_ACP);
  if (!text.Start()) return 0;
  // This file marks the running call; the second pass, over the lines, is made in memory.
  const CString mark_path = ConnectPath(GetTempPathW(), L"uts.qor");
  CStdioFile mark(mark_path, CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary);
  TargetText target(destination);
  const auto put = [&target](const char* bytes, std::size_t count) { return target.PutLines(bytes, count); };
  const bool complete = WriteAll(text, target, put);
  if (complete) {
    target.EndLastLine();
    target.Close();
  }
  mark.Close();
  DeleteFileW(mark_path);
  return complete ? 1 : 0;
}

int CQorFileUtil::ChangeCRLFToLF(const wchar_t* source, const wchar_t* destination) {
  return CopyFileW(source, destination, FALSE) ? 1 : 0;
}
