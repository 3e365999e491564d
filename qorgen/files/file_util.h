#pragma once

// CQorFileUtil: static operations on path texts, known folders, files and folders, and image files.
//
// All of it may be called from any thread; nothing keeps state between calls. Texts are wide; a null text
// counts as an empty one unless said otherwise. A path has at most 260 characters: where an operation needs a
// buffer, the rest of a longer one is left out, never written. "Separator" means backslash and forward slash;
// where only the backslash counts the operation says so. A CString result is the caller's own. An int result
// is 1 for yes or success, else 0, and the last error is left as the failed system call set it; nothing here
// throws but for exhausted memory and the files of the two text conversions.

#include <cstdio>

#include "qorgen/afx/file.h"
#include "qorgen/afx/string.h"
#include "qorgen/platform/export.h"
#include "qorgen/platform/types.h"

class QORGEN_API CQorFileUtil {
 public:
  // --- path texts ---

  // `directory`, a backslash if it does not end in a separator and is not empty, and `file` without its drive
  // and without one leading separator: "C:\a" and "D:\b\c.txt" give "C:\a\b\c.txt". Empty without memory.
  static CString ConnectPath(const wchar_t* directory, const wchar_t* file);

  // `path`, with `extension` (which carries its dot) added unless it already is the path's extension, case
  // aside. Another extension stays: "a.txt" and ".csv" give "a.txt.csv".
  static CString AddExtension(const wchar_t* path, const wchar_t* extension);

  // Without one backslash at the end; a path of under 4 characters as it is: "C:\a\" gives "C:\a", "C:\"
  // stays, and so does "C:\a/".
  static CString RemoveTailDirSep(const wchar_t* path);

  // 1 for a backslash or forward slash.
  static int IsDirSep(wchar_t c);

  // 1 for a text of under 4 characters with a colon in it: "C:", "C:\", and "a:b" as well.
  static int IsRootDir(const wchar_t* path);

  // Writes the beginning of `path` into the buffer of `root`: behind two consecutive separators up to and
  // with the second separator from there ("\\srv\share\dir\a" gives "\\srv\share\"), else up to and with the
  // first separator ("C:\x\y" gives "C:\"), else all. The string's recorded length is not brought up to date:
  // read the result as terminated text, or call ReleaseBuffer on `root` first.
  static void GetRoot(const wchar_t* path, CString& root);

  // The name behind the last separator or colon. With `buffer` null the result is its length plus 1.
  // Otherwise at most `size` characters with the terminator are copied and the result is 0; a size of 0
  // copies nothing.
  static unsigned int GetFileNameOnly(const wchar_t* path, wchar_t* buffer, unsigned int size);

  // The path shortened for display to at most `maxChars` characters with the terminator, as
  // PathCompactPathExW does; more than 260 count as 260, and 0 gives the path's first 259 characters. A new
  // block of 260 characters, which goes back through QorFree; null for null and without memory.
  static wchar_t* GetCompactPath(const wchar_t* path, unsigned int maxChars);

  // Name and extension of the path, shortened the same way. A negative limit counts as 260.
  static CString GetDispFileString(const wchar_t* path, int maxChars);

  // Drive and folder of the path without the separator at the end, shortened the same way; a drive keeps its
  // backslash: "C:\".
  static CString GetDispFolderString(const wchar_t* path, int maxChars);

  // The characters that names must not have: \/:;*?"<>|. The semicolon is one of them although the file
  // system takes it.
  static const wchar_t* const m_szInvalidChars;

  // 1 if the text holds one of them; and the text without them.
  static int IsInvalidChar(const wchar_t* name);
  static CString CutInvalidChar(const wchar_t* name);

  // --- places ---

  // Folder of the process's executable without a backslash at the end (a root keeps it), and its name without
  // extension.
  static CString GetExeDir();
  static CString GetExeName();

  // Full path of a module, at most 260 characters; with null, of the process's executable. Empty if there is
  // no such module. On Linux a module's handle is an address inside it, and the path has the form
  // "C:\usr\bin\program".
  static CString GetModuleFileNameW(HINSTANCE module);

  // The path of the known folder with the CSIDL number `folderId` into `buffer`, which has room for 260
  // characters. With `create` nonzero a missing folder is made. 0 and empty text otherwise.
  static int GetShellFolderPath(wchar_t* buffer, int folderId, int create);

  // Known folders, without a backslash at the end; empty when the folder does not exist. On Linux: the user
  // folders of the desktop's settings; "~/.local/share"; and "CommonData" and "CommonDocuments" in the
  // machine-wide "/var/lib/qorgen" where that exists and may be written to, else in "~/.local/share/qorgen";
  // these two are made by the first question, as Windows has them from its installation.
  static CString GetDesktopPath();
  static CString GetMyDocumentPath();
  static CString GetMyPicturesPath();
  static CString GetAppDataLocalPath();
  static CString GetCommonAppDataPath();
  static CString GetCommonDocumentPath();

  // The folder for temporary files, with a backslash at the end: on Linux one that is the user's alone. Empty
  // text when there is none.
  static CString GetTempPathW();

  // A new, empty file in that folder, which the caller owns and removes; its name begins with the first three
  // characters of `prefix`, or "qor" for null. Empty text on failure.
  static CString GetTempFileNameW(const wchar_t* prefix);

  // --- opening ---

  // The open modes of the library, for Open and the file classes. Text modes turn CR LF into LF on reading
  // and back on writing; the encoded ones write a byte-order mark at the start of a new file and skip it on
  // reading.
  static const wchar_t* const _modeRb;
  static const wchar_t* const _modeWb;
  static const wchar_t* const _modeRtANSI;
  static const wchar_t* const _modeWtANSI;
  static const wchar_t* const _modeRtUTF8;
  static const wchar_t* const _modeWtUTF8;
  static const wchar_t* const _modeAtUTF8;
  static const wchar_t* const _modeRtUTF16LE;
  static const wchar_t* const _modeWtUTF16LE;
  static const wchar_t* const _modeAtUTF16LE;

  // A stream of the C runtime, which fclose ends; null on failure or a null argument. With `createFolder`
  // nonzero the folder of `path` is made first, as CreateDirIfNotExists(path, 1) does, and null means also
  // that this failed.
  static FILE* Open(const wchar_t* path, const wchar_t* mode, int createFolder);

  // --- folders and files ---

  // One level; an existing folder gives 0.
  static int CreateDirectoryW(const wchar_t* path);

  // The folder and those above it that are missing, from the inside out; only the backslash separates. 0 when
  // it already exists, or when something above it is no folder. A folder part that ends in a forward slash
  // ("C:/a/" of "C:/a/b") is never found, so the result is 0.
  static int CreateDeepDirectory(const wchar_t* path);

  // The same from the outside in; 1 when it already exists, and for a bare root. 0 for null and for more than
  // 260 characters. Only the backslash is a level: of "C:\a/b" the whole is made at once, or fails.
  static int CreateDirectories(const wchar_t* path);

  // Makes the folder `path` with CreateDeepDirectory unless it is there; with `pathHasFileName` nonzero, the
  // folder that is left when the last component is cut. 1 when there is something of that name. An error
  // other than "not found" gives 0 without an attempt. A bare file name leaves an empty folder, which is
  // never found: 0.
  static int CreateDirIfNotExists(const wchar_t* path, int pathHasFileName);

  // Removes a folder with all it holds, read-only files included. A file that cannot be removed does not stop
  // the walk, a folder does; either way the result is 0 and the rest stays. 0 for an empty path, which would
  // mean the working folder. No link is followed, whatever happens meanwhile: links are removed themselves, one that
  // `path` names, too.
  static int DeleteDirectory(const wchar_t* path);

  // Removes a file, a read-only one too.
  static int DeleteFileW(const wchar_t* path);

  // 1 if a search for the text finds anything: a file, a folder, or a match of a wildcard pattern.
  static int IsExistFile(const wchar_t* path);

  // 1 if the texts are equal, case aside. The file system is not asked.
  static int IsEqualFile(const wchar_t* a, const wchar_t* b);

  // 1 if the first two characters are separators.
  static int IsNetDrive(const wchar_t* path);

  // Whether the drive of the path can be used: 1 for a network path, unseen; 0 for an unknown or missing
  // drive, a removable drive without a medium, and a path without a drive.
  static int IsDriveAlive(const wchar_t* path);

  // Whether the beginning of a file, at most `sampleSize` bytes, looks like text of code page 932. 1 for an
  // empty file; 0 if the file cannot be read or the size is negative. The sample is looked at in 16-bit
  // units: of the byte classes only the low byte is asked, so every second byte is passed over, while a line
  // end or tab has to be a unit of its own. Behind the sample the scan meets units that always pass.
  static int IsTextFile(const wchar_t* path, long sampleSize);

  // Whether a file can be created in the folder. May take up to a second while a file of its trial name
  // exists.
  static int WriteCheck(const wchar_t* folder);

  // The MD5 of the first 65,536 bytes of a file as 32 lower-case hexadecimal digits. 0, with `digest` empty,
  // if the file cannot be found or read.
  static int GetFileMD5(const wchar_t* path, CString& digest);

  // Size, times and attributes of a file. On failure the times are clear.
  static CFileStatus GetFileStatus(const wchar_t* path);

  // --- versions ---

  // The two 32-bit halves of a file's version number; null or empty means the process's executable. Both 0
  // with result 0 if the file has no version data or lists no language in them. On Linux the data are read
  // from Windows programs and modules; the host's own programs have none.
  static int GetFileVer(unsigned long& versionMS, unsigned long& versionLS, const wchar_t* path);
  static int GetProductVer(unsigned long& versionMS, unsigned long& versionLS, const wchar_t* path);

  // The same as text, "1.2.3.4"; empty on failure.
  static CString GetFileVerStr(const wchar_t* path);
  static CString GetProductVerStr(const wchar_t* path);

  // --- text files in another encoding ---
  //
  // "ANSI" is the system's ANSI code page: 932 on Linux and on Japanese Windows. A zero byte ends the text. A
  // file that can't be opened, read or written raises CFileException*; source and destination can't be one
  // file. What has been written when a device fills up stays; a source that fails half-way leaves no
  // destination. Files are converted in pieces of whole lines (from half a megabyte), so memory goes by the
  // longest line; 0 means that there was none, or a line of more than half a gigabyte.

  // Rewrites an ANSI text as UTF-8 without a byte-order mark. Line ends stay as they are.
  static int SJisToUtf8(const wchar_t* source, const wchar_t* destination);

  // Rewrites a UTF-8 text as ANSI. What the code page lacks becomes its default character, a byte-order mark
  // too ("?"), and the result is still 1. The text then goes through a text stream: every line ends in CR LF,
  // the last one as well, and a Ctrl-Z (0x1A) ends the text. The empty file "uts.qor" in the temporary folder
  // marks the call while it runs: a second call at the same time raises CFileException* (on Linux one of the
  // same process; calls of two don't disturb each other). It stays behind when an exception leaves the
  // operation.
  static int Utf8ToSJis(const wchar_t* source, const wchar_t* destination);

  // Despite its name a plain copy over whatever is there: CopyFileW(source, destination, FALSE). No line end
  // changes.
  static int ChangeCRLFToLF(const wchar_t* source, const wchar_t* destination);

  // --- images ---

  // Cuts a rectangle out of an image file (PNG, JPEG, BMP, GIF, TIFF) and saves it with 24 bits a pixel, in
  // the format of the destination's extension. Parts of the rectangle outside the source become black. 0 when
  // the source is no readable image, width or height is not positive, or the file cannot be written. An
  // existing destination is deleted before the save, so it is gone also when its extension names no format.
  static int Trimming(const wchar_t* source, int left, int top, int width, int height,
                      const wchar_t* destination);
};
