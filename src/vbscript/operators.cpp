#include "vbscript/operators.h"

#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

bool isNumberLike(VARTYPE vt) {
    switch (vt) {
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BOOL:
    case VT_UI1:
    case VT_DECIMAL: return true;
    default: return false;
    }
}

using ArithmeticFn = HRESULT (*)(const Variant&, const Variant&, Variant*);

ArithmeticFn arithmeticOf(Op op) {
    switch (op) {
    case Op::Pow: return varPow;
    case Op::Mul: return varMul;
    case Op::Div: return varDiv;
    case Op::IntDiv: return varIdiv;
    case Op::Mod: return varMod;
    case Op::Add: return varAdd;
    case Op::Sub: return varSub;
    case Op::Concat: return varCat;
    case Op::And: return varAnd;
    case Op::Or: return varOr;
    case Op::Xor: return varXor;
    case Op::Eqv: return varEqv;
    case Op::Imp: return varImp;
    default: return nullptr;
    }
}

// The type a string is read as when it meets a literal of type `vt`.
// A Boolean is a number here, so "-1" = True holds and "True" = True is a type mismatch.
VARTYPE readStringAs(VARTYPE vt) {
    return vt == VT_DATE ? vt : static_cast<VARTYPE>(VT_R8);
}

// -1, 0, 1, or 2 for Null. A number and a string compare by the literal rule: a literal number
// makes the string a number, a literal string makes the number a string, and between two
// non-literals the number is the smaller.
int compare(const Variant& l, const Variant& r, std::uint8_t flags, LCID lcid) {
    if (l.isNull() || r.isNull()) return 2;
    bool ls = l.vt() == VT_BSTR, rs = r.vt() == VT_BSTR;
    if (ls != rs && isNumberLike(ls ? r.vt() : l.vt())) {
        const Variant& text = ls ? l : r;
        const Variant& number = ls ? r : l;
        bool numberLiteral = (flags & (ls ? kRightLiteral : kLeftLiteral)) != 0;
        bool textLiteral = (flags & (ls ? kLeftLiteral : kRightLiteral)) != 0;
        Variant converted;
        HRESULT hr;
        if (numberLiteral) {
            check(changeType(&converted, text, lcid, 0, readStringAs(number.vt())));
            hr = ls ? varCmp(converted, number, lcid, 0) : varCmp(number, converted, lcid, 0);
        } else if (textLiteral) {
            check(changeType(&converted, number, lcid, VARIANT_ALPHABOOL, VT_BSTR));
            hr = ls ? varCmp(text, converted, lcid, 0) : varCmp(converted, text, lcid, 0);
        } else {
            return ls ? 1 : -1;
        }
        check(hr);
        return hr == VARCMP_LT ? -1 : hr == VARCMP_GT ? 1 : 0;
    }
    HRESULT hr = varCmp(l, r, lcid, 0);
    check(hr);
    if (hr == VARCMP_NULL) return 2;
    return hr == VARCMP_LT ? -1 : hr == VARCMP_GT ? 1 : 0;
}

bool comparisonHolds(Op op, int c) {
    switch (op) {
    case Op::Eq: return c == 0;
    case Op::Ne: return c != 0;
    case Op::Lt: return c < 0;
    case Op::Gt: return c > 0;
    case Op::Le: return c <= 0;
    default: return c >= 0; // Ge
    }
}

} // namespace

int errorFromStatus(HRESULT status) {
    if ((static_cast<std::uint32_t>(status) & 0xFFFF0000u) == 0x800A0000u) return status & 0xFFFF;
    switch (status) {
    case DISP_E_TYPEMISMATCH: return kTypeMismatch;
    case DISP_E_OVERFLOW: return kOverflow;
    case DISP_E_DIVBYZERO: return kDivisionByZero;
    case E_OUTOFMEMORY: return kOutOfMemory;
    case E_INVALIDARG: return kInvalidCall;
    case DISP_E_BADVARTYPE: return kUnsupportedAutomationType;
    case DISP_E_BADINDEX: return kSubscriptOutOfRange;
    case DISP_E_BADPARAMCOUNT: return kWrongArgumentCount;
    case DISP_E_PARAMNOTOPTIONAL: return kArgumentNotOptional;
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME: return kMemberNotFound;
    case DISP_E_NONAMEDARGS: return kNamedArgumentNotFound;
    default: return kInternalError;
    }
}

void check(HRESULT status) {
    if (FAILED(status)) raise(errorFromStatus(status));
}

void applyBinary(Op op, std::uint8_t flags, const Variant& left, const Variant& right, LCID lcid,
                 Variant* out) {
    if (op == Op::Concat && left.vt() == VT_BSTR && right.vt() == VT_BSTR &&
        left.str().byteLength() + right.str().byteLength() > kMaxStringUnits * 3)
        raise(kOutOfStringSpace); // more than the UTF-8 of that many units: not even built
    if (ArithmeticFn fn = arithmeticOf(op)) {
        check(fn(left, right, out)); // `out` is unchanged on failure, even when it is `left`
        if (op == Op::Concat && out->vt() == VT_BSTR) checkTextLength(out->str().view());
        return;
    }
    if (op == Op::Is) {
        if (!left.isObject() || !right.isObject()) raise(kObjectRequired);
        *out = Variant(left.object() == right.object());
        return;
    }
    int c = compare(left, right, flags, lcid);
    *out = c == 2 ? Variant::null() : Variant(comparisonHolds(op, c));
}

void applyUnary(Op op, Variant& value) {
    Variant out;
    check(op == Op::Neg ? varNeg(value, &out) : varNot(value, &out));
    value = std::move(out);
}

} // namespace qvr::vbscript
