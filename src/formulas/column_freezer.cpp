#include "formulas/column_freezer.h"

#include "core/object_factory.h"

namespace qvr {

HRESULT ColumnFreezer::freezeAll(IQVRCatalogTable* table, IXMLDOMElement* root, VARIANT_BOOL* ok) {
    *ok = VARIANT_FALSE;
    Ref<IXMLDOMNodeList> calculated;
    std::int32_t count = 0;
    HRESULT hr = root->selectNodes("/vCATTable/ColumnCalc", &calculated);
    if (hr == S_OK) hr = calculated->get_length(&count);
    if (hr != S_OK) return hr;
    if (count > 0) {
        Ref<IXMLDOMNodeList> rows;
        if ((hr = root->selectNodes("/vCATTable/ColumnUnique/RowUnique", &rows)) != S_OK) return hr;
        for (std::int32_t i = 0; i < count && hr == S_OK; ++i) {
            Ref<IXMLDOMNode> node;
            Ref<IQVRCatalogObject> object;
            if ((hr = calculated->get_item(i, &node)) != S_OK) break;
            if ((hr = createObjectOf(node, table, table, &object)) != S_OK) break;
            Ref<IQVRTableCalculatedColumn> column = query<IQVRTableCalculatedColumn>(object);
            if (!column) {
                hr = E_NOINTERFACE;
                break;
            }
            if ((hr = freezeColumn(table, column, rows)) == S_OK)
                hr = table->removeChild(column, nullptr);
        }
    }
    if (hr == S_OK) *ok = VARIANT_TRUE;
    return hr;
}

HRESULT ColumnFreezer::freezeColumn(IQVRCatalogTable* table, IQVRTableCalculatedColumn* column,
                                    IXMLDOMNodeList* rows) {
    std::int32_t count = 0;
    HRESULT hr = rows->get_length(&count);
    if (FAILED(hr)) return hr;
    if (count == 0) return S_FALSE;

    // The description of the twin; what cannot be read stays at its default.
    QVRColumnDataType dataType = qvrDataTypeString;
    String name, attrib, desc, unit;
    VARIANT_BOOL visible = VARIANT_TRUE;
    column->get_dataType(&dataType);
    column->get_name(&name);
    column->get_attrib(&attrib);
    column->get_desc(&desc);
    column->get_unit(&unit);
    column->get_visible(&visible);
    Ref<IQVRTableColumn> twin;
    if ((hr = table->createColumn(dataType, name, attrib, desc, unit, visible, &twin)) != S_OK)
        return hr;
    if ((hr = table->insertBefore(twin, Variant(static_cast<IUnknown*>(column)), nullptr)) != S_OK)
        return hr;

    for (std::int32_t i = 0; i < count && hr == S_OK; ++i) {
        Ref<IXMLDOMNode> row;
        String key;
        Variant value;
        Ref<IQVRTableCell> cell;
        if ((hr = rows->get_item(i, &row)) != S_OK || (hr = row->get_text(&key)) != S_OK) break;
        if ((hr = column->calculate(Variant(key), &value)) != S_OK) break;
        if ((hr = table->createCell(key, value, &cell)) != S_OK) break;
        hr = twin->appendChild(cell, nullptr);
    }
    if (hr != S_OK) table->removeChild(twin, nullptr);
    return hr;
}

} // namespace qvr
