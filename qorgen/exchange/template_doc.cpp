#include "qorgen/exchange/template_doc.h"

#include <algorithm>
#include <memory>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/stdio_file.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/crt.h"
#include "qorgen/text/string_util.h"

namespace {

constexpr wchar_t kMark[] = L"$$";
constexpr int kMarkLength = 2;
constexpr int kLongestKey = 128;
constexpr int kLongestText = 4096;

using Stream = qorgen::platform::OwnedStream;

// Copies the head of a text; null changes nothing.
void CopyHead(CString& target, const wchar_t* text, int longest) {
  if (text == nullptr) return;
  target.SetString(text, static_cast<int>(wcsnlen(text, static_cast<std::size_t>(longest))));
}

}  // namespace

CQorTemplateItem::CQorTemplateItem() = default;
CQorTemplateItem::CQorTemplateItem(const CQorTemplateItem& other) = default;
CQorTemplateItem& CQorTemplateItem::operator=(const CQorTemplateItem& other) = default;
CQorTemplateItem::~CQorTemplateItem() = default;

void CQorTemplateItem::Init() {
  kind = 0;
  key.Empty();
  str.Empty();
}

void CQorTemplateItem::SetKey(const wchar_t* text) {
  CopyHead(key, text, kLongestKey);
}

void CQorTemplateItem::SetStr(const wchar_t* text) {
  CopyHead(str, text, kLongestText);
}

CQorTemplateDoc::CQorTemplateDoc() = default;
CQorTemplateDoc::CQorTemplateDoc(const CQorTemplateDoc& other) = default;
CQorTemplateDoc& CQorTemplateDoc::operator=(const CQorTemplateDoc& other) = default;
CQorTemplateDoc::~CQorTemplateDoc() = default;

int CQorTemplateDoc::LoadTemplateFile(const wchar_t* path) {
  if (CQorFileUtil::IsExistFile(path) == 0) return 0;
  Clear();
  const Stream stream(_wfopen(path, CQorFileUtil::_modeRtUTF8));
  if (stream == nullptr) return 1;
  CStdioFile file(stream.get());
  try {
    CString line;
    while (file.ReadString(line)) AddLine(line);
  } catch (CFileException* error) {
    error->Delete();
  }
  return 1;
}

void CQorTemplateDoc::AddLine(const CString& line) {
  int pos = 0;
  for (;;) {
    const int open = line.Find(kMark, pos);
    if (open < 0) {
      AddText(line.Mid(pos, kLongestText));
      AddText(L"\n");
      return;
    }
    // Deliberately at the head of the line alone: what stands between two keys is lost.
    if (pos == 0 && open > 0) AddText(line.Left(std::min(open, kLongestText)));
    const int close = line.Find(kMark, open + kMarkLength);
    if (close < 0) return;
    pos = close + kMarkLength;
    CQorTemplateItem& item = items.emplace_back();
    item.kind = 1;
    item.SetKey(line.Mid(open, std::min(pos - open, kLongestKey)));
  }
}

void CQorTemplateDoc::AddText(const wchar_t* text) {
  items.emplace_back().SetStr(text);
}

int CQorTemplateDoc::SetString(CString key, CString value) {
  const CString marked = kMark + key + kMark;
  int found = 0;
  for (CQorTemplateItem& item : items) {
    if (item.kind != 1 || CQorStringUtil::CompareStringW(item.key, marked) != 0) continue;
    item.SetStr(value);
    found = 1;
  }
  return found;
}

int CQorTemplateDoc::WriteFile(const wchar_t* path) {
  if (path == nullptr) return 0;
  if (CQorFileUtil::IsExistFile(path) != 0) CQorFileUtil::DeleteFileW(path);
  Stream stream(_wfopen(path, CQorFileUtil::_modeWtUTF8));
  if (stream == nullptr) return 0;
  CStdioFile file(stream.get());
  try {
    for (const CQorTemplateItem& item : items) file.WriteString(item.str);
    // The last piece of a full device's troubles shows here.
    stream.release();
    file.Close();
    return 1;
  } catch (CFileException* error) {
    error->Delete();
    return 0;
  }
}

long CQorTemplateDoc::GetCount() const {
  return static_cast<long>(items.size());
}

void CQorTemplateDoc::Clear() {
  items.clear();
}
