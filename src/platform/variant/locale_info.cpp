#include "platform/variant/locale_info.h"

#include <atomic>
#include <iterator>

namespace qvr {
namespace {

constexpr std::array<const char*, 12> kEnglishMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr std::array<const char*, 12> kEnglishMonthsShort = {
    "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<const char*, 7> kEnglishDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                     "Thursday", "Friday", "Saturday"};
constexpr std::array<const char*, 7> kEnglishDaysShort = {"Sun", "Mon", "Tue", "Wed",
                                                          "Thu", "Fri", "Sat"};

const LocaleInfo kLocales[] = {
    {LCID_EN_US,
     "en-US",
     ".",
     ",",
     2,
     true,
     1,
     "$",
     2,
     0,
     0,
     "M/d/yyyy",
     "dddd, MMMM d, yyyy",
     "/",
     DateOrder::MonthDayYear,
     "h:mm:ss tt",
     "h:mm tt",
     ":",
     "AM",
     "PM",
     kEnglishMonths,
     kEnglishMonthsShort,
     kEnglishDays,
     kEnglishDaysShort,
     "True",
     "False"},
    {LCID_EN_GB,
     "en-GB",
     ".",
     ",",
     2,
     true,
     1,
     "\xC2\xA3",
     2,
     0,
     1,
     "dd/MM/yyyy",
     "dd MMMM yyyy",
     "/",
     DateOrder::DayMonthYear,
     "HH:mm:ss",
     "HH:mm",
     ":",
     "AM",
     "PM",
     kEnglishMonths,
     kEnglishMonthsShort,
     kEnglishDays,
     kEnglishDaysShort,
     "True",
     "False"},
    {LCID_DE_DE,
     "de-DE",
     ",",
     ".",
     2,
     true,
     1,
     "\xE2\x82\xAC",
     2,
     3,
     8,
     "dd.MM.yyyy",
     "dddd, d. MMMM yyyy",
     ".",
     DateOrder::DayMonthYear,
     "HH:mm:ss",
     "HH:mm",
     ":",
     "",
     "",
     {"Januar", "Februar", "M\xC3\xA4rz", "April", "Mai", "Juni", "Juli", "August", "September",
      "Oktober", "November", "Dezember"},
     {"Jan", "Feb", "M\xC3\xA4r", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"},
     {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"},
     {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"},
     "Wahr",
     "Falsch"},
    {LCID_FR_FR,
     "fr-FR",
     ",",
     "\xC2\xA0",
     2,
     true,
     1,
     "\xE2\x82\xAC",
     2,
     3,
     8,
     "dd/MM/yyyy",
     "dddd d MMMM yyyy",
     "/",
     DateOrder::DayMonthYear,
     "HH:mm:ss",
     "HH:mm",
     ":",
     "",
     "",
     {"janvier", "f\xC3\xA9vrier", "mars", "avril", "mai", "juin", "juillet", "ao\xC3\xBBt",
      "septembre", "octobre", "novembre",
      "d\xC3\xA9"
      "cembre"},
     {"janv.", "f\xC3\xA9vr.", "mars", "avr.", "mai", "juin", "juil.", "ao\xC3\xBBt", "sept.",
      "oct.", "nov.",
      "d\xC3\xA9"
      "c."},
     {"dimanche", "lundi", "mardi", "mercredi", "jeudi", "vendredi", "samedi"},
     {"dim.", "lun.", "mar.", "mer.", "jeu.", "ven.", "sam."},
     "Vrai",
     "Faux"},
    {LOCALE_INVARIANT,
     "",
     ".",
     ",",
     2,
     true,
     1,
     "\xC2\xA4",
     2,
     0,
     0,
     "MM/dd/yyyy",
     "dddd, dd MMMM yyyy",
     "/",
     DateOrder::MonthDayYear,
     "HH:mm:ss",
     "HH:mm",
     ":",
     "AM",
     "PM",
     kEnglishMonths,
     kEnglishMonthsShort,
     kEnglishDays,
     kEnglishDaysShort,
     "True",
     "False"},
};

std::atomic<LCID> userLocale{LCID_EN_US};

const LocaleInfo* find(LCID lcid) {
    for (const LocaleInfo& info : kLocales)
        if (info.lcid == lcid) return &info;
    return nullptr;
}

} // namespace

void SetUserLocale(LCID lcid) {
    // Kept as given, so that GetUserLocale answers what was set; lookups resolve it. The
    // defaults are replaced by what they stand for, so the user locale never refers to itself.
    if (lcid == LOCALE_USER_DEFAULT) return;
    if (lcid == LOCALE_SYSTEM_DEFAULT || lcid == LOCALE_NEUTRAL) lcid = LCID_EN_US;
    userLocale.store(lcid);
}

LCID GetUserLocale() {
    return userLocale.load();
}

LCID resolveLocale(LCID lcid) {
    if (lcid == LOCALE_USER_DEFAULT) lcid = userLocale.load();
    if (lcid == LOCALE_NEUTRAL || lcid == LOCALE_SYSTEM_DEFAULT) return LCID_EN_US;
    if (find(lcid)) return lcid;
    // Another country of a known language reads like that language's first entry.
    LCID language = lcid & 0x3FF;
    for (const LocaleInfo& info : kLocales)
        if ((info.lcid & 0x3FF) == language && info.lcid != LOCALE_INVARIANT) return info.lcid;
    return LCID_EN_US;
}

const LocaleInfo& localeInfo(LCID lcid) {
    return *find(resolveLocale(lcid));
}

} // namespace qvr
