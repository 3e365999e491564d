#include "qorgen/platform/common/text_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "qorgen/platform/codepage.h"

namespace qorgen::platform {
namespace {

constexpr unsigned char kEnd = 0x1A;  // Ctrl-Z

const unsigned char* Find(unsigned char byte, const unsigned char* at, std::size_t length) {
  return length == 0 ? nullptr : static_cast<const unsigned char*>(std::memchr(at, byte, length));
}

wchar_t UnitAt(const unsigned char* at) {
  return static_cast<wchar_t>(at[0] | at[1] << 8);
}

// At the start of a file its mark is no text.
void SkipMark(ByteWindow& window, const StreamText& text) {
  if (!text.skips_mark) return;
  const bool wide = text.code_page == kUtf16Text;
  if (!window.Ensure(1) || *window.at != (wide ? 0xFF : 0xEF) || window.Place() != 0) return;
  const std::size_t size = wide ? 2 : 3;
  if (window.Ensure(size) && std::memcmp(window.at, wide ? "\xFF\xFE" : "\xEF\xBB\xBF", size) == 0) {
    window.at += size;
  }
}

// How many bytes at the end of a run begin a character that goes on behind it.
std::size_t CutTail(unsigned code_page, const unsigned char* at, std::size_t length) {
  if (code_page == CP_UTF8) {
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, length); ++back) {
      const unsigned char byte = at[length - back];
      if ((byte & 0xC0) == 0x80) continue;
      std::size_t whole = 1;
      if (byte >= 0xC2 && byte <= 0xF4) whole = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
      return whole > back ? back : 0;
    }
    return 0;
  }
  // Only a walk from the start knows a lead byte from a trail byte.
  if (length == 0 || at[length - 1] < 0x80 || code_page == 0 || code_page == kUtf16Text) return 0;
  std::size_t i = 0;
  while (i < length) i += at[i] >= 0x80 && IsDBCSLeadByteEx(code_page, at[i]) != 0 ? 2 : 1;
  return i > length ? 1 : 0;
}

// Units of text that ends in a whole character or, as a line may, in the middle of one, which then shows as a
// character that can't be decoded. Never more units than there are bytes.
std::size_t DecodeText(unsigned code_page, const unsigned char* bytes, std::size_t length, wchar_t* units) {
  if (length == 0) return 0;
  if (code_page == 0) {
    std::copy_n(bytes, length, units);
    return length;
  }
  if (code_page == kUtf16Text) {
    std::memcpy(units, bytes, length);
    return length / 2;
  }
  // A lone lead byte at the end is a character of its own only where it stands alone.
  const std::size_t cut = code_page == CP_UTF8 ? 0 : CutTail(code_page, bytes, length);
  std::size_t made = 0;
  for (const auto& [from, count] : {std::pair{std::size_t{0}, length - cut}, std::pair{length - cut, cut}}) {
    if (count == 0) continue;
    const int size = static_cast<int>(count);
    made += static_cast<std::size_t>(MultiByteToWideChar(
        code_page, 0, reinterpret_cast<const char*>(bytes + from), size, units + made, size));
  }
  return made;
}

// ---- whole lines ----

bool Reserve(LineBlock& block, std::size_t needed) {
  if (needed + kLinePadding <= block.capacity) return true;
  const std::size_t capacity = std::max(needed + kLinePadding, block.capacity * 2);
  std::unique_ptr<unsigned char[]> bytes(new (std::nothrow) unsigned char[capacity]);
  if (bytes == nullptr) return false;
  if (block.length != 0) std::memcpy(bytes.get(), block.bytes.get(), block.length);
  block.bytes = std::move(bytes);
  block.capacity = capacity;
  return true;
}

// A stretch of a line in the window, and what comes behind it.
struct Stretch {
  std::size_t length;
  bool feed;  // a line feed
  bool end;   // a Ctrl-Z
};

// Looks at no more than `most` bytes, so that short pieces of a long line cost what they are long.
Stretch NextStretch(const ByteWindow& window, const StreamText& text, std::size_t most) {
  const std::size_t available = std::min(window.Available(), most);
  const unsigned char* const feed = Find('\n', window.at, available);
  const std::size_t length = feed != nullptr ? static_cast<std::size_t>(feed - window.at) : available;
  if (text.translate && window.may_hold_control) {
    const unsigned char* const stop = Find(kEnd, window.at, length);
    if (stop != nullptr) return {static_cast<std::size_t>(stop - window.at), false, true};
  }
  return {length, feed != nullptr, false};
}

Stretch NextWideStretch(const ByteWindow& window, const StreamText& text) {
  const std::size_t units = window.Available() / 2;
  for (std::size_t i = 0; i < units; ++i) {
    const wchar_t unit = UnitAt(window.at + 2 * i);
    if (unit == L'\n') return {2 * i, true, false};
    if (unit == kEnd && text.translate) return {2 * i, false, true};
  }
  return {2 * units, false, false};
}

// ---- pieces ----

struct Units {
  wchar_t* to;
  std::size_t room;
  std::size_t length = 0;

  [[nodiscard]] std::size_t Left() const { return room - length; }
  void Put(wchar_t unit) { to[length++] = unit; }
};

// Whether the byte behind a lead byte belongs to it: a line end stays one, and the end of the text, too.
bool IsSecondHalf(ByteWindow& window, const StreamText& text) {
  const unsigned char next = window.at[1];
  if (next == '\n' || (next == kEnd && text.translate)) return false;
  return next != '\r' || !text.translate || !window.Ensure(3) || window.at[2] != '\n';
}

// A character that the end of the window cuts, or for whose bytes there might be no room.
void TakeCharacter(ByteWindow& window, StreamText& text, Units& units) {
  std::size_t count = 1;
  while (count < 4 && CutTail(text.code_page, window.at, count) == count && window.Ensure(count + 1)) {
    const bool goes_on =
        text.code_page == CP_UTF8 ? (window.at[count] & 0xC0) == 0x80 : IsSecondHalf(window, text);
    if (!goes_on) break;
    ++count;
  }
  wchar_t decoded[4];
  const std::size_t made = DecodeText(text.code_page, window.at, count, decoded);
  window.at += count;
  const std::size_t taken = std::min(made, units.Left());
  std::copy_n(decoded, taken, units.to + units.length);
  units.length += taken;
  std::copy_n(decoded + taken, made - taken, text.waiting);
  text.waiting_count = static_cast<int>(made - taken);
  text.waiting_place = window.Place();
}

// The next run of a window that isn't empty: true at a line end and at the end of the text.
bool TakeRun(ByteWindow& window, StreamText& text, Units& units) {
  const unsigned char* const at = window.at;
  Stretch run = NextStretch(window, text, units.Left() + 1);
  if (run.length > units.Left()) run = {units.Left(), false, false};
  const bool whole = run.feed || run.end;
  // A CR that may belong to a line end is taken by itself, and is no second half of a character.
  if (!whole && text.translate && run.length > 1 && at[run.length - 1] == '\r') --run.length;
  const std::size_t used = whole ? run.length : run.length - CutTail(text.code_page, at, run.length);
  if (used == 0 && !whole) {
    TakeCharacter(window, text, units);
    return false;
  }
  const bool drop = run.feed && text.translate && used != 0 && at[used - 1] == '\r';
  if (run.feed && !drop && used == units.Left()) {
    // There is room for the text in front of the line feed alone.
    units.length += DecodeText(text.code_page, at, used, units.to + units.length);
    window.at += used;
    return false;
  }
  units.length += DecodeText(text.code_page, at, used - (drop ? 1 : 0), units.to + units.length);
  window.at += used;
  if (run.end) {
    window.End();
    return true;
  }
  if (run.feed) {
    ++window.at;
    units.Put(L'\n');
    return true;
  }
  // A CR that ends the run: the LF that may follow makes it a line end.
  if (!text.translate || at[used - 1] != '\r' || !window.Ensure(1) || *window.at != '\n') return false;
  ++window.at;
  units.to[units.length - 1] = L'\n';
  return true;
}

// The next unit of UTF-16; an odd byte at the end of the file is dropped.
bool TakeUnit(ByteWindow& window, const StreamText& text, Units& units) {
  if (!window.Ensure(2)) {
    window.at = window.end;
    return true;
  }
  wchar_t unit = UnitAt(window.at);
  if (unit == kEnd && text.translate) {
    window.End();
    return true;
  }
  window.at += 2;
  if (unit == L'\r' && text.translate && window.Ensure(2) && UnitAt(window.at) == L'\n') {
    window.at += 2;
    unit = L'\n';
  }
  units.Put(unit);
  return unit == L'\n';
}

}  // namespace

bool HoldsControl(const void* bytes, std::size_t length) {
  return length != 0 &&
         (std::memchr(bytes, kEnd, length) != nullptr || std::memchr(bytes, 0, length) != nullptr);
}

LineResult ReadLine(ByteWindow& window, StreamText& text, LineBlock& block, std::size_t limit,
                    LineBytes& line) {
  SkipMark(window, text);
  const bool wide = text.code_page == kUtf16Text;
  const std::size_t feed_size = wide ? 2 : 1;
  block.length = 0;
  line = {};
  if (text.waiting_count != 0 && text.waiting_place == window.Place()) {
    line.before_count = text.waiting_count;
    std::copy_n(text.waiting, text.waiting_count, line.before);
  }
  text.waiting_count = 0;
  bool stored = true;  // false once there is no memory for the line
  bool any = false;    // something has been taken
  bool finished = false;
  while (!finished && window.Ensure(feed_size)) {
    any = true;
    const Stretch stretch = wide ? NextWideStretch(window, text) : NextStretch(window, text, SIZE_MAX);
    line.ended = stretch.feed;
    finished = stretch.feed || stretch.end;
    line.may_hold_control = window.may_hold_control;
    if (stretch.feed && block.length == 0 && stored && window.padded && stretch.length <= limit) {
      line.bytes = window.at;
      line.length = stretch.length;
    } else {
      stored =
          stored && block.length + stretch.length <= limit && Reserve(block, block.length + stretch.length);
      if (stored) {
        std::memcpy(block.bytes.get() + block.length, window.at, stretch.length);
        block.length += stretch.length;
      }
      line.may_hold_control = true;
    }
    if (stretch.end) any = stretch.length != 0 || block.length != 0;
    window.at += stretch.length + (stretch.feed ? feed_size : 0);
    if (stretch.end) window.End();
  }
  if (!finished && window.Failed()) return LineResult::kFailed;
  if (!finished) window.at = window.end;  // the first half of a unit
  if (!stored) return LineResult::kNoMemory;
  if (!any && line.before_count == 0) return LineResult::kEnd;
  if (line.bytes == nullptr) {
    if (!Reserve(block, block.length)) return LineResult::kNoMemory;
    line.bytes = block.bytes.get();
    line.length = block.length;
  }
  if (line.ended && text.translate && line.length >= feed_size &&
      (wide ? UnitAt(line.bytes + line.length - 2) == L'\r' : line.bytes[line.length - 1] == '\r')) {
    line.length -= feed_size;
  }
  return LineResult::kLine;
}

std::size_t ReadUnits(ByteWindow& window, StreamText& text, wchar_t* to, std::size_t room) {
  Units units = {to, room};
  if (text.waiting_count != 0) {
    const bool here = text.waiting_place == window.Place();
    const int taken =
        here ? std::min(text.waiting_count, static_cast<int>(std::min<std::size_t>(room, 4))) : 0;
    for (int i = 0; i < taken; ++i) units.Put(text.waiting[i]);
    text.waiting_count = here ? text.waiting_count - taken : 0;
    std::copy_n(text.waiting + taken, text.waiting_count, text.waiting);
  }
  if (units.Left() != 0) SkipMark(window, text);
  bool done = false;
  while (!done && units.Left() != 0) {
    if (text.code_page == kUtf16Text) {
      done = TakeUnit(window, text, units);
    } else {
      done = !window.Ensure(1) || TakeRun(window, text, units);
    }
  }
  return units.length;
}

std::size_t ReadBytes(ByteWindow& window, const StreamText& text, char* bytes, std::size_t room) {
  std::size_t length = 0;
  while (length < room && window.Ensure(1)) {
    Stretch run = NextStretch(window, text, room - length);
    if (run.length >= room - length) run = {room - length, false, false};
    std::memcpy(bytes + length, window.at, run.length);
    window.at += run.length;
    length += run.length;
    if (run.end) {
      window.End();
      break;
    }
    const bool cr = text.translate && length != 0 && bytes[length - 1] == '\r';
    if (run.feed) {
      ++window.at;
      bytes[cr ? length - 1 : length++] = '\n';
    } else if (cr && window.Ensure(1) && *window.at == '\n') {
      ++window.at;
      bytes[length - 1] = '\n';
    }
  }
  return length;
}

std::size_t DecodeLine(unsigned code_page, const LineBytes& line, wchar_t* units) {
  std::copy_n(line.before, line.before_count, units);
  return static_cast<std::size_t>(line.before_count) +
         DecodeText(code_page, line.bytes, line.length, units + line.before_count);
}

}  // namespace qorgen::platform
