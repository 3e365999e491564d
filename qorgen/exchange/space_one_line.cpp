#include "qorgen/exchange/space_one_line.h"

#include <algorithm>
#include <climits>

#include "qorgen/afx/exception.h"
#include "qorgen/calendar/date_record.h"
#include "qorgen/platform/crt.h"
#include "qorgen/text/string_util.h"

namespace {

// How much of `text` goes into a field.
int HeadLength(const wchar_t* text, int width) {
  return text != nullptr ? static_cast<int>(wcsnlen(text, static_cast<std::size_t>(width))) : 0;
}

// The pads that a text is short of, in one piece.
CString Pads(const CString& text, const wchar_t* pad, long width) {
  CString pads;
  const long filled_width = CQorStringUtil::GetStringLen(text);
  const std::size_t length = pad != nullptr ? wcslen(pad) : 0;
  if (width <= filled_width || length == 0) return pads;
  const long missing = width - filled_width;
  if (static_cast<std::size_t>(missing) > INT_MAX / length) AfxThrowMemoryException();
  const int total = static_cast<int>(static_cast<std::size_t>(missing) * length);
  wchar_t* const filled = pads.GetBufferSetLength(total);
  for (std::size_t i = 0; i < static_cast<std::size_t>(total); ++i) filled[i] = pad[i % length];
  return pads;
}

}  // namespace

CQorSpaceOneLine::CQorSpaceOneLine() = default;
CQorSpaceOneLine::CQorSpaceOneLine(const CQorSpaceOneLine& other) = default;
CQorSpaceOneLine& CQorSpaceOneLine::operator=(const CQorSpaceOneLine& other) = default;
CQorSpaceOneLine::~CQorSpaceOneLine() = default;

void CQorSpaceOneLine::AddSpace(const wchar_t* text, int width) {
  width = std::max(width, 0);
  const int length = HeadLength(text, width);
  CString& item = NextItem();
  wchar_t* const cells = item.GetBufferSetLength(width);
  std::copy_n(text, length, cells);
  std::fill_n(cells + length, width - length, L' ');
  ++m_count;
}

void CQorSpaceOneLine::AddZero(const wchar_t* text, int width) {
  width = std::max(width, 0);
  const int length = HeadLength(text, width);
  CString& item = NextItem();
  wchar_t* const cells = item.GetBufferSetLength(width);
  std::fill_n(cells, width - length, L'0');
  std::copy_n(text, length, cells + (width - length));
  ++m_count;
}

void CQorSpaceOneLine::AddDate(int date) {
  const QORDATE day(date);
  NextItem().Format(L"%02d%02d", day.month, day.day);
  ++m_count;
}

const wchar_t* CQorSpaceOneLine::MakeString(CString& line) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < m_count; ++i) length += static_cast<std::size_t>(items[i].GetLength());
  if (length > INT_MAX - 1) AfxThrowMemoryException();
  wchar_t* cells = line.GetBufferSetLength(static_cast<int>(length));
  for (std::size_t i = 0; i < m_count; ++i) {
    cells = std::copy_n(items[i].GetString(), items[i].GetLength(), cells);
  }
  return line;
}

void CQorSpaceOneLine::Empty() {
  m_count = 0;
}

int CQorSpaceOneLine::GetCount() const {
  return static_cast<int>(m_count);
}

CString CQorSpaceOneLine::AddLeft(CString text, const wchar_t* pad, long width) {
  return Pads(text, pad, width) + text;
}

CString CQorSpaceOneLine::AddRight(CString text, const wchar_t* pad, long width) {
  return text + Pads(text, pad, width);
}

// The field to fill next; it counts from when it is whole.
CString& CQorSpaceOneLine::NextItem() {
  if (m_count == items.size()) items.emplace_back();
  return items[m_count];
}
