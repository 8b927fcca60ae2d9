// The logical operators of the variant (Not, And, Or, Xor, Eqv, Imp), bitwise on integers and
// three-valued with Null, and the comparison of two variants.
#include <limits>

#include "platform/com/failure.h"
#include "platform/variant/coerce.h"
#include "platform/variant/operands.h"

namespace qvr {
namespace {

// An operand of a logical operator: Null, a boolean, or an integer of a width.
struct Bits {
    VARTYPE vt = VT_NULL; // VT_NULL, VT_BOOL, VT_UI1, VT_I2 or VT_I4
    std::int64_t value = 0;
};

// Booleans stay booleans, Byte, Integer and Long keep their width, Empty is the Integer 0 and
// every other number is rounded to a Long. Text that names a boolean is that boolean.
HRESULT bitsOf(const Variant& v, Bits* out) {
    switch (v.vt()) {
    case VT_NULL: *out = {VT_NULL, 0}; return S_OK;
    case VT_EMPTY: *out = {VT_I2, 0}; return S_OK;
    case VT_BOOL: *out = {VT_BOOL, v.boolVal() ? -1 : 0}; return S_OK;
    case VT_UI1: *out = {VT_UI1, v.ui1()}; return S_OK;
    case VT_I2: *out = {VT_I2, v.i2()}; return S_OK;
    case VT_I4: *out = {VT_I4, v.i4()}; return S_OK;
    case VT_BSTR: {
        double number;
        bool word;
        if (FAILED(doubleOf(v, kOperatorLocale, &number)) &&
            SUCCEEDED(boolOf(v, kOperatorLocale, &word))) {
            *out = {VT_BOOL, word ? -1 : 0};
            return S_OK;
        }
        [[fallthrough]];
    }
    default: {
        if (!isOperand(v)) return DISP_E_TYPEMISMATCH;
        std::int64_t value;
        HRESULT hr = integerOf(v, kOperatorLocale, 32, &value);
        if (FAILED(hr)) return hr;
        if (value < std::numeric_limits<std::int32_t>::min() ||
            value > std::numeric_limits<std::int32_t>::max())
            return DISP_E_OVERFLOW;
        *out = {VT_I4, value};
        return S_OK;
    }
    }
}

VARTYPE commonType(VARTYPE a, VARTYPE b) {
    if (a == VT_NULL) return b;
    if (b == VT_NULL) return a;
    if (a == b) return a;
    if (a == VT_I4 || b == VT_I4) return VT_I4;
    return VT_I2; // Byte with Integer or boolean, boolean with Integer
}

std::int64_t allOnes(VARTYPE vt) {
    return vt == VT_UI1 ? 0xFF : -1;
}

std::int64_t narrow(std::int64_t v, VARTYPE vt) {
    switch (vt) {
    case VT_UI1: return v & 0xFF;
    case VT_I2: return static_cast<std::int16_t>(v);
    case VT_I4: return static_cast<std::int32_t>(v);
    default: return v == 0 ? 0 : -1;
    }
}

Variant make(std::int64_t v, VARTYPE vt) {
    v = narrow(v, vt);
    switch (vt) {
    case VT_BOOL: return Variant(v != 0);
    case VT_UI1: return Variant::byte(static_cast<std::uint8_t>(v));
    case VT_I2: return Variant(static_cast<std::int16_t>(v));
    default: return Variant(static_cast<std::int32_t>(v));
    }
}

enum class Logic { And, Or, Xor, Eqv, Imp };

std::int64_t applyLogic(Logic op, std::int64_t a, std::int64_t b) {
    switch (op) {
    case Logic::And: return a & b;
    case Logic::Or: return a | b;
    case Logic::Xor: return a ^ b;
    case Logic::Eqv: return ~(a ^ b);
    case Logic::Imp: return ~a | b;
    }
    return 0;
}

// With Null on one side the result is known only where the other side decides it alone:
// False And Null is False, True Or Null is True, False Imp Null and Null Imp True are True.
bool decidedWithNull(Logic op, const Bits& known, bool knownIsLeft, std::int64_t* result) {
    std::int64_t ones = allOnes(known.vt), v = narrow(known.value, known.vt);
    switch (op) {
    case Logic::And: *result = 0; return v == 0;
    case Logic::Or: *result = ones; return v == ones;
    case Logic::Imp: *result = ones; return knownIsLeft ? v == 0 : v == ones;
    default: return false;
    }
}

HRESULT logic(Logic op, const Variant& l, const Variant& r, Variant* out) {
    if (!out) return E_INVALIDARG;
    return guarded([&] {
        Bits a, b;
        HRESULT hr;
        if (FAILED(hr = bitsOf(l, &a)) || FAILED(hr = bitsOf(r, &b))) return hr;
        VARTYPE vt = commonType(a.vt, b.vt);
        if (a.vt == VT_NULL || b.vt == VT_NULL) {
            std::int64_t v;
            bool leftKnown = b.vt == VT_NULL;
            if (vt != VT_NULL && decidedWithNull(op, leftKnown ? a : b, leftKnown, &v))
                *out = make(v, vt);
            else
                *out = Variant::null();
            return S_OK;
        }
        *out = make(applyLogic(op, a.value, b.value), vt);
        return S_OK;
    });
}

int compareNumbers(double a, double b) {
    return a < b ? VARCMP_LT : a > b ? VARCMP_GT : VARCMP_EQ;
}

bool isInteger(VARTYPE vt) {
    return vt == VT_EMPTY || vt == VT_BOOL || vt == VT_UI1 || vt == VT_I2 || vt == VT_I4;
}

HRESULT compare(const Variant& l, const Variant& r, std::uint32_t flags) {
    if (!isOperand(l) || !isOperand(r)) return DISP_E_TYPEMISMATCH;
    if (l.isNull() || r.isNull()) return VARCMP_NULL;
    VARTYPE lt = l.vt(), rt = r.vt();
    if ((lt == VT_BSTR || lt == VT_EMPTY) && (rt == VT_BSTR || rt == VT_EMPTY) &&
        (lt == VT_BSTR || rt == VT_BSTR)) {
        // Text with text (Empty is ""), by code points or ignoring case.
        const std::string& a = l.str().str();
        const std::string& b = r.str().str();
        int c = (flags & NORM_IGNORECASE) ? String(a).compareIgnoreCase(b) : a.compare(b);
        return c < 0 ? VARCMP_LT : c > 0 ? VARCMP_GT : VARCMP_EQ;
    }
    if (lt == VT_BSTR) return VARCMP_GT; // every number sorts before every text
    if (rt == VT_BSTR) return VARCMP_LT;
    HRESULT hr;
    if (isInteger(lt) && isInteger(rt)) {
        std::int64_t a, b;
        if (FAILED(hr = integerOf(l, kOperatorLocale, 32, &a)) ||
            FAILED(hr = integerOf(r, kOperatorLocale, 32, &b)))
            return hr;
        return compareNumbers(static_cast<double>(a), static_cast<double>(b));
    }
    if ((lt == VT_CY || isInteger(lt)) && (rt == VT_CY || isInteger(rt))) {
        std::int64_t a, b; // Currency exactly, in units of 1/10,000
        if (FAILED(hr = currencyOf(l, kOperatorLocale, &a)) ||
            FAILED(hr = currencyOf(r, kOperatorLocale, &b)))
            return hr;
        return a < b ? VARCMP_LT : a > b ? VARCMP_GT : VARCMP_EQ;
    }
    double a, b;
    if (FAILED(hr = doubleOf(l, kOperatorLocale, &a)) ||
        FAILED(hr = doubleOf(r, kOperatorLocale, &b)))
        return hr;
    return compareNumbers(a, b);
}

} // namespace

HRESULT varAnd(const Variant& l, const Variant& r, Variant* out) {
    return logic(Logic::And, l, r, out);
}

HRESULT varOr(const Variant& l, const Variant& r, Variant* out) {
    return logic(Logic::Or, l, r, out);
}

HRESULT varXor(const Variant& l, const Variant& r, Variant* out) {
    return logic(Logic::Xor, l, r, out);
}

HRESULT varEqv(const Variant& l, const Variant& r, Variant* out) {
    return logic(Logic::Eqv, l, r, out);
}

HRESULT varImp(const Variant& l, const Variant& r, Variant* out) {
    return logic(Logic::Imp, l, r, out);
}

HRESULT varNot(const Variant& v, Variant* out) {
    if (!out) return E_INVALIDARG;
    return guarded([&] {
        Bits b;
        HRESULT hr = bitsOf(v, &b);
        if (FAILED(hr)) return hr;
        *out = b.vt == VT_NULL ? Variant::null() : make(~b.value, b.vt);
        return S_OK;
    });
}

HRESULT varCmp(const Variant& l, const Variant& r, LCID, std::uint32_t flags) {
    return guarded([&] { return compare(l, r, flags); });
}

} // namespace qvr
