// Cutting a rectangle out of an image file.

#include "qorgen/afx/exception.h"
#include "qorgen/afx/image.h"
#include "qorgen/files/file_util.h"

namespace {

constexpr int kTrueColorBits = 24;

bool CopyRectangle(const CImage& from, int left, int top, CImage& to) {
  const HDC context = to.GetDC();
  if (context == nullptr) return false;
  const BOOL copied = from.BitBlt(context, 0, 0, to.GetWidth(), to.GetHeight(), left, top, SRCCOPY);
  to.ReleaseDC();
  return copied != FALSE;
}

}  // namespace

int CQorFileUtil::Trimming(const wchar_t* source, int left, int top, int width, int height,
                           const wchar_t* destination) {
  if (source == nullptr || destination == nullptr || width <= 0 || height <= 0) return 0;
  try {
    CImage from;
    CImage to;
    if (!CImage::InitGDIPlus() || FAILED(from.Load(source))) return 0;
    if (!to.Create(width, height, kTrueColorBits)) return 0;
    if (CopyRectangle(from, left, top, to) && IsExistFile(destination)) DeleteFileW(destination);
    return SUCCEEDED(to.Save(destination)) ? 1 : 0;
  } catch (CException* exception) {
    exception->Delete();
  } catch (...) {
  }
  return 0;
}
