#include "tables/const_column.h"

namespace qvr {
namespace {

// `text` read as a number under `from` and written under `to`; a text that is no number stays as
// it is. The status is that of writing.
HRESULT renumbered(const String& text, LCID from, std::uint16_t fromFlags, LCID to,
                   std::uint16_t toFlags, String* out) {
    Variant value(text);
    changeType(&value, value, from, fromFlags, VT_R8);
    const HRESULT hr = changeType(&value, value, to, toFlags, VT_BSTR);
    if (hr == S_OK) *out = value.str();
    return hr;
}

} // namespace

HRESULT CQVRTableConstColumn::get_constant(String* constant) {
    if (!constant) return E_POINTER;
    return guarded([&] {
        if (!initialized()) return notInitialized();
        String stored;
        HRESULT hr = element()->getAttribute("constant", &stored);
        if (hr != S_OK) return hr;
        QVRColumnDataType type = qvrDataTypeString;
        get_dataType(&type);
        if (type != qvrDataTypeFloat) {
            *constant = stored;
            return S_OK;
        }
        // Stored with a point; shown as the user writes numbers.
        return renumbered(stored, LCID_EN_US, VARIANT_NOUSEROVERRIDE, LOCALE_USER_DEFAULT, 0,
                          constant);
    });
}

HRESULT CQVRTableConstColumn::put_constant(const String& constant) {
    return guarded([&] {
        if (!initialized()) return notInitialized();
        QVRColumnDataType type = qvrDataTypeString;
        get_dataType(&type);
        String stored = constant;
        if (type == qvrDataTypeFloat)
            renumbered(constant, LOCALE_USER_DEFAULT, 0, LCID_EN_US, VARIANT_NOUSEROVERRIDE,
                       &stored);
        return accessors::putAttribute(*this, "constant", stored);
    });
}

} // namespace qvr
