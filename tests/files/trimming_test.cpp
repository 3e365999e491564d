
#include "qorgen/files/file_util.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

void Put32(std::string& out, int value) {
  for (int shift = 0; shift < 32; shift += 8) out += static_cast<char>(value >> shift & 0xFF);
}

// Blue, green and red of a place.
std::string PixelAt(int x, int y) {
  return {static_cast<char>(10 * x + 1), static_cast<char>(10 * y + 2), static_cast<char>(x + y + 100)};
}

// A bitmap file of 24 bits: the rows from the bottom up, padded to 4 bytes.
template <class Pixel>
std::string MakeBitmap(int width, int height, Pixel pixel) {
  std::string rows;
  for (int y = height - 1; y >= 0; --y) {
    for (int x = 0; x < width; ++x) rows += pixel(x, y);
    rows.resize((rows.size() + 3) / 4 * 4);
  }
  std::string out = "BM";
  Put32(out, static_cast<int>(54 + rows.size()));
  Put32(out, 0);
  Put32(out, 54);
  Put32(out, 40);
  Put32(out, width);
  Put32(out, height);
  out += std::string("\1\0\x18\0", 4);
  for (int i = 0; i < 6; ++i) Put32(out, 0);
  return out + rows;
}

class TrimmingTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(PutFile(In(L"source.bmp"), MakeBitmap(5, 4, PixelAt))); }

  CString In(const wchar_t* name) { return CQorFileUtil::ConnectPath(m_folder.Path(L""), name); }

  ScratchFolder m_folder;
};

TEST_F(TrimmingTest, RectangleInsideAndOutside) {
  const std::tuple<int, int, int, int> rows[] = {
      {1, 2, 3, 2}, {-1, -2, 4, 4}, {3, 3, 4, 4}, {50, 50, 2, 2}, {-2000000000, 0, 3, 1}};
  for (const auto& [left, top, width, height] : rows) {
    const CString target = In(L"out.bmp");
    ASSERT_EQ(1, CQorFileUtil::Trimming(In(L"source.bmp"), left, top, width, height, target));
    const std::string expected = MakeBitmap(width, height, [&](int x, int y) {
      const long long from_x = 0LL + x + left;
      const long long from_y = 0LL + y + top;
      const bool inside = from_x >= 0 && from_x < 5 && from_y >= 0 && from_y < 4;
      return inside ? PixelAt(static_cast<int>(from_x), static_cast<int>(from_y)) : std::string(3, '\0');
    });
    const std::string actual = GetFile(target);
    ASSERT_EQ(expected.size(), actual.size());
    EXPECT_EQ(expected.substr(54), actual.substr(54)) << left << ',' << top;
    EXPECT_EQ(24, actual[28]);
  }
}

TEST_F(TrimmingTest, EveryFormatInTurn) {
  const wchar_t* source = L"source.bmp";
  for (const wchar_t* target : {L"a.png", L"b.TIF", L"d.bmp"}) {
    ASSERT_EQ(1, CQorFileUtil::Trimming(In(source), 0, 0, 5, 4, In(target))) << Utf8(target);
    source = target;
  }
  EXPECT_EQ(MakeBitmap(5, 4, PixelAt).substr(54), GetFile(In(L"d.bmp")).substr(54));
  const char one_red_pixel[] = "GIF89a\1\0\1\0\x80\0\0\xFF\0\0\xFF\xFF\xFF,\0\0\0\0\1\0\1\0\0\2\2D\1\0;";
  ASSERT_TRUE(PutFile(In(L"f.gif"), std::string(one_red_pixel, sizeof one_red_pixel - 1)));
  EXPECT_EQ(1, CQorFileUtil::Trimming(In(L"f.gif"), 0, 0, 1, 1, In(L"g.bmp")));
  EXPECT_EQ(std::string("\0\0\xFF\0", 4), GetFile(In(L"g.bmp")).substr(54));
}

TEST_F(TrimmingTest, Refused) {
  const std::tuple<const wchar_t*, int, int, const wchar_t*> rows[] = {
      {L"none.bmp", 1, 1, L"out.bmp"},         {L"source.bmp", 0, 1, L"out.bmp"},
      {L"source.bmp", 1, -1, L"out.bmp"},      {L"source.bmp", 2147483647, 2147483647, L"out.bmp"},
      {L"source.bmp", 1, 1, L"none\\out.bmp"}, {L"text.bmp", 1, 1, L"out.bmp"},
  };
  ASSERT_TRUE(PutFile(In(L"text.bmp"), "no image"));
  for (const auto& [source, width, height, target] : rows) {
    ASSERT_TRUE(PutFile(In(L"out.bmp"), "former"));
    EXPECT_EQ(0, CQorFileUtil::Trimming(In(source), 0, 0, width, height, In(target)));
    EXPECT_EQ("former", GetFile(In(L"out.bmp"))) << Utf8(source);
  }
  EXPECT_EQ(0, CQorFileUtil::Trimming(nullptr, 0, 0, 1, 1, In(L"out.bmp")));
  EXPECT_EQ(0, CQorFileUtil::Trimming(In(L"source.bmp"), 0, 0, 1, 1, nullptr));
}

TEST_F(TrimmingTest, UnknownExtensionHasDeletedTheDestination) {
  ASSERT_TRUE(PutFile(In(L"out.xyz"), "former"));
  EXPECT_EQ(0, CQorFileUtil::Trimming(In(L"source.bmp"), 0, 0, 1, 1, In(L"out.xyz")));
  EXPECT_FALSE(Exists(In(L"out.xyz")));
}

}  // namespace
