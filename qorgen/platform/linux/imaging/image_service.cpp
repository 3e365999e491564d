// The image service's calls: handles, state of the service, files.

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <sys/stat.h>

#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/common/text_length.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/error/errno_map.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/imaging/bitmap.h"

namespace Gdiplus {
namespace {

using qorgen::platform::ImageFormat;

std::atomic<int> g_users = 0;

struct Encoder {
  ImageFormat format;
  CLSID id;
  GUID format_id;
  const wchar_t* name;
  const wchar_t* description;
  const wchar_t* extensions;
  const wchar_t* mime_type;
};

constexpr GUID CodecId(std::uint32_t first) {
  return {first, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
}
constexpr GUID FormatId(std::uint32_t first) {
  return {first, 0x0728, 0x11D3, {0x9D, 0x7B, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
}

// The encoders under their published identifiers, in the order in which the service lists them.
constexpr std::array<Encoder, 5> kEncoders = {{
    {ImageFormat::kBmp, CodecId(0x557CF400), FormatId(0xB96B3CAB), L"Built-in BMP Codec", L"BMP",
     L"*.BMP;*.DIB;*.RLE", L"image/bmp"},
    {ImageFormat::kJpeg, CodecId(0x557CF401), FormatId(0xB96B3CAE), L"Built-in JPEG Codec", L"JPEG",
     L"*.JPG;*.JPEG;*.JPE;*.JFIF", L"image/jpeg"},
    {ImageFormat::kGif, CodecId(0x557CF402), FormatId(0xB96B3CB0), L"Built-in GIF Codec", L"GIF", L"*.GIF",
     L"image/gif"},
    {ImageFormat::kTiff, CodecId(0x557CF405), FormatId(0xB96B3CB1), L"Built-in TIFF Codec", L"TIFF",
     L"*.TIF;*.TIFF", L"image/tiff"},
    {ImageFormat::kPng, CodecId(0x557CF406), FormatId(0xB96B3CAF), L"Built-in PNG Codec", L"PNG", L"*.PNG",
     L"image/png"},
}};

using File = qorgen::platform::OwnedStream;

bool IsStarted() {
  return g_users.load() > 0;
}

Status FileError() {
  return qorgen::platform::SetLastErrorFromErrno() == ERROR_FILE_NOT_FOUND ? FileNotFound : Win32Error;
}

std::optional<std::vector<BYTE>> ReadWhole(const std::string& path) {
  const File file(std::fopen(path.c_str(), "rbe"));
  if (file == nullptr) return std::nullopt;
  // A device or folder is no image, and may have no end.
  struct stat facts;
  if (fstat(fileno(file.get()), &facts) != 0) return std::nullopt;
  std::vector<BYTE> bytes;
  if (!S_ISREG(facts.st_mode)) return bytes;
  std::array<BYTE, 65536> block;
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
    bytes.insert(bytes.end(), block.begin(), block.begin() + count);
    if (bytes.size() > INT_MAX) break;
  }
  if (std::ferror(file.get()) != 0) return std::nullopt;
  return bytes;
}

bool WriteWhole(const std::string& path, const std::vector<BYTE>& bytes) {
  File file(std::fopen(path.c_str(), "wbe"));
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  if (std::fclose(file.release()) == 0 && written) return true;
  const int error = errno;
  std::remove(path.c_str());
  errno = error;
  return false;
}

Status CopyPixels(const GpBitmap& bitmap, const BitmapData& data) {
  const std::size_t bytes =
      (static_cast<std::size_t>(bitmap.width) * GetPixelFormatSize(bitmap.format) + 7) / 8;
  if (data.Scan0 == nullptr || static_cast<std::size_t>(std::abs(std::int64_t{data.Stride})) < bytes) {
    return InvalidParameter;
  }
  for (int y = 0; y < bitmap.height; ++y) {
    std::memcpy(static_cast<BYTE*>(data.Scan0) + std::ptrdiff_t{y} * data.Stride, bitmap.Row(y), bytes);
  }
  return Ok;
}

const Encoder* FindEncoder(const CLSID& id) {
  const auto* found = std::find_if(kEncoders.begin(), kEncoders.end(),
                                   [&](const Encoder& encoder) { return encoder.id == id; });
  return found != kEncoders.end() ? found : nullptr;
}

std::size_t TextRoom(const wchar_t* text) {
  return qorgen::platform::TextLength(text) + 1;
}

// Copies a text to the block behind the list and moves on.
const wchar_t* PutText(const wchar_t* text, wchar_t*& out) {
  const wchar_t* placed = out;
  out = std::copy_n(text, TextRoom(text), out);
  return placed;
}

}  // namespace

Status GdiplusStartup(std::uintptr_t* token, const GdiplusStartupInput* input,
                      GdiplusStartupOutput* /*output*/) {
  if (token == nullptr || input == nullptr) return InvalidParameter;
  if (input->GdiplusVersion != 1) return UnsupportedGdiplusVersion;
  if (!qorgen::platform::LoadImageLibrary()) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return Win32Error;
  }
  g_users.fetch_add(1);
  *token = 1;
  return Ok;
}

void GdiplusShutdown(std::uintptr_t token) {
  if (token != 0 && IsStarted()) g_users.fetch_sub(1);
}

namespace DllExports {

GpStatus GdipCreateBitmapFromFile(const wchar_t* path, GpBitmap** bitmap) try {
  if (bitmap == nullptr) return InvalidParameter;
  *bitmap = nullptr;
  if (!IsStarted()) return GdiplusNotInitialized;
  const std::string host = qorgen::platform::HostPath(path);
  if (host.empty()) return path == nullptr ? InvalidParameter : FileNotFound;
  const auto file = ReadWhole(host);
  if (!file) return FileError();
  *bitmap = qorgen::platform::DecodeImage(*file).release();
  return *bitmap != nullptr ? Ok : OutOfMemory;
} catch (const std::bad_alloc&) {
  return OutOfMemory;
}

GpStatus GdipCreateBitmapFromScan0(int width, int height, int stride, PixelFormat format, BYTE* scan0,
                                   GpBitmap** bitmap) {
  if (bitmap == nullptr) return InvalidParameter;
  *bitmap = nullptr;
  if (!IsStarted()) return GdiplusNotInitialized;
  const bool known =
      format == PixelFormat24bppRGB || format == PixelFormat32bppRGB || format == PixelFormat32bppARGB;
  if (width <= 0 || height <= 0 || scan0 == nullptr || !known) return InvalidParameter;
  *bitmap = new (std::nothrow) GpBitmap;
  if (*bitmap == nullptr) return OutOfMemory;
  (*bitmap)->width = width;
  (*bitmap)->height = height;
  (*bitmap)->stride = stride;
  (*bitmap)->format = format;
  (*bitmap)->top_row = scan0;
  return Ok;
}

GpStatus GdipDisposeImage(GpImage* image) {
  if (image == nullptr) return InvalidParameter;
  delete image;
  return Ok;
}

GpStatus GdipGetImageWidth(GpImage* image, UINT* width) {
  const GpBitmap* bitmap = image;
  if (bitmap == nullptr || width == nullptr) return InvalidParameter;
  *width = static_cast<UINT>(bitmap->width);
  return Ok;
}

GpStatus GdipGetImageHeight(GpImage* image, UINT* height) {
  const GpBitmap* bitmap = image;
  if (bitmap == nullptr || height == nullptr) return InvalidParameter;
  *height = static_cast<UINT>(bitmap->height);
  return Ok;
}

GpStatus GdipGetImagePixelFormat(GpImage* image, PixelFormat* format) {
  const GpBitmap* bitmap = image;
  if (bitmap == nullptr || format == nullptr) return InvalidParameter;
  *format = bitmap->format;
  return Ok;
}

GpStatus GdipGetImagePaletteSize(GpImage* image, int* bytes) {
  const GpBitmap* bitmap = image;
  if (bitmap == nullptr || bytes == nullptr) return InvalidParameter;
  *bytes = static_cast<int>(offsetof(ColorPalette, Entries) + bitmap->palette.size() * sizeof(ARGB));
  return Ok;
}

GpStatus GdipGetImagePalette(GpImage* image, ColorPalette* palette, int bytes) {
  int needed = 0;
  if (palette == nullptr || GdipGetImagePaletteSize(image, &needed) != Ok || bytes < needed) {
    return InvalidParameter;
  }
  const GpBitmap& bitmap = *image;
  palette->Flags = 0;
  palette->Count = static_cast<UINT>(bitmap.palette.size());
  std::copy(bitmap.palette.begin(), bitmap.palette.end(), palette->Entries);
  return Ok;
}

GpStatus GdipBitmapLockBits(GpBitmap* bitmap, const GpRect* rectangle, UINT flags, PixelFormat format,
                            BitmapData* data) {
  if (bitmap == nullptr || data == nullptr || format != bitmap->format) return InvalidParameter;
  if (flags != (ImageLockModeRead | ImageLockModeUserInputBuf)) return InvalidParameter;
  if (rectangle != nullptr && (rectangle->X != 0 || rectangle->Y != 0 || rectangle->Width != bitmap->width ||
                               rectangle->Height != bitmap->height)) {
    return InvalidParameter;
  }
  data->Width = static_cast<UINT>(bitmap->width);
  data->Height = static_cast<UINT>(bitmap->height);
  data->PixelFormat = format;
  return CopyPixels(*bitmap, *data);
}

GpStatus GdipBitmapUnlockBits(GpBitmap* bitmap, BitmapData* data) {
  return bitmap != nullptr && data != nullptr ? Ok : InvalidParameter;
}

GpStatus GdipGetImageEncodersSize(UINT* count, UINT* bytes) {
  if (count == nullptr || bytes == nullptr) return InvalidParameter;
  if (!IsStarted()) return GdiplusNotInitialized;
  std::size_t characters = 0;
  for (const Encoder& encoder : kEncoders) {
    characters += TextRoom(encoder.name) + TextRoom(encoder.description) + TextRoom(encoder.extensions) +
                  TextRoom(encoder.mime_type);
  }
  *count = kEncoders.size();
  *bytes = static_cast<UINT>(kEncoders.size() * sizeof(ImageCodecInfo) + characters * sizeof(wchar_t));
  return Ok;
}

GpStatus GdipGetImageEncoders(UINT count, UINT bytes, ImageCodecInfo* encoders) {
  UINT all = 0;
  UINT needed = 0;
  const Status status = GdipGetImageEncodersSize(&all, &needed);
  if (status != Ok) return status;
  if (encoders == nullptr || count != all || bytes < needed) return InvalidParameter;
  auto* text = reinterpret_cast<wchar_t*>(encoders + all);
  for (const Encoder& encoder : kEncoders) {
    ImageCodecInfo& info = *encoders++;
    info = {};
    info.Clsid = encoder.id;
    info.FormatID = encoder.format_id;
    info.CodecName = PutText(encoder.name, text);
    info.FormatDescription = PutText(encoder.description, text);
    info.FilenameExtension = PutText(encoder.extensions, text);
    info.MimeType = PutText(encoder.mime_type, text);
    info.Version = 1;
  }
  return Ok;
}

GpStatus GdipSaveImageToFile(GpImage* image, const wchar_t* path, const CLSID* encoder,
                             const EncoderParameters* /*parameters*/) try {
  const GpBitmap* bitmap = image;
  if (bitmap == nullptr || path == nullptr || encoder == nullptr ||
      bitmap->format == PixelFormat8bppIndexed) {
    return InvalidParameter;
  }
  const Encoder* found = FindEncoder(*encoder);
  if (found == nullptr) return UnknownImageFormat;
  DWORD error = ERROR_SUCCESS;
  const std::string host = qorgen::platform::HostPath(path, &error);
  if (host.empty()) {
    SetLastError(error);
    return Win32Error;
  }
  const std::vector<BYTE> bytes = qorgen::platform::EncodeImage(*bitmap, found->format);
  if (bytes.empty()) return OutOfMemory;
  if (!WriteWhole(host, bytes)) {
    qorgen::platform::SetLastErrorFromErrno();
    return Win32Error;
  }
  return Ok;
} catch (const std::bad_alloc&) {
  return OutOfMemory;
}

}  // namespace DllExports
}  // namespace Gdiplus
