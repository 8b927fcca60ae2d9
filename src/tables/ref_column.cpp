#include "tables/ref_column.h"

#include "core/ids.h"

namespace qvr {

HRESULT CQVRTableRefColumn::describeNew(std::int32_t role, const String& name, const String& desc,
                                        std::int32_t show, std::int32_t actuate,
                                        VARIANT_BOOL visible) {
    if (!accessors::namesNumber(roleNames, role) || !accessors::namesNumber(xlinkShowWords, show) ||
        !accessors::namesNumber(xlinkActuateWords, actuate))
        return E_INVALIDARG;
    IXMLDOMElement* column = element();
    HRESULT hr = column->setAttribute("id", newColumnId());
    if (hr == S_OK) hr = column->setAttribute("name", name.isNull() ? String("") : name);
    if (hr == S_OK) hr = column->setAttribute("role", roleNames[role]);
    if (hr == S_OK && !desc.isEmpty()) hr = column->setAttribute("desc", desc);
    if (hr == S_OK && show != qvrShowUndefined)
        hr = column->setAttribute("show", xlinkShowWords[show]);
    if (hr == S_OK && actuate != qvrActuateUndefined)
        hr = column->setAttribute("actuate", xlinkActuateWords[actuate]);
    if (hr == S_OK && visible == VARIANT_FALSE) hr = column->setAttribute("visible", "0");
    return hr;
}

} // namespace qvr
