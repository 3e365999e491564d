#include "qorgen/platform/gdi.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "qorgen/platform/error.h"

namespace {

struct Color {
  BYTE blue = 0;
  BYTE green = 0;
  BYTE red = 0;
};

struct Free {
  void operator()(BYTE* block) const { std::free(block); }
};

}  // namespace

struct HBITMAP__ {
  int width = 0;
  int height = 0;
  int bits_per_pixel = 0;
  bool top_down = false;
  std::size_t stride = 0;
  std::unique_ptr<BYTE[], Free> pixels;
  RGBQUAD palette[256] = {};

  BYTE* Row(int y) const {
    return pixels.get() + static_cast<std::size_t>(top_down ? y : height - 1 - y) * stride;
  }
};

struct HDC__ {
  HBITMAP bitmap = nullptr;
};

namespace {

// What a context holds before a bitmap is put into it.
HBITMAP__ g_no_bitmap;

Color ColorAt(const HBITMAP__& bitmap, const BYTE* row, int x) {
  if (bitmap.bits_per_pixel == 8) {
    const RGBQUAD& entry = bitmap.palette[row[x]];
    return {entry.rgbBlue, entry.rgbGreen, entry.rgbRed};
  }
  const BYTE* pixel = row + static_cast<std::size_t>(x) * static_cast<unsigned>(bitmap.bits_per_pixel / 8);
  return {pixel[0], pixel[1], pixel[2]};
}

BYTE NearestEntry(const HBITMAP__& bitmap, Color color) {
  const auto distance = [&](const RGBQUAD& entry) {
    const int blue = entry.rgbBlue - color.blue;
    const int green = entry.rgbGreen - color.green;
    const int red = entry.rgbRed - color.red;
    return blue * blue + green * green + red * red;
  };
  const auto* nearest =
      std::min_element(std::begin(bitmap.palette), std::end(bitmap.palette),
                       [&](const RGBQUAD& a, const RGBQUAD& b) { return distance(a) < distance(b); });
  return static_cast<BYTE>(nearest - bitmap.palette);
}

void SetColorAt(const HBITMAP__& bitmap, BYTE* row, int x, Color color) {
  if (bitmap.bits_per_pixel == 8) {
    row[x] = NearestEntry(bitmap, color);
    return;
  }
  BYTE* pixel = row + static_cast<std::size_t>(x) * static_cast<unsigned>(bitmap.bits_per_pixel / 8);
  pixel[0] = color.blue;
  pixel[1] = color.green;
  pixel[2] = color.red;
  if (bitmap.bits_per_pixel == 32) pixel[3] = 0;
}

// One side of a copy, cut to what both bitmaps have.
struct Span {
  std::int64_t target;
  std::int64_t source;
  std::int64_t count;

  void Clip(int target_size, int source_size) {
    const std::int64_t skip = std::max<std::int64_t>({0, -target, -source});
    target += skip;
    source += skip;
    count = std::min({count - skip, target_size - target, source_size - source});
  }
};

void CopyPixels(const HBITMAP__& to, const Span& x, const Span& y, const HBITMAP__& from) {
  const bool same_form = to.bits_per_pixel == from.bits_per_pixel && to.bits_per_pixel != 8;
  const auto bytes = static_cast<std::size_t>(to.bits_per_pixel / 8);
  // Within one bitmap the rows may overlap: from the end when they move down.
  const bool backwards = &to == &from && y.target > y.source;
  for (std::int64_t i = 0; i < y.count; ++i) {
    const std::int64_t line = backwards ? y.count - 1 - i : i;
    BYTE* target = to.Row(static_cast<int>(y.target + line));
    const BYTE* source = from.Row(static_cast<int>(y.source + line));
    if (same_form || &to == &from) {
      std::memmove(target + static_cast<std::size_t>(x.target) * bytes,
                   source + static_cast<std::size_t>(x.source) * bytes,
                   static_cast<std::size_t>(x.count) * bytes);
      continue;
    }
    for (std::int64_t column = 0; column < x.count; ++column) {
      SetColorAt(to, target, static_cast<int>(x.target + column),
                 ColorAt(from, source, static_cast<int>(x.source + column)));
    }
  }
}

}  // namespace

HDC CreateCompatibleDC(HDC /*other*/) {
  auto* made = new (std::nothrow) HDC__;
  if (made != nullptr) made->bitmap = &g_no_bitmap;
  return made;
}

BOOL DeleteDC(HDC context) {
  if (context == nullptr) return FALSE;
  delete context;
  return TRUE;
}

HBITMAP CreateDIBSection(HDC /*context*/, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                         DWORD /*offset*/) {
  if (bits != nullptr) *bits = nullptr;
  SetLastError(ERROR_INVALID_PARAMETER);
  if (info == nullptr || usage != DIB_RGB_COLORS || section != nullptr) return nullptr;
  const BITMAPINFOHEADER& head = info->bmiHeader;
  if (head.biSize != sizeof(BITMAPINFOHEADER) || head.biPlanes != 1 || head.biCompression != BI_RGB)
    return nullptr;
  if (head.biBitCount != 8 && head.biBitCount != 24 && head.biBitCount != 32) return nullptr;
  if (head.biWidth <= 0 || head.biHeight == 0 || head.biHeight == INT_MIN) return nullptr;

  std::unique_ptr<HBITMAP__> made(new (std::nothrow) HBITMAP__);
  if (made == nullptr) return nullptr;
  made->width = head.biWidth;
  made->height = std::abs(head.biHeight);
  made->bits_per_pixel = head.biBitCount;
  made->top_down = head.biHeight < 0;
  made->stride = (static_cast<std::size_t>(made->width) * head.biBitCount + 31) / 32 * 4;
  const auto rows = static_cast<std::size_t>(made->height);
  if (made->stride > INT_MAX / rows) return nullptr;
  if (head.biBitCount == 8) {
    const DWORD colors = head.biClrUsed == 0 ? 256 : std::min<DWORD>(head.biClrUsed, 256);
    std::memcpy(made->palette, info->bmiColors, colors * sizeof(RGBQUAD));
  }
  made->pixels.reset(static_cast<BYTE*>(std::calloc(rows, made->stride)));
  if (made->pixels == nullptr) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  if (bits != nullptr) *bits = made->pixels.get();
  return made.release();
}

BOOL DeleteObject(HGDIOBJ bitmap) {
  if (bitmap == nullptr || bitmap == &g_no_bitmap) return FALSE;
  delete static_cast<HBITMAP>(bitmap);
  return TRUE;
}

HGDIOBJ SelectObject(HDC context, HGDIOBJ bitmap) {
  if (context == nullptr || bitmap == nullptr) return nullptr;
  return std::exchange(context->bitmap, static_cast<HBITMAP>(bitmap));
}

BOOL BitBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
            DWORD operation) {
  const bool usable = target != nullptr && source != nullptr && target->bitmap->pixels != nullptr &&
                      source->bitmap->pixels != nullptr && width > 0 && height > 0 && operation == SRCCOPY;
  if (!usable) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  const HBITMAP__& to = *target->bitmap;
  const HBITMAP__& from = *source->bitmap;
  Span columns = {x, sourceX, width};
  Span rows = {y, sourceY, height};
  columns.Clip(to.width, from.width);
  rows.Clip(to.height, from.height);
  if (columns.count > 0 && rows.count > 0) CopyPixels(to, columns, rows, from);
  return TRUE;
}
