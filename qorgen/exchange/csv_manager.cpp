#include "qorgen/exchange/csv_manager.h"

#include <array>
#include <bit>
#include <climits>
#include <cstdint>
#include <stdexcept>

#include "qorgen/afx/exception.h"
#include "qorgen/exchange/internal/field_list.h"
#include "qorgen/exchange/internal/line_scan.h"
#include "qorgen/exchange/internal/text_reuse.h"
#include "qorgen/platform/common/white_space.h"
#include "qorgen/platform/crt.h"

namespace {

using qorgen::exchange::CopyToQuote;
using qorgen::exchange::CopyToQuoteWithin;
using qorgen::exchange::FieldList;
using qorgen::exchange::kCopySlack;
using qorgen::exchange::kMarkBlock;
using qorgen::exchange::LineMarks;
using qorgen::exchange::RegularLine;
using qorgen::exchange::UnitSet;
using qorgen::platform::IsWhiteSpace;

static_assert(qorgen::exchange::FieldList::kPadding >= qorgen::exchange::kMarkBlock &&
                  qorgen::exchange::FieldList::kReadBlock == qorgen::exchange::kCopyBlock,
              "what a block may read");

struct DelimiterFlag {
  unsigned int flag;
  wchar_t character;
};

constexpr DelimiterFlag kDelimiters[] = {
    {CSVMGR_DELIM_TAB, L'\t'},  {CSVMGR_DELIM_SEMICOLON, L';'}, {CSVMGR_DELIM_COMMA, L','},
    {CSVMGR_DELIM_SPACE, L' '}, {CSVMGR_DELIM_PERIOD, L'.'},    {CSVMGR_DELIM_SLASH, L'/'},
};

// The delimiter of a written line, indexed by the delimiter type: that of the highest flag.
constexpr wchar_t kWrittenDelimiters[32] = {
    0,   '\t', ';', ';', ',', ',', ',', ',', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ',
    '.', '.',  '.', '.', '.', '.', '.', '.', '.', '.', '.', '.', '.', '.', '.', '.',
};
static_assert(kWrittenDelimiters[CSVMGR_DELIM_PERIOD | CSVMGR_DELIM_TAB] == '.' &&
              kWrittenDelimiters[5] == ',');

// 0 stands for no quote and no delimiter: neither can be U+0000, which ends a line.
wchar_t QuoteCharacter(CSVMGR_QUOTES quotes) {
  switch (quotes) {
    case CSVMGR_QUOTES_DOUBLE:
      return L'"';
    case CSVMGR_QUOTES_SINGLE:
      return L'\'';
    default:
      return 0;
  }
}

wchar_t WrittenDelimiter(unsigned int delimiter_type) {
  return delimiter_type < 32 ? kWrittenDelimiters[delimiter_type] : L'\0';
}

// The delimiters of every delimiter type.
constexpr std::array<UnitSet, 64> kDelimiterSets = [] {
  std::array<UnitSet, 64> sets = {};
  for (unsigned int type = 0; type < sets.size(); ++type) {
    for (const DelimiterFlag& row : kDelimiters) {
      if ((type & row.flag) != 0) sets[type].Add(row.character);
    }
  }
  return sets;
}();
static_assert(kDelimiterSets[0].count == 0 && kDelimiterSets[63].count == 6);

// Cuts a line whose quotes stand as a writer puts them; false, with nothing done, for any other.
bool SplitRegular(FieldList& fields, const wchar_t* text, std::size_t length, const UnitSet& delimiters,
                  wchar_t quote) {
  RegularLine line;
  if (!line.Read(text, length, delimiters, quote)) return false;
  const std::size_t first = fields.Count();
  fields.AddSpans(line.Blocks() * kMarkBlock + 1, [&](FieldList::Span* to) {
    std::size_t begin = 0;
    const auto put = [&](std::size_t end) {
      const std::size_t quotes = quote != 0 && text[begin] == quote ? 1 : 0;
      *to++ = {text + begin + quotes, end - begin - 2 * quotes};
      begin = end + 1;
    };
    for (std::size_t block = 0; block < line.Blocks(); ++block) {
      for (std::uint64_t left = line.Separators(block); left != 0; left &= left - 1) {
        put(block * kMarkBlock + static_cast<std::size_t>(std::countr_zero(left)));
      }
    }
    // Behind the last separator there is one more field, which may be empty.
    put(length);
    return to;
  });
  if (line.HasPairs()) fields.Fold(first, quote);
  return true;
}

// Writes a text with every quote in it doubled, for which there may be no room yet: the block of `line` grows
// by what is needed. `out` is a place in it, and so is the result.
[[gnu::noinline]] wchar_t* PutDoubled(CString& line, wchar_t* out, const wchar_t* text, std::size_t length,
                                      wchar_t quote, std::size_t& room) {
  std::size_t quotes = 0;
  for (std::size_t i = 0; i < length; ++i) quotes += text[i] == quote ? 1 : 0;
  const auto used = out - line.GetString();
  room += quotes;
  if (room > INT_MAX) AfxThrowMemoryException();
  line.ReleaseBufferSetLength(static_cast<int>(used));
  out = line.GetBuffer(static_cast<int>(room)) + used;
  while (length != 0) {
    const std::size_t count = CopyToQuoteWithin(out, text, length, quote);
    out += count;
    if (text[count - 1] == quote) *out++ = quote;
    text += count;
    length -= count;
  }
  return out;
}

}  // namespace

CQorCSVManager::CQorCSVManager() : elements(std::make_unique<FieldList>()) {}

CQorCSVManager::CQorCSVManager(const CQorCSVManager& other) : CQorCSVManager() {
  *this = other;
}

CQorCSVManager& CQorCSVManager::operator=(const CQorCSVManager& other) {
  *elements = *other.elements;
  quotes = other.quotes;
  delimiterType = other.delimiterType;
  quotesType = other.quotesType;
  someAsOne = other.someAsOne;
  readString = other.readString;
  commentLineOn = other.commentLineOn;
  commentLineLimit = other.commentLineLimit;
  return *this;
}

CQorCSVManager::~CQorCSVManager() = default;

CQorCSVManager::CQorCSVManager(const wchar_t* line, unsigned int delimiterType_, CSVMGR_QUOTES quotes_,
                               int someAsOne_)
    : CQorCSVManager() {
  delimiterType = delimiterType_;
  quotesType = quotes_;
  someAsOne = someAsOne_;
  separateString(line);
}

int CQorCSVManager::SetElements(const wchar_t* line, unsigned int delimiterType_, CSVMGR_QUOTES quotes_,
                                int someAsOne_) {
  delimiterType = delimiterType_;
  quotesType = quotes_;
  someAsOne = someAsOne_;
  elements->EndLine();
  const int length = CString::StringLength(line);
  qorgen::exchange::RefillText(readString, line, length);
  readString.Preallocate(length + static_cast<int>(FieldList::kPadding));
  Split(readString);
  return GetCount();
}

void CQorCSVManager::SwapElements(CString& line, unsigned int delimiterType_, CSVMGR_QUOTES quotes_,
                                  int someAsOne_) {
  delimiterType = delimiterType_;
  quotesType = quotes_;
  someAsOne = someAsOne_;
  elements->EndLine();
  readString.Swap(line);
  Split(readString);
}

void CQorCSVManager::separateString(const wchar_t* line) {
  Split(CString(line));
}

// The remainder of the line begins at `rest`.
void CQorCSVManager::Split(const CString& line) {
  FieldList& fields = *elements;
  const wchar_t* const text = fields.BeginLine(line);
  const auto length = static_cast<std::size_t>(line.GetLength());
  if (length == 0) return;
  const UnitSet& delimiters = kDelimiterSets[delimiterType % kDelimiterSets.size()];
  const wchar_t quote = QuoteCharacter(quotesType);
  const bool skip_space = quote != 0 && (delimiterType & CSVMGR_DELIM_SPACE) == 0;
  // The white space in front of a quote may be a delimiter as well when that is the tab: not a case for this.
  const bool tab_is_space = skip_space && (delimiterType & CSVMGR_DELIM_TAB) != 0;
  if (someAsOne != 1 && !tab_is_space && SplitRegular(fields, text, length, delimiters, quote)) return;

  LineMarks marks(text, length, delimiters, quote);

  std::size_t rest = 0;
  std::size_t solid = 0;  // no character from `rest` up to here is anything but white space
  for (;;) {
    const wchar_t head =
        text[rest];  // at the end of the line its terminator, which is neither space nor quote
    std::size_t field = rest;
    bool quoted = head == quote && head != 0;
    if (skip_space && IsWhiteSpace(head)) {
      // White space may itself be a delimiter (the tab), so the run found for one field serves the next ones
      // too.
      if (solid < rest) solid = rest;
      while (IsWhiteSpace(text[solid])) ++solid;
      quoted = text[solid] == quote;
      if (quoted) field = solid;
    }
    if (quoted) {
      ++field;
      std::size_t closing = marks.NextQuote(field);
      bool pairs = false;
      if (closing + 1 < length && text[closing + 1] == quote) {
        do {
          closing = marks.NextQuote(closing + 2);
        } while (closing + 1 < length && text[closing + 1] == quote);
        pairs = true;
      }
      // What stands between the closing quote and the next delimiter is dropped; without a closing quote the
      // field takes the whole rest.
      rest = marks.IsKnownDelimiter(closing + 1) ? closing + 1 : marks.NextDelimiter(closing);
      fields.AddSpan(text + field, closing - field);
      if (pairs) fields.Fold(fields.Count() - 1, quote);
    } else {
      rest = marks.NextDelimiter(rest);
      fields.AddSpan(text + field, rest - field);
    }
    if (rest == length) return;
    ++rest;
    if (someAsOne == 1) {
      while (rest != length && marks.NextDelimiter(rest) == rest) ++rest;
    }
  }
}

void CQorCSVManager::AddElement(const wchar_t* text) {
  elements->Append(text, static_cast<std::size_t>(CString::StringLength(text)));
}

void CQorCSVManager::BorrowText(const CString& text) {
  elements->Borrow(text, static_cast<std::size_t>(text.GetLength()));
}

void CQorCSVManager::OwnTexts() {
  elements->Own();
}

void CQorCSVManager::AddQuate(CSVMGR_QUOTES quotes_) {
  quotes.push_back(quotes_);
}

void CQorCSVManager::SetQuatesType(CSVMGR_QUOTES quotes_) {
  quotesType = quotes_;
}

void CQorCSVManager::SetDelimiterType(unsigned int delimiterType_) {
  delimiterType = delimiterType_;
}

void CQorCSVManager::SetSomeAsOne(int someAsOne_) {
  someAsOne = someAsOne_;
}

void CQorCSVManager::SetCommentLineInfo(int on, int limit) {
  commentLineOn = on;
  commentLineLimit = limit;
}

void CQorCSVManager::AdjustCommentLine(CString& line, int lineNumber) {
  if (commentLineOn != 0 && commentLineLimit != 0 && lineNumber <= commentLineLimit) line.Insert(0, L'#');
}

const wchar_t* CQorCSVManager::MakeString(CString& line) {
  if (delimiterType == 0) return nullptr;
  const wchar_t delimiter = WrittenDelimiter(delimiterType);
  line.SetString(nullptr, 0);
  const std::size_t count = elements->Count();
  // Room for everything but the quotes inside fields.
  std::size_t room = kCopySlack;
  for (std::size_t i = 0; i < count; ++i) room += elements->Length(i) + 3;
  if (room > INT_MAX) AfxThrowMemoryException();
  wchar_t* out = line.GetBuffer(static_cast<int>(room));
  const std::size_t quote_count = quotes.size();
  for (std::size_t i = 0; i < count; ++i) {
    const wchar_t* const text = elements->Text(i);
    const std::size_t length = elements->Length(i);
    const wchar_t quote = QuoteCharacter(i < quote_count ? quotes[i] : quotesType);
    if (i != 0 && delimiter != 0) *out++ = delimiter;
    if (quote == 0) {
      // Most fields are a few units long: not worth a call.
      out += CopyToQuote(out, text, length, 0);
      continue;
    }
    *out++ = quote;
    const std::size_t copied = CopyToQuote(out, text, length, quote);
    if (copied != length || (length != 0 && text[length - 1] == quote)) {
      out = PutDoubled(line, out, text, length, quote, room);
    } else {
      out += copied;
    }
    *out++ = quote;
  }
  line.ReleaseBufferSetLength(static_cast<int>(out - line.GetString()));
  return line;
}

void CQorCSVManager::CutAtZeros() {
  const FieldList whole(*elements);
  elements->Clear();
  for (std::size_t i = 0; i < whole.Count(); ++i) {
    elements->Append(whole.Text(i), static_cast<std::size_t>(CString::StringLength(whole.Text(i))));
  }
}

int CQorCSVManager::GetCount() const {
  return static_cast<int>(elements->Count());
}

const wchar_t* CQorCSVManager::GetAt(int index) const {
  if (index < 0) throw std::out_of_range("invalid vector subscript");
  const auto place = static_cast<std::size_t>(index);
  return place < elements->Count() ? elements->Terminated(place) : nullptr;
}

void CQorCSVManager::Empty() {
  elements->Clear();
}

CString CQorCSVManager::GetReadString() const {
  return readString;
}
