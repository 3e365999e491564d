// The line engine: any text, any delimiters and quotes; a line made from the fields splits into the same
// fields.

#include <cstdlib>

#include "qorgen/qorgen.h"

#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qorgen::fuzz::Input input(data, size);
  const unsigned delimiters = input.Byte() & 0x3F;
  const auto quotes = static_cast<CSVMGR_QUOTES>(input.Byte() % 3);
  const int some_as_one = input.Byte() & 1;
  const std::vector<wchar_t> text = input.Text();

  CQorCSVManager manager(text.data(), delimiters, quotes, some_as_one);
  const int count = manager.GetCount();
  if (manager.SetElements(text.data(), delimiters, quotes, some_as_one) != count) std::abort();

  // Quoted fields come back as they are, whatever they hold.
  CString line;
  manager.SetDelimiterType(CSVMGR_DELIM_COMMA);
  manager.SetQuatesType(CSVMGR_QUOTES_DOUBLE);
  if (count == 0 || manager.MakeString(line) == nullptr) return 0;
  CQorCSVManager again(line, CSVMGR_DELIM_COMMA, CSVMGR_QUOTES_DOUBLE, 0);
  if (again.GetCount() != count) std::abort();
  for (int i = 0; i < count; ++i) {
    if (CString(again.GetAt(i)) != manager.GetAt(i)) std::abort();
  }
  return 0;
}
