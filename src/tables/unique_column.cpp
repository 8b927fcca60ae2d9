#include "tables/unique_column.h"

#include <qvr/table_cells.h>

#include "core/child_tool.h"
#include "core/event_firing.h"
#include "core/object_factory.h"
#include "core/row_tool.h"
#include "tables/index_moves.h"

namespace qvr {

HRESULT CQVRTableUniqueColumn::insertChild(ChildTool& tool, IQVRCatalogObject* child,
                                           const Variant& position,
                                           Ref<IQVRCatalogObject>* inserted,
                                           const ContainerRow& row) {
    const String id = newRowId();
    if (id.isNull()) return E_FAIL;
    Ref<IQVRTableCellObject> rowObject = query<IQVRTableCellObject>(child);
    if (!rowObject) return E_NOINTERFACE;
    HRESULT hr = rowObject->put_idref(id); // a row object writes its own `id`
    if (FAILED(hr)) return hr;
    return TableColumnObject::insertChild(tool, child, position, inserted, row);
}

HRESULT CQVRTableUniqueColumn::removeChild(IQVRCatalogObject* row,
                                           Ref<IQVRCatalogObject>* removed) {
    return guarded([&] {
        if (removed) *removed = nullptr;
        if (!initialized()) return notInitialized();
        if (!row) return E_POINTER;
        Ref<IQVRCatalogObject> held(row);
        Ref<IXMLDOMElement> rowNode;
        HRESULT hr = row->get_domNode(&rowNode);
        if (FAILED(hr)) return hr;
        std::int32_t count = 0;
        Ref<IXMLDOMNodeList> cells;
        if (FAILED(hr = RowTool(rowNode).selectIdRefs(&count, &cells))) return hr;
        // Each cell leaves its column, and the column tells of it.
        const Ref<IQVRCatalogObject> table = catalogRef();
        for (std::int32_t i = 0; i < count; ++i) {
            Ref<IXMLDOMNode> cellNode, columnNode;
            Ref<IQVRCatalogObject> column, cell;
            if (FAILED(hr = cells->get_item(i, &cellNode)) || !cellNode)
                return FAILED(hr) ? hr : E_FAIL;
            if ((hr = cellNode->get_parentNode(&columnNode)) != S_OK)
                return FAILED(hr) ? hr : E_FAIL;
            if (FAILED(hr = CXMLDOMTool(columnNode).removeNode(cellNode))) return hr;
            if ((hr = createObjectOf(columnNode, table, table, &column)) != S_OK) return hr;
            if ((hr = createObjectOf(cellNode, table, column, &cell)) != S_OK) return hr;
            fireObjectEventTable(qvrEventObjectRemoved, column, cell, Variant());
        }
        hr = table ? ChildTool(element()).removeChildObject(table, row, removed) : E_INVALIDARG;
        if (hr == S_OK) fire(qvrEventObjectRemoved, row, Variant());
        return hr;
    });
}

HRESULT CQVRTableUniqueColumn::moveRows(const Variant& from, const Variant& to) {
    return guarded([&] {
        std::int32_t target = 0;
        HRESULT hr = index_moves::checkArguments(*this, from, to, &target);
        if (hr != S_OK) return hr;
        if (!initialized()) {
            // Told, and yet no failure: the call answers as it stood.
            report(msgObjectNotInitialized, 0);
            return hr;
        }
        return index_moves::moveAll(
            from, target, [this](std::int32_t f, std::int32_t t) { return moveRow(f, t); });
    });
}

HRESULT CQVRTableUniqueColumn::moveRow(std::int32_t from, std::int32_t to) {
    const Ref<IQVRCatalogObject> table = catalogRef();
    ChildTool tool(element());
    Ref<IXMLDOMElement> rowNode;
    // A place below 1 names no row (and stays clear of overflowing the index).
    HRESULT hr = from < 1 ? S_FALSE : RowTool(element()).findRowByIndex(from - 1, &rowNode);
    if (hr != S_OK) return hr; // no such row: nothing moves
    const Variant place(index_moves::insertionPlace(from, to));

    // The row itself, within the register.
    Ref<IQVRCatalogObject> row, placed;
    if ((hr = createObjectOf(rowNode, table, self(), &row)) != S_OK) return hr;
    hr = index_moves::moveElement(
        tool, table, self(), rowNode, row, place,
        [&] {
            return tool.insertChildObject(table, self(), row, place, &placed, "id", "RowUnique");
        },
        [&](std::int32_t event, const Variant& where) { fire(event, row, where); });
    if (hr != S_OK) return hr;

    // Its cells, each at the same place among the cells of its column.
    std::int32_t count = 0;
    Ref<IXMLDOMNodeList> cells;
    if (FAILED(hr = RowTool(rowNode).selectIdRefs(&count, &cells))) return hr;
    for (std::int32_t i = 0; i < count && hr == S_OK; ++i) {
        Ref<IXMLDOMNode> cellNode, columnNode;
        Ref<IQVRCatalogObject> column, cell, moved;
        if (FAILED(hr = cells->get_item(i, &cellNode)) || !cellNode)
            return FAILED(hr) ? hr : E_FAIL;
        if ((hr = cellNode->get_parentNode(&columnNode)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
        if ((hr = createObjectOf(columnNode, table, table, &column)) != S_OK) return hr;
        if ((hr = createObjectOf(cellNode, table, column, &cell)) != S_OK) return hr;
        ChildTool columnTool(columnNode);
        hr = index_moves::moveElement(
            columnTool, table, column, cellNode, cell, place,
            [&] {
                return columnTool.insertChildObject(table, column, cell, place, &moved, "idref",
                                                    "Row|Drawing");
            },
            [&](std::int32_t event, const Variant& where) {
                // The removal is told from the cell, the insertion from its column.
                fireObjectEventTable(event, event == qvrEventObjectRemoved ? cell : column, cell,
                                     where);
            });
    }
    return hr;
}

} // namespace qvr
