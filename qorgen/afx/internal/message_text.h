#pragma once

// What the exceptions need to tell the user something: the ids of the library's own texts, the language they
// are read in, and the copy into the caller's buffer.

namespace qorgen::afx {

inline constexpr unsigned int kTextNoErrorAvailable = 0xF020;
inline constexpr unsigned int kTextNotSupported = 0xF021;
inline constexpr unsigned int kTextOutOfMemory = 0xF022;
inline constexpr unsigned int kTextInvalidArgument = 0xF025;
inline constexpr unsigned int kTextUnnamedFile = 0xF110;
inline constexpr unsigned int kTextUnknownCode = 0xF120;
// One text per cause of a CFileException, from here on.
inline constexpr unsigned int kTextFileCause = 0xF140;
inline constexpr unsigned int kFileCauses = 15;

// Whether texts are shown in Japanese; otherwise in English.
bool IsUserJapanese() noexcept;

// Copies `length` units, cut to what fits into `room` with the terminator. Gives 1; for a null or empty
// buffer nothing is copied and the result is 0.
int CopyMessage(const wchar_t* text, int length, wchar_t* buffer, unsigned int room) noexcept;

}  // namespace qorgen::afx
