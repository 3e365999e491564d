#pragma once

// CImage: a device-independent bitmap that is read from and written to image files (PNG, JPEG, BMP, GIF,
// TIFF).
//
// One object belongs to one thread at a time. The image service behind it is started once for the process,
// under a lock, by the first Load or Save.

#include "qorgen/platform/export.h"
#include "qorgen/platform/gdi.h"

class QORGEN_API CImage {
 public:
  CImage() noexcept = default;
  CImage(const CImage&) = delete;
  CImage& operator=(const CImage&) = delete;
  ~CImage();

  // Starts the image service if it isn't running; FALSE if it cannot be started (Linux: libgd is missing). Load
  // and Save then give E_FAIL.
  static BOOL InitGDIPlus();
  // Stops it. No CImage may be loading or saving meanwhile; the next Load starts it again.
  static void ReleaseGDIPlus();

  // A bitmap of zeros, black, in place of the present one. The rows stand bottom up, with a negative height
  // top down. FALSE, and no bitmap, when a side is 0, the pixels would take 2 GB, there is no memory, or the
  // host doesn't offer the depth (8, 24 and 32 bits a pixel everywhere).
  BOOL Create(int width, int height, int bitsPerPixel, DWORD flags = 0);
  void Destroy();

  // The image of a file, known by its content, as a bitmap of its own depth. On Linux an image with a palette
  // has 8 bits. E_FAIL, and no bitmap, when the file is missing, is no image or is damaged beyond reading.
  HRESULT Load(const wchar_t* path);

  // Writes the bitmap in the format that the path's extension names, case aside: the first encoder of the
  // image service whose list of extensions has it. E_FAIL without such an encoder, without a bitmap, or when
  // writing failed; a file that could not be written whole is removed. Bitmaps of 24 and 32 bits can be
  // saved.
  HRESULT Save(const wchar_t* path) const;

  // Copies a rectangle to the bitmap of `target`. What lies outside either bitmap is left out: those pixels
  // of the target stay as they are (black in a new one), and that is no failure. FALSE without a bitmap.
  BOOL BitBlt(HDC target, int x, int y, int width, int height, int sourceX, int sourceY,
              DWORD operation = SRCCOPY) const;

  // A context that holds the bitmap, for as long as it isn't given back; calls nest. Null without a bitmap.
  HDC GetDC() const;
  void ReleaseDC() const;

  bool IsNull() const { return m_bitmap == nullptr; }
  int GetWidth() const { return m_width; }
  int GetHeight() const { return m_height; }
  int GetBPP() const { return m_bitsPerPixel; }
  // Bytes from a row to the one below, negative in a bitmap that stands bottom up; and the top row.
  int GetPitch() const { return m_pitch; }
  void* GetBits() { return m_topRow; }
  const void* GetBits() const { return m_topRow; }

 private:
  BOOL CreateWithPalette(int width, int height, int bitsPerPixel, const RGBQUAD* colors, DWORD count);

  HBITMAP m_bitmap = nullptr;
  BYTE* m_topRow = nullptr;
  int m_width = 0;
  int m_height = 0;
  int m_bitsPerPixel = 0;
  int m_pitch = 0;
  bool m_hasAlpha = false;
  mutable HDC m_context = nullptr;
  mutable HGDIOBJ m_formerBitmap = nullptr;
  mutable int m_contextUsers = 0;
};
