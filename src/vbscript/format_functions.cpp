// FormatNumber, FormatCurrency, FormatPercent, FormatDateTime under the user's locale.
#include <cmath>
#include <string>

#include "platform/variant/locale_info.h"
#include "platform/variant/number_text.h"
#include "platform/variant/ole_date.h"
#include "vbscript/builtins.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

constexpr std::int32_t kUseDefault = -2;

// The platform's layouts: 'n' is the number, '$' the currency symbol.
constexpr const char* kNumberNegative[] = {"(n)", "-n", "- n", "n-", "n -"};
constexpr const char* kCurrencyPositive[] = {"$n", "n$", "$ n", "n $"};
constexpr const char* kCurrencyNegative[] = {"($n)", "-$n",  "$-n",   "$n-",  "(n$)", "-n$",
                                             "n-$",  "n$-",  "-n $",  "-$ n", "n $-", "$ n-",
                                             "$ -n", "n- $", "($ n)", "(n $)"};

std::string layout(const char* pattern, const std::string& number, const char* symbol) {
    std::string out;
    for (const char* p = pattern; *p; ++p) {
        if (*p == 'n')
            out += number;
        else if (*p == '$')
            out += symbol;
        else
            out += *p;
    }
    return out;
}

// The value to format: Null is "Type mismatch" here (a Null option is "Invalid use of Null").
void rejectNull(Variant& v) {
    resolveDefault(v);
    if (v.isNull()) raise(kTypeMismatch);
}

// A tristate argument (-1 true, 0 false, -2 the locale's default); anything else is invalid.
int tristate(Variant* args, int argc, int i, LCID lcid) {
    std::int32_t v = optionalLong(args, argc, i, kUseDefault, lcid);
    if (v != -1 && v != 0 && v != kUseDefault) raise(kInvalidCall);
    return v;
}

struct Style {
    double value = 0;
    std::string digitsText; // magnitude, rounded and laid out
    bool negative = false;
    int parens = kUseDefault;
};

// The common arguments: expression, digits after the separator, leading digit, parentheses,
// grouping.
Style readStyle(CallContext& cx, Variant* args, int argc, int defaultDigits, double scale,
                const LocaleInfo& locale) {
    Style s;
    rejectNull(args[0]);
    s.value = toDouble(args[0], cx.lcid) * scale;
    std::int32_t digits = optionalLong(args, argc, 1, -1, cx.lcid);
    if (digits < -1 || digits > 99) raise(kInvalidCall);
    if (digits == -1) digits = defaultDigits;
    int leading = tristate(args, argc, 2, cx.lcid);
    s.parens = tristate(args, argc, 3, cx.lcid);
    int group = tristate(args, argc, 4, cx.lcid);
    bool lead = leading == kUseDefault ? locale.leadingZero : leading != 0;
    if (std::isinf(s.value)) raise(kOverflow);
    s.digitsText = formatFixed(std::fabs(s.value), digits, lead, group != 0, locale);
    // A value that rounds to zero shows no sign.
    s.negative = s.value < 0 && s.digitsText.find_first_of("123456789") != std::string::npos;
    return s;
}

std::string signedNumber(const Style& s, const LocaleInfo& locale) {
    if (!s.negative) return s.digitsText;
    int form = locale.negativeNumberForm;
    if (s.parens == -1)
        form = 0;
    else if (s.parens == 0 && form == 0)
        form = 1;
    return layout(kNumberNegative[form], s.digitsText, "");
}

void formatNumberFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    const LocaleInfo& locale = localeInfo(cx.lcid);
    Style s = readStyle(cx, args, argc, locale.fractionDigits, 1, locale);
    *out = textResult(signedNumber(s, locale));
}

void formatPercentFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    const LocaleInfo& locale = localeInfo(cx.lcid);
    Style s = readStyle(cx, args, argc, locale.fractionDigits, 100, locale);
    *out = textResult(signedNumber(s, locale) + "%");
}

bool parenthesized(int form) {
    return form == 0 || form == 4 || form == 14 || form == 15;
}

void formatCurrencyFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    const LocaleInfo& locale = localeInfo(cx.lcid);
    Style s = readStyle(cx, args, argc, locale.currencyDigits, 1, locale);
    std::string positive =
        layout(kCurrencyPositive[locale.currencyPositiveForm], s.digitsText, locale.currencySymbol);
    if (!s.negative) {
        *out = textResult(std::move(positive));
        return;
    }
    int form = locale.currencyNegativeForm;
    std::string text;
    if (s.parens == -1 && !parenthesized(form))
        text = "(" + positive + ")";
    else if (s.parens == 0 && parenthesized(form))
        text = "-" + positive;
    else
        text = layout(kCurrencyNegative[form], s.digitsText, locale.currencySymbol);
    *out = textResult(std::move(text));
}

void formatDateTimeFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    rejectNull(args[0]);
    DATE date = toDate(args[0], cx.lcid);
    std::int32_t form = optionalLong(args, argc, 1, 0, cx.lcid);
    if (form < 0 || form > 4) raise(kInvalidCall);
    if (form == 4) {
        // vbShortTime is always the 24-hour "HH:mm", whatever the locale's short time.
        DateParts parts;
        if (!dateToParts(date, &parts)) raise(kInvalidCall);
        *out = textResult(formatDatePicture(parts, "HH:mm", localeInfo(cx.lcid)));
        return;
    }
    static constexpr DateForm kForms[] = {DateForm::General, DateForm::LongDate,
                                          DateForm::ShortDate, DateForm::LongTime};
    *out = textResult(formatDate(date, cx.lcid, kForms[form]));
}

constexpr Builtin kFormats[] = {
    {"FormatCurrency", 1, 5, kPure, formatCurrencyFn},
    {"FormatDateTime", 1, 2, kPure, formatDateTimeFn},
    {"FormatNumber", 1, 5, kPure, formatNumberFn},
    {"FormatPercent", 1, 5, kPure, formatPercentFn},
};

} // namespace

std::span<const Builtin> formatBuiltins() {
    return kFormats;
}

} // namespace qvr::vbscript
