#pragma once

// Texts of system errors for a person, and the program that opens a file type. All operations are re-entrant.
//
// An error number is 32 bits wide: higher bits of the argument are ignored. 0 stands for the calling thread's
// last error at the moment of the call. Messages are in the user's language as the system has them; the
// labels are Japanese.

#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"

class QORGEN_API CGenUtil {
 public:
  CGenUtil() = default;
  CGenUtil(const CGenUtil&) = default;
  CGenUtil& operator=(const CGenUtil&) noexcept { return *this; }
  CGenUtil& operator=(CGenUtil&&) noexcept { return *this; }

  // The system's text of an error number as it is, mostly with a line end. `pszModule`, if neither null nor
  // empty, names a module whose message table is searched too; one that cannot be loaded is ignored. A number
  // without a text is looked up in the web transport's table, and if that fails too the result tells so:
  // "*** FormatMessage(number) failed(reason)! ***", a line break and the text of the reason. Callers pass
  // `nLevel` 0; above 0 the web transport isn't asked.
  static CString GetLastErrorMessage(unsigned long dwError, const wchar_t* pszModule, int nLevel);

  // The report that users see, between the optional header and footer, each on lines of its own:
  //
  //   ［エラー番号］2
  //   ［エラー内容］指定されたファイルが見つかりません。
  //
  // A negative number (a failure code) is written in hexadecimal with lower-case digits.
  static CString FormatLastErrorMessage(const wchar_t* pszHeader, unsigned long dwError,
                                        const wchar_t* pszFooter);

  // The same with string resources (see qorgen/afx/string_resource.h); 0 and an unknown id stand for no text.
  static CString FormatLastErrorMessageRes(unsigned int nHeaderId, unsigned long dwError,
                                           unsigned int nFooterId);

  // The program registered to open files of an extension, given with or without its dot: 1 and its path in
  // `*pstrExecutable`, or 0 when there is none. An empty or null extension leaves `*pstrExecutable` alone;
  // after another failure its text is unspecified. A null `pstrExecutable` only asks whether there is one.
  static int AssocQueryExecutable(const wchar_t* pszExtension, CString* pstrExecutable);
};
