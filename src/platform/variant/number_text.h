// Numbers to text and back under a locale, with the platform's rules: the locale's decimal and
// group separators, blanks, signs, parentheses and the currency symbol around a number, exponents,
// "&H" hexadecimal and "&O" octal; at most 15 significant digits for a Double and 7 for a
// Single, with the exponent forms "1E+20" and "1E-05".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <qvr/variant.h>

namespace qvr {

struct LocaleInfo;

// A number read from text, before it is given a type. A decimal number is its significant
// digits and a power of ten; a hexadecimal or octal one is an unsigned integer.
struct ParsedNumber {
    bool negative = false;
    std::string digits; // decimal digits without leading zeros ("" for zero)
    int exponent = 0;   // value = digits * 10^exponent
    bool radix = false; // written as &H or &O
    std::uint64_t bits = 0;

    double toDouble() const;
    // The value rounded half to even to an integer; false when it does not fit 64 bits.
    bool toInteger(std::int64_t* out) const;
    // The value scaled by 10,000 and rounded half to even; false when it does not fit.
    bool toCurrency(std::int64_t* out) const;
};

// DISP_E_TYPEMISMATCH when `text` is no number in the locale, DISP_E_OVERFLOW for a
// hexadecimal or octal number of more than 64 bits.
HRESULT parseNumber(std::string_view text, const LocaleInfo& locale, ParsedNumber* out);

// Rounds half to even ("banker's rounding"): 2.5 gives 2, 3.5 gives 4, -2.5 gives -2.
double roundHalfEven(double value);

// The shortest text of a number, as the conversion to text writes it.
std::string formatDouble(double value, LCID lcid);
std::string formatSingle(float value, LCID lcid);
std::string formatCurrency(CY value, LCID lcid); // up to four decimals, no symbol
std::string formatInteger(std::int64_t value);

// The fifteen significant digits of |value| (correctly rounded) and the power of ten of the
// first: 0.125 gives "125000000000000" and -1. This is the number as the user reads it, which
// decimal rounding works on rather than on the binary neighbours.
void decimalDigits(double value, std::string* digits, int* exponent);

// A number with a fixed count of decimals (rounded half away from zero, as the platform's
// number formatting does), an optional leading zero and optional grouping by thousands, in the
// locale's separators; the sign is left to the caller: the text is of the magnitude.
std::string formatFixed(double magnitude, int decimals, bool leadingZero, bool group,
                        const LocaleInfo& locale);

} // namespace qvr
