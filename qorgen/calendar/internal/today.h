#pragma once

// The one place from which the calendar takes the current date. May be called from any thread.

#include "qorgen/calendar/date_record.h"

namespace qorgen::calendar {

// Today by the local clock; -1 in each field when the clock cannot be read.
//
// The local time zone is consulted once in a second of the clock, not once in a call, because a date object
// asks for today whenever one is made. Midnight and a clock that is set are seen at once, another time zone
// with the next second.
QORDATE CurrentDate();

}  // namespace qorgen::calendar
