// Images from and to files, through libgd, which is loaded when the service is started.

#include <algorithm>
#include <array>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <gd.h>
#include <string_view>
#include <unordered_map>

#include "qorgen/platform/linux/imaging/bitmap.h"
#include "qorgen/platform/linux/optional_library.h"

namespace qorgen::platform {
namespace {

using Gdiplus::GpBitmap;

using TiffHandler = void (*)(const char* module, const char* format, va_list);

struct Gd : OptionalLibrary {
  Gd() : OptionalLibrary(QORGEN_SONAME_GD) {}
  QORGEN_LIBRARY_FUNCTION(gdFree);
  QORGEN_LIBRARY_FUNCTION(gdImageBmpPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageColorAllocate);
  QORGEN_LIBRARY_FUNCTION(gdImageCreate);
  QORGEN_LIBRARY_FUNCTION(gdImageCreateFromBmpPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageCreateFromGifPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageCreateFromJpegPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageCreateFromPngPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageCreateFromTiffPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageCreateTrueColor);
  QORGEN_LIBRARY_FUNCTION(gdImageDestroy);
  QORGEN_LIBRARY_FUNCTION(gdImageGifPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageJpegPtr);
  QORGEN_LIBRARY_FUNCTION(gdImagePngPtr);
  QORGEN_LIBRARY_FUNCTION(gdImageSaveAlpha);
  QORGEN_LIBRARY_FUNCTION(gdImageTiffPtr);
  QORGEN_LIBRARY_FUNCTION(gdSetErrorMethod);
  // Of libtiff, which libgd brings along and whose header isn't here.
  TiffHandler (*TIFFSetWarningHandler)(TiffHandler) = FindIfThere("TIFFSetWarningHandler");
  TiffHandler (*TIFFSetErrorHandler)(TiffHandler) = FindIfThere("TIFFSetErrorHandler");
};

using Picture = std::unique_ptr<gdImage, decltype(&gdImageDestroy)>;

Picture Own(const Gd& gd, gdImage* image) {
  return {image, gd.gdImageDestroy};
}

struct Signature {
  std::string_view start;
  decltype(&gdImageCreateFromPngPtr) Gd::*read;
};

using namespace std::string_view_literals;
constexpr std::array<Signature, 6> kSignatures = {{
    {"\x89PNG\r\n\x1a\n"sv, &Gd::gdImageCreateFromPngPtr},
    {"\xFF\xD8\xFF"sv, &Gd::gdImageCreateFromJpegPtr},
    {"BM"sv, &Gd::gdImageCreateFromBmpPtr},
    {"GIF8"sv, &Gd::gdImageCreateFromGifPtr},
    {"II*\0"sv, &Gd::gdImageCreateFromTiffPtr},
    {"MM\0*"sv, &Gd::gdImageCreateFromTiffPtr},
}};

constexpr int kUsualJpegQuality = 75;

gdImage* ReadPicture(const Gd& gd, const std::vector<BYTE>& file) {
  if (file.size() > INT_MAX) return nullptr;
  for (const Signature& signature : kSignatures) {
    if (file.size() > signature.start.size() &&
        std::memcmp(file.data(), signature.start.data(), signature.start.size()) == 0) {
      return (gd.*signature.read)(static_cast<int>(file.size()), const_cast<BYTE*>(file.data()));
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

Picture MakePicture(const Gd& gd, const GpBitmap& bitmap) {
  Picture picture = Own(gd, gd.gdImageCreateTrueColor(bitmap.width, bitmap.height));
  if (picture == nullptr) return picture;
  const bool with_alpha = bitmap.format == Gdiplus::PixelFormat32bppARGB;
  const int bytes = static_cast<int>(Gdiplus::GetPixelFormatSize(bitmap.format) / 8);
  for (int y = 0; y < bitmap.height; ++y) {
    const BYTE* pixel = bitmap.Row(y);
    for (int x = 0; x < bitmap.width; ++x, pixel += bytes) {
      const int alpha = with_alpha ? GdAlphaOf(pixel[3]) : 0;
      picture->tpixels[y][x] = gdTrueColorAlpha(pixel[2], pixel[1], pixel[0], alpha);
    }
  }
  gd.gdImageSaveAlpha(picture.get(), with_alpha ? 1 : 0);
  return picture;
}

// The picture with its own colours as the palette, if they are few enough: libgd's reduction is not exact
// even then.
Picture MakeExactPalettePicture(const Gd& gd, const gdImage& source) {
  Picture picture = Own(gd, gd.gdImageCreate(source.sx, source.sy));
  if (picture == nullptr) return picture;
  std::unordered_map<int, unsigned char> entries;
  for (int y = 0; y < source.sy; ++y) {
    for (int x = 0; x < source.sx; ++x) {
      const int color = source.tpixels[y][x] & 0xFFFFFF;
      auto entry = entries.find(color);
      if (entry == entries.end()) {
        if (entries.size() == gdMaxColors) return Own(gd, nullptr);
        const int index = gd.gdImageColorAllocate(picture.get(), gdTrueColorGetRed(color),
                                                  gdTrueColorGetGreen(color), gdTrueColorGetBlue(color));
        entry = entries.emplace(color, static_cast<unsigned char>(index)).first;
      }
      picture->pixels[y][x] = entry->second;
    }
  }
  return picture;
}

void* Write(const Gd& gd, gdImage* picture, ImageFormat format, int* size) {
  switch (format) {
    case ImageFormat::kBmp:
      return gd.gdImageBmpPtr(picture, size, 0);
    case ImageFormat::kJpeg:
      return gd.gdImageJpegPtr(picture, size, kUsualJpegQuality);
    case ImageFormat::kGif: {
      const Picture exact = MakeExactPalettePicture(gd, *picture);
      return gd.gdImageGifPtr(exact != nullptr ? exact.get() : picture, size);
    }
    case ImageFormat::kTiff:
      return gd.gdImageTiffPtr(picture, size);
    case ImageFormat::kPng:
      return gd.gdImagePngPtr(picture, size);
  }
  return nullptr;
}

void Ignore(int, const char*, va_list) {}

}  // namespace

std::unique_ptr<GpBitmap> DecodeImage(const std::vector<BYTE>& file) {
  const Gd* gd = Loaded<Gd>();
  if (gd == nullptr) return nullptr;
  const Picture picture = Own(*gd, ReadPicture(*gd, file));
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
  const Gd* gd = Loaded<Gd>();
  if (gd == nullptr) return {};
  const Picture picture = MakePicture(*gd, bitmap);
  if (picture == nullptr) return {};
  int size = 0;
  auto* bytes = static_cast<BYTE*>(Write(*gd, picture.get(), format, &size));
  if (bytes == nullptr) return {};
  std::vector<BYTE> file(bytes, bytes + std::max(size, 0));
  gd->gdFree(bytes);
  return file;
}

bool LoadImageLibrary() {
  const Gd* gd = Loaded<Gd>();
  if (gd == nullptr) return false;
  gd->gdSetErrorMethod(Ignore);
  if (gd->TIFFSetWarningHandler != nullptr) gd->TIFFSetWarningHandler(nullptr);
  if (gd->TIFFSetErrorHandler != nullptr) gd->TIFFSetErrorHandler(nullptr);
  return true;
}

}  // namespace qorgen::platform
