#include "qorgen/afx/image.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

#include "qorgen/platform/imaging.h"

namespace {

using namespace Gdiplus;
using namespace Gdiplus::DllExports;

struct Service {
  std::mutex lock;
  std::uintptr_t token = 0;
};

Service& TheService() {
  static Service service;
  return service;
}

struct DisposeImage {
  void operator()(GpBitmap* image) const { GdipDisposeImage(image); }
};
using OwnedBitmap = std::unique_ptr<GpBitmap, DisposeImage>;

wchar_t Lower(wchar_t c) {
  return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

// The last component's extension with its dot; an empty text if there is none.
const wchar_t* ExtensionOf(const wchar_t* path) {
  const wchar_t* dot = nullptr;
  for (; *path != 0; ++path) {
    if (*path == L'.') dot = path;
    if (*path == L'\\' || *path == L'/') dot = nullptr;
  }
  return dot != nullptr ? dot : path;
}

// `list` is of the form "*.JPG;*.JPEG".
bool ListHas(const wchar_t* list, const wchar_t* extension) {
  while (*list != 0) {
    if (*list == L'*') ++list;
    const wchar_t* wanted = extension;
    while (*wanted != 0 && Lower(*list) == Lower(*wanted)) {
      ++list;
      ++wanted;
    }
    if (*wanted == 0 && (*list == 0 || *list == L';')) return true;
    while (*list != 0 && *list++ != L';') {
    }
  }
  return false;
}

bool FindEncoder(const wchar_t* path, CLSID& encoder) {
  const wchar_t* extension = ExtensionOf(path);
  if (extension[0] == 0 || extension[1] == 0) return false;
  UINT count = 0;
  UINT bytes = 0;
  if (GdipGetImageEncodersSize(&count, &bytes) != Ok || count == 0) return false;
  const std::unique_ptr<std::byte[]> block(new std::byte[bytes]);
  auto* encoders = reinterpret_cast<ImageCodecInfo*>(block.get());
  if (GdipGetImageEncoders(count, bytes, encoders) != Ok) return false;
  for (UINT i = 0; i < count; ++i) {
    if (ListHas(encoders[i].FilenameExtension, extension)) {
      encoder = encoders[i].Clsid;
      return true;
    }
  }
  return false;
}

std::vector<RGBQUAD> PaletteOf(GpBitmap* image) {
  int bytes = 0;
  if (GdipGetImagePaletteSize(image, &bytes) != Ok || bytes < static_cast<int>(sizeof(ColorPalette)))
    return {};
  const std::unique_ptr<std::byte[]> block(new std::byte[static_cast<std::size_t>(bytes)]);
  auto* palette = reinterpret_cast<ColorPalette*>(block.get());
  if (GdipGetImagePalette(image, palette, bytes) != Ok) return {};
  std::vector<RGBQUAD> colors(palette->Count);
  const std::byte* entries = block.get() + offsetof(ColorPalette, Entries);
  for (std::size_t i = 0; i < colors.size(); ++i) {
    ARGB entry;
    std::memcpy(&entry, entries + i * sizeof(entry), sizeof(entry));
    colors[i] = {static_cast<BYTE>(entry), static_cast<BYTE>(entry >> 8), static_cast<BYTE>(entry >> 16), 0};
  }
  return colors;
}

// The format of the bitmap that an image is copied into: its own depth, but no depth that a bitmap can't
// have.
PixelFormat TargetFormat(PixelFormat format) {
  if ((format & PixelFormatIndexed) != 0) return format;
  if ((format & PixelFormatAlpha) != 0) return PixelFormat32bppARGB;
  return GetPixelFormatSize(format) == 32 ? PixelFormat32bppRGB : PixelFormat24bppRGB;
}

}  // namespace

CImage::~CImage() {
  Destroy();
}

BOOL CImage::InitGDIPlus() {
  Service& service = TheService();
  const std::lock_guard guard(service.lock);
  if (service.token != 0) return TRUE;
  const GdiplusStartupInput input;
  return GdiplusStartup(&service.token, &input, nullptr) == Ok ? TRUE : FALSE;
}

void CImage::ReleaseGDIPlus() {
  Service& service = TheService();
  const std::lock_guard guard(service.lock);
  if (service.token != 0) GdiplusShutdown(service.token);
  service.token = 0;
}

BOOL CImage::Create(int width, int height, int bitsPerPixel, DWORD /*flags*/) {
  return CreateWithPalette(width, height, bitsPerPixel, nullptr, 0);
}

BOOL CImage::CreateWithPalette(int width, int height, int bitsPerPixel, const RGBQUAD* colors, DWORD count) {
  Destroy();
  if (width <= 0 || height == 0 || height == INT_MIN || bitsPerPixel <= 0 || bitsPerPixel > 32) return FALSE;
  struct {
    BITMAPINFOHEADER head;
    RGBQUAD colors[256];
  } info = {};
  static_assert(offsetof(decltype(info), colors) == offsetof(BITMAPINFO, bmiColors));
  info.head.biSize = sizeof(BITMAPINFOHEADER);
  info.head.biWidth = width;
  info.head.biHeight = height;
  info.head.biPlanes = 1;
  info.head.biBitCount = static_cast<WORD>(bitsPerPixel);
  info.head.biCompression = BI_RGB;
  if (bitsPerPixel <= 8 && count > 0) {
    info.head.biClrUsed = count < 256 ? count : 256;
    std::memcpy(info.colors, colors, info.head.biClrUsed * sizeof(RGBQUAD));
  }
  void* bits = nullptr;
  m_bitmap = CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits,
                              nullptr, 0);
  if (m_bitmap == nullptr) return FALSE;
  m_width = width;
  m_height = std::abs(height);
  m_bitsPerPixel = bitsPerPixel;
  const int stride = static_cast<int>((std::int64_t{width} * bitsPerPixel + 31) / 32 * 4);
  m_pitch = height > 0 ? -stride : stride;
  m_topRow = static_cast<BYTE*>(bits);
  if (height > 0) m_topRow += std::ptrdiff_t{stride} * (height - 1);
  return TRUE;
}

void CImage::Destroy() {
  m_contextUsers = m_contextUsers > 0 ? 1 : 0;
  ReleaseDC();
  if (m_bitmap != nullptr) DeleteObject(m_bitmap);
  m_bitmap = nullptr;
  m_topRow = nullptr;
  m_width = m_height = m_bitsPerPixel = m_pitch = 0;
  m_hasAlpha = false;
}

HRESULT CImage::Load(const wchar_t* path) {
  Destroy();
  GpBitmap* handle = nullptr;
  if (path == nullptr || !InitGDIPlus() || GdipCreateBitmapFromFile(path, &handle) != Ok) return E_FAIL;
  const OwnedBitmap image(handle);
  UINT width = 0;
  UINT height = 0;
  PixelFormat format = 0;
  if (GdipGetImageWidth(handle, &width) != Ok || GdipGetImageHeight(handle, &height) != Ok ||
      GdipGetImagePixelFormat(handle, &format) != Ok || width > INT_MAX || height > INT_MAX) {
    return E_FAIL;
  }
  format = TargetFormat(format);
  std::vector<RGBQUAD> colors;
  if ((format & PixelFormatIndexed) != 0) colors = PaletteOf(handle);
  if (!CreateWithPalette(static_cast<int>(width), static_cast<int>(height),
                         static_cast<int>(GetPixelFormatSize(format)), colors.data(),
                         static_cast<DWORD>(colors.size()))) {
    return E_FAIL;
  }
  BitmapData data = {};
  data.Width = width;
  data.Height = height;
  data.Stride = m_pitch;
  data.PixelFormat = format;
  data.Scan0 = m_topRow;
  const Rect whole = {0, 0, m_width, m_height};
  if (GdipBitmapLockBits(handle, &whole, ImageLockModeRead | ImageLockModeUserInputBuf, format, &data) !=
      Ok) {
    Destroy();
    return E_FAIL;
  }
  GdipBitmapUnlockBits(handle, &data);
  m_hasAlpha = format == PixelFormat32bppARGB;
  return S_OK;
}

HRESULT CImage::Save(const wchar_t* path) const {
  CLSID encoder;
  if (path == nullptr || IsNull() || !InitGDIPlus() || !FindEncoder(path, encoder)) return E_FAIL;
  PixelFormat format = PixelFormat24bppRGB;
  if (m_bitsPerPixel == 32) {
    format = m_hasAlpha ? PixelFormat32bppARGB : PixelFormat32bppRGB;
  } else if (m_bitsPerPixel != 24) {
    return E_FAIL;
  }
  GpBitmap* handle = nullptr;
  if (GdipCreateBitmapFromScan0(m_width, m_height, m_pitch, format, m_topRow, &handle) != Ok) return E_FAIL;
  const OwnedBitmap image(handle);
  return GdipSaveImageToFile(handle, path, &encoder, nullptr) == Ok ? S_OK : E_FAIL;
}

BOOL CImage::BitBlt(HDC target, int x, int y, int width, int height, int sourceX, int sourceY,
                    DWORD operation) const {
  const HDC source = GetDC();
  if (source == nullptr) return FALSE;
  // Nothing beyond this image is copied, and a rectangle far larger than any bitmap overflows the service's
  // sums.
  const auto clipped = [](int length, int from, int size) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{size} - from, 0, length < 0 ? 0 : length));
  };
  const int wide = clipped(width, sourceX, m_width);
  const int high = clipped(height, sourceY, m_height);
  const bool outside = width > 0 && height > 0 && (wide == 0 || high == 0);
  const BOOL copied =
      outside ? target != nullptr : ::BitBlt(target, x, y, wide, high, source, sourceX, sourceY, operation);
  ReleaseDC();
  return copied;
}

HDC CImage::GetDC() const {
  if (m_bitmap == nullptr) return nullptr;
  if (m_context == nullptr) {
    m_context = CreateCompatibleDC(nullptr);
    if (m_context == nullptr) return nullptr;
    m_formerBitmap = SelectObject(m_context, m_bitmap);
  }
  ++m_contextUsers;
  return m_context;
}

void CImage::ReleaseDC() const {
  if (m_contextUsers == 0 || --m_contextUsers > 0) return;
  SelectObject(m_context, m_formerBitmap);
  DeleteDC(m_context);
  m_context = nullptr;
}
