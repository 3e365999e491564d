#pragma once

// String resources: texts that are named by a number and exist in Japanese and in English.
//
// The library brings the texts of its own exceptions; a host program registers tables of its own, for
// instance for the ids it passes to ReportError, AfxMessageBox or CGenUtil::FormatLastErrorMessageRes. Ids
// from 0xE000 on are the library's; a host that registers one of them replaces the text. All of it may be
// called from any thread.

#include <cstddef>

#include "qorgen/platform/export.h"

// One text. `english` may be null where the program speaks Japanese only, and the other way round; one of
// them is there.
struct QorStringResource {
  unsigned int id;
  const wchar_t* japanese;
  const wchar_t* english;
};

// Adds a table. It is borrowed: table and texts live until QorRemoveStringResources or the end of the
// process. Of several tables with one id the one added last answers. Null or an empty table adds nothing.
QORGEN_API void QorAddStringResources(const QorStringResource* table, std::size_t count);
// Takes a table away again; an unknown one is ignored.
QORGEN_API void QorRemoveStringResources(const QorStringResource* table) noexcept;

// The text in the user's language (Japanese, else English), owned by its table; null for an unknown id.
QORGEN_API const wchar_t* QorFindStringResource(unsigned int id) noexcept;
