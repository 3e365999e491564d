#pragma once

// Ids of the library's own string resources and the question in which language they are read.

namespace qorgen::afx {

inline constexpr unsigned int kTextNoErrorAvailable = 0xF020;
inline constexpr unsigned int kTextNotSupported = 0xF021;
inline constexpr unsigned int kTextOutOfMemory = 0xF022;
inline constexpr unsigned int kTextInvalidArgument = 0xF025;
inline constexpr unsigned int kTextUnnamedFile = 0xF110;
// One text per cause of a CFileException, from here on.
inline constexpr unsigned int kTextFileCause = 0xF140;
inline constexpr unsigned int kFileCauses = 15;

// Whether texts are shown in Japanese; otherwise in English.
bool IsUserJapanese() noexcept;

}  // namespace qorgen::afx
