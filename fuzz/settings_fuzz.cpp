// A value file of any bytes, read as each of the three types: what was read is stored and read back the same.

#include <cstdlib>
#include <cstring>

#include "qorgen/qorgen.h"

#include "input.h"

namespace {

// A key on a folder of its own, which goes at the end of the program.
class Key : public CQorRegFileKey {
 public:
  Key() : CQorRegFileKey(nullptr) {
    const CString folder = reserved_ + L".d";
    if (!CQorFileUtil::CreateDirectoryW(folder)) std::abort();
    Construct(folder);
  }
  ~Key() override {
    CQorFileUtil::DeleteDirectory(GetKeyName());
    CQorFileUtil::DeleteFileW(reserved_);
  }

  void Put(const wchar_t* name, const std::uint8_t* data, std::size_t size) {
    FILE* file = CQorFileUtil::Open(CQorFileUtil::ConnectPath(GetKeyName(), name), CQorFileUtil::_modeWb, 0);
    if (file == nullptr) std::abort();
    std::fwrite(data, 1, size, file);
    std::fclose(file);
  }

 private:
  const CString reserved_ =
      CQorFileUtil::GetTempFileNameW(nullptr);  // a file, which keeps the name from others
};

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Key key;
  for (const wchar_t* name : {L"v.dw", L"v.sz", L"v.dat"}) key.Put(name, data, size);

  const long number = key.GetLong(L"v", 1);
  Require(key.SetLong(L"v", number) == 1 && key.GetLong(L"v", 1) == number);

  const CString text = key.GetString(L"v", L"default");
  wchar_t buffer[8] = {};
  // What can't be read as text, such as a file with the mark of UTF-16BE, looks like an empty one.
  const int read = key.GetString(L"v", buffer, 7, L"default");
  Require(read == 1 ? text.Left(7) == buffer : text.IsEmpty());
  Require(key.SetString(L"v", text) == 1 && text == key.GetString(L"v", nullptr));

  int length = -1;
  const void* bytes = key.GetBinary(L"v", &length);
  Require(bytes != nullptr && static_cast<std::size_t>(length) == size);
  Require(size == 0 || std::memcmp(bytes, data, size) == 0);

  for (const wchar_t* name : {L"v.dw", L"v.sz", L"v.dat"}) {
    unsigned long type = 0;
    unsigned char* block = nullptr;
    key.GetValue(name, &type, &block, &length);
    QorFree(block);
    Require(type != 0);
  }
  return 0;
}
