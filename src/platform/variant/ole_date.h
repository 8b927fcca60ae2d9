// Dates as the platform keeps them: days since 1899-12-30 with the time of day as the fraction.
// Before that day the integer part still names the day and the fraction still counts forward
// from its midnight, so -1.5 is 1899-12-29 12:00. Text forms follow the locale's pictures.
#pragma once

#include <string>
#include <string_view>

#include <qvr/variant.h>

namespace qvr {

struct LocaleInfo;

// The range of valid dates: 0100-01-01 00:00:00 to 9999-12-31 23:59:59.
constexpr double kMinDate = -657434.0;
constexpr double kMaxDate = 2958465.0;
// True when `date` lies in the range above (fractions of the last day included).
bool isValidDate(DATE date);

// Two-digit years of a text: 00 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999.
int expandTwoDigitYear(int year);

enum class DateForm {
    General,   // the short date, the long time, or both (date only at midnight, time only on day 0)
    LongDate,  // the locale's long date picture
    ShortDate, // the locale's short date picture
    LongTime,  // the locale's time picture
    ShortTime, // the locale's short time picture
};

// `date` as text in the locale; "" when it is out of range.
std::string formatDate(DATE date, LCID lcid, DateForm form = DateForm::General);
// `parts` through a picture of d, dd, ddd, dddd, M, MM, MMM, MMMM, y, yy, yyyy, h, hh, H, HH,
// m, mm, s, ss, t, tt and 'quoted' text.
std::string formatDatePicture(const DateParts& parts, std::string_view picture,
                              const LocaleInfo& locale);

// Reads the common forms of a date, a time or both in the locale ("1/2/2000",
// "1/2/2000 3:04:05 PM", "January 2, 2000", "2000-01-02", "02.01.2000", "15:04", "3:04 PM").
// DISP_E_TYPEMISMATCH when the text is none of them or names no valid date.
HRESULT parseDate(std::string_view text, LCID lcid, DATE* out);

} // namespace qvr
