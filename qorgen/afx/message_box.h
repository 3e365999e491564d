#pragma once

// Messages to the user. A program with windows of its own installs a handler; without one the platform's
// message box is asked, which on Linux writes the text to standard error and answers the default button. Any
// thread may ask; the handler is called on the asking thread.

#include "qorgen/platform/export.h"
#include "qorgen/platform/message_box.h"

// Shows `pszText` (null counts as empty) with the buttons and icon of `nType` (MB_*) and gives the chosen
// button (ID*).
QORGEN_API int AfxMessageBox(const wchar_t* pszText, unsigned int nType = MB_OK, unsigned int nIDHelp = 0);
// Shows a string resource; an unknown id shows the text of a missing error message (0xF020).
QORGEN_API int AfxMessageBox(unsigned int nIDPrompt, unsigned int nType = MB_OK,
                             unsigned int nIDHelp = static_cast<unsigned int>(-1));

// `text` is never null and valid during the call only. What the handler throws reaches the caller of
// AfxMessageBox.
using QorMessageBoxHandler = int (*)(const wchar_t* text, unsigned int type, unsigned int helpContext);

// Installs a handler for the whole process and gives the former one; null stands for the platform's message
// box.
QORGEN_API QorMessageBoxHandler QorSetMessageBoxHandler(QorMessageBoxHandler handler) noexcept;
