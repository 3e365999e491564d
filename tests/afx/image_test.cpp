#include "qorgen/afx/image.h"

#include <cstdlib>

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

unsigned PixelOf(const CImage& image, int x, int y) {
  const BYTE* pixel = static_cast<const BYTE*>(image.GetBits()) + std::ptrdiff_t{y} * image.GetPitch() +
                      x * image.GetBPP() / 8;
  return static_cast<unsigned>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

void SetPixel(CImage& image, int x, int y, unsigned color) {
  BYTE* pixel = static_cast<BYTE*>(image.GetBits()) + std::ptrdiff_t{y} * image.GetPitch() + x * 3;
  pixel[0] = static_cast<BYTE>(color);
  pixel[1] = static_cast<BYTE>(color >> 8);
  pixel[2] = static_cast<BYTE>(color >> 16);
}

// A colour per place, so that a wrong row, column or byte order shows.
unsigned PatternAt(int x, int y) {
  return static_cast<unsigned>((40 * x + 5) << 16 | (30 * y + 7) << 8 | (x + y));
}

void MakePattern(CImage& image, int width, int height) {
  ASSERT_TRUE(image.Create(width, height, 24));
  for (int y = 0; y < image.GetHeight(); ++y) {
    for (int x = 0; x < width; ++x) SetPixel(image, x, y, PatternAt(x, y));
  }
}

TEST(ImageTest, NewBitmapIsBlackAndPadded) {
  CImage image;
  EXPECT_TRUE(image.IsNull());
  for (const int height : {2, -2}) {
    ASSERT_TRUE(image.Create(3, height, 24));
    EXPECT_EQ(3, image.GetWidth());
    EXPECT_EQ(2, image.GetHeight());
    EXPECT_EQ(24, image.GetBPP());
    EXPECT_EQ(height > 0 ? -12 : 12, image.GetPitch());
    EXPECT_EQ(0u, PixelOf(image, 2, 1));
  }
  const std::tuple<int, int, int> refused[] = {{0, 1, 24}, {1, 0, 24}, {-1, 1, 24},
                                               {1, 1, 0},  {1, 1, 40}, {0x7FFFFFFF, 0x7FFFFFFF, 24}};
  for (const auto& [width, row_height, bits] : refused) {
    EXPECT_FALSE(image.Create(width, row_height, bits)) << width << 'x' << row_height << ' ' << bits;
    EXPECT_TRUE(image.IsNull());
    EXPECT_EQ(0, image.GetWidth());
  }
}

TEST(ImageTest, EveryFormatThereAndBack) {
  ScratchFolder folder;
  const std::tuple<const wchar_t*, int, int, const char*> rows[] = {
      {L"a.png", 0, 24, "\x89PNG"},   {L"a.BMP", 0, 24, "BM"},
      {L"a.dib", 0, 24, "BM"},        {L"a.tiff", 0, 0, ""},
      {L"a.Tif", 0, 0, ""},           {L"a.gif", 0, 8, "GIF8"},
      {L"a.jpg", 48, 24, "\xFF\xD8"}, {L"絵.JPEG", 48, 24, "\xFF\xD8"},
  };
  CImage image;
  MakePattern(image, 5, 7);
  for (const auto& [name, tolerance, bits, magic] : rows) {
    const wchar_t* path = folder.Path(name);
    ASSERT_EQ(S_OK, image.Save(path)) << Utf8(name);
    const std::string bytes = GetFile(path);
    EXPECT_EQ(magic, bytes.substr(0, std::string(magic).size())) << Utf8(name);
    // The content decides, not the name.
    ASSERT_TRUE(PutFile(folder.Path(L"b.txt"), bytes));
    CImage back;
    if (bits == 8) {
      // Wine's own encoder writes a picture that its decoder doesn't take.
      const HRESULT loaded = back.Load(folder.Path(L"b.txt"));
      EXPECT_TRUE(HoldsExceptOnWine(loaded == S_OK)) << Utf8(name);
      if (loaded != S_OK) continue;
    } else {
      ASSERT_EQ(S_OK, back.Load(folder.Path(L"b.txt"))) << Utf8(name);
    }
    ASSERT_EQ(5, back.GetWidth());
    ASSERT_EQ(7, back.GetHeight());
    if (bits != 0) {
      EXPECT_EQ(bits, back.GetBPP()) << Utf8(name);
    }
    CImage plain;
    ASSERT_TRUE(plain.Create(5, 7, 24));
    ASSERT_TRUE(back.BitBlt(plain.GetDC(), 0, 0, 5, 7, 0, 0));
    plain.ReleaseDC();
    for (int y = 0; y < 7; ++y) {
      for (int x = 0; x < 5; ++x) {
        for (int shift = 0; shift < 24; shift += 8) {
          const int expected = static_cast<int>(PatternAt(x, y) >> shift & 0xFF);
          const int actual = static_cast<int>(PixelOf(plain, x, y) >> shift & 0xFF);
          EXPECT_LE(std::abs(expected - actual), tolerance) << Utf8(name) << ' ' << x << ',' << y;
        }
      }
    }
  }
}

TEST(ImageTest, NamesWithoutAnEncoder) {
  ScratchFolder folder;
  CImage image;
  EXPECT_EQ(E_FAIL, image.Save(folder.Path(L"a.png")));
  MakePattern(image, 2, 2);
  for (const wchar_t* name : {L"a.xyz", L"a", L"a.", L"png", L"a.png.", L"a.jp", L"a.png\\b", L"a.*"}) {
    EXPECT_EQ(E_FAIL, image.Save(folder.Path(name))) << Utf8(name);
    EXPECT_FALSE(Exists(folder.Path(name))) << Utf8(name);
  }
  EXPECT_EQ(E_FAIL, image.Save(folder.Path(L"missing\\a.png")));
  EXPECT_EQ(E_FAIL, image.Save(nullptr));
}

TEST(ImageTest, RectangleReachingOutsideLeavesTheRestAlone) {
  using Row = std::tuple<int, int, int, int, int, int>;
  CImage source;
  MakePattern(source, 4, 4);
  for (const auto& [row_x, row_y, width, height, source_x, source_y] :
       Rows(Row(0, 0, 4, 4, 0, 0), Row(0, 0, 4, 4, -2, -1), Row(0, 0, 4, 4, 2, 3), Row(1, 2, 9, 9, 0, 0),
            Row(-1, -2, 4, 4, 0, 0), Row(0, 0, 4, 4, 50, 50), Row(0, 0, 4, 4, -2147483647, 0),
            Row(0, 0, 2147483647, 2147483647, 1, 1), Row(-2147483647, 0, 2147483647, 4, 0, 0))) {
    CImage target;
    ASSERT_TRUE(target.Create(4, 4, 24));
    ASSERT_TRUE(source.BitBlt(target.GetDC(), row_x, row_y, width, height, source_x, source_y));
    target.ReleaseDC();
    for (long long y = 0; y < 4; ++y) {
      for (long long x = 0; x < 4; ++x) {
        const long long from_x = x - row_x + source_x;
        const long long from_y = y - row_y + source_y;
        const bool copied = x >= row_x && x - row_x < width && y >= row_y && y - row_y < height &&
                            from_x >= 0 && from_x < 4 && from_y >= 0 && from_y < 4;
        const unsigned expected = copied ? PatternAt(static_cast<int>(from_x), static_cast<int>(from_y)) : 0;
        EXPECT_EQ(expected, PixelOf(target, static_cast<int>(x), static_cast<int>(y)))
            << row_x << ',' << row_y << ' ' << source_x << ',' << source_y << " at " << x << ',' << y;
      }
    }
  }
  CImage target;
  ASSERT_TRUE(target.Create(4, 4, 24));
  EXPECT_FALSE(source.BitBlt(nullptr, 0, 0, 4, 4, 0, 0));
  EXPECT_FALSE(CImage().BitBlt(target.GetDC(), 0, 0, 4, 4, 0, 0));
  target.ReleaseDC();
}

TEST(ImageTest, FilesThatAreNoImages) {
  ScratchFolder folder;
  CImage image;
  for (const wchar_t* path :
       {folder.Path(L"missing.png"), folder.Path(L""), static_cast<const wchar_t*>(nullptr)})
    EXPECT_EQ(E_FAIL, image.Load(path)) << Utf8(path);
  for (const char* content : {"", "BM", "GIF89a", "\x89PNG\r\n\x1a\n", "II*", "text"}) {
    ASSERT_TRUE(PutFile(folder.Path(L"a.png"), content));
    EXPECT_EQ(E_FAIL, image.Load(folder.Path(L"a.png"))) << content;
    EXPECT_TRUE(image.IsNull());
  }
}

TEST(ImageTest, FilesCutAtEveryLengthDoNoHarm) {
  ScratchFolder folder;
  CImage image;
  MakePattern(image, 6, 6);
  for (const wchar_t* name : {L"a.png", L"a.bmp", L"a.gif", L"a.jpg", L"a.tif"}) {
    ASSERT_EQ(S_OK, image.Save(folder.Path(name)));
    const std::string whole = GetFile(folder.Path(name));
    for (std::size_t length = 0; length < whole.size(); length += 1 + length / 64) {
      // A name of its own each: Wine keeps a file open that it could not decode.
      CString cut_name;
      cut_name.Format(L"cut%d%s", static_cast<int>(length), name);
      ASSERT_TRUE(PutFile(folder.Path(cut_name), whole.substr(0, length)));
      CImage cut;
      const HRESULT result = cut.Load(folder.Path(cut_name));
      EXPECT_EQ(result != S_OK, cut.IsNull()) << Utf8(name) << ' ' << length;
    }
  }
}

TEST(ImageTest, ContextsNest) {
  CImage image;
  EXPECT_EQ(nullptr, image.GetDC());
  image.ReleaseDC();
  ASSERT_TRUE(image.Create(1, 1, 24));
  const HDC context = image.GetDC();
  EXPECT_EQ(context, image.GetDC());
  image.ReleaseDC();
  EXPECT_EQ(context, image.GetDC());
  image.Destroy();
  EXPECT_EQ(nullptr, image.GetDC());
}

}  // namespace
