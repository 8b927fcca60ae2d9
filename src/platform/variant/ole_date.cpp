#include "platform/variant/ole_date.h"

#include <cmath>
#include <cstdint>
#include <ctime>
#include <vector>

#include "platform/variant/locale_info.h"

namespace qvr {
namespace {

constexpr std::int64_t kMsPerDay = 86400000;

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

// Days from 1970-01-01 to a date of the proleptic Gregorian calendar.
std::int64_t daysFromCivil(std::int64_t year, int month, int day) {
    year -= month <= 2 ? 1 : 0;
    std::int64_t era = floorDiv(year, 400);
    std::int64_t yearOfEra = year - era * 400;
    std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

void civilFromDays(std::int64_t days, int* year, int* month, int* day) {
    days += 719468;
    std::int64_t era = floorDiv(days, 146097);
    std::int64_t dayOfEra = days - era * 146097;
    std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    std::int64_t mp = (5 * dayOfYear + 2) / 153;
    *day = static_cast<int>(dayOfYear - (153 * mp + 2) / 5 + 1);
    *month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    *year = static_cast<int>(yearOfEra + era * 400 + (*month <= 2 ? 1 : 0));
}

const std::int64_t kEpoch = daysFromCivil(1899, 12, 30);

int daysInMonth(int year, int month) {
    static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : days[month - 1];
}

// Splits a date into its day and the seconds since that day's midnight, rounded to the second.
bool splitDate(DATE date, std::int64_t* day, std::int64_t* seconds) {
    if (!isValidDate(date)) return false;
    double whole = std::trunc(date);
    double fraction = std::fabs(date - whole);
    *day = static_cast<std::int64_t>(whole);
    *seconds = std::llround(fraction * 86400.0);
    if (*seconds >= 86400) {
        *seconds -= 86400;
        ++*day;
    }
    return true;
}

// A number of a date picture: "d" gives it as it is, "dd" with at least two digits.
std::string numberField(int value, std::size_t width) {
    std::string s = std::to_string(value);
    return s.size() < width && width > 1 ? std::string(width - s.size(), '0') + s : s;
}

// ---- Reading -------------------------------------------------------------------------------

struct Token {
    enum Kind { Number, Word, Separator } kind;
    std::string_view text;
    int value = 0;
};

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isSeparatorChar(char c) {
    return c == ' ' || c == '\t' || c == ',' || c == '/' || c == '-' || c == '.' || c == ':';
}

bool tokenize(std::string_view text, std::vector<Token>* tokens) {
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t start = i;
        char c = text[i];
        if (isAsciiDigit(c)) {
            int value = 0;
            while (i < text.size() && isAsciiDigit(text[i])) {
                if (i - start >= 9) return false; // no part of a date has that many digits
                value = value * 10 + (text[i] - '0');
                ++i;
            }
            tokens->push_back({Token::Number, text.substr(start, i - start), value});
        } else if (isSeparatorChar(c)) {
            ++i;
            tokens->push_back({Token::Separator, text.substr(start, 1)});
        } else if (static_cast<unsigned char>(c) == 0xC2 && i + 1 < text.size() &&
                   static_cast<unsigned char>(text[i + 1]) == 0xA0) {
            i += 2; // a no-break space separates like a space
            tokens->push_back({Token::Separator, " "});
        } else {
            while (i < text.size() && !isAsciiDigit(text[i]) && !isSeparatorChar(text[i])) ++i;
            tokens->push_back({Token::Word, text.substr(start, i - start)});
        }
    }
    return true;
}

bool sameWord(std::string_view word, const char* name) {
    std::string_view n = name;
    if (!n.empty() && n.back() == '.') n.remove_suffix(1); // "janv." is read as "janv"
    return !n.empty() && String(word).equalsIgnoreCase(n);
}

template <std::size_t N>
int findName(std::string_view word, const std::array<const char*, N>& names) {
    for (std::size_t i = 0; i < N; ++i)
        if (sameWord(word, names[i])) return static_cast<int>(i);
    return -1;
}

int monthOfWord(std::string_view word, const LocaleInfo& locale) {
    const LocaleInfo& english = localeInfo(LCID_EN_US);
    for (const LocaleInfo* l : {&locale, &english}) {
        int m = findName(word, l->monthNames);
        if (m < 0) m = findName(word, l->monthAbbreviations);
        if (m >= 0) return m + 1;
    }
    return 0;
}

bool isDayWord(std::string_view word, const LocaleInfo& locale) {
    const LocaleInfo& english = localeInfo(LCID_EN_US);
    for (const LocaleInfo* l : {&locale, &english})
        if (findName(word, l->dayNames) >= 0 || findName(word, l->dayAbbreviations) >= 0)
            return true;
    return false;
}

// 1 for a morning word, 2 for an afternoon word, 0 for neither.
int meridiemOfWord(std::string_view word, const LocaleInfo& locale) {
    if (sameWord(word, locale.am) || sameWord(word, "AM") || sameWord(word, "A")) return 1;
    if (sameWord(word, locale.pm) || sameWord(word, "PM") || sameWord(word, "P")) return 2;
    return 0;
}

struct Number {
    int value;
    std::size_t length;
    bool yearLike() const { return length >= 3 || value > 31; }
};

int currentYear() {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local.tm_year + 1900;
}

int fullYear(const Number& n) {
    return n.length <= 2 ? expandTwoDigitYear(n.value) : n.value;
}

bool validDay(int year, int month, int day) {
    return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
           day <= daysInMonth(year, month);
}

// Gives year, month and day from the numbers of a date and the month named by a word, if any.
bool resolveDate(const std::vector<Number>& nums, int namedMonth, DateOrder order, int* year,
                 int* month, int* day) {
    if (namedMonth) {
        *month = namedMonth;
        if (nums.size() == 1) {
            if (nums[0].yearLike())
                *year = fullYear(nums[0]), *day = 1;
            else
                *year = currentYear(), *day = nums[0].value;
        } else if (nums.size() == 2) {
            bool yearFirst = nums[0].yearLike() && !nums[1].yearLike();
            *year = fullYear(nums[yearFirst ? 0 : 1]);
            *day = nums[yearFirst ? 1 : 0].value;
        } else {
            return false;
        }
        return validDay(*year, *month, *day);
    }
    if (nums.size() == 3) {
        if (nums[0].yearLike() || order == DateOrder::YearMonthDay) {
            *year = fullYear(nums[0]), *month = nums[1].value, *day = nums[2].value;
        } else if (order == DateOrder::MonthDayYear) {
            *month = nums[0].value, *day = nums[1].value, *year = fullYear(nums[2]);
        } else {
            *day = nums[0].value, *month = nums[1].value, *year = fullYear(nums[2]);
        }
        if (validDay(*year, *month, *day)) return true;
        std::swap(*month, *day); // "13/1/2000" in a month-first locale is still the 13th
        return validDay(*year, *month, *day);
    }
    if (nums.size() == 2) {
        if (nums[0].yearLike() || nums[1].yearLike()) {
            bool yearFirst = nums[0].yearLike();
            *year = fullYear(nums[yearFirst ? 0 : 1]);
            *month = nums[yearFirst ? 1 : 0].value;
            *day = 1;
        } else {
            *year = currentYear();
            bool monthFirst = order != DateOrder::DayMonthYear;
            *month = nums[monthFirst ? 0 : 1].value;
            *day = nums[monthFirst ? 1 : 0].value;
            if (!validDay(*year, *month, *day)) std::swap(*month, *day);
        }
        return validDay(*year, *month, *day);
    }
    return false;
}

} // namespace

bool isValidDate(DATE date) {
    return date > kMinDate - 1.0 && date < kMaxDate + 1.0;
}

int expandTwoDigitYear(int year) {
    if (year < 0 || year > 99) return year;
    return year < 30 ? 2000 + year : 1900 + year;
}

bool dateToParts(DATE date, DateParts* out) {
    std::int64_t day, seconds;
    if (!out || !splitDate(date, &day, &seconds)) return false;
    DateParts parts;
    civilFromDays(kEpoch + day, &parts.year, &parts.month, &parts.day);
    if (parts.year > 9999) return false;
    parts.hour = static_cast<int>(seconds / 3600);
    parts.minute = static_cast<int>(seconds / 60 % 60);
    parts.second = static_cast<int>(seconds % 60);
    parts.millisecond = 0;
    parts.dayOfWeek = static_cast<int>(((day + 6) % 7 + 7) % 7); // day 0 was a Saturday
    *out = parts;
    return true;
}

bool dateFromParts(const DateParts& parts, DATE* out) {
    if (!out) return false;
    // Months, days and times past their ends roll over into the next unit, as the platform's
    // conversion from parts does; only the year must come out in range.
    std::int64_t year = parts.year + floorDiv(std::int64_t{parts.month} - 1, 12);
    int month = static_cast<int>(std::int64_t{parts.month} - 1 -
                                 floorDiv(std::int64_t{parts.month} - 1, 12) * 12) +
                1;
    if (parts.year < 100 || parts.year > 9999 || year < 100 || year > 9999) return false;
    std::int64_t day = daysFromCivil(year, month, 1) - kEpoch + (std::int64_t{parts.day} - 1);
    std::int64_t ms = day * kMsPerDay + std::int64_t{parts.hour} * 3600000 +
                      std::int64_t{parts.minute} * 60000 + std::int64_t{parts.second} * 1000 +
                      parts.millisecond;
    std::int64_t wholeDay = floorDiv(ms, kMsPerDay);
    double fraction = static_cast<double>(ms - wholeDay * kMsPerDay) / kMsPerDay;
    DATE date = wholeDay >= 0 ? static_cast<double>(wholeDay) + fraction
                              : static_cast<double>(wholeDay) - fraction;
    if (!isValidDate(date)) return false;
    *out = date;
    return true;
}

std::string formatDatePicture(const DateParts& parts, std::string_view picture,
                              const LocaleInfo& locale) {
    std::string out;
    std::size_t i = 0;
    while (i < picture.size()) {
        char c = picture[i];
        if (c == '\'') {
            // Quoted text; two quotes inside stand for one.
            ++i;
            while (i < picture.size()) {
                if (picture[i] == '\'') {
                    if (i + 1 < picture.size() && picture[i + 1] == '\'') {
                        out += '\'';
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                out += picture[i++];
            }
            continue;
        }
        std::size_t n = 1;
        while (i + n < picture.size() && picture[i + n] == c) ++n;
        // Parts from a caller may be out of range; names are then left out, never read past.
        bool monthKnown = parts.month >= 1 && parts.month <= 12;
        bool weekdayKnown = parts.dayOfWeek >= 0 && parts.dayOfWeek <= 6;
        int hour12 = parts.hour % 12 == 0 ? 12 : parts.hour % 12;
        const char* meridiem = parts.hour < 12 ? locale.am : locale.pm;
        switch (c) {
        case 'd':
            if (n <= 2)
                out += numberField(parts.day, n);
            else if (weekdayKnown)
                out += (n == 3 ? locale.dayAbbreviations : locale.dayNames)[parts.dayOfWeek];
            break;
        case 'M':
            if (n <= 2)
                out += numberField(parts.month, n);
            else if (monthKnown)
                out += (n == 3 ? locale.monthAbbreviations : locale.monthNames)[parts.month - 1];
            break;
        case 'y':
            out += n <= 2 ? numberField(parts.year % 100, n) : numberField(parts.year, 4);
            break;
        case 'h': out += numberField(hour12, n); break;
        case 'H': out += numberField(parts.hour, n); break;
        case 'm': out += numberField(parts.minute, n); break;
        case 's': out += numberField(parts.second, n); break;
        case 't':
            if (n == 1)
                out += std::string_view(meridiem).substr(0, 1);
            else
                out += meridiem;
            break;
        default: out.append(n, c); break;
        }
        i += n;
    }
    return out;
}

std::string formatDate(DATE date, LCID lcid, DateForm form) {
    DateParts parts;
    if (!dateToParts(date, &parts)) return "";
    const LocaleInfo& locale = localeInfo(lcid);
    switch (form) {
    case DateForm::LongDate: return formatDatePicture(parts, locale.longDate, locale);
    case DateForm::ShortDate: return formatDatePicture(parts, locale.shortDate, locale);
    case DateForm::LongTime: return formatDatePicture(parts, locale.longTime, locale);
    case DateForm::ShortTime: return formatDatePicture(parts, locale.shortTime, locale);
    case DateForm::General: break;
    }
    std::int64_t day = 0, seconds = 0;
    splitDate(date, &day, &seconds);
    if (day == 0) return formatDatePicture(parts, locale.longTime, locale);
    std::string text = formatDatePicture(parts, locale.shortDate, locale);
    if (seconds != 0) text += " " + formatDatePicture(parts, locale.longTime, locale);
    return text;
}

HRESULT parseDate(std::string_view text, LCID lcid, DATE* out) {
    const LocaleInfo& locale = localeInfo(lcid);
    std::vector<Token> tokens;
    if (!tokenize(text, &tokens)) return DISP_E_TYPEMISMATCH;
    std::vector<Number> nums;
    int namedMonth = 0, meridiem = 0;
    bool hasTime = false;
    int hour = 0, minute = 0, second = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        auto separatorAt = [&](std::size_t k, char c) {
            return k < tokens.size() && tokens[k].kind == Token::Separator &&
                   tokens[k].text[0] == c;
        };
        auto numberAt = [&](std::size_t k) {
            return k < tokens.size() && tokens[k].kind == Token::Number;
        };
        if (t.kind == Token::Number && separatorAt(i + 1, ':') && numberAt(i + 2)) {
            if (hasTime) return DISP_E_TYPEMISMATCH;
            hasTime = true;
            hour = t.value;
            minute = tokens[i + 2].value;
            i += 2;
            if (separatorAt(i + 1, ':') && numberAt(i + 2)) {
                second = tokens[i + 2].value;
                i += 2;
            }
        } else if (t.kind == Token::Number) {
            nums.push_back({t.value, t.text.size()});
        } else if (t.kind == Token::Word) {
            if (int m = meridiemOfWord(t.text, locale)) {
                if (meridiem) return DISP_E_TYPEMISMATCH;
                meridiem = m;
                if (!hasTime) {
                    // "3 PM": the number in front is the hour.
                    if (nums.empty()) return DISP_E_TYPEMISMATCH;
                    hasTime = true;
                    hour = nums.back().value;
                    nums.pop_back();
                }
            } else if (int m = monthOfWord(t.text, locale)) {
                if (namedMonth) return DISP_E_TYPEMISMATCH;
                namedMonth = m;
            } else if (!isDayWord(t.text, locale)) {
                return DISP_E_TYPEMISMATCH;
            }
        } else if (t.text[0] == ':') {
            return DISP_E_TYPEMISMATCH;
        }
    }
    if (meridiem) {
        if (hour < 0 || hour > 12) return DISP_E_TYPEMISMATCH;
        if (hour == 12) hour = 0;
        if (meridiem == 2) hour += 12;
    }
    if (hasTime && (hour > 23 || minute > 59 || second > 59)) return DISP_E_TYPEMISMATCH;
    DateParts parts;
    if (!nums.empty() || namedMonth) {
        if (!resolveDate(nums, namedMonth, locale.dateOrder, &parts.year, &parts.month, &parts.day))
            return DISP_E_TYPEMISMATCH;
    } else if (!hasTime) {
        return DISP_E_TYPEMISMATCH;
    }
    parts.hour = hour;
    parts.minute = minute;
    parts.second = second;
    return dateFromParts(parts, out) ? S_OK : DISP_E_TYPEMISMATCH;
}

} // namespace qvr
