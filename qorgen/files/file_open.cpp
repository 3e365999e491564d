// Open modes and the opening of streams.

#include "qorgen/files/file_util.h"
#include "qorgen/platform/crt.h"

const wchar_t* const CQorFileUtil::_modeRb = L"rb";
const wchar_t* const CQorFileUtil::_modeWb = L"wb";
const wchar_t* const CQorFileUtil::_modeRtANSI = L"rt";
const wchar_t* const CQorFileUtil::_modeWtANSI = L"wt";
const wchar_t* const CQorFileUtil::_modeRtUTF8 = L"rt,ccs=UTF-8";
const wchar_t* const CQorFileUtil::_modeWtUTF8 = L"wt,ccs=UTF-8";
const wchar_t* const CQorFileUtil::_modeAtUTF8 = L"at,ccs=UTF-8";
const wchar_t* const CQorFileUtil::_modeRtUTF16LE = L"rt,ccs=UTF-16LE";
const wchar_t* const CQorFileUtil::_modeWtUTF16LE = L"wt,ccs=UTF-16LE";
const wchar_t* const CQorFileUtil::_modeAtUTF16LE = L"at,ccs=UTF-16LE";

FILE* CQorFileUtil::Open(const wchar_t* path, const wchar_t* mode, int createFolder) {
  if (path == nullptr || mode == nullptr) return nullptr;
  if (createFolder != 0 && !CreateDirIfNotExists(path, 1)) return nullptr;
  return _wfopen(path, mode);
}
