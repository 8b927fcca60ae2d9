// Short constructors of typed variants for the tables of the variant tests.
#pragma once

#include <cmath>
#include <ostream>

#include <qvr/variant.h>

namespace qvr {

inline Variant I2(int v) {
    return Variant(static_cast<std::int16_t>(v));
}
inline Variant I4(std::int32_t v) {
    return Variant(v);
}
inline Variant R4(float v) {
    return Variant(v);
}
inline Variant R8(double v) {
    return Variant(v);
}
inline Variant Str(const char* s) {
    return Variant(s);
}
inline Variant Bool(bool b) {
    return Variant(b);
}
inline Variant Byte(int b) {
    return Variant::byte(static_cast<std::uint8_t>(b));
}
inline Variant Cy(double v) {
    return Variant::currency(CY{std::llround(v * 10000)});
}
inline Variant Date(double d) {
    return Variant::date(d);
}
inline Variant Null() {
    return Variant::null();
}
inline Variant Empty() {
    return Variant();
}

// Readable variants in the messages of failed expectations.
inline std::ostream& operator<<(std::ostream& os, const Variant& v) {
    os << "vt " << v.vt() << " ";
    switch (v.vt()) {
    case VT_I2: return os << v.i2();
    case VT_I4: return os << v.i4();
    case VT_R4: return os << v.r4();
    case VT_R8: return os << v.r8();
    case VT_CY: return os << v.cy().int64 << "/10000";
    case VT_DATE: return os << v.dateValue();
    case VT_BOOL: return os << v.boolVal();
    case VT_UI1: return os << int(v.ui1());
    case VT_ERROR: return os << std::hex << v.scode() << std::dec;
    case VT_BSTR: return os << '"' << v.str() << '"';
    default: return os;
    }
}

} // namespace qvr
