#include "platform/variant/coerce.h"

#include <cfloat>
#include <cmath>
#include <limits>

#include "platform/com/failure.h"
#include "platform/variant/locale_info.h"
#include "platform/variant/number_text.h"
#include "platform/variant/ole_date.h"

namespace qvr {
namespace {

// Doubles whose rounded value certainly fits 64 bits.
constexpr double kInt64Limit = 9.2233720368547748e18;

HRESULT roundToInteger(double value, std::int64_t* out) {
    if (!(std::fabs(value) < kInt64Limit)) return DISP_E_OVERFLOW;
    *out = static_cast<std::int64_t>(roundHalfEven(value));
    return S_OK;
}

// Currency units of 1/10,000 to a whole number, half to even.
std::int64_t currencyToInteger(std::int64_t cy) {
    std::int64_t whole = cy / 10000, rest = cy % 10000;
    if (rest > 5000 || (rest == 5000 && (whole & 1))) ++whole;
    if (rest < -5000 || (rest == -5000 && (whole & 1))) --whole;
    return whole;
}

HRESULT parseText(const String& text, LCID lcid, ParsedNumber* out) {
    return parseNumber(text.view(), localeInfo(lcid), out);
}

// The boolean words of the locale or of English, in any case.
bool boolWord(std::string_view text, LCID lcid, bool* out) {
    std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return false;
    text = text.substr(first, text.find_last_not_of(" \t") - first + 1);
    const LocaleInfo& locale = localeInfo(lcid);
    String word(text);
    if (word.equalsIgnoreCase("True") || word.equalsIgnoreCase("#TRUE#") ||
        word.equalsIgnoreCase(locale.trueName)) {
        *out = true;
        return true;
    }
    if (word.equalsIgnoreCase("False") || word.equalsIgnoreCase("#FALSE#") ||
        word.equalsIgnoreCase(locale.falseName)) {
        *out = false;
        return true;
    }
    return false;
}

Variant fromInteger(VARTYPE vt, std::int64_t v) {
    switch (vt) {
    case VT_I2: return Variant(static_cast<std::int16_t>(v));
    case VT_I4: return Variant(static_cast<std::int32_t>(v));
    default: return Variant::byte(static_cast<std::uint8_t>(v));
    }
}

HRESULT convert(const Variant& src, LCID lcid, std::uint16_t flags, VARTYPE vt, Variant* out) {
    VARTYPE from = src.vt();
    if (vt == from || vt == VT_VARIANT) {
        *out = src;
        return S_OK;
    }
    if ((vt & VT_ARRAY) || src.isArray()) return DISP_E_TYPEMISMATCH;
    switch (vt) {
    case VT_EMPTY:
        if (from == VT_NULL) return DISP_E_TYPEMISMATCH;
        *out = Variant();
        return S_OK;
    case VT_NULL:
        if (from != VT_EMPTY) return DISP_E_TYPEMISMATCH;
        *out = Variant::null();
        return S_OK;
    case VT_I2:
    case VT_I4:
    case VT_UI1: {
        if (vt == VT_I4 && from == VT_ERROR) {
            *out = Variant(static_cast<std::int32_t>(src.scode()));
            return S_OK;
        }
        if (vt == VT_UI1 && from == VT_BOOL) {
            // True is all bits set, which in a byte reads 255.
            *out = Variant::byte(src.boolVal() ? 255 : 0);
            return S_OK;
        }
        std::int64_t v;
        HRESULT hr = integerOf(src, lcid, vt == VT_I2 ? 16 : 32, &v);
        if (FAILED(hr)) return hr;
        bool fits = vt == VT_I2   ? v >= -32768 && v <= 32767
                    : vt == VT_I4 ? v >= std::numeric_limits<std::int32_t>::min() &&
                                        v <= std::numeric_limits<std::int32_t>::max()
                                  : v >= 0 && v <= 255;
        if (!fits) return DISP_E_OVERFLOW;
        *out = fromInteger(vt, v);
        return S_OK;
    }
    case VT_R4:
    case VT_R8: {
        double v;
        HRESULT hr = doubleOf(src, lcid, &v);
        if (FAILED(hr)) return hr;
        if (vt == VT_R8) {
            *out = Variant(v);
            return S_OK;
        }
        if (std::fabs(v) > FLT_MAX) return DISP_E_OVERFLOW;
        *out = Variant(static_cast<float>(v));
        return S_OK;
    }
    case VT_CY: {
        std::int64_t v;
        HRESULT hr = currencyOf(src, lcid, &v);
        if (FAILED(hr)) return hr;
        *out = Variant::currency(CY{v});
        return S_OK;
    }
    case VT_DATE: {
        DATE v;
        HRESULT hr = dateOf(src, lcid, &v);
        if (FAILED(hr)) return hr;
        *out = Variant::date(v);
        return S_OK;
    }
    case VT_BOOL: {
        bool v;
        HRESULT hr = boolOf(src, lcid, &v);
        if (FAILED(hr)) return hr;
        *out = Variant(v);
        return S_OK;
    }
    case VT_BSTR: {
        std::string text;
        HRESULT hr = textOf(src, lcid, flags, &text);
        if (FAILED(hr)) return hr;
        *out = Variant(String(std::move(text)));
        return S_OK;
    }
    case VT_ERROR:
        if (from != VT_I4) return DISP_E_TYPEMISMATCH;
        *out = Variant::error(src.i4());
        return S_OK;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (from != VT_EMPTY && from != VT_DISPATCH && from != VT_UNKNOWN)
            return DISP_E_TYPEMISMATCH;
        *out = vt == VT_DISPATCH ? Variant(src.object()) : Variant::unknown(src.object());
        return S_OK;
    default: return DISP_E_BADVARTYPE;
    }
}

} // namespace

HRESULT integerOf(const Variant& v, LCID lcid, int radixWidth, std::int64_t* out) {
    switch (v.vt()) {
    case VT_EMPTY: *out = 0; return S_OK;
    case VT_BOOL: *out = v.boolVal() ? -1 : 0; return S_OK;
    case VT_I2: *out = v.i2(); return S_OK;
    case VT_I4: *out = v.i4(); return S_OK;
    case VT_UI1: *out = v.ui1(); return S_OK;
    case VT_R4: return roundToInteger(v.r4(), out);
    case VT_R8: return roundToInteger(v.r8(), out);
    case VT_DATE: return roundToInteger(v.dateValue(), out);
    case VT_CY: *out = currencyToInteger(v.cy().int64); return S_OK;
    case VT_BSTR: {
        ParsedNumber n;
        HRESULT hr = parseText(v.str(), lcid, &n);
        if (FAILED(hr)) return hr;
        if (n.radix) {
            if (n.bits > 0xFFFFFFFF) return DISP_E_OVERFLOW;
            std::int64_t value = radixWidth == 16 && n.bits <= 0xFFFF
                                     ? std::int64_t{static_cast<std::int16_t>(n.bits)}
                                     : std::int64_t{static_cast<std::int32_t>(n.bits)};
            *out = n.negative ? -value : value;
            return S_OK;
        }
        return n.toInteger(out) ? S_OK : DISP_E_OVERFLOW;
    }
    default: return DISP_E_TYPEMISMATCH;
    }
}

HRESULT doubleOf(const Variant& v, LCID lcid, double* out) {
    switch (v.vt()) {
    case VT_EMPTY: *out = 0; return S_OK;
    case VT_BOOL: *out = v.boolVal() ? -1 : 0; return S_OK;
    case VT_I2: *out = v.i2(); return S_OK;
    case VT_I4: *out = v.i4(); return S_OK;
    case VT_UI1: *out = v.ui1(); return S_OK;
    case VT_R4: *out = v.r4(); return S_OK;
    case VT_R8: *out = v.r8(); return S_OK;
    case VT_DATE: *out = v.dateValue(); return S_OK;
    case VT_CY: *out = static_cast<double>(v.cy().int64) / 10000.0; return S_OK;
    case VT_BSTR: {
        ParsedNumber n;
        HRESULT hr = parseText(v.str(), lcid, &n);
        if (FAILED(hr)) return hr;
        double d = n.toDouble();
        if (std::isinf(d)) return DISP_E_OVERFLOW;
        *out = d;
        return S_OK;
    }
    default: return DISP_E_TYPEMISMATCH;
    }
}

HRESULT currencyOf(const Variant& v, LCID lcid, std::int64_t* out) {
    switch (v.vt()) {
    case VT_CY: *out = v.cy().int64; return S_OK;
    case VT_BSTR: {
        ParsedNumber n;
        HRESULT hr = parseText(v.str(), lcid, &n);
        if (FAILED(hr)) return hr;
        return n.toCurrency(out) ? S_OK : DISP_E_OVERFLOW;
    }
    default: {
        double d;
        HRESULT hr = doubleOf(v, lcid, &d);
        if (FAILED(hr)) return hr;
        // Scaled in extended precision the product is exact for every value in range, so a
        // Double just above a half (1.23465) rounds up and large whole numbers keep their units.
        long double scaled = std::nearbyintl(static_cast<long double>(d) * 10000.0L);
        if (!(std::fabs(scaled) < 9223372036854775808.0L)) return DISP_E_OVERFLOW;
        *out = static_cast<std::int64_t>(scaled);
        return S_OK;
    }
    }
}

HRESULT dateOf(const Variant& v, LCID lcid, DATE* out) {
    double d;
    if (v.vt() == VT_BSTR) {
        HRESULT hr = parseDate(v.str().view(), lcid, &d);
        if (FAILED(hr)) return hr;
    } else {
        HRESULT hr = doubleOf(v, lcid, &d);
        if (FAILED(hr)) return hr;
    }
    if (!isValidDate(d)) return DISP_E_OVERFLOW;
    *out = d;
    return S_OK;
}

HRESULT boolOf(const Variant& v, LCID lcid, bool* out) {
    switch (v.vt()) {
    case VT_BOOL: *out = v.boolVal() != 0; return S_OK;
    case VT_CY: *out = v.cy().int64 != 0; return S_OK;
    case VT_BSTR:
        if (boolWord(v.str().view(), lcid, out)) return S_OK;
        [[fallthrough]];
    default: {
        double d;
        HRESULT hr = doubleOf(v, lcid, &d);
        if (FAILED(hr)) return hr;
        *out = d != 0;
        return S_OK;
    }
    }
}

HRESULT textOf(const Variant& v, LCID lcid, std::uint16_t flags, std::string* out) {
    switch (v.vt()) {
    case VT_EMPTY: out->clear(); return S_OK;
    case VT_BSTR: *out = v.str().str(); return S_OK;
    case VT_BOOL: {
        bool b = v.boolVal() != 0;
        if (flags & VARIANT_LOCALBOOL) {
            const LocaleInfo& locale = localeInfo(lcid);
            *out = b ? locale.trueName : locale.falseName;
        } else if (flags & VARIANT_ALPHABOOL) {
            *out = b ? "True" : "False";
        } else {
            *out = b ? "-1" : "0";
        }
        return S_OK;
    }
    case VT_I2: *out = formatInteger(v.i2()); return S_OK;
    case VT_I4: *out = formatInteger(v.i4()); return S_OK;
    case VT_UI1: *out = formatInteger(v.ui1()); return S_OK;
    case VT_R4: *out = formatSingle(v.r4(), lcid); return S_OK;
    case VT_R8: *out = formatDouble(v.r8(), lcid); return S_OK;
    case VT_CY: *out = formatCurrency(v.cy(), lcid); return S_OK;
    case VT_DATE:
        if (!isValidDate(v.dateValue())) return E_INVALIDARG;
        *out = formatDate(v.dateValue(), lcid);
        return S_OK;
    default: return DISP_E_TYPEMISMATCH;
    }
}

HRESULT changeType(Variant* dest, const Variant& src, LCID lcid, std::uint16_t flags, VARTYPE vt) {
    if (!dest) return E_INVALIDARG;
    return guarded([&] {
        Variant result;
        HRESULT hr = convert(src, lcid, flags, vt, &result);
        if (SUCCEEDED(hr)) *dest = std::move(result);
        return hr;
    });
}

} // namespace qvr
