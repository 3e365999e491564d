#pragma once

// Device-independent bitmaps in memory and the copying of pixels between them. A bitmap or device context
// belongs to one thread at a time.

#include "qorgen/platform/types.h"

#if !defined(_WIN32)

struct HDC__;
using HDC = HDC__*;
struct HBITMAP__;
using HBITMAP = HBITMAP__*;
using HGDIOBJ = void*;

struct RGBQUAD {
  BYTE rgbBlue;
  BYTE rgbGreen;
  BYTE rgbRed;
  BYTE rgbReserved;
};

struct BITMAPINFOHEADER {
  DWORD biSize;
  LONG biWidth;
  LONG biHeight;
  WORD biPlanes;
  WORD biBitCount;
  DWORD biCompression;
  DWORD biSizeImage;
  LONG biXPelsPerMeter;
  LONG biYPelsPerMeter;
  DWORD biClrUsed;
  DWORD biClrImportant;
};

struct BITMAPINFO {
  BITMAPINFOHEADER bmiHeader;
  RGBQUAD bmiColors[1];
};

static_assert(sizeof(BITMAPINFOHEADER) == 40 && sizeof(RGBQUAD) == 4);

inline constexpr DWORD BI_RGB = 0;
inline constexpr UINT DIB_RGB_COLORS = 0;
inline constexpr DWORD SRCCOPY = 0x00CC0020;

// A device context in memory, without a bitmap of its own worth drawing on. Goes back through DeleteDC.
// `other` is not looked at on Linux.
QORGEN_API HDC CreateCompatibleDC(HDC other);
QORGEN_API BOOL DeleteDC(HDC context);

// A bitmap of zeros whose pixels the caller may touch at `bits`: rows padded to 4 bytes, the bottom row
// first, or the top row first when the height is negative. Goes back through DeleteObject. Null, and `bits`
// null, when a side is 0, the pixels would take 2 GB or there is no memory. 8 bits come with biClrUsed
// colours (0 means 256) in bmiColors. Linux: 8, 24 and 32 bits without compression; others give null.
QORGEN_API HBITMAP CreateDIBSection(HDC context, const BITMAPINFO* info, UINT usage, void** bits,
                                    HANDLE section, DWORD offset);
QORGEN_API BOOL DeleteObject(HGDIOBJ bitmap);

// Puts a bitmap into a context and gives the one that was there, to be put back before either is deleted.
// Null on a null argument.
QORGEN_API HGDIOBJ SelectObject(HDC context, HGDIOBJ bitmap);

// Copies a rectangle between the bitmaps of two contexts, converting the depth. What lies outside either
// bitmap is left out: those pixels of the target stay as they are, and the result is still TRUE. FALSE for a
// context without a bitmap, a width or height that is not positive, and on Linux any operation but SRCCOPY.
QORGEN_API BOOL BitBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                       DWORD operation);

#endif
