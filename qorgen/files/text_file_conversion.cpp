// Text files in another encoding. Files are converted in pieces that end behind a line feed: in both
// encodings a line feed always ends a character, so the pieces give what the whole would.

#include <cstring>
#include <memory>
#include <new>

#include "qorgen/afx/stdio_file.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/codepage.h"
#include "qorgen/platform/filesystem.h"

namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;
constexpr std::size_t kLargestPiece = std::size_t{1} << 29;

using Block = std::unique_ptr<char[]>;

Block NewBlock(std::size_t size) {
  return Block(new (std::nothrow) char[size]);
}

// The text of a file up to its first zero byte in another encoding, piece by piece. Opening and reading throw
// CFileException*.
class ConvertedText {
 public:
  ConvertedText(const wchar_t* path, UINT from, UINT to)
      : file_(path, CFile::modeRead | CFile::typeBinary), from_(from), to_(to) {}

  // The next piece; false behind the last one and without memory.
  bool Next() {
    if (done_ || failed_ || !ReadPiece()) return false;
    const std::size_t room = qorgen_recode_room(length_);
    if (room > result_room_) {
      result_ = NewBlock(room);
      result_room_ = result_ != nullptr ? room : 0;
    }
    count_ = result_ != nullptr ? qorgen_recode(from_, to_, block_.get(), length_, result_.get()) : 0;
    failed_ = count_ == 0;
    return !failed_;
  }
  bool Failed() const { return failed_; }

  const char* Bytes() const { return result_.get(); }
  std::size_t Count() const { return count_; }

 private:
  // Up to and with the last line feed that is in reach: at least one line.
  bool ReadPiece() {
    if (length_ != 0) std::memmove(block_.get(), block_.get() + length_, filled_ - length_);
    filled_ -= length_;
    length_ = 0;
    for (std::size_t looked = 0; !done_;) {
      if (filled_ == capacity_ && !Grow()) return false;
      const std::size_t got =
          file_.Read(block_.get() + filled_, static_cast<unsigned int>(capacity_ - filled_));
      const void* const zero = std::memchr(block_.get() + filled_, 0, got);
      filled_ = zero != nullptr ? static_cast<std::size_t>(static_cast<const char*>(zero) - block_.get())
                                : filled_ + got;
      length_ = filled_;
      if (got == 0 || zero != nullptr) {
        done_ = true;
        break;
      }
      while (length_ > looked && block_[length_ - 1] != '\n') --length_;
      if (length_ > looked) break;
      length_ = 0;
      looked = filled_;
    }
    return length_ != 0;
  }

  bool Grow() {
    const std::size_t capacity = capacity_ == 0 ? kPiece : capacity_ * 2;
    Block block = capacity <= kLargestPiece ? NewBlock(capacity) : nullptr;
    failed_ = block == nullptr;
    if (failed_) return false;
    if (filled_ != 0) std::memcpy(block.get(), block_.get(), filled_);
    block_ = std::move(block);
    capacity_ = capacity;
    return true;
  }

  CStdioFile file_;
  UINT from_;
  UINT to_;
  Block block_;
  std::size_t capacity_ = 0;
  std::size_t filled_ = 0;
  std::size_t length_ = 0;  // of the piece
  Block result_;
  std::size_t result_room_ = 0;
  std::size_t count_ = 0;
  bool done_ = false;
  bool failed_ = false;
};

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

// The piece behind the one that has been written. A source that can't be read any further leaves no part of
// a text behind.
bool NextPiece(ConvertedText& text, TargetText& target) {
  try {
    const bool more = text.Next();
    if (text.Failed()) target.Discard();
    return more;
  } catch (CFileException*) {
    target.Discard();
    throw;
  }
}

}  // namespace

int CQorFileUtil::SJisToUtf8(const wchar_t* source, const wchar_t* destination) {
  ConvertedText text(source, CP_ACP, CP_UTF8);
  bool more = text.Next();
  if (text.Failed()) return 0;
  TargetText target(destination);
  for (; more; more = NextPiece(text, target)) target.Put(text.Bytes(), text.Count());
  if (text.Failed()) return 0;
  target.Close();
  return 1;
}

int CQorFileUtil::Utf8ToSJis(const wchar_t* source, const wchar_t* destination) {
  ConvertedText text(source, CP_UTF8, CP_ACP);
  bool more = text.Next();
  if (text.Failed()) return 0;
  // This file marks the running call; the second pass, over the lines, is made in memory.
  const CString mark_path = ConnectPath(GetTempPathW(), L"uts.qor");
  CStdioFile mark(mark_path, CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary);
  TargetText target(destination);
  while (more && target.PutLines(text.Bytes(), text.Count())) more = NextPiece(text, target);
  if (!text.Failed()) {
    target.EndLastLine();
    target.Close();
  }
  mark.Close();
  DeleteFileW(mark_path);
  return text.Failed() ? 0 : 1;
}

int CQorFileUtil::ChangeCRLFToLF(const wchar_t* source, const wchar_t* destination) {
  return CopyFileW(source, destination, FALSE) ? 1 : 0;
}
