#pragma once

// Asking the user, under the published names. Any thread may ask.

#include "qorgen/platform/types.h"

#if !defined(_WIN32)
inline constexpr UINT MB_OK = 0x0;
inline constexpr UINT MB_OKCANCEL = 0x1;
inline constexpr UINT MB_ABORTRETRYIGNORE = 0x2;
inline constexpr UINT MB_YESNOCANCEL = 0x3;
inline constexpr UINT MB_YESNO = 0x4;
inline constexpr UINT MB_RETRYCANCEL = 0x5;
inline constexpr UINT MB_CANCELTRYCONTINUE = 0x6;
inline constexpr UINT MB_ICONHAND = 0x10;
inline constexpr UINT MB_ICONQUESTION = 0x20;
inline constexpr UINT MB_ICONEXCLAMATION = 0x30;
inline constexpr UINT MB_ICONASTERISK = 0x40;
inline constexpr UINT MB_ICONERROR = MB_ICONHAND;
inline constexpr UINT MB_ICONSTOP = MB_ICONHAND;
inline constexpr UINT MB_ICONWARNING = MB_ICONEXCLAMATION;
inline constexpr UINT MB_ICONINFORMATION = MB_ICONASTERISK;
inline constexpr UINT MB_DEFBUTTON1 = 0x000;
inline constexpr UINT MB_DEFBUTTON2 = 0x100;
inline constexpr UINT MB_DEFBUTTON3 = 0x200;
inline constexpr UINT MB_DEFBUTTON4 = 0x300;

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDABORT = 3;
inline constexpr int IDRETRY = 4;
inline constexpr int IDIGNORE = 5;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;
inline constexpr int IDTRYAGAIN = 10;
inline constexpr int IDCONTINUE = 11;

// There is no screen: the caption, if any, and the text go to standard error as UTF-8, a line end added when
// the text has none, and the answer is that of the default button of `type`. A default button that the type
// doesn't have counts as the first one; an unknown set of buttons gives 0, as a box that can't be shown.
QORGEN_API int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
#endif
