#include "vbscript/date_math.h"

#include <cmath>

#include "platform/variant/locale_info.h"
#include "platform/variant/ole_date.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

// Days from 1970-01-01 in the proleptic Gregorian calendar.
std::int64_t daysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
    year -= month <= 2 ? 1 : 0;
    std::int64_t era = floorDiv(year, 400);
    std::int64_t yearOfEra = year - era * 400;
    std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

const std::int64_t kEpoch = daysFromCivil(1899, 12, 30);

} // namespace

std::int64_t secondsOf(DATE date) {
    double whole = std::trunc(date);
    auto seconds = static_cast<std::int64_t>(std::llround(std::fabs(date - whole) * 86400.0));
    return static_cast<std::int64_t>(whole) * kSecondsPerDay + seconds;
}

DATE dateOfSeconds(std::int64_t seconds) {
    std::int64_t day = floorDiv(seconds, kSecondsPerDay);
    double fraction = static_cast<double>(seconds - day * kSecondsPerDay) / 86400.0;
    DATE d = day >= 0 ? static_cast<double>(day) + fraction : static_cast<double>(day) - fraction;
    if (!isValidDate(d)) raise(kInvalidCall);
    return d;
}

std::int64_t dayOfSeconds(std::int64_t seconds) {
    return floorDiv(seconds, kSecondsPerDay);
}

int weekdayOfDay(std::int64_t day) {
    // 1899-12-30 was a Saturday.
    return static_cast<int>(((day + 6) % 7 + 7) % 7);
}

int localeFirstDay(LCID lcid) {
    return resolveLocale(lcid) == LCID_EN_US ? 0 : 1;
}

std::int64_t weekStart(std::int64_t day, int firstDay) {
    return day - (weekdayOfDay(day) - firstDay + 7) % 7;
}

DateParts partsOf(DATE date) {
    DateParts parts;
    if (!dateToParts(date, &parts)) raise(kInvalidCall);
    return parts;
}

std::int64_t dayOfCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
    std::int64_t m0 = month - 1;
    year += floorDiv(m0, 12);
    m0 -= floorDiv(m0, 12) * 12;
    return daysFromCivil(year, m0 + 1, 1) - kEpoch + day - 1;
}

} // namespace qvr::vbscript
