// Dates as a line of seconds, for the date functions that count and add intervals. The platform
// keeps a date as days since 1899-12-30 whose fraction is the time of day counted forward from
// midnight even before that day (-1.25 is 1899-12-29 06:00); here it is one signed count of
// seconds, which adds and subtracts plainly.
#pragma once

#include <cstdint>

#include <qvr/variant.h>

namespace qvr::vbscript {

constexpr std::int64_t kSecondsPerDay = 86400;

// Seconds since 1899-12-30 00:00 (rounded to the second). The date must be valid.
std::int64_t secondsOf(DATE date);
// The date of a count of seconds; raises "Invalid procedure call or argument" outside the
// range of dates.
DATE dateOfSeconds(std::int64_t seconds);
// The day number (days since 1899-12-30) of a count of seconds.
std::int64_t dayOfSeconds(std::int64_t seconds);
// 0 = Sunday ... 6 = Saturday.
int weekdayOfDay(std::int64_t day);
// The first day (0 = Sunday) of the week under the locale: Sunday for en-US, else Monday.
int localeFirstDay(LCID lcid);
// The day number on which the week holding `day` begins, for weeks starting on `firstDay`.
std::int64_t weekStart(std::int64_t day, int firstDay);
// The parts of a valid date; raises "Invalid procedure call or argument" for one out of range.
DateParts partsOf(DATE date);
// The day number of a calendar date (any month and day, carried into the next ones).
std::int64_t dayOfCivil(std::int64_t year, std::int64_t month, std::int64_t day);

} // namespace qvr::vbscript
