// A text file of any bytes: as a template that is loaded, filled and written, and in the other encoding,
// where the file gives what the two conversions of the whole give.

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "qorgen/platform/codepage.h"
#include "qorgen/qorgen.h"

#include "input.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// A file of this process, which goes at the end of the program.
class OwnFile {
 public:
  OwnFile() : path_(CQorFileUtil::GetTempFileNameW(nullptr)) {}
  ~OwnFile() { CQorFileUtil::DeleteFileW(path_); }
  OwnFile(const OwnFile&) = delete;
  OwnFile& operator=(const OwnFile&) = delete;

  const wchar_t* Path() const { return path_; }
  void Put(const std::uint8_t* data, std::size_t size) const {
    CFile file(path_, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary);
    file.Write(data, static_cast<unsigned int>(size));
    file.Close();
  }
  std::string Get() const {
    CFile file(path_, CFile::modeRead | CFile::typeBinary);
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    Require(file.Read(bytes.data(), static_cast<unsigned int>(bytes.size())) == bytes.size());
    file.Close();
    return bytes;
  }

 private:
  CString path_;
};

// Up to the first zero byte.
std::string InUtf8(const std::uint8_t* data, std::size_t size) {
  const int bytes = static_cast<int>(std::find(data, data + size, 0) - data);
  if (bytes == 0) return {};
  std::vector<wchar_t> text(static_cast<std::size_t>(bytes));
  const int units =
      MultiByteToWideChar(CP_ACP, 0, reinterpret_cast<const char*>(data), bytes, text.data(), bytes);
  std::string result(3 * static_cast<std::size_t>(units), '\0');
  result.resize(static_cast<std::size_t>(WideCharToMultiByte(
      CP_UTF8, 0, text.data(), units, result.data(), static_cast<int>(result.size()), nullptr, nullptr)));
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const OwnFile source, target;
  source.Put(data, size);

  CQorTemplateDoc document;
  Require(document.LoadTemplateFile(source.Path()) == 1);
  document.SetString(L"A", L"値");
  Require(document.WriteFile(target.Path()) == 1);
  Require(document.GetCount() == 0 || target.Get().compare(0, 3, "\xEF\xBB\xBF") == 0);

  Require(CQorFileUtil::SJisToUtf8(source.Path(), target.Path()) == 1);
  Require(target.Get() == InUtf8(data, size));
  Require(CQorFileUtil::Utf8ToSJis(source.Path(), target.Path()) == 1);
  const std::string ansi = target.Get();
  Require(ansi.empty() || ansi.compare(ansi.size() - 2, 2, "\r\n") == 0);
  Require(ansi.find('\x1A') == std::string::npos);
  return 0;
}
