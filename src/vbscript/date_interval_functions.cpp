// DateAdd, DateDiff, DatePart: the functions that take an interval name ("yyyy", "q", "m",
// "y", "d", "w", "ww", "h", "n", "s").
#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>

#include "platform/variant/ole_date.h"
#include "vbscript/ascii.h"
#include "vbscript/builtins.h"
#include "vbscript/date_math.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

struct IntervalName {
    std::string_view name;
    Interval interval;
};

constexpr IntervalName kIntervals[] = {
    {"yyyy", Interval::Year},   {"q", Interval::Quarter}, {"m", Interval::Month},
    {"y", Interval::DayOfYear}, {"d", Interval::Day},     {"w", Interval::Weekday},
    {"ww", Interval::Week},     {"h", Interval::Hour},    {"n", Interval::Minute},
    {"s", Interval::Second},
};

Interval intervalArg(CallContext& cx, Variant& v) {
    std::string name = toText(v, cx.lcid);
    for (const IntervalName& i : kIntervals)
        if (equalsNoCaseAscii(i.name, name)) return i.interval;
    raise(kInvalidCall);
}

int firstDayArg(CallContext& cx, Variant* args, int argc, int i) {
    std::int32_t v = optionalLong(args, argc, i, 1, cx.lcid);
    if (v < 0 || v > 7) raise(kInvalidCall);
    return v == 0 ? localeFirstDay(cx.lcid) : v - 1;
}

// 1 week of Jan 1, 2 first week with four days, 3 first full week (0: the locale's, Jan 1).
int firstWeekArg(CallContext& cx, Variant* args, int argc, int i) {
    std::int32_t v = optionalLong(args, argc, i, 1, cx.lcid);
    if (v < 0 || v > 3) raise(kInvalidCall);
    return v == 0 ? 1 : v;
}

std::int64_t monthsOf(const DateParts& p) {
    return std::int64_t{p.year} * 12 + (p.month - 1);
}

void dateAddFn(CallContext& cx, Variant* args, int, Variant* out) {
    Interval interval = intervalArg(cx, args[0]);
    // A fractional number of intervals is rounded to the nearest whole one (half to even), as
    // a Long would be.
    double amount = std::nearbyint(toDouble(args[1], cx.lcid));
    // A Null date gives Null (a Null interval or number is an error).
    resolveDefault(args[2]);
    if (args[2].isNull()) {
        *out = Variant::null();
        return;
    }
    DATE date = toDate(args[2], cx.lcid);
    if (!std::isfinite(amount) || std::fabs(amount) > 1e12) raise(kInvalidCall);
    auto n = static_cast<std::int64_t>(amount);
    std::int64_t seconds = secondsOf(date);
    int step = 0;
    switch (interval) {
    case Interval::Year: step = 12; break;
    case Interval::Quarter: step = 3; break;
    case Interval::Month: step = 1; break;
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday: seconds += n * kSecondsPerDay; break;
    case Interval::Week: seconds += n * 7 * kSecondsPerDay; break;
    case Interval::Hour: seconds += n * 3600; break;
    case Interval::Minute: seconds += n * 60; break;
    case Interval::Second: seconds += n; break;
    }
    if (step) {
        // Months move the calendar date; a day past the new month's end becomes its last day.
        DateParts p = partsOf(date);
        std::int64_t months = monthsOf(p) + n * step;
        std::int64_t year = months >= 0 ? months / 12 : -((11 - months) / 12);
        std::int64_t month = months - year * 12 + 1;
        if (year < 100 || year > 9999) raise(kInvalidCall);
        std::int64_t lastDay = dayOfCivil(year, month + 1, 1) - dayOfCivil(year, month, 1);
        std::int64_t day = dayOfCivil(year, month, std::min<std::int64_t>(p.day, lastDay));
        seconds = day * kSecondsPerDay + (seconds - dayOfSeconds(seconds) * kSecondsPerDay);
    }
    *out = Variant::date(dateOfSeconds(seconds));
}

std::int64_t dayOfYear(const DateParts& p) {
    return dayOfCivil(p.year, p.month, p.day) - dayOfCivil(p.year, 1, 1) + 1;
}

// The day on which week 1 of `year` begins.
std::int64_t firstWeekStart(std::int64_t year, int firstDay, int firstWeek) {
    std::int64_t jan1 = dayOfCivil(year, 1, 1);
    std::int64_t start = weekStart(jan1, firstDay);
    if (firstWeek == 2 && jan1 - start > 3) start += 7;
    if (firstWeek == 3 && start != jan1) start += 7;
    return start;
}

std::int64_t weekOfYear(std::int64_t day, const DateParts& p, int firstDay, int firstWeek) {
    std::int64_t start = firstWeekStart(p.year, firstDay, firstWeek);
    if (day < start) start = firstWeekStart(p.year - 1, firstDay, firstWeek);
    return (weekStart(day, firstDay) - start) / 7 + 1;
}

void datePartFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    Interval interval = intervalArg(cx, args[0]);
    int firstDay = firstDayArg(cx, args, argc, 2);
    int firstWeek = firstWeekArg(cx, args, argc, 3);
    resolveDefault(args[1]);
    if (args[1].isNull()) {
        *out = Variant::null();
        return;
    }
    DATE date = toDate(args[1], cx.lcid);
    DateParts p = partsOf(date);
    std::int64_t day = dayOfSeconds(secondsOf(date));
    std::int64_t v = 0;
    switch (interval) {
    case Interval::Year: v = p.year; break;
    case Interval::Quarter: v = (p.month - 1) / 3 + 1; break;
    case Interval::Month: v = p.month; break;
    case Interval::DayOfYear: v = dayOfYear(p); break;
    case Interval::Day: v = p.day; break;
    case Interval::Weekday: v = (weekdayOfDay(day) - firstDay + 7) % 7 + 1; break;
    case Interval::Week: v = weekOfYear(day, p, firstDay, firstWeek); break;
    case Interval::Hour: v = p.hour; break;
    case Interval::Minute: v = p.minute; break;
    case Interval::Second: v = p.second; break;
    }
    *out = Variant(static_cast<std::int16_t>(v));
}

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

void dateDiffFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    Interval interval = intervalArg(cx, args[0]);
    int firstDay = firstDayArg(cx, args, argc, 3);
    firstWeekArg(cx, args, argc, 4);
    resolveDefault(args[1]);
    resolveDefault(args[2]);
    if (args[1].isNull() || args[2].isNull()) {
        *out = Variant::null();
        return;
    }
    DATE d1 = toDate(args[1], cx.lcid), d2 = toDate(args[2], cx.lcid);
    std::int64_t s1 = secondsOf(d1), s2 = secondsOf(d2);
    std::int64_t day1 = dayOfSeconds(s1), day2 = dayOfSeconds(s2);
    std::int64_t v = 0;
    switch (interval) {
    case Interval::Year: v = partsOf(d2).year - partsOf(d1).year; break;
    case Interval::Quarter: {
        DateParts a = partsOf(d1), b = partsOf(d2);
        v = (b.year * 4 + (b.month - 1) / 3) - (a.year * 4 + (a.month - 1) / 3);
        break;
    }
    case Interval::Month: v = monthsOf(partsOf(d2)) - monthsOf(partsOf(d1)); break;
    case Interval::DayOfYear:
    case Interval::Day: v = day2 - day1; break;
    case Interval::Weekday: v = (day2 - day1) / 7; break;
    case Interval::Week: v = (weekStart(day2, firstDay) - weekStart(day1, firstDay)) / 7; break;
    case Interval::Hour: v = floorDiv(s2, 3600) - floorDiv(s1, 3600); break;
    case Interval::Minute: v = floorDiv(s2, 60) - floorDiv(s1, 60); break;
    case Interval::Second: v = s2 - s1; break;
    }
    if (v > std::numeric_limits<std::int32_t>::max() ||
        v < std::numeric_limits<std::int32_t>::min())
        raise(kOverflow);
    *out = Variant(static_cast<std::int32_t>(v));
}

constexpr Builtin kIntervalFunctions[] = {
    {"DateAdd", 3, 3, kPure, dateAddFn},
    {"DateDiff", 3, 5, kPure, dateDiffFn},
    {"DatePart", 2, 4, kPure, datePartFn},
};

} // namespace

std::span<const Builtin> dateIntervalBuiltins() {
    return kIntervalFunctions;
}

} // namespace qvr::vbscript
