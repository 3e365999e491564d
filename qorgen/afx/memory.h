#pragma once

// Blocks that cross the library's boundary.
//
// Every array or block that an operation hands out is made with these allocators and goes back through
// QorFree, in whichever module the caller lives. All of it may be called from any thread.

#include <cstddef>

#include "qorgen/platform/export.h"

// Gives back a block or array that an operation of this library handed out. Null is fine.
QORGEN_API void QorFree(void* block) noexcept;

namespace qorgen {

// A block of `bytes` bytes, uninitialised; throws the memory exception of the foundation classes when there
// is none.
[[nodiscard]] void* AllocateBlock(std::size_t bytes);

// An array of `characters` wide characters, the terminator included in the count; uninitialised.
[[nodiscard]] wchar_t* AllocateText(std::size_t characters);

// A new terminated copy of `length` characters of `text`.
[[nodiscard]] wchar_t* CopyText(const wchar_t* text, std::size_t length);

}  // namespace qorgen
