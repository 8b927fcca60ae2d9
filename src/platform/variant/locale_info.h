// The regional settings of the locales the library knows: separators, date and time pictures,
// names of months and days, currency and the words for the two booleans. Conversions between
// text and values, and the script language's formatting functions, read them from here.
#pragma once

#include <array>
#include <string_view>

#include <qvr/variant.h>

namespace qvr {

// The order of day, month and year in a short date.
enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

struct LocaleInfo {
    LCID lcid;
    const char* name; // "en-US"
    // Numbers.
    const char* decimalSeparator;
    const char* groupSeparator; // UTF-8; fr-FR uses a no-break space
    int fractionDigits;         // digits after the separator in formatted numbers
    bool leadingZero;           // "0.5" rather than ".5"
    // Negative numbers: 0 "(1.1)", 1 "-1.1", 2 "- 1.1", 3 "1.1-", 4 "1.1 -".
    int negativeNumberForm;
    // Currency.
    const char* currencySymbol;
    int currencyDigits;
    // Positive amounts: 0 "$1", 1 "1$", 2 "$ 1", 3 "1 $".
    int currencyPositiveForm;
    // Negative amounts, the platform's sixteen forms: 0 "($1)", 1 "-$1", 2 "$-1", 3 "$1-",
    // 4 "(1$)", 5 "-1$", 6 "1-$", 7 "1$-", 8 "-1 $", 9 "-$ 1", 10 "1 $-", 11 "$ 1-",
    // 12 "$ -1", 13 "1- $", 14 "($ 1)", 15 "(1 $)".
    int currencyNegativeForm;
    // Dates and times, as pictures of d, M, y, h, H, m, s, t and quoted 'text'.
    const char* shortDate;
    const char* longDate;
    const char* dateSeparator;
    DateOrder dateOrder;
    const char* longTime;  // "h:mm:ss tt"
    const char* shortTime; // "h:mm tt"
    const char* timeSeparator;
    const char* am;
    const char* pm;
    std::array<const char*, 12> monthNames;
    std::array<const char*, 12> monthAbbreviations;
    std::array<const char*, 7> dayNames; // Sunday first
    std::array<const char*, 7> dayAbbreviations;
    // The words a boolean shows as text in this language.
    const char* trueName;
    const char* falseName;
};

// The locale that `lcid` stands for: LOCALE_USER_DEFAULT is the process user locale,
// LOCALE_SYSTEM_DEFAULT and the neutral locale 0 are en-US, an unknown locale falls back to
// the known one of its language, else to en-US.
LCID resolveLocale(LCID lcid);
const LocaleInfo& localeInfo(LCID lcid);

} // namespace qvr
