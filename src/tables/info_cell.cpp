#include "tables/info_cell.h"

#include <string>

#include "core/object_factory.h"
#include "core/row_tool.h"
#include "core/value_selection.h"

namespace qvr {
namespace {

// What the cells of each kind of table child are called; the kinds that store none answer with
// msgNoCellsHere and S_FALSE, any other object with E_UNEXPECTED.
struct CellKindRow {
    QVRObjectType owner;
    const char* cellTag; // null: the kind stores no cells
};

constexpr CellKindRow cellKindTable[] = {
    {qvrTableColumn, "Row"},   {qvrRefColumn, "RowRef"},       {qvrView, "Drawing"},
    {qvrConstColumn, nullptr}, {qvrCalculatedColumn, nullptr}, {qvrConstView, nullptr},
};

const CellKindRow* cellKindOf(QVRObjectType type) {
    for (const CellKindRow& row : cellKindTable)
        if (row.owner == type) return &row;
    return nullptr;
}

} // namespace

HRESULT CQVRTableInfoCell::put_idref(const String& id) {
    return guarded([&] {
        if (!initialized()) return notInitialized();
        return element()->setAttribute("id", id.isNull() ? String("") : id);
    });
}

HRESULT CQVRTableInfoCell::put_row(const String& row) {
    return guarded([&] {
        if (!initialized()) return notInitialized();
        String key;
        HRESULT hr = get_key(&key);
        if (FAILED(hr)) return hr;
        if (key == row) return S_OK; // unchanged: nothing to tell
        Ref<IXMLDOMElement> taken;
        hr = RowTool(element()).findRowByValue(row, &taken);
        if (hr != S_FALSE)
            return report(msgDuplicateId, QVR_E_DUPLICATE); // in use, or the lookup failed
        if ((hr = element()->put_text(row)) == S_OK) fireChanged();
        return hr;
    });
}

HRESULT CQVRTableInfoCell::getCell(IQVRCatalogObject* column, Ref<IQVRTableCellObject>* cell) {
    return guarded([&] {
        if (!cell) return E_POINTER;
        if (!column) return E_INVALIDARG;
        *cell = nullptr;
        if (!initialized()) return notInitialized();
        QVRObjectType type;
        HRESULT hr = column->get_objectType(&type);
        if (FAILED(hr)) return hr;
        const CellKindRow* kind = cellKindOf(type);
        if (!kind) return E_UNEXPECTED;
        if (!kind->cellTag) return report(msgNoCellsHere, S_FALSE);
        String id;
        if (FAILED(hr = element()->getAttribute("id", &id))) return hr;
        Ref<IXMLDOMElement> columnNode;
        if (FAILED(hr = column->get_domNode(&columnNode))) return hr;
        if (!columnNode) return E_FAIL;
        // The first child naming this row, by the index of the DOM layer. Only when that child is
        // of another tag (which a column of the model never holds) is the column searched for
        // the first cell of the kind's own tag.
        Ref<IXMLDOMNode> found;
        if ((hr = selectOneWithValue(columnNode, dom::forms::childByIdref, id, &found)) != S_OK)
            return hr;
        String tag;
        if (FAILED(hr = found->get_nodeName(&tag))) return hr;
        if (tag != kind->cellTag &&
            (hr = selectOneWithValue(columnNode, std::string(kind->cellTag) + "[@idref = '", id,
                                     "']", &found)) != S_OK)
            return hr;
        Ref<IQVRCatalogObject> object;
        if ((hr = createObjectOf(found, catalogRef(), column, &object)) != S_OK) return hr;
        *cell = query<IQVRTableCellObject>(object);
        return *cell ? S_OK : E_NOINTERFACE;
    });
}

} // namespace qvr
