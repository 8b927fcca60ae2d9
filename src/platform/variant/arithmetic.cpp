// The arithmetic operators of the variant: +, &, -, *, /, \, Mod, ^, unary minus, Abs, Fix,
// Int and Round, with the platform's result types.
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "platform/com/failure.h"
#include "platform/variant/coerce.h"
#include "platform/variant/number_text.h"
#include "platform/variant/ole_date.h"
#include "platform/variant/operands.h"

namespace qvr {

bool isOperand(const Variant& v) {
    switch (v.vt()) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_BOOL:
    case VT_UI1: return true;
    default: return false;
    }
}

HRESULT integerResult(std::int64_t value, VARTYPE vt, bool toDouble, Variant* out) {
    if (vt == VT_UI1 && value >= 0 && value <= 255) {
        *out = Variant::byte(static_cast<std::uint8_t>(value));
    } else if ((vt == VT_UI1 || vt == VT_I2) && value >= -32768 && value <= 32767) {
        *out = Variant(static_cast<std::int16_t>(value));
    } else if (value >= std::numeric_limits<std::int32_t>::min() &&
               value <= std::numeric_limits<std::int32_t>::max()) {
        *out = Variant(static_cast<std::int32_t>(value));
    } else if (toDouble) {
        *out = Variant(static_cast<double>(value));
    } else {
        return DISP_E_OVERFLOW;
    }
    return S_OK;
}

namespace {

enum class Op { Add, Sub, Mul };

// Checks the out pointer, catches what the conversions may throw.
template <class F>
HRESULT operation(Variant* out, F&& f) {
    if (!out) return E_INVALIDARG;
    return guarded([&] {
        Variant result;
        HRESULT hr = f(&result);
        if (SUCCEEDED(hr)) *out = std::move(result);
        return hr;
    });
}

// The type in which + - * work: dates win (a date and a number make a date, two dates
// subtracted make days), then Currency (but Currency times a floating number, text or a date
// is a Double), then Double (text is read as a Double), then Single
// (Long with Single makes Double), then Long, Integer (booleans are Integers) and Byte.
VARTYPE resultType(Op op, const Variant& l, const Variant& r) {
    if (op != Op::Mul && either(l, r, VT_DATE))
        return op == Op::Sub && l.vt() == VT_DATE && r.vt() == VT_DATE ? VT_R8 : VT_DATE;
    bool doubleLike = either(l, r, VT_R8) || either(l, r, VT_BSTR) || either(l, r, VT_DATE);
    if (either(l, r, VT_CY)) {
        // A product with a floating number is as precise as the Double; sums stay Currency.
        bool floating = doubleLike || either(l, r, VT_R4);
        return op == Op::Mul && floating ? VT_R8 : VT_CY;
    }
    if (doubleLike) return VT_R8;
    if (either(l, r, VT_R4)) return either(l, r, VT_I4) ? VT_R8 : VT_R4;
    if (either(l, r, VT_I4)) return VT_I4;
    if (either(l, r, VT_I2) || either(l, r, VT_BOOL)) return VT_I2;
    if (either(l, r, VT_UI1)) return VT_UI1;
    return VT_I2; // Empty with Empty
}

double apply(Op op, double a, double b) {
    return op == Op::Add ? a + b : op == Op::Sub ? a - b : a * b;
}

// Currency units times currency units, back to units, half to even.
bool multiplyCurrency(std::int64_t a, std::int64_t b, std::int64_t* out) {
    __int128 product = static_cast<__int128>(a) * b;
    __int128 quotient = product / 10000, rest = product % 10000;
    if (rest > 5000 || (rest == 5000 && (quotient & 1))) ++quotient;
    if (rest < -5000 || (rest == -5000 && (quotient & 1))) --quotient;
    if (quotient > std::numeric_limits<std::int64_t>::max() ||
        quotient < std::numeric_limits<std::int64_t>::min())
        return false;
    *out = static_cast<std::int64_t>(quotient);
    return true;
}

HRESULT arithmetic(Op op, const Variant& l, const Variant& r, Variant* out) {
    if (!isOperand(l) || !isOperand(r)) return DISP_E_TYPEMISMATCH;
    if (l.isNull() || r.isNull()) {
        *out = Variant::null();
        return S_OK;
    }
    if (op == Op::Add && l.vt() == VT_BSTR && (r.vt() == VT_BSTR || r.isEmpty())) {
        *out = Variant(l.str().str() + r.str().str());
        return S_OK;
    }
    if (op == Op::Add && l.isEmpty() && r.vt() == VT_BSTR) {
        *out = Variant(r.str().str());
        return S_OK;
    }
    const LCID lcid = kOperatorLocale;
    VARTYPE vt = resultType(op, l, r);
    HRESULT hr;
    switch (vt) {
    case VT_UI1:
    case VT_I2:
    case VT_I4: {
        std::int64_t a, b;
        if (FAILED(hr = integerOf(l, lcid, 32, &a)) || FAILED(hr = integerOf(r, lcid, 32, &b)))
            return hr;
        std::int64_t v = op == Op::Add ? a + b : op == Op::Sub ? a - b : a * b;
        return integerResult(v, vt, true, out);
    }
    case VT_CY: {
        std::int64_t a, b, v;
        if (FAILED(hr = currencyOf(l, lcid, &a)) || FAILED(hr = currencyOf(r, lcid, &b))) return hr;
        bool overflow = op == Op::Add   ? __builtin_add_overflow(a, b, &v)
                        : op == Op::Sub ? __builtin_sub_overflow(a, b, &v)
                                        : !multiplyCurrency(a, b, &v);
        if (overflow) return DISP_E_OVERFLOW;
        *out = Variant::currency(CY{v});
        return S_OK;
    }
    default: {
        double a, b;
        if (FAILED(hr = doubleOf(l, lcid, &a)) || FAILED(hr = doubleOf(r, lcid, &b))) return hr;
        double v = apply(op, a, b);
        if (!std::isfinite(v)) return DISP_E_OVERFLOW;
        if (vt == VT_DATE) {
            if (!isValidDate(v)) return DISP_E_OVERFLOW;
            *out = Variant::date(v);
        } else if (vt == VT_R4 && std::fabs(v) <= FLT_MAX) {
            *out = Variant(static_cast<float>(v));
        } else {
            *out = Variant(v); // a Single that overflows becomes a Double
        }
        return S_OK;
    }
    }
}

// The type in which \ and Mod work: both sides are first rounded to Long, Integer or Byte.
VARTYPE integerDivisionType(const Variant& l, const Variant& r) {
    for (VARTYPE t : {VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR})
        if (either(l, r, t)) return VT_I4;
    if (either(l, r, VT_I2) || either(l, r, VT_BOOL)) return VT_I2;
    if (either(l, r, VT_UI1)) return VT_UI1;
    return VT_I2;
}

HRESULT roundedOperand(const Variant& v, VARTYPE vt, std::int64_t* out) {
    HRESULT hr = integerOf(v, kOperatorLocale, vt == VT_I4 ? 32 : 16, out);
    if (FAILED(hr)) return hr;
    bool fits = vt == VT_I4 ? *out >= std::numeric_limits<std::int32_t>::min() &&
                                  *out <= std::numeric_limits<std::int32_t>::max()
                            : *out >= -32768 && *out <= 32767;
    return fits ? S_OK : DISP_E_OVERFLOW;
}

HRESULT integerDivision(bool modulo, const Variant& l, const Variant& r, Variant* out) {
    if (!isOperand(l) || !isOperand(r)) return DISP_E_TYPEMISMATCH;
    if (l.isNull() || r.isNull()) {
        *out = Variant::null();
        return S_OK;
    }
    VARTYPE vt = integerDivisionType(l, r);
    std::int64_t a, b;
    HRESULT hr;
    if (FAILED(hr = roundedOperand(l, vt, &a)) || FAILED(hr = roundedOperand(r, vt, &b))) return hr;
    if (b == 0) return DISP_E_DIVBYZERO;
    return integerResult(modulo ? a % b : a / b, vt, false, out);
}

// Rounds half to even at `decimals` places of the number as it reads in fifteen digits, so that
// Round(2.675, 2) is 2.68 as written and not as the nearest binary fraction would have it.
double roundDecimals(double value, int decimals) {
    if (!std::isfinite(value) || value == 0) return value;
    std::string digits;
    int exponent;
    decimalDigits(value, &digits, &exponent);
    int keep = exponent + 1 + decimals;
    if (keep >= static_cast<int>(digits.size())) return value;
    if (keep < 0) return 0.0;
    int next = digits[keep] - '0';
    bool rest = digits.find_first_not_of('0', keep + 1) != std::string::npos;
    bool odd = keep > 0 && (digits[keep - 1] - '0') % 2 == 1;
    std::string kept = keep > 0 ? digits.substr(0, keep) : "0";
    double magnitude =
        std::strtod((kept + "e" + std::to_string(exponent + 1 - keep)).c_str(), nullptr);
    if (next > 5 || (next == 5 && (rest || odd)))
        magnitude = std::strtod(
            (std::to_string(std::stoll(kept) + 1) + "e" + std::to_string(exponent + 1 - keep))
                .c_str(),
            nullptr);
    return value < 0 ? -magnitude : magnitude;
}

// Currency units rounded half to even at `decimals` places; false when the result leaves the
// range of Currency (rounding up the largest amounts).
bool roundCurrency(std::int64_t units, int decimals, std::int64_t* out) {
    if (decimals >= 4) {
        *out = units;
        return true;
    }
    std::int64_t factor = 1;
    for (int i = decimals; i < 4; ++i) factor *= 10;
    std::int64_t q = units / factor, rest = units % factor, half = factor / 2;
    if (rest > half || (rest == half && (q & 1))) ++q;
    if (rest < -half || (rest == -half && (q & 1))) --q;
    return !__builtin_mul_overflow(q, factor, out);
}

enum class Unary { Neg, Abs, Fix, Int, Round };

double applyUnary(Unary op, double v, int decimals) {
    switch (op) {
    case Unary::Neg: return -v;
    case Unary::Abs: return std::fabs(v);
    case Unary::Fix: return std::trunc(v);
    case Unary::Int: return std::floor(v);
    case Unary::Round: return roundDecimals(v, decimals);
    }
    return v;
}

std::int64_t applyUnary(Unary op, std::int64_t v) {
    return op == Unary::Neg ? -v : op == Unary::Abs && v < 0 ? -v : v;
}

// Currency units through Fix, Int or Round.
bool currencyUnary(Unary op, std::int64_t v, int decimals, std::int64_t* out) {
    switch (op) {
    case Unary::Neg:
    case Unary::Abs:
        if (v == std::numeric_limits<std::int64_t>::min()) return false;
        *out = op == Unary::Neg || v < 0 ? -v : v;
        return true;
    case Unary::Fix: *out = v / 10000 * 10000; return true;
    case Unary::Int: {
        std::int64_t q = v / 10000 - (v % 10000 < 0 ? 1 : 0);
        return !__builtin_mul_overflow(q, std::int64_t{10000}, out);
    }
    case Unary::Round: return roundCurrency(v, decimals, out);
    }
    return false;
}

HRESULT unary(Unary op, const Variant& v, int decimals, Variant* out) {
    switch (v.vt()) {
    case VT_NULL: *out = Variant::null(); return S_OK;
    case VT_EMPTY: *out = Variant(std::int16_t{0}); return S_OK;
    case VT_BOOL: // a boolean becomes an Integer first
    case VT_I2:
        return integerResult(applyUnary(op, v.vt() == VT_BOOL ? v.boolVal() : v.i2()), VT_I2, true,
                             out);
    case VT_I4: return integerResult(applyUnary(op, v.i4()), VT_I4, true, out);
    case VT_UI1:
        // Negating a Byte makes an Integer.
        return integerResult(applyUnary(op, v.ui1()), op == Unary::Neg ? VT_I2 : VT_UI1, true, out);
    case VT_R4:
        *out = Variant(static_cast<float>(applyUnary(op, double{v.r4()}, decimals)));
        return S_OK;
    case VT_R8: *out = Variant(applyUnary(op, v.r8(), decimals)); return S_OK;
    case VT_DATE: {
        double d = applyUnary(op, v.dateValue(), decimals);
        if (!isValidDate(d)) return DISP_E_OVERFLOW;
        *out = Variant::date(d);
        return S_OK;
    }
    case VT_CY: {
        std::int64_t units;
        if (!currencyUnary(op, v.cy().int64, decimals, &units)) return DISP_E_OVERFLOW;
        *out = Variant::currency(CY{units});
        return S_OK;
    }
    case VT_BSTR: {
        double d;
        HRESULT hr = doubleOf(v, kOperatorLocale, &d);
        if (FAILED(hr)) return hr;
        *out = Variant(applyUnary(op, d, decimals));
        return S_OK;
    }
    default: return DISP_E_TYPEMISMATCH;
    }
}

} // namespace

HRESULT varAdd(const Variant& l, const Variant& r, Variant* out) {
    return operation(out, [&](Variant* o) { return arithmetic(Op::Add, l, r, o); });
}

HRESULT varSub(const Variant& l, const Variant& r, Variant* out) {
    return operation(out, [&](Variant* o) { return arithmetic(Op::Sub, l, r, o); });
}

HRESULT varMul(const Variant& l, const Variant& r, Variant* out) {
    return operation(out, [&](Variant* o) { return arithmetic(Op::Mul, l, r, o); });
}

namespace {

// Appends the text `&` joins for `v`: Null joins as "", booleans as the words of the user's
// language.
HRESULT appendJoinText(const Variant& v, std::string* joined) {
    if (v.isNull()) return S_OK;
    if (v.vt() == VT_BSTR) {
        *joined += v.str().view();
        return S_OK;
    }
    if (joined->empty()) return textOf(v, kOperatorLocale, VARIANT_LOCALBOOL, joined);
    std::string piece;
    HRESULT hr = textOf(v, kOperatorLocale, VARIANT_LOCALBOOL, &piece);
    if (SUCCEEDED(hr)) *joined += piece;
    return hr;
}

} // namespace

HRESULT varCat(const Variant& l, const Variant& r, Variant* out) {
    if (out == &l && l.vt() == VT_BSTR && isOperand(r)) {
        // Text building joins into the left operand where the result replaces it, as in a
        // running "a" & b & c: no copy of what was built so far.
        return guarded([&] { return appendJoinText(r, out->mutableStr()->mutableText()); });
    }
    return operation(out, [&](Variant* o) {
        if (!isOperand(l) || !isOperand(r)) return DISP_E_TYPEMISMATCH;
        if (l.isNull() && r.isNull()) {
            *o = Variant::null();
            return S_OK;
        }
        std::string joined;
        if (l.vt() == VT_BSTR && r.vt() == VT_BSTR)
            joined.reserve(l.str().byteLength() + r.str().byteLength());
        HRESULT hr;
        if (FAILED(hr = appendJoinText(l, &joined)) || FAILED(hr = appendJoinText(r, &joined)))
            return hr;
        *o = Variant(String(std::move(joined)));
        return S_OK;
    });
}

// The operators that work on two Doubles whatever the operands' types: Null gives Null, and
// `f` maps the two numbers to a result or a failure.
template <class F>
HRESULT doubleOperation(const Variant& l, const Variant& r, Variant* out, F&& f) {
    return operation(out, [&](Variant* o) {
        if (!isOperand(l) || !isOperand(r)) return DISP_E_TYPEMISMATCH;
        if (l.isNull() || r.isNull()) {
            *o = Variant::null();
            return S_OK;
        }
        double a, b;
        HRESULT hr;
        if (FAILED(hr = doubleOf(l, kOperatorLocale, &a)) ||
            FAILED(hr = doubleOf(r, kOperatorLocale, &b)))
            return hr;
        double v = 0;
        if (FAILED(hr = f(a, b, &v))) return hr;
        *o = Variant(v);
        return S_OK;
    });
}

namespace {

// A quotient is a Single when a Single is divided by a Single or a narrower whole number (or
// divides one): Integer, Byte, Boolean or Empty. With a Long, or anything else, it is a Double.
bool singleQuotient(const Variant& l, const Variant& r) {
    auto narrow = [](VARTYPE vt) {
        return vt == VT_R4 || vt == VT_I2 || vt == VT_UI1 || vt == VT_BOOL || vt == VT_EMPTY;
    };
    return either(l, r, VT_R4) && narrow(l.vt()) && narrow(r.vt());
}

} // namespace

HRESULT varDiv(const Variant& l, const Variant& r, Variant* out) {
    bool single = singleQuotient(l, r); // before `out`, which may be `l`, changes
    HRESULT hr = doubleOperation(l, r, out, [](double a, double b, double* v) -> HRESULT {
        if (b == 0) return a == 0 ? DISP_E_OVERFLOW : DISP_E_DIVBYZERO; // 0/0 has no value
        *v = a / b;
        return std::isfinite(*v) ? S_OK : DISP_E_OVERFLOW;
    });
    // A Single quotient too large for a Single stays a Double.
    if (SUCCEEDED(hr) && single && out->vt() == VT_R8 && std::fabs(out->r8()) <= FLT_MAX)
        *out = Variant(static_cast<float>(out->r8()));
    return hr;
}

HRESULT varIdiv(const Variant& l, const Variant& r, Variant* out) {
    return operation(out, [&](Variant* o) { return integerDivision(false, l, r, o); });
}

HRESULT varMod(const Variant& l, const Variant& r, Variant* out) {
    return operation(out, [&](Variant* o) { return integerDivision(true, l, r, o); });
}

HRESULT varPow(const Variant& l, const Variant& r, Variant* out) {
    return doubleOperation(l, r, out, [](double a, double b, double* v) -> HRESULT {
        *v = std::pow(a, b);
        if (std::isnan(*v)) return E_INVALIDARG; // a negative number to a fractional power
        if (std::isinf(*v)) return a == 0 ? DISP_E_DIVBYZERO : DISP_E_OVERFLOW;
        return S_OK;
    });
}

HRESULT varNeg(const Variant& v, Variant* out) {
    return operation(out, [&](Variant* o) { return unary(Unary::Neg, v, 0, o); });
}

HRESULT varAbs(const Variant& v, Variant* out) {
    return operation(out, [&](Variant* o) { return unary(Unary::Abs, v, 0, o); });
}

HRESULT varFix(const Variant& v, Variant* out) {
    return operation(out, [&](Variant* o) { return unary(Unary::Fix, v, 0, o); });
}

HRESULT varInt(const Variant& v, Variant* out) {
    return operation(out, [&](Variant* o) { return unary(Unary::Int, v, 0, o); });
}

HRESULT varRound(const Variant& v, int decimals, Variant* out) {
    if (decimals < 0) return E_INVALIDARG;
    return operation(out, [&](Variant* o) { return unary(Unary::Round, v, decimals, o); });
}

} // namespace qvr
