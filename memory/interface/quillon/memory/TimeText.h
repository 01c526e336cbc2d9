/// @file
/// Points in time as text, after ISO 8601 and without a zone.
#pragma once

#include <quillon/memory/Facets.h>

#include <string>

namespace quillon::memory {

/// Whether the time, in microseconds as of `HasTimes`, is the first of a day. A missing one passes.
bool isMidnight(long time);

/// The time, such as `2011-08-01T06:00:00`, with as many digits of a second as it takes. Year 0
/// exists; years have four digits at least. Empty for MISSING_TIME.
/// @param time microseconds since 1970-01-01T00:00:00 of the calendar.
std::string timeText(long time, Calendar calendar);

/// The day alone, such as `2011-08-01`: for where all times are midnights.
std::string dayText(long time, Calendar calendar);

}  // namespace quillon::memory
