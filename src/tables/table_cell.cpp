#include "tables/table_cell.h"

#include <qvr/table_columns.h>

namespace qvr {
namespace {

// How a column's type reads a cell's text: the target type and the locale of the conversion.
struct TypedReading {
    QVRColumnDataType dataType;
    VARTYPE vt;
    LCID locale;
    std::uint16_t flags;
};

constexpr TypedReading typedReadings[] = {
    {qvrDataTypeInt, VT_I4, LOCALE_USER_DEFAULT, 0},
    {qvrDataTypeFloat, VT_R8, LCID_EN_US, VARIANT_NOUSEROVERRIDE},
};

} // namespace

HRESULT CQVRTableCell::get_value(Variant* value) {
    return guarded([&] {
        if (!value) return E_POINTER;
        if (!initialized()) return notInitialized();
        String text;
        HRESULT hr = element()->get_text(&text);
        if (FAILED(hr)) {
            *value = Variant();
            return hr;
        }
        *value = Variant(std::move(text));
        if (!parentCookie()) return S_OK; // in no column: the text stands
        Ref<IQVRTableColumnObject> column = query<IQVRTableColumnObject>(parentRef());
        QVRColumnDataType dataType = qvrDataTypeString;
        if (!column || FAILED(column->get_dataType(&dataType))) return S_OK;
        for (const TypedReading& reading : typedReadings)
            if (reading.dataType == dataType) // a failure leaves the text in `value`
                return changeType(value, *value, reading.locale, reading.flags, reading.vt);
        return S_OK;
    });
}

HRESULT CQVRTableCell::put_value(const Variant& value) {
    return guarded([&] {
        if (!initialized()) return notInitialized();
        // Written as en-US writes it, whatever the user's locale: a float keeps its point.
        Variant text;
        HRESULT hr = changeType(&text, value, LCID_EN_US, 0, VT_BSTR);
        if (hr != S_OK) return hr;
        if ((hr = element()->put_text(text.str())) == S_OK) fireChanged();
        return hr;
    });
}

} // namespace qvr
