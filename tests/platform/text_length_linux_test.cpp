// The length of a text, block by block: every place in a block, every length around one, and the end of a
// page.

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "qorgen/afx/string.h"
#include "qorgen/platform/crt.h"
#include "qorgen/platform/linux/crt/text_length.h"

namespace {

using qorgen::platform::TextLength;
using qorgen::platform::TextLengthPlain;

TEST(TextLength, FindsTheFirstTerminatorFromEveryPlace) {
  for (const wchar_t filling : {wchar_t{0x0100}, wchar_t{0x0001}, wchar_t{0xFFFF}}) {
    for (std::size_t place = 0; place < 9; ++place) {
      for (std::size_t length = 0; length < 40; ++length) {
        std::vector<wchar_t> room(place + length + 1, filling);
        // What stands in front of the text ends nothing.
        std::fill_n(room.begin(), place, L'\0');
        room.back() = 0;
        const wchar_t* const text = room.data() + place;
        ASSERT_EQ(TextLength(text), length) << place;
        ASSERT_EQ(TextLengthPlain(text), length) << place;
        ASSERT_EQ(wcslen(text), length) << place;
        ASSERT_EQ(CString::StringLength(text), static_cast<int>(length)) << place;
      }
    }
  }
  EXPECT_EQ(CString::StringLength(nullptr), 0);
}

TEST(TextLength, StaysOnThePagesOfTheText) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* const pages = mmap(nullptr, 3 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(pages, MAP_FAILED);
  auto* const middle = static_cast<char*>(pages) + page;
  ASSERT_EQ(mprotect(middle, page, PROT_READ | PROT_WRITE), 0);
  auto* const first = reinterpret_cast<wchar_t*>(middle);
  const std::size_t units = page / sizeof(wchar_t);
  std::fill_n(first, units - 1, L'x');
  for (std::size_t from = 0; from < 20; ++from) {
    EXPECT_EQ(TextLength(first + from), units - 1 - from);
    EXPECT_EQ(TextLength(first + units - 1 - from), from);
  }
  EXPECT_EQ(munmap(pages, 3 * page), 0);
}

}  // namespace
