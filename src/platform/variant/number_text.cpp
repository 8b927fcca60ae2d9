#include "platform/variant/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "platform/variant/locale_info.h"

namespace qvr {
namespace {

constexpr std::string_view kNoBreakSpace = "\xC2\xA0";

bool startsWith(std::string_view text, std::size_t pos, std::string_view what) {
    return !what.empty() && text.substr(pos, what.size()) == what;
}

// Blanks around a number: ASCII white space and the no-break space.
std::size_t blankLength(std::string_view text, std::size_t pos) {
    if (pos >= text.size()) return 0;
    char c = text[pos];
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f') return 1;
    return startsWith(text, pos, kNoBreakSpace) ? kNoBreakSpace.size() : 0;
}

std::size_t skipBlanks(std::string_view text, std::size_t pos) {
    while (std::size_t n = blankLength(text, pos)) pos += n;
    return pos;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int digitValue(char c, int radix) {
    int v = -1;
    if (c >= '0' && c <= '9')
        v = c - '0';
    else if (c >= 'a' && c <= 'f')
        v = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
        v = c - 'A' + 10;
    return v < radix ? v : -1;
}

// Signs, an opening parenthesis and the currency symbol may stand before the digits; a sign,
// the closing parenthesis and the currency symbol after them. Each may appear once.
struct Decorations {
    bool sign = false, negative = false, paren = false, parenClosed = false, currency = false;

    bool take(std::string_view text, std::size_t* pos, const LocaleInfo& locale, bool leading) {
        char c = text[*pos];
        if ((c == '+' || c == '-') && !sign) {
            sign = true;
            negative = c == '-';
            ++*pos;
            return true;
        }
        if (leading && c == '(' && !paren && !sign) {
            paren = true;
            ++*pos;
            return true;
        }
        if (!leading && c == ')' && paren && !parenClosed) {
            parenClosed = true;
            ++*pos;
            return true;
        }
        std::string_view symbol = locale.currencySymbol;
        if (!currency && startsWith(text, *pos, symbol)) {
            currency = true;
            *pos += symbol.size();
            return true;
        }
        return false;
    }
};

// Reads digits of a radix after "&H" or "&O".
HRESULT parseRadix(std::string_view text, std::size_t* pos, int radix, ParsedNumber* out) {
    std::size_t start = *pos;
    std::uint64_t value = 0;
    while (*pos < text.size()) {
        int d = digitValue(text[*pos], radix);
        if (d < 0) break;
        if (value > (std::numeric_limits<std::uint64_t>::max() - d) / radix) return DISP_E_OVERFLOW;
        value = value * radix + d;
        ++*pos;
    }
    if (*pos == start) return DISP_E_TYPEMISMATCH;
    out->radix = true;
    out->bits = value;
    return S_OK;
}

// Reads a decimal mantissa and exponent. The group separator is skipped wherever it stands
// after the first digit, also behind the decimal separator, as the platform does.
HRESULT parseDecimal(std::string_view text, std::size_t* pos, const LocaleInfo& locale,
                     ParsedNumber* out) {
    std::string_view decimal = locale.decimalSeparator;
    std::string_view group = locale.groupSeparator;
    bool groupIsBlank = group == kNoBreakSpace;
    bool seenDigit = false, seenDecimal = false;
    int fractionDigits = 0;
    std::string digits;
    std::size_t p = *pos;
    while (p < text.size()) {
        char c = text[p];
        if (isDigit(c)) {
            seenDigit = true;
            if (!(digits.empty() && c == '0')) digits += c;
            if (seenDecimal) ++fractionDigits;
            ++p;
        } else if (!seenDecimal && startsWith(text, p, decimal)) {
            seenDecimal = true;
            p += decimal.size();
        } else if (seenDigit && startsWith(text, p, group)) {
            p += group.size();
        } else if (seenDigit && groupIsBlank && c == ' ') {
            ++p; // a plain space stands for the no-break space of the locale
        } else {
            break;
        }
    }
    if (!seenDigit) return DISP_E_TYPEMISMATCH;
    long exponent = 0;
    if (p < text.size() && (text[p] == 'e' || text[p] == 'E' || text[p] == 'd' || text[p] == 'D')) {
        std::size_t q = p + 1;
        bool negativeExponent = false;
        if (q < text.size() && (text[q] == '+' || text[q] == '-'))
            negativeExponent = text[q++] == '-';
        if (q < text.size() && isDigit(text[q])) {
            while (q < text.size() && isDigit(text[q])) {
                if (exponent < 100000) exponent = exponent * 10 + (text[q] - '0');
                ++q;
            }
            if (negativeExponent) exponent = -exponent;
            p = q;
        }
    }
    // Trailing zeros of the digits move into the exponent.
    long scale = exponent - fractionDigits;
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
        ++scale;
    }
    out->digits = std::move(digits);
    out->exponent = out->digits.empty() ? 0 : static_cast<int>(scale);
    *pos = p;
    return S_OK;
}

// Rounds the decimal number `digits` * 10^`exponent` half to even to an integer that must not
// pass `limit`.
bool roundDigits(const std::string& digits, long exponent, std::uint64_t limit,
                 std::uint64_t* out) {
    long intLength = static_cast<long>(digits.size()) + exponent;
    if (intLength > 20) return false;
    std::uint64_t value = 0;
    for (long i = 0; i < intLength; ++i) {
        int d = i < static_cast<long>(digits.size()) ? digits[i] - '0' : 0;
        if (value > (limit - d) / 10) return false;
        value = value * 10 + d;
    }
    long first = intLength < 0 ? 0 : intLength; // index of the first dropped digit
    bool up = false;
    if (intLength >= 0 && first < static_cast<long>(digits.size())) {
        int d = digits[first] - '0';
        bool rest = digits.find_first_not_of('0', first + 1) != std::string::npos;
        up = d > 5 || (d == 5 && (rest || (value & 1)));
    }
    if (up) {
        if (value >= limit) return false;
        ++value;
    }
    *out = value;
    return true;
}

bool applySign(std::uint64_t magnitude, bool negative, std::int64_t* out) {
    constexpr std::uint64_t maxPositive = std::numeric_limits<std::int64_t>::max();
    if (!negative) {
        if (magnitude > maxPositive) return false;
        *out = static_cast<std::int64_t>(magnitude);
    } else {
        if (magnitude > maxPositive + 1) return false;
        *out = static_cast<std::int64_t>(0 - magnitude);
    }
    return true;
}

// The value of a hexadecimal or octal number: like a literal of the script language, it is a
// 16-bit or 32-bit two's complement number when it fits that width.
std::int64_t radixValue(std::uint64_t bits) {
    if (bits <= 0xFFFF) return static_cast<std::int16_t>(bits);
    if (bits <= 0xFFFFFFFF) return static_cast<std::int32_t>(bits);
    return static_cast<std::int64_t>(bits);
}

std::string replaceDecimalPoint(std::string text, LCID lcid) {
    std::string_view decimal = localeInfo(lcid).decimalSeparator;
    std::size_t dot = text.find('.');
    if (dot != std::string::npos) text.replace(dot, 1, decimal);
    return text;
}

// `value` with `precision` significant digits in the platform's general form.
std::string formatGeneral(double value, int precision, LCID lcid) {
    if (std::isnan(value)) return "-1.#IND";
    if (std::isinf(value)) return value < 0 ? "-1.#INF" : "1.#INF";
    if (value == 0) return "0";
    char buffer[64];
    auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precision)
            .ptr;
    std::replace(buffer, end, 'e', 'E'); // the platform writes 1E+20
    return replaceDecimalPoint(std::string(buffer, end), lcid);
}

} // namespace

double ParsedNumber::toDouble() const {
    double value;
    if (radix) {
        value = static_cast<double>(radixValue(bits));
    } else if (digits.empty()) {
        value = 0;
    } else if (static_cast<long>(digits.size()) + exponent > 400) {
        value = std::numeric_limits<double>::infinity();
    } else if (static_cast<long>(digits.size()) + exponent < -400) {
        value = 0;
    } else {
        std::string text = digits + "e" + std::to_string(exponent);
        auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (result.ec == std::errc::result_out_of_range)
            value = static_cast<long>(digits.size()) + exponent > 0
                        ? std::numeric_limits<double>::infinity()
                        : 0.0;
    }
    return negative ? -value : value;
}

bool ParsedNumber::toInteger(std::int64_t* out) const {
    if (radix) {
        std::int64_t v = radixValue(bits);
        if (negative && v == std::numeric_limits<std::int64_t>::min()) return false;
        *out = negative ? -v : v;
        return true;
    }
    std::uint64_t magnitude;
    if (!roundDigits(digits, exponent, std::numeric_limits<std::uint64_t>::max(), &magnitude))
        return false;
    return applySign(magnitude, negative, out);
}

bool ParsedNumber::toCurrency(std::int64_t* out) const {
    if (radix) {
        std::int64_t v;
        if (!toInteger(&v)) return false;
        if (v > std::numeric_limits<std::int64_t>::max() / 10000 ||
            v < std::numeric_limits<std::int64_t>::min() / 10000)
            return false;
        *out = v * 10000;
        return true;
    }
    std::uint64_t magnitude;
    if (!roundDigits(digits, static_cast<long>(exponent) + 4,
                     std::numeric_limits<std::uint64_t>::max(), &magnitude))
        return false;
    return applySign(magnitude, negative, out);
}

HRESULT parseNumber(std::string_view text, const LocaleInfo& locale, ParsedNumber* out) {
    *out = ParsedNumber{};
    Decorations deco;
    std::size_t pos = skipBlanks(text, 0);
    while (pos < text.size() && deco.take(text, &pos, locale, true)) pos = skipBlanks(text, pos);
    if (pos >= text.size()) return DISP_E_TYPEMISMATCH;
    HRESULT hr;
    if (text[pos] == '&' && pos + 1 < text.size() &&
        (text[pos + 1] == 'H' || text[pos + 1] == 'h' || text[pos + 1] == 'O' ||
         text[pos + 1] == 'o')) {
        int radix = (text[pos + 1] == 'H' || text[pos + 1] == 'h') ? 16 : 8;
        pos += 2;
        hr = parseRadix(text, &pos, radix, out);
    } else {
        hr = parseDecimal(text, &pos, locale, out);
    }
    if (FAILED(hr)) return hr;
    pos = skipBlanks(text, pos);
    while (pos < text.size() && deco.take(text, &pos, locale, false)) pos = skipBlanks(text, pos);
    if (pos != text.size() || deco.paren != deco.parenClosed || (deco.paren && deco.sign))
        return DISP_E_TYPEMISMATCH;
    out->negative = deco.negative || deco.paren;
    return S_OK;
}

double roundHalfEven(double value) {
    double floor = std::floor(value);
    double diff = value - floor;
    if (diff > 0.5) return floor + 1;
    if (diff < 0.5) return floor;
    return std::fmod(floor, 2.0) == 0 ? floor : floor + 1;
}

std::string formatDouble(double value, LCID lcid) {
    return formatGeneral(value, 15, lcid);
}

std::string formatSingle(float value, LCID lcid) {
    return formatGeneral(value, 7, lcid);
}

std::string formatInteger(std::int64_t value) {
    return std::to_string(value);
}

std::string formatCurrency(CY value, LCID lcid) {
    bool negative = value.int64 < 0;
    std::uint64_t magnitude = negative ? 0 - static_cast<std::uint64_t>(value.int64)
                                       : static_cast<std::uint64_t>(value.int64);
    std::string text = negative ? "-" : "";
    text += std::to_string(magnitude / 10000);
    std::uint64_t fraction = magnitude % 10000;
    if (fraction != 0) {
        std::string digits = std::to_string(fraction + 10000).substr(1);
        digits.erase(digits.find_last_not_of('0') + 1);
        text += localeInfo(lcid).decimalSeparator;
        text += digits;
    }
    return text;
}

void decimalDigits(double value, std::string* digits, int* exponent) {
    char buffer[64];
    auto end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                             std::chars_format::scientific, 14)
                   .ptr;
    digits->clear();
    const char* p = buffer;
    for (; p < end && *p != 'e'; ++p)
        if (*p >= '0' && *p <= '9') *digits += *p;
    *exponent = 0;
    if (p < end) std::from_chars(p + 1 + (p[1] == '+'), end, *exponent); // from_chars takes no '+'
}

std::string formatFixed(double magnitude, int decimals, bool leadingZero, bool group,
                        const LocaleInfo& locale) {
    magnitude = std::fabs(magnitude);
    if (!std::isfinite(magnitude)) return formatDouble(magnitude, locale.lcid);
    if (decimals < 0) decimals = 0;
    if (decimals > 99) decimals = 99;
    // Round the 15 significant digits the number shows, half away from zero, so that 0.125
    // gives 0.13 as the user reads it and not the binary neighbour.
    std::string digits;
    int exponent = 0; // value = d1.d2d3... * 10^exponent
    decimalDigits(magnitude, &digits, &exponent);
    int intLength = exponent + 1;
    int keep = intLength + decimals; // digits kept
    std::string kept;
    if (keep < 0) {
        kept = "";
    } else {
        bool up = keep < static_cast<int>(digits.size()) && digits[keep] >= '5';
        kept = digits.substr(0, std::min<std::size_t>(keep, digits.size()));
        kept.resize(keep, '0');
        if (up) {
            int i = keep - 1;
            while (i >= 0 && kept[i] == '9') kept[i--] = '0';
            if (i >= 0)
                ++kept[i];
            else {
                kept.insert(kept.begin(), '1');
                ++intLength;
            }
        }
    }
    // Split into the integer part and the decimals.
    if (static_cast<int>(kept.size()) < decimals) kept.insert(0, decimals - kept.size(), '0');
    std::string intPart = kept.substr(0, kept.size() - decimals);
    std::string fracPart = kept.substr(kept.size() - decimals);
    std::size_t nonZero = intPart.find_first_not_of('0');
    intPart = nonZero == std::string::npos ? "" : intPart.substr(nonZero);
    if (intPart.empty() && (leadingZero || decimals == 0)) intPart = "0";
    if (group && intPart.size() > 3) {
        std::string grouped;
        for (std::size_t i = 0; i < intPart.size(); ++i) {
            if (i > 0 && (intPart.size() - i) % 3 == 0) grouped += locale.groupSeparator;
            grouped += intPart[i];
        }
        intPart = grouped;
    }
    return decimals > 0 ? intPart + locale.decimalSeparator + fracPart : intPart;
}

} // namespace qvr
