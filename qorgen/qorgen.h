#pragma once

// The whole public surface of the library.
//
// What holds everywhere: text is UTF-16 in wchar_t on both hosts (compile with -fshort-wchar on Linux; the
// installed package passes it on). A yes-or-no operation returns an int of 1 or 0. Bad data is never an
// exception; exceptions are heap objects thrown by pointer, derived from CException, and their catcher ends
// them with Delete. A `wchar_t *` result is a new array of the caller's that goes back through QorFree; a
// `const wchar_t *` result is never freed. Objects belong to one thread at a time; static operations may be
// called from any thread unless their header says otherwise.

#include "qorgen/afx/array.h"
#include "qorgen/afx/date_time.h"
#include "qorgen/afx/exception.h"
#include "qorgen/afx/file.h"
#include "qorgen/afx/file_find.h"
#include "qorgen/afx/image.h"
#include "qorgen/afx/list.h"
#include "qorgen/afx/map.h"
#include "qorgen/afx/memory.h"
#include "qorgen/afx/message_box.h"
#include "qorgen/afx/object.h"
#include "qorgen/afx/rect.h"
#include "qorgen/afx/stdio_file.h"
#include "qorgen/afx/string.h"
#include "qorgen/afx/string_resource.h"
#include "qorgen/afx/time.h"
#include "qorgen/calendar/date_record.h"
#include "qorgen/calendar/date_util.h"
#include "qorgen/calendar/era_date.h"
#include "qorgen/calendar/national_holiday.h"
#include "qorgen/calendar/range_select.h"
#include "qorgen/core/error_text.h"
#include "qorgen/core/exception.h"
#include "qorgen/exchange/csv_file.h"
#include "qorgen/exchange/csv_manager.h"
#include "qorgen/exchange/export_base.h"
#include "qorgen/exchange/import_manager.h"
#include "qorgen/exchange/space_file.h"
#include "qorgen/exchange/space_one_line.h"
#include "qorgen/exchange/template_doc.h"
#include "qorgen/exchange/type_converter.h"
#include "qorgen/files/create_path.h"
#include "qorgen/files/disk_util.h"
#include "qorgen/files/file_util.h"
#include "qorgen/files/memory_util.h"
#include "qorgen/files/split_path.h"
#include "qorgen/numeric/num_util.h"
#include "qorgen/numeric/state_value.h"
#include "qorgen/settings/folder_key.h"
#include "qorgen/text/string_util.h"
#include "qorgen/values/status.h"
#include "qorgen/values/update_list.h"
