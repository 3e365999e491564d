// Number text from any text and any value, under any flags.

#include <cstring>

#include "qorgen/qorgen.h"

#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qorgen::fuzz::Input input(data, size);
  const unsigned flags = input.Word();
  const int width = static_cast<std::int8_t>(input.Byte());
  const int decimals = static_cast<std::int8_t>(input.Byte());
  const int mode = input.Byte() % 5;
  std::uint64_t bits = input.Word();
  bits = bits << 32 | input.Word();
  double value;
  std::memcpy(&value, &bits, sizeof value);
  const std::vector<wchar_t> text = input.Text();

  QorFree(CQorNumUtil::FormatString(text.data(), flags, nullptr, width, decimals, L'_'));
  QorFree(CQorNumUtil::FormatString(value, flags, nullptr, decimals, mode, width, L'_'));
  QorFree(CQorNumUtil::FormatString(static_cast<int>(bits), flags, nullptr, width, L'_'));
  int over = 0;
  QorFree(CQorNumUtil::ToString(value, decimals, width, nullptr, mode, flags & 1, &over));
  QorFree(CQorNumUtil::ParseString(text.data(), nullptr));
  CQorNumUtil::ToDouble(text.data());
  CQorNumUtil::ToLong(text.data());
  CQorNumUtil::ToUShort(text.data());
  CQorNumUtil::Round(value, decimals, mode);
  CQorNumUtil::DoubleToLong(value, decimals, mode);
  CQorStringUtil::IsNumber(text.data());
  CQorStringUtil::ToInt(text.data());
  return 0;
}
