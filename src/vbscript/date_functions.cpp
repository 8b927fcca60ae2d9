// Date, Time, Now, Timer, Year, Month, Day, Hour, Minute, Second, Weekday, WeekdayName,
// MonthName, DateSerial, TimeSerial, DateValue, TimeValue.
#include <cmath>
#include <ctime>

#include "platform/variant/locale_info.h"
#include "platform/variant/ole_date.h"
#include "vbscript/builtins.h"
#include "vbscript/date_math.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

// The local clock: day and seconds since midnight.
struct Clock {
    DateParts parts;
    double secondsOfDay = 0;
};

Clock now() {
    std::timespec ts{};
    std::timespec_get(&ts, TIME_UTC);
    std::tm local{};
    localtime_r(&ts.tv_sec, &local);
    Clock c;
    c.parts.year = local.tm_year + 1900;
    c.parts.month = local.tm_mon + 1;
    c.parts.day = local.tm_mday;
    c.parts.hour = local.tm_hour;
    c.parts.minute = local.tm_min;
    c.parts.second = local.tm_sec;
    c.secondsOfDay = local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec +
                     static_cast<double>(ts.tv_nsec) / 1e9;
    return c;
}

DATE dateOf(const DateParts& p) {
    DATE d = 0;
    if (!dateFromParts(p, &d)) raise(kInvalidCall);
    return d;
}

void dateFn(CallContext&, Variant*, int, Variant* out) {
    DateParts p = now().parts;
    p.hour = p.minute = p.second = 0;
    *out = Variant::date(dateOf(p));
}
void timeFn(CallContext&, Variant*, int, Variant* out) {
    DateParts p = now().parts;
    p.year = 1899, p.month = 12, p.day = 30;
    *out = Variant::date(dateOf(p));
}
void nowFn(CallContext&, Variant*, int, Variant* out) {
    *out = Variant::date(dateOf(now().parts));
}
void timerFn(CallContext&, Variant*, int, Variant* out) {
    *out = Variant(static_cast<float>(now().secondsOfDay));
}

// Year, Month, Day, Hour, Minute, Second: Null gives Null.
template <int DateParts::*Field>
void partFn(CallContext& cx, Variant* args, int, Variant* out) {
    resolveDefault(args[0]);
    if (args[0].isNull()) {
        *out = Variant::null();
        return;
    }
    DateParts p = partsOf(toDate(args[0], cx.lcid));
    *out = Variant(static_cast<std::int16_t>(p.*Field));
}

// The firstdayofweek argument as 0 (Sunday) to 6; 0 given (vbUseSystemDayOfWeek) is the
// locale's.
int firstDayArg(CallContext& cx, Variant* args, int argc, int i) {
    std::int32_t v = optionalLong(args, argc, i, 1, cx.lcid);
    if (v < 0 || v > 7) raise(kInvalidCall);
    return v == 0 ? localeFirstDay(cx.lcid) : v - 1;
}

void weekdayFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    resolveDefault(args[0]);
    int first = firstDayArg(cx, args, argc, 1);
    if (args[0].isNull()) {
        *out = Variant::null();
        return;
    }
    std::int64_t day = dayOfSeconds(secondsOf(toDate(args[0], cx.lcid)));
    *out = Variant(static_cast<std::int16_t>((weekdayOfDay(day) - first + 7) % 7 + 1));
}

bool abbreviateArg(CallContext& cx, Variant* args, int argc, int i) {
    return present(args, argc, i) && convertTo(args[i], VT_BOOL, cx.lcid).boolVal() != 0;
}

void weekdayNameFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    std::int32_t n = toLong(args[0], cx.lcid);
    bool abbreviate = abbreviateArg(cx, args, argc, 1);
    int first = firstDayArg(cx, args, argc, 2);
    if (n < 1 || n > 7) raise(kInvalidCall);
    const LocaleInfo& locale = localeInfo(cx.lcid);
    int index = (n - 1 + first) % 7;
    *out = textResult(abbreviate ? locale.dayAbbreviations[index] : locale.dayNames[index]);
}

void monthNameFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    // The abbreviate argument is read first: MonthName("a", Null) is "Invalid use of Null".
    bool abbreviate = abbreviateArg(cx, args, argc, 1);
    std::int32_t n = toLong(args[0], cx.lcid);
    if (n < 1 || n > 12) raise(kInvalidCall);
    const LocaleInfo& locale = localeInfo(cx.lcid);
    *out = textResult(abbreviate ? locale.monthAbbreviations[n - 1] : locale.monthNames[n - 1]);
}

void dateSerialFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::int64_t year = toLong(args[0], cx.lcid);
    std::int64_t month = toLong(args[1], cx.lcid);
    std::int64_t day = toLong(args[2], cx.lcid);
    if (year >= 0 && year <= 99) year = expandTwoDigitYear(static_cast<int>(year));
    if (year < -100000 || year > 100000) raise(kInvalidCall);
    *out = Variant::date(dateOfSeconds(dayOfCivil(year, month, day) * kSecondsPerDay));
}

void timeSerialFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::int64_t seconds = std::int64_t{toLong(args[0], cx.lcid)} * 3600 +
                           std::int64_t{toLong(args[1], cx.lcid)} * 60 + toLong(args[2], cx.lcid);
    *out = Variant::date(dateOfSeconds(seconds));
}

void dateValueFn(CallContext& cx, Variant* args, int, Variant* out) {
    DATE d = toDate(args[0], cx.lcid);
    *out = Variant::date(std::trunc(d));
}

void timeValueFn(CallContext& cx, Variant* args, int, Variant* out) {
    DATE d = toDate(args[0], cx.lcid);
    *out = Variant::date(std::fabs(d - std::trunc(d)));
}

constexpr Builtin kDates[] = {
    {"Date", 0, 0, kVolatile, dateFn},
    {"DateSerial", 3, 3, kPure, dateSerialFn},
    {"DateValue", 1, 1, kPure, dateValueFn},
    {"Day", 1, 1, kPure, partFn<&DateParts::day>},
    {"Hour", 1, 1, kPure, partFn<&DateParts::hour>},
    {"Minute", 1, 1, kPure, partFn<&DateParts::minute>},
    {"Month", 1, 1, kPure, partFn<&DateParts::month>},
    {"MonthName", 1, 2, kPure, monthNameFn},
    {"Now", 0, 0, kVolatile, nowFn},
    {"Second", 1, 1, kPure, partFn<&DateParts::second>},
    {"Time", 0, 0, kVolatile, timeFn},
    {"Timer", 0, 0, kVolatile, timerFn},
    {"TimeSerial", 3, 3, kPure, timeSerialFn},
    {"TimeValue", 1, 1, kPure, timeValueFn},
    {"Weekday", 1, 2, kPure, weekdayFn},
    {"WeekdayName", 1, 3, kPure, weekdayNameFn},
    {"Year", 1, 1, kPure, partFn<&DateParts::year>},
};

} // namespace

std::span<const Builtin> dateBuiltins() {
    return kDates;
}

} // namespace qvr::vbscript
