// Path texts.

#include <algorithm>
#include <cstddef>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/memory.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/split_path.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/shell.h"

const wchar_t* const CQorFileUtil::m_szInvalidChars = L"\\/:;*?\"<>|";

namespace {

constexpr std::size_t kShortRoom = 260;  // with the terminator
constexpr int kLongestPath = 260;

// Copies at most `room` - 1 characters, and terminates; nothing for 0.
void Copy(wchar_t* target, const wchar_t* source, std::size_t room) {
  if (room == 0) return;
  const std::size_t length = wcsnlen(source, room - 1);
  wmemcpy(target, source, length);
  target[length] = 0;
}

// Into a buffer of kShortRoom characters.
void Shorten(wchar_t* target, const wchar_t* path, unsigned int max_characters) {
  const unsigned int room = std::min<unsigned int>(max_characters, kShortRoom);
  // No room at all is no path at all for some releases of the system, and a refusal for others.
  if (room == 0 || !PathCompactPathExW(target, path, room, 0)) Copy(target, path, kShortRoom);
}

bool IsInvalid(wchar_t c) {
  return wcschr(CQorFileUtil::m_szInvalidChars, c) != nullptr;
}

const wchar_t* FindSeparator(const wchar_t* text) {
  while (*text != 0 && !CQorFileUtil::IsDirSep(*text)) ++text;
  return text;
}

// Where the root of the path ends.
const wchar_t* RootEnd(const wchar_t* path) {
  for (const wchar_t* at = path; *at != 0; ++at) {
    if (!CQorFileUtil::IsDirSep(at[0]) || !CQorFileUtil::IsDirSep(at[1])) continue;
    const wchar_t* machine_end = FindSeparator(at + 2);
    if (*machine_end != 0) ++machine_end;
    const wchar_t* share_end = FindSeparator(machine_end);
    return *share_end != 0 ? share_end + 1 : share_end;
  }
  const wchar_t* separator = FindSeparator(path);
  return *separator != 0 ? separator + 1 : separator;
}

}  // namespace

CString CQorFileUtil::ConnectPath(const wchar_t* directory, const wchar_t* file) {
  CString path(directory);
  if (!path.IsEmpty() && !IsDirSep(path[path.GetLength() - 1])) path += L'\\';
  if (file == nullptr) return path;
  const CQorSplitPath parts(file);
  // Without memory. Not the bare directory: the path may be one that is going to be deleted.
  if (parts.GetPath() == nullptr) return CString();
  const wchar_t* folder = parts.GetDirectory();
  path += IsDirSep(folder[0]) ? folder + 1 : folder;
  path += parts.GetFileName();
  path += parts.GetExtension();
  return path;
}

CString CQorFileUtil::AddExtension(const wchar_t* path, const wchar_t* extension) {
  CString result(path);
  CQorSplitPath parts(nullptr);
  if (!parts.Split(path)) return result;
  const CString wanted(extension);
  if (_wcsicmp(parts.GetExtension(), wanted) != 0) result += wanted;
  return result;
}

CString CQorFileUtil::RemoveTailDirSep(const wchar_t* path) {
  const CString whole(path);
  const int length = whole.GetLength();
  return length >= 4 && whole[length - 1] == L'\\' ? whole.Left(length - 1) : whole;
}

int CQorFileUtil::IsDirSep(wchar_t c) {
  return c == L'\\' || c == L'/' ? 1 : 0;
}

int CQorFileUtil::IsRootDir(const wchar_t* path) {
  if (path == nullptr || wcsnlen(path, 4) >= 4) return 0;
  return wcschr(path, L':') != nullptr ? 1 : 0;
}

void CQorFileUtil::GetRoot(const wchar_t* path, CString& root) {
  // `path` may lie in the string that is about to be cleared.
  const CString source(path);
  root.Empty();
  wchar_t* buffer = root.GetBuffer(kLongestPath);
  Copy(buffer, source, kLongestPath + 1);
  buffer[RootEnd(buffer) - buffer] = 0;
}

unsigned int CQorFileUtil::GetFileNameOnly(const wchar_t* path, wchar_t* buffer, unsigned int size) {
  const wchar_t* name = path != nullptr ? path : L"";
  for (const wchar_t* at = name; *at != 0; ++at) {
    if (IsDirSep(*at) || *at == L':') name = at + 1;
  }
  if (buffer == nullptr) return static_cast<unsigned int>(wcslen(name) + 1);
  Copy(buffer, name, size);
  return 0;
}

wchar_t* CQorFileUtil::GetCompactPath(const wchar_t* path, unsigned int maxChars) {
  if (path == nullptr) return nullptr;
  wchar_t* result = nullptr;
  try {
    result = qorgen::AllocateText(kShortRoom);
  } catch (CException* exception) {
    exception->Delete();
    return nullptr;
  }
  Shorten(result, path, maxChars);
  return result;
}

CString CQorFileUtil::GetDispFileString(const wchar_t* path, int maxChars) {
  const CQorSplitPath parts(path);
  if (parts.GetConnectFile() == nullptr) return CString();
  wchar_t text[kShortRoom];
  Shorten(text, parts.GetConnectFile(), static_cast<unsigned int>(maxChars));
  return text;
}

CString CQorFileUtil::GetDispFolderString(const wchar_t* path, int maxChars) {
  const CQorSplitPath parts(path);
  if (parts.GetConnectPath() == nullptr) return CString();
  wchar_t folder[kShortRoom];
  Copy(folder, parts.GetConnectPath(), kShortRoom);
  const std::size_t length = wcslen(folder);
  if (length > 0) folder[length - 1] = 0;
  wchar_t text[kShortRoom];
  Shorten(text, folder, static_cast<unsigned int>(maxChars));
  CString result(text);
  if (result.GetLength() == 2 && result.Find(L'\\') < 0) result += L'\\';
  return result;
}

int CQorFileUtil::IsInvalidChar(const wchar_t* name) {
  return name != nullptr && wcspbrk(name, m_szInvalidChars) != nullptr ? 1 : 0;
}

CString CQorFileUtil::CutInvalidChar(const wchar_t* name) {
  const CString source(name);
  CString result;
  wchar_t* begin = result.GetBuffer(source.GetLength());
  wchar_t* end = std::copy_if(source.GetString(), source.GetString() + source.GetLength(), begin,
                              [](wchar_t c) { return !IsInvalid(c); });
  result.ReleaseBuffer(static_cast<int>(end - begin));
  return result;
}
