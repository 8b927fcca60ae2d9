// What the operators share: which variants they accept, the result types of the integer family
// with their promotion on overflow, and the locale in which they read text.
#pragma once

#include <cstdint>

#include <qvr/variant.h>

namespace qvr {

// Operators read text under the user's locale, as the script language does.
constexpr LCID kOperatorLocale = LOCALE_USER_DEFAULT;

// Empty, Null, numbers, dates, text and booleans; objects, arrays and errors are not operands.
bool isOperand(const Variant& v);

// True when either side has type `vt`.
inline bool either(const Variant& l, const Variant& r, VARTYPE vt) {
    return l.vt() == vt || r.vt() == vt;
}

// An integer result of type `vt` (VT_UI1, VT_I2 or VT_I4); a value that does not fit moves up
// to Integer, Long and, if `toDouble`, Double, else DISP_E_OVERFLOW.
HRESULT integerResult(std::int64_t value, VARTYPE vt, bool toDouble, Variant* out);

} // namespace qvr
