#pragma once

// The bitmap behind the image service's handles, and its way to and from image files. A bitmap belongs to one
// thread at a time.

#include <cstdint>
#include <memory>
#include <vector>

#include "qorgen/platform/imaging.h"

namespace Gdiplus {

// Rows from top to bottom. The pixels are the bitmap's own, or the caller's.
class GpImage {
 public:
  int width = 0;
  int height = 0;
  std::ptrdiff_t stride = 0;
  PixelFormat format = PixelFormat24bppRGB;
  std::vector<ARGB> palette;
  std::vector<BYTE> own_pixels;
  BYTE* top_row = nullptr;

  BYTE* Row(int y) const { return top_row + y * stride; }
};

}  // namespace Gdiplus

namespace qorgen::platform {

enum class ImageFormat { kBmp, kJpeg, kGif, kTiff, kPng };

// Null when the bytes are no image that can be read. Both need LoadImageLibrary first.
[[nodiscard]] std::unique_ptr<Gdiplus::GpBitmap> DecodeImage(const std::vector<BYTE>& file);

// The bytes of an image file; empty on failure. The bitmap has 24 or 32 bits.
[[nodiscard]] std::vector<BYTE> EncodeImage(const Gdiplus::GpBitmap& bitmap, ImageFormat format);

// Loads the image library and keeps it from writing its complaints to standard error; false when it is missing.
[[nodiscard]] bool LoadImageLibrary();

}  // namespace qorgen::platform
