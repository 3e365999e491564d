// Images from and to files, through libgd.

#include <algorithm>
#include <array>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <gd.h>
#include <string_view>
#include <unordered_map>

#include "qorgen/platform/linux/imaging/bitmap.h"

namespace qorgen::platform {
namespace {

using Gdiplus::GpBitmap;

struct Release {
  void operator()(gdImage* image) const { gdImageDestroy(image); }
};
using Picture = std::unique_ptr<gdImage, Release>;

using Reader = gdImagePtr (*)(int size, void* data);

struct Signature {
  std::string_view start;
  Reader read;
};

using namespace std::string_view_literals;
constexpr std::array<Signature, 6> kSignatures = {{
    {"\x89PNG\r\n\x1a\n"sv, gdImageCreateFromPngPtr},
    {"\xFF\xD8\xFF"sv, gdImageCreateFromJpegPtr},
    {"BM"sv, gdImageCreateFromBmpPtr},
    {"GIF8"sv, gdImageCreateFromGifPtr},
    {"II*\0"sv, gdImageCreateFromTiffPtr},
    {"MM\0*"sv, gdImageCreateFromTiffPtr},
}};

constexpr int kUsualJpegQuality = 75;

Picture ReadPicture(const std::vector<BYTE>& file) {
  if (file.size() > INT_MAX) return nullptr;
  for (const Signature& signature : kSignatures) {
    if (file.size() > signature.start.size() &&
        std::memcmp(file.data(), signature.start.data(), signature.start.size()) == 0) {
      return Picture(signature.read(static_cast<int>(file.size()), const_cast<BYTE*>(file.data())));
    }
  }
  return nullptr;
}

// libgd counts alpha from 0, opaque, to 127.
BYTE AlphaOf(int gd_alpha) {
  return static_cast<BYTE>(255 - (gd_alpha << 1) - (gd_alpha >> 6));
}
int GdAlphaOf(BYTE alpha) {
  return (255 - alpha) >> 1;
}

bool HasTransparentPixel(const gdImage& picture) {
  for (int y = 0; y < picture.sy; ++y) {
    for (int x = 0; x < picture.sx; ++x) {
      if (gdTrueColorGetAlpha(picture.tpixels[y][x]) != 0) return true;
    }
  }
  return false;
}

Gdiplus::PixelFormat FormatOf(const gdImage& picture) {
  if (picture.trueColor == 0) return Gdiplus::PixelFormat8bppIndexed;
  return HasTransparentPixel(picture) ? Gdiplus::PixelFormat32bppARGB : Gdiplus::PixelFormat24bppRGB;
}

void TakePalette(const gdImage& picture, GpBitmap& bitmap) {
  for (int i = 0; i < gdMaxColors; ++i) {
    const int alpha = i == picture.transparent ? gdAlphaTransparent : picture.alpha[i];
    bitmap.palette.push_back(
        static_cast<DWORD>(AlphaOf(alpha)) << 24 | static_cast<DWORD>(picture.red[i] & 0xFF) << 16 |
        static_cast<DWORD>(picture.green[i] & 0xFF) << 8 | static_cast<DWORD>(picture.blue[i] & 0xFF));
  }
}

void TakeRow(const gdImage& picture, int y, GpBitmap& bitmap) {
  BYTE* row = bitmap.Row(y);
  if (picture.trueColor == 0) {
    std::copy_n(picture.pixels[y], picture.sx, row);
    return;
  }
  const bool with_alpha = bitmap.format == Gdiplus::PixelFormat32bppARGB;
  for (int x = 0; x < picture.sx; ++x) {
    const int color = picture.tpixels[y][x];
    *row++ = static_cast<BYTE>(gdTrueColorGetBlue(color));
    *row++ = static_cast<BYTE>(gdTrueColorGetGreen(color));
    *row++ = static_cast<BYTE>(gdTrueColorGetRed(color));
    if (with_alpha) *row++ = AlphaOf(gdTrueColorGetAlpha(color));
  }
}

Picture MakePicture(const GpBitmap& bitmap) {
  Picture picture(gdImageCreateTrueColor(bitmap.width, bitmap.height));
  if (picture == nullptr) return nullptr;
  const bool with_alpha = bitmap.format == Gdiplus::PixelFormat32bppARGB;
  const int bytes = static_cast<int>(Gdiplus::GetPixelFormatSize(bitmap.format) / 8);
  for (int y = 0; y < bitmap.height; ++y) {
    const BYTE* pixel = bitmap.Row(y);
    for (int x = 0; x < bitmap.width; ++x, pixel += bytes) {
      const int alpha = with_alpha ? GdAlphaOf(pixel[3]) : 0;
      picture->tpixels[y][x] = gdTrueColorAlpha(pixel[2], pixel[1], pixel[0], alpha);
    }
  }
  gdImageSaveAlpha(picture.get(), with_alpha ? 1 : 0);
  return picture;
}

// The picture with its own colours as the palette, if they are few enough: libgd's reduction is not exact
// even then.
Picture MakeExactPalettePicture(const gdImage& source) {
  Picture picture(gdImageCreate(source.sx, source.sy));
  if (picture == nullptr) return nullptr;
  std::unordered_map<int, unsigned char> entries;
  for (int y = 0; y < source.sy; ++y) {
    for (int x = 0; x < source.sx; ++x) {
      const int color = source.tpixels[y][x] & 0xFFFFFF;
      auto entry = entries.find(color);
      if (entry == entries.end()) {
        if (entries.size() == gdMaxColors) return nullptr;
        const int index = gdImageColorAllocate(picture.get(), gdTrueColorGetRed(color),
                                               gdTrueColorGetGreen(color), gdTrueColorGetBlue(color));
        entry = entries.emplace(color, static_cast<unsigned char>(index)).first;
      }
      picture->pixels[y][x] = entry->second;
    }
  }
  return picture;
}

void* Write(gdImage* picture, ImageFormat format, int* size) {
  switch (format) {
    case ImageFormat::kBmp:
      return gdImageBmpPtr(picture, size, 0);
    case ImageFormat::kJpeg:
      return gdImageJpegPtr(picture, size, kUsualJpegQuality);
    case ImageFormat::kGif: {
      const Picture exact = MakeExactPalettePicture(*picture);
      return gdImageGifPtr(exact != nullptr ? exact.get() : picture, size);
    }
    case ImageFormat::kTiff:
      return gdImageTiffPtr(picture, size);
    case ImageFormat::kPng:
      return gdImagePngPtr(picture, size);
  }
  return nullptr;
}

void Ignore(int, const char*, va_list) {}

// libtiff, which libgd brings along, has handlers of its own and no header here; null silences it.
void SilenceTiffLibrary(const char* setter) {
  using Handler = void (*)(const char*, const char*, va_list);
  const auto set = reinterpret_cast<Handler (*)(Handler)>(dlsym(RTLD_DEFAULT, setter));
  if (set != nullptr) set(nullptr);
}

}  // namespace

std::unique_ptr<GpBitmap> DecodeImage(const std::vector<BYTE>& file) {
  const Picture picture = ReadPicture(file);
  if (picture == nullptr || picture->sx <= 0 || picture->sy <= 0) return nullptr;
  auto bitmap = std::make_unique<GpBitmap>();
  bitmap->width = picture->sx;
  bitmap->height = picture->sy;
  bitmap->format = FormatOf(*picture);
  bitmap->stride = (std::ptrdiff_t{picture->sx} * Gdiplus::GetPixelFormatSize(bitmap->format) + 31) / 32 * 4;
  bitmap->own_pixels.resize(static_cast<std::size_t>(bitmap->stride) * static_cast<std::size_t>(picture->sy));
  bitmap->top_row = bitmap->own_pixels.data();
  if (picture->trueColor == 0) TakePalette(*picture, *bitmap);
  for (int y = 0; y < picture->sy; ++y) TakeRow(*picture, y, *bitmap);
  return bitmap;
}

std::vector<BYTE> EncodeImage(const GpBitmap& bitmap, ImageFormat format) {
  const Picture picture = MakePicture(bitmap);
  if (picture == nullptr) return {};
  int size = 0;
  auto* bytes = static_cast<BYTE*>(Write(picture.get(), format, &size));
  if (bytes == nullptr) return {};
  std::vector<BYTE> file(bytes, bytes + std::max(size, 0));
  gdFree(bytes);
  return file;
}

void SilenceImageLibrary() {
  gdSetErrorMethod(Ignore);
  SilenceTiffLibrary("TIFFSetWarningHandler");
  SilenceTiffLibrary("TIFFSetErrorHandler");
}

}  // namespace qorgen::platform
