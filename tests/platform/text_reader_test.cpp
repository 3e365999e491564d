// The reader of text streams over windows of every size: where a buffer ends must make no difference.

#include "qorgen/platform/common/text_reader.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "qorgen/platform/codepage.h"

#include "tests/support/text.h"

namespace qorgen::tests {
namespace {

using platform::kUtf16Text;
using platform::LineResult;
using platform::StreamText;

// Gives a text `piece` bytes at a time, with bytes behind each that belong to no line.
class PieceWindow final : public platform::ByteWindow {
 public:
  PieceWindow(const std::string& bytes, std::size_t piece) : bytes_(bytes), piece_(piece) {
    padded = true;
    at = end = buffer_.data();
  }
  bool Failed() const override { return false; }
  long long Place() const override { return static_cast<long long>(read_ - Available()); }
  void End() override {
    read_ = bytes_.size();
    at = end;
  }

 private:
  bool Read(std::size_t count) override {
    std::vector<unsigned char> next(at, end);
    while (next.size() < count && read_ < bytes_.size()) {
      const std::string piece = bytes_.substr(read_, piece_);
      next.insert(next.end(), piece.begin(), piece.end());
      read_ += piece.size();
    }
    const std::size_t length = next.size();
    next.resize(length + platform::kLinePadding, '\n');
    buffer_.swap(next);
    at = buffer_.data();
    end = at + length;
    return length >= count;
  }

  std::string bytes_;
  std::size_t piece_;
  std::size_t read_ = 0;
  std::vector<unsigned char> buffer_{0};
};

StreamText TextOf(unsigned code_page) {
  StreamText text;
  text.code_page = code_page;
  text.skips_mark = code_page != 932;
  return text;
}

struct Row {
  const char* name;
  unsigned code_page;
  std::string bytes;
  std::string text;  // LF between lines
};

const Row kRows[] = {
    {"line ends", 932, "a\r\nb\nc\rd\r\r\ne", "a\nb\nc\rd\r\ne"},
    {"characters", 932, "\x93\xFA\x96{\xB1\r\n\x83\\", "日本ｱ\nソ"},
    {"lead byte before a line end", 932, "a\x93\r\nb\x93", "a・\nb・"},
    {"cr as a second half", 932, "a\x93\rb\x93\r\r\n", "a・b・\n"},
    {"lead byte before the end mark", 932,
     "a\x93\x1A"
     "b\n",
     "a・"},
    {"end mark", 932,
     "ab\x1A"
     "cd\n",
     "ab"},
    {"end mark behind a line end", 932, "ab\r\n\x1A\n", "ab\n"},
    {"cr at the end", 932, "ab\r", "ab\r"},
    {"empty lines", 932, "\n\r\n\n", "\n\n\n"},
    {"mark", CP_UTF8, "\xEF\xBB\xBF日本\r\n𠮷野家\r\n", "日本\n𠮷野家\n"},
    {"mark inside is text", CP_UTF8,
     "a\n\xEF\xBB\xBF"
     "b",
     "a\n\xEF\xBB\xBF"
     "b"},
    {"mark alone", CP_UTF8, "\xEF\xBB\xBF", ""},
    {"utf8 end mark", CP_UTF8, "日\x1A日", "日"},
    {"invalid", CP_UTF8,
     "a\xFF"
     "b\xE3\x81\nc",
     "a\xEF\xBF\xBD"
     "b\xEF\xBF\xBD\nc"},
    {"cut", CP_UTF8, "ab\xF0\x9F\x98", "ab\xEF\xBF\xBD"},
    {"utf16", kUtf16Text, std::string("\xFF\xFE\xE5\x65\r\0\n\0\x0D\0b\0\x42\xD8\xB7\xDF", 16), "日\n\rb𠮷"},
    {"unit with a line feed's byte", kUtf16Text, std::string("\x0A\x30\n\0!\x0A", 6), "《\nਡ"},
    {"utf16 end mark", kUtf16Text, std::string("a\0\x1A\0b\0", 6), "a"},
    {"utf16 odd byte", kUtf16Text, std::string("a\0b\0c", 5), "ab"},
    {"utf16 odd byte behind a line end", kUtf16Text, std::string("a\0\n\0c", 5), "a\n"},
    {"empty", CP_UTF8, "", ""},
};

TEST(TextReader, ReadsUnitsWhereverTheBufferAndTheRoomEnd) {
  for (const Row& row : kRows) {
    for (const std::size_t piece : {1, 2, 3, 5, 100}) {
      for (const std::size_t room : {1, 2, 3, 4, 100}) {
        PieceWindow window(row.bytes, piece);
        StreamText text = TextOf(row.code_page);
        std::vector<wchar_t> all, units(room);
        while (const std::size_t count = ReadUnits(window, text, units.data(), room)) {
          all.insert(all.end(), units.begin(), units.begin() + static_cast<std::ptrdiff_t>(count));
        }
        all.push_back(0);
        EXPECT_EQ(row.text, Utf8(all.data())) << row.name << ", pieces of " << piece << ", room for " << room;
        EXPECT_EQ(static_cast<long long>(row.bytes.size()), window.Place()) << row.name;
      }
    }
  }
}

TEST(TextReader, ReadsLinesWhereverTheBufferEnds) {
  for (const Row& row : kRows) {
    for (const std::size_t piece : {1, 2, 3, 4, 5, 100}) {
      PieceWindow window(row.bytes, piece);
      StreamText text = TextOf(row.code_page);
      platform::LineBlock block;
      platform::LineBytes line;
      std::string all;
      while (ReadLine(window, text, block, 1000, line) == LineResult::kLine) {
        std::vector<wchar_t> units(line.length + 5);
        units[platform::DecodeLine(text.code_page, line, units.data())] = 0;
        all += Utf8(units.data()) + (line.ended ? "\n" : "");
      }
      EXPECT_EQ(row.text, all) << row.name << ", pieces of " << piece;
      EXPECT_EQ(static_cast<long long>(row.bytes.size()), window.Place()) << row.name;
    }
  }
}

TEST(TextReader, PassesOverLinesBeyondTheLimit) {
  for (const std::size_t piece : {1, 7, 1000}) {
    PieceWindow window("12345\n123456\r\n123456789\n1", piece);
    StreamText text = TextOf(932);
    platform::LineBlock block;
    platform::LineBytes line;
    const LineResult results[] = {LineResult::kLine, LineResult::kNoMemory, LineResult::kNoMemory,
                                  LineResult::kLine, LineResult::kEnd};
    for (const LineResult result : results)
      EXPECT_EQ(result, ReadLine(window, text, block, 5, line)) << piece;
  }
}

TEST(TextReader, TranslatesBytesWhereverTheBufferAndTheRoomEnd) {
  for (const std::size_t piece : {1, 2, 3, 100}) {
    for (const std::size_t room : {1, 2, 3, 100}) {
      PieceWindow window(std::string("a\r\n\r\r\nb\0c\r\n\r", 12) +
                             "\x1A"
                             "d",
                         piece);
      const StreamText text = TextOf(932);
      std::string all, part(room, '\0');
      while (const std::size_t count = ReadBytes(window, text, part.data(), room)) all.append(part, 0, count);
      EXPECT_EQ(std::string("a\n\r\nb\0c\n\r", 9), all) << piece << ", room for " << room;
    }
  }
}

}  // namespace
}  // namespace qorgen::tests
