// Dates from any text, under any style; what is accepted is a real date.

#include <cstdlib>

#include "qorgen/qorgen.h"

#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qorgen::fuzz::Input input(data, size);
  const unsigned style = input.Word();
  const QORDATE base(static_cast<int>(input.Word()));
  const std::vector<wchar_t> text = input.Text();

  CQorDate date;
  date.Empty();
  if (CQorDateUtil::GetDateFromImpStr(text.data(), date) != 0 && !date.IsEmpty()) {
    if (CQorDateUtil::IsValid(date.ToQORDATE()) == 0) std::abort();
  }
  QORDATETIME time;
  CQorDateUtil::GetDateTimeFromImpStr(text.data(), time);
  QorFree(CQorDateUtil::ParseString(text.data(), style, base, nullptr));
  QorFree(CQorDateUtil::ParseString(text.data(), nullptr));
  QorFree(CQorDateUtil::FormatString(text.data(), style, nullptr, static_cast<int>(style % 9) - 1));
  QorFree(CQorDateUtil::FormatString(base, style, nullptr));
  CQorDateUtil::ToDate(text.data(), style, base);
  CQorDateUtil::ToSeireki(text.data(), base, style);
  CQorDateUtil::OutOfLength(text.data(), style);
  CQorStringUtil::ToDateTime(text.data());
  return 0;
}
