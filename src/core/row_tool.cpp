// Every lookup is one of the selection shapes the DOM layer answers from its per-document
// indexes (exactly these texts, by plain concatenation), so that adding, reading and removing a
// cell costs the same in a table of any size.
#include "core/row_tool.h"

#include <string>

#include <qvr/table.h>

#include "core/event_firing.h"
#include "core/event_sinks.h"
#include "core/ids.h"
#include "core/object_factory.h"
#include "core/value_selection.h"

namespace qvr {
namespace {

// The element that `form` selects with `value` below `context`, as an element; S_FALSE and null
// when nothing was found. A value that would end the quoted literal is refused unevaluated.
HRESULT selectElement(IXMLDOMNode* context, const dom::IndexedForm& form, const String& value,
                      Ref<IXMLDOMElement>* element) {
    if (!element) return E_POINTER;
    *element = nullptr;
    if (!context) return E_FAIL;
    Ref<IXMLDOMNode> node;
    HRESULT hr = selectOneWithValue(context, form, value, &node);
    if (hr != S_OK) return hr;
    *element = query<IXMLDOMElement>(node);
    return *element ? S_OK : E_NOINTERFACE;
}

HRESULT selectUniqueColumn(IXMLDOMNode* document, Ref<IXMLDOMElement>* uniqueColumn) {
    return selectElement(document, dom::forms::tableUniqueColumn, "", uniqueColumn);
}

HRESULT putIdref(IQVRCatalogObject* cell, const String& id) {
    Ref<IQVRTableCellObject> cellObject = query<IQVRTableCellObject>(cell);
    return cellObject ? cellObject->put_idref(id) : E_NOINTERFACE;
}

} // namespace

HRESULT RowTool::findRowByValue(const String& key, Ref<IXMLDOMElement>* row) {
    return selectElement(ownerDocument_, dom::forms::tableRowByKey, key, row);
}

HRESULT RowTool::findRowById(const String& id, Ref<IXMLDOMElement>* row) {
    Ref<IXMLDOMElement> uniqueColumn;
    HRESULT hr = selectUniqueColumn(ownerDocument_, &uniqueColumn);
    if (hr != S_OK) {
        if (row) *row = nullptr;
        return hr;
    }
    return selectElement(uniqueColumn, dom::forms::childRowById, id, row);
}

HRESULT RowTool::findRowByIndex(std::int32_t index, Ref<IXMLDOMElement>* row) {
    // One more than the index: the selection counts its positions from 1.
    const String position(std::to_string(static_cast<std::int64_t>(index) + 1));
    return selectElement(ownerDocument_, dom::forms::tableRowAt, position, row);
}

HRESULT RowTool::selectIdRefs(std::int32_t* count, Ref<IXMLDOMNodeList>* cells) {
    if (!count || !cells) return E_POINTER;
    *count = 0;
    *cells = nullptr;
    Ref<IXMLDOMElement> row = query<IXMLDOMElement>(node_);
    if (!row || !ownerDocument_) return E_FAIL;
    String id;
    HRESULT hr = row->getAttribute("id", &id);
    if (FAILED(hr)) return hr;
    hr = selectAllWithValue(ownerDocument_, dom::forms::tableCellsByIdref, id, cells);
    if (hr != S_OK) return hr;
    return (*cells)->get_length(count);
}

HRESULT RowTool::addRowForCell(IQVRCatalogObject* table, IQVRCatalogObject* cell) {
    if (!cell) return E_POINTER;
    if (!node_ || !ownerDocument_) return E_FAIL;
    String key;
    HRESULT hr = cell->get_key(&key);
    if (FAILED(hr)) return hr;
    String id; // of the row of the key, read without an object for the row
    if (FAILED(hr = selectAttributeWithValue(ownerDocument_, dom::forms::tableRowByKey, key, "id",
                                             &id)))
        return hr;
    if (hr == S_OK) {
        // A known row: the cell takes its id, unless this column has a cell for it already.
        Ref<IXMLDOMNode> present;
        hr = selectOneWithValue(node_, dom::forms::childByIdref, id, &present);
        if (FAILED(hr)) return hr;
        return present ? QVR_E_DUPLICATE : putIdref(cell, id);
    }
    // A new row. It goes before the row of the cell that follows this one in the column, so
    // that the order of the rows follows the order of the cells here; else it goes last.
    Ref<IXMLDOMElement> cellNode, followingRow;
    Ref<IXMLDOMNode> next;
    if (FAILED(hr = cell->get_domNode(&cellNode))) return hr;
    if (cellNode->get_nextSibling(&next) == S_OK) {
        Ref<IXMLDOMElement> nextElement = query<IXMLDOMElement>(next);
        String nextIdref;
        if (nextElement && nextElement->getAttribute("idref", &nextIdref) == S_OK &&
            FAILED(hr = findRowById(nextIdref, &followingRow)))
            return hr;
    }
    Ref<IXMLDOMElement> newRow, uniqueColumn;
    if ((hr = ownerDocument_->createElement("RowUnique", &newRow)) != S_OK) return hr;
    if ((hr = selectUniqueColumn(ownerDocument_, &uniqueColumn)) != S_OK)
        return FAILED(hr) ? hr : E_FAIL;
    id = newRowId();
    if (id.isNull()) return E_FAIL;
    if ((hr = newRow->setAttribute("id", id)) != S_OK) return hr;
    if (FAILED(hr = putIdref(cell, id))) return hr;
    if (FAILED(hr = newRow->put_text(key))) return hr;
    if (FAILED(hr = uniqueColumn->insertBefore(newRow, followingRow, nullptr))) return hr;
    RowTool(newRow).fireRowEvent(table, followingRow ? Variant(followingRow) : Variant(),
                                 qvrEventObjectInserted);
    return S_OK;
}

HRESULT RowTool::removeRowForCell(IQVRCatalogObject* cell) {
    if (!cell) return E_POINTER;
    String key;
    HRESULT hr = cell->get_key(&key);
    if (FAILED(hr)) return hr;
    Ref<IXMLDOMElement> row;
    if ((hr = findRowByValue(key, &row)) != S_OK) return hr;
    RowTool rowTool(row);
    std::int32_t count = 0;
    Ref<IXMLDOMNodeList> cells;
    if (FAILED(hr = rowTool.selectIdRefs(&count, &cells))) return hr;
    if (count != 1) return S_OK; // other cells keep the row
    Ref<IXMLDOMElement> uniqueColumn;
    if ((hr = selectUniqueColumn(ownerDocument_, &uniqueColumn)) != S_OK)
        return FAILED(hr) ? hr : E_FAIL;
    if (FAILED(hr = uniqueColumn->removeChild(row, nullptr))) return hr;
    Ref<IQVRCatalogObject> table;
    cell->get_catalog(&table);
    rowTool.fireRowEvent(table, Variant(), qvrEventObjectRemoved);
    return S_OK;
}

HRESULT RowTool::fireRowEvent(IQVRCatalogObject* table, const Variant& position,
                              std::int32_t event) {
    // The row's wrappers are made for the sinks only.
    if (!EventSinks::anyAdvised()) return S_OK;
    Ref<IQVRCatalogTable> root = query<IQVRCatalogTable>(table);
    if (!root) return E_NOINTERFACE;
    Ref<IQVRTableUniqueColumn> uniqueColumn;
    HRESULT hr = root->get_uniqueColumn(&uniqueColumn);
    if (hr != S_OK) return FAILED(hr) ? hr : E_FAIL;
    Ref<IQVRCatalogObject> row;
    if ((hr = createObjectOf(node_, table, uniqueColumn, &row)) != S_OK) return hr;
    // A reference row travels as its wrapper, like every position that names an object.
    Variant where = position;
    if (Ref<IXMLDOMNode> node = query<IXMLDOMNode>(position.object());
        position.isObject() && node) {
        Ref<IQVRCatalogObject> reference;
        if ((hr = createObjectOf(node, table, uniqueColumn, &reference)) != S_OK) return hr;
        where = Variant(reference);
    }
    fireObjectEventTable(event, uniqueColumn, row, where);
    return S_OK;
}

} // namespace qvr
