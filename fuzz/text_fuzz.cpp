// Text folding, keys and the helpers over any text; the widths of the results hold.

#include <cstdlib>

#include "qorgen/qorgen.h"

#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qorgen::fuzz::Input input(data, size);
  const std::uint8_t mode = input.Byte();
  const std::vector<wchar_t> text = input.Text();
  const int length = static_cast<int>(text.size()) - 1;
  const std::vector<wchar_t> pattern(text.begin() + length / 2, text.end());

  CString wide, half, key;
  CQorStringUtil::ToWideString(wide, text.data());
  CQorStringUtil::ToHalfString(half, text.data());
  if (wide.GetLength() > length || half.GetLength() > 2 * length) std::abort();
  CQorStringUtil::GetBaseStrForSearch(key, text.data());
  if (key.GetLength() != wide.GetLength()) std::abort();
  CQorStringUtil::GetStringForSort(key, text.data());
  CQorStringUtil::DakuonToSeion(key, text.data());
  CQorStringUtil::StrCompareForSearch(text.data(), pattern.data(), mode % 7);
  CQorStringUtil::StrCompare(text.data(), pattern.data(), mode % 7, 1);
  CQorStringUtil::GetEncodeString(text.data(), key, mode & 3, mode & 4);
  CQorStringUtil::GetDecodeString(text.data(), key, mode & 3, mode & 4);
  CStringArray parts;
  CQorStringUtil::SplitSpace(text.data(), parts);
  CQorStringUtil::EncodeUTF16ToUTF8(text.data());
  unsigned long low = 0;
  CQorStringUtil::VersionStringToNumber(text.data(), &low);
  CQorFileUtil::ConnectPath(text.data(), pattern.data());
  CQorFileUtil::AddExtension(text.data(), pattern.data());
  CQorFileUtil::GetDispFolderString(text.data(), mode);
  QorFree(CQorFileUtil::GetCompactPath(text.data(), mode));
  CQorSplitPath split(text.data());
  return 0;
}
