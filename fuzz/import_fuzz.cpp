// A whole import from bytes: the first byte chooses encoding, delimiters and quotes, the rest is the file.

#include <cstdio>
#include <cstdlib>

#include "qorgen/qorgen.h"

#include "input.h"

namespace {

struct Record {
  std::int32_t number;
  std::int32_t date;
  double amount;
  std::int16_t quantity;
  unsigned char flag, byte, sign;
  wchar_t name[5];
};

QorTypeCheckInfoTable columns[] = {
    {TYPECHECK_LONG | TYPECHECK_SIGNDIGIT, L"番号", 6, 0, 1, offsetof(Record, number), 7},
    {TYPECHECK_DATE, L"日付", 10, 0, 1, offsetof(Record, date), 0},
    {TYPECHECK_DOUBLE | TYPECHECK_FIXEDDECIMALS, L"金額", 12, 2, 1, offsetof(Record, amount), 0},
    {TYPECHECK_STRING, L"名称", 4, 0, 0, offsetof(Record, name), 0},
    {TYPECHECK_SHORT | TYPECHECK_UNSIGNED, L"数量", 9, 0, 0, offsetof(Record, quantity), 0},
    {TYPECHECK_BOOL, L"済", 5, 0, 0, offsetof(Record, flag), 0},
    {TYPECHECK_BYTE, L"区分", 3, 0, 0, offsetof(Record, byte), 0},
    {TYPECHECK_CHAR, L"符号", 3, 0, 1, offsetof(Record, sign), 0},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qorgen::fuzz::Input input(data, size);
  const std::uint8_t choice = input.Byte();
  CString path = CQorFileUtil::GetTempFileNameW(nullptr);
  if (path.IsEmpty()) return 0;
  FILE* file = CQorFileUtil::Open(path, CQorFileUtil::_modeWb, 0);
  if (file == nullptr) std::abort();
  std::fwrite(input.Data(), 1, input.Size(), file);
  std::fclose(file);

  CQorTypeConverter converter;
  converter.Initialize(columns, sizeof columns / sizeof columns[0]);
  CQorImportManager legacy;
  CQorUTF8ImportManager utf8;
  CQorImportManager& manager = (choice & 1) != 0 ? utf8 : legacy;
  const unsigned delimiters = (choice & 2) != 0 ? CSVMGR_DELIM_COMMA : CSVMGR_DELIM_TAB | CSVMGR_DELIM_COMMA;
  try {
    if (manager.OpenText(path, &converter, delimiters, static_cast<CSVMGR_QUOTES>((choice >> 2) % 3))) {
      Record record{};
      std::size_t rows = 0;
      while (manager.ReadRow(&record, choice & 0x10) != READSTATUS_EOF) {
        // Every row takes at least a byte of the file.
        if (++rows > input.Size()) std::abort();
        for (int i = 0; i < converter.GetErrorCount(); ++i) {
          if (converter.GetErrorKind(i) == TYPEERROR_NONE || converter.GetErrorMessage(i).IsEmpty())
            std::abort();
        }
      }
      manager.Close();
    }
  } catch (CFileException* refused) {
    refused->Delete();  // such as a file that says it is UTF-16, big-endian
  }
  CQorFileUtil::DeleteFileW(path);
  return 0;
}
