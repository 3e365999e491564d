// Version numbers as text.

#include "qorgen/files/file_util.h"
#include "qorgen/text/string_util.h"

namespace {

using VersionQuery = int (*)(unsigned long& versionMS, unsigned long& versionLS, const wchar_t* path);

CString VersionText(VersionQuery query, const wchar_t* path) {
  unsigned long high = 0;
  unsigned long low = 0;
  return query(high, low, path) ? CQorStringUtil::NumberToVersionString(high, low) : CString();
}

}  // namespace

CString CQorFileUtil::GetFileVerStr(const wchar_t* path) {
  return VersionText(GetFileVer, path);
}

CString CQorFileUtil::GetProductVerStr(const wchar_t* path) {
  return VersionText(GetProductVer, path);
}
