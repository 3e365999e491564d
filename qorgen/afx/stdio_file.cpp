#include "qorgen/afx/stdio_file.h"

#include <algorithm>
#include <climits>

#include "qorgen/platform/crt.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/text_stream.h"

IMPLEMENT_DYNAMIC(CStdioFile, CFile)

using namespace qorgen::platform;

namespace {

// The file is there, and empty if it had to be, by now: no mode makes or empties it again. One that only
// writes keeps away from the modes that read first.
const wchar_t* ModeOf(unsigned int flags) {
  const bool binary = (flags & CFile::typeBinary) != 0;
  switch (flags & 3) {
    case CFile::modeRead:
      return binary ? L"rb" : L"rt";
    case CFile::modeWrite:
      return binary ? L"wb" : L"wt";
    default:
      return binary ? L"r+b" : L"r+t";
  }
}

[[noreturn]] void ThrowErrnoFor(int error, const wchar_t* name) {
  const int cause = error == 0 ? static_cast<int>(CFileException::genericException)
                               : CFileException::ErrnoToException(error);
  AfxThrowFileException(cause, error, name);
}

}  // namespace

CStdioFile::CStdioFile() : m_pStream(nullptr) {}

CStdioFile::CStdioFile(FILE* pOpenStream) : m_pStream(pOpenStream) {
  const int descriptor = pOpenStream != nullptr ? _fileno(pOpenStream) : -1;
  if (descriptor >= 0) m_hFile = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

CStdioFile::CStdioFile(const wchar_t* lpszFileName, unsigned int nOpenFlags) : m_pStream(nullptr) {
  CFileException error(CFileException::none);
  if (!CStdioFile::Open(lpszFileName, nOpenFlags, &error)) {
    AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
  }
}

CStdioFile::~CStdioFile() {
  ReleaseStream(m_pStream);
  if (m_pStream != nullptr && m_bCloseOnDelete) fclose(m_pStream);
  // The handle went with the stream, or isn't ours.
  m_hFile = hFileNull;
}

void CStdioFile::ThrowErrno() const {
  ThrowErrnoFor(errno, m_strFileName);
}

void CStdioFile::ThrowReadError() const {
  const int error = errno;
  clearerr(m_pStream);
  ThrowErrnoFor(error != 0 ? error : EIO, m_strFileName);
}

// The stream to work on.
FILE* CStdioFile::OpenStream() const {
  if (m_pStream == nullptr) {
    AfxThrowFileException(CFileException::invalidFile, static_cast<LONG>(ERROR_INVALID_HANDLE),
                          m_strFileName);
  }
  return m_pStream;
}

// The stream for the runtime's own functions.
FILE* CStdioFile::SettledStream() const {
  FILE* stream = OpenStream();
  SettleStream(stream);
  return stream;
}

int CStdioFile::Open(const wchar_t* lpszFileName, unsigned int nOpenFlags, CFileException* pError) {
  if (m_pStream != nullptr && m_bCloseOnDelete) {
    CStdioFile::Abort();
  } else {
    ReleaseStream(m_pStream);
    m_pStream = nullptr;
    m_hFile = hFileNull;
  }
  if (!CFile::Open(lpszFileName, nOpenFlags, pError)) return 0;

  const int type =
      (nOpenFlags & typeBinary) != 0 ? typeBinary : typeText;  // the runtime's _O_BINARY and _O_TEXT
  const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(m_hFile), type);
  if (descriptor >= 0) m_pStream = _wfdopen(descriptor, ModeOf(nOpenFlags));
  if (m_pStream != nullptr) {
    if (type == typeText) HoldStream(m_pStream, HeldText::kAnsi);
    return 1;
  }

  const int error = errno;
  if (descriptor >= 0) {
    _close(descriptor);
    m_hFile = hFileNull;
  }
  CFile::Abort();
  if (pError != nullptr) {
    pError->m_lOsError = error;
    pError->m_cause = CFileException::ErrnoToException(error);
    pError->m_strFileName = lpszFileName;
  }
  return 0;
}

unsigned long long CStdioFile::GetPosition() const {
  const long long position = TellStream(OpenStream());
  if (position < 0) AfxThrowFileException(CFileException::badSeek, errno, m_strFileName);
  return static_cast<unsigned long long>(position);
}

CFile* CStdioFile::Duplicate() const {
  AfxThrowNotSupportedException();
}

void CStdioFile::LockRange(unsigned long long, unsigned long long) {
  AfxThrowNotSupportedException();
}

void CStdioFile::UnlockRange(unsigned long long, unsigned long long) {
  AfxThrowNotSupportedException();
}

unsigned long long CStdioFile::Seek(long long lOff, unsigned int nFrom) {
  if (nFrom > end || SeekStream(OpenStream(), lOff, static_cast<int>(nFrom)) != 0) {
    AfxThrowFileException(CFileException::badSeek, nFrom > end ? EINVAL : errno, m_strFileName);
  }
  return CStdioFile::GetPosition();
}

void CStdioFile::SetLength(unsigned long long dwNewLen) {
  FILE* stream = OpenStream();
  if (m_hFile == hFileNull) AfxThrowNotSupportedException();
  if (dwNewLen > LLONG_MAX) {
    AfxThrowFileException(CFileException::genericException, static_cast<LONG>(ERROR_INVALID_PARAMETER),
                          m_strFileName);
  }
  if (FlushStream(stream) != 0) ThrowErrno();
  // The system cuts at its own position, which is not where the stream believes to be.
  LARGE_INTEGER place;
  place.QuadPart = static_cast<long long>(dwNewLen);
  CStdioFile::Seek(place.QuadPart, begin);
  if (!SetFilePointerEx(m_hFile, place, nullptr, FILE_BEGIN) || !SetEndOfFile(m_hFile)) ThrowLastError();
  CStdioFile::Seek(place.QuadPart, begin);
}

unsigned long long CStdioFile::GetLength() const {
  FILE* stream = OpenStream();
  // What is still in the buffer ends where the stream stands. Handing it over first would make a stream that
  // is being read lose its buffer, and on Windows its place.
  const long long position = TellStream(stream);
  LARGE_INTEGER size;
  if (m_hFile != hFileNull) {
    if (position < 0 && FlushStream(stream) != 0) ThrowErrno();
    if (!GetFileSizeEx(m_hFile, &size)) ThrowLastError();
    return static_cast<unsigned long long>(std::max<long long>(size.QuadPart, position));
  }
  if (position < 0 || SeekStream(stream, 0, SEEK_END) != 0) ThrowErrno();
  const long long length = TellStream(stream);
  if (length < 0 || SeekStream(stream, position, SEEK_SET) != 0) ThrowErrno();
  return static_cast<unsigned long long>(length);
}

unsigned int CStdioFile::Read(void* lpBuf, unsigned int nCount) {
  FILE* stream = OpenStream();
  if (nCount == 0) return 0;
  const std::ptrdiff_t read = GetBytes(lpBuf, nCount, stream);
  if (read < 0) ThrowReadError();
  return static_cast<unsigned int>(read);
}

void CStdioFile::Write(const void* lpBuf, unsigned int nCount) {
  FILE* stream = SettledStream();
  if (!PutBytes(lpBuf, nCount, stream)) ThrowErrno();
}

void CStdioFile::WriteString(const wchar_t* lpsz) {
  FILE* stream = SettledStream();
  if (lpsz != nullptr && fputws(lpsz, stream) == static_cast<int>(WEOF)) ThrowErrno();
}

wchar_t* CStdioFile::ReadString(wchar_t* lpsz, unsigned int nMax) {
  FILE* stream = OpenStream();
  if (lpsz == nullptr || nMax == 0) return nullptr;
  const std::ptrdiff_t length = GetText(lpsz, nMax - 1, stream);
  if (length < 0) ThrowReadError();
  if (length == 0 && nMax > 1) return nullptr;
  lpsz[length] = 0;
  return lpsz;
}

int CStdioFile::ReadString(CString& rString) {
  FILE* stream = OpenStream();
  rString.Truncate(0);
  StreamLine line;
  switch (line.Read(stream)) {
    case LineResult::kEnd:
      return 0;
    case LineResult::kFailed:
      ThrowReadError();
    case LineResult::kNoMemory:
      AfxThrowMemoryException();
    case LineResult::kLine:
      break;
  }
  const int room = static_cast<int>(line.Bytes().length + kLinePadding);
  const std::size_t length = line.Decode(rString.GetBuffer(room));
  rString.ReleaseBufferSetLength(static_cast<int>(length));
  return 1;
}

void CStdioFile::Abort() {
  ReleaseStream(m_pStream);
  if (m_pStream != nullptr) fclose(m_pStream);
  m_pStream = nullptr;
  m_hFile = hFileNull;
  m_bCloseOnDelete = 0;
  m_strFileName.Empty();
}

void CStdioFile::Flush() {
  if (m_pStream != nullptr && FlushStream(m_pStream) != 0) ThrowErrno();
}

void CStdioFile::Close() {
  const CString name = m_strFileName;
  ReleaseStream(m_pStream);
  const bool closed = m_pStream == nullptr || fclose(m_pStream) == 0;
  const int error = errno;
  m_pStream = nullptr;
  m_hFile = hFileNull;
  m_bCloseOnDelete = 0;
  m_strFileName.Empty();
  if (!closed) ThrowErrnoFor(error, name);
}
