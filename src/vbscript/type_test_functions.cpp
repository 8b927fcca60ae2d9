// IsArray, IsDate, IsEmpty, IsNull, IsNumeric, IsObject, TypeName, VarType, Array, UBound,
// LBound: questions about a value that never convert it.
#include <vector>

#include "platform/variant/ole_date.h"
#include "vbscript/builtins.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

template <bool (*Test)(Variant&, LCID)>
void isFn(CallContext& cx, Variant* args, int, Variant* out) {
    *out = Variant(Test(args[0], cx.lcid));
}

bool isArray(Variant& v, LCID) {
    return v.isArray();
}
bool isEmpty(Variant& v, LCID) {
    return v.isEmpty();
}
bool isNull(Variant& v, LCID) {
    return v.isNull();
}
bool isObject(Variant& v, LCID) {
    return v.isObject();
}

bool isDate(Variant& v, LCID lcid) {
    if (v.vt() == VT_DATE) return true;
    if (v.vt() != VT_BSTR) return false;
    DATE d;
    return SUCCEEDED(parseDate(v.str().view(), lcid, &d));
}

bool isNumeric(Variant& v, LCID lcid) {
    switch (v.vt()) {
    case VT_EMPTY:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_BOOL:
    case VT_UI1:
    case VT_DECIMAL: return true;
    case VT_BSTR: {
        Variant out;
        return SUCCEEDED(changeType(&out, v, lcid, 0, VT_R8));
    }
    default: return false;
    }
}

struct TypeNameOf {
    VARTYPE vt;
    const char* name;
};

constexpr TypeNameOf kTypeNames[] = {
    {VT_EMPTY, "Empty"},     {VT_NULL, "Null"},   {VT_I2, "Integer"},   {VT_I4, "Long"},
    {VT_R4, "Single"},       {VT_R8, "Double"},   {VT_CY, "Currency"},  {VT_DATE, "Date"},
    {VT_BSTR, "String"},     {VT_ERROR, "Error"}, {VT_BOOL, "Boolean"}, {VT_UNKNOWN, "Unknown"},
    {VT_DECIMAL, "Decimal"}, {VT_UI1, "Byte"},
};

void typeNameFn(CallContext&, Variant* args, int, Variant* out) {
    const Variant& v = args[0];
    const char* name = "Unknown";
    if (v.isArray())
        name = "Variant()";
    else if (v.vt() == VT_DISPATCH)
        name = v.object() ? "Object" : "Nothing";
    else
        for (const TypeNameOf& t : kTypeNames)
            if (t.vt == v.vt()) name = t.name;
    *out = textResult(name);
}

void varTypeFn(CallContext&, Variant* args, int, Variant* out) {
    VARTYPE vt = args[0].isArray() ? static_cast<VARTYPE>(VT_ARRAY | VT_VARIANT) : args[0].vt();
    *out = Variant(static_cast<std::int16_t>(vt));
}

void arrayFn(CallContext&, Variant* args, int argc, Variant* out) {
    std::vector<Variant> items;
    items.reserve(static_cast<std::size_t>(argc));
    for (int i = 0; i < argc; ++i) items.push_back(std::move(args[i]));
    *out = Variant::array(std::move(items));
}

// UBound and LBound: arrays have one dimension here.
void bound(CallContext& cx, Variant* args, int argc, Variant* out, bool upper) {
    const Variant& a = args[0];
    if (!a.isArray()) raise(kTypeMismatch);
    if (optionalLong(args, argc, 1, 1, cx.lcid) != 1) raise(kSubscriptOutOfRange);
    std::int32_t lower = a.lowerBound();
    *out = Variant(upper ? lower + static_cast<std::int32_t>(a.items().size()) - 1 : lower);
}

void uboundFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    bound(cx, args, argc, out, true);
}
void lboundFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    bound(cx, args, argc, out, false);
}

constexpr Builtin kInspection[] = {
    {"Array", 0, 255, kPure, arrayFn},         {"IsArray", 1, 1, kPure, isFn<isArray>},
    {"IsDate", 1, 1, kPure, isFn<isDate>},     {"IsEmpty", 1, 1, kPure, isFn<isEmpty>},
    {"IsNull", 1, 1, kPure, isFn<isNull>},     {"IsNumeric", 1, 1, kPure, isFn<isNumeric>},
    {"IsObject", 1, 1, kPure, isFn<isObject>}, {"LBound", 1, 2, kPure, lboundFn},
    {"TypeName", 1, 1, kPure, typeNameFn},     {"UBound", 1, 2, kPure, uboundFn},
    {"VarType", 1, 1, kPure, varTypeFn},
};

} // namespace

std::span<const Builtin> inspectionBuiltins() {
    return kInspection;
}

} // namespace qvr::vbscript
