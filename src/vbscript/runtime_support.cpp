#include "vbscript/runtime_support.h"

#include <qvr/error_info.h>

#include "vbscript/operators.h"
#include "vbscript/script_error.h"
#include "vbscript/script_object.h"
#include "vbscript/text16.h"

namespace qvr::vbscript {

void checkStringLength(std::size_t units) {
    if (units > kMaxStringUnits) raise(kOutOfStringSpace);
}

void checkTextLength(std::string_view utf8) {
    // A text never has more units than bytes, so only a long one is counted.
    if (utf8.size() > kMaxStringUnits) checkStringLength(utf16Length(utf8));
}

void resolveDefault(Variant& v) {
    if (!v.isObject()) return;
    if (!v.object()) raise(kObjectVariableNotSet);
    Ref<IScriptObject> object = query<IScriptObject>(v.object());
    if (!object) raise(kMemberNotFound);
    Variant value;
    HRESULT hr = object->invoke(String(""), nullptr, 0, &value);
    if (FAILED(hr)) {
        int n = errorFromStatus(hr);
        if (n != kInternalError) raise(n);
        ErrorInfo info;
        bool reported = GetErrorInfo(&info);
        throw ScriptError::foreign(hr, reported ? info.description.str() : std::string());
    }
    if (value.isObject()) raise(kTypeMismatch); // a default value must be a value
    v = std::move(value);
}

bool anyNull(const Variant* args, int argc) {
    for (int i = 0; i < argc; ++i)
        if (args[i].isNull()) return true;
    return false;
}

Variant convertTo(Variant& v, VARTYPE vt, LCID lcid) {
    resolveDefault(v);
    if (v.isNull()) raise(kInvalidUseOfNull);
    if (v.isMissing()) raise(kArgumentNotOptional);
    if (v.vt() == vt) return v;
    Variant out;
    check(changeType(&out, v, lcid, vt == VT_BSTR ? VARIANT_ALPHABOOL : 0, vt));
    return out;
}

double toDouble(Variant& v, LCID lcid) {
    if (v.vt() == VT_R8) return v.r8();
    return convertTo(v, VT_R8, lcid).r8();
}

std::int32_t toLong(Variant& v, LCID lcid) {
    if (v.vt() == VT_I4) return v.i4();
    if (v.vt() == VT_I2) return v.i2();
    return convertTo(v, VT_I4, lcid).i4();
}

DATE toDate(Variant& v, LCID lcid) {
    return convertTo(v, VT_DATE, lcid).dateValue();
}

std::string toText(Variant& v, LCID lcid) {
    if (v.vt() == VT_BSTR) return v.str().str();
    return convertTo(v, VT_BSTR, lcid).str().str();
}

std::string_view textView(Variant& v, LCID lcid, std::string& storage) {
    if (v.vt() == VT_BSTR) return v.str().view();
    storage = convertTo(v, VT_BSTR, lcid).str().str();
    return storage;
}

std::int32_t optionalLong(Variant* args, int argc, int i, std::int32_t fallback, LCID lcid) {
    return present(args, argc, i) ? toLong(args[i], lcid) : fallback;
}

bool textCompare(Variant* args, int argc, int i, LCID lcid) {
    std::int32_t mode = optionalLong(args, argc, i, 0, lcid);
    if (mode != 0 && mode != 1) raise(kInvalidCall);
    return mode != 0;
}

} // namespace qvr::vbscript
