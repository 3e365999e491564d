#pragma once

// The image service: bitmaps read from and written to image files. GdiplusStartup comes first. A bitmap
// belongs to one thread at a time; the rest may be called from any thread.

#include "qorgen/platform/gdi.h"
#include "qorgen/platform/guid.h"
#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <algorithm>
#include <objidl.h>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>
#else

namespace Gdiplus {

enum Status {
  Ok = 0,
  GenericError = 1,
  InvalidParameter = 2,
  OutOfMemory = 3,
  InsufficientBuffer = 5,
  Win32Error = 7,
  FileNotFound = 10,
  UnknownImageFormat = 13,
  UnsupportedGdiplusVersion = 17,
  GdiplusNotInitialized = 18,
};
using GpStatus = Status;

struct GdiplusStartupInput {
  std::uint32_t GdiplusVersion = 1;
  void* DebugEventCallback = nullptr;
  BOOL SuppressBackgroundThread = FALSE;
  BOOL SuppressExternalCodecs = FALSE;
};
struct GdiplusStartupOutput;  // for hosts that run the service's own thread; only null is passed

class GpImage;
using GpBitmap = GpImage;  // the only kind of image here

using PixelFormat = int;
inline constexpr PixelFormat PixelFormatIndexed = 0x00010000;
inline constexpr PixelFormat PixelFormatAlpha = 0x00040000;
inline constexpr PixelFormat PixelFormat8bppIndexed = 0x00030803;
inline constexpr PixelFormat PixelFormat24bppRGB = 0x00021808;
inline constexpr PixelFormat PixelFormat32bppRGB = 0x00022009;
inline constexpr PixelFormat PixelFormat32bppARGB = 0x0026200A;

// Bits of one pixel of a format.
constexpr UINT GetPixelFormatSize(PixelFormat format) {
  return (static_cast<UINT>(format) >> 8) & 0xFF;
}

using ARGB = DWORD;

struct ColorPalette {
  UINT Flags;
  UINT Count;
  ARGB Entries[1];
};

struct Rect {
  int X;
  int Y;
  int Width;
  int Height;
};
using GpRect = Rect;

inline constexpr UINT ImageLockModeRead = 1;
inline constexpr UINT ImageLockModeUserInputBuf = 4;

// `Scan0` is the top row; `Stride`, the bytes from one row to the next below, may be negative.
struct BitmapData {
  UINT Width;
  UINT Height;
  int Stride;
  int PixelFormat;
  void* Scan0;
  std::uintptr_t Reserved;
};

struct ImageCodecInfo {
  CLSID Clsid;
  GUID FormatID;
  const wchar_t* CodecName;
  const wchar_t* DllName;
  const wchar_t* FormatDescription;
  const wchar_t* FilenameExtension;  // "*.JPG;*.JPEG;*.JPE;*.JFIF"
  const wchar_t* MimeType;
  DWORD Flags;
  DWORD Version;
  DWORD SigCount;
  DWORD SigSize;
  const BYTE* SigPattern;
  const BYTE* SigMask;
};
struct EncoderParameters;  // only null is passed: every encoder's usual settings

// Linux: loads libgd. Win32Error, with ERROR_MOD_NOT_FOUND as the last error, on a machine without it.
Status GdiplusStartup(std::uintptr_t* token, const GdiplusStartupInput* input, GdiplusStartupOutput* output);
void GdiplusShutdown(std::uintptr_t token);

namespace DllExports {

// The image of a file, known by its content: PNG, JPEG, BMP, GIF (first picture), TIFF (first page).
// FileNotFound, or OutOfMemory for a content that is none of these or cannot be read, as the service words
// it; `bitmap` is then null. Goes back through GdipDisposeImage. Linux: read through libgd, so a bitmap of up
// to 256 colours always has 8 bits a pixel, all others 24, or 32 where a pixel is transparent.
GpStatus GdipCreateBitmapFromFile(const wchar_t* path, GpBitmap** bitmap);

// A bitmap over the caller's pixels, which must outlive it. Linux: 24 or 32 bits.
GpStatus GdipCreateBitmapFromScan0(int width, int height, int stride, PixelFormat format, BYTE* scan0,
                                   GpBitmap** bitmap);
GpStatus GdipDisposeImage(GpImage* image);

GpStatus GdipGetImageWidth(GpImage* image, UINT* width);
GpStatus GdipGetImageHeight(GpImage* image, UINT* height);
GpStatus GdipGetImagePixelFormat(GpImage* image, PixelFormat* format);
GpStatus GdipGetImagePaletteSize(GpImage* image, int* bytes);
GpStatus GdipGetImagePalette(GpImage* image, ColorPalette* palette, int bytes);

// Copies the pixels of the whole bitmap (`rectangle` is the whole, or null) into the buffer that `data`
// names. Linux: this one way of locking, in the bitmap's own format.
GpStatus GdipBitmapLockBits(GpBitmap* bitmap, const GpRect* rectangle, UINT flags, PixelFormat format,
                            BitmapData* data);
GpStatus GdipBitmapUnlockBits(GpBitmap* bitmap, BitmapData* data);

// The list of encoders: its length and size in bytes, then the list into a block of that size, texts
// included.
GpStatus GdipGetImageEncodersSize(UINT* count, UINT* bytes);
GpStatus GdipGetImageEncoders(UINT count, UINT bytes, ImageCodecInfo* encoders);

// Writes a file in the format of an encoder. Win32Error, with the last error set, when the file cannot be
// written; a half-written one is removed. UnknownImageFormat for an encoder that is not on the list. Linux:
// JPEG quality 75; GIF with the picture's own colours up to 256, else the nearest 256; alpha is kept by PNG
// only, with 7 bits.
GpStatus GdipSaveImageToFile(GpImage* image, const wchar_t* path, const CLSID* encoder,
                             const EncoderParameters* parameters);

}  // namespace DllExports
}  // namespace Gdiplus

#endif
